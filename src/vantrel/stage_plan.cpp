#include "stage_plan.h"

#include <limits>
#include <numeric>

#include "fir_table.h"

namespace vantrel {
namespace {

// Of the output rate.
constexpr double kPassEdge = 0.45;
constexpr double kStopEdge = 0.55;

constexpr std::uint64_t kLargestDecimation = 64;
constexpr std::size_t kMostDecimators = 6;
// The channel filter's input rate is at least this many output rates when a decimator stands before it: below, the
// decimator's transition is so narrow that its delay shows.
constexpr double kSmallestLastRatio = 1.4;

// Forming the taps of a cubic table costs about this much more than taking them from an exact one.
constexpr double kCubicFactor = 2.5;

// Depth-first over all sequences of decimations, cut off where the work exceeds that of the best one known. Rates are
// counted in output rates, work in multiplications per output sample, up to a common factor: a filter's length is
// proportional to its input rate over the width of its transition.
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
      const double fNextWork = work + DecimatorWork(rate, fNext);
      if (fNextWork >= m_fLeastWork) continue;
      m_Current.push_back(nFactor);
      From(fNext, decimation * nFactor, fNextWork);
      m_Current.pop_back();
    }
  }

  static double DecimatorWork(double inputRate, double outputRate) {
    return outputRate * inputRate / (outputRate - kPassEdge - kStopEdge);
  }

  double ChannelFilterWork(double inputRate, std::uint64_t decimation) const {
    const double fWork = inputRate / (kStopEdge - kPassEdge);
    const std::uint64_t nPhases = PlanChannelFilter(m_nNumerator, m_nDenominator * decimation).nPhases;
    return nPhases > CFirTable::kMostExactPhases ? kCubicFactor * fWork : fWork;
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
  SStagePlan stage{numerator / nCommon, denominator / nCommon};
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
    SStagePlan stage{nFactor, 1};
    stage.fPassEdge = kPassEdge / rate;
    // Whatever folds to where the channel filter lets something through must be gone; it removes the rest.
    stage.fStopEdge = 1.0 / static_cast<double>(nFactor) - kStopEdge / rate;
    stages.push_back(stage);
    rate /= static_cast<double>(nFactor);
    nDecimation *= nFactor;
  }
  stages.push_back(PlanChannelFilter(numerator, denominator * nDecimation));
  return stages;
}

}  // namespace vantrel
