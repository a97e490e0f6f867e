#include "cli/progress_display.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/readable.h"

namespace carvello::test {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

const SProgressState kHalf{"", 0.5, 80e6, 65.0};

TEST(ProgressTextLine, ShowsPerCentRateAndTimeLeft) {
  EXPECT_EQ(ProgressTextLine(kHalf), " 50 %  80.0 MB/s  1:05 left");
  EXPECT_EQ(ProgressTextLine({"Batch 1/2", 0.5, 80e6, 65.0}), "Batch 1/2   50 %  80.0 MB/s  1:05 left");
}

TEST(ProgressAfter, TellsNoSpeedBeforeThereIsEnoughToTellItBy) {
  EXPECT_EQ(ProgressTextLine(ProgressAfter(0.02, 0.5, 40e6)), " 50 %");
  EXPECT_EQ(ProgressTextLine(ProgressAfter(0.49, 0.5, 40e6)), " 50 %");
  EXPECT_EQ(ProgressTextLine(ProgressAfter(0.5, 0.5, 40e6)), " 50 %  40.0 MB/s  0:01 left");
  EXPECT_EQ(ProgressTextLine(ProgressAfter(10.0, 0.0, 40e6)), "  0 %");
}

TEST(ProgressTextLine, LeavesOutWhatIsNotKnown) {
  EXPECT_EQ(ProgressTextLine({"", 0.0, 0.0, -1.0}), "  0 %");
  EXPECT_EQ(ProgressTextLine({"", 1.0, 0.0, -1.0}), "100 %");
}

TEST(ProgressTextLine, CutsThePerCent) {
  EXPECT_THAT(ProgressTextLine({"", 0.999, 0.0, -1.0}), HasSubstr(" 99 %"));
  EXPECT_THAT(ProgressTextLine({"", 0.29, 0.0, -1.0}), HasSubstr(" 29 %"));
}

TEST(ProgressBarLine, FillsTheBarByTheFraction) {
  const std::string line = ProgressBarLine(kHalf, 200);
  EXPECT_THAT(line, StartsWith("[" + std::string(25, '#') + std::string(25, '.') + "]   50 %"));
  EXPECT_THAT(ProgressBarLine({"", 1.0, 0.0, -1.0}, 200), StartsWith("[" + std::string(50, '#') + "]  100 %"));
  EXPECT_THAT(ProgressBarLine({"", 0.0, 0.0, -1.0}, 200), StartsWith("[" + std::string(50, '.') + "]    0 %"));
}

TEST(ProgressBarLine, FitsEveryWidth) {
  for (std::size_t columns = 1; columns < 120; ++columns) {
    EXPECT_LE(ProgressBarLine({"Batch 10/12", 0.42, 1234e6, 4000.0}, columns).size(), columns);
  }
}

TEST(ProgressBarLine, DropsTheBarWhereThereIsNoRoom) {
  EXPECT_EQ(ProgressBarLine(kHalf, 40), ProgressTextLine(kHalf));
  EXPECT_THAT(ProgressBarLine(kHalf, 60), StartsWith("[#"));
}

TEST(ProgressBarLine, KeepsItsLengthWhileTheNumbersGrow) {
  const auto barLength = [](const SProgressState& state) { return ProgressBarLine(state, 79).find(']'); };
  EXPECT_EQ(barLength({"", 0.0, 0.0, -1.0}), barLength({"", 0.5, 999e6, 35'999.0}));
}

// What the display prints goes to stderr.
class ProgressDisplay : public testing::Test {
 protected:
  static std::string Printed(CProgressDisplay::EMode mode, const SProgressSpan& span,
                             const std::vector<std::uint64_t>& places, bool complete) {
    CProgressDisplay display(mode);
    testing::internal::CaptureStderr();
    display.BeginBatch("", span);
    for (const std::uint64_t place : places) display.Update(10'000, place);
    display.EndBatch(complete);
    return testing::internal::GetCapturedStderr();
  }
  // The numbers before the "%" signs.
  static std::vector<int> PerCents(const std::string& text) {
    std::vector<int> numbers;
    for (std::size_t sign = text.find(" %"); sign != std::string::npos; sign = text.find(" %", sign + 1)) {
      numbers.push_back(std::stoi(text.substr(sign < 3 ? 0 : sign - 3, 3)));
    }
    return numbers;
  }

  const SProgressSpan m_whole{0.0, 1e9, 1e9};
};

TEST_F(ProgressDisplay, PrintsALineEveryTenPerCent) {
  std::vector<std::uint64_t> places;
  for (std::uint64_t place = 0; place <= 10'000; place += 50) places.push_back(place);
  EXPECT_THAT(PerCents(Printed(CProgressDisplay::EMode::Lines, m_whole, places, true)),
              testing::ElementsAre(10, 20, 30, 40, 50, 60, 70, 80, 90, 100));
}

TEST_F(ProgressDisplay, CountsTheStretchThatIsRead) {
  const SProgressSpan lastHalf{0.5e9, 1e9, 1e9};
  EXPECT_THAT(PerCents(Printed(CProgressDisplay::EMode::Lines, lastHalf, {5000, 7500}, false)),
              testing::ElementsAre(10, 20, 30, 40, 50));
}

TEST_F(ProgressDisplay, ANeverCompletedBatchIsNotSaidToBeDone) {
  EXPECT_THAT(PerCents(Printed(CProgressDisplay::EMode::Lines, m_whole, {2500, 10'000}, false)),
              testing::ElementsAre(10, 20, 30, 40, 50, 60, 70, 80, 90));
  EXPECT_THAT(Printed(CProgressDisplay::EMode::Bar, m_whole, {2500, 10'000}, false), testing::Not(HasSubstr("100 %")));
}

TEST_F(ProgressDisplay, RedrawsTheBarAtMostTenTimesASecond) {
  const std::string text = Printed(CProgressDisplay::EMode::Bar, m_whole, std::vector<std::uint64_t>(1000, 5000), true);
  // A thousand updates take far less than a second: one redraw, or a few on a very slow machine, and the last one.
  EXPECT_LE(PerCents(text).size(), 12U);
  EXPECT_EQ(PerCents(text).back(), 100);
}

TEST_F(ProgressDisplay, PrintsNothingWhenTurnedOff) {
  EXPECT_EQ(Printed(CProgressDisplay::EMode::None, m_whole, {5000, 10'000}, true), "");
}

TEST_F(ProgressDisplay, AnEmptyInputIsNoDivisionByZero) {
  EXPECT_THAT(PerCents(Printed(CProgressDisplay::EMode::Lines, {0.0, 0.0, 0.0}, {0, 10'000}, true)),
              testing::ElementsAre(100));
}

TEST_F(ProgressDisplay, LogLinesDoNotRunIntoTheBar) {
  CProgressDisplay display(CProgressDisplay::EMode::Bar);
  testing::internal::CaptureStderr();
  display.BeginBatch("", m_whole);
  display.Update(10'000, 5000);
  display.PrintLine("12:00:00> Reader> Stop");
  EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr(" \r12:00:00> Reader> Stop\n"));
}

}  // namespace
}  // namespace carvello::test
