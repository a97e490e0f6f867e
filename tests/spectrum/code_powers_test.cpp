#include "spectrum/code_powers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <vector>

namespace carvello {
namespace {

TEST(CodePowers, AreThoseOfTheLevels) {
  EXPECT_EQ(CodePowers()[0], 0.0f);
  for (int code = 1; code < 256; ++code) {
    EXPECT_NEAR(10 * std::log10(CodePowers()[code]), CodeLevel(static_cast<std::uint8_t>(code)), 1e-4);
    EXPECT_EQ(LevelCode(CodePowers()[code]), code);
  }
}

TEST(ColumnCells, ColumnsShareTheCellsWithoutGapsOrOverlap) {
  for (const int columns : {1, 7, 100, 1200, 4096}) {
    const CColumnCells cells(4096, 1, 1e6, -0.5e6, 0.5e6, columns);
    std::size_t end = 0;
    for (std::size_t column = 0; column < cells.Columns(); ++column) {
      EXPECT_EQ(cells.First(column), end);
      end = cells.End(column);
    }
    EXPECT_EQ(end, 4096U) << columns;
  }
}

TEST(ColumnCells, CellStandsInTheColumnThatItsMiddleLiesIn) {
  // Bins of 1 kHz, the middle one at 0 Hz, and columns of 10 kHz from -32 kHz on.
  const CColumnCells cells(64, 1, 64e3, -32e3, 32e3 - 4e3, 6);
  EXPECT_EQ(cells.First(3), 30U) << "-2 kHz, the first from -2 kHz on";
  EXPECT_EQ(cells.End(3), 40U);
  const CColumnCells pairs(64, 2, 64e3, -32e3, 28e3, 6);
  EXPECT_EQ(pairs.First(3), 15U) << "two bins a cell, their middle at -1.5 kHz";
}

TEST(ColumnCells, CloseColumnsShowTheCellThatTheyLieIn) {
  const CColumnCells cells(64, 1, 64e3, -500, 1500, 200);
  for (std::size_t column = 0; column < 200; ++column) {
    EXPECT_EQ(cells.End(column), cells.First(column) + 1);
    EXPECT_EQ(cells.First(column), column < 100 ? 32U : 33U) << column;
  }
  EXPECT_EQ(cells.FirstCell(), 32U);
  EXPECT_EQ(cells.EndCell(), 34U);
}

TEST(ColumnCells, BesideTheBandColumnsShowNone) {
  const CColumnCells cells(64, 1, 64e3, -64e3, 64e3, 128);
  EXPECT_EQ(cells.First(10), cells.End(10));
  EXPECT_EQ(cells.First(120), cells.End(120));
  EXPECT_EQ(cells.EndCell() - cells.FirstCell(), 64U);
  const CColumnCells beyond(64, 1, 64e3, 100e3, 200e3, 10);
  EXPECT_EQ(beyond.FirstCell(), beyond.EndCell());
  EXPECT_EQ(CColumnCells(64, 1, 64e3, -1, 1, 0).Columns(), 0U);
}

TEST(ColumnLevels, AreTheStrongestCellsOfAColumnAndTheMeanAndMaximumOfItsRows) {
  const CColumnCells cells(64, 1, 64e3, -32.5e3, 31.5e3, 8);
  std::vector<std::uint8_t> mean(64, LevelCode(1e-4f));
  std::vector<std::uint8_t> maximum(64, LevelCode(1e-3f));
  mean[3] = LevelCode(1e-2f);
  maximum[5] = LevelCode(1e-1f);
  for (std::size_t i = 8; i < 16; ++i) mean[i] = maximum[i] = kUnknownLevel;
  CColumnLevels levels(8);
  // In pieces, as the cells of a row may come.
  levels.Add(cells, mean.data(), maximum.data(), 0, 5);
  levels.Add(cells, &mean[5], &maximum[5], 5, 64);
  levels.EndRow();
  EXPECT_EQ(LevelCode(levels.Power(0)), mean[3]) << "a carrier keeps its level, whatever pieces its column came in";
  EXPECT_EQ(levels.Maximum(0), LevelCode(1e-1f));
  EXPECT_FALSE(levels.IsKnown(1));
  EXPECT_EQ(levels.Maximum(1), kUnknownLevel);
  std::vector<std::uint8_t> means(8);
  std::vector<std::uint8_t> maxima(8);
  levels.Codes(means.data(), maxima.data());
  EXPECT_EQ(means[1], kUnknownLevel);
  EXPECT_EQ(means[2], LevelCode(1e-4f));
  EXPECT_EQ(maxima[2], LevelCode(1e-3f));

  const std::vector<std::uint8_t> second(64, LevelCode(1e-4f));
  levels.Add(cells, second.data(), second.data(), 0, 64);
  levels.EndRow();
  EXPECT_NEAR(10 * std::log10(levels.Power(0)), 10 * std::log10((1e-2 + 1e-4) / 2), 0.3);
  EXPECT_TRUE(levels.IsKnown(1));
}

}  // namespace
}  // namespace carvello
