// Of the machine and the folders: what a report tells.
#pragma once

#include <string>

#include "doctor/report.h"

namespace carvello {

SReportSection SystemSection();
// Those that the programs use by themselves: whether they exist and can be written to, not what is in them.
SReportSection FoldersSection();
// A folder for recordings: its file system, what is free and, with `measure`, its speed.
SReportSection DiskSection(const std::string& folder, bool measure);

}  // namespace carvello
