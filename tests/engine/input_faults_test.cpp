// Inputs that are not, or do not stay, what the analysis found. Entries that were complete before count; the others
// fail with the reason, and nothing of a later file takes the place of what is missing.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "engine/engine_fixture.h"

namespace carvello::test {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::Not;

constexpr std::int64_t kBlock = kBlockFrames;

class InputFaultsTest : public EngineTest {
 protected:
  void Run(const std::vector<SRecordingFile>& files, const std::vector<OutputEntry>& entries) {
    StartJob(files, entries, 4'000'000);
    FinishJob();
  }

  // A set of two files of 1000 frames each; their paths.
  std::array<std::string, 2> WriteTwo() const {
    return {WriteNumbered("0.wav", 0, 1000), WriteNumbered("1.wav", 1000, 1000)};
  }

  const SOutputResult& Result(std::size_t index) const { return m_reader.Results()[index]; }

  void ExpectFault(std::size_t index, const std::string& file, const std::string& text) const {
    EXPECT_FALSE(Result(index).bOk);
    EXPECT_EQ(Result(index).state, EOutputState::Failed);
    EXPECT_THAT(Result(index).strError, HasSubstr(file));
    EXPECT_THAT(Result(index).strError, HasSubstr(text));
  }

  void Patch(const std::string& path, std::streamoff offset, char byte) const {
    std::fstream(path, std::ios::in | std::ios::out | std::ios::binary).seekp(offset).put(byte);
  }
};

TEST_F(InputFaultsTest, FileOfAnotherRateEndsTheEntriesThatNeedIt) {
  const auto [first, second] = WriteTwo();
  Patch(second, 24, 0x41);  // 1,000,001 samples/s
  Run(Describe({first, second}), {MakeEntry("all.wav", 0, 0), MakeEntry("early.wav", 0, 1000)});
  ExpectFault(0, second, "16-bit PCM at 1000001 Hz, those of the recording 16-bit PCM at 1000000 Hz");
  EXPECT_FRAMES(Path("all.wav"), 0, 1000);
  EXPECT_TRUE(Result(1).bOk);
  EXPECT_FRAMES(Path("early.wav"), 0, 1000);
}

TEST_F(InputFaultsTest, FileOfTheSameSizeThatHoldsFewerSamplesIsFound) {
  const auto [first, second] = WriteTwo();
  auto files = Describe({first, second});
  Patch(second, 40, static_cast<char>(4 * 900 % 256));  // its data size
  Patch(second, 41, static_cast<char>(4 * 900 / 256));
  files[1].stamp = Describe({second})[0].stamp;
  Run(files, {MakeEntry("all.wav", 0, 0)});
  ExpectFault(0, second, "it holds 3600 sample bytes, the recording has 4000 there");
}

TEST_F(InputFaultsTest, FileThatShrankSinceTheAnalysisIsFoundBeforeAnythingOfItIsRead) {
  const auto [first, second] = WriteTwo();
  const auto files = Describe({first, second});
  std::filesystem::resize_file(first, 2044);
  Run(files, {MakeEntry("all.wav", 0, 0)});
  ExpectFault(0, first, "2044 bytes instead of 4044");
  EXPECT_EQ(m_reader.BytesRead(), 0);
}

TEST_F(InputFaultsTest, AnotherFileUnderTheSameNameIsFound) {
  const auto first = WriteNumbered("0.wav", 0, 1000);
  // Set for both, for a system may keep less of a time that is set than of one that it takes itself.
  const auto time = std::filesystem::last_write_time(first) - std::chrono::seconds(5);
  std::filesystem::last_write_time(first, time);
  const auto files = Describe({first});
  std::filesystem::rename(first, Path("was.wav"));
  WriteNumbered("0.wav", 5000, 1000);
  std::filesystem::last_write_time(first, time);
  Run(files, {MakeEntry("all.wav", 0, 0)});
  ExpectFault(0, first, "another file has its name");
}

TEST_F(InputFaultsTest, FileThatIsPassedOverIsHeldAgainstTheAnalysisToo) {
  const auto [first, second] = WriteTwo();
  const auto files = Describe({first, second});
  std::filesystem::last_write_time(first, std::filesystem::last_write_time(first) + std::chrono::seconds(5));
  Run(files, {MakeEntry("late.wav", 1500, 100)});
  ExpectFault(0, first, "it was written to");
}

class ChangeInMidJobTest : public InputFaultsTest {
 protected:
  // Runs a job over ten blocks and a second file, and calls `change` when a few blocks were read. The second entry ends
  // within the first block.
  template <typename TChange>
  void RunWithChange(TChange change) {
    m_strFirst = WriteNumbered("0.wav", 0, 10 * kBlock);
    const auto second = WriteNumbered("1.wav", 10 * kBlock, kBlock);
    const std::vector<OutputEntry> entries = {MakeEntry("all.wav", 0, 0), MakeEntry("early.wav", 5, 100)};
    SPassThrough::Hold(1);
    StartJob(Describe({m_strFirst, second}), entries, 44 * kBlock);
    while (m_target.Progress().size() < 4) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    change();
    SPassThrough::LetAllGo();
    FinishJob();
    EXPECT_THAT(m_target.Lines(), Not(Contains(HasSubstr("Opening [1]")))) << "no later file fills the hole";
    EXPECT_TRUE(Result(1).bOk) << Result(1).strError;
    EXPECT_FRAMES(Path("early.wav"), 5, 100);
    // What was written before is the beginning of the recording, in whole blocks.
    EXPECT_EQ(Result(0).nFrames % kBlock, 0);
    EXPECT_LT(Result(0).nFrames, 10 * kBlock);
    EXPECT_FRAMES(Path("all.wav"), 0, Result(0).nFrames);
  }

