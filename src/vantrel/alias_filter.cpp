#include "alias_filter.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <numbers>
#include <stdexcept>

#include "kernels.h"
#include "normal_equations.h"
#include "portable_cosine.h"

namespace vantrel {
namespace {

constexpr double kPassError = 5e-5;
constexpr double kStopError = 1.2e-6;
// Outside the bands the gain counts only as far as it must not grow; this keeps the equations solvable, too.
constexpr double kFreeError = 2.0;

constexpr int kIterations = 6;

// Lengths that are tried, as parts of what AliasFilterTapsPerInput tells. Of six thousand designs none was shorter than
// 0.9 of that, and none longer than 1.6, which is that of very short ones.
constexpr double kLeastOfEstimate = 0.9;
constexpr double kMostOfEstimate = 2.0;

// A frequency where the response is looked at.
struct SGridPoint {
  double fAngle;   // radians per sample
  double fWanted;  // the gain wanted there
  double fScale;   // 1 / the error allowed
  bool bInBand;    // not in the free parts
  double fWeight;  // of the squared error, moved by the iteration
};

class CDesign {
 public:
  CDesign(std::uint64_t decimation, double passEdge, double stopEdge, std::size_t halfLength)
      : m_nUnknowns(halfLength + 1) {
    double fFreeFrom = passEdge;
    AddBand(0.0, passEdge, 1.0, kPassError, true);
    for (std::uint64_t nBand = 1; 2 * nBand <= decimation; ++nBand) {
      const double fMiddle = static_cast<double>(nBand) / static_cast<double>(decimation);
      const double fFrom = fMiddle - stopEdge;
      const double fTo = std::min(fMiddle + stopEdge, 0.5);
      AddBand(fFreeFrom, fFrom, 0.0, kFreeError, false);
      AddBand(fFrom, fTo, 0.0, kStopError, true);
      fFreeFrom = fTo;
    }
    AddBand(fFreeFrom, 0.5, 0.0, kFreeError, false);
  }

  // Whether a filter of this length keeps to the errors allowed.
  bool Solve() {
    for (int i = 0; i < kIterations; ++i) {
      if (!SolveLeastSquares()) return false;
      if (Reweight() <= 1.0) return true;
    }
    return false;
  }

  std::vector<double> Taps() const {
    std::vector<double> taps(2 * m_nUnknowns - 1);
    double fSum = 0.0;
    for (std::size_t i = 0; i < taps.size(); ++i) {
      taps[i] = m_Taps[i < m_nUnknowns ? m_nUnknowns - 1 - i : i - m_nUnknowns + 1];
      fSum += taps[i];
    }
    for (double& tap : taps) tap /= fSum;
    return taps;
  }

 private:
  // Denser towards the edges, where the error is largest. The least number of points has one wherever the error of a
  // very narrow band, which is a polynomial of low degree there, can be largest.
  void AddBand(double from, double to, double wanted, double error, bool inBand) {
    if (to <= from) return;
    const double fPerLobe = inBand ? 16.0 : 4.0;
    const auto nPoints = 9 + static_cast<std::size_t>(fPerLobe * (to - from) * static_cast<double>(2 * m_nUnknowns));
    for (std::size_t i = 0; i < nPoints; ++i) {
      const double fCosine =
          PortableCosine(std::numbers::pi * static_cast<double>(i) / static_cast<double>(nPoints - 1));
      const double frequency = 0.5 * (from + to) - 0.5 * (to - from) * fCosine;
      m_Grid.push_back({2.0 * std::numbers::pi * frequency, wanted, 1.0 / error, inBand, 1.0});
    }
  }

  // The normal equations of the cosine series with the taps as unknowns. What double precision loses lies in the free
  // parts, where it does no harm.
  bool SolveLeastSquares() {
    const std::size_t n = m_nUnknowns;
    // Sums of weight * cos(k angle) make all products of two cosines.
    std::vector<double> products(2 * n - 1);
    std::vector<double> right(n);
    for (const SGridPoint& point : m_Grid) {
      const double fWeight = point.fWeight * point.fScale * point.fScale;
      const double fTwiceCosine = 2.0 * PortableCosine(point.fAngle);
      double fBefore = PortableCosine(point.fAngle);
      double fCosine = 1.0;
      for (std::size_t k = 0; k < products.size(); ++k) {
        products[k] += fWeight * fCosine;
        if (k < n) right[k] += fWeight * point.fWanted * fCosine;
        const double fNext = fTwiceCosine * fCosine - fBefore;
        fBefore = fCosine;
        fCosine = fNext;
      }
    }
    std::vector<double> matrix(n * n);
    for (std::size_t i = 0; i < n; ++i) {
      for (std::size_t k = 0; k <= i; ++k) matrix[i * n + k] = 0.5 * (products[i - k] + products[i + k]);
    }
    m_Taps = right;
    if (!SolveNormalEquations(matrix, m_Taps)) return false;
    for (std::size_t i = 1; i < n; ++i) m_Taps[i] *= 0.5;  // every cosine but the first is two taps
    return true;
  }

