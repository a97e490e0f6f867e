#include "stage_plan.h"

#include <cmath>
#include <limits>
#include <numeric>
#include <utility>

#include "alias_filter.h"
#include "fir_table.h"
#include "kernels.h"

namespace vantrel {
namespace {

// Of the output rate.
constexpr double kPassEdge = 0.45;
constexpr double kStopEdge = 0.55;

constexpr std::uint64_t kLargestDecimation = 64;
constexpr std::size_t kMostDecimators = 6;
// The channel filter's input rate is at least this many output rates when a decimator stands before it: below, the
// decimator's bands leave so little room that its delay shows.
constexpr double kSmallestLastRatio = 1.4;
// Designing a longer alias filter takes longer than a user cares to wait.
constexpr double kMostAliasTaps = 160.0;

// What the kernels take for an output sample, measured in the time of a tap of a filter with one phase.
constexpr double kOutputWork = 4.0;
constexpr double kPhasesTapWork = 1.6;
constexpr double kCubicTapWork = 3.0;
// A decimation whose steps are whole vectors loads its samples faster, and the kernel's own one (kFastStride) faster
// still while its taps are few.
constexpr double kAlignedTapWork = 0.8;
constexpr double kFastTapWork = 0.45;

double AliasFilterWork(std::uint64_t decimation, double taps) {
  const double fTaps = std::ceil(taps / static_cast<double>(kTapGranule)) * static_cast<double>(kTapGranule);
  if (decimation == kFastStride && fTaps <= kMostFastTaps) return kFastTapWork * fTaps + 2.0 * kOutputWork;
  return (decimation % kTapGranule == 0 ? kAlignedTapWork : 1.0) * fTaps + kOutputWork;
}

// Taps of a Kaiser low-pass, times its transition in cycles per sample.
constexpr double kLowPassTaps = 7.53;

// Depth-first over all sequences of decimations, cut off where the work exceeds that of the best one known. Rates are
// counted in output rates, work per output sample.
class CPlanSearch {
 public:
  CPlanSearch(std::uint64_t numerator, std::uint64_t denominator)
      : m_nNumerator(numerator), m_nDenominator(denominator) {
    From(static_cast<double>(numerator) / static_cast<double>(denominator), 1, 0.0);
  }

  const std::vector<std::uint64_t>& Best() const { return m_Best; }

 private:
  void From(double rate, std::uint64_t decimation, double work) {
    const double fWork = work + ChannelFilterWork(rate, decimation);
    if (fWork < m_fLeastWork) {
      m_fLeastWork = fWork;
      m_Best = m_Current;
    }
    if (m_Current.size() == kMostDecimators) return;
    for (std::uint64_t nFactor = kLargestDecimation; nFactor >= 2; --nFactor) {
      const double fNext = rate / static_cast<double>(nFactor);
      if (fNext < kSmallestLastRatio) continue;
      const double fTaps = AliasFilterTapsPerInput(fNext) * static_cast<double>(nFactor);
      if (fTaps > kMostAliasTaps) continue;
      const double fNextWork = work + fNext * AliasFilterWork(nFactor, fTaps);
      if (fNextWork >= m_fLeastWork) continue;
      m_Current.push_back(nFactor);
      From(fNext, decimation * nFactor, fNextWork);
      m_Current.pop_back();
    }
  }

  double ChannelFilterWork(double inputRate, std::uint64_t decimation) const {
    const std::uint64_t nPhases = PlanChannelFilter(m_nNumerator, m_nDenominator * decimation).nPhases;
    double fTapWork = 1.0;
    if (nPhases > 1) fTapWork = nPhases > CFirTable::kMostExactPhases ? kCubicTapWork : kPhasesTapWork;
    return fTapWork * kLowPassTaps * inputRate / (kStopEdge - kPassEdge) + kOutputWork;
  }

  std::uint64_t m_nNumerator;
  std::uint64_t m_nDenominator;
  std::vector<std::uint64_t> m_Current;
  std::vector<std::uint64_t> m_Best;
  double m_fLeastWork = std::numeric_limits<double>::infinity();
};

}  // namespace

SStagePlan PlanChannelFilter(std::uint64_t numerator, std::uint64_t denominator) {
  const std::uint64_t nCommon = std::gcd(numerator, denominator);
  SStagePlan stage;
  stage.nStep = numerator / nCommon;
  stage.nPhases = denominator / nCommon;
  stage.fPassEdge = kPassEdge / stage.Ratio();
  stage.fStopEdge = kStopEdge / stage.Ratio();
  return stage;
}

std::vector<SStagePlan> PlanStages(std::uint64_t numerator, std::uint64_t denominator) {
  if (numerator == denominator) return {};
  double rate = static_cast<double>(numerator) / static_cast<double>(denominator);
  const CPlanSearch search(numerator, denominator);

  std::vector<SStagePlan> stages;
  std::uint64_t nDecimation = 1;
  for (const std::uint64_t nFactor : search.Best()) {
    SStagePlan stage;
    stage.kind = SStagePlan::EKind::AliasBands;
    stage.nStep = nFactor;
    stage.fPassEdge = kPassEdge / rate;
    // The channel filter lets nothing through from its stop edge on, so what folds to there need not be gone.
    stage.fStopEdge = kStopEdge / rate;
    stages.push_back(stage);
    rate /= static_cast<double>(nFactor);
    nDecimation *= nFactor;
  }
  SStagePlan channelFilter = PlanChannelFilter(numerator, denominator * nDecimation);
  channelFilter.decimators = stages;
  stages.push_back(std::move(channelFilter));
  return stages;
}

}  // namespace vantrel
