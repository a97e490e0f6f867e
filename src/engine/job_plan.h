// CJobPlan: what disks tell of a job before it begins, and what it will do. It owns all that it looks at, so it can do
// so on any thread, and longer than whoever asked wants to know.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "engine/job_options.h"
#include "engine/output_entry.h"
#include "engine/output_files.h"
#include "input/recording_set.h"
#include "recording/write_policy.h"
#include "support/mutex.h"

namespace carvello {

class CJobPlan {
 public:
  struct SObstacle {
    EStartResult result;
    std::string strText;
    std::uint32_t nError = 0;  // the system's code, where it is the system that refuses the file or folder
  };
  // What will be written, and how.
  struct SChosen {
    std::size_t nEntry;  // its index
    SWritePolicy policy;
  };
  // What cannot be written, or not without the consent of the user whose other file stands in its place, and why.
  struct SLeftOut {
    std::size_t nEntry;
    std::string strReason;
  };

  CJobPlan(const std::vector<const OutputEntry*>& entries, CRecordingSet recording, const SJobOptions& options);

  // Finds what makes the job impossible, before anything is created, and which outputs exist. First of all, and by one
  // thread at a time with what follows.
  void Look() noexcept;
  // With consent everything is replaced. Without, only what an earlier job has not finished: that is of no use to
  // anybody.
  void Choose(bool overwrite) noexcept;

  // The path that is looked at now; at any moment, on any thread.
  std::string Place() const;

  // When nothing looks any more:
  const std::optional<SObstacle>& Obstacle() const { return m_obstacle; }
  std::size_t Existing() const { return m_nExisting; }
  const std::vector<SChosen>& Chosen() const { return m_chosen; }
  const std::vector<SLeftOut>& LeftOut() const { return m_leftOut; }
  const std::vector<std::string>& Notes() const { return m_notes; }  // for the log: what became of files that exist
  const CRecordingSet& Recording() const { return m_recording; }
  const SJobOptions& Options() const { return m_options; }

 private:
  void FindObstacle();
  void LeaveOutUnwritable();
  void ChooseEntries(bool overwrite);
  void LookAt(const std::string& path);

  std::vector<OutputEntry> m_entries;
  CRecordingSet m_recording;
  SJobOptions m_options;
  COutputFolders m_folders;
  std::vector<bool> m_isLeftOut;  // of each entry
  std::optional<SObstacle> m_obstacle;
  std::size_t m_nExisting = 0;
  std::vector<SChosen> m_chosen;
  std::vector<SLeftOut> m_leftOut;
  std::vector<std::string> m_notes;
  mutable CMutex m_lock;
  std::string m_strPlace CARVELLO_GUARDED_BY(m_lock);
};

struct SInputProblem {
  std::string strText;   // names the file and what is accepted
  bool bUnread = false;  // the system did not let it be read; else what was read is nothing that a job takes
};
// Why no job can read this recording; nothing when one can.
std::optional<SInputProblem> InputProblem(const CRecordingSet& recording);

}  // namespace carvello
