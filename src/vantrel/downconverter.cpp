#include "downconverter.h"

#include <algorithm>
#include <cmath>
#include <iomanip>
#include <sstream>
#include <utility>

#include "kernels.h"
#include "stage_plan.h"

namespace vantrel {
namespace {

// The samples that pass through all stages before the next ones follow: few enough to stay in the nearest cache.
constexpr std::size_t kPiece = 4096;

// No signal has as many samples; numbers up to there leave room in 64 bits for all that is reckoned with them.
constexpr double kMostSamples = 0x1p61;

}  // namespace

void CDownconverter::Init(std::uint32_t inputRate, std::uint32_t outputRate) {
  m_nInputRate = inputRate;
  m_nOutputRate = outputRate;
  Build();
}

void CDownconverter::DisableFractionalResampler() {
  m_bWholeNumber = true;
  Build();
}

void CDownconverter::ExcludeFirstStage(bool exclude) {
  m_bExcludeFirst = exclude;
  Build();
}

void CDownconverter::RunFirstStageOnly(bool only) {
  m_bFirstOnly = only;
  Build();
}

void CDownconverter::Build() {
  m_bReady = false;
  m_Chain.clear();
  if (m_nOutputRate == 0 || m_nOutputRate > m_nInputRate) return;

  std::uint64_t nNumerator = m_nInputRate;
  std::uint64_t nDenominator = m_nOutputRate;
  if (m_bWholeNumber) {
    nNumerator = (nNumerator + nDenominator / 2) / nDenominator;
    nDenominator = 1;
  }
  std::vector<SStagePlan> plans = PlanStages(nNumerator, nDenominator);

  m_fRateIn = m_nInputRate;
  if (m_bFirstOnly && plans.size() > 1) plans.resize(1);
  if (m_bExcludeFirst && !plans.empty()) {
    m_fRateIn /= plans.front().Ratio();
    plans.erase(plans.begin());
  }
  m_fRateOut = m_fRateIn;
  std::size_t nPiece = kPiece;
  std::vector<SLink> chain;
  chain.reserve(plans.size());
  std::size_t nLead = 0;
  for (const SStagePlan& plan : plans) {
    // Number 0 is the first that leaves the chain.
    const std::size_t nOutputLead = &plan == &plans.back() ? 0 : CFirStage::OutputLead(plan, nLead);
    CFirStage stage(plan, nLead, nOutputLead);
    nLead = nOutputLead;
    nPiece = stage.MaxOutput(nPiece);
    const double fInputRate = m_fRateOut;
    m_fRateOut /= plan.Ratio();
    chain.push_back({std::move(stage), std::vector<SComplex>(nPiece), fInputRate, m_fRateOut});
  }
  m_Chain = std::move(chain);
  m_bReady = true;
}

std::uint32_t CDownconverter::RateIn() const {
  return m_bReady ? static_cast<std::uint32_t>(std::llround(m_fRateIn)) : 0;
}

std::uint32_t CDownconverter::RateOut() const {
  return m_bReady ? static_cast<std::uint32_t>(std::llround(m_fRateOut)) : 0;
}

std::optional<std::int64_t> CDownconverter::Resume(std::int64_t firstOutput) {
  if (!m_bReady || firstOutput < 0) return std::nullopt;
  if (static_cast<double>(firstOutput) * (m_fRateIn / m_fRateOut) > kMostSamples) return std::nullopt;
  // From the last stage to the first: what a stage needs is what the one before it has to give next.
  std::int64_t nNumber = firstOutput;
  for (auto link = m_Chain.rbegin(); link != m_Chain.rend(); ++link) nNumber = link->stage.Resume(nNumber);
  return nNumber;
}

std::size_t CDownconverter::Process(const SComplex* input, std::size_t count, SComplex* output) {
  if (!m_bReady) return 0;
  std::size_t nOutput = 0;
  while (count > 0) {
    const std::size_t nPiece = std::min(count, kPiece);
    nOutput += RunPiece(input, nPiece, output + nOutput);
    input += nPiece;
    count -= nPiece;
  }
  return nOutput;
}

std::size_t CDownconverter::RunPiece(const SComplex* input, std::size_t count, SComplex* output) {
  for (SLink& link : m_Chain) {
    count = link.stage.Process(input, count, link.output.data());
    input = link.output.data();
  }
  std::copy_n(input, count, output);
  return count;
}

std::string CDownconverter::Description() const {
  if (!m_bReady) return "no rates set\n";
  std::ostringstream text;
  text.exceptions(std::ios::badbit);  // a text that memory cuts short tells something else
  text << std::fixed << std::setprecision(3);
  text << m_fRateIn << " to " << m_fRateOut << " samples/s, " << Kernels().pszName << " kernels\n";
  if (m_Chain.empty()) text << "samples pass unchanged\n";
  int nStage = m_bExcludeFirst ? 2 : 1;
  double fDelay = 0.0;
  for (const SLink& link : m_Chain) {
    const SStagePlan& plan = link.stage.Plan();
    const CFirTable& table = link.stage.Table();
    text << "stage " << nStage++ << ": " << link.fInputRate << " to " << link.fOutputRate << ", ";
    if (plan.nPhases == 1) {
      text << "decimation by " << plan.nStep;
    } else {
      text << "resampling by " << plan.nPhases << "/" << plan.nStep;
    }
    text << ", " << table.TapCount() << " taps, ";
    if (table.IsCubic()) {
      text << CFirTable::kCubicRows << " rows of cubics\n";
    } else {
      text << plan.nPhases << (plan.nPhases == 1 ? " phase\n" : " phases\n");
    }
    fDelay += static_cast<double>(table.MiddleTap() + 1) / link.fInputRate;
  }
  text << "an output sample needs input up to " << fDelay * m_fRateOut << " output samples later\n";
  return text.str();
}

}  // namespace vantrel
