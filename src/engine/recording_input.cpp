#include "engine/recording_input.h"

#include <optional>

#include "input/wave_file_reader.h"
#include "recording/written_file.h"
#include "support/formatting.h"
#include "support/platform.h"
#include "support/text.h"

namespace carvello {

std::string OpenProblem(const std::string& path) {
  const std::optional<platform::FileStatus> status = platform::GetFileStatus(path);
  if (status && status->bDirectory) return "is a folder. Accepted: a file of the recording";
  if (status && !status->bRegular) return "is a pipe, socket or device. Accepted: a file of the recording";
  if (status && platform::IsReadable(path)) return {};
  return SystemErrorText();
}

std::string RightsHint(const std::string& path) {
  if (platform::IsReadable(path) || !platform::MeansRefused(platform::LastError())) return {};
  return ": it may not be read. Ask for the right to read it, or copy it to where you may";
}

std::string LastProblem(const CMyStringArray& log) {
  std::string warning;
  std::string error;
  for (const std::string& line : log) {
    if (line.find("[ERROR]") != std::string::npos) error = line;
    if (line.find("[WARNING]") != std::string::npos) warning = line;
  }
  return error.empty() ? warning : error;
}

bool ReadRecordingInput(const std::string& path, SRecordingInput& input, std::string& error, const SGivenFacts& given) {
  const std::string problem = OpenProblem(path);
  if (!problem.empty()) {
    error = path + ": " + problem + RightsHint(path);
    const std::optional<platform::FileStatus> status = platform::GetFileStatus(path);
    input.bUnread = !status || status->bRegular;
    return false;
  }
  CMyStringArray log;
  if (!AnalyseRecordingSet(path, input.recording, log, given) || input.recording.files.empty()) {
    const std::string reason = LastProblem(log);
    input.bUnread = input.recording.bReadFailed;
    const char* const failure =
        input.recording.bReadFailed ? "the recording cannot be read" : "not recognised as an IQ recording";
    error = Format("%s: %s%s%s", path.c_str(), failure, reason.empty() ? "" : ": ", reason.c_str());
    // What a job leaves that is killed before it has written samples.
    const SWrittenFile file = InspectWrittenFile(path);
    if (file.state == EWrittenState::Unfinished && file.format.nBlockAlign > 0) error += "; the file is not finished";
    return false;
  }
  for (const std::string& line : log) {
    if (line.find("[WARNING]") != std::string::npos) input.warnings.push_back(line);
  }
  if (input.recording.files.front().container != EContainer::Wave) return true;
  const std::string& first = input.recording.files.front().strPath;
  std::string unread;
  ReadInfoTexts(first, input.infoTexts, &unread);
  if (unread.empty()) return true;
  input.bUnread = true;
  error = Format("%s: the recording cannot be read: [ERROR] %s: %s", path.c_str(), first.c_str(), unread.c_str());
  return false;
}

}  // namespace carvello
