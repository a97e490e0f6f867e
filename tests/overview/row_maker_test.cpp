// Rows of cells: what is in them does not depend on how they are read, nor on the steps in which they become known.
#include "overview/row_maker.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>

#include "overview/base_levels.h"
#include "overview/detail_rows.h"
#include "overview/overview_fixture.h"
#include "spectrum/level_code.h"

namespace carvello::test {
namespace {

bool Always() {
  return true;
}

class RowMakerTest : public testing::Test {
 protected:
  static std::unique_ptr<IFrameSource> Source(SMadeUp& madeUp) { return std::make_unique<CMadeUpSource>(madeUp); }

  SMadeUp m_madeUp{.nFrames = 3'000'000, .tones = {{.dFrequency = 100e3, .dAmplitude = 0.3}}, .dNoise = 0.01};
  CRowMaker m_maker{Source(m_madeUp)};
};

TEST_F(RowMakerTest, RowReadAsOneStretchIsTheSumOfItsTransforms) {
  for (const SCellGrid& grid : {SCellGrid{.nTransform = 1024, .nRowFrames = 300 * 1024, .nFrames = m_madeUp.nFrames},
                                SCellGrid{.nTransform = 65'536, .nRowFrames = 1 << 18, .nFrames = m_madeUp.nFrames},
                                SCellGrid{.nTransform = 4096, .nRowFrames = 256, .nFrames = m_madeUp.nFrames}}) {
    for (const std::int64_t row : {std::int64_t{0}, grid.Rows() / 2, grid.Rows() - 1}) {
      SRowPowers whole;
      ASSERT_EQ(m_maker.Make(grid, row, ERowState::Nothing, ERowState::Whole, Always, whole), ERowEnd::Made);
      SRowPowers sum;
      sum.Clear(grid.nTransform);
      CPowerSpectrum spectrum(grid.nTransform, grid.window);
      std::vector<SComplex> frames(grid.nTransform);
      std::vector<float> power(grid.nTransform);
      CMadeUpSource source(m_madeUp);
      for (std::int64_t i = 0; i < grid.Transforms(row); ++i) {
        source.Read(grid.Begin(row, i), frames.data(), static_cast<std::int64_t>(frames.size()));
        spectrum.Transform(frames.data(), power.data());
        Accumulate(power.data(), power.size(), sum.sum.data(), sum.maximum.data());
      }
      EXPECT_EQ(whole.nTransforms, grid.Transforms(row));
      EXPECT_TRUE(whole.sum == sum.sum) << grid.nTransform << ", row " << row;
      EXPECT_TRUE(whole.maximum == sum.maximum) << grid.nTransform << ", row " << row;
    }
  }
}

TEST_F(RowMakerTest, StepsTakeOnlyWhatTheyLack) {
  const SCellGrid grid{.nTransform = 4096, .nRowFrames = 1 << 20, .nFrames = m_madeUp.nFrames};
  SRowPowers powers;
  ASSERT_EQ(m_maker.Make(grid, 1, ERowState::Nothing, ERowState::One, Always, powers), ERowEnd::Made);
  EXPECT_EQ(powers.nTransforms, 1);
  EXPECT_EQ(m_madeUp.nFramesRead, 4096);
  ASSERT_EQ(m_maker.Make(grid, 1, ERowState::One, ERowState::Four, Always, powers), ERowEnd::Made);
  EXPECT_EQ(powers.nTransforms, 3);
  ASSERT_EQ(m_maker.Make(grid, 1, ERowState::Four, ERowState::Sixteen, Always, powers), ERowEnd::Made);
  EXPECT_EQ(powers.nTransforms, 12);
  EXPECT_EQ(m_madeUp.nFramesRead, 16 * 4096);
}

TEST_F(RowMakerTest, RowThatNobodyWantsAnyMoreIsDropped) {
  const SCellGrid grid{.nTransform = 4096, .nRowFrames = 1 << 20, .nFrames = m_madeUp.nFrames};
  SRowPowers powers;
  int asked = 0;
  const auto twice = [&] { return ++asked <= 2; };
  EXPECT_EQ(m_maker.Make(grid, 0, ERowState::Nothing, ERowState::Whole, twice, powers), ERowEnd::Dropped);
  EXPECT_LT(m_madeUp.nFramesRead, 1 << 19);
}

TEST_F(RowMakerTest, WhatCannotBeReadIsNamed) {
  m_madeUp.nBadBegin = 500'000;
  m_madeUp.nBadEnd = 500'001;
  const SCellGrid grid{.nTransform = 4096, .nRowFrames = 1 << 20, .nFrames = m_madeUp.nFrames};
  SRowPowers powers;
  EXPECT_EQ(m_maker.Make(grid, 0, ERowState::Nothing, ERowState::Whole, Always, powers), ERowEnd::Unreadable);
  EXPECT_EQ(m_maker.Problem(), "made-up.wav: frame 500000 cannot be read");
}

TEST_F(RowMakerTest, ShortRecordingIsFilledUpWithSilence) {
  m_madeUp.nFrames = 100;
  const SCellGrid grid = BaseGrid(100);
  SRowPowers powers;
  ASSERT_EQ(m_maker.Make(grid, 0, ERowState::Nothing, ERowState::Whole, Always, powers), ERowEnd::Made);
  EXPECT_GT(*std::max_element(powers.sum.begin(), powers.sum.end()), 0.0f);
}

class BaseLevelsTest : public RowMakerTest {
 protected:
  void Bring(CBaseLevels& base, std::int64_t row, ERowState to) {
    SRowPowers powers;
    const ERowState from = base.State(row);
    ASSERT_EQ(m_maker.Make(base.Grid(), row, from, to, Always, powers), ERowEnd::Made);
    base.Take(row, from, to, powers);
  }

  static SRowPowers Flat(float mean, float maximum, std::int64_t transforms) {
    SRowPowers powers;
    powers.Clear(kBaseBins);
    powers.sum.assign(kBaseBins, mean * static_cast<float>(transforms));
    powers.maximum.assign(kBaseBins, maximum);
    powers.nTransforms = transforms;
    return powers;
  }
};

TEST_F(BaseLevelsTest, WholeRowIsTheSameWhateverWasKnownBefore) {
  m_madeUp.nFrames = 40LL * 4096 * 8192;
  CBaseLevels straight(m_madeUp.nFrames);
  CBaseLevels bySteps(m_madeUp.nFrames);
  Bring(straight, 5, ERowState::Whole);
  for (const ERowState state : {ERowState::One, ERowState::Four, ERowState::Sixteen, ERowState::Whole}) {
    Bring(bySteps, 5, state);
  }
  SCodeRow a;
  SCodeRow b;
  straight.Copy(5, a);
  bySteps.Copy(5, b);
  EXPECT_TRUE(a.mean == b.mean);
  EXPECT_TRUE(a.maximum == b.maximum);
  EXPECT_EQ(straight.WholeRows(), 1);
}

TEST_F(BaseLevelsTest, StepsBetweenAreTheMeanOfAllThatIsKnownToHalfAStep) {
  m_madeUp.nFrames = 40LL * 4096 * 8192;
  CBaseLevels base(m_madeUp.nFrames);
  base.Take(0, ERowState::Nothing, ERowState::One, Flat(1e-4f, 1e-4f, 1));
  base.Take(0, ERowState::One, ERowState::Four, Flat(1e-2f, 1e-1f, 3));
  SCodeRow codes;
  base.Copy(0, codes);
  EXPECT_NEAR(CodeLevel(codes.mean[7]), 10 * std::log10((1e-4 + 3e-2) / 4), 0.31);
  EXPECT_NEAR(CodeLevel(codes.maximum[7]), -10.0, 0.31);
}

TEST_F(BaseLevelsTest, WhatComesLateDoesNotUndoWhatIsBetter) {
  CBaseLevels base(40LL * 4096 * 8192);
  base.Take(0, ERowState::Nothing, ERowState::Whole, Flat(1e-4f, 1e-4f, 80));
  base.Take(0, ERowState::Nothing, ERowState::One, Flat(1.0f, 1.0f, 1));
  SCodeRow codes;
  base.Copy(0, codes);
  EXPECT_EQ(base.State(0), ERowState::Whole);
  EXPECT_NEAR(CodeLevel(codes.mean[0]), -40.0, 0.31);
}

TEST_F(BaseLevelsTest, CoarserRowsAreTheMeanAndTheMaximumOfThoseKnown) {
  CBaseLevels base(8192LL * 4096);
  const auto level = [&](int index, std::int64_t row, bool maximum) {
    double found = -1000;
    base.ForRows(index, row, row + 1, [&](std::int64_t, const auto* mean, const auto* highest) {
      found = CodeLevel(maximum ? highest[100] : mean[100]);
    });
    return found;
  };
  EXPECT_EQ(level(1, 0, false), -1000) << "nothing is known";
  base.Take(1, ERowState::Nothing, ERowState::Whole, Flat(1e-3f, 1e-2f, 2));
  EXPECT_NEAR(level(1, 0, false), -30.0, 0.31);
  base.Take(2, ERowState::Nothing, ERowState::Whole, Flat(3e-3f, 1e-1f, 2));
  EXPECT_NEAR(level(1, 0, false), 10 * std::log10(2e-3), 0.31);
  EXPECT_NEAR(level(1, 0, true), -10.0, 0.31);
  base.Take(8191, ERowState::Nothing, ERowState::Whole, Flat(1e-5f, 1e-5f, 2));
  EXPECT_NEAR(level(6, 1, false), -50.0, 0.31);
  EXPECT_NEAR(level(6, 0, true), -10.0, 0.31);
}

class DetailRowsTest : public RowMakerTest {
 protected:
  static SRowPowers Ramp(std::size_t bins) {
    SRowPowers powers;
    powers.Clear(bins);
    for (std::size_t i = 0; i < bins; ++i) {
      powers.sum[i] = 1e-6f * static_cast<float>(i + 1);
      powers.maximum[i] = 2 * powers.sum[i];
    }
    powers.nTransforms = 1;
    return powers;
  }
};

TEST_F(DetailRowsTest, PiecesHoldTheCellsThatTheyStandFor) {
  CDetailRows rows(1 << 20);
  const SCellGrid grid{.nTransform = 8192, .nCellBins = 2, .nRowFrames = 512, .nFrames = 1 << 20};
  rows.Take(grid, 3, 1000, 1030, ERowState::Nothing, ERowState::Whole, Ramp(8192));
  EXPECT_EQ(rows.State(grid, 3, 0, 2048), ERowState::Whole);
  EXPECT_EQ(rows.State(grid, 3, 0, 2049), ERowState::Nothing) << "only the pieces in view are kept";
  EXPECT_EQ(rows.State(grid, 4, 0, 1), ERowState::Nothing);
  int pieces = 0;
  rows.ForPieces(grid, 3, 1000, 1030, [&](const auto* mean, const auto* maximum, std::size_t first, std::size_t end) {
    ++pieces;
    for (const std::size_t cell : {first, end - 1}) {
      const auto bin = static_cast<double>(2 * cell);
      EXPECT_NEAR(CodeLevel(mean[cell - first]), 10 * std::log10(1e-6 * (bin + 2)), 0.31);
      EXPECT_NEAR(CodeLevel(maximum[cell - first]), 10 * std::log10(2e-6 * (bin + 2)), 0.31);
    }
  });
  EXPECT_EQ(pieces, 2);
}

TEST_F(DetailRowsTest, RoomIsBoundedAndWhatWasAskedForLastStays) {
  constexpr std::size_t kRoom = 100'000;
  CDetailRows rows(kRoom);
  const SCellGrid grid{.nTransform = 1024, .nRowFrames = 512, .nFrames = 1 << 30};
  const SRowPowers powers = Ramp(1024);
  for (std::int64_t row = 0; row < 1000; ++row) {
    rows.Take(grid, row, 0, 1024, ERowState::Nothing, ERowState::Whole, powers);
    EXPECT_LE(rows.Bytes(), kRoom);
    rows.ForPieces(grid, 0, 0, 1024, [](const auto*, const auto*, std::size_t, std::size_t) {});
  }
  EXPECT_EQ(rows.State(grid, 0, 0, 1024), ERowState::Whole);
  EXPECT_EQ(rows.State(grid, 500, 0, 1024), ERowState::Nothing);
  EXPECT_EQ(rows.State(grid, 999, 0, 1024), ERowState::Whole);
}

TEST_F(DetailRowsTest, PieceThatWentBetweenTwoStepsIsNotTakenForKnown) {
  CDetailRows rows(1 << 20);
  const SCellGrid grid{.nTransform = 1024, .nRowFrames = 1 << 16, .nFrames = 1 << 30};
  rows.Take(grid, 0, 0, 1024, ERowState::One, ERowState::Four, Ramp(1024));
  EXPECT_EQ(rows.State(grid, 0, 0, 1024), ERowState::Nothing);
}

}  // namespace
}  // namespace carvello::test
