#include "spectrum/first_filter.h"

#include <cmath>
#include <numbers>

#include "fourier/unit_root.h"

namespace carvello {
namespace {

// Modified Bessel function of the first kind, order 0, by its power series.
double BesselI0(double x) {
  double term = 1.0;
  double sum = 1.0;
  for (int k = 1; term > sum * 1e-17; ++k) {
    const double factor = x / (2.0 * k);
    term *= factor * factor;
    sum += term;
  }
  return sum;
}

// Of every bin's frequency, a sample on.
std::vector<double> Cosines() {
  std::vector<double> cosines;
  for (std::int64_t i = 0; i < kFrameSize; ++i) cosines.push_back(UnitRoot(i, kFrameSize).re);
  return cosines;
}

// The taps from the middle one on.
std::vector<double> HalfOfTaps(const SBandPlan& plan) {
  const double fBeta = 0.1102 * (kFirstFilterAttenuation - 8.7);
  const double fLargest = BesselI0(fBeta);
  // The cutoff frequency in the middle between the edges; twice it, in cycles per sample, is the middle tap.
  const std::int64_t nCutoff = (plan.nPass + plan.nStop) / 2;
  constexpr std::int64_t kCircle = kFrameSize * kPartsPerBin;
  std::vector<double> taps{2.0 * static_cast<double>(nCutoff) / static_cast<double>(kCircle)};
  for (std::int64_t n = 1; n <= plan.nHalfTaps; ++n) {
    const double fRelative = static_cast<double>(n) / static_cast<double>(plan.nHalfTaps);
    const double fSinc = UnitRoot(nCutoff * n, kCircle).im / (std::numbers::pi * static_cast<double>(n));
    taps.push_back(fSinc * BesselI0(fBeta * std::sqrt(1.0 - fRelative * fRelative)) / fLargest);
  }
  return taps;
}

}  // namespace

std::vector<double> FirstFilterGains(const SBandPlan& plan, std::int64_t count) {
  static const std::vector<double> s_cosines = Cosines();
  const std::vector<double> taps = HalfOfTaps(plan);
  std::vector<double> gains;
  for (std::int64_t nBin = 0; nBin < count; ++nBin) {
    double fGain = taps[0];
    std::size_t nAngle = 0;
    for (std::size_t n = 1; n < taps.size(); ++n) {
      nAngle = (nAngle + static_cast<std::size_t>(nBin)) % kFrameSize;
      fGain += 2.0 * taps[n] * s_cosines[nAngle];
    }
    gains.push_back(fGain);
  }
  const double fCentre = gains.front();
  for (double& gain : gains) gain /= fCentre;
  return gains;
}

}  // namespace carvello
