// Any bytes as the plan of tasks: recordings and tasks that belong together, or one short printable text.
#include "cluster/work_plan.h"

#include "fuzz_checks.h"

using namespace carvello;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  SWorkPlan plan;
  std::string error;
  if (!ParseWorkPlan(fuzz::Text(bytes, count), "night.json", plan, error)) {
    fuzz::Require(error.find("night.json") != std::string::npos);
    fuzz::RequirePrintable(error, true);
    return 0;
  }
  fuzz::Require(!plan.tasks.empty());
  for (std::size_t i = 0; i < plan.tasks.size(); ++i) {
    const SPlannedTask& task = plan.tasks[i];
    fuzz::Require(task.nRecording < plan.recordings.size() && task.nFrom >= 0 && task.nFrom < task.nTo);
    if (i == 0) continue;
    const SPlannedTask& before = plan.tasks[i - 1];
    fuzz::Require(before.nRecording < task.nRecording ||
                  (before.nRecording == task.nRecording && before.nTo <= task.nFrom));
  }
  for (const SPlannedRecording& recording : plan.recordings) fuzz::Require(recording.nFrames >= 0);
  return 0;
}
