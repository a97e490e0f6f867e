#include "fourier/transform_reference.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

namespace carvello::test {
namespace {

// The transform of every step-th value, into as many values without a gap. It needs no room of its own: checkers of
// memory make each allocation dear.
void TransformByHalves(const std::complex<double>* pIn, std::size_t step, std::complex<double>* pOut, std::size_t size,
                       int sign) {
  if (size == 1) {
    *pOut = *pIn;
    return;
  }
  const std::size_t nHalf = size / 2;
  TransformByHalves(pIn, 2 * step, pOut, nHalf, sign);
  TransformByHalves(pIn + step, 2 * step, pOut + nHalf, nHalf, sign);
  for (std::size_t k = 0; k < nHalf; ++k) {
    const double fAngle = sign * 2.0 * std::numbers::pi * static_cast<double>(k) / static_cast<double>(size);
    const std::complex<double> even = pOut[k];
    const std::complex<double> turned = pOut[k + nHalf] * std::polar(1.0, fAngle);
    pOut[k] = even + turned;
    pOut[k + nHalf] = even - turned;
  }
}

}  // namespace

Samples Noise(std::size_t count, unsigned seed) {
  std::mt19937 random(seed);
  Samples samples(count);
  for (SComplex& sample : samples) {
    sample.re = static_cast<float>(static_cast<int>(random() % 65536) - 32768);
    sample.im = static_cast<float>(static_cast<int>(random() % 65536) - 32768);
  }
  return samples;
}

Exact ToExact(const Samples& samples) {
  Exact exact;
  for (const SComplex& sample : samples) exact.emplace_back(sample.re, sample.im);
  return exact;
}

Exact ExactTransform(const Samples& samples, int sign) {
  const Exact in = ToExact(samples);
  Exact out(in.size());
  TransformByHalves(in.data(), 1, out.data(), in.size(), sign);
  return out;
}

SError ErrorOf(const Samples& samples, const Exact& expected) {
  double fErrors = 0.0;
  double fSquares = 0.0;
  double fPeak = 0.0;
  for (std::size_t i = 0; i < expected.size(); ++i) {
    const double fError = std::norm(std::complex<double>(samples[i].re, samples[i].im) - expected[i]);
    fErrors += fError;
    fSquares += std::norm(expected[i]);
    fPeak = std::max(fPeak, fError);
  }
  return {std::sqrt(fErrors / fSquares), std::sqrt(fPeak * static_cast<double>(expected.size()) / fSquares)};
}

}  // namespace carvello::test
