#include "cli/synth_settings.h"

#include <algorithm>
#include <limits>
#include <string_view>

#include "jobs/quantities.h"
#include "support/formatting.h"
#include "support/platform.h"
#include "support/text.h"

namespace carvello {
namespace {

constexpr std::int64_t kNanoseconds = 1'000'000'000;
constexpr std::int64_t kLargestRate = 500'000'000;                                // frames/s
constexpr std::int64_t kLongest = 1'000'000 * kNanoseconds;                       // ns
constexpr std::int64_t kMostFiles = 1000;                                         // what three digits tell apart
constexpr std::int64_t kLatestStart = std::numeric_limits<std::uint32_t>::max();  // what the metadata can hold
constexpr std::int64_t kLargestWavData = 4'294'000'000;  // bytes; room for the rest within 32 bits
constexpr std::int64_t kMostCaptures = 1000;
constexpr std::int64_t kMostLost = 1'000'000'000;

bool Refuse(std::string& error, const std::string& option, const std::string& value, const std::string& accepted) {
  error = Format("--%s \"%s\" cannot be used. Accepted: %s", option.c_str(), value.c_str(), accepted.c_str());
  return false;
}

bool ReadNumbers(const SSynthOptions& options, SSynthSettings& settings, std::string& error) {
  const auto rate = ParseFrequency(options.strRate);
  if (!rate || *rate < 1 || *rate > kLargestRate) {
    return Refuse(error, "rate", options.strRate, Format("1 to 500M, %s", kFrequencyForms));
  }
  settings.nSampleRate = static_cast<std::uint32_t>(*rate);

  const auto centre = ParseFrequency(options.strCentre);
  if (!centre) return Refuse(error, "centre", options.strCentre, kFrequencyForms);
  settings.nCentre = *centre;

  const auto nanoseconds = ParseDecimal(options.strSeconds, 9, kLongest);
  if (!nanoseconds) return Refuse(error, "seconds", options.strSeconds, "up to 1000000, for example 20 or 0.5");
  settings.nFrames = *nanoseconds / kNanoseconds * *rate + *nanoseconds % kNanoseconds * *rate / kNanoseconds;

  const auto files = ParseWholeNumber(options.strFiles);
  if (!files || *files < 1 || *files > kMostFiles) return Refuse(error, "files", options.strFiles, "1 to 1000");
  settings.nFiles = static_cast<std::uint32_t>(*files);
  if (settings.nFrames < *files) {
    return Refuse(error, "seconds", options.strSeconds, "at least one sample for every file");
  }

  const auto start = ParseDateTime(options.strStart);
  if (!start || *start < 0 || *start > kLatestStart) {
    return Refuse(error, "start", options.strStart, Format("%s, from 1970 to 2106", kDateTimeForms));
  }
  settings.tStart = *start;

  const auto seed = ParseWholeNumber(options.strSeed);
  if (!seed) return Refuse(error, "seed", options.strSeed, kWholeNumberForms);
  settings.nSeed = static_cast<std::uint64_t>(*seed);
  return true;
}

// A program's file: in the folder OUT under the program's own name, or OUT where its ending tells the program.
bool ReadProgram(const SSynthOptions& options, SSynthSettings& settings, std::string& error) {
  settings.bNamed = options.strProgram.empty();
  settings.pProgram = settings.bNamed ? SynthProgramOfEnding(options.strPath) : FindSynthProgram(options.strProgram);
  if (settings.pProgram == nullptr) {
    return settings.bNamed || Refuse(error, "program", options.strProgram, SynthProgramNames());
  }
  const SSynthProgram& program = *settings.pProgram;
  const auto folder = platform::GetFileStatus(options.strPath);
  if (!settings.bNamed && !folder && !platform::MeansMissing(platform::LastError())) {
    error = Format("OUT \"%s\": %s", options.strPath.c_str(), SystemErrorText().c_str());
    return false;
  }
  if (!settings.bNamed && (!folder || !folder->bDirectory)) {
    error = Format("OUT \"%s\" cannot be used with --program. Accepted: a folder that exists", options.strPath.c_str());
    return false;
  }
  const SSampleKind kind = SynthKindOf(program, options.strSampleType);
  if (!kind.IsKnown()) {
    return Refuse(error, "sample-type", options.strSampleType,
                  Format("%s, as %s writes them", program.pszTypes, program.pszName));
  }
  settings.raw = kind;
  if (settings.nCentre < 0 || settings.nCentre > program.nHighestCentre || settings.nCentre % program.nUnit != 0) {
    return Refuse(
        error, "centre", options.strCentre,
        Format("0 to %lld Hz in steps of %lld, as files of %s tell it", static_cast<long long>(program.nHighestCentre),
               static_cast<long long>(program.nUnit), program.pszName));
  }
  if (settings.nSampleRate % program.nRateUnit != 0) {
    return Refuse(
        error, "rate", options.strRate,
        Format("steps of %lld, as files of %s tell it", static_cast<long long>(program.nRateUnit), program.pszName));
  }
  const bool isRiff = program.container == ESynthContainer::Wave || program.container == ESynthContainer::Kiwi;
  if (isRiff && settings.nFrames > kLargestWavData / kind.FrameBytes()) {
    return Refuse(error, "seconds", options.strSeconds, "what a WAV file can hold, 4 GB");
  }
  return true;
}

bool ReadSigMf(const SSynthOptions& options, SSynthSettings& settings, std::string& error) {
  settings.sigmf = options.strProgram.empty() ? SynthSigMfOf(options.strPath) : std::nullopt;
  const auto captures = ParseWholeNumber(options.strCaptures);
  const auto lost = ParseWholeNumber(options.strLost);
  if (!captures || *captures < 1 || *captures > kMostCaptures) {
    return Refuse(error, "captures", options.strCaptures, "1 to 1000");
  }
  if (!lost || *lost < 0 || *lost > kMostLost) return Refuse(error, "lost", options.strLost, "0 to 1000000000");
  settings.captures = {static_cast<std::uint32_t>(*captures), *lost};
  if (!settings.sigmf) {
    if (*captures == 1 && *lost == 0) return true;
    error = "--captures and --lost are for SigMF. Accepted: OUT that ends in .sigmf-data, .sigmf or .sigmf-collection";
    return false;
  }
  if (settings.nFrames / settings.nFiles < *captures) {
    return Refuse(error, "captures", options.strCaptures, "no more than there are samples");
  }
  if (settings.sigmf == ESynthSigMf::Archive && !FitsArchive(options.strPath)) {
    error = Format("OUT \"%s\" cannot be used. Accepted: a name of at most 95 bytes", options.strPath.c_str());
    return false;
  }
  settings.raw = ParseSampleKind(options.strSampleType.empty() ? "ci16" : options.strSampleType);
  return true;
}

bool ReadRaw(const SSynthOptions& options, SSynthSettings& settings, std::string& error) {
  if (!ReadProgram(options, settings, error) || !ReadSigMf(options, settings, error)) return false;
  const bool isPlain = settings.pProgram == nullptr && !settings.sigmf;
  if (isPlain && options.strSampleType.empty()) return true;
  if (isPlain) settings.raw = ParseSampleKind(options.strSampleType);
  if (!settings.raw) {
    return Refuse(error, "sample-type", options.strSampleType,
                  "ci8, ci16, ci24, ci32, cu8, cu16, cu24, cu32, cf32 or "
                  "cf64, with _be behind it for big-endian");
  }
  if (settings.sigmf && settings.raw->nBits == 24) {
    return Refuse(error, "sample-type", options.strSampleType, "what SigMF has: 8, 16 or 32 bits, cf32 or cf64");
  }
  if (options.strBits != SSynthOptions().strBits) {
    return Refuse(error, "bits", options.strBits, "--sample-type, where OUT or --program tell another kind than a WAV");
  }
  const bool severalFiles = settings.nFiles > 1 && settings.sigmf != ESynthSigMf::Collection;
  if (!settings.bRf64 && !severalFiles) return true;
  error =
      "--sample-type, --program and SigMF do not go with --rf64 and --files. Accepted: one file of samples, WAV files, "
      "or "
      "--files with OUT that ends in .sigmf-collection";
  return false;
}

bool ReadFormat(const SSynthOptions& options, SSynthSettings& settings, std::string& error) {
  constexpr std::pair<const char*, ESynthFormat> kFormats[] = {{"8", ESynthFormat::Pcm8},
                                                               {"16", ESynthFormat::Pcm16},
                                                               {"24", ESynthFormat::Pcm24},
                                                               {"32", ESynthFormat::Pcm32},
                                                               {"float", ESynthFormat::Float32}};
  for (const auto& [name, format] : kFormats) {
    if (options.strBits != name) continue;
    settings.format = format;
    return true;
  }
  return Refuse(error, "bits", options.strBits, "8, 16, 24, 32 or float");
}

// "FREQ:DBFS" with ":tone" or ":am" behind it.
std::optional<SStation> ParseStation(std::string_view text) {
  const std::size_t first = text.find(':');
  if (first == std::string_view::npos) return std::nullopt;
  const std::size_t second = text.find(':', first + 1);
  const auto frequency = ParseFrequency(text.substr(0, first));
  const auto level =
      ParseDecibels(text.substr(first + 1, second == std::string_view::npos ? second : second - first - 1));
  const std::string_view kind = second == std::string_view::npos ? "tone" : text.substr(second + 1);
  if (!frequency || !level || (kind != "tone" && kind != "am")) return std::nullopt;
  return SStation{*frequency, *level, kind == "am"};
}

bool ReadSignals(const SSynthOptions& options, SSynthSettings& settings, std::string& error) {
  const std::int64_t half = settings.nSampleRate / 2;
  for (const std::string& text : options.stations) {
    const std::optional<SStation> station = ParseStation(text);
    if (!station) {
      return Refuse(error, "station", text, "FREQ:DBFS, FREQ:DBFS:tone or FREQ:DBFS:am, for example 7.1M:-20:am");
    }
    if (station->nFrequency < settings.nCentre - half || station->nFrequency > settings.nCentre + half) {
      return Refuse(error, "station", text,
                    Format("a frequency within the band, %lld to %lld", static_cast<long long>(settings.nCentre - half),
                           static_cast<long long>(settings.nCentre + half)));
    }
    settings.stations.push_back(*station);
  }
  if (!options.strNoise.empty()) {
    settings.noise = ParseDecibels(options.strNoise);
    if (!settings.noise) return Refuse(error, "noise", options.strNoise, kDecibelForms);
  }
  if (settings.stations.empty() && !settings.noise) {
    settings.stations.push_back({settings.nCentre + settings.nSampleRate / 8, -20.0, true});
    settings.noise = -60.0;
  }
  return true;
}

bool CheckFiles(const SSynthOptions& options, const SSynthSettings& settings, std::string& error) {
  const std::string& path = options.strPath;
  if (settings.nFiles > 1 && !settings.sigmf && !ToLowerAscii(path).ends_with(".wav")) {
    error = Format("OUT \"%s\" cannot be used with --files. Accepted: a name that ends in .wav", path.c_str());
    return false;
  }
  const std::int64_t largest = SynthFrames(settings, settings.nFiles - 1) + 1;
  if (!settings.bRf64 && !settings.raw && largest > kLargestWavData / (2 * BitsOf(settings.format) / 8)) {
    error = Format("--seconds \"%s\" is more than a WAV file can hold. Accepted: less, more --files, or --rf64",
                   options.strSeconds.c_str());
    return false;
  }
  return true;
}

}  // namespace

std::uint32_t BitsOf(ESynthFormat format) {
  switch (format) {
    case ESynthFormat::Pcm8:
      return 8;
    case ESynthFormat::Pcm16:
      return 16;
    case ESynthFormat::Pcm24:
      return 24;
    case ESynthFormat::Pcm32:
    case ESynthFormat::Float32:
      break;
  }
  return 32;
}

bool MakeSynthSettings(const SSynthOptions& options, SSynthSettings& settings, std::string& error) {
  settings = SSynthSettings();
  settings.strPath = options.strPath;
  settings.bRf64 = options.bRf64;
  return ReadNumbers(options, settings, error) && ReadFormat(options, settings, error) &&
         ReadRaw(options, settings, error) && ReadSignals(options, settings, error) &&
         CheckFiles(options, settings, error);
}

std::vector<std::string> SynthFiles(const SSynthSettings& settings) {
  if (settings.nFiles == 1) return {settings.strPath};
  std::vector<std::string> files;
  for (std::uint32_t i = 0; i < settings.nFiles; ++i) {
    std::string path = settings.strPath;
    path.insert(path.rfind('.'), Format(" %03u", i));
    files.push_back(std::move(path));
  }
  return files;
}

std::int64_t SynthFrames(const SSynthSettings& settings, std::uint32_t file) {
  // Not frames x file / files, which may pass 64 bits.
  const std::int64_t share = settings.nFrames / settings.nFiles;
  return share + (file < settings.nFrames % settings.nFiles ? 1 : 0);
}

}  // namespace carvello
