// The stretch of the input that a job reads: what speed and time left are reckoned by.
#pragma once

#include <vector>

#include "engine/output_entry.h"
#include "input/recording_set.h"

namespace carvello {

// In bytes from the input's first sample.
struct SProgressSpan {
  double dBegin = 0.0;
  double dEnd = 0.0;
  double dInputBytes = 0.0;  // of the whole input, headers and all: what a job's progress is told of

  // The place of a progress told as `share` of the whole input, 0 to 1.
  double PlaceOf(double share) const { return share * dInputBytes; }
};

// From the first sample that one of the entries needs to the last one.
SProgressSpan SpanOf(const std::vector<const OutputEntry*>& entries, const CRecordingSet& recording);

}  // namespace carvello
