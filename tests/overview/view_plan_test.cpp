// What a view is made of, and in what order that is looked at.
#include "overview/view_plan.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <set>

#include "overview/work_plan.h"

namespace carvello {
namespace {

constexpr double kRate = 10e6;
constexpr std::int64_t kFrames = 15'000'000'000;  // 60 GB of 16-bit samples

SSpectrumView View(double first, double frames, double low, double high, int columns = 1200, int rows = 800) {
  return {.dFirstFrame = first,
          .dFrames = frames,
          .dLowFrequency = low,
          .dHighFrequency = high,
          .nColumns = columns,
          .nRows = rows};
}

TEST(ViewPlan, AllOfARecordingIsTheOverviewAtALevelThatNoPixelIsFinerThan) {
  const SViewPlan plan = PlanView(View(0, kFrames, -5e6, 5e6), kFrames, kRate);
  EXPECT_FALSE(plan.bDetail);
  EXPECT_EQ(plan.nLevel, 1);
  EXPECT_EQ(plan.nFirstRow, 0);
  EXPECT_EQ(plan.nEndRow, plan.grid.Rows());
}

TEST(ViewPlan, NarrowViewOfAllTimesHasALongerTransform) {
  const SViewPlan plan = PlanView(View(0, kFrames, 100e3, 200e3), kFrames, kRate);
  EXPECT_TRUE(plan.bDetail);
  EXPECT_EQ(plan.grid.nTransform, 131'072U) << "a bin of 76 Hz for columns of 83 Hz";
  EXPECT_EQ(plan.target, ERowState::Sixteen) << "60 GB are not read for a view";
  EXPECT_LT(plan.nEndCell - plan.nFirstCell, 1500U);
}

TEST(ViewPlan, ShortViewHasRowsNoLongerThanItsPixels) {
  const SViewPlan plan = PlanView(View(1e9, 8e6, -5e6, 5e6), kFrames, kRate);
  EXPECT_TRUE(plan.bDetail);
  EXPECT_LE(plan.grid.nRowFrames, 10'000);
  EXPECT_GE(plan.grid.nRowFrames, 5'000);
  EXPECT_EQ(plan.target, ERowState::Whole);
}

TEST(ViewPlan, SquareCloseViewIsEquallySharpBothWays) {
  // A column wants 12,000 frames, a row 100.
  const SViewPlan plan = PlanView(View(1e9, 80'000, 0, 1e6), kFrames, kRate);
  EXPECT_EQ(plan.grid.nTransform, 2048U);
  EXPECT_EQ(plan.grid.nRowFrames, 128) << "sixteen rows to a transform are enough";
}

TEST(ViewPlan, ChosenTransformAndWindowAreUsed) {
  SSpectrumView view = View(0, kFrames, -5e6, 5e6);
  view.nTransform = 1'048'576;
  view.window = EWindow::FlatTop;
  const SViewPlan plan = PlanView(view, kFrames, kRate);
  EXPECT_TRUE(plan.bDetail);
  EXPECT_EQ(plan.grid.nTransform, 1'048'576U);
  EXPECT_EQ(plan.grid.window, EWindow::FlatTop);
  EXPECT_EQ(plan.grid.nCellBins, 512U) << "no more cells than two a column, however many bins";
}

TEST(ViewPlan, NonsenseShowsNothingAndReadsNothing) {
  constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  for (const SSpectrumView& view :
       {View(0, 0, -1, 1), View(0, -5, -1, 1), View(kNone, 5, -1, 1), View(0, kInfinity, -1, 1), View(0, 5, 1, -1),
        View(0, 5, kNone, 1), View(0, 5, -1, kInfinity), View(0, 5, -1, 1, 0, 5), View(0, 5, -1, 1, 5, 0)}) {
    EXPECT_FALSE(IsSound(view));
    EXPECT_FALSE(PlanView(view, kFrames, kRate).bDetail);
  }
  for (const SSpectrumView& view : {View(-1000, 500, -1e6, 1e6), View(2.0 * kFrames, 500, -1e6, 1e6),
                                    View(0, 500, 6e6, 7e6), View(0, 500, -7e6, -6e6)}) {
    EXPECT_TRUE(IsSound(view));
    EXPECT_FALSE(PlanView(view, kFrames, kRate).bDetail) << view.dFirstFrame << ", " << view.dLowFrequency;
  }
  EXPECT_FALSE(PlanView(View(0, 5, -1, 1), 0, kRate).bDetail) << "a recording without frames";
}

TEST(ViewPlan, PixelsShareTheRowsWithoutGapsOrOverlap) {
  const SSpectrumView view = View(12'345.6, 1e6, -1, 1, 10, 313);
  std::int64_t end = RowsOfPixel(view, 0, 1000, 10'000'000).first;
  for (int pixel = 0; pixel < view.nRows; ++pixel) {
    const auto [first, last] = RowsOfPixel(view, pixel, 1000, 10'000'000);
    EXPECT_EQ(first, end);
    EXPECT_GT(last, first);
    end = last;
  }
}

TEST(WorkPlan, RowsSpreadEvenlyFromTheFirstOnAndEachRoundIsSortedByPlace) {
  const std::vector<std::int64_t> rows = SpreadRows(0, 8192);
  EXPECT_EQ(std::set<std::int64_t>(rows.begin(), rows.end()).size(), 8192U);
  EXPECT_EQ(rows.size(), 8192U);
  auto begin = rows.begin();
  for (const std::ptrdiff_t round : {64, 128, 256, 512, 1024, 2048, 4096}) {
    EXPECT_TRUE(std::is_sorted(begin, begin + round)) << round;
    begin += round;
  }
  for (std::size_t i = 1; i < 64; ++i) EXPECT_EQ(rows[i] - rows[i - 1], 128);
  EXPECT_EQ(rows[0], 64) << "the middle of its stretch";
  const std::vector<std::int64_t> some = SpreadRows(100, 200);
  EXPECT_EQ(some.size(), 100U);
  EXPECT_EQ(std::set<std::int64_t>(some.begin(), some.end()).size(), 100U);
  EXPECT_THAT(some, testing::Each(testing::AllOf(testing::Ge(100), testing::Lt(200))));
  EXPECT_TRUE(SpreadRows(5, 5).empty());
}

class WorkPlanTest : public testing::Test {
 protected:
  std::vector<SRowTask> Drain(bool own, bool slow) {
    std::vector<SRowTask> tasks;
    while (auto task = m_plan.Next(own, slow)) tasks.push_back(*task);
    return tasks;
  }

  CWorkPlan m_plan{BaseGrid(kFrames)};
};

TEST_F(WorkPlanTest, FirstTheWholeRecordingIsLookedAtSixtyFourTimes) {
  m_plan.Show(PlanView(View(0, kFrames, 100e3, 200e3), kFrames, kRate));
  for (int i = 0; i < 64; ++i) EXPECT_FALSE(m_plan.Next(true, true)->bDetail);
  EXPECT_TRUE(m_plan.Next(true, true)->bDetail) << "then what the view shows";
}

TEST_F(WorkPlanTest, NewestViewTakesThePlaceOfWhatIsLeftOfTheOneBefore) {
  m_plan.Show(PlanView(View(0, kFrames, 100e3, 200e3), kFrames, kRate));
  for (int i = 0; i < 100; ++i) m_plan.Next(true, false);
  const std::uint64_t before = m_plan.View();
  m_plan.Show(PlanView(View(1e9, 8e6, -5e6, 5e6), kFrames, kRate));
  const auto task = m_plan.Next(true, false);
  EXPECT_NE(task->nView, before);
  EXPECT_LE(task->grid.nRowFrames, 10'000);
}

TEST_F(WorkPlanTest, OnASlowDiskTheOverviewIsReadWholeInsteadOfHereAndThere) {
  const auto slow = Drain(true, true);
  EXPECT_EQ(slow.size(), 1024U);
  const auto rest = Drain(true, false);
  EXPECT_EQ(rest.size() + slow.size(), static_cast<std::size_t>(3 * BaseGrid(kFrames).Rows()));
}

TEST_F(WorkPlanTest, InAJobOnlyWhatAViewWantsIsRead) {
  EXPECT_EQ(Drain(false, false).size(), 64U);
  m_plan.Show(PlanView(View(0, 800e6, -5e6, 5e6), kFrames, kRate));
  const std::size_t viewed = Drain(false, false).size();
  EXPECT_GT(viewed, 0U);
  EXPECT_LT(viewed, 8000U);
}

TEST_F(WorkPlanTest, EverySampleIsLookedAtInViewFirstAndOnce) {
  const SViewPlan view = PlanView(View(7e9, 4e9, -5e6, 5e6), kFrames, kRate);
  ASSERT_FALSE(view.bDetail);
  m_plan.Show(view);
  std::vector<std::int64_t> rows;
  while (const auto task = m_plan.NextWhole()) rows.push_back(task->nRow);
  const auto inView = static_cast<std::size_t>(view.nEndRow - view.nFirstRow);
  EXPECT_EQ(rows.size(), inView + static_cast<std::size_t>(BaseGrid(kFrames).Rows()));
  EXPECT_EQ(rows.front(), view.nFirstRow);
  EXPECT_EQ(rows[inView - 1], view.nEndRow - 1);
  m_plan.GiveBackWhole({.grid = {}, .nRow = 17});
  EXPECT_EQ(m_plan.NextWhole()->nRow, 17) << "what was not finished comes again";
}

}  // namespace
}  // namespace carvello
