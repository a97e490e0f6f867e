// Fourier transforms in double precision that share nothing with those under test.
#pragma once

#include <complex>
#include <cstddef>
#include <vector>

#include "fourier/complex_sample.h"

namespace carvello::test {

using Samples = std::vector<SComplex>;
using Exact = std::vector<std::complex<double>>;

// Whole numbers of 16 bits, the same on every system.
Samples Noise(std::size_t count, unsigned seed);

Exact ToExact(const Samples& samples);

// The sum of each sample times exp(sign j 2 pi k n / size). By halves, which is as exact as the sum itself.
Exact ExactTransform(const Samples& samples, int sign);

// Of the root of the mean square of what is expected.
struct SError {
  double fMean = 0.0;  // the root of the mean square
  double fPeak = 0.0;
};
SError ErrorOf(const Samples& samples, const Exact& expected);

}  // namespace carvello::test
