// Holds the reference of the transform's tests against the sum that defines it and against FFTW.
#include "fourier/transform_reference.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <numbers>

#include "fourier/block_transform.h"

#ifdef CARVELLO_HAS_FFTW
#include <fftw3.h>
#endif

namespace carvello::test {
namespace {

double Difference(const Exact& a, const Exact& b) {
  double fErrors = 0.0;
  double fSquares = 0.0;
  for (std::size_t i = 0; i < a.size(); ++i) {
    fErrors += std::norm(a[i] - b[i]);
    fSquares += std::norm(b[i]);
  }
  return std::sqrt(fErrors / fSquares);
}

TEST(TransformReference, IsTheSumThatDefinesATransform) {
  constexpr std::size_t kSize = 256;
  const Samples in = Noise(kSize, 1);
  for (const int nSign : {-1, 1}) {
    Exact sums(kSize);
    for (std::size_t k = 0; k < kSize; ++k) {
      for (std::size_t n = 0; n < kSize; ++n) {
        const double fTurn = nSign * static_cast<double>(k * n % kSize) / static_cast<double>(kSize);
        sums[k] += std::complex<double>(in[n].re, in[n].im) * std::polar(1.0, 2.0 * std::numbers::pi * fTurn);
      }
    }
    EXPECT_LT(Difference(ExactTransform(in, nSign), sums), 1e-14);
  }
}

#ifdef CARVELLO_HAS_FFTW
TEST(TransformReference, IsWhatFftwGivesInDoublePrecision) {
  for (std::size_t nSize = CBlockTransform::kSmallestSize; nSize <= CBlockTransform::kLargestSize; nSize *= 2) {
    SCOPED_TRACE(nSize);
    const Samples in = Noise(nSize, 2);
    for (const int nSign : {FFTW_FORWARD, FFTW_BACKWARD}) {
      Exact out = ToExact(in);
      auto* const pOut = reinterpret_cast<fftw_complex*>(out.data());
      const fftw_plan plan = fftw_plan_dft_1d(static_cast<int>(nSize), pOut, pOut, nSign, FFTW_ESTIMATE);
      fftw_execute(plan);
      fftw_destroy_plan(plan);
      EXPECT_LT(Difference(ExactTransform(in, nSign), out), 1e-14);
    }
  }
}
#endif

}  // namespace
}  // namespace carvello::test
