// Pictures of a narrow part of the band, which are made of samples of a lower rate.
#include "overview/narrow_picture.h"

#include <gtest/gtest.h>

#include <cmath>

#include "overview/formula_source.h"
#include "overview/recording_picture.h"

namespace carvello::test {
namespace {

constexpr auto kAlways = [](double) { return true; };

SPictureSpan Span(std::int64_t frames, double rate, double low, double high, std::int64_t columns, std::int64_t rows) {
  return {frames, rate, 0, frames, low, high, columns, rows};
}

SLevelPicture Picture(CFormulaSource& source, const SPictureSpan& span, EPictureLevels levels, unsigned threads = 2) {
  EXPECT_TRUE(NarrowBandOf(span));
  SPictureRequest request;
  request.span = span;
  request.levels = levels;
  SLevelPicture picture;
  std::string error;
  EXPECT_TRUE(MakeRecordingPicture(source, request, threads, kAlways, picture, error)) << error;
  return picture;
}

float Level(const SLevelPicture& picture, std::int64_t row, std::int64_t column) {
  return picture.levels[static_cast<std::size_t>(row * picture.nColumns + column)];
}

TEST(NarrowPicture, IsNotMadeOfMuchOfTheBandNorOfWhatLiesBesideItNorOfShortRows) {
  constexpr double kRate = 1'000'000.0;
  EXPECT_TRUE(NarrowBandOf(Span(4'000'000, kRate, 0.0, 50'000.0, 100, 10)));
  EXPECT_FALSE(NarrowBandOf(Span(4'000'000, kRate, 0.0, 300'000.0, 100, 10)));
  EXPECT_FALSE(NarrowBandOf(Span(4'000'000, kRate, 480'000.0, 500'001.0, 100, 10)));
  EXPECT_FALSE(NarrowBandOf(Span(4'000'000, kRate, 0.0, 50'000.0, 100, 100'000)));
  EXPECT_FALSE(NarrowBandOf(Span(63, kRate, 0.0, 50'000.0, 100, 1)));
}

// Wherever in the band it lies, and wherever in the lower rate's own band.
TEST(NarrowPicture, TonesStandInTheirColumnsWithTheirLevelsAndNothingElseDoes) {
  for (const double fRate : {999'983.0, 96'000.0}) {
    for (const double fShare : {-0.5, -0.317, 0.219, 0.46}) {
      for (const double fWidth : {0.04, 0.013, 0.001}) {
        const double fLow = std::min(fShare, 0.5 - fWidth);
        const auto fToneAt = [&](double place) { return fLow + fWidth * place; };
        CFormulaSource source(300'000, [&](std::int64_t n) {
          return ToneFrame(n, fToneAt(0.005), -20.0) + ToneFrame(n, fToneAt(0.505), -40.0) +
                 ToneFrame(n, fToneAt(0.995), -30.0) +
                 // Far beside what is shown, where leaving out samples without a filter would fold it into it.
                 ToneFrame(n, fToneAt(0.2) + 0.25, 0.0);
        });
        const SPictureSpan span = Span(300'000, fRate, fLow * fRate, (fLow + fWidth) * fRate, 100, 2);
        if (!NarrowBandOf(span)) continue;
        const SLevelPicture picture = Picture(source, span, EPictureLevels::Mean);
        const std::string what = std::to_string(fRate) + " " + std::to_string(fShare) + " " + std::to_string(fWidth);
        for (const auto& [nColumn, fLevel] : {std::pair{0, -20.0}, {50, -40.0}, {99, -30.0}}) {
          EXPECT_NEAR(Level(picture, 1, nColumn), fLevel, 0.1) << what;
        }
        if (fWidth >= 0.013) {
          EXPECT_LT(Level(picture, 1, 20), -110.0) << what;
        }
      }
    }
  }
}

TEST(NarrowPicture, TellsTheLevelOfAToneToATenthOfADecibelWhereverBetweenBinsItStands) {
  constexpr double kRate = 1'048'576.0;
  for (const double fTone : {1'024.0, 4'161.0, 12'300.0, 15'399.0}) {
    CFormulaSource source(1'500'000, [=](std::int64_t n) { return ToneFrame(n, (300'000.0 + fTone) / kRate, -35.0); });
    const SPictureSpan span = Span(1'500'000, kRate, 300'000.0, 300'000.0 + 16'384.0, 64, 3);
    for (const EPictureLevels levels : {EPictureLevels::Mean, EPictureLevels::Peak}) {
      const SLevelPicture picture = Picture(source, span, levels);
      EXPECT_NEAR(Level(picture, 1, static_cast<std::int64_t>(fTone / 256.0)), -35.0, 0.1) << fTone;
    }
  }
}

TEST(NarrowPicture, NoiseIsItsDensityTimesTheTransformsBandwidth) {
  constexpr double kRate = 1'000'000.0;
  CFormulaSource source(4'000'000, [](std::int64_t n) { return NoiseFrame(n, -30.0); });
  const SLevelPicture picture =
      Picture(source, Span(4'000'000, kRate, 100'000.0, 120'000.0, 64, 2), EPictureLevels::Mean);
  double fMean = 0.0;
  for (const float fLevel : picture.levels) fMean += fLevel / static_cast<double>(picture.levels.size());
  EXPECT_NEAR(fMean, -30.0 + 10.0 * std::log10(1.5 * picture.dBinWidth / kRate), 0.5);
}

TEST(NarrowPicture, ABurstIsInThePeakOfTheRowThatItsTimeNames) {
  constexpr std::int64_t kFrames = 4'000'000;
  for (const std::int64_t nPlace : {0, 1'990'000, 2'050'000, 3'990'000}) {
    CFormulaSource source(kFrames, [=](std::int64_t n) {
      return n >= nPlace && n < nPlace + 10'000 ? ToneFrame(n, 0.21, -20.0) : SComplex{};
    });
    const SLevelPicture picture =
        Picture(source, Span(kFrames, 1'000'000.0, 200'000.0, 220'000.0, 40, 80), EPictureLevels::Peak);
    const std::int64_t nRow = (nPlace + 5'000) * 80 / kFrames;
    for (std::int64_t r = 0; r < 80; ++r) {
      if (std::abs(r - nRow) <= 1) continue;
      EXPECT_LT(Level(picture, r, 20), -100.0) << r;
    }
    EXPECT_GT(Level(picture, nRow, 20), -30.0) << nPlace;
  }
}

TEST(NarrowPicture, OfAPartOfTheTimeIsThatPart) {
  CFormulaSource source(8'000'000,
                        [](std::int64_t n) { return n < 5'000'000 ? SComplex{} : ToneFrame(n, 0.1, -20.0); });
  SPictureSpan span = Span(8'000'000, 1'000'000.0, 90'000.0, 110'000.0, 40, 20);
  span.nFirstFrame = 4'000'000;
  span.nFrames = 2'000'000;
  const SLevelPicture picture = Picture(source, span, EPictureLevels::Mean);
  for (std::int64_t r = 0; r < 20; ++r) {
    if (r < 9) {
      EXPECT_LT(Level(picture, r, 20), -60.0) << r;
    }
    if (r > 10) {
      EXPECT_NEAR(Level(picture, r, 20), -20.0, 1.5) << r;
    }
  }
}

TEST(NarrowPicture, IsTheSameToTheLastBitWithAnyNumberOfThreads) {
  CFormulaSource source(1'500'000, [](std::int64_t n) { return NoiseFrame(n, -30.0); });
  const SPictureSpan span = Span(1'500'000, 1'000'000.0, -30'000.0, 20'000.0, 100, 30);
  const SLevelPicture one = Picture(source, span, EPictureLevels::Mean, 1);
  EXPECT_EQ(Picture(source, span, EPictureLevels::Mean, 2).levels, one.levels);
  EXPECT_EQ(Picture(source, span, EPictureLevels::Mean, 5).levels, one.levels);
}

TEST(NarrowPicture, WhatCannotBeReadIsToldAndAskedEndsEnd) {
  CFormulaSource source(3'000'000, [](std::int64_t n) { return ToneFrame(n, 0.0, -10.0); });
  SPictureRequest request;
  request.span = Span(3'000'000, 1'000'000.0, -10'000.0, 10'000.0, 100, 100);
  SLevelPicture picture;
  std::string error;
  EXPECT_FALSE(MakeRecordingPicture(
      source, request, 2, [](double) { return false; }, picture, error));
  EXPECT_EQ(error, "");
  source.FailFrom(2'000'000);
  EXPECT_FALSE(MakeRecordingPicture(source, request, 2, kAlways, picture, error));
  EXPECT_EQ(error, "made.wav: cannot be read");
}

}  // namespace
}  // namespace carvello::test
