#include "cli/recording_opening.h"

#include <algorithm>
#include <optional>

#include "cli/console.h"
#include "engine/job_control.h"
#include "support/platform.h"
#include "support/text.h"

namespace carvello {
namespace {

constexpr std::int64_t kLargestCentre = 1'000'000'000'000;  // Hz, as for the frequencies of entries

// What would break arithmetic further on, whatever the file claims.
std::string RecordingProblem(const CRecordingSet& recording) {
  const std::string& name = recording.files.front().strPath;
  if (recording.nSampleRate == 0) return name + ": its sample rate is not known";
  if (recording.nRadioCenterFreq > kLargestCentre || recording.nRadioCenterFreq < -kLargestCentre) {
    return Format("%s: its centre frequency, %lld Hz, is no radio frequency", name.c_str(),
                  static_cast<long long>(recording.nRadioCenterFreq));
  }
  return InputProblem(recording).value_or(SInputProblem()).strText;
}

}  // namespace

EExit DescribeRecording(const std::string& path, const SGivenOptions& options, SRecordingInput& input,
                        SGivenFacts given) {
  std::string error;
  if (!ReadGivenFacts(options, given, error)) {
    PrintMessage(error);
    return EExit::Usage;
  }
  if (!ReadRecordingInput(path, input, error, given)) {
    PrintMessage(error + MissingHint(input.recording.missing, options));
    return EExit::InputUnreadable;
  }
  for (const std::string& warning : input.warnings) PrintMessage(warning);
  return EExit::Ok;
}

EExit OpenRecording(const std::string& path, const SGivenOptions& options, SRecordingInput& input,
                    const SGivenFacts& given) {
  const EExit described = DescribeRecording(path, options, input, given);
  if (described != EExit::Ok) return described;
  const std::string problem = RecordingProblem(input.recording);
  if (problem.empty()) return EExit::Ok;
  PrintMessage(problem);
  return EExit::InputUnreadable;
}

std::optional<bool> IsInputFile(const std::string& path, const CRecordingSet& recording) {
  const auto missing = [] {
    return platform::MeansMissing(platform::LastError()) ? std::optional(false) : std::nullopt;
  };
  const std::optional<platform::FileStatus> status = platform::GetFileStatus(path);
  if (!status) return missing();
  for (const std::string& file : recording.AllFiles()) {
    const std::optional<platform::FileStatus> input = platform::GetFileStatus(file);
    if (!input && !missing()) return std::nullopt;
    if (input && input->nVolume == status->nVolume && input->nFileNumber == status->nFileNumber) return true;
  }
  return false;
}

}  // namespace carvello
