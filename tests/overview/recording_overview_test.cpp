// The overview as its window uses it, on recordings with known signals in them.
#include "overview/recording_overview.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <climits>
#include <cmath>
#include <cstdint>
#include <future>
#include <memory>
#include <thread>

#include "engine/block_reader.h"
#include "overview/cell_grid.h"
#include "overview/left_threads.h"
#include "overview/overview_fixture.h"
#include "spectrum/level_code.h"

namespace carvello::test {
namespace {

using testing::Each;

constexpr std::int64_t kShort = 8 << 20;

bool HasRows(const SSpectrumPicture& picture, ERowKnown least) {
  return std::all_of(picture.rows.begin(), picture.rows.end(), [&](ERowKnown row) { return row >= least; });
}

void ExpectSame(const SSpectrumPicture& a, const SSpectrumPicture& b) {
  EXPECT_TRUE(a.mean == b.mean);
  EXPECT_TRUE(a.maximum == b.maximum);
  EXPECT_TRUE(a.rows == b.rows);
  EXPECT_TRUE(a.average == b.average);
  EXPECT_TRUE(a.peak == b.peak);
}

TEST(RecordingOverview, ToneStandsInItsColumnWithItsLevel) {
  SMadeUp madeUp{.nFrames = kShort, .tones = {{.dFrequency = 250e3, .dAmplitude = 0.1}}};
  CWatchedOverview overview(madeUp);
  const SSpectrumView view = Everything(madeUp, 400, 100);
  const auto picture = overview.WaitForComplete(view);
  ASSERT_NE(picture, nullptr);
  const int column = ColumnOf(view, 250e3);
  for (const int row : {0, 50, 99}) {
    EXPECT_EQ(LoudestColumn(*picture, row), column);
    EXPECT_NEAR(Maximum(*picture, row, column), -20.0, 0.4);
  }
  EXPECT_NEAR(picture->peak[static_cast<std::size_t>(column)], -20.0, 0.4);
  EXPECT_EQ(picture->dKnown, 1.0);
  EXPECT_THAT(picture->rows, Each(ERowKnown::Every));
  EXPECT_TRUE(overview.WaitUntil([&] { return overview->Progress() == 1.0; }));
  EXPECT_EQ(overview->Problem(), "");
}

TEST(RecordingOverview, SweepGoesThroughThePixelsOfItsTimesAndFrequencies) {
  SMadeUp madeUp{.nFrames = 16 << 20, .tones = {{.dFrequency = -400e3, .dAmplitude = 0.5, .dSweep = 800e3 / 16.777}}};
  CWatchedOverview overview(madeUp);
  const SSpectrumView view = Everything(madeUp, 200, 128);
  const auto picture = overview.WaitForComplete(view);
  ASSERT_NE(picture, nullptr);
  for (int row = 1; row < 127; ++row) {
    const double seconds = (row + 0.5) / 128 * 16.777;
    EXPECT_NEAR(LoudestColumn(*picture, row), ColumnOf(view, -400e3 + 800e3 / 16.777 * seconds), 1) << row;
  }
}

TEST(RecordingOverview, BurstOfFiveMillisecondsInAnHourIsInTheMaximumOfItsRow) {
  constexpr double kRate = 48'000;
  constexpr auto kHour = static_cast<std::int64_t>(3600 * kRate);
  constexpr std::int64_t kBegin = 100'000'123;
  SMadeUp madeUp{.nFrames = kHour,
                 .dRate = kRate,
                 .tones = {{.dFrequency = 7e3, .dAmplitude = 0.5, .nBegin = kBegin, .nEnd = kBegin + 240}}};
  CWatchedOverview overview(madeUp);
  const SSpectrumView view = Everything(madeUp, 320, 256);
  const auto picture = overview.WaitForComplete(view);
  ASSERT_NE(picture, nullptr);
  const int row = RowOf(view, kBegin);
  const int column = ColumnOf(view, 7e3);
  EXPECT_GT(Maximum(*picture, row, column), -40.0);
  EXPECT_LT(Mean(*picture, row, column), Maximum(*picture, row, column) - 10.0) << "one transform of many";
  EXPECT_GT(picture->peak[static_cast<std::size_t>(column)], -40.0);
  for (const int other : {row - 3, row + 3, 5}) EXPECT_LT(Maximum(*picture, other, column), -120.0);
}

TEST(RecordingOverview, TwoTonesThreeBinsApartAreTwo) {
  constexpr double kBin = 1e6 / 65'536;
  SMadeUp madeUp{
      .nFrames = kShort,
      .tones = {{.dFrequency = 1000 * kBin, .dAmplitude = 0.1}, {.dFrequency = 1003 * kBin, .dAmplitude = 0.1}}};
  CWatchedOverview overview(madeUp);
  SSpectrumView view = Everything(madeUp, 200, 20);
  view.dLowFrequency = 991.5 * kBin;
  view.dHighFrequency = 1011.5 * kBin;
  view.nTransform = 65'536;
  const auto picture = overview.WaitForComplete(view);
  ASSERT_NE(picture, nullptr);
  EXPECT_EQ(picture->nTransform, 65'536U);
  for (const int row : {0, 10, 19}) {
    const double one = Mean(*picture, row, ColumnOf(view, 1000 * kBin));
    EXPECT_NEAR(one, -20.0, 0.4);
    EXPECT_NEAR(Mean(*picture, row, ColumnOf(view, 1003 * kBin)), -20.0, 0.4);
    EXPECT_LT(Mean(*picture, row, ColumnOf(view, 1001.5 * kBin)), one - 4.0);
  }
}

TEST(RecordingOverview, PictureIsTheSameWhateverWasLookedAtBefore) {
  SMadeUp madeUp{.nFrames = kShort, .tones = {{.dFrequency = 30e3, .dAmplitude = 0.1, .dSweep = 5e3}}, .dNoise = 0.003};
  SSpectrumView view = Everything(madeUp, 300, 200);
  view.dFirstFrame = 1'234'567;
  view.dFrames = 400'000;
  view.dLowFrequency = -12'345;
  view.dHighFrequency = 112'345;
  const auto expected = CWatchedOverview(madeUp).WaitForComplete(view);
  ASSERT_NE(expected, nullptr);

  CWatchedOverview roundabout(madeUp);
  for (const double shift : {-300'000.0, 250'000.0, -130'001.0, 77.0}) {
    SSpectrumView other = view;
    other.dFirstFrame += shift;
    other.dLowFrequency += shift / 10;
    other.dHighFrequency += shift / 10;
    ASSERT_NE(
        shift > 0 ? roundabout.WaitForComplete(other) : roundabout.WaitFor(other, [](const auto&) { return true; }),
        nullptr);
  }
  const auto picture = roundabout.WaitForComplete(view);
  ASSERT_NE(picture, nullptr);
  ExpectSame(*picture, *expected);
}

TEST(RecordingOverview, WhatWasSeenOnceIsNotReadAgain) {
  SMadeUp madeUp{.nFrames = 4LL * 4096 * 8192, .tones = {{.dFrequency = 30e3}}};
  CWatchedOverview overview(madeUp);
  overview->Pause(true);
  SSpectrumView near = Everything(madeUp, 300, 200);
  near.dFirstFrame = 20'000'000;
  near.dFrames = 1'000'000;
  SSpectrumView other = near;
  other.dFirstFrame = 60'000'000;
  ASSERT_NE(overview.WaitForComplete(near), nullptr);
  ASSERT_NE(overview.WaitForComplete(other), nullptr);
  const std::int64_t read = madeUp.nFramesRead;
  ASSERT_NE(overview.WaitForComplete(near), nullptr);
  EXPECT_EQ(madeUp.nFramesRead, read);
}

TEST(RecordingOverview, FirstPictureIsOfAllTimesAndTellsThatItIsNotComplete) {
  SMadeUp madeUp{.nFrames = 64LL * 4096 * 8192, .tones = {{.dFrequency = -101e3, .dAmplitude = 0.5}}};
  CWatchedOverview overview(madeUp);
  overview->Pause(true);
  const SSpectrumView view = Everything(madeUp, 400, 300);
  const auto picture =
      overview.WaitFor(view, [](const SSpectrumPicture& made) { return HasRows(made, ERowKnown::Neighbours); });
  ASSERT_NE(picture, nullptr);
  EXPECT_FALSE(picture->bComplete);
  EXPECT_EQ(picture->dKnown, 1.0);
  for (const int row : {0, 150, 299}) EXPECT_EQ(LoudestColumn(*picture, row), ColumnOf(view, -101e3));
  EXPECT_EQ(overview->Progress(), 0.0) << "no row is whole";
}

TEST(RecordingOverview, CloserViewShowsTheOverviewUntilItIsComputed) {
  SMadeUp madeUp{.nFrames = kShort, .tones = {{.dFrequency = 250e3, .dAmplitude = 0.1}}};
  CWatchedOverview overview(madeUp);
  ASSERT_NE(overview.WaitForComplete(Everything(madeUp, 400, 100)), nullptr);
  madeUp.bHeld = true;
  SSpectrumView view = Everything(madeUp, 400, 100);
  view.dFrames = 50'000;
  const auto picture = overview.WaitFor(view, [](const auto& made) { return made.dKnown == 1.0; });
  ASSERT_NE(picture, nullptr);
  EXPECT_FALSE(picture->bComplete);
  EXPECT_THAT(picture->rows, Each(ERowKnown::Neighbours));
  madeUp.bHeld = false;
  const auto complete = overview.WaitForComplete(view);
  ASSERT_NE(complete, nullptr);
  EXPECT_NEAR(Maximum(*complete, 50, ColumnOf(view, 250e3)), -20.0, 0.4);
}

TEST(RecordingOverview, BesideTheRecordingAndItsBandNothingIsKnown) {
  SMadeUp madeUp{.nFrames = kShort, .dNoise = 0.1};
  CWatchedOverview overview(madeUp);
  SSpectrumView view = Everything(madeUp, 400, 300);
  view.dFirstFrame -= kShort;
  view.dFrames = 3 * static_cast<double>(kShort);
  view.dLowFrequency = -1e6;
  view.dHighFrequency = 1e6;
  const auto picture = overview.WaitForComplete(view);
  ASSERT_NE(picture, nullptr);
  EXPECT_EQ(picture->rows[50], ERowKnown::Nothing);
  EXPECT_EQ(picture->rows[150], ERowKnown::Every);
  EXPECT_EQ(picture->rows[250], ERowKnown::Nothing);
  EXPECT_EQ(picture->mean[150 * 400 + 50], 0);
  EXPECT_NE(picture->mean[150 * 400 + 200], 0);
  EXPECT_EQ(picture->average[50], -std::numeric_limits<float>::infinity());
  EXPECT_NEAR(picture->dKnown, 1.0 / 6, 0.01);
}

TEST(RecordingOverview, CarrierKeepsItsLevelHoweverWideAColumnIs) {
  SMadeUp madeUp{.nFrames = kShort, .tones = {{.dFrequency = 250e3, .dAmplitude = 0.1}}, .dNoise = 0.001};
  CWatchedOverview overview(madeUp);
  for (const int columns : {7, 100, 4096}) {
    const SSpectrumView view = Everything(madeUp, columns, 20);
    const auto picture = overview.WaitForComplete(view);
    ASSERT_NE(picture, nullptr);
    const auto column = static_cast<std::size_t>(ColumnOf(view, 250e3));
    EXPECT_NEAR(picture->average[column], -20.0, 0.4) << columns;
    EXPECT_NEAR(CodeLevel(picture->mean[10 * static_cast<std::size_t>(columns) + column]), -20.0, 0.4) << columns;
  }
}

TEST(RecordingOverview, NoiseHasTheLevelOfItsBandwidthInEveryMode) {
  SMadeUp madeUp{.nFrames = kShort, .dNoise = 0.1};  // -20 dBFS over 1 MHz
  CWatchedOverview overview(madeUp);
  for (const std::size_t transform : {std::size_t{1024}, std::size_t{4096}, std::size_t{65'536}}) {
    // A bin a column: wider ones show their strongest.
    SSpectrumView view = Everything(madeUp, 100, 50);
    view.nTransform = transform;
    view.dHighFrequency = 50 * 1e6 / static_cast<double>(transform);
    view.dLowFrequency = -view.dHighFrequency;
    const auto picture = overview.WaitForComplete(view);
    ASSERT_NE(picture, nullptr);
    const double expected = -20.0 + 10 * std::log10(1.5 / static_cast<double>(picture->nTransform));
    EXPECT_NEAR(picture->average[37], expected, 0.4) << picture->nTransform;
    // Of a row, by all of its pixels: each holds a few transforms only.
    double power = 0;
    for (int column = 0; column < 100; ++column) power += std::pow(10.0, Mean(*picture, 25, column) / 10) / 100;
    EXPECT_NEAR(10 * std::log10(power), expected, 0.6) << picture->nTransform;
  }
}

TEST(RecordingOverview, SlowDiskReadsOnePlaceAtATimeAndAFastOneSeveral) {
  const auto mostInFlight = [](std::chrono::microseconds delay) {
    SMadeUp madeUp{.nFrames = 64LL * 4096 * 8192, .delay = delay};
    CWatchedOverview overview(madeUp);
    overview->Pause(true);
    EXPECT_NE(overview.WaitFor(Everything(madeUp, 100, 200),
                               [](const auto& made) { return HasRows(made, ERowKnown::Stretches); }),
              nullptr);
    return madeUp.nMostInFlight.load();
  };
  EXPECT_EQ(mostInFlight(std::chrono::milliseconds(10)), 1);
  const int fast = mostInFlight(std::chrono::microseconds(100));
  EXPECT_GT(fast, 1);
  EXPECT_LE(fast, 8);
}

TEST(RecordingOverview, LongTransformsAreMadeTwoAtATimeForTheirMemory) {
  SMadeUp madeUp{.nFrames = 64 << 20, .delay = std::chrono::microseconds(100)};
  CWatchedOverview overview(madeUp);
  overview->Pause(true);
  SSpectrumView view = Everything(madeUp, 50, 20);
  ASSERT_NE(overview.WaitFor(view, [](const auto& made) { return HasRows(made, ERowKnown::Stretches); }), nullptr);
  view.dFrames = 8 << 20;
  view.nTransform = 131'072;
  ASSERT_NE(overview.WaitFor(view, [](const auto& made) { return HasRows(made, ERowKnown::Stretches); }), nullptr);
  madeUp.nMostInFlight = 0;
  view.dFirstFrame = 16 << 20;
  ASSERT_NE(overview.WaitForComplete(view), nullptr);
  EXPECT_GT(madeUp.nMostInFlight, 0);
  EXPECT_LE(madeUp.nMostInFlight, 2);
}

TEST(RecordingOverview, LongTransformsAreMadeOnASlowDiskWhoeverWasReading) {
  SMadeUp madeUp{.nFrames = 64 << 20, .delay = std::chrono::milliseconds(5)};
  CWatchedOverview overview(madeUp);
  overview->Pause(true);
  SSpectrumView shortOnes = Everything(madeUp, 50, 20);
  ASSERT_NE(overview.WaitFor(shortOnes, [](const auto& made) { return HasRows(made, ERowKnown::Stretches); }), nullptr);
  SSpectrumView longOnes = Everything(madeUp, 50, 4);
  longOnes.dFrames = 1 << 20;
  longOnes.nTransform = 131'072;
  shortOnes.nTransform = 1024;
  shortOnes.dFrames = 1 << 20;
  for (int i = 1; i <= 12; ++i) {
    // Any of the workers may be the one that reads when the long ones are wanted.
    shortOnes.dFirstFrame = longOnes.dFirstFrame = i * 0x1p21;
    overview->Show(shortOnes);
    while (madeUp.nInFlight == 0) std::this_thread::yield();
    ASSERT_NE(overview.WaitForComplete(longOnes), nullptr) << i;
  }
}

TEST(RecordingOverview, GoesWithoutWaitingForAReadAndCallsNobodyAnyMore) {
  SMadeUp madeUp{.nFrames = kShort};
  int calls = 0;
  {
    CWatchedOverview overview(madeUp);
    overview->Show(Everything(madeUp, 100, 100));
    ASSERT_TRUE(overview.WaitUntil([&] { return overview->Picture() != nullptr; }));
    madeUp.bHeld = true;
    while (madeUp.nInFlight == 0 && overview->Progress() < 1.0) std::this_thread::yield();
    overview.Close();  // would never return if it waited
    calls = overview.Calls();
    madeUp.bHeld = false;
    JoinLeftThreads();
    EXPECT_EQ(overview.Calls(), calls);
  }
}

TEST(RecordingOverview, ViewsThatChangeAllTheTimeEndWithTheLastOne) {
  SMadeUp madeUp{.nFrames = kShort, .tones = {{.dFrequency = 100e3}}};
  CWatchedOverview overview(madeUp);
  SSpectrumView view = Everything(madeUp, 200, 100);
  for (int i = 0; i < 2000; ++i) {
    view.dFirstFrame = i * 1000.0;
    view.dFrames = 100'000.0 + 100 * i;
    overview->Show(view);
  }
  const auto picture = overview.WaitForComplete(view);
  ASSERT_NE(picture, nullptr);
  EXPECT_EQ(LoudestColumn(*picture, 50), ColumnOf(view, 100e3));
}

TEST(RecordingOverview, CallsComeAtMostThirtyTimesASecond) {
  SMadeUp madeUp{.nFrames = 64 << 20};
  const auto start = std::chrono::steady_clock::now();
  CWatchedOverview overview(madeUp);
  ASSERT_NE(overview.WaitForComplete(Everything(madeUp, 50, 50)), nullptr);
  const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
  EXPECT_LE(overview.Calls(), 31 * took.count() + 2);
}

TEST(RecordingOverview, WhatCannotBeReadIsToldAndTheRestIsShown) {
  SMadeUp madeUp{.nFrames = kShort, .dNoise = 0.1, .nBadBegin = 4'000'000, .nBadEnd = 4'000'001};
  CWatchedOverview overview(madeUp);
  const SSpectrumView view = Everything(madeUp, 50, 64);
  const auto picture = overview.WaitFor(view, [](const SSpectrumPicture& made) {
    return std::count(made.rows.begin(), made.rows.end(), ERowKnown::Every) == 63;
  });
  ASSERT_NE(picture, nullptr);
  EXPECT_THAT(overview->Problem(), testing::StartsWith("made-up.wav: frame 40000"));
  EXPECT_FALSE(picture->bComplete);
  EXPECT_LT(overview->Progress(), 1.0);
}

TEST(RecordingOverview, RowsThatThereWasNoMemoryForLeaveTheOthers) {
  constexpr int kWithout = 20;
  SMadeUp madeUp{.nFrames = kShort};
  madeUp.nThrowing = kWithout;
  CWatchedOverview overview(madeUp);
  overview->Show(Everything(madeUp, 50, 64));
  const auto rows = static_cast<double>(BaseGrid(kShort).Rows());
  EXPECT_TRUE(overview.WaitUntil([&] { return overview->Progress() >= (rows - kWithout) / rows; }));
  EXPECT_EQ(madeUp.nThrowing, 0);
  EXPECT_EQ(overview->Problem(), "Not enough memory");
}

TEST(RecordingOverview, ViewOfAVeryLongTimeIsCompleteUpToTheRecordingsLastShortRow) {
  SMadeUp madeUp{.nFrames = (std::int64_t{1} << 31) + 700};
  CWatchedOverview overview(madeUp);
  overview->Pause(true);
  SSpectrumView view = Everything(madeUp, 50, 200);
  view.nTransform = 1024;
  EXPECT_NE(overview.WaitForComplete(view), nullptr);
}

TEST(RecordingOverview, RecordingWithoutFramesIsShownAsNothing) {
  SMadeUp madeUp{.nFrames = 0};
  CWatchedOverview overview(madeUp);
  SSpectrumView view = Everything(madeUp, 20, 10);
  view.dFrames = 100;
  const auto picture = overview.WaitFor(view, [](const auto&) { return true; });
  ASSERT_NE(picture, nullptr);
  EXPECT_EQ(picture->dKnown, 0.0);
}

TEST(RecordingOverview, RecordingShorterThanATransformIsShown) {
  SMadeUp madeUp{.nFrames = 1500, .tones = {{.dFrequency = 250e3}}};
  CWatchedOverview overview(madeUp);
  const SSpectrumView view = Everything(madeUp, 64, 16);
  const auto picture = overview.WaitForComplete(view);
  ASSERT_NE(picture, nullptr);
  EXPECT_EQ(LoudestColumn(*picture, 8), ColumnOf(view, 250e3));
}

// ---- carriers ----

std::optional<double> Find(CWatchedOverview& overview, double frequency, double reach, double first, double frames) {
  std::promise<std::optional<double>> answer;
  overview->FindCarrier(frequency, reach, first, frames, [&](std::optional<double> found) { answer.set_value(found); });
  return answer.get_future().get();
}

TEST(RecordingOverview, CarrierInNoiseIsFoundToATenthOfAHertz) {
  SMadeUp madeUp{.nFrames = 10'000'000,
                 .tones = {{.dFrequency = 123'456.789, .dAmplitude = 0.01}, {.dFrequency = 150e3, .dAmplitude = 1.0}},
                 .dNoise = 0.05};
  CWatchedOverview overview(madeUp);
  const auto found = Find(overview, 123'400, 200, 0, 1e7);
  ASSERT_TRUE(found);
  EXPECT_NEAR(*found, 123'456.789, 0.02);
  const auto wide = Find(overview, 120'000, 5'000, 0, 1e7);
  ASSERT_TRUE(wide);
  EXPECT_NEAR(*wide, 123'456.789, 0.1) << "the strong one beyond reach does not count";
  EXPECT_FALSE(Find(overview, 50'000, 200, 0, 1e7)) << "there is only noise";
  EXPECT_FALSE(Find(overview, 149'900, 99, 0, 1e7)) << "one just beyond reach is none";
  EXPECT_FALSE(Find(overview, 123'400, 200, 2e7, 1e7)) << "behind the end";
  EXPECT_FALSE(Find(overview, 123'400, 0, 0, 1e7));
}

TEST(RecordingOverview, EveryRequestForACarrierIsAnsweredWhileTheOverviewIsThere) {
  SMadeUp madeUp{.nFrames = 4'000'000, .tones = {{.dFrequency = 10'000.25}}};
  CWatchedOverview overview(madeUp);
  std::atomic<int> answers = 0;
  std::atomic<int> found = 0;
  for (int i = 0; i < 40; ++i) {
    overview->FindCarrier(10'000, 50, 0, 1e6, [&](std::optional<double> frequency) {
      found += frequency.has_value() ? 1 : 0;
      ++answers;
    });
  }
  while (answers < 40) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  EXPECT_GE(found, 8);
}

TEST(RecordingOverview, RequestForACarrierIsAnsweredAlsoWithoutMemory) {
  SMadeUp madeUp{.nFrames = 4'000'000, .tones = {{.dFrequency = 10'000.25}}};
  madeUp.nThrowing = INT_MAX;
  CWatchedOverview overview(madeUp);
  std::promise<std::optional<double>> answer;
  std::future<std::optional<double>> answered = answer.get_future();
  overview->FindCarrier(10'000, 50, 0, 1e6, [&](std::optional<double> found) { answer.set_value(found); });
  ASSERT_EQ(answered.wait_for(std::chrono::seconds(60)), std::future_status::ready);
  EXPECT_FALSE(answered.get());
}

// ---- the blocks of a job ----

SharedBlock Block(SMadeUp& madeUp, std::int64_t position, std::int32_t frames) {
  const std::shared_ptr<SComplex[]> block(new SComplex[static_cast<std::size_t>(frames)]);
  CMadeUpSource(madeUp).Read(position, block.get(), frames);
  return block;
}

TEST(RecordingOverview, BlocksOfAJobMakeTheSameOverviewWithoutReading) {
  SMadeUp madeUp{.nFrames = 5'000'123, .tones = {{.dFrequency = 250e3, .dAmplitude = 0.1}}, .dNoise = 0.01};
  const SSpectrumView view = Everything(madeUp, 400, 100);
  const auto expected = CWatchedOverview(madeUp).WaitForComplete(view);
  ASSERT_NE(expected, nullptr);

  SMadeUp unread{.nFrames = madeUp.nFrames};
  unread.bHeld = true;  // whatever is read never comes
  CWatchedOverview fed(unread);
  fed->Pause(true);
  fed->Show(view);
  const auto listener = fed->Listener();
  ASSERT_TRUE(fed.WaitUntil([&] { return fed->Picture() != nullptr; }));
  // Blocks come as fast as they like: what was left out is told again.
  for (int job = 0; job < 1000 && fed->Progress() < 1.0; ++job) {
    for (std::int64_t position = 0; position < madeUp.nFrames; position += kBlockFrames) {
      const auto frames = static_cast<std::int32_t>(std::min<std::int64_t>(kBlockFrames, madeUp.nFrames - position));
      listener->OnBlock(Block(madeUp, position, frames), position, frames);
    }
  }
  const auto picture = fed.WaitForComplete(view);
  ASSERT_NE(picture, nullptr);
  ExpectSame(*picture, *expected);
  unread.bHeld = false;
}

TEST(RecordingOverview, ListenerMayOutliveItsOverview) {
  SMadeUp madeUp{.nFrames = kShort};
  std::shared_ptr<IBlockListener> listener;
  {
    CWatchedOverview overview(madeUp);
    listener = overview->Listener();
  }
  const SharedBlock block = Block(madeUp, 0, 1000);
  listener->OnBlock(block, 0, 1000);
  EXPECT_EQ(block.use_count(), 1) << "nothing is kept for nobody";
}

}  // namespace
}  // namespace carvello::test
