#include "kaiser_lowpass.h"

#include <cmath>
#include <numbers>

#include "kernels.h"

namespace vantrel {
namespace {

// What every stage's stop band is designed for: 110 dB are promised, Kaiser's formula is a little short at the edge,
// and several stages add up.
constexpr double kAttenuation = 118.0;

// Kaiser's formula between the attenuation in dB and length times transition width.
constexpr double kLengthPerDecibel = 1.0 / 14.36;
constexpr double kDecibelOffset = 7.95;
// His formula for the window's parameter.
constexpr double kBeta = 0.1102 * (kAttenuation - 8.7);

// Modified Bessel function of the first kind, order 0, of the root of `square`, by its power series.
double BesselI0OfRoot(double square) {
  double term = 1.0;
  double sum = 1.0;
  for (int k = 1; std::abs(term) > sum * 1e-17; ++k) {
    term *= square / (4.0 * k * k);
    sum += term;
  }
  return sum;
}

std::size_t RoundUpHalfLength(double value) {
  return (static_cast<std::size_t>(std::ceil(value)) + 3) / 4 * 4;
}

}  // namespace

CKaiserLowPass::CKaiserLowPass(double passEdge, double stopEdge)
    : m_fCutoff(0.5 * (passEdge + stopEdge)),
      m_fHalfLength(0.5 * (kAttenuation - kDecibelOffset) * kLengthPerDecibel / (stopEdge - passEdge)),
      m_nHalfLength(RoundUpHalfLength(m_fHalfLength)) {}

double CKaiserLowPass::Near(double middle, double time) const {
  static const double s_fLargest = BesselI0OfRoot(kBeta * kBeta);
  if (std::abs(middle) >= m_fHalfLength) return 0.0;
  const double fRelative = time / m_fHalfLength;
  const double x = 2.0 * std::numbers::pi * m_fCutoff * time;
  const double fSinc = std::abs(x) < 1e-9 ? 1.0 : std::sin(x) / x;
  return 2.0 * m_fCutoff * fSinc * BesselI0OfRoot(kBeta * kBeta * (1.0 - fRelative * fRelative)) / s_fLargest;
}

}  // namespace vantrel
