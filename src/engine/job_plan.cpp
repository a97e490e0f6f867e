#include "engine/job_plan.h"

#include <algorithm>
#include <map>
#include <new>
#include <set>
#include <utility>

#include "engine/background_thread_base.h"
#include "engine/block_reader.h"
#include "engine/existing_output.h"
#include "engine/input_file.h"
#include "input/wave_file_reader.h"
#include "support/formatting.h"
#include "support/platform.h"
#include "support/text.h"

namespace carvello {

namespace {

// Files that are open besides the outputs: the input, those that are looked at once more when they are closed, what the
// program itself and the desktop have open.
constexpr std::size_t kOtherFiles = 200;

}  // namespace

CJobPlan::CJobPlan(const std::vector<const OutputEntry*>& entries, CRecordingSet recording, const SJobOptions& options)
    : m_recording(std::move(recording)), m_options(options), m_isLeftOut(entries.size(), false) {
  for (const OutputEntry* entry : entries) m_entries.push_back(*entry);
  if (!m_recording.files.empty()) m_strPlace = m_recording.files.front().strPath;
}

void CJobPlan::Look() noexcept {
  try {
    FindObstacle();
    if (m_obstacle) return;
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
      if (m_isLeftOut[i]) continue;
      LookAt(m_entries[i].strFileName);
      if (!m_folders.ExistingOutputFiles(m_entries[i]).empty()) ++m_nExisting;
    }
  } catch (const std::bad_alloc&) {
    m_obstacle = SObstacle{EStartResult::NoThread, kNotEnoughMemory};
  }
}

void CJobPlan::Choose(bool overwrite) noexcept {
  try {
    ChooseEntries(overwrite);
  } catch (const std::bad_alloc&) {
    m_obstacle = SObstacle{EStartResult::NoThread, kNotEnoughMemory};
  }
}

void CJobPlan::ChooseEntries(bool overwrite) {
  std::vector<const OutputEntry*> entries;
  for (const OutputEntry& entry : m_entries) entries.push_back(&entry);
  const CExistingOutputs outputs(entries, m_recording, m_folders);
  for (std::size_t i = 0; i < m_entries.size(); ++i) {
    if (m_isLeftOut[i]) continue;
    LookAt(m_entries[i].strFileName);
    const SExistingOutput existing = overwrite ? SExistingOutput() : outputs.Find(m_entries[i]);
    const bool again = existing.kind == EExistingOutput::Incomplete;
    if (again) m_notes.push_back("[WARNING] " + existing.strReason + ", it is done again");
    if (existing.kind == EExistingOutput::Other) {
      // Where nobody is asked, an output that was never made is told of as a failure.
      if (m_options.bLeaveOutUnwritable) {
        m_leftOut.push_back({i, existing.strReason});
      } else {
        m_notes.push_back("[WARNING] " + existing.strReason);
      }
    }
    if (existing.kind != EExistingOutput::None && !again) continue;
    m_chosen.push_back(
        {i, {.bReplace = overwrite || again, .bSync = m_options.bSync, .bCountFrames = m_options.bCountFrames}});
  }
}

// What makes a job impossible from the outset.
void CJobPlan::FindObstacle() {
  if (const auto problem = InputProblem(m_recording)) {
    const bool refused = !m_recording.files.empty() && !platform::IsReadable(m_recording.files.front().strPath);
    m_obstacle = SObstacle{EStartResult::InputUnsupported, problem->strText, refused ? platform::LastError() : 0};
    return;
  }
  LeaveOutUnwritable();
  if (m_obstacle) return;
  // Each output is a file, and may have a meta file; of a split one, part 0 stays locked until the last one is closed.
  std::size_t files = kOtherFiles;
  for (const OutputEntry& entry : m_entries) files += (IsOneFile(entry) ? 1U : 2U) + (HasMeta(entry) ? 1U : 0U);
  if (const std::size_t allowed = platform::AllowOpenFiles(files); allowed < files) {
    m_obstacle =
        SObstacle{EStartResult::NoThread,
                  Format("Up to %d files would be open at a time, and the system allows this program %d: raise that "
                         "limit, or cut fewer entries at a time",
                         static_cast<int>(files), static_cast<int>(allowed))};
  }
}

