// What a task has to write: the parts of outputs that stand in its stretch of the recording.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "cluster/planned_recording.h"
#include "cluster/work_plan.h"

namespace carvello {

struct STaskPart {
  std::size_t nEntry = 0;  // of the recording's list
  SOutputRange range;
  std::string strPath;      // a WAV file
  std::string strManifest;  // what tells that it is complete
};

// The tasks of a recording, one for every `shard` seconds in which any of the entries has samples.
std::vector<SPlannedTask> TasksOf(const COpenRecording& recording, std::size_t number, std::int64_t shard);

// In the order of the entries; those that have nothing in the stretch have no part.
std::vector<STaskPart> PartsOf(const SWorkPlan& plan, std::size_t task, const COpenRecording& recording);

// Whether a file of that name in such a folder is a part, or a manifest.
bool IsPartName(const std::string& name);
// Whether the folder of a recording's parts may be called so.
bool IsPartsFolderName(const std::string& name);

// The folder for what a task has in the making, in that of its recording's parts. What is left of ones that were killed
// stands there, and nothing else.
std::string MakingFolder(const SWorkPlan& plan, std::size_t task);
bool IsMakingFolderName(const std::string& name);
// With all that is in it. False when something is left; the system's last error tells why.
bool RemoveMakingFolder(const std::string& folder);

// The folder in which that of all parts stands, however its name ends.
std::string FolderAboveParts(const SWorkPlan& plan);
// The folder of a recording's parts.
std::string PartsFolder(const SWorkPlan& plan, std::size_t recording);

}  // namespace carvello