  std::string m_strFirst;
};

TEST_F(ChangeInMidJobTest, FileThatShrinksWhileItIsReadFailsWhatStillNeedsIt) {
  RunWithChange([this] { std::filesystem::resize_file(m_strFirst, 44 + 4 * 6 * kBlock); });
  ExpectFault(0, m_strFirst, "it has changed since it was analysed");
}

TEST_F(ChangeInMidJobTest, FileThatIsWrittenToWhileItIsReadFailsWhatStillNeedsIt) {
  RunWithChange([this] {
    std::filesystem::last_write_time(m_strFirst,
                                     std::filesystem::last_write_time(m_strFirst) + std::chrono::seconds(5));
  });
  ExpectFault(0, m_strFirst, "it was written to");
}

TEST_F(InputFaultsTest, SamplesThatTheLibraryLosesOnTheWayAreNotMadeUpForBySilence) {
  const auto input = WriteNumbered("in.wav", 0, 5000);
  SPassThrough::HoldBack(46);
  SPassThrough::Lose(100);
  Run(Describe({input}), {MakeEntry("all.wav", 0, 0)});
  EXPECT_FALSE(Result(0).bOk);
  EXPECT_THAT(Result(0).strError, HasSubstr("gave 4854 samples where 5000 were due"));
}

TEST_F(InputFaultsTest, LibraryThatDoesNotTakeTheRatesFailsTheEntryBeforeAnythingIsCreated) {
  const auto input = WriteNumbered("in.wav", 0, 5000);
  m_dsp.DownconvertRateOut = [](std::uint32_t) -> std::uint32_t { return 0; };
  Run(Describe({input}), {MakeEntry("all.wav", 0, 0)});
  EXPECT_THAT(Result(0).strError, HasSubstr("does not bring 1000000 to 1000000 samples per second"));
  EXPECT_FALSE(std::filesystem::exists(Path("all.wav")));
}

TEST_F(InputFaultsTest, LibraryWithoutInstancesFailsTheEntry) {
  const auto input = WriteNumbered("in.wav", 0, 5000);
  m_dsp.AllocInstance = [](const wchar_t*) -> std::uint32_t { return 0; };
  m_dsp.ReleaseInstance = [](std::uint32_t) {};
  Run(Describe({input}), {MakeEntry("all.wav", 0, 0)});
  EXPECT_FALSE(Result(0).bOk);
  EXPECT_FALSE(Result(0).strError.empty());
  EXPECT_FALSE(std::filesystem::exists(Path("all.wav")));
}

}  // namespace
}  // namespace carvello::test
