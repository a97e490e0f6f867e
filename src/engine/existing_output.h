// What an earlier job has left of an entry's output.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "engine/input_frames.h"
#include "engine/output_entry.h"
#include "engine/output_files.h"
#include "input/recording_set.h"

namespace carvello {

enum class EExistingOutput {
  None,
  Whole,       // finished files that hold all frames that the entry is due
  Incomplete,  // the files of a job that was killed or stopped: to be done again
  Other,       // another recording, or none at all: not to be replaced unasked
};

struct SExistingOutput {
  EExistingOutput kind = EExistingOutput::None;
  std::vector<std::string> files;  // full paths
  std::string strReason;           // what is wrong with it, unless it is whole
  bool bUnread = false;            // the system does not tell what is there
};

// Judges what earlier jobs over these entries, or over some of them, have left. Which of them begins a job decides
// whether all of the job begin late, so a finished output without an end is whole with what any such job owed it.
class CExistingOutputs {
 public:
  CExistingOutputs(const std::vector<const OutputEntry*>& entries, const CRecordingSet& recording,
                   COutputFolders& folders);

  // Looks at the ends of the files, not at their samples.
  SExistingOutput Find(const OutputEntry& entry) const;

 private:
  SExistingOutput FindIn(std::vector<std::string> files, const OutputEntry& entry) const;
  std::set<std::int64_t> FramesDue(const OutputEntry& entry) const;

  CInputFrames m_input;
  COutputFolders& m_folders;
  std::set<std::int64_t> m_late;  // frames by which such a job can begin late
};

}  // namespace carvello
