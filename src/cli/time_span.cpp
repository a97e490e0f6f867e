#include "cli/time_span.h"

#include <algorithm>
#include <limits>
#include <optional>

#include "engine/entry_checks.h"
#include "engine/input_frames.h"
#include "jobs/quantities.h"
#include "support/text.h"

namespace carvello {
namespace {

constexpr std::int64_t kMicros = 1'000'000;  // of a second
constexpr std::int64_t kLargestMicros = 1'000'000'000 * kMicros;
constexpr const char* kSpanMomentForms =
    "a date and time with its zone, in whole seconds, for example 2026-11-21T12:00:00Z, or +SECONDS from the "
    "recording's start, for example +90 or +1.5";
constexpr const char* kSpanDurationForms = "seconds, H:MM or H:MM:SS, for example 90, 1.5, 1:30 or 0:01:30";

// Millionths of a second from the recording's start.
std::optional<std::int64_t> MicrosOfMoment(const std::string& text, const CRecordingSet& recording) {
  if (text.starts_with('+')) return ParseDecimal(std::string_view(text).substr(1), 6, kLargestMicros);
  const std::optional<std::int64_t> time = ParseDateTime(text);
  if (!time) return std::nullopt;
  return std::clamp(*time - recording.tStart, -kLargestMicros / kMicros, kLargestMicros / kMicros) * kMicros;
}

std::optional<std::int64_t> MicrosOfDuration(const std::string& text) {
  if (const auto micros = ParseDecimal(text, 6, kLargestMicros)) return micros;
  const std::optional<std::uint32_t> seconds = ParseDuration(text);
  if (!seconds) return std::nullopt;
  return std::int64_t{*seconds} * kMicros;
}

// The frame that is taken at this time, or the first one behind it; far behind every recording's end at most.
std::int64_t FrameAt(std::int64_t micros, std::uint32_t rate) {
  const std::int64_t nSeconds = micros / kMicros;
  return nSeconds * rate + (micros % kMicros * rate + kMicros - 1) / kMicros;
}

std::string Unreadable(const char* option, const std::string& text, const char* accepted) {
  return Format("%s \"%s\" cannot be read. Accepted: %s", option, Printable(text).c_str(), accepted);
}

}  // namespace

void STimeSpanOptions::AddTo(CCommandOptions& options) {
  options.Add("--start", &strStart, "Start, see below; the recording's start is the default").Value("TIME");
  options.Add("--end", &strEnd, "End; the recording's end is the default").Value("TIME");
  options.Add("--duration", &strDuration, "Instead of --end").Value("D");
}

bool ResolveTimeSpan(const STimeSpanOptions& options, const CRecordingSet& recording, SFrameSpan& span,
                     std::string& error) {
  if (!options.strEnd.empty() && !options.strDuration.empty()) {
    error = "--end and --duration exclude each other. Accepted: one of them, or none for the recording's end";
    return false;
  }
  const std::int64_t nTotal = CInputFrames(recording).Total();
  const std::int64_t nRate = recording.nSampleRate;
  std::int64_t nStart = 0;
  if (!options.strStart.empty()) {
    const std::optional<std::int64_t> start = MicrosOfMoment(options.strStart, recording);
    if (!start) {
      error = Unreadable("--start", options.strStart, kSpanMomentForms);
      return false;
    }
    nStart = *start;
  }
  if (nStart < 0 || FrameAt(nStart, recording.nSampleRate) >= nTotal) {
    error = "--start: it does not lie within the recording.\n" + AcceptedTimes(recording);
    return false;
  }
  span.nFirst = FrameAt(nStart, recording.nSampleRate);
  // The times of a set may reach further than its samples, and its last second be begun only.
  const std::int64_t nLatest =
      std::max((recording.tEnd - recording.tStart) * nRate, (nTotal + nRate - 1) / nRate * nRate);
  std::int64_t nEnd = nTotal;
  if (!options.strEnd.empty() || !options.strDuration.empty()) {
    const bool bDuration = !options.strDuration.empty();
    std::optional<std::int64_t> end =
        bDuration ? MicrosOfDuration(options.strDuration) : MicrosOfMoment(options.strEnd, recording);
    if (!end) {
      error = bDuration ? Unreadable("--duration", options.strDuration, kSpanDurationForms)
                        : Unreadable("--end", options.strEnd, kSpanMomentForms);
      return false;
    }
    if (bDuration) *end += nStart;
    nEnd = *end < 0 ? -1 : FrameAt(*end, recording.nSampleRate);
    const char* const pOption = bDuration ? "--duration" : "--end";
    if (nEnd > nLatest) {
      error = std::string(pOption) + ": it reaches beyond the recording's end.\n" + AcceptedTimes(recording);
      return false;
    }
    if (nEnd <= span.nFirst) {
      error = std::string(pOption) + ": the end does not lie behind the start.\n" + AcceptedTimes(recording);
      return false;
    }
  }
  span.nCount = std::min(nEnd, nTotal) - span.nFirst;
  return true;
}

}  // namespace carvello
