#include "spectrum/noise_floor.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

namespace carvello {
namespace {

// Means of `count` powers of noise each, times the level of each bin.
template <typename Level>
std::vector<float> Means(std::size_t bins, int count, Level level, unsigned seed = 1) {
  std::mt19937_64 random(seed);
  std::gamma_distribution<double> gamma(count, 1.0 / count);
  std::vector<float> means(bins);
  for (std::size_t k = 0; k < bins; ++k) means[k] = static_cast<float>(level(k) * gamma(random));
  return means;
}

double Decibels(double ratio) {
  return 10.0 * std::log10(ratio);
}

TEST(NoiseFloor, OfNoiseAloneIsItsPower) {
  for (const int nCount : {4, 30, 1'000}) {
    const std::vector<float> floor =
        NoiseFloor(Means(16'384, nCount, [](std::size_t) { return 1e-10; }), nCount, 0.0, 8'192);
    for (const float fFloor : floor) EXPECT_NEAR(Decibels(fFloor / 1e-10), 0.0, nCount == 4 ? 1.5 : 0.6);
  }
}

TEST(NoiseFloor, IsNotLiftedByLinesOrByABandOfAHalf) {
  const auto level = [](std::size_t k) { return k % 100 < 5 || (k > 4'000 && k < 12'000) ? 1e-6 : 1e-10; };
  const std::vector<float> floor = NoiseFloor(Means(16'384, 100, level), 100, 0.0, 8'192);
  for (const float fFloor : floor) EXPECT_NEAR(Decibels(fFloor / 1e-10), 0.0, 1.0);
}

TEST(NoiseFloor, FollowsTheEdgesOfAFilterAndATiltedBand) {
  // 40 dB over the outermost twentieth, and 4 dB from one end to the other.
  const auto level = [](std::size_t k) {
    const double fPlace = (static_cast<double>(k) + 0.5) / 16'384.0;
    const double fEdge = std::max(0.05 - std::min(fPlace, 1.0 - fPlace), 0.0) / 0.05;
    return std::pow(10.0, -10.0 - 4.0 * fEdge + 0.4 * fPlace);
  };
  const std::vector<float> floor = NoiseFloor(Means(16'384, 200, level), 200, 0.0, 8'192);
  for (std::size_t k = 0; k < floor.size(); ++k) EXPECT_NEAR(Decibels(floor[k] / level(k)), 0.0, 3.0) << k;
}

TEST(NoiseFloor, NeverLiesBelowTheLeast) {
  for (const float fFloor : NoiseFloor(std::vector<float>(256, 0.0f), 10, 1e-12, 64)) EXPECT_NEAR(fFloor, 1e-12, 1e-15);
}

TEST(NoiseFloor, MeansReachTheirThresholdsWithTheChanceThatWasAskedFor) {
  for (const int nCount : {10, 40, 300}) {
    for (const double fChance : {0.1, 0.001}) {
      const double fThreshold = MeanOfNoiseExceeds(nCount, fChance);
      const std::vector<float> means = Means(
          400'000, nCount, [](std::size_t) { return 1.0; }, 5);
      double fAbove = 0.0;
      for (const float fMean : means) fAbove += fMean > fThreshold ? 1.0 / 400'000.0 : 0.0;
      EXPECT_NEAR(fAbove / fChance, 1.0, 0.2) << nCount << " " << fChance;
    }
  }
}

}  // namespace
}  // namespace carvello
