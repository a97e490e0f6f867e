#include "overview/recording_picture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "overview/formula_source.h"

namespace carvello::test {
namespace {

constexpr std::uint32_t kRate = 1'000'000;
constexpr auto kAlways = [](double) { return true; };

SPictureRequest Whole(std::int64_t frames, std::int64_t columns, std::int64_t rows) {
  SPictureRequest request;
  request.span = {frames, kRate, 0, frames, -0.5 * kRate, 0.5 * kRate, columns, rows};
  return request;
}

SLevelPicture Picture(CFormulaSource& source, const SPictureRequest& request, unsigned threads = 2) {
  SLevelPicture picture;
  std::string error;
  EXPECT_TRUE(MakeRecordingPicture(source, request, threads, kAlways, picture, error)) << error;
  return picture;
}

float Level(const SLevelPicture& picture, std::int64_t row, std::int64_t column) {
  return picture.levels[static_cast<std::size_t>(row * picture.nColumns + column)];
}

std::int64_t StrongestColumn(const SLevelPicture& picture, std::int64_t row) {
  std::int64_t nBest = 0;
  for (std::int64_t c = 1; c < picture.nColumns; ++c) {
    if (Level(picture, row, c) > Level(picture, row, nBest)) nBest = c;
  }
  return nBest;
}

TEST(RecordingPicture, AToneStandsInItsColumnWithItsLevelAllThrough) {
  CFormulaSource source(400'000, [](std::int64_t n) { return ToneFrame(n, 0.125, -20.0); });
  for (const EPictureLevels levels : {EPictureLevels::Mean, EPictureLevels::Peak}) {
    SPictureRequest request = Whole(400'000, 200, 50);
    request.levels = levels;
    const SLevelPicture picture = Picture(source, request);
    for (std::int64_t r = 0; r < 50; ++r) {
      EXPECT_EQ(StrongestColumn(picture, r), 125);  // -500 kHz + 125 x 5 kHz = 125 kHz
      EXPECT_NEAR(Level(picture, r, 125), -20.0, 0.1);
      EXPECT_LT(Level(picture, r, 20), -100.0);
    }
  }
}

// Also where the nearest bin's middle lies in the column beside it.
TEST(RecordingPicture, AToneStandsInItsColumnWhereverItsBinsStand) {
  for (const std::int64_t nColumns : {90, 100, 150}) {
    for (int i = 0; i < 60; ++i) {
      // Every third one right where a column begins.
      const double fPlace = 0.31 * (i % 3) + 3.0 + static_cast<double>(i * (nColumns - 8) / 60);
      const double fFrequency = fPlace / static_cast<double>(nColumns) - 0.5;
      CFormulaSource source(20'000,
                            [=](std::int64_t n) { return ToneFrame(n, fFrequency, -20.0) + NoiseFrame(n, -60.0); });
      const SLevelPicture picture = Picture(source, Whole(20'000, nColumns, 4));
      for (std::int64_t r = 0; r < 4; ++r) {
        EXPECT_EQ(StrongestColumn(picture, r), static_cast<std::int64_t>(fPlace)) << nColumns << " " << fPlace;
      }
    }
  }
}

TEST(RecordingPicture, AToneHasItsLevelToATenthOfADecibelWhereverBetweenBinsItStands) {
  for (int i = 0; i <= 20; ++i) {
    const double fFrequency = (100.0 + 0.05 * i) / 512.0;
    CFormulaSource source(100'000,
                          [=](std::int64_t n) { return ToneFrame(n, fFrequency, -20.0) + NoiseFrame(n, -60.0); });
    for (const EPictureLevels levels : {EPictureLevels::Mean, EPictureLevels::Peak}) {
      SPictureRequest request = Whole(100'000, 128, 4);
      request.levels = levels;
      const SLevelPicture picture = Picture(source, request);
      EXPECT_NEAR(Level(picture, 2, StrongestColumn(picture, 2)), -20.0, 0.1) << fFrequency;
    }
  }
}

TEST(RecordingPicture, ASweepGoesThroughThePixelsThatItsTimesAndFrequenciesName) {
  constexpr std::int64_t kFrames = 2'000'000;
  // From -400 to +400 kHz.
  CFormulaSource source(kFrames, [](std::int64_t n) {
    const double fTime = static_cast<double>(n);
    const double fTurns = -0.4 * fTime + 0.4 * fTime * fTime / static_cast<double>(kFrames);
    const double fAngle = 2.0 * std::numbers::pi * (fTurns - std::floor(fTurns));
    return SComplex{static_cast<float>(3'276.8 * std::cos(fAngle)), static_cast<float>(3'276.8 * std::sin(fAngle))};
  });
  const SLevelPicture picture = Picture(source, Whole(kFrames, 100, 80));
  for (std::int64_t r = 0; r < 80; ++r)
    EXPECT_NEAR(static_cast<double>(StrongestColumn(picture, r)), 10.0 + static_cast<double>(r), 1.0);
}

TEST(RecordingPicture, ABurstBetweenAllStretchesIsInThePeakOfItsRow) {
  // 5 ms in 20 s.
  constexpr std::int64_t kFrames = 20'000'000;
  CFormulaSource source(kFrames, [](std::int64_t n) {
    return n >= 12'345'000 && n < 12'350'000 ? ToneFrame(n, -0.25, -30.0) : SComplex{};
  });
  SPictureRequest request = Whole(kFrames, 64, 100);
  request.levels = EPictureLevels::Peak;
  const SLevelPicture picture = Picture(source, request);
  EXPECT_EQ(StrongestColumn(picture, 61), 16);
  EXPECT_NEAR(Level(picture, 61, 16), -30.0, 0.1);
  for (const std::int64_t nRow : {0, 60, 62, 99}) {
    EXPECT_EQ(Level(picture, nRow, 16), -std::numeric_limits<float>::infinity());
  }
}

TEST(RecordingPicture, EveryFrameShowsWhereverRowsBegin) {
  // Rows that are far shorter than a transform, as long as one, and far longer.
  for (const std::int64_t nRows : {2, 37, 300}) {
    for (std::int64_t nPlace = 0; nPlace < 60'000; nPlace += 4'003) {
      CFormulaSource source(60'000, [=](std::int64_t n) {
        return n == nPlace ? SComplex{32'000.0f, 0.0f} : SComplex{};
      });
      SPictureRequest request = Whole(60'000, 128, nRows);
      request.levels = EPictureLevels::Peak;
      const SLevelPicture picture = Picture(source, request);
      const std::int64_t nRow = nPlace * nRows / 60'000;
      float fBest = -1'000.0f;
      for (std::int64_t r = std::max<std::int64_t>(nRow - 1, 0); r <= std::min(nRow + 1, nRows - 1); ++r) {
        fBest = std::max(fBest, Level(picture, r, 64));
      }
      // The window weighs it with a half or more in one of the transforms, but for the recording's own ends.
      if (nPlace == 0) continue;
      const double fWhole = 20.0 * std::log10(32'000.0 / 32'768.0 * 2.0 * picture.dBinWidth / kRate);
      EXPECT_GT(fBest, fWhole - 6.1) << nRows << " rows, place " << nPlace;
    }
  }
}

TEST(RecordingPicture, TwoTonesThreeBinsApartAreTwo) {
  CFormulaSource source(1'000'000, [](std::int64_t n) {
    return ToneFrame(n, 1'024.0 / 65'536, -40.0) + ToneFrame(n, 1'027.0 / 65'536, -40.0);
  });
  // 45.8 Hz between the tones; columns of 15.26 Hz.
  SPictureRequest request = Whole(1'000'000, 64, 2);
  request.span.dLowFrequency = kRate * (1'000.0 / 65'536);
  request.span.dHighFrequency = kRate * (1'064.0 / 65'536);
  const SLevelPicture picture = Picture(source, request);
  EXPECT_NEAR(Level(picture, 0, 24), -40.0, 0.3);
  EXPECT_NEAR(Level(picture, 0, 27), -40.0, 0.3);
  EXPECT_LT(std::min(Level(picture, 0, 25), Level(picture, 0, 26)), -46.0);
}

TEST(RecordingPicture, IsTheSameToTheLastBitWithAnyNumberOfThreads) {
  CFormulaSource source(1'500'000, [](std::int64_t n) { return NoiseFrame(n, -30.0); });
  for (const bool bFast : {false, true}) {
    for (const EPictureLevels levels : {EPictureLevels::Mean, EPictureLevels::Peak}) {
      SPictureRequest request = Whole(1'500'000, 300, 33);
      request.levels = levels;
      request.bFast = bFast;
      const SLevelPicture one = Picture(source, request, 1);
      EXPECT_EQ(Picture(source, request, 2).levels, one.levels);
      EXPECT_EQ(Picture(source, request, 5).levels, one.levels);
    }
  }
}

TEST(RecordingPicture, NoiseIsItsDensityTimesTheTransformsBandwidth) {
  CFormulaSource source(4'000'000, [](std::int64_t n) { return NoiseFrame(n, -30.0); });
  const SLevelPicture picture = Picture(source, Whole(4'000'000, 256, 4));
  double fMean = 0.0;
  for (const float fLevel : picture.levels) fMean += fLevel / static_cast<double>(picture.levels.size());
  // Of its few bins a column shows the strongest one, which costs little where many transforms were averaged.
  EXPECT_NEAR(fMean, -30.0 + 10.0 * std::log10(1.5 * picture.dBinWidth / kRate), 0.3);
}

TEST(RecordingPicture, BesideTheRecordedBandNothingIsKnown) {
  CFormulaSource source(100'000, [](std::int64_t n) { return NoiseFrame(n, -30.0); });
  SPictureRequest request = Whole(100'000, 30, 5);
  request.span.dLowFrequency = -1'500'000.0;
  request.span.dHighFrequency = 1'500'000.0;
  const SLevelPicture picture = Picture(source, request);
  for (std::int64_t c = 0; c < 30; ++c) EXPECT_EQ(std::isinf(Level(picture, 2, c)), c < 10 || c >= 20) << c;
}

TEST(RecordingPicture, FastReadsLittleAndShowsTheSameSteadySignals) {
  std::int64_t nRead = 0;
  CFormulaSource source(8'000'000, [&](std::int64_t n) {
    ++nRead;
    return ToneFrame(n, 0.25, -50.0);
  });
  SPictureRequest request = Whole(8'000'000, 128, 10);
  request.bFast = true;
  const SLevelPicture picture = Picture(source, request);
  EXPECT_LT(nRead, 200'000);
  for (std::int64_t r = 0; r < 10; ++r) EXPECT_NEAR(Level(picture, r, 96), -50.0, 0.1);
}

TEST(RecordingPicture, OfARecordingShorterThanATransformOrOfAPixelIsMade) {
  for (const std::int64_t nFrames : {1, 63, 64, 1'000}) {
    CFormulaSource source(nFrames, [](std::int64_t n) { return ToneFrame(n, 0.0, -10.0); });
    for (const bool bFast : {false, true}) {
      SPictureRequest request = Whole(nFrames, 1, 1);
      request.bFast = bFast;
      EXPECT_GT(Level(Picture(source, request), 0, 0), -60.0) << nFrames;
      request.span.nColumns = 50;
      request.span.nRows = 400;  // more rows than frames
      EXPECT_GT(Level(Picture(source, request), 399, 25), -60.0) << nFrames;
    }
  }
}

TEST(RecordingPicture, WhatCannotBeReadIsToldAndAskedEndsEnd) {
  CFormulaSource source(3'000'000, [](std::int64_t n) { return ToneFrame(n, 0.0, -10.0); });
  SLevelPicture picture;
  std::string error;
  EXPECT_FALSE(MakeRecordingPicture(
      source, Whole(3'000'000, 100, 100), 2, [](double) { return false; }, picture, error));
  EXPECT_EQ(error, "");
  source.FailFrom(2'000'000);
  EXPECT_FALSE(MakeRecordingPicture(source, Whole(3'000'000, 100, 100), 2, kAlways, picture, error));
  EXPECT_EQ(error, "made.wav: cannot be read");
}

}  // namespace
}  // namespace carvello::test
