#include "spectrum/level_code.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

namespace carvello {
namespace {

float Power(double level) {
  return static_cast<float>(std::pow(10.0, level / 10.0));
}

TEST(LevelCode, OfEveryLevelIsItsCode) {
  for (int nCode = 1; nCode <= 255; ++nCode) {
    const auto code = static_cast<std::uint8_t>(nCode);
    EXPECT_NEAR(CodeLevel(code), -150.0 + 0.6 * (nCode - 1), 1e-9);
    EXPECT_EQ(LevelCode(Power(CodeLevel(code))), code);
    if (nCode > 1) {
      EXPECT_EQ(LevelCode(Power(CodeLevel(code) - 0.299)), code);
    }
    if (nCode < 255) {
      EXPECT_EQ(LevelCode(Power(CodeLevel(code) + 0.299)), code);
    }
  }
  EXPECT_NEAR(CodeLevel(255), 2.4, 1e-9);
}

TEST(LevelCode, BeyondTheLevelsIsTheNearestOne) {
  EXPECT_EQ(LevelCode(0.0f), 1);
  EXPECT_EQ(LevelCode(std::numeric_limits<float>::denorm_min()), 1);
  EXPECT_EQ(LevelCode(Power(-200.0)), 1);
  EXPECT_EQ(LevelCode(-1.0f), 1);
  EXPECT_EQ(LevelCode(std::numeric_limits<float>::quiet_NaN()), 1);
  EXPECT_EQ(LevelCode(Power(60.0)), 255);
  EXPECT_EQ(LevelCode(std::numeric_limits<float>::max()), 255);
  EXPECT_EQ(LevelCode(std::numeric_limits<float>::infinity()), 255);
}

TEST(LevelCode, OfNothingKnownIsNoLevel) {
  EXPECT_EQ(CodeLevel(kUnknownLevel), -std::numeric_limits<double>::infinity());
}

TEST(LevelCode, IsTheNearestLevelOfAnyPower) {
  std::mt19937 random(3);
  std::uniform_real_distribution<double> level(-149.9, 2.3);
  std::vector<float> powers(100'000);
  for (float& fPower : powers) fPower = Power(level(random));
  std::vector<std::uint8_t> codes(powers.size());
  LevelCodes(powers.data(), powers.size(), codes.data());
  for (std::size_t i = 0; i < powers.size(); ++i) {
    EXPECT_EQ(codes[i], LevelCode(powers[i]));
    EXPECT_LT(std::abs(CodeLevel(codes[i]) - 10.0 * std::log10(static_cast<double>(powers[i]))), 0.3 + 1e-5);
  }
}

}  // namespace
}  // namespace carvello