  // Moves the weights towards the largest errors; returns the largest one, in units of what is allowed.
  double Reweight() {
    double fLargest = 0.0;
    double fSquares = 0.0;
    std::size_t nInBand = 0;
    std::vector<double> errors(m_Grid.size());
    for (std::size_t i = 0; i < m_Grid.size(); ++i) {
      const SGridPoint& point = m_Grid[i];
      if (!point.bInBand) continue;
      errors[i] = std::abs(Gain(point.fAngle) - point.fWanted) * point.fScale;
      fLargest = std::max(fLargest, errors[i]);
      fSquares += errors[i] * errors[i];
      ++nInBand;
    }
    const double fRms = std::sqrt(fSquares / static_cast<double>(nInBand));
    for (std::size_t i = 0; i < m_Grid.size(); ++i) {
      if (m_Grid[i].bInBand) m_Grid[i].fWeight *= std::max(errors[i] / fRms, 1e-3);
    }
    return fLargest;
  }

  double Gain(double angle) const {
    double fGain = m_Taps[0];
    const double fTwiceCosine = 2.0 * PortableCosine(angle);
    double fBefore = 1.0;
    double fCosine = 0.5 * fTwiceCosine;
    for (std::size_t k = 1; k < m_nUnknowns; ++k) {
      fGain += 2.0 * m_Taps[k] * fCosine;
      const double fNext = fTwiceCosine * fCosine - fBefore;
      fBefore = fCosine;
      fCosine = fNext;
    }
    return fGain;
  }

  std::size_t m_nUnknowns;
  std::vector<SGridPoint> m_Grid;
  std::vector<double> m_Taps;  // from the middle on
};

}  // namespace

double AliasFilterTapsPerInput(double ratio) {
  // Of designs for many decimations, between which it hardly differs.
  struct SPoint {
    double fRatio, fTaps;
  };
  static constexpr SPoint kPoints[] = {{1.4, 22.2}, {1.5, 18.4}, {2, 12.0},   {2.5, 9.5}, {3, 8.45},
                                       {4, 6.9},    {6, 5.85},   {8, 4.65},   {16, 4.1},  {32, 3.7},
                                       {64, 3.1},   {128, 2.45}, {512, 1.95}, {1e5, 1.6}, {1e6, 1.15}};
  const SPoint* pAbove = std::find_if(std::begin(kPoints) + 1, std::end(kPoints) - 1,
                                      [ratio](const SPoint& point) { return point.fRatio > ratio; });
  const SPoint& below = pAbove[-1];
  const double fShare = std::log(ratio / below.fRatio) / std::log(pAbove->fRatio / below.fRatio);
  return below.fTaps * std::pow(pAbove->fTaps / below.fTaps, std::clamp(fShare, 0.0, 1.0));
}

std::vector<double> DesignAliasFilter(std::uint64_t decimation, double passEdge, double stopEdge) {
  const double fRatio = 0.55 / (stopEdge * static_cast<double>(decimation));
  const double fTaps = AliasFilterTapsPerInput(fRatio) * static_cast<double>(decimation);
  const auto granules = [](double taps) {
    return static_cast<std::size_t>(std::ceil((taps + 1.0) / static_cast<double>(kTapGranule)));
  };
  const std::size_t nMost = granules(kMostOfEstimate * fTaps);
  for (std::size_t nGranules = granules(kLeastOfEstimate * fTaps); nGranules <= nMost; ++nGranules) {
    CDesign design(decimation, passEdge, stopEdge, nGranules * kTapGranule / 2 - 1);
    if (design.Solve()) return design.Taps();
  }
  throw std::domain_error("no alias filter of a sensible length keeps to the errors allowed");
}

}  // namespace vantrel
