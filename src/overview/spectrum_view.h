// What a window shows of a recording's spectrum, and what is known of it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "spectrum/power_spectrum.h"

namespace carvello {

struct SSpectrumView {
  double dFirstFrame = 0.0;  // time span, in frames of the recording
  double dFrames = 0.0;
  double dLowFrequency = 0.0;  // Hz from the recording's centre
  double dHighFrequency = 0.0;
  int nColumns = 0;  // pixels: column 0 the lowest frequency, row 0 the earliest
  int nRows = 0;
  std::size_t nTransform = 0;  // 0: follows the zoom; else a power of two, 64 to 1,048,576
  EWindow window = EWindow::Hann;
  bool operator==(const SSpectrumView&) const = default;
};

// What the levels in a row of pixels come from.
enum class ERowKnown : std::uint8_t {
  Nothing,     // the recording is not there, or nothing was looked at yet
  Neighbours,  // nothing of its own was looked at: the nearest stretch that was stands in for it
  Stretches,   // some of its samples
  Every,       // all of its samples, or all that this zoom wants
};

// Made by a worker, never changed once it is handed out.
struct SSpectrumPicture {
  SSpectrumView view;
  std::size_t nTransform = 0;               // used
  std::vector<std::uint8_t> mean, maximum;  // nRows x nColumns level codes (spectrum/level_code.h), 0 where unknown
  std::vector<ERowKnown> rows;              // of each row of pixels
  std::vector<float> average, peak;         // dBFS per column over all of the view; -infinity where unknown
  double dKnown = 0.0;                      // 0..1: share of the pixels that show anything
  bool bComplete = false;                   // every row is ERowKnown::Every that has a part in the recording
};

}  // namespace carvello
