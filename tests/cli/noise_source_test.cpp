#include "cli/noise_source.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace carvello::test {
namespace {

std::vector<double> Numbers(std::uint64_t seed, std::size_t count) {
  CNoiseSource source(seed);
  std::vector<double> numbers(count);
  std::generate(numbers.begin(), numbers.end(), [&source] { return source.Next(); });
  return numbers;
}

TEST(NoiseSource, IsTheSameForTheSameSeedOnly) {
  EXPECT_EQ(Numbers(1, 1000), Numbers(1, 1000));
  EXPECT_NE(Numbers(1, 1000), Numbers(2, 1000));
  EXPECT_NE(Numbers(0, 10), std::vector<double>(10, 0.0));
}

// Worked out apart from the program, in Python, from the published definitions of SplitMix64 and xoshiro256**.
TEST(NoiseSource, FollowsThePublishedGenerator) {
  const std::vector<double> numbers = Numbers(1, 4);
  EXPECT_EQ(numbers[0], -103826 / 65536.0);
  EXPECT_EQ(numbers[1], -61024 / 65536.0);
  EXPECT_EQ(numbers[2], -54204 / 65536.0);
  EXPECT_EQ(numbers[3], 88584 / 65536.0);
}

TEST(NoiseSource, HasTheMomentsOfANormalDistribution) {
  constexpr std::size_t kCount = 1'000'000;
  const std::vector<double> numbers = Numbers(7, kCount);
  double sum = 0.0;
  double squares = 0.0;
  double fourths = 0.0;
  double neighbours = 0.0;
  std::size_t beyondTwo = 0;
  for (std::size_t i = 0; i < kCount; ++i) {
    sum += numbers[i];
    squares += numbers[i] * numbers[i];
    fourths += std::pow(numbers[i], 4);
    neighbours += i > 0 ? numbers[i] * numbers[i - 1] : 0.0;
    beyondTwo += std::abs(numbers[i]) > 2.0 ? 1U : 0U;
  }
  constexpr double n = kCount;
  // Five standard errors of each estimate. Twelve summands have a kurtosis of 3 - 1.2 / 12.
  EXPECT_NEAR(sum / n, 0.0, 5.0 / std::sqrt(n));
  EXPECT_NEAR(squares / n, 1.0, 5.0 * std::sqrt(2.0 / n));
  EXPECT_NEAR(fourths / n, 2.9, 5.0 * std::sqrt(96.0 / n));
  EXPECT_NEAR(neighbours / n, 0.0, 5.0 / std::sqrt(n));
  EXPECT_NEAR(static_cast<double>(beyondTwo) / n, 0.0455, 0.002);
}

}  // namespace
}  // namespace carvello::test
