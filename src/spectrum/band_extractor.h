// Takes a band out of frames of spectrum, as samples at the middle rate.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "dsp/primitives.h"
#include "fourier/block_transform.h"
#include "fourier/complex_sample.h"
#include "spectrum/band_kernels.h"
#include "spectrum/band_plan.h"

namespace carvello {

// The bins around the band's centre, times the first filter's gains, are a frame's band. Bin b goes to point b modulo
// the count of points, where those that lie a middle rate apart meet, as they do when samples are left out: the inverse
// transform gives the filtered input at every nDecimation-th sample, without a turn from frame to frame, for the hop is
// a multiple of the decimation. The gains' phases move the times by the plan's residue and turn by its constant. Of the
// points, those are taken that have the filter's length of the frame on either side.
//
// Several threads may use one at once.
class CBandExtractor {
 public:
  // Throws std::bad_alloc.
  explicit CBandExtractor(const SBandPlan& plan);
  // With the loops of this instruction set, which the processor must have.
  CBandExtractor(const SBandPlan& plan, EInstructionSet set);

  // Of `spectrum`, kFrameSize bins: plan.SamplesPerFrame() middle samples, those that stand in the frame's hop. `work`
  // has WorkSize() samples; the three are different places.
  void Extract(const SComplex* spectrum, SComplex* samples, SComplex* work) const noexcept;
  std::size_t WorkSize() const noexcept { return 2 * m_nPoints + m_transform.WorkSize(); }

 private:
  // Bins that stand side by side both in the frame and among the points.
  struct SPiece {
    std::size_t nBin;
    std::size_t nGain;
    std::size_t nPoint;
    std::size_t nCount;
  };

  void AddPieces(std::int64_t bin, std::size_t gain, std::size_t count);

  const SBandKernels& m_kernels;
  std::size_t m_nPoints;
  std::size_t m_nSkipped;  // points before those that are taken
  std::size_t m_nTaken;
  CBlockTransform m_transform;
  ComplexBuffer m_pGains;  // from the lowest bin on
  std::array<SPiece, 5> m_Pieces{};
  std::size_t m_nPieces = 0;
  std::size_t m_nSetPieces = 0;  // those that fill every point once; the others are added to what is there
};

}  // namespace carvello
