// CNarrowSamples: takes a band out of frames of a recording, as samples of a lower rate.
#pragma once

#include "fourier/block_transform.h"
#include "fourier/complex_sample.h"
#include "spectrum/band_extractor.h"
#include "spectrum/band_plan.h"

namespace carvello {

// One of a thread.
class CNarrowSamples {
 public:
  // Throws std::bad_alloc.
  explicit CNarrowSamples(const SBandPlan& plan);

  // Of the kFrameSize samples of a frame of the grid: the plan's SamplesPerFrame() middle samples.
  void Take(const SComplex* frame, SComplex* samples) noexcept;

 private:
  CBlockTransform m_transform;
  CBandExtractor m_extractor;
  ComplexBuffer m_pSpectrum;
  ComplexBuffer m_pWork;
};

}  // namespace carvello
