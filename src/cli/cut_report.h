// What a "cut" has done, for scripts and for people.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "engine/output_result.h"

namespace carvello {

struct SCutOutput {
  SOutputResult result;
  bool bSkipped = false;    // left out because its files exist already; counts as written
  bool bProcessed = false;  // was part of a job
};

struct SCutReport {
  std::vector<SCutOutput> outputs;  // in list order, over all batches
  std::int64_t nInputBytes = 0;     // sample bytes read, over all batches
  double dElapsedSeconds = 0.0;
  double dCpuSeconds = 0.0;

  bool AllOk() const;
};

// One JSON object, indented, with a line break at its end. Bytes that are no UTF-8 become U+FFFD.
std::string CutReportJson(const SCutReport& report);
// A table of the outputs that were written, and the totals.
std::string CutReportText(const SCutReport& report);

}  // namespace carvello
