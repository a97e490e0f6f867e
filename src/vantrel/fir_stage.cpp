#include "fir_stage.h"

#include <algorithm>
#include <array>

#include "kernels.h"

namespace vantrel {
namespace {

// A complex sample is laid out as the two floats that the kernels take.
const float* Floats(const SComplex* samples) {
  return &samples->re;
}
float* Floats(SComplex* samples) {
  return &samples->re;
}

}  // namespace

CFirStage::CFirStage(const SStagePlan& plan) : m_Plan(plan), m_pTable(SharedFirTable(plan)) {
  m_History.resize(2 * m_pTable->TapCount());
  m_nHeld = m_pTable->MiddleTap();  // zeros, for that tap to meet input sample 0 first
}

std::size_t CFirStage::MaxOutput(std::size_t count) const {
  return static_cast<std::size_t>(static_cast<double>(count) / m_Plan.Ratio()) + 2;
}

std::size_t CFirStage::Process(const SComplex* input, std::size_t count, SComplex* output) {
  // Outputs whose first taps lie in what is held need a filter's length less one of the input at most, joined to it.
  const std::size_t nJoined = std::min(count, m_pTable->TapCount() - 1);
  std::copy_n(input, nJoined, m_History.data() + m_nHeld);
  std::size_t nOutput = Filter(m_History.data(), m_nHeld, m_nHeld + nJoined, output);
  if (m_nFirst < m_nHeld) {
    // They need still more than that, so all of the input has been joined.
    m_nHeld += nJoined;
    if (m_nFirst > 0) {
      std::copy(m_History.data() + m_nFirst, m_History.data() + m_nHeld, m_History.data());
      m_nHeld -= m_nFirst;
      m_nFirst = 0;
    }
    return nOutput;
  }

  // The others are computed where the input stands.
  m_nFirst -= m_nHeld;
  nOutput += Filter(input, count, count, output + nOutput);
  const std::size_t nUsed = std::min(m_nFirst, count);
  m_nFirst -= nUsed;
  m_nHeld = count - nUsed;
  std::copy_n(input + nUsed, m_nHeld, m_History.data());
  return nOutput;
}

// Computes the outputs whose first tap stands before `firstTaps` and whose last one stands before `available`.
std::size_t CFirStage::Filter(const SComplex* samples, std::size_t firstTaps, std::size_t available, SComplex* output) {
  const std::size_t nTaps = m_pTable->TapCount();
  if (available < nTaps) return 0;
  const std::size_t nLimit = std::min(firstTaps, available - nTaps + 1);
  return m_Plan.nPhases == 1 ? FilterSinglePhase(samples, nLimit, output) : FilterPhases(samples, nLimit, output);
}

std::size_t CFirStage::FilterSinglePhase(const SComplex* samples, std::size_t firstTaps, SComplex* output) {
  if (m_nFirst >= firstTaps) return 0;
  const std::size_t nStep = m_Plan.nStep;
  const std::size_t nCount = (firstTaps - 1 - m_nFirst) / nStep + 1;
  Kernels().FirSinglePhase(Floats(samples + m_nFirst), nStep, m_pTable->Rows(), m_pTable->TapCount(), nCount,
                           Floats(output));
  m_nFirst += nCount * nStep;
  return nCount;
}

std::size_t CFirStage::FilterPhases(const SComplex* samples, std::size_t firstTaps, SComplex* output) {
  const auto kernel = m_pTable->IsCubic() ? Kernels().FirCubic : Kernels().FirPhases;
  std::array<SDot, 64> dots;
  std::size_t nOutput = 0;
  while (m_nFirst < firstTaps) {
    std::size_t nDots = 0;
    for (; nDots < dots.size() && m_nFirst < firstTaps; ++nDots) {
      SDot& dot = dots[nDots];
      dot.nFirst = m_nFirst;
      if (m_pTable->IsCubic()) {
        const std::uint64_t nPosition = m_nPhase * CFirTable::kCubicRows;
        dot.nRow = nPosition / m_Plan.nPhases;
        dot.fFraction =
            static_cast<float>(static_cast<double>(nPosition % m_Plan.nPhases) / static_cast<double>(m_Plan.nPhases));
      } else {
        dot.nRow = m_nPhase;
      }
      NextPosition();
    }
    kernel(Floats(samples), dots.data(), nDots, m_pTable->Rows(), m_pTable->TapCount(), Floats(output + nOutput));
    nOutput += nDots;
  }
  return nOutput;
}

void CFirStage::NextPosition() {
  m_nFirst += m_Plan.nStep / m_Plan.nPhases;
  m_nPhase += m_Plan.nStep % m_Plan.nPhases;
  if (m_nPhase >= m_Plan.nPhases) {
    m_nPhase -= m_Plan.nPhases;
    ++m_nFirst;
  }
}

}  // namespace vantrel
