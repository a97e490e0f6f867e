#include "engine/expected_size.h"

#include "engine/output_stretch.h"

namespace carvello {

std::int64_t ExpectedBytes(const OutputEntry& entry, const CInputFrames& input) {
  const std::int64_t frames = OutputFramesOf(entry, input.Due(entry, 0));
  const std::int64_t bytesPerValue = entry.nBitsPerSample / 8;
  return 2 * frames * bytesPerValue;  // I and Q
}

double ExpectedSeconds(const OutputEntry& entry, const CInputFrames& input) {
  if (entry.nInputSampleRate == 0) return 0;
  return static_cast<double>(input.Due(entry, 0)) / entry.nInputSampleRate;
}

}  // namespace carvello
