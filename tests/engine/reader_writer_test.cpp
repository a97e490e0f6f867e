// The reader and its writers, on recordings whose frames carry their own numbers.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "engine/engine_fixture.h"

namespace carvello::test {
namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

constexpr std::int64_t kBlock = kBlockFrames;

class ReaderWriterTest : public EngineTest {
 protected:
  // Outputs are one RF64 file each unless the test says otherwise, so that the names stay as given.
  OutputEntry Entry(const std::string& name, std::int64_t start, std::int64_t total) const {
    return MakeEntry(name, start, total);
  }
  static constexpr std::int64_t kInputBytes = 4 * (2 * kBlock + 1000);
};

TEST_F(ReaderWriterTest, CopiesAWholeRecordingAcrossBlocks) {
  const auto input = WriteNumbered("in.wav", 0, 2 * kBlock + 1000);
  RunJob({input}, {Entry("out.wav", 0, 0)}, kInputBytes);
  EXPECT_FRAMES(Path("out.wav"), 0, 2 * kBlock + 1000);
  ASSERT_THAT(m_reader.Results(), SizeIs(1));
  const SOutputResult& result = m_reader.Results()[0];
  EXPECT_TRUE(result.bOk);
  EXPECT_EQ(result.nFrames, 2 * kBlock + 1000);
  EXPECT_EQ(result.nBytes, static_cast<std::uint64_t>(kInputBytes));
  EXPECT_THAT(result.files, ElementsAre(Path("out.wav")));
  EXPECT_EQ(m_reader.BytesRead(), kInputBytes);
}

TEST_F(ReaderWriterTest, StartInsideABlockBeginsAtExactlyThatSample) {
  const auto input = WriteNumbered("in.wav", 0, 5000);
  RunJob({input}, {Entry("all.wav", 0, 0), Entry("part.wav", 1234, 100)}, 20000);
  EXPECT_FRAMES(Path("all.wav"), 0, 5000);
  EXPECT_FRAMES(Path("part.wav"), 1234, 100);
  EXPECT_EQ(m_target.Count("Writer [1]> Starting after 1234 samples"), 1u);
  EXPECT_EQ(m_target.Count("Writer [1]> Finishing after 100 samples"), 1u);
}

TEST_F(ReaderWriterTest, StartAtABlocksEndSkipsTheWholeBlock) {
  const auto input = WriteNumbered("in.wav", 0, kBlock + 500);
  RunJob({input}, {Entry("all.wav", 0, 0), Entry("part.wav", kBlock, 0)}, 4 * (kBlock + 500));
  EXPECT_FRAMES(Path("part.wav"), kBlock, 500);
}

TEST_F(ReaderWriterTest, LengthOfOneSample) {
  const auto input = WriteNumbered("in.wav", 0, 5000);
  RunJob({input}, {Entry("one.wav", 77, 1)}, 20000);
  EXPECT_FRAMES(Path("one.wav"), 77, 1);
}

TEST_F(ReaderWriterTest, LengthThatEndsWithABlockWritesNoMore) {
  const auto input = WriteNumbered("in.wav", 0, 2 * kBlock + 1000);
  RunJob({input}, {Entry("out.wav", 10, 2 * kBlock - 10)}, kInputBytes);
  EXPECT_FRAMES(Path("out.wav"), 10, 2 * kBlock - 10);
}

TEST_F(ReaderWriterTest, SmallestStartIsSoughtAndToldToEveryWriter) {
  const auto input = WriteNumbered("in.wav", 0, 5000);
  RunJob({input}, {Entry("a.wav", 300, 10), Entry("b.wav", 200, 10)}, 20000);
  EXPECT_FRAMES(Path("a.wav"), 300, 10);
  EXPECT_FRAMES(Path("b.wav"), 200, 10);
  EXPECT_EQ(m_target.Count("Reader> Seek 200 samples (800 bytes)"), 1u);
  EXPECT_EQ(m_target.Count("Writer [0]> Seek offset ..: 200"), 1u);
  EXPECT_EQ(m_target.Count("Writer [0]> Start in .....: 100"), 1u);
  EXPECT_EQ(m_target.Count("Writer [1]> Start in .....: 0"), 1u);
}

TEST_F(ReaderWriterTest, SkipLargerThanTheFirstFileGoesOnInTheFileThatHoldsTheStart) {
  const std::vector<std::string> files = {WriteNumbered("0.wav", 0, 1000), WriteNumbered("1.wav", 1000, 1000),
                                          WriteNumbered("2.wav", 2000, 1000)};
  RunJob(files, {Entry("out.wav", 1300, 1200)}, 12000);
  EXPECT_FRAMES(Path("out.wav"), 1300, 1200);
  EXPECT_EQ(m_target.Count("Reader> Seek 300 samples (1200 bytes)"), 1u);
  EXPECT_EQ(m_target.Count("Writer [0]> Seek offset ..: 1300"), 1u) << "the whole skip, files included";
  EXPECT_EQ(m_target.Count("Reader> Opening [1] " + files[0]), 1u) << "the first file's name with every index";
}

TEST_F(ReaderWriterTest, EntryThatBeginsLateAndFindsItsStretchCutOffIsNotOk) {
  const std::vector<std::string> files = {WriteNumbered("0.wav", 0, 1000), WriteNumbered("1.wav", 1000, 1500)};
  RunJob(files, {Entry("out.wav", 1000, 1000)}, 10000);
  EXPECT_FRAMES(Path("out.wav"), 2000, 500);
  EXPECT_FALSE(m_reader.Results()[0].bOk);
  EXPECT_THAT(m_target.Lines(), Contains(HasSubstr("[WARNING] The first entry begins with the first frame of")));
}

TEST_F(ReaderWriterTest, SkipThatEndsExactlyAtAFilesStartIsNotToldToTheWriters) {
  const std::vector<std::string> files = {WriteNumbered("0.wav", 0, 1000), WriteNumbered("1.wav", 1000, 3000)};
  RunJob(files, {Entry("out.wav", 1000, 0)}, 16000);
  EXPECT_FRAMES(Path("out.wav"), 2000, 2000);
  EXPECT_THAT(m_target.Lines(), Not(Contains(HasSubstr("Seek"))));
}

TEST_F(ReaderWriterTest, FilesOfASetAreOneStream) {
  const std::vector<std::string> files = {WriteNumbered("0.wav", 0, 1000), WriteNumbered("1.wav", 1000, 1),
                                          WriteNumbered("2.wav", 1001, 999)};
  RunJob(files, {Entry("all.wav", 0, 0), Entry("part.wav", 999, 3)}, 8000);
  EXPECT_FRAMES(Path("all.wav"), 0, 2000);
  EXPECT_FRAMES(Path("part.wav"), 999, 3);
}

TEST_F(ReaderWriterTest, FileThatEndsWithAFullBlockGoesOnWithTheNext) {
  const std::vector<std::string> files = {WriteNumbered("0.wav", 0, kBlock), WriteNumbered("1.wav", kBlock, kBlock),
                                          WriteNumbered("2.wav", 2 * kBlock, 10)};
  RunJob(files, {Entry("all.wav", 0, 0)}, 4 * (2 * kBlock + 10));
  EXPECT_FRAMES(Path("all.wav"), 0, 2 * kBlock + 10);
}

TEST_F(ReaderWriterTest, LastFileThatEndsWithAFullBlockEndsTheJob) {
  const auto input = WriteNumbered("in.wav", 0, kBlock);
  RunJob({input}, {Entry("all.wav", 0, 0)}, 4 * kBlock);
  EXPECT_FRAMES(Path("all.wav"), 0, kBlock);
}

TEST_F(ReaderWriterTest, ReadingStopsWhenEveryEntryIsFinished) {
  const auto input = WriteNumbered("in.wav", 0, 8 * kBlock);
  // Slow enough that the end of both entries is known before the reader can have come to the end.
  SPassThrough::DelayRun(20, 1);
  RunJob({input}, {Entry("a.wav", 0, 100), Entry("b.wav", 50, 100)}, 32 * kBlock);
  EXPECT_FRAMES(Path("a.wav"), 0, 100);
  EXPECT_FRAMES(Path("b.wav"), 50, 100);
  EXPECT_LT(m_reader.BytesRead(), 32 * kBlock);
  EXPECT_EQ(m_target.Count("Reader> Stopping (forwarding)") + m_target.Count("Reader> Stopping (read request)"), 1u);
  EXPECT_EQ(m_target.Count("Reader> 1 active writers"), 1u);
  EXPECT_EQ(m_target.Count("Reader> 0 active writers"), 1u);
}

TEST_F(ReaderWriterTest, ReaderStaysAboutThreeBlocksAheadOfTheSlowestWriter) {
  constexpr std::int64_t kBlocks = 7;
  const auto input = WriteNumbered("in.wav", 0, kBlocks * kBlock);
  // The second writer holds every block until the test lets it go on.
  SPassThrough::Hold(2);
  const std::vector<OutputEntry> entries = {Entry("a.wav", 0, 0), Entry("b.wav", 0, 0)};
  std::thread job([&] { RunJob({input}, entries, 4 * kBlocks * kBlock); });
  for (std::int64_t done = 0; done <= kBlocks; ++done) {
    // Time enough to read everything, were it not held back.
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    // Each read posts its progress: three handed on and one that waits, beyond those done and the one being worked on.
    EXPECT_LE(m_target.Progress().size(), static_cast<std::size_t>(done) + 5) << "after " << done << " blocks";
    SPassThrough::LetGo();
  }
  SPassThrough::LetAllGo();
  job.join();
  EXPECT_FRAMES(Path("b.wav"), 0, kBlocks * kBlock);
}

TEST_F(ReaderWriterTest, FinishedWriterLeavesTheOthersTheirBlocks) {
  const auto input = WriteNumbered("in.wav", 0, 3 * kBlock);
  RunJob({input}, {Entry("short.wav", 0, 10), Entry("long.wav", 0, 0)}, 12 * kBlock);
  EXPECT_FRAMES(Path("short.wav"), 0, 10);
  EXPECT_FRAMES(Path("long.wav"), 0, 3 * kBlock);
}

TEST_F(ReaderWriterTest, EveryWriterShiftsTheSamplesAsTheyWereRead) {
  const auto input = WriteNumbered("in.wav", 0, 5000);
  auto shifted = Entry("shifted.wav", 0, 0);
  shifted.nOutputFrequency = 7'100'000;
  RunJob({input}, {shifted, Entry("plain.wav", 0, 0)}, 20000);
  EXPECT_FRAMES(Path("plain.wav"), 0, 5000);
  EXPECT_THAT(ReadNumbered(Path("shifted.wav")), Each(0));
  const auto instances = SPassThrough::Instances();
  EXPECT_THAT(instances[0].shifts, Each(100'000));
  EXPECT_THAT(instances[1].shifts, testing::AllOf(SizeIs(testing::Gt(0u)), Each(0)))
      << "no shift calls the oscillator all the same";
}

TEST_F(ReaderWriterTest, SlowLastWriterLosesNothing) {
  const auto input = WriteNumbered("in.wav", 0, 5 * kBlock + 5);
  SPassThrough::DelayRun(30, 3);
  RunJob({input}, {Entry("a.wav", 0, 0), Entry("b.wav", 0, 0), Entry("c.wav", 0, 0)}, 4 * (5 * kBlock + 5));
  EXPECT_FRAMES(Path("a.wav"), 0, 5 * kBlock + 5);
  EXPECT_FRAMES(Path("c.wav"), 0, 5 * kBlock + 5);
}

TEST_F(ReaderWriterTest, FractionalResamplerIsDisabledAboveAMegahertzOnly) {
  const auto input = WriteNumbered("in.wav", 0, 100);
  auto wide = Entry("wide.wav", 0, 0);
  wide.nInputSampleRate = 2'000'002;
  wide.nOutputSampleRate = 1'000'001;
  RunJob({input}, {Entry("at.wav", 0, 0), wide}, 400);
  const auto instances = SPassThrough::Instances();
  EXPECT_FALSE(instances[0].bFractionalDisabled);
  EXPECT_TRUE(instances[1].bFractionalDisabled);
  EXPECT_EQ(instances[1].nInputRate, 2'000'002u);
  EXPECT_EQ(instances[1].nOutputRate, 1'000'001u);
  EXPECT_TRUE(instances[0].bReleased);
}

TEST_F(ReaderWriterTest, FileTellsTheRateThatItsSamplesReallyHave) {
  const auto input = WriteNumbered("in.wav", 0, 100);
  SPassThrough::ReportRateOut(1'200'000);
  auto entry = Entry("out.wav", 0, 0);
  entry.nInputSampleRate = 2'400'000;
  entry.nOutputSampleRate = 1'500'000;
  RunJob({input}, {entry}, 400);
  const auto format = ChunkBody(ReadBytes(Path("out.wav")), "fmt ");
  ASSERT_EQ(format.size(), 18u);
  EXPECT_THAT(std::vector<std::uint8_t>(format.begin() + 4, format.begin() + 8), ElementsAre(0x80, 0x4F, 0x12, 0x00));
  EXPECT_EQ(m_target.Count("Writer [0]> True sample rate ....: 1200000"), 1u);
}

TEST_F(ReaderWriterTest, EntryStartIsLoggedLineByLine) {
  const auto input = WriteNumbered("in.wav", 0, 100);
  auto entry = Entry("out.wav", 5, 90);
  entry.nOutputSampleRate = 500'000;
  RunJob({input}, {entry}, 400);
  const auto lines = m_target.Lines();
  std::vector<std::string> writer;
  std::copy_if(lines.begin(), lines.end(), std::back_inserter(writer),
               [](const auto& line) { return line.starts_with("Writer [0]> "); });
  ASSERT_GE(writer.size(), 12u);
  writer.resize(12);
  EXPECT_THAT(
      writer,
      ElementsAre("Writer [0]> Input frequency .....: 7000000", "Writer [0]>       sample rate ...: 1000000",
                  "Writer [0]> Output filename .....: " + Path("out.wav"), "Writer [0]>        WAV RF64 .....: 1",
                  "Writer [0]>        frequency ....: 7000000", "Writer [0]>        sample rate ..: 500000",
                  "Writer [0]> ", "Writer [0]> Downconverter .......: 1000000 to 500000", "Writer [0]> ",
                  "Writer [0]> Samples: start ......: 5", "Writer [0]>          total ......: 90", "Writer [0]> "));
}

TEST_F(ReaderWriterTest, JobEndsWithStatisticsAndFullProgress) {
  const auto input = WriteNumbered("in.wav", 0, 16 * kBlock);
  RunJob({input}, {Entry("out.wav", 0, 0)}, 64 * kBlock);
  const auto lines = m_target.Lines();
  EXPECT_EQ(m_target.Count("Reader> Start, file = " + input), 1u);
  EXPECT_EQ(m_target.Count("Reader> Opening [0] " + input), 1u);
  EXPECT_EQ(m_target.Count("Reader> Size = 16.0 MB"), 1u);
  EXPECT_EQ(m_target.Count("Reader> Stop"), 1u);
  EXPECT_EQ(m_target.Count("Reader> ... Closing " + input), 1u);
  EXPECT_THAT(lines, Contains(testing::MatchesRegex("Reader> CPU = .*\\....  *seconds")));
  EXPECT_THAT(lines, Contains(HasSubstr("Input data rate = ")));
  EXPECT_THAT(lines, Contains(HasSubstr("Elapsed         = ")));
  EXPECT_EQ(m_target.Count("Reader> Closing 1 writer threads"), 1u);
  EXPECT_EQ(m_target.Count("Writer [0]> Closing"), 1u);
  EXPECT_EQ(m_target.Count("Reader> Closed"), 1u);
  std::vector<std::uint64_t> progress;
  for (std::uint64_t block = 1; block <= 16; ++block) progress.push_back(block * 625);
  progress.push_back(10000);  // once more when all is closed
  EXPECT_EQ(m_target.Progress(), progress);
}

TEST_F(ReaderWriterTest, OutputThatCannotBeCreatedLeavesTheOthersAlone) {
  const auto input = WriteNumbered("in.wav", 0, 5000);
  auto lost = Entry("lost.wav", 0, 0);
  lost.strFileName = Path("no such folder") + "/lost.wav";
  RunJob({input}, {lost, Entry("kept.wav", 0, 0)}, 20000);
  EXPECT_FRAMES(Path("kept.wav"), 0, 5000);
  EXPECT_THAT(m_target.Lines(), Contains(HasSubstr("Writer [0]> Error creating " + lost.strFileName + " - ")));
  EXPECT_THAT(m_target.Lines(), Not(Contains(HasSubstr("[ERROR]")))) << "told once";
  EXPECT_FALSE(m_reader.Results()[0].bOk);
  EXPECT_FALSE(m_reader.Results()[0].strError.empty());
  EXPECT_TRUE(m_reader.Results()[1].bOk);
}

TEST_F(ReaderWriterTest, SecondFileThatCannotBeOpenedEndsTheJobAndFailsUnfinishedEntries) {
  const auto first = WriteNumbered("0.wav", 0, 1000);
  RunJob({first, Path("missing.wav")}, {Entry("all.wav", 0, 0), Entry("done.wav", 0, 500)}, 8000);
  EXPECT_EQ(m_target.Count("Reader> Failed"), 1u);
  EXPECT_EQ(m_target.Count("Reader> Closed"), 1u);
  EXPECT_FRAMES(Path("all.wav"), 0, 1000);
  EXPECT_FALSE(m_reader.Results()[0].bOk);
  EXPECT_THAT(m_reader.Results()[0].strError, HasSubstr("missing.wav"));
  EXPECT_TRUE(m_reader.Results()[1].bOk);
}

TEST_F(ReaderWriterTest, FileBehindOneThatCannotBeOpenedIsNotReached) {
  const auto first = WriteNumbered("0.wav", 0, 1000);
  const auto third = WriteNumbered("2.wav", 2000, 1000);
  RunJob({first, Path("missing.wav"), third}, {Entry("all.wav", 0, 0)}, 12000);
  EXPECT_FRAMES(Path("all.wav"), 0, 1000);
  EXPECT_EQ(m_target.Count("Reader> Opening [2] " + third), 0u);
  EXPECT_EQ(m_target.Count("Reader> Failed"), 1u);
}

TEST_F(ReaderWriterTest, SamplesThatTheFiltersHoldBackFollowAtTheEnd) {
  const auto input = WriteNumbered("in.wav", 0, 5000);
  SPassThrough::HoldBack(46);
  RunJob({input}, {Entry("all.wav", 0, 0), Entry("part.wav", 100, 1000)}, 20000);
  EXPECT_FRAMES(Path("all.wav"), 0, 5000);
  EXPECT_FRAMES(Path("part.wav"), 100, 1000);
}

// Nothing of such an entry comes before its end; how much silence that takes only the library can tell.
TEST_F(ReaderWriterTest, SilenceAtTheEndIsAsLongAsTheLibraryNeedsIt) {
  const auto input = WriteNumbered("in.wav", 0, 5000);
  SPassThrough::HoldBack(50'000);
  RunJob({input}, {Entry("all.wav", 0, 0), Entry("part.wav", 100, 10)}, 20000);
  EXPECT_FRAMES(Path("all.wav"), 0, 5000);
  EXPECT_FRAMES(Path("part.wav"), 100, 10);
}

// Half of 2,000,003 samples/s is told as 1,000,002, which was asked for here: counted by the rates, four million
// samples would look as if an output were missing.
TEST_F(ReaderWriterTest, RoundedRateOfAWholeNumberDecimationMakesNoSampleUp) {
  constexpr std::int64_t kFrames = 17 * kBlock;
  const auto input = WriteNumbered("in.wav", 0, kFrames);
  SPassThrough::DecimateBy(2);
  auto entry = Entry("out.wav", 0, 0);
  entry.nInputSampleRate = 2'000'003;
  entry.nOutputSampleRate = 1'000'002;
  RunJob({input}, {entry}, 4 * kFrames);
  EXPECT_EQ(m_reader.Results()[0].nFrames, kFrames / 2);
}

TEST_F(ReaderWriterTest, FirstFileThatCannotBeOpenedStartsNoJobAndLeavesNoFileOpen) {
  RunJob({Path("missing.wav")}, {Entry("out.wav", 0, 0)}, 8000);
  EXPECT_FALSE(m_reader.IsRunning());
  EXPECT_EQ(m_target.Count("Reader> Closed"), 1u);
  EXPECT_FALSE(m_reader.Results()[0].bOk);
}

TEST_F(ReaderWriterTest, StopFinishesWhatWasWritten) {
  const auto input = WriteNumbered("in.wav", 0, 6 * kBlock);
  SPassThrough::DelayRun(60, 1);
  const std::vector<OutputEntry> entries = {Entry("out.wav", 0, 0)};
  StartJob(Describe({input}), entries, 24 * kBlock);
  m_reader.PostStop();
  m_reader.WaitIdle();
  m_reader.Stop();
  const auto frames = m_reader.Results()[0].nFrames;
  EXPECT_LT(frames, 6 * kBlock);
  EXPECT_FRAMES(Path("out.wav"), 0, frames);
}

TEST_F(ReaderWriterTest, ThirtyTwoBitOutputKeepsTheEnginesScale) {
  const auto input = WriteNumbered("in.wav", 0, 1000);
  auto entry = Entry("out.wav", 0, 0);
  entry.nBitsPerSample = 32;
  RunJob({input}, {entry}, 4000);
  const auto data = ChunkBody(ReadBytes(Path("out.wav")), "data");
  ASSERT_EQ(data.size(), 8000u);
  float pair[2];
  std::memcpy(pair, &data[8 * 999], sizeof(pair));
  EXPECT_EQ(pair[0], 999.0f);
  EXPECT_EQ(pair[1], 0.0f);
}

TEST_F(ReaderWriterTest, OtherSampleSizesWriteNothing) {
  const auto input = WriteNumbered("in.wav", 0, 1000);
  auto entry = Entry("out.wav", 0, 0);
  entry.nBitsPerSample = 24;
  RunJob({input}, {entry}, 4000);
  EXPECT_FALSE(std::filesystem::exists(m_folder / "out.wav"));
  EXPECT_FALSE(m_reader.Results()[0].bOk);
  EXPECT_EQ(m_reader.Results()[0].strError, "samples of 24 bits cannot be written");
}

TEST_F(ReaderWriterTest, EntryThatEndsBeforeItBeginsFailsBeforeAnythingIsCreated) {
  const auto input = WriteNumbered("in.wav", 0, 1000);
  RunJob({input}, {Entry("none.wav", 0, -5), Entry("all.wav", 0, 0)}, 4000);
  EXPECT_FALSE(std::filesystem::exists(m_folder / "none.wav"));
  EXPECT_EQ(m_reader.Results()[0].state, EOutputState::Failed);
  EXPECT_EQ(m_reader.Results()[0].strError, "no samples of the input lie between its start and its end");
  EXPECT_FRAMES(Path("all.wav"), 0, 1000);
  EXPECT_TRUE(m_reader.Results()[1].bOk);
}

TEST_F(ReaderWriterTest, SplitOutputJoinsToTheWhole) {
  // The limit of 1 MB is far below the 16 MiB that one write brings, so every write opens a part.
  const auto input = WriteNumbered("in.wav", 0, 66 * kBlock);
  auto entry = Entry("out.wav", 0, 0);
  entry.nFileSizeMB = 1;
  RunJob({input}, {entry}, 264 * kBlock);
  const auto& files = m_reader.Results()[0].files;
  ASSERT_THAT(files, ElementsAre(Path("out 000.wav"), Path("out 001.wav"), Path("out 002.wav"), Path("out 003.wav"),
                                 Path("out 004.wav")));
  std::vector<std::int64_t> joined;
  for (const auto& file : files) {
    const auto part = ReadNumbered(file);
    joined.insert(joined.end(), part.begin(), part.end());
  }
  EXPECT_TRUE(joined == Frames(0, 66 * kBlock));
}

// Three stretches of 2,097,152 frames decimated by 3 give as many samples, 8,388,608 bytes. The first file has three,
// and one that its end cuts off, with 400,000 bytes. Of the second file's, with 2,796,204 or 2,796,200 bytes each, two
// fit behind them into the 16,777,216 bytes of the buffer: the first write brings 14,381,016. The next six fill the
// buffer to the last byte: 31,158,232 bytes, and there the part of 20 MB ends. The ninth begins the next.
TEST_F(ReaderWriterTest, PartsEndWhereStretchesOfTwoMillionFramesFillTheBuffer) {
  constexpr std::int64_t kStretch = kStretchFrames;
  constexpr std::int64_t kFirst = 3 * kStretch + 300'000;
  constexpr std::int64_t kSecond = 9 * kStretch;
  const std::vector<std::string> files = {WriteNumbered("0.wav", 0, kFirst), WriteNumbered("1.wav", kFirst, kSecond)};
  SPassThrough::DecimateBy(3);
  auto entry = Entry("out.wav", 0, 0);
  entry.nInputSampleRate = 3'000'000;
  entry.nFileSizeMB = 20;
  RunJob(files, {entry}, 4 * (kFirst + kSecond));
  ASSERT_TRUE(m_reader.Results()[0].bOk) << m_reader.Results()[0].strError;
  std::vector<std::size_t> sizes;
  for (const auto& file : m_reader.Results()[0].files) sizes.push_back(ReadNumbered(file).size());
  EXPECT_THAT(sizes, ElementsAre(31'158'232 / 4, (8'388'608 + 400'000 + 3 * 8'388'608 - 31'158'232) / 4));
}

TEST_F(ReaderWriterTest, SavingEarlyChangesNoBytes) {
  const auto input = WriteNumbered("in.wav", 0, 40 * kBlock + 77);
  auto entry = Entry("late.wav", 0, 0);
  entry.nFileSizeMB = 20;
  m_reader.SetSaveInterval(std::chrono::hours(1));
  RunJob({input}, {entry}, 160 * kBlock);
  const auto late = m_reader.Results()[0].files;
  entry.strFileName = Path("soon.wav");
  m_reader.SetSaveInterval(std::chrono::milliseconds(0));
  RunJob({input}, {entry}, 160 * kBlock);
  const auto soon = m_reader.Results()[0].files;
  ASSERT_GT(late.size(), 1u);
  ASSERT_EQ(soon.size(), late.size());
  for (std::size_t i = 0; i < soon.size(); ++i) {
    EXPECT_TRUE(ChunkBody(ReadBytes(soon[i]), "data") == ChunkBody(ReadBytes(late[i]), "data")) << soon[i];
  }
}

// 1,040,001 asked of 2,600,000 gives every second sample, 1,300,000 of them, so a stretch brings a quarter more than
// the rate asked for tells: 4,194,304 bytes. Behind three of them and the 400,000 bytes at the first file's end there
// is no room for another in the buffer: the first part ends there, also when some of that stretch was to be saved
// early.
TEST_F(ReaderWriterTest, SavingEarlyMovesNoEndWhereMoreSamplesComeThanWereAskedFor) {
  constexpr std::int64_t kFirst = 3 * kStretchFrames + 200'000;
  constexpr std::int64_t kSecond = kStretchFrames;
  const std::vector<std::string> files = {WriteNumbered("0.wav", 0, kFirst), WriteNumbered("1.wav", kFirst, kSecond)};
  SPassThrough::DecimateBy(2);
  SPassThrough::ReportRateOut(1'300'000);
  auto entry = Entry("out.wav", 0, 0);
  entry.nInputSampleRate = 2'600'000;
  entry.nOutputSampleRate = 1'040'001;
  entry.nFileSizeMB = 12;
  m_reader.SetSaveInterval(std::chrono::milliseconds(0));
  RunJob(files, {entry}, 4 * (kFirst + kSecond));
  ASSERT_TRUE(m_reader.Results()[0].bOk) << m_reader.Results()[0].strError;
  std::vector<std::size_t> sizes;
  for (const auto& file : m_reader.Results()[0].files) sizes.push_back(ReadNumbered(file).size());
  EXPECT_THAT(sizes, ElementsAre((3 * 4'194'304 + 400'000) / 4, 4'194'304 / 4));
}

TEST_F(ReaderWriterTest, SamplesReachTheFileWhileNothingMoreComes) {
  const auto input = WriteNumbered("in.wav", 0, 9 * kBlock);
  m_reader.SetSaveInterval(std::chrono::milliseconds(20));
  SPassThrough::Hold(1);
  const std::vector<OutputEntry> entries = {Entry("held.wav", 0, 0), Entry("out.wav", 0, kBlock)};
  StartJob(Describe({input}), entries, 36 * kBlock);
  // The reader waits for the writer that is held, so the other one gets no more blocks.
  const auto size = [&] {
    std::error_code error;
    const auto bytes = std::filesystem::file_size(Path("out.wav"), error);
    return error ? 0 : bytes;
  };
  while (size() < 4 * kBlock) std::this_thread::sleep_for(std::chrono::milliseconds(5));
  SPassThrough::LetAllGo();
  FinishJob();
  EXPECT_FRAMES(Path("out.wav"), 0, kBlock);
  EXPECT_FRAMES(Path("held.wav"), 0, 9 * kBlock);
}

TEST_F(ReaderWriterTest, StopLeavesCompleteEntriesDoneAndTellsOfTheOthers) {
  const auto input = WriteNumbered("in.wav", 0, 20 * kBlock);
  SPassThrough::Hold(1);
  const std::vector<OutputEntry> entries = {Entry("held.wav", 0, 0), Entry("done.wav", 10, 100),
                                            Entry("later.wav", 15 * kBlock, 100), Entry("wide.wav", 0, 0)};
  auto refused = entries;
  refused[3].nOutputSampleRate = 0;
  StartJob(Describe({input}), refused, 80 * kBlock);
  while (m_reader.EntryStates()[1].nProgress < 10'000) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  const auto states = m_reader.EntryStates();
  EXPECT_EQ(states[1].state, EOutputState::Running);
  EXPECT_EQ(states[2].state, EOutputState::Waiting);
  EXPECT_EQ(states[3].state, EOutputState::Failed);
  EXPECT_EQ(states[3].strReason, "a bandwidth of 0 Hz cannot be cut");
  m_reader.PostStop();
  SPassThrough::LetAllGo();
  FinishJob();
  const auto& results = m_reader.Results();
  EXPECT_EQ(results[0].state, EOutputState::Stopped);
  EXPECT_FALSE(results[0].bOk);
  EXPECT_EQ(results[0].strError, "stopped");
  EXPECT_EQ(results[0].nFramesDue, 20 * kBlock);
  EXPECT_LT(results[0].nFrames, 20 * kBlock);
  EXPECT_FRAMES(Path("held.wav"), 0, results[0].nFrames);
  EXPECT_TRUE(results[1].bOk);
  EXPECT_EQ(results[2].strError, "stopped");
  EXPECT_EQ(results[3].strError, "a bandwidth of 0 Hz cannot be cut");
  for (std::size_t i = 0; i < results.size(); ++i) EXPECT_EQ(m_reader.EntryStates()[i].state, results[i].state);
}

TEST_F(ReaderWriterTest, EntryThatIsRefusedCreatesNothingAndLeavesTheOthersAlone) {
  const auto input = WriteNumbered("in.wav", 0, 5000);
  auto none = Entry("none.wav", 0, 0);
  none.nOutputSampleRate = 0;
  auto wide = Entry("wide.wav", 0, 0);
  wide.nOutputSampleRate = 1'000'001;
  RunJob({input}, {none, wide, Entry("kept.wav", 0, 0), Entry("behind.wav", 5000, 10)}, 20000);
  const auto& results = m_reader.Results();
  EXPECT_EQ(results[0].strError, "a bandwidth of 0 Hz cannot be cut");
  EXPECT_EQ(results[1].strError, "a bandwidth of 1000001 Hz is wider than the input, which has 1000000 Hz");
  EXPECT_TRUE(results[2].bOk);
  EXPECT_EQ(results[3].strError, "no samples of the input lie between its start and its end");
  EXPECT_FRAMES(Path("kept.wav"), 0, 5000);
  for (const char* name : {"none.wav", "wide.wav", "behind.wav"}) EXPECT_FALSE(std::filesystem::exists(Path(name)));
  EXPECT_EQ(m_target.Count("Reader> [ERROR] " + Path("none.wav") + ": a bandwidth of 0 Hz cannot be cut"), 1u);
}

void (*passThroughNco)(std::uint32_t, std::int64_t, std::uint32_t, const SComplex*, std::uint32_t, SComplex*) = nullptr;
std::set<const SComplex*> places;  // where the writer at work found its samples
std::size_t visits = 0;

// Blocks are used again as soon as no writer holds them; those given to a writer that never runs would be held for
// good.
TEST_F(ReaderWriterTest, EntryThatIsRefusedHoldsNoBlocks) {
  constexpr std::int64_t kFrames = 30 * kBlock;
  const auto input = WriteNumbered("in.wav", 0, kFrames);
  auto none = Entry("none.wav", 0, 0);
  none.nOutputSampleRate = 0;
  passThroughNco = m_dsp.NCO;
  places.clear();
  visits = 0;
  m_dsp.NCO = [](std::uint32_t handle, std::int64_t shift, std::uint32_t rate, const SComplex* source,
                 std::uint32_t count, SComplex* destination) {
    places.insert(source);
    ++visits;
    passThroughNco(handle, shift, rate, source, count, destination);
  };
  RunJob({input}, {none, Entry("kept.wav", 0, 0)}, 4 * kFrames);
  EXPECT_TRUE(m_reader.Results()[1].bOk);
  EXPECT_LT(places.size(), visits / 2) << "no block was used twice";
}

TEST_F(ReaderWriterTest, JobBeginsToReadBeforeEveryWriterHasDesignedItsFilters) {
  const auto input = WriteNumbered("in.wav", 0, 5000);
  SPassThrough::HoldInit();
  const std::vector<OutputEntry> entries = {Entry("a.wav", 0, 0), Entry("b.wav", 0, 0)};
  StartJob(Describe({input}), entries, 20000);  // would not return, did it wait for the filters
  EXPECT_EQ(m_target.Count("Reader> Opening [0] " + input), 1u);
  SPassThrough::LetInitGo(2);
  FinishJob();
  EXPECT_FRAMES(Path("a.wav"), 0, 5000);
  EXPECT_FRAMES(Path("b.wav"), 0, 5000);
}

TEST_F(ReaderWriterTest, PartsAboveTwoThousandMegabytesAreOneRf64File) {
  const auto input = WriteNumbered("in.wav", 0, 10);
  auto above = Entry("above.wav", 0, 0);
  above.nFileSizeMB = 2001;
  auto at = Entry("at.wav", 0, 0);
  at.nFileSizeMB = 2000;
  RunJob({input}, {above, at}, 40);
  const auto magic = [](const std::string& path) {
    const auto bytes = ReadBytes(path);
    return std::string(bytes.begin(), bytes.begin() + 4);
  };
  EXPECT_EQ(magic(Path("above.wav")), "RF64");
  EXPECT_EQ(magic(Path("at 000.wav")), "RIFF");
}

TEST_F(ReaderWriterTest, RadioFactsComeFromTheInputsMetadata) {
  const auto input = WriteNumbered("in.wav", 0, 10);
  auto entry = Entry("out.wav", 0, 0);
  entry.strMetadata =
      "<?xml version=\"1.0\"?><SDR-XML-Root><Definition RadioModel=\"Model 7\" RadioSerial=\"S-1\" "
      "radiomodel=\"wrong\" ADFrequency=\"122880000\"/></SDR-XML-Root>";
  RunJob({input}, {entry}, 40);
  const auto auxi = ChunkBody(ReadBytes(Path("out.wav")), "auxi");
  std::string text;
  for (std::size_t i = 0; i + 1 < auxi.size(); i += 2) text.push_back(static_cast<char>(auxi[i]));
  EXPECT_THAT(text, HasSubstr("RadioModel=\"Model 7\" RadioSerial=\"S-1\""));
  EXPECT_THAT(text, HasSubstr("ADFrequency=\"122880000\""));
  EXPECT_THAT(text, HasSubstr("RadioCenterFreq=\"7000000\" SampleRate=\"1000000\" UTCSeconds=\"1604275140\""));
}

}  // namespace
}  // namespace carvello::test
