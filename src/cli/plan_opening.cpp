#include "cli/plan_opening.h"

#include "cli/console.h"

namespace carvello {

EExit OpenPlan(const std::string& path, SWorkPlan& plan) {
  std::string error;
  bool unreadable = false;
  if (ReadWorkPlan(path, plan, error, unreadable)) return EExit::Ok;
  PrintMessageLines(error);
  return unreadable ? EExit::TryAgain : EExit::Usage;
}

}  // namespace carvello
