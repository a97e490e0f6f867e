#include "cli/picture_drawing.h"

#include <gtest/gtest.h>

#include <limits>

namespace carvello {
namespace {

SLevelPicture Levels(std::int64_t columns, std::vector<float> levels) {
  return {columns, static_cast<std::int64_t>(levels.size()) / columns, std::move(levels), 1'024};
}

TEST(Shades, RiseEvenlyFromTheLowestLevelToTheHighest) {
  constexpr float kNone = -std::numeric_limits<float>::infinity();
  const SLevelPicture picture = Levels(7, {kNone, -150.0f, -100.0f, -75.0f, -50.0f, -0.0f, 20.0f});
  EXPECT_EQ(Shades(picture, {-100.0, 0.0}), (std::vector<std::uint8_t>{0, 0, 0, 64, 128, 255, 255}));
}

TEST(LevelsOf, BeginJustBelowTheNoiseAndEndWithTheStrongest) {
  std::vector<float> levels(1'000, -97.5f);
  levels[500] = -20.3f;
  const SLevelRange range = LevelsOf(Levels(100, levels));
  EXPECT_EQ(range.dLow, -101.0);
  EXPECT_EQ(range.dHigh, -20.0);
}

TEST(LevelsOf, LeaveRoomWhereThereIsNothingButNoiseOrNothingAtAll) {
  const SLevelRange noise = LevelsOf(Levels(10, std::vector<float>(100, -90.0f)));
  EXPECT_EQ(noise.dLow, -93.0);
  EXPECT_EQ(noise.dHigh, -63.0);
  const SLevelRange silence = LevelsOf(Levels(10, std::vector<float>(100, -std::numeric_limits<float>::infinity())));
  EXPECT_LT(silence.dLow, silence.dHigh);
}

TEST(DrawPicture, PutsTheWaterfallDotByDotBetweenAxesAndScale) {
  std::vector<float> levels;
  for (int i = 0; i < 64 * 48; ++i) levels.push_back(static_cast<float>(-100 + i % 100));
  const SLevelPicture picture = Levels(64, levels);
  SPictureAxes axes;
  axes.strTitle = "rec.wav";
  axes.dLowFrequency = 7'000'000.0;
  axes.dHighFrequency = 7'100'000.0;
  axes.dSeconds = 10.0;
  const CPixelImage image = DrawPicture(picture, {-100.0, 0.0}, EPalette::Grey, axes);
  ASSERT_GT(image.Width(), 64);
  ASSERT_GT(image.Height(), 48);
  const std::vector<std::uint8_t> shades = Shades(picture, {-100.0, 0.0});
  // The frame's corner, then the waterfall.
  std::int64_t nLeft = 0, nTop = 0;
  const auto isBlack = [&](std::int64_t x, std::int64_t y) { return image.At(x, y).green == 0; };
  for (std::int64_t y = 0; y + 50 <= image.Height() && nTop == 0; ++y) {
    for (std::int64_t x = 0; x + 66 <= image.Width() && nTop == 0; ++x) {
      bool bLine = true;
      for (std::int64_t i = 0; i < 66 && bLine; ++i) bLine = isBlack(x + i, y) && isBlack(x + i, y + 49);
      if (!bLine) continue;
      nLeft = x + 1;
      nTop = y + 1;
    }
  }
  ASSERT_GT(nTop, 0);
  for (std::int64_t y = 0; y < 48; ++y) {
    for (std::int64_t x = 0; x < 64; ++x) {
      EXPECT_EQ(image.At(nLeft + x, nTop + y).red, shades[static_cast<std::size_t>(y * 64 + x)]);
    }
  }
}

TEST(PixelImage, DrawsLettersAndClipsWhatLiesBesideIt) {
  CPixelImage image(20, 13, {255, 255, 255});
  image.Text(0, 0, "I", {0, 0, 0});
  std::string drawn;
  for (std::int64_t y = 0; y < 13; ++y) {
    for (std::int64_t x = 0; x < 7; ++x) drawn += image.At(x, y).red == 0 ? '#' : '.';
    drawn += '\n';
  }
  EXPECT_EQ(drawn,
            ".......\n.......\n.#####.\n...#...\n...#...\n...#...\n...#...\n...#...\n...#...\n...#...\n.#####.\n"
            ".......\n.......\n");
  EXPECT_EQ(CPixelImage::TextWidth("1 \xC2\xB5s"), 4 * 7);
  image.Text(-100, -5, "beside everything, above and below and much longer", {0, 0, 0});
  image.Fill(-5, -5, 1'000, 1'000, {1, 2, 3});
  EXPECT_EQ(image.At(19, 12).blue, 3);
}

}  // namespace
}  // namespace carvello
