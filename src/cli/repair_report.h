// What "carvello-cli repair" says of its files.
#pragma once

#include <string>
#include <vector>

#include "cli/exit_codes.h"
#include "input/file_repair.h"

namespace carvello {

struct SRepairReport {
  std::string strFile;  // as it was asked for
  SRepairResult result;
  bool bDone = false;  // or only looked at
};

// Of one file, in lines with their breaks: what is wrong, and what became, or would become, of it.
std::string RepairText(const SRepairReport& report);
std::string RepairJson(const std::vector<SRepairReport>& reports);

EExit RepairExit(const SRepairReport& report);

}  // namespace carvello
