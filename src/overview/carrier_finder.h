// FindCarrier: the strongest carrier near a frequency, read from the recording.
#pragma once

#include <functional>
#include <optional>

#include "engine/frame_source.h"

namespace carvello {

struct SCarrierRequest {
  double dFrequency = 0.0;  // Hz from the centre
  double dReach = 0.0;      // Hz
  double dFirstFrame = 0.0;
  double dFrames = 0.0;
};

// Looks at the middle of the span, for some seconds at most: a stretch from which a steady carrier comes out to far
// less than a tenth of a hertz. Nothing where none stands out, or `goesOn`, which is asked regularly, says false.
std::optional<double> FindCarrier(IFrameSource& source, double rate, const SCarrierRequest& request,
                                  const std::function<bool()>& goesOn);

}  // namespace carvello
