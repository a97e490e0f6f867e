#include "recording/wave_file_data.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>

#include "recording/layout.h"
#include "recording/metadata_xml.h"
#include "recording/written_file.h"
#include "support/platform.h"
#include "support/system_time.h"
#include "support/temp_folder.h"
#include "support/text.h"

namespace carvello {
namespace {

using test::ChunksOf;
using test::CTempFolder;
using test::ReadWholeFile;
using test::SChunk;
using test::U16At;
using test::U32At;
using test::U64At;
using testing::ElementsAre;
using testing::MatchesRegex;
using testing::StartsWith;

constexpr char kTag[] = "6A17-3C88-01F4";
constexpr std::int64_t kStart = 1'795'264'496;  // 2026-11-21 12:34:56
constexpr std::uint32_t kRate = 1000;

// With a clock that the test can set on.
class CClockedData final : public CWaveFileData {
 public:
  std::int64_t m_nSecondsOn = 0;

 private:
  std::int64_t Now() const override { return CurrentTime() + m_nSecondsOn; }
};

class WaveFileData : public testing::Test {
 protected:
  WaveFileData() {
    m_description.nSampleRate = kRate;
    m_description.nRadioCenterFreq = 7'100'000;
    m_description.nADFrequency = 64'000'000;
    m_description.tStart = kStart;
    m_description.bStartValid = true;
    m_description.strRadioModel = "Model";
    m_description.strRadioSerial = "Serial";
    m_description.strTitle = "Title";
  }

  bool Open(const std::string& name = "Out.wav") { return OpenPath(m_folder / name); }
  bool OpenPath(const std::string& path) {
    m_data.Describe(m_description);
    return m_data.Open(path, 0, kTag);
  }
  // Writes bytes as 16-bit values.
  bool Write(const std::string& bytes) {
    return m_data.Write(bytes.data(), static_cast<std::uint32_t>(bytes.size() / 2), 16);
  }
  std::string Bytes(const std::string& name) const { return ReadWholeFile(m_folder / name); }
  SMetadataLists Metadata(const std::string& name) const {
    SMetadataLists lists;
    for (const SChunk& chunk : ChunksOf(Bytes(name))) {
      if (chunk.identifier == "auxi") ParseMetadataXml(Utf16ToUtf8(Utf16FromLittleEndian(chunk.body)), lists);
    }
    return lists;
  }
  std::string Samples(const std::string& name) const {
    for (const SChunk& chunk : ChunksOf(Bytes(name))) {
      if (chunk.identifier == "data") return chunk.body;
    }
    return "no data chunk";
  }
  bool Exists(const std::string& name) const { return std::filesystem::exists(test::PathOf(m_folder / name)); }

