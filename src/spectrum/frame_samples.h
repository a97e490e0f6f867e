// Gathering the samples of a frame from where they lie in memory.
#pragma once

#include <cstdint>
#include <span>

#include "dsp/primitives.h"
#include "fourier/block_transform.h"
#include "fourier/complex_sample.h"

namespace carvello {

// Samples that lie side by side: nCount of them, the first one being number nFirst of the recording.
struct SSampleStretch {
  std::int64_t nFirst = 0;
  std::int64_t nCount = 0;
  const SComplex* pSamples = nullptr;
};

// The kFrameSize samples of the frame. Samples before `from`, those from `to` on, and those that no stretch has are
// zero.
void GatherFrame(std::int64_t frame, std::int64_t from, std::int64_t to, std::span<const SSampleStretch> stretches,
                 SComplex* samples) noexcept;

// The spectrum of the frame of an entry that begins or ends within it: the samples outside the entry's span count as
// zero, so no other entry's frame serves, but one with the same span. The last one is kept for that. One of a thread.
class CClippedFrame {
 public:
  // Throws std::bad_alloc. The transform has kFrameSize points and outlives this.
  explicit CClippedFrame(const CBlockTransform& transform);

  // Of the frame, all samples but those from `from` to `to` being zero: kFrameSize bins that stay until the next call.
  // The stretches hold all samples that the frame and the span share.
  const SComplex* Spectrum(std::int64_t frame, std::int64_t from, std::int64_t to,
                           std::span<const SSampleStretch> stretches) noexcept;

 private:
  const CBlockTransform& m_transform;
  ComplexBuffer m_pSamples;
  ComplexBuffer m_pWork;
  ComplexBuffer m_pSpectrum;
  bool m_bFilled = false;
  std::int64_t m_nFrame = 0;
  std::int64_t m_nFrom = 0;
  std::int64_t m_nTo = 0;
};

}  // namespace carvello
