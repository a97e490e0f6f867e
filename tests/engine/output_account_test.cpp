// What an output owes, and when it counts as written.
#include "engine/output_account.h"

#include <gtest/gtest.h>

#include <string>

namespace carvello {
namespace {

constexpr std::int64_t kInputFrames = 10'000;

// 1,000,000 samples/s to 250,000: four frames of input an output frame, which has 4 bytes.
class OutputAccountTest : public testing::Test {
 protected:
  OutputAccountTest() {
    entry.strFileName = "out.wav";
    entry.nBitsPerSample = 16;
    entry.nInputSampleRate = 1'000'000;
    entry.nOutputSampleRate = 250'000;
    entry.nOutputFrequency = 7'100'000;
  }

  SOutputResult Closed(COutputAccount& account, std::int64_t bytes, const SJobEnd& end = {}) {
    account.Close(end, 250'000, bytes, {"out.wav"});
    return account.TakeResult();
  }

  // The result of an entry that got `given` frames and wrote `bytes`.
  SOutputResult Settled(std::int64_t given, std::int64_t bytes, const SJobEnd& end = {}) {
    COutputAccount account(entry);
    account.Open(kInputFrames);
    account.CountGiven(given);
    return Closed(account, bytes, end);
  }

  OutputEntry entry;
};

TEST_F(OutputAccountTest, IsOkWhenEverySampleThatIsDueWasReadAndWritten) {
  const SOutputResult result = Settled(10'000, 4 * 2'500);
  EXPECT_TRUE(result.bOk);
  EXPECT_EQ(result.state, EOutputState::Done);
  EXPECT_EQ(result.strError, "");
  EXPECT_EQ(result.nFrames, 2'500);
  EXPECT_EQ(result.nFramesDue, 2'500);
  EXPECT_EQ(result.nBytes, 10'000U);
  EXPECT_EQ(result.nSampleRate, 250'000U);
  EXPECT_EQ(result.nBandwidth, 250'000U);
  EXPECT_EQ(result.nOutputFrequency, 7'100'000);
}

TEST_F(OutputAccountTest, OneFrameOfInputTooFewIsAFailureThatTellsBothNumbers) {
  const SOutputResult result = Settled(9'999, 4 * 2'500);
  EXPECT_FALSE(result.bOk);
  EXPECT_EQ(result.state, EOutputState::Failed);
  EXPECT_EQ(result.strError, "the input ended: frames of its stretch that were read: 9999, due: 10000");
}

TEST_F(OutputAccountTest, OneSampleWrittenTooFewOrTooManyIsAFailure) {
  EXPECT_EQ(Settled(10'000, 4 * 2'499).strError, "samples written: 2499, due: 2500");
  EXPECT_EQ(Settled(10'000, 4 * 2'501).strError, "samples written: 2501, due: 2500");
}

TEST_F(OutputAccountTest, MoreInputThanItsStretchIsAFailure) {
  EXPECT_EQ(Settled(10'001, 4 * 2'500).state, EOutputState::Failed);
}

TEST_F(OutputAccountTest, AFaultOfTheInputIsTheReasonOfThoseThatStillNeededIt) {
  EXPECT_EQ(Settled(9'000, 4 * 2'250, {false, "in.wav: a hole"}).strError, "in.wav: a hole");
  EXPECT_TRUE(Settled(10'000, 4 * 2'500, {false, "in.wav: a hole"}).bOk) << "it was complete before";
}

TEST_F(OutputAccountTest, AStopLeavesWhatIsCompleteDoneAndTheRestStopped) {
  EXPECT_TRUE(Settled(10'000, 4 * 2'500, {true, ""}).bOk);
  const SOutputResult shorter = Settled(4'000, 4 * 1'000, {true, ""});
  EXPECT_FALSE(shorter.bOk);
  EXPECT_EQ(shorter.state, EOutputState::Stopped);
  EXPECT_EQ(shorter.strError, "stopped");
  EXPECT_EQ(shorter.nFrames, 1'000);
  EXPECT_EQ(shorter.nFramesDue, 2'500);
  EXPECT_EQ(Settled(0, 0, {true, ""}).state, EOutputState::Stopped) << "not begun yet";
}

TEST_F(OutputAccountTest, AFailureBeforeTheStopStaysAFailure) {
  COutputAccount account(entry);
  account.Open(kInputFrames);
  account.Fail("disk full");
  account.Fail("second reason");
  const SOutputResult result = Closed(account, 0, {true, "in.wav: a hole"});
  EXPECT_EQ(result.state, EOutputState::Failed);
  EXPECT_EQ(result.strError, "disk full");
}

TEST_F(OutputAccountTest, AnEntryThatNothingIsDueToFailsAtOnce) {
  COutputAccount account(entry);
  account.Open(0);
  EXPECT_TRUE(account.HasFailed());
  EXPECT_EQ(account.Reason(), "no samples of the input lie between its start and its end");
}

TEST_F(OutputAccountTest, RatesAndSampleSizesThatNothingCanBeMadeOfAreRefusedInNumbers) {
  const auto reason = [this] {
    COutputAccount account(entry);
    account.Open(kInputFrames);
    return account.Reason();
  };
  entry.nOutputSampleRate = 0;
  EXPECT_EQ(reason(), "a bandwidth of 0 Hz cannot be cut");
  entry.nOutputSampleRate = 1'000'001;
  EXPECT_EQ(reason(), "a bandwidth of 1000001 Hz is wider than the input, which has 1000000 Hz");
  entry.nOutputSampleRate = 1'000'000;
  EXPECT_EQ(reason(), "");
  entry.nBitsPerSample = 24;
  EXPECT_EQ(reason(), "samples of 24 bits cannot be written");
}

TEST_F(OutputAccountTest, StateFollowsTheSpanWhileTheJobRuns) {
  entry.nStartSample = 2'000;
  entry.nTotalSamples = 4'000;
  COutputAccount account(entry);
  account.Open(entry.nTotalSamples);
  EXPECT_EQ(account.State().state, EOutputState::Waiting);
  EXPECT_EQ(account.State().nProgress, 0U);
  account.CountGiven(1'000);
  EXPECT_EQ(account.State().state, EOutputState::Running);
  EXPECT_EQ(account.State().nProgress, 2'500U);
  EXPECT_EQ(account.State().pEntry, &entry);
  account.CountGiven(3'000);
  EXPECT_EQ(account.State().state, EOutputState::Running) << "what is not closed is not done";
  Closed(account, 4 * 1'000);
  EXPECT_EQ(account.State().state, EOutputState::Done);
  EXPECT_EQ(account.State().nProgress, 10'000U);
}

TEST_F(OutputAccountTest, StateTellsTheReasonOfAFailureAtOnce) {
  COutputAccount account(entry);
  account.Open(kInputFrames);
  account.Fail("disk full");
  EXPECT_EQ(account.State().state, EOutputState::Failed);
  EXPECT_EQ(account.State().strReason, "disk full");
}

TEST_F(OutputAccountTest, AReasonTooLongForItsRoomEndsWithAWholeCharacter) {
  std::string reason;
  for (int i = 0; i < 10'000; ++i) reason += "ä";
  COutputAccount account(entry);
  account.Open(kInputFrames);
  account.Fail(reason);
  EXPECT_GT(account.Reason().size(), 1'000U);
  EXPECT_EQ(account.Reason().size() % 2, 0U);
}

TEST_F(OutputAccountTest, AnOutputWithoutAFileIsNotOk) {
  COutputAccount account(entry);
  account.Open(kInputFrames);
  account.CountGiven(10'000);
  account.Close({}, 250'000, 4 * 2'500, {});
  EXPECT_FALSE(account.TakeResult().bOk);
}

}  // namespace
}  // namespace carvello