  CTempFolder m_folder;
  SRecordingDescription m_description;
  CClockedData m_data;
};

// ---- the description

TEST_F(WaveFileData, IsConstructedForSixteenBitsAndClosed) {
  const CWaveFileData fresh;
  EXPECT_EQ(fresh.Description().nBitsPerSample, 16U);
  EXPECT_EQ(fresh.Description().nSplitMB, 0U);
  EXPECT_FALSE(fresh.IsOpen());
}

TEST_F(WaveFileData, ResetClearsCountersLimitsAndNamesOnly) {
  ASSERT_TRUE(Open());
  ASSERT_TRUE(Write("abcd"));
  m_data.Close();
  EXPECT_FALSE(Write("abcd"));
  m_description.nDualMode = 1;
  m_description.nMaxSeconds = 1;
  m_description.nSplitMB = 1;
  m_description.bRF64 = true;
  m_description.nBitsPerSample = 32;
  m_data.Describe(m_description);
  m_data.Reset();

  EXPECT_EQ(m_data.Description().nDualMode, 0);
  EXPECT_EQ(m_data.Description().nMaxSeconds, 0U);
  EXPECT_EQ(m_data.Description().nSplitMB, 0U);
  EXPECT_EQ(m_data.LastErrorCode(), 0U);
  EXPECT_EQ(m_data.FileBytes(), 0U);
  EXPECT_EQ(m_data.FileDataBytes(), 0);
  EXPECT_EQ(m_data.TotalBytes(), 0U);
  EXPECT_EQ(m_data.TotalDataBytes(), 0);
  EXPECT_TRUE(m_data.Files().empty());
  EXPECT_EQ(m_data.FileName() + m_data.LastError(), "");

  EXPECT_EQ(m_data.Description().strRadioModel, "Model");
  EXPECT_EQ(m_data.Description().strRadioSerial, "Serial");
  EXPECT_EQ(m_data.Description().strTitle, "Title");
  EXPECT_EQ(m_data.Description().nRadioCenterFreq, 7'100'000);
  EXPECT_EQ(m_data.Description().nSampleRate, kRate);
  EXPECT_EQ(m_data.Description().nADFrequency, 64'000'000U);
  EXPECT_EQ(m_data.Description().nBitsPerSample, 32U);
  EXPECT_TRUE(m_data.Description().bRF64);
  EXPECT_EQ(m_data.Description().tStart, kStart);
  EXPECT_TRUE(m_data.Description().bStartValid);
}

TEST_F(WaveFileData, SixteenBitsArePcm) {
  ASSERT_TRUE(Open());
  const std::string file = Bytes("Out.wav");
  EXPECT_EQ(U16At(file, 20), 1U);
  EXPECT_EQ(U16At(file, 22), 2U);
  EXPECT_EQ(U32At(file, 24), kRate);
  EXPECT_EQ(U32At(file, 28), kRate * 4);
  EXPECT_EQ(U16At(file, 32), 4U);
  EXPECT_EQ(U16At(file, 34), 16U);
  EXPECT_EQ(U16At(file, 36), 0U);
}

TEST_F(WaveFileData, ThirtyTwoBitsAreFloat) {
  m_description.nBitsPerSample = 32;
  ASSERT_TRUE(Open());
  const std::string file = Bytes("Out.wav");
  EXPECT_EQ(U16At(file, 20), 3U);
  EXPECT_EQ(U32At(file, 28), kRate * 8);
  EXPECT_EQ(U16At(file, 32), 8U);
  EXPECT_EQ(U16At(file, 34), 32U);
}

TEST_F(WaveFileData, TheMetadataTellsOfTheRecording) {
  m_description.nDualMode = 2;
  ASSERT_TRUE(Open());
  m_data.Close();
  const SMetadataLists metadata = Metadata("Out.wav");
  EXPECT_EQ(metadata.Find("CurrentTimeUTC"), "21-11-2026 12:34:56");
  EXPECT_EQ(metadata.Find("UTC"), "21-11-2026 12:34:56");
  EXPECT_EQ(metadata.FindNumber("UTCSeconds"), kStart);
  EXPECT_EQ(metadata.Find("Filename"), "Out.wav");
  EXPECT_EQ(metadata.Find("FirstFile"), "Out.wav");
  EXPECT_EQ(metadata.Find("InternalTag"), kTag);
  EXPECT_EQ(metadata.Find("RadioModel"), "Model");
  EXPECT_EQ(metadata.Find("RadioSerial"), "Serial");
  EXPECT_EQ(metadata.Find("DualMode"), "2");
  EXPECT_EQ(metadata.Find("ADFrequency"), "64000000");
  EXPECT_EQ(metadata.Find("BitsPerSample"), "16");
  EXPECT_EQ(metadata.Find("BytesPerSecond"), "4000");
  EXPECT_EQ(metadata.Find("RadioCenterFreq"), "7100000");
  EXPECT_EQ(metadata.Find("SampleRate"), "1000");
}

TEST_F(WaveFileData, WithoutAValidStartTheTimeIsThatOfOpening) {
  m_description.bStartValid = false;
  const std::int64_t before = CurrentTime();
  ASSERT_TRUE(Open());
  const std::int64_t after = CurrentTime();
  m_data.Close();
  const SMetadataLists metadata = Metadata("Out.wav");
  EXPECT_GE(metadata.FindNumber("UTCSeconds"), before);
  EXPECT_LE(metadata.FindNumber("UTCSeconds"), after);
  EXPECT_EQ(metadata.Find("CurrentTimeUTC"), FormatUtc("%d-%m-%Y %H:%M:%S", metadata.FindNumber("UTCSeconds")));
}

TEST_F(WaveFileData, BackdatingIsUsedOnce) {
  m_description.nBackdateSeconds = 10;
  ASSERT_TRUE(Open());
  EXPECT_EQ(m_data.Description().nBackdateSeconds, 0);
  m_data.Close();
  EXPECT_EQ(Metadata("Out.wav").FindNumber("UTCSeconds"), kStart - 10);
}

TEST_F(WaveFileData, EveryWriteClearsTheBackdating) {
  ASSERT_TRUE(Open());
  m_description.nBackdateSeconds = 10;
  m_data.Describe(m_description);
  ASSERT_TRUE(Write("abcd"));
  EXPECT_EQ(m_data.Description().nBackdateSeconds, 0);
}

TEST_F(WaveFileData, InfoTextsAreMadeAtOpen) {
  m_description.strRadioModel =
      " \xF0\x9F\x94\x92Mod\xF0\x9F\x93\xBB"
      "el \xF0\x9F\x8C\x80 ";
  ASSERT_TRUE(Open());
  EXPECT_THAT(m_data.InfoTexts().strINAM, MatchesRegex("Title, ....-..-.. ..:.."));
  EXPECT_EQ(m_data.InfoTexts().strIPRD, "SDR Data (IQ) Recordings, WAV");
  // U+1F512 and U+1F4FB begin with the surrogate D83D and go; U+1F300 begins with D83C and stays.
  EXPECT_EQ(m_data.InfoTexts().strIART, "Halvarn, Model \xF0\x9F\x8C\x80");
  EXPECT_EQ(m_data.InfoTexts().strICOP, "Software Copyright (C) 2026 the Carvello developers");
  EXPECT_THAT(m_data.InfoTexts().strICMT,
              StartsWith("Created by " + platform::ComputerName() + "\\" + platform::UserName() + " on "));
  EXPECT_THAT(m_data.InfoTexts().strICMT, testing::EndsWith(", filename " + (m_folder / "Out.wav")));
}

TEST_F(WaveFileData, TheProductTextTellsTheForm) {
  m_description.bRF64 = true;
  ASSERT_TRUE(Open());
  EXPECT_EQ(m_data.InfoTexts().strIPRD, "SDR Data (IQ) Recordings, WAV RF64");
}

// ---- one file

TEST_F(WaveFileData, AClosedFileHoldsItsFourChunksOnly) {
  m_data.SetPolicy({.bReplace = true});
  for (const bool rf64 : {false, true}) {
    m_description.bRF64 = rf64;
    ASSERT_TRUE(Open());
    ASSERT_TRUE(Write("abcd"));
    ASSERT_TRUE(m_data.Close());
    std::vector<std::string> identifiers;
    for (const SChunk& chunk : ChunksOf(Bytes("Out.wav"))) identifiers.push_back(chunk.identifier);
    if (rf64) {
      EXPECT_THAT(identifiers, ElementsAre("ds64", "fmt ", "auxi", "data", "LIST"));
    } else {
      EXPECT_THAT(identifiers, ElementsAre("fmt ", "auxi", "data", "LIST"));
    }
    EXPECT_EQ(Samples("Out.wav"), "abcd");
  }
}

TEST_F(WaveFileData, CountersFollowHeaderAndSamples) {
  ASSERT_TRUE(Open());
  const std::uint64_t header = Bytes("Out.wav").size();
  EXPECT_EQ(m_data.FileBytes(), header);
  EXPECT_EQ(m_data.TotalBytes(), header);
  ASSERT_TRUE(Write("abcdefgh"));
  EXPECT_EQ(m_data.FileBytes(), header + 8);
  EXPECT_EQ(m_data.FileDataBytes(), 8);
  EXPECT_EQ(m_data.TotalBytes(), header + 8);
  EXPECT_EQ(m_data.TotalDataBytes(), 8);
}

TEST_F(WaveFileData, AKilledOutputCoversEveryBlockOfAWavFile) {
  ASSERT_TRUE(Open());
  for (std::uint32_t blocks = 1; blocks <= 3; ++blocks) {
    ASSERT_TRUE(Write("abcd"));
    const std::string file = Bytes("Out.wav");
    EXPECT_EQ(U32At(file, 4), file.size() - 8);
    EXPECT_EQ(ChunksOf(file).back().identifier, "data");
    EXPECT_EQ(ChunksOf(file).back().body.size(), 4 * blocks);
  }
}

TEST_F(WaveFileData, AFullSequenceOfRf64CountsSingleValues) {
  m_description.bRF64 = true;
  ASSERT_TRUE(Open());
  ASSERT_TRUE(Write(std::string(4000, 'x')));
  ASSERT_TRUE(m_data.Close());
  const std::string file = Bytes("Out.wav");
  EXPECT_EQ(U64At(file, 20), file.size() - 8);
  EXPECT_EQ(U64At(file, 28), 4000U);
  EXPECT_EQ(U64At(file, 36), 2000U);
}

TEST_F(WaveFileData, AnUnsplitOutputHasNoNumberAndNoPreviousFile) {
  ASSERT_TRUE(Open());
  m_data.Close();
  EXPECT_EQ(m_data.FileName(), m_folder / "Out.wav");
  EXPECT_EQ(Metadata("Out.wav").Find("PreviousFile"), "");
  EXPECT_EQ(Metadata("Out.wav").Find("Sequence"), "0");
  EXPECT_FALSE(Exists("Out 000.wav"));
}

TEST_F(WaveFileData, AfterCloseAWriteReportsFileNotOpen) {
  ASSERT_TRUE(Open());
  ASSERT_TRUE(m_data.Close());
  EXPECT_FALSE(m_data.IsOpen());
  EXPECT_FALSE(Write("abcd"));
  EXPECT_EQ(m_data.LastError(), "File not open");
  EXPECT_TRUE(m_data.Close());
}

TEST_F(WaveFileData, DestructionLeavesTheFileUnfinished) {
  {
    CWaveFileData data;
    data.Describe(m_description);
    ASSERT_TRUE(data.Open(m_folder / "Out.wav", 0, kTag));
    ASSERT_TRUE(data.Write("abcd", 2, 16));
  }
  EXPECT_EQ(ChunksOf(Bytes("Out.wav")).back().identifier, "data");
}

TEST_F(WaveFileData, TheDurationLimitClosesWithoutAMessage) {
  m_description.nMaxSeconds = 600;
  ASSERT_TRUE(Open());
  ASSERT_TRUE(Write("abcd"));
  m_data.m_nSecondsOn = 30;
  ASSERT_TRUE(Write("efgh"));
  m_data.m_nSecondsOn = 1000;
  EXPECT_TRUE(Write("dropped!"));
  EXPECT_EQ(m_data.LastError(), "");
  EXPECT_FALSE(m_data.IsOpen());
  EXPECT_EQ(Samples("Out.wav"), "abcdefgh");
  EXPECT_EQ(ChunksOf(Bytes("Out.wav")).back().identifier, "LIST");
}

TEST_F(WaveFileData, AnUnsupportedWidthFinishesTheFileAndFails) {
  m_description.nBitsPerSample = 8;
  ASSERT_TRUE(Open());
  EXPECT_FALSE(m_data.Write("abcd", 4, 8));
  EXPECT_THAT(m_data.LastError(), StartsWith("Error writing 4 bytes - "));
  EXPECT_FALSE(m_data.IsOpen());
  EXPECT_EQ(Samples("Out.wav"), "");
  EXPECT_EQ(ChunksOf(Bytes("Out.wav")).back().identifier, "LIST");
}

TEST_F(WaveFileData, AFileThatCannotBeCreatedChangesNoCounter) {
  EXPECT_FALSE(Open("none/Out.wav"));
  EXPECT_NE(m_data.LastError(), "");
  EXPECT_NE(m_data.LastErrorCode(), 0U);
  EXPECT_EQ(m_data.TotalBytes(), 0U);
  EXPECT_TRUE(m_data.Files().empty());
  EXPECT_FALSE(Write("abcd"));
  EXPECT_THAT(m_data.LastError(), StartsWith("Error writing 4 bytes - "));
  EXPECT_FALSE(m_data.IsOpen());
  EXPECT_EQ(m_data.StartOffset(), 0.0);
}

// ---- split outputs

// The working folder for as long as the object lives.
class CWorkingFolder {
 public:
  explicit CWorkingFolder(const std::string& folder) : m_old(std::filesystem::current_path()) {
    std::filesystem::current_path(test::PathOf(folder));
  }
  ~CWorkingFolder() { std::filesystem::current_path(m_old); }
  CWorkingFolder(const CWorkingFolder&) = delete;
  CWorkingFolder& operator=(const CWorkingFolder&) = delete;

