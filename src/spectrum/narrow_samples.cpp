#include "spectrum/narrow_samples.h"

#include <algorithm>
#include <new>

#include "spectrum/spectrum_grid.h"

namespace carvello {

CNarrowSamples::CNarrowSamples(const SBandPlan& plan)
    : m_transform(static_cast<std::size_t>(kFrameSize)),
      m_extractor(plan),
      m_pSpectrum(AllocComplex(kFrameSize)),
      m_pWork(AllocComplex(static_cast<std::int64_t>(std::max(m_transform.WorkSize(), m_extractor.WorkSize())))) {
  if (!m_pSpectrum || !m_pWork) throw std::bad_alloc();
}

void CNarrowSamples::Take(const SComplex* frame, SComplex* samples) noexcept {
  m_transform.Forward(frame, m_pSpectrum.get(), m_pWork.get());
  m_extractor.Extract(m_pSpectrum.get(), samples, m_pWork.get());
}

}  // namespace carvello
