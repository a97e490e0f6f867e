#include "fourier/unit_root.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <numbers>
#include <random>
#include <string>

namespace carvello {
namespace {

void ExpectRoot(std::int64_t numerator, std::int64_t denominator) {
  SCOPED_TRACE(std::to_string(numerator) + "/" + std::to_string(denominator));
  const long double fTurn = static_cast<long double>(numerator % denominator) / static_cast<long double>(denominator);
  const SUnitRoot root = UnitRoot(numerator, denominator);
  EXPECT_NEAR(root.re, static_cast<double>(std::cos(2.0L * std::numbers::pi_v<long double> * fTurn)), 2.3e-16);
  EXPECT_NEAR(root.im, static_cast<double>(std::sin(2.0L * std::numbers::pi_v<long double> * fTurn)), 2.3e-16);
}

TEST(UnitRoot, IsThatOfTheFractionOfATurnInAllEighthsAndBothDirections) {
  for (std::int64_t n = -2100; n <= 2100; ++n) ExpectRoot(n, 1000);
  for (std::int64_t n = -48; n <= 48; ++n) ExpectRoot(n, 16);
}

TEST(UnitRoot, OfLargeNumbersIsReducedInWholeNumbers) {
  std::mt19937_64 random(1);
  for (int i = 0; i < 1000; ++i) {
    const auto nDenominator = static_cast<std::int64_t>(random() >> 5) + 1;
    ExpectRoot(static_cast<std::int64_t>(random() >> 1), nDenominator);
  }
}

TEST(UnitRoot, AtQuartersOfATurnIsExact) {
  for (std::int64_t n = -4; n <= 4; ++n) {
    const SUnitRoot root = UnitRoot(n * 65536 + 16384, 65536);
    EXPECT_EQ(root.re, 0.0);
    EXPECT_EQ(root.im, 1.0);
    EXPECT_EQ(UnitRoot(n * 65536, 65536).re, 1.0);
    EXPECT_EQ(UnitRoot(n * 65536, 65536).im, 0.0);
    EXPECT_EQ(UnitRoot(n * 65536 + 32768, 65536).re, -1.0);
    EXPECT_EQ(UnitRoot(n * 65536 + 49152, 65536).im, -1.0);
  }
}

}  // namespace
}  // namespace carvello