// Either the first problem is an obstacle, or each takes its entry out of the job.
void CJobPlan::LeaveOutUnwritable() {
  const std::vector<std::string> inputFiles = m_recording.AllFiles();
  std::vector<std::string> problems(m_entries.size());
  std::map<std::string, std::string> folders;  // and the problem of each
  for (const OutputEntry& entry : m_entries) folders.try_emplace(platform::FolderOf(entry.strFileName));
  for (auto& [folder, problem] : folders) {
    LookAt(folder);
    if (platform::IsWritableFolder(folder)) continue;
    const std::uint32_t error = platform::LastError();
    problem = Format("%s: %s", folder.c_str(), SystemErrorText(error).c_str());
    if (!m_options.bLeaveOutUnwritable) {
      m_obstacle = SObstacle{EStartResult::OutputUnwritable, problem, error};
      return;
    }
  }
  for (std::size_t i = 0; i < m_entries.size(); ++i) {
    const OutputEntry& entry = m_entries[i];
    if (!folders[platform::FolderOf(entry.strFileName)].empty()) continue;
    LookAt(entry.strFileName);
    const auto replaced = m_folders.InputFilesReplaced(entry, inputFiles);
    if (!m_folders.Problem().empty()) {
      problems[i] = m_folders.Problem();
      if (!m_options.bLeaveOutUnwritable) {
        m_obstacle = SObstacle{EStartResult::OutputUnwritable, problems[i]};
        return;
      }
    }
    if (!replaced.empty()) {
      problems[i] = Format("%s would replace the input file %s", entry.strFileName.c_str(), replaced.front().c_str());
      if (!m_options.bLeaveOutUnwritable) {
        m_obstacle = SObstacle{EStartResult::OutputIsInput, problems[i]};
        return;
      }
    }
  }
  for (std::size_t i = 0; i < m_entries.size(); ++i) {
    if (problems[i].empty()) problems[i] = folders[platform::FolderOf(m_entries[i].strFileName)];
    if (problems[i].empty()) continue;
    m_isLeftOut[i] = true;
    m_leftOut.push_back({i, problems[i]});
  }
}

void CJobPlan::LookAt(const std::string& path) {
  const CLockGuard lock(m_lock);
  m_strPlace = path;
}

std::string CJobPlan::Place() const {
  const CLockGuard lock(m_lock);
  return m_strPlace;
}

std::optional<SInputProblem> InputProblem(const CRecordingSet& recording) {
  if (recording.files.empty()) return SInputProblem{"The input holds no files"};
  // Read as the job will read it: the analysis finds its way through files that a stream from front to back does not.
  const SRecordingFile& first = recording.files.front();
  const std::string& name = first.strPath;
  if (first.container != EContainer::Wave) {
    CInputFile file;
    file.Describe(recording.kind, recording.format);
    if (file.Open(first)) return std::nullopt;
    return SInputProblem{file.Problem(), true};
  }
  CWaveFileReader file;
  WAVEFORMATEXTENSIBLE format;
  std::int64_t dataSize = 0;
  std::string reason;
  if (!file.Open(name) || !file.ParseWave(format, dataSize)) {
    reason = file.Log().IsEmpty() ? "cannot be read" : file.Log()[file.Log().Size() - 1];
  } else if (!KindOfWave(format).IsKnown()) {
    reason = UnsupportedFormatText(format);
  }
  const bool unread = file.ErrorCode() != 0;
  file.Close();
  if (reason.empty()) return std::nullopt;
  return SInputProblem{name + ": " + reason, unread};
}

}  // namespace carvello
