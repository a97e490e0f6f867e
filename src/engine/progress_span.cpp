#include "engine/progress_span.h"

#include <algorithm>

#include "engine/input_frames.h"

namespace carvello {

SProgressSpan SpanOf(const std::vector<const OutputEntry*>& entries, const CRecordingSet& recording) {
  const CInputFrames input(recording);
  const double frameBytes = input.BytesPerFrame();
  SProgressSpan span;
  const auto sampleBytes = static_cast<double>(input.Total()) * frameBytes;
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
