#include "channel_correction.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>
#include <stdexcept>

#include "fir_table.h"
#include "normal_equations.h"
#include "portable_cosine.h"

namespace vantrel {
namespace {

constexpr std::size_t kFactors = 25;
constexpr std::size_t kChannelPoints = 6 * kFactors;
constexpr std::size_t kFreePoints = 4 * kFactors;
// The errors by which the equations are weighed: in the channel, and beyond it, where the gain must only not grow.
constexpr double kChannelError = 1e-8;
constexpr double kFreeError = 0.1;

double Cosine(double cycles) {
  const double fPart = cycles - std::floor(cycles);
  return PortableCosine(2.0 * std::numbers::pi * std::min(fPart, 1.0 - fPart));
}

// Of a decimator, whose taps are the same on both sides of the middle one.
double Gain(const CFirTable& table, double frequency) {
  const std::size_t nMiddle = table.MiddleTap();
  const auto tap = [&](std::size_t n) { return static_cast<double>(table.Rows()[2 * n]); };
  double fGain = tap(nMiddle);
  for (std::size_t n = 1; n <= nMiddle; ++n) {
    fGain += 2.0 * tap(nMiddle - n) * Cosine(frequency * static_cast<double>(n));
  }
  return fGain;
}

// The squares of the errors at points of frequency, the factors being unknown.
class CEquations {
 public:
  // At `points` frequencies between two, denser towards both: error(frequency) tells the gain wanted and the error by
  // which to weigh.
  template <class TError>
  void AddBand(double from, double to, std::size_t points, TError error) {
    for (std::size_t i = 0; i < points; ++i) {
      const double fAngle = std::numbers::pi * static_cast<double>(i) / static_cast<double>(points - 1);
      const double frequency = 0.5 * (from + to) - 0.5 * (to - from) * PortableCosine(fAngle);
      const auto [fWanted, fError] = error(frequency);
      Add(frequency, fWanted, 1.0 / (fError * fError));
    }
  }

  std::vector<double> Solve() {
    if (!SolveNormalEquations(m_Matrix, m_Right)) throw std::domain_error("the stages leave nothing of the channel");
    return m_Right;
  }

 private:
  void Add(double frequency, double wanted, double weight) {
    std::vector<double> row(kFactors, 1.0);
    for (std::size_t k = 1; k < kFactors; ++k) row[k] = 2.0 * Cosine(frequency * static_cast<double>(k));
    for (std::size_t i = 0; i < kFactors; ++i) {
      for (std::size_t k = 0; k <= i; ++k) m_Matrix[i * kFactors + k] += weight * row[i] * row[k];
      m_Right[i] += weight * row[i] * wanted;
    }
  }

  std::vector<double> m_Matrix = std::vector<double>(kFactors * kFactors);
  std::vector<double> m_Right = std::vector<double>(kFactors);
};

}  // namespace

std::vector<double> ChannelCorrection(const SStagePlan& plan) {
  struct SError {
    double fWanted;
    double fError;
  };
  if (plan.decimators.empty()) return {1.0};
  std::vector<std::shared_ptr<const CFirTable>> tables;
  for (const SStagePlan& decimator : plan.decimators) tables.push_back(SharedFirTable(decimator));

  CEquations equations;
  equations.AddBand(0.0, plan.fStopEdge, kChannelPoints, [&](double frequency) {
    double fGain = 1.0;
    for (std::size_t n = tables.size(); n-- > 0;) {
      frequency /= static_cast<double>(plan.decimators[n].nStep);
      fGain *= Gain(*tables[n], frequency);
    }
    return SError{1.0 / fGain, kChannelError / fGain};
  });
  if (plan.fStopEdge < 0.5) {
    equations.AddBand(plan.fStopEdge, 0.5, kFreePoints, [](double) { return SError{1.0, kFreeError}; });
  }
  return equations.Solve();
}

std::vector<double> CorrectTaps(const std::vector<double>& taps, const std::vector<double>& factors) {
  const std::size_t nReach = factors.size() - 1;
  std::vector<double> corrected(taps.size() - 2 * nReach);
  for (std::size_t i = 0; i < corrected.size(); ++i) {
    corrected[i] = factors[0] * taps[i + nReach];
    for (std::size_t k = 1; k <= nReach; ++k) {
      corrected[i] += factors[k] * (taps[i + nReach - k] + taps[i + nReach + k]);
    }
  }
  return corrected;
}

}  // namespace vantrel
