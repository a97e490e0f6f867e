#include "kaiser_lowpass.h"

#include <cmath>
#include <numbers>

#include "kernels.h"

namespace vantrel {
namespace {

// What every stage's stop band is designed for: 110 dB are promised, Kaiser's formula is a little short at the edge,
// and several stages add up.
constexpr double kAttenuation = 116.0;

// Kaiser's formula between the attenuation in dB and length times transition width.
constexpr double kLengthPerDecibel = 1.0 / 14.36;
constexpr double kDecibelOffset = 7.95;

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

std::size_t RoundUpHalfLength(double value) {
  return (static_cast<std::size_t>(std::ceil(value)) + 3) / 4 * 4;
}

}  // namespace

CKaiserLowPass::CKaiserLowPass(double passEdge, double stopEdge) : m_fCutoff(0.5 * (passEdge + stopEdge)) {
  const double fTransition = stopEdge - passEdge;
  m_nHalfLength = RoundUpHalfLength(0.5 * (kAttenuation - kDecibelOffset) * kLengthPerDecibel / fTransition);
  const double fLength = 2.0 * static_cast<double>(m_nHalfLength);
  const double fAttenuation = fLength * fTransition / kLengthPerDecibel + kDecibelOffset;
  m_fBeta = 0.1102 * (fAttenuation - 8.7);
}

double CKaiserLowPass::operator()(double time) const {
  const double fRelative = time / static_cast<double>(m_nHalfLength);
  if (std::abs(fRelative) >= 1.0) return 0.0;
  const double x = 2.0 * std::numbers::pi * m_fCutoff * time;
  const double fSinc = std::abs(x) < 1e-9 ? 1.0 : std::sin(x) / x;
  const double fWindow = BesselI0(m_fBeta * std::sqrt(1.0 - fRelative * fRelative)) / BesselI0(m_fBeta);
  return 2.0 * m_fCutoff * fSinc * fWindow;
}

}  // namespace vantrel
