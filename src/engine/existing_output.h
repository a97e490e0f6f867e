// What an earlier job has left of an entry's output.
#pragma once

#include <string>
#include <vector>

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
};

// Looks at the ends of the files, not at their samples.
SExistingOutput FindExistingOutput(const OutputEntry& entry, const CRecordingSet& recording, COutputFolders& folders);

}  // namespace carvello
