#include "engine/engine_costs.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <optional>

#include "engine/spectrum_converter.h"
#include "spectrum/band_plan.h"

namespace carvello {

namespace {

constexpr double kSharedCost = 1.3;

// More phases than this and the library's channel filter computes its taps, which takes longer.
constexpr std::uint32_t kMostExactPhases = 128;

// By input rate / output rate.
struct SPoint {
  double fRatio;
  double fLibrary;
  double fLibraryManyPhases;
  double fSpectrum;
  double fSpectrumManyPhases;
};
constexpr SPoint kPoints[] = {
    {2.25, 6.2, 12.0, 4.3, 9.6},     {3.0, 2.9, 7.9, 4.3, 7.7},         {4.0, 2.1, 6.8, 2.15, 7.3},
    {6.0, 1.7, 4.75, 2.1, 4.05},     {10.0, 1.27, 3.45, 0.93, 2.11},    {20.0, 0.95, 1.93, 0.465, 1.04},
    {40.0, 0.70, 1.27, 0.25, 0.455}, {100.0, 0.56, 0.93, 0.127, 0.407}, {250.0, 0.51, 0.60, 0.070, 0.224},
    {1e3, 0.44, 0.50, 0.026, 0.059}, {1e4, 0.37, 0.40, 0.0095, 0.0150}, {1e5, 0.36, 0.36, 0.0090, 0.0102},
};

double Between(double ratio, double SPoint::*cost) {
  const SPoint* pAbove = std::find_if(std::begin(kPoints) + 1, std::end(kPoints) - 1,
                                      [ratio](const SPoint& point) { return point.fRatio > ratio; });
  const SPoint& below = pAbove[-1];
  const double fShare = (ratio - below.fRatio) / (pAbove->fRatio - below.fRatio);
  return below.*cost + std::clamp(fShare, 0.0, 1.0) * (pAbove->*cost - below.*cost);
}

}  // namespace

double SharedSpectrumCost() {
  return kSharedCost;
}

SEntryCosts EntryCosts(std::uint32_t inputRate, std::uint32_t outputRate) {
  SEntryCosts costs;
  if (outputRate == 0 || outputRate > inputRate) return costs;
  const SBandWish wish = CSpectrumConverter::Wish({inputRate, outputRate, 0}, 0);
  const std::uint32_t nPhases = wish.nPhases / std::gcd(wish.nStep, wish.nPhases);
  const double fRatio = static_cast<double>(wish.nStep) / wish.nPhases;
  costs.fLibrary = Between(fRatio, nPhases > kMostExactPhases ? &SPoint::fLibraryManyPhases : &SPoint::fLibrary);
  if (const std::optional<SBandPlan> plan = PlanBand(wish)) {
    costs.bSpectrum = true;
    const bool bMany = SecondStageRatio(*plan).nOutput > kMostExactPhases;
    costs.fSpectrum = Between(fRatio, bMany ? &SPoint::fSpectrumManyPhases : &SPoint::fSpectrum);
  }
  return costs;
}

}  // namespace carvello