 private:
  std::filesystem::path m_old;
};

TEST_F(WaveFileData, SplitFilesAreNumberedBeforeTheExtension) {
  m_description.nSplitMB = 1;
  ASSERT_TRUE(Open("Out 1.5 MHz.wav"));
  const std::string block(1'000'000, 's');
  for (int count = 0; count < 3; ++count) ASSERT_TRUE(Write(block));
  m_data.Close();
  EXPECT_THAT(m_data.Files(), ElementsAre(m_folder / "Out 1.5 MHz 000.wav", m_folder / "Out 1.5 MHz 001.wav",
                                          m_folder / "Out 1.5 MHz 002.wav"));
  for (const std::string& path : m_data.Files()) EXPECT_EQ(Samples(platform::NameOf(path)), block);
  EXPECT_EQ(m_data.TotalDataBytes(), 3'000'000);
  EXPECT_EQ(m_data.FileName(), m_folder / "Out 1.5 MHz 002.wav");
}

TEST_F(WaveFileData, FileZeroHasNoPreviousFileAndFileOneNamesFileZero) {
  m_description.nSplitMB = 1;
  ASSERT_TRUE(Open());
  const std::string block(1'000'000, 's');
  for (int count = 0; count < 3; ++count) ASSERT_TRUE(Write(block));
  m_data.Close();
  EXPECT_EQ(Metadata("Out 000.wav").Find("PreviousFile"), "");
  EXPECT_EQ(Metadata("Out 001.wav").Find("PreviousFile"), "Out 000.wav");
  EXPECT_EQ(Metadata("Out 002.wav").Find("PreviousFile"), "Out 001.wav");
  for (const char* name : {"Out 000.wav", "Out 001.wav", "Out 002.wav"}) {
    EXPECT_EQ(Metadata(name).Find("FirstFile"), "Out 000.wav");
    EXPECT_EQ(Metadata(name).Find("Filename"), name);
    EXPECT_EQ(Metadata(name).Find("InternalTag"), kTag);
  }
  EXPECT_EQ(Metadata("Out 002.wav").Find("Sequence"), "2");
}

TEST_F(WaveFileData, EveryFileCarriesTheTimeOfItsOwnFirstSample) {
  m_description.nSplitMB = 1;
  ASSERT_TRUE(Open());
  // 250,125 frames at 1000 frames/s are 250.125 s a file; whole seconds are written, fractions add up.
  const std::string block(1'000'500, 's');
  for (int count = 0; count < 9; ++count) ASSERT_TRUE(Write(block));
  m_data.Close();
  EXPECT_EQ(Metadata("Out 000.wav").FindNumber("UTCSeconds"), kStart);
  EXPECT_EQ(Metadata("Out 001.wav").FindNumber("UTCSeconds"), kStart + 250);
  EXPECT_EQ(Metadata("Out 007.wav").FindNumber("UTCSeconds"), kStart + 1750);
  EXPECT_EQ(Metadata("Out 008.wav").FindNumber("UTCSeconds"), kStart + 2001);
  EXPECT_DOUBLE_EQ(m_data.StartOffset(), 9 * 250.125);
}

TEST_F(WaveFileData, AnOutputOfExactlyTheSplitSizeHasNoEmptyFileBehindIt) {
  m_description.nSplitMB = 1;
  ASSERT_TRUE(Open());
  const std::size_t header = Bytes("Out 000.wav").size();
  ASSERT_TRUE(Write(std::string(1'000'000 - header, 's')));
  EXPECT_EQ(m_data.FileBytes(), 1'000'000U);
  EXPECT_THAT(m_data.Files(), ElementsAre(m_folder / "Out 000.wav"));
  ASSERT_TRUE(Write("abcd"));
  m_data.Close();
  EXPECT_EQ(m_data.Files().size(), 2U);
  EXPECT_EQ(Samples("Out 001.wav"), "abcd");

  CWaveFileData other;
  other.Describe(m_description);
  ASSERT_TRUE(other.Open(m_folder / "Other.wav", 0, kTag));
  const std::string rest(1'000'000 - Bytes("Other 000.wav").size(), 's');
  ASSERT_TRUE(other.Write(rest.data(), static_cast<std::uint32_t>(rest.size() / 2), 16));
  other.Close();
  EXPECT_FALSE(Exists("Other 001.wav"));
}

TEST_F(WaveFileData, TheSplitSizeIsReachedByTheLastStartedThousand) {
  m_description.nSplitMB = 1;
  ASSERT_TRUE(Open());
  const std::size_t header = Bytes("Out 000.wav").size();
  ASSERT_TRUE(Write(std::string(999'000 - header, 's')));
  ASSERT_TRUE(Write("ab"));  // 999,000 bytes were in the file: 999 thousands
  EXPECT_EQ(m_data.Files().size(), 1U);
  ASSERT_TRUE(Write("cd"));  // 999,002 bytes: the thousandth has begun
  EXPECT_EQ(m_data.Files().size(), 2U);
}

TEST_F(WaveFileData, APieceOfTheBlockBeforeItStaysInItsFileWhateverTheSize) {
  m_description.nSplitMB = 1;
  ASSERT_TRUE(Open());
  ASSERT_TRUE(Write(std::string(1'200'000, 's')));
  ASSERT_TRUE(m_data.Write("abcd", 2, 16, false));
  EXPECT_EQ(m_data.Files().size(), 1U);
  ASSERT_TRUE(Write("efgh"));
  m_data.Close();
  EXPECT_EQ(Samples("Out 000.wav"), std::string(1'200'000, 's') + "abcd");
  EXPECT_EQ(Samples("Out 001.wav"), "efgh");
}

// Written for a while, before it was known where the part ends.
TEST_F(WaveFileData, BytesThatBelongToTheNextFileAfterAllMoveThere) {
  m_description.nSplitMB = 1;
  ASSERT_TRUE(Open());
  std::string moved;
  for (int i = 0; i < 150'000; ++i) moved += static_cast<char>('a' + i % 23);
  const std::string block(1'000'000, 's');
  ASSERT_TRUE(Write(block));
  ASSERT_TRUE(m_data.Write(moved.data(), 75'000, 16, false, ETell::Later));
  ASSERT_TRUE(m_data.SplitBefore(150'000));
  EXPECT_EQ(m_data.FileDataBytes(), 150'000);
  EXPECT_EQ(m_data.TotalDataBytes(), 1'150'000);
  EXPECT_DOUBLE_EQ(m_data.StartOffset(), 250.0);
  ASSERT_TRUE(m_data.Write("abcd", 2, 16, false));
  m_data.Close();
  EXPECT_EQ(m_data.LastError(), "");
  EXPECT_EQ(Samples("Out 000.wav"), block);
  EXPECT_EQ(Samples("Out 001.wav"), moved + "abcd");
  EXPECT_EQ(ChunksOf(Bytes("Out 000.wav")).back().identifier, "LIST");
}

TEST_F(WaveFileData, BytesBehindAPlaceWhereNoFileEndsStay) {
  m_description.nSplitMB = 2;
  ASSERT_TRUE(Open());
  ASSERT_TRUE(Write(std::string(1'000'000, 's')));
  ASSERT_TRUE(m_data.Write(std::string(1'500'000, 't').data(), 750'000, 16, false, ETell::Later));
  ASSERT_TRUE(m_data.SplitBefore(1'500'000));
  EXPECT_EQ(m_data.Files().size(), 1U);
  ASSERT_TRUE(Write("abcd"));
  m_data.Close();
  EXPECT_EQ(Samples("Out 000.wav"), std::string(1'000'000, 's') + std::string(1'500'000, 't'));
  EXPECT_EQ(Samples("Out 001.wav"), "abcd");
}

TEST_F(WaveFileData, ANextFileThatCannotBeCreatedForMovedBytesLeavesTheFullOneWhole) {
  m_description.nSplitMB = 1;
  std::filesystem::create_directory(test::PathOf(m_folder / "Out 001.wav"));
  ASSERT_TRUE(Open());
  const std::string block(1'000'000, 's');
  ASSERT_TRUE(Write(block));
  ASSERT_TRUE(m_data.Write("abcdefgh", 4, 16, false, ETell::Later));
  EXPECT_FALSE(m_data.SplitBefore(8));
  EXPECT_NE(m_data.LastError(), "");
  EXPECT_EQ(Samples("Out 000.wav"), block);
  EXPECT_EQ(m_data.TotalDataBytes(), 1'000'000);
  EXPECT_FALSE(m_data.IsOpen());
  EXPECT_FALSE(m_data.SplitBefore(8));
  EXPECT_EQ(m_data.LastError(), "File not open");
  EXPECT_EQ(InspectWrittenFile(m_folder / "Out 000.wav").state, EWrittenState::Finished);
}

TEST_F(WaveFileData, NoBytesMoveToAFileOfTheSameName) {
  const CWorkingFolder working(m_folder.Path());
  m_description.nSplitMB = 1;
  ASSERT_TRUE(OpenPath("Out"));
  EXPECT_FALSE(m_data.CanSplitBefore());
  m_data.Close();
  m_data.Reset();
  ASSERT_TRUE(OpenPath("Out.wav"));
  EXPECT_TRUE(m_data.CanSplitBefore());
}

TEST_F(WaveFileData, SplitBytesInOrderAreTheBytesOfTheWholeOutput) {
  m_description.nSplitMB = 1;
  ASSERT_TRUE(Open());
  std::string all;
  for (char letter = 'a'; letter < 'k'; ++letter) {
    const std::string block(300'000, letter);
    ASSERT_TRUE(Write(block));
    all += block;
  }
  m_data.Close();
  std::string joined;
  for (const std::string& path : m_data.Files()) joined += Samples(platform::NameOf(path));
  EXPECT_EQ(m_data.Files().size(), 3U);
  EXPECT_EQ(joined, all);
}

TEST_F(WaveFileData, RF64OutputsAreSplitToo) {
  m_description.bRF64 = true;
  m_description.nSplitMB = 1;
  ASSERT_TRUE(Open());
  const std::string block(1'000'000, 's');
  ASSERT_TRUE(Write(block));
  ASSERT_TRUE(Write("abcd"));
  m_data.Close();
  EXPECT_EQ(Samples("Out 000.wav"), block);
  EXPECT_EQ(Samples("Out 001.wav"), "abcd");
}

TEST_F(WaveFileData, ABasePathWithoutADotOrWithItsOnlyOneInFrontServesEveryFile) {
  const CWorkingFolder working(m_folder.Path());
  for (const std::string base : {"Out", ".Out"}) {
    m_data.Reset();
    m_description.nSplitMB = 1;
    ASSERT_TRUE(OpenPath(base));
    ASSERT_TRUE(Write(std::string(1'000'000, 's')));
    ASSERT_TRUE(Write("abcd"));
    m_data.Close();
    EXPECT_THAT(m_data.Files(), ElementsAre(base, base));
    EXPECT_EQ(Samples(base), "abcd");
  }
}

TEST_F(WaveFileData, ANextFileThatCannotBeCreatedClosesTheOutput) {
  m_description.nSplitMB = 1;
  std::filesystem::create_directory(test::PathOf(m_folder / "Out 001.wav"));
  ASSERT_TRUE(Open());
  const std::string block(1'000'000, 's');
  ASSERT_TRUE(Write(block));
  EXPECT_FALSE(Write("abcd"));
  EXPECT_NE(m_data.LastError(), "");
  EXPECT_EQ(Samples("Out 000.wav"), block);
  EXPECT_FALSE(Write("efgh"));
  EXPECT_EQ(m_data.LastError(), "File not open");
  EXPECT_TRUE(m_data.Close());
  EXPECT_DOUBLE_EQ(m_data.StartOffset(), 250.0);
  EXPECT_FALSE(Exists("Out 002.wav"));
}

TEST_F(WaveFileData, TakesAnyUnicodeName) {
  const std::string name = "\xC3\x84 \xE6\x97\xA5\xE6\x9C\xAC \xF0\x9F\x93\xBB.wav";
  ASSERT_TRUE(Open(name));
  ASSERT_TRUE(Write("abcd"));
  m_data.Close();
  EXPECT_EQ(Metadata(name).Find("Filename"), name);
}

}  // namespace
}  // namespace carvello
