#include "fir_stage.h"

#include <algorithm>
#include <array>

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

CFirStage::CFirStage(const SStagePlan& plan, std::size_t inputLead, std::size_t outputLead)
    : m_Plan(plan),
      m_pTable(SharedFirTable(plan)),
      m_nWholeStep(plan.nStep / plan.nPhases),
      m_nPhaseStep(plan.nStep % plan.nPhases),
      m_nInputLead(inputLead),
      m_nOutputLead(outputLead) {
  m_History.resize(2 * m_pTable->TapCount());
  // The middle tap meets number -outputLead * nStep first. What the taps before it meet and is not given is zero.
  const std::size_t nTapsBefore = m_pTable->MiddleTap() + outputLead * plan.nStep;
  if (nTapsBefore >= inputLead) {
    m_nHeld = nTapsBefore - inputLead;
  } else {
    m_nFirst = inputLead - nTapsBefore;
  }
}

std::int64_t CFirStage::Resume(std::int64_t output) {
  const auto nPhases = static_cast<std::int64_t>(m_Plan.nPhases);
  const auto nStep = static_cast<std::int64_t>(m_Plan.nStep);
  // Whole turns of the phases and the rest apart: the product of a number and the step could pass 64 bits.
  std::int64_t nTurns = output / nPhases;
  std::int64_t nRest = output % nPhases;
  if (nRest < 0) {
    --nTurns;
    nRest += nPhases;
  }
  const std::uint64_t nRestSteps = static_cast<std::uint64_t>(nRest) * m_Plan.nStep;  // both factors are below 2^32
  const std::int64_t nMiddle = nTurns * nStep + static_cast<std::int64_t>(nRestSteps / m_Plan.nPhases);
  const std::int64_t nFirstTap = nMiddle - static_cast<std::int64_t>(m_pTable->MiddleTap());
  const std::int64_t nInput = std::max(nFirstTap, -static_cast<std::int64_t>(m_nInputLead));
  m_nPhase = nRestSteps % m_Plan.nPhases;
  m_nFirst = 0;
  m_nHeld = static_cast<std::size_t>(nInput - nFirstTap);
  std::fill_n(m_History.begin(), m_nHeld, SComplex{});
  return nInput;
}

std::size_t CFirStage::OutputLead(const SStagePlan& plan, std::size_t inputLead) {
  const auto pTable = SharedFirTable(plan);
  const std::size_t nTapsBehind = pTable->TapCount() - 1 - pTable->MiddleTap();
  return (inputLead + nTapsBehind) / plan.nStep;
}

std::size_t CFirStage::MaxOutput(std::size_t count) const {
  return static_cast<std::size_t>(static_cast<double>(count) / m_Plan.Ratio()) + 2 + m_nOutputLead;
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
  const bool bCubic = m_pTable->IsCubic();
  const auto kernel = bCubic ? Kernels().FirCubic : Kernels().FirPhases;
  const std::uint64_t nPhases = m_Plan.nPhases;
  std::array<SDot, 64> dots;
  std::size_t nOutput = 0;
  // Kept here while many are worked out, and without a branch: which outputs pass a whole sample more is hard to
  // foresee.
  std::size_t nFirst = m_nFirst;
  std::uint64_t nPhase = m_nPhase;
  while (nFirst < firstTaps) {
    std::size_t nDots = 0;
    for (; nDots < dots.size() && nFirst < firstTaps; ++nDots) {
      dots[nDots] = {nFirst, nPhase, 0.0f};
      nPhase += m_nPhaseStep;
      const std::uint64_t nCarry = nPhase >= nPhases ? 1 : 0;
      nPhase -= nPhases & (0 - nCarry);
      nFirst += m_nWholeStep + nCarry;
    }
    if (bCubic) {
      for (std::size_t i = 0; i < nDots; ++i) PlaceInCubics(dots[i]);
    }
    kernel(Floats(samples), dots.data(), nDots, m_pTable->Rows(), m_pTable->TapCount(), Floats(output + nOutput));
    nOutput += nDots;
  }
  m_nFirst = nFirst;
  m_nPhase = nPhase;
  return nOutput;
}

// From the phase to its row and the place within it.
void CFirStage::PlaceInCubics(SDot& dot) const {
  const std::uint64_t nPosition = dot.nRow * CFirTable::kCubicRows;
  dot.nRow = nPosition / m_Plan.nPhases;
  dot.fFraction =
      static_cast<float>(static_cast<double>(nPosition % m_Plan.nPhases) / static_cast<double>(m_Plan.nPhases));
}

}  // namespace vantrel
