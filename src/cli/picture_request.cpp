#include "cli/picture_request.h"

#include "engine/input_frames.h"
#include "jobs/quantities.h"
#include "support/formatting.h"
#include "support/platform.h"
#include "support/system_time.h"
#include "support/text.h"

namespace carvello {
namespace {

constexpr std::int64_t kLongestSide = 16'384;
constexpr std::int64_t kMostPixels = 67'108'864;

std::string Unreadable(const char* option, const std::string& text, const char* accepted) {
  return Format("%s \"%s\" cannot be read. Accepted: %s", option, Printable(text).c_str(), accepted);
}

bool ReadSize(const std::string& text, SPictureLook& look) {
  const std::size_t nCross = text.find('x');
  if (nCross == std::string::npos) return false;
  const std::optional<std::int64_t> columns = ParseWholeNumber(std::string_view(text).substr(0, nCross));
  const std::optional<std::int64_t> rows = ParseWholeNumber(std::string_view(text).substr(nCross + 1));
  if (!columns || !rows || *columns < 1 || *rows < 1 || *columns > kLongestSide || *rows > kLongestSide) return false;
  look.nColumns = *columns;
  look.nRows = *rows;
  return *columns * *rows <= kMostPixels;
}

bool ReadLevels(const std::string& text, SPictureLook& look) {
  const std::size_t nColon = text.find(':');
  if (nColon == std::string::npos) return false;
  const std::optional<double> low = ParseDecibels(std::string_view(text).substr(0, nColon));
  const std::optional<double> high = ParseDecibels(std::string_view(text).substr(nColon + 1));
  if (!low || !high || *low >= *high) return false;
  look.levels = SLevelRange{*low, *high};
  return true;
}

bool ReadPalette(const std::string& text, SPictureLook& look) {
  if (text == "viridis") {
    look.palette = EPalette::Viridis;
  } else if (text == "turbo") {
    look.palette = EPalette::Turbo;
  } else if (text == "grey" || text == "gray") {
    look.palette = EPalette::Grey;
  } else {
    return false;
  }
  return true;
}

bool ReadFrequency(const char* option, const std::string& text, double& frequency, std::int64_t centre,
                   std::string& error) {
  if (text.empty()) return true;
  const std::optional<std::int64_t> parsed = ParseFrequency(text);
  if (!parsed) {
    error = Unreadable(option, text, kFrequencyForms);
    return false;
  }
  frequency = static_cast<double>(*parsed - centre);
  return true;
}

}  // namespace

bool ReadPictureLook(const SPictureOptions& options, SPictureLook& look, std::string& error) {
  if (options.bPeak && options.bMean) {
    error = "--peak and --mean exclude each other. Accepted: one of them; --mean is the default";
  } else if (!ReadSize(options.strSize, look)) {
    error = Unreadable("--size", options.strSize,
                       "width x height in pixels, for example 1200x800; each from 1 to 16384, 67108864 pixels at most");
  } else if (!options.strLevels.empty() && !ReadLevels(options.strLevels, look)) {
    error = Unreadable("--levels", options.strLevels, "two levels in dBFS, the lower one first, for example -120:-30");
  } else if (!ReadPalette(options.strPalette, look)) {
    error = Unreadable("--palette", options.strPalette, "viridis, turbo or grey");
  }
  return error.empty();
}

bool MakePictureRequest(const SPictureOptions& options, const SPictureLook& look, const CRecordingSet& recording,
                        SPictureRequest& request, std::string& error) {
  SPictureSpan& span = request.span;
  const double fHalf = recording.nSampleRate / 2.0;
  span.dLowFrequency = -fHalf;
  span.dHighFrequency = fHalf;
  if (!ReadFrequency("--from", options.strFrom, span.dLowFrequency, recording.nRadioCenterFreq, error) ||
      !ReadFrequency("--to", options.strTo, span.dHighFrequency, recording.nRadioCenterFreq, error)) {
    return false;
  }
  if (span.dLowFrequency >= span.dHighFrequency || span.dLowFrequency >= fHalf || span.dHighFrequency <= -fHalf) {
    const auto nHalf = static_cast<std::int64_t>(recording.nSampleRate / 2);
    error =
        Format("--from and --to leave nothing of the recording. Accepted: from below to, and within %lld to %lld Hz",
               static_cast<long long>(recording.nRadioCenterFreq - nHalf),
               static_cast<long long>(recording.nRadioCenterFreq + nHalf));
    return false;
  }
  SFrameSpan frames;
  if (!ResolveTimeSpan(options.time, recording, frames, error)) return false;
  span.nTotalFrames = CInputFrames(recording).Total();
  span.dSampleRate = recording.nSampleRate;
  span.nFirstFrame = frames.nFirst;
  span.nFrames = frames.nCount;
  span.nColumns = look.nColumns;
  span.nRows = look.nRows;
  request.levels = options.bPeak ? EPictureLevels::Peak : EPictureLevels::Mean;
  request.bFast = options.bFast;
  return true;
}

SPictureAxes AxesOf(const SPictureRequest& request, const SLevelPicture& picture, const CRecordingSet& recording) {
  const SPictureSpan& span = request.span;
  SPictureAxes axes;
  const auto fCentre = static_cast<double>(recording.nRadioCenterFreq);
  axes.dLowFrequency = fCentre + span.dLowFrequency;
  axes.dHighFrequency = fCentre + span.dHighFrequency;
  const std::int64_t nRate = recording.nSampleRate;
  axes.nStartSecond = recording.tStart + span.nFirstFrame / nRate;
  axes.dStartFraction = static_cast<double>(span.nFirstFrame % nRate) / static_cast<double>(nRate);
  axes.dSeconds = static_cast<double>(span.nFrames) / static_cast<double>(nRate);
  axes.strTitle = Printable(platform::NameOf(recording.files.front().strPath)) + "  " +
                  FormatUtc("%Y-%m-%d %H:%M:%SZ", axes.nStartSecond) + "  " + FormatDuration(axes.dSeconds);
  axes.strDetails =
      Format("%s of %.4g Hz a bin", request.levels == EPictureLevels::Mean ? "mean" : "peak", picture.dBinWidth);
  if (request.bFast) axes.strDetails += ", some of the samples";
  return axes;
}

}  // namespace carvello
