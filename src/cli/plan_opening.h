// What every command that works on a plan does first.
#pragma once

#include <string>

#include "cli/exit_codes.h"
#include "cluster/work_plan.h"

namespace carvello {

// Reads the plan. Ok unless that cannot be done; why has been printed then.
EExit OpenPlan(const std::string& path, SWorkPlan& plan);

}  // namespace carvello
