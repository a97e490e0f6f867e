// Which bins of a spectrum belong together as a signal.
#pragma once

#include <cstddef>
#include <vector>

namespace carvello {

// Bins of one signal.
struct SSignalBand {
  std::size_t nFirst = 0;
  std::size_t nLast = 0;
  std::size_t nPeak = 0;  // the strongest one

  std::size_t Width() const { return nLast - nFirst + 1; }
};

struct SSignalSearch {
  // Of every bin: the power above the noise's that its signal is told by, and how far the bin stands out of the noise:
  // 1 or more for one that belongs to a signal when a neighbour is a signal for sure, kSure or more for that one.
  std::vector<float> powers;
  std::vector<float> standing;
  std::vector<bool> brief;  // whether it stands out in bursts only
  double dBinWidth = 1.0;   // Hz
  double dRaster = 0.0;     // Hz; 0 for none

  static constexpr float kSure = 2.0f;
};

// From the lowest frequency up. What the window's side lobes make of a strong line is not taken for a signal. Bands are
// parted where the power falls by 9 dB below both sides (5 dB between two lines). Some of them are put together again:
// lines in even steps (a tone that modulates a frequency), and what stands as a mirror image on both sides of a
// stronger carrier, at most 4.9 kHz and half the raster away (an amplitude's modulation). Bursts at the edge of a wide
// band are its own.
std::vector<SSignalBand> FindSignalBands(const SSignalSearch& search);

// Where between bins the line stands that is strongest in this one, by its neighbours: -0.5 to 0.5, under a window of
// Hann.
double LinePlace(float below, float peak, float above);

}  // namespace carvello
