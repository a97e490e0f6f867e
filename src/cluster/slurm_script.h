// What a plan's tasks and its join need of a machine, and the script by which Slurm runs them.
#pragma once

#include <cstdint>
#include <string>

#include "cluster/work_plan.h"

namespace carvello {

struct STaskNeeds {
  unsigned nProcessors = 1;
  std::int64_t nMegabytes = 0;  // of memory
  std::int64_t nSeconds = 0;    // that no task should reach
};

// Of the largest task, reckoned from the plan: what reading its stretch takes on a slow disk, and what its entries take
// of processors. `bytesPerFrame` and `nanoseconds` (for each frame of the input) are the dearest recording's.
STaskNeeds NeedsOf(const SWorkPlan& plan, std::uint32_t bytesPerFrame, double nanosecondsPerFrame);

// Of the join, which reads and writes `outputBytes` in all.
STaskNeeds JoinNeedsOf(const SWorkPlan& plan, double outputBytes);

// A script that is run by hand: it submits itself as an array of jobs, and behind it the join. What is worth another
// try is put into the queue again, three times. More tasks than Slurm takes in an array are done several by each job.
// With the word "join" it submits the join alone.
std::string SlurmScript(const SWorkPlan& plan, const std::string& planPath, const STaskNeeds& needs,
                        const STaskNeeds& join, const std::string& program);

}  // namespace carvello
