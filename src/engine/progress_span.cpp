#include "engine/progress_span.h"

#include <algorithm>

namespace carvello {

SProgressSpan SpanOf(const std::vector<const OutputEntry*>& entries, const CRecordingSet& recording) {
  const double frameBytes = 2.0 * recording.nBitsPerSample / 8.0;
  SProgressSpan span;
  const auto sampleBytes = static_cast<double>(recording.TotalBytes());
  span.dInputBytes = static_cast<double>(recording.FileBytes());
  span.dBegin = sampleBytes;
  for (const OutputEntry* entry : entries) {
    const double begin = static_cast<double>(entry->nStartSample) * frameBytes;
    const double end =
        entry->nTotalSamples == 0 ? sampleBytes : begin + static_cast<double>(entry->nTotalSamples) * frameBytes;
    span.dBegin = std::min(span.dBegin, begin);
    span.dEnd = std::max(span.dEnd, end);
  }
  return span;
}

}  // namespace carvello
