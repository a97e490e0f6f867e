#include "spectrum/palette.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <tuple>

namespace carvello {
namespace {

constexpr EPalette kPalettes[] = {EPalette::Viridis, EPalette::Turbo, EPalette::Grey};

double Linear(std::uint8_t value) {
  const double fValue = value / 255.0;
  return fValue <= 0.04045 ? fValue / 12.92 : std::pow((fValue + 0.055) / 1.055, 2.4);
}

double Luminance(const SColour& colour) {
  return 0.2126 * Linear(colour.red) + 0.7152 * Linear(colour.green) + 0.0722 * Linear(colour.blue);
}

double Lightness(const SColour& colour) {
  const double fLuminance = Luminance(colour);
  return fLuminance > 0.008856 ? 116.0 * std::cbrt(fLuminance) - 16.0 : 903.3 * fLuminance;
}

TEST(Palette, NeverGetsDarkerTowardsStronger) {
  for (const EPalette palette : kPalettes) {
    const auto& colours = PaletteColours(palette);
    for (std::size_t i = 1; i < colours.size(); ++i) EXPECT_GE(Luminance(colours[i]), Luminance(colours[i - 1])) << i;
    EXPECT_LT(Lightness(colours.front()), 16.0);
    EXPECT_GT(Lightness(colours.back()), 85.0);
  }
}

// A step anywhere in the palette is about as much in lightness as any other one.
TEST(Palette, RisesEvenly) {
  for (const EPalette palette : kPalettes) {
    const auto& colours = PaletteColours(palette);
    const double fAll = Lightness(colours[255]) - Lightness(colours[0]);
    for (std::size_t i = 16; i < colours.size(); i += 16) {
      const double fPart = (Lightness(colours[i]) - Lightness(colours[i - 16])) / fAll;
      EXPECT_GT(fPart, 0.5 * 16 / 255) << i;
      EXPECT_LT(fPart, 1.7 * 16 / 255) << i;
    }
  }
}

TEST(Palette, HasManyColoursInWhichNoNeighboursJump) {
  for (const EPalette palette : kPalettes) {
    const auto& colours = PaletteColours(palette);
    std::set<std::tuple<int, int, int>> different;
    for (std::size_t i = 0; i < colours.size(); ++i) {
      different.emplace(colours[i].red, colours[i].green, colours[i].blue);
      if (i == 0) continue;
      EXPECT_LE(std::abs(colours[i].red - colours[i - 1].red), 24) << i;
      EXPECT_LE(std::abs(colours[i].green - colours[i - 1].green), 24) << i;
      EXPECT_LE(std::abs(colours[i].blue - colours[i - 1].blue), 24) << i;
    }
    EXPECT_GE(different.size(), 250u);
  }
}

TEST(Palette, GreyIsTheLevelItself) {
  const auto& colours = PaletteColours(EPalette::Grey);
  for (int i = 0; i < 256; ++i) {
    const SColour& colour = colours[static_cast<std::size_t>(i)];
    EXPECT_TRUE(colour.red == i && colour.green == i && colour.blue == i);
  }
}

}  // namespace
}  // namespace carvello
