// Whether a file was closed by whoever wrote it, told by bytes laid out by hand.
#include "recording/written_file.h"

#include <gtest/gtest.h>

#include "recording/layout.h"
#include "recording/riff_file_writer.h"
#include "support/temp_folder.h"

namespace carvello {
namespace {

using namespace std::string_literals;
using test::Le16;
using test::Le32;
using test::Le64;

const std::string kFormat = Le16(1) + Le16(2) + Le32(48'000) + Le32(192'000) + Le16(4) + Le16(16) + Le16(0);
const std::string kTrailer = "LIST" + Le32(14) + "INFO" + "INAM" + Le32(2) + "x\0"s;  // 22 bytes

// 50 bytes before the "data" chunk, 58 before the samples.
std::string Wav(std::uint64_t riffSize, std::uint64_t dataSize) {
  return "RIFF" + Le32(riffSize) + "WAVE" + "fmt " + Le32(18) + kFormat + "auxi" + Le32(4) + "<\0\0\0"s + "data" +
         Le32(dataSize);
}

// 94 bytes before the samples.
std::string Rf64(std::uint64_t riffSize, std::uint64_t dataSize) {
  return "RF64" + Le32(0xFFFFFFFF) + "WAVE" + "ds64" + Le32(28) + Le64(riffSize) + Le64(dataSize) + Le64(dataSize / 2) +
         Le32(0) + "fmt " + Le32(18) + kFormat + "auxi" + Le32(4) + "<\0\0\0"s + "data" + Le32(0xFFFFFFFF);
}

class WrittenFile : public testing::Test {
 protected:
  SWrittenFile Inspect(const std::string& bytes) const {
    test::WriteWholeFile(m_folder / "a.wav", bytes);
    return InspectWrittenFile(m_folder / "a.wav");
  }
  EWrittenState StateOf(const std::string& bytes) const { return Inspect(bytes).state; }

  test::CTempFolder m_folder;
};

TEST_F(WrittenFile, ClosedFilesEndWithTheirTrailerAndTheirSizesMatch) {
  const SWrittenFile wav = Inspect(Wav(58 + 8 + 22 - 8, 8) + "abcdefgh" + kTrailer);
  EXPECT_EQ(wav.state, EWrittenState::Finished);
  EXPECT_EQ(wav.Frames(), 2);
  EXPECT_EQ(wav.format.nSamplesPerSec, 48'000U);
  const SWrittenFile rf64 = Inspect(Rf64(94 + 8 + 22 - 8, 8) + "abcdefgh" + kTrailer);
  EXPECT_EQ(rf64.state, EWrittenState::Finished);
  EXPECT_EQ(rf64.nDataBytes, 8);
}

TEST_F(WrittenFile, WithoutItsTrailerAFileIsUnfinishedAndTellsWhatItHolds) {
  const SWrittenFile killed = Inspect(Wav(58 + 8 - 8, 8) + "abcdefgh");
  EXPECT_EQ(killed.state, EWrittenState::Unfinished);
  EXPECT_EQ(killed.Frames(), 2);
  EXPECT_EQ(Inspect(Wav(58 + 400 - 8, 400) + "abcdefgh").nDataBytes, 8) << "sizes beyond the end are not believed";
  EXPECT_EQ(StateOf(Rf64(94 + 4 - 8, 4) + "abcdefgh"), EWrittenState::Unfinished);
}

TEST_F(WrittenFile, SizesThatDoNotMatchAreThoseOfAnUnfinishedFile) {
  EXPECT_EQ(StateOf(Wav(58 + 8 - 8, 8) + "abcdefgh" + kTrailer), EWrittenState::Unfinished) << "sizes of before";
  EXPECT_EQ(StateOf(Wav(58 + 8 + 21 - 8, 8) + "abcdefgh" + kTrailer.substr(0, 21)), EWrittenState::Unfinished);
  EXPECT_EQ(StateOf(Wav(58 + 8 + 23 - 8, 8) + "abcdefgh" + kTrailer + "x"), EWrittenState::Unfinished);
}

TEST_F(WrittenFile, AStumpIsUnfinishedAndWhatIsNoOutputOfOursIsForeign) {
  EXPECT_EQ(StateOf(""), EWrittenState::Unfinished);
  EXPECT_EQ(StateOf(Wav(0, 0).substr(0, 30)), EWrittenState::Unfinished);
  EXPECT_EQ(StateOf("a text that somebody has written"), EWrittenState::Foreign);
  EXPECT_EQ(StateOf("RIFF" + Le32(40) + "WAVE" + "fmt " + Le32(18) + kFormat + "data" + Le32(8) + "abcdefgh"),
            EWrittenState::Foreign)
      << "a recording that this program has not described";
  EXPECT_EQ(InspectWrittenFile(m_folder / "none").state, EWrittenState::Unreadable);
}

// ---- what the writer does at its ends

class RiffFileEnds : public testing::Test {
 protected:
  std::int64_t Open(CRiffFileWriter& writer, bool replace = false) const {
    WAVEFORMATEX format;
    format.wFormatTag = kFormatTagPcm;
    format.nChannels = 2;
    format.nSamplesPerSec = 48'000;
    format.nBlockAlign = 4;
    format.wBitsPerSample = 16;
    writer.SetPolicy({.bReplace = replace});
    return writer.Open(m_folder / "a.wav", format, "<x/>", {}, false, {});
  }

  test::CTempFolder m_folder;
};

TEST_F(RiffFileEnds, AFileThatExistsIsReplacedOnlyWithConsent) {
  test::WriteWholeFile(m_folder / "a.wav", "mine");
  CRiffFileWriter writer;
  EXPECT_EQ(Open(writer), 0);
  EXPECT_EQ(writer.ErrorText(), "The file exists already");
  EXPECT_EQ(test::ReadWholeFile(m_folder / "a.wav"), "mine");
  EXPECT_GT(Open(writer, true), 0);
}

TEST_F(RiffFileEnds, AFileThatIsBeingWrittenIsNotReplacedEither) {
  CRiffFileWriter first;
  ASSERT_GT(Open(first), 0);
  ASSERT_TRUE(first.Write("abcd", 4, 0));
  CRiffFileWriter second;
  EXPECT_EQ(Open(second, true), 0);
  EXPECT_TRUE(first.Finish());
  EXPECT_EQ(InspectWrittenFile(m_folder / "a.wav").nDataBytes, 4);
}

}  // namespace
}  // namespace carvello
