// CCarrierSearch: the frequency of the strongest carrier near a given one, from a stretch of samples.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "fourier/complex_sample.h"

namespace carvello {

// What lies within reach is brought down to a low rate while the samples come in; the frequency is that of the highest
// peak of its spectrum. A steady carrier well above the noise is placed to a hundredth of a period in the whole
// stretch.
class CCarrierSearch {
 public:
  // `rate`: frames a second; frequencies in Hz from the centre.
  CCarrierSearch(double rate, double frequency, double reach);

  // Frames beyond which the spectrum would have more points than a transform can.
  std::int64_t MostFrames() const;
  // The next frames of the stretch.
  void Add(const SComplex* frames, std::int64_t count);
  // Nothing where no peak stands out of what else there is within reach: of noise alone, one would in a thousandth of
  // all cases.
  std::optional<double> Frequency() const;
  // How far apart two carriers have to be to make two peaks, for the frames that were added.
  double Resolution() const;

 private:
  struct SSum {
    double re = 0.0;
    double im = 0.0;
  };

  void AddBlock();
  double PowerAt(double place, const std::vector<SComplex>& points) const;

  const double m_rate;
  const double m_frequency;
  const double m_reach;
  const std::size_t m_nFactor;     // input frames to one of the low rate
  std::vector<SComplex> m_turns;   // of the oscillator, for one block of so many frames
  std::vector<float> m_weights;    // of the filter, four blocks long
  std::vector<SComplex> m_block;   // frames that are no whole block yet
  std::int64_t m_nBlocks = 0;      // so far
  std::vector<SSum> m_sums;        // of the four results that the next block is a part of
  std::vector<SComplex> m_points;  // at the low rate
};

}  // namespace carvello
