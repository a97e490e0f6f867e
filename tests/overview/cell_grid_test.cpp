#include "overview/cell_grid.h"

#include <gtest/gtest.h>

#include <set>

namespace carvello {
namespace {

TEST(CellGrid, BaseHasAtMostSoManyRowsAndNoneShorterThanATransform) {
  for (const std::int64_t frames : {1LL, 4096LL, 4097LL, 33'554'432LL, 33'554'433LL, 15'000'000'000LL}) {
    const SCellGrid grid = BaseGrid(frames);
    EXPECT_LE(grid.Rows(), kBaseRows) << frames;
    EXPECT_GE(grid.Rows() * grid.nRowFrames, frames);
    EXPECT_EQ(grid.nRowFrames % 4096, 0);
  }
  EXPECT_EQ(BaseGrid(33'554'432).nRowFrames, 4096);
  EXPECT_EQ(BaseGrid(33'554'433).nRowFrames, 8192);
}

// Windows that overlap by half add up to the same weight everywhere: no frame is looked at less than another, but for
// the outermost quarter of a transform at both ends of the recording.
void ExpectEveryFrameTwice(const SCellGrid& grid) {
  std::vector<int> seen(static_cast<std::size_t>(grid.nFrames));
  for (std::int64_t row = 0; row < grid.Rows(); ++row) {
    for (std::int64_t i = 0; i < grid.Transforms(row); ++i) {
      const std::int64_t begin = grid.Begin(row, i);
      EXPECT_GE(begin, 0);
      EXPECT_LE(begin + static_cast<std::int64_t>(grid.nTransform), grid.nFrames);
      for (std::size_t k = 0; k < grid.nTransform; ++k) ++seen[static_cast<std::size_t>(begin) + k];
    }
  }
  const std::size_t quarter = grid.nTransform / 4;
  for (std::size_t i = 0; i < seen.size(); ++i) {
    ASSERT_GE(seen[i], i < quarter || i >= seen.size() - quarter ? 1 : 2) << i;
  }
}

TEST(CellGrid, EveryFrameIsInTwoTransformsAlsoAcrossRowsAndAtTheEnds) {
  ExpectEveryFrameTwice({.nTransform = 64, .nRowFrames = 256, .nFrames = 1024});
  ExpectEveryFrameTwice({.nTransform = 64, .nRowFrames = 256, .nFrames = 1000});
  ExpectEveryFrameTwice({.nTransform = 64, .nRowFrames = 96, .nFrames = 777});
  ExpectEveryFrameTwice({.nTransform = 64, .nRowFrames = 8, .nFrames = 300});
}

TEST(CellGrid, RecordingShorterThanATransformIsOneFromItsBeginning) {
  const SCellGrid grid{.nTransform = 64, .nRowFrames = 64, .nFrames = 10};
  EXPECT_EQ(grid.Rows(), 1);
  EXPECT_EQ(grid.Transforms(0), 1);
  EXPECT_EQ(grid.Begin(0, 0), 0);
}

TEST(CellGrid, StretchesOfARowSpreadEvenlyAndEachStepHoldsTheOneBefore) {
  for (const std::int64_t transforms : {17LL, 100LL, 900LL}) {
    std::set<std::int64_t> all;
    for (std::int64_t i = 0; i < 16; ++i) {
      const std::int64_t transform = SparseTransform(i, transforms);
      EXPECT_GE(transform, 0);
      EXPECT_LT(transform, transforms);
      all.insert(transform);
      if (i != 3 && i != 15) continue;
      // After four and sixteen the gaps differ by one at most.
      std::int64_t shortest = transforms;
      std::int64_t longest = 0;
      for (auto place = all.begin(); std::next(place) != all.end(); ++place) {
        shortest = std::min(shortest, *std::next(place) - *place);
        longest = std::max(longest, *std::next(place) - *place);
      }
      EXPECT_LE(longest - shortest, 1) << transforms;
    }
    EXPECT_EQ(all.size(), 16U);
  }
  EXPECT_EQ(SparseTransform(0, 900), 450) << "the middle first";
}

TEST(CellGrid, StepsEndWithEverythingAndAreNeverLargerThanTheRow) {
  for (const std::int64_t transforms : {1LL, 2LL, 16LL, 17LL, 5000LL}) {
    std::int64_t known = 0;
    for (ERowState state = ERowState::Nothing; state != ERowState::Whole;) {
      state = NextState(state, transforms);
      EXPECT_GT(StateTransforms(state, transforms), known);
      known = StateTransforms(state, transforms);
    }
    EXPECT_EQ(known, transforms);
  }
}

}  // namespace
}  // namespace carvello
