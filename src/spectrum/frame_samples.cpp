#include "spectrum/frame_samples.h"

#include <algorithm>
#include <new>

#include "spectrum/spectrum_grid.h"

namespace carvello {

void GatherFrame(std::int64_t frame, std::int64_t from, std::int64_t to, std::span<const SSampleStretch> stretches,
                 SComplex* samples) noexcept {
  const std::int64_t nFirst = FrameFirst(frame);
  std::fill_n(samples, kFrameSize, SComplex{});
  for (const SSampleStretch& stretch : stretches) {
    const std::int64_t nBegin = std::max({stretch.nFirst, nFirst, from});
    const std::int64_t nEnd = std::min({stretch.nFirst + stretch.nCount, nFirst + kFrameSize, to});
    if (nBegin < nEnd)
      std::copy_n(stretch.pSamples + (nBegin - stretch.nFirst), nEnd - nBegin, samples + (nBegin - nFirst));
  }
}

CClippedFrame::CClippedFrame(const CBlockTransform& transform)
    : m_transform(transform),
      m_pSamples(AllocComplex(kFrameSize)),
      m_pWork(AllocComplex(static_cast<std::int64_t>(transform.WorkSize()))),
      m_pSpectrum(AllocComplex(kFrameSize)) {
  if (!m_pSamples || !m_pWork || !m_pSpectrum) throw std::bad_alloc();
}

const SComplex* CClippedFrame::Spectrum(std::int64_t frame, std::int64_t from, std::int64_t to,
                                        std::span<const SSampleStretch> stretches) noexcept {
  // The part of the span that lies in the frame makes all of it.
  from = std::max(from, FrameFirst(frame));
  to = std::min(to, FrameEnd(frame));
  if (!m_bFilled || frame != m_nFrame || from != m_nFrom || to != m_nTo) {
    GatherFrame(frame, from, to, stretches, m_pSamples.get());
    m_transform.Forward(m_pSamples.get(), m_pSpectrum.get(), m_pWork.get());
    m_bFilled = true;
    m_nFrame = frame;
    m_nFrom = from;
    m_nTo = to;
  }
  return m_pSpectrum.get();
}

}  // namespace carvello
