#include "recording/riff_file_writer.h"

#include <gtest/gtest.h>

#include <memory>

#include "recording/layout.h"
#include "support/temp_folder.h"

namespace carvello {
namespace {

using namespace std::string_literals;
using test::CTempFolder;
using test::Le16;
using test::Le32;
using test::Le64;
using test::ReadWholeFile;
using test::U32At;
using test::U64At;
using test::Utf16Bytes;

constexpr char kXml[] = "<x/>";
constexpr std::int64_t kNow = 1'795'264'496;  // a multiple of 16

WAVEFORMATEX Format16() {
  WAVEFORMATEX format;
  format.wFormatTag = kFormatTagPcm;
  format.nChannels = 2;
  format.nSamplesPerSec = 48'000;
  format.nAvgBytesPerSec = 192'000;
  format.nBlockAlign = 4;
  format.wBitsPerSample = 16;
  return format;
}

std::string FormatBytes() {
  return Le16(1) + Le16(2) + Le32(48'000) + Le32(192'000) + Le16(4) + Le16(16) + Le16(0);
}

SInfoTexts Texts() {
  return {.strIPRD = "product", .strIART = "artist", .strICMT = "comment", .strICOP = "rights", .strINAM = "name"};
}

// 12 + (8+8) + (8+8) + (8+8) + (8+6) + (8+8) = 90 bytes.
std::string TrailerBytes() {
  return "LIST"s + Le32(82) + "INFO" +       //
         "IART" + Le32(8) + "artist\0\0"s +  //
         "ICMT" + Le32(8) + "comment\0"s +   //
         "ICOP" + Le32(8) + "rights\0\0"s +  //
         "INAM" + Le32(6) + "name\0\0"s +    //
         "IPRD" + Le32(8) + "product\0"s;
}

std::string WavHeader(std::uint64_t riffSize, std::uint64_t dataSize) {
  return "RIFF" + Le32(riffSize) + "WAVE" +           // 0
         "fmt " + Le32(18) + FormatBytes() +          // 12
         "auxi" + Le32(10) + Utf16Bytes("<x/>\0"s) +  // 38
         "data" + Le32(dataSize);                     // 46 + 10
}
constexpr std::uint64_t kWavHeaderSize = 54 + 10;

std::string Rf64Header(std::uint64_t riffSize, std::uint64_t dataSize, std::uint64_t sampleCount) {
  return "RF64" + Le32(0xFFFFFFFF) + "WAVE" +                                                 // 0
         "ds64" + Le32(28) + Le64(riffSize) + Le64(dataSize) + Le64(sampleCount) + Le32(0) +  // 12
         "fmt " + Le32(18) + FormatBytes() +                                                  // 48
         "auxi" + Le32(10) + Utf16Bytes("<x/>\0"s) +                                          // 74
         "data" + Le32(0xFFFFFFFF);                                                           // 82 + 10
}
constexpr std::uint64_t kRf64HeaderSize = 90 + 10;

class RiffFileWriter : public testing::Test {
 protected:
  std::int64_t Open(bool rf64) {
    return m_writer->Open(Path(), Format16(), kXml, Texts(), rf64, {kNow, 7'100'000, 48'000, 48'000});
  }
  bool Write(const std::string& block, std::int64_t now = kNow) {
    return m_writer->Write(block.data(), static_cast<std::uint32_t>(block.size()), now);
  }
  std::string Path() const { return m_folder / "out.wav"; }
  std::string File() const { return ReadWholeFile(Path()); }
  // What a killed program leaves: the file as it is, without a finish.
  std::string KilledFile() {
    m_writer.reset();
    return File();
  }

  CTempFolder m_folder;
  std::unique_ptr<CRiffFileWriter> m_writer = std::make_unique<CRiffFileWriter>();
};

TEST_F(RiffFileWriter, WavHeaderStandsAsLaidOutByHand) {
  EXPECT_EQ(Open(false), static_cast<std::int64_t>(kWavHeaderSize));
  EXPECT_EQ(File(), WavHeader(0, 0));
}

TEST_F(RiffFileWriter, Rf64HeaderStandsAsLaidOutByHand) {
  EXPECT_EQ(Open(true), static_cast<std::int64_t>(kRf64HeaderSize));
  EXPECT_EQ(File(), Rf64Header(0, 0, 0));
}

TEST_F(RiffFileWriter, FinishedWavFileStandsAsLaidOutByHand) {
  Open(false);
  ASSERT_TRUE(Write("abcdefgh"));
  ASSERT_TRUE(Write("ijkl"));
  ASSERT_TRUE(m_writer->Finish());
  EXPECT_FALSE(m_writer->IsOpen());
  EXPECT_EQ(File(), WavHeader(kWavHeaderSize + 12 + 90 - 8, 12) + "abcdefghijkl" + TrailerBytes());
}

TEST_F(RiffFileWriter, FinishedRf64FileStandsAsLaidOutByHand) {
  Open(true);
  ASSERT_TRUE(Write("abcdefgh"));
  ASSERT_TRUE(Write("ijkl"));
  ASSERT_TRUE(m_writer->Finish());
  EXPECT_EQ(File(), Rf64Header(kRf64HeaderSize + 12 + 90 - 8, 12, 6) + "abcdefghijkl" + TrailerBytes());
}

TEST_F(RiffFileWriter, Rf64SampleCountOf1000FramesIs2000) {
  Open(true);
  ASSERT_TRUE(Write(std::string(4000, 's')));
  ASSERT_TRUE(m_writer->Finish());
  EXPECT_EQ(U64At(File(), 36), 2000U);
}

TEST_F(RiffFileWriter, WhereFramesAreAskedForRf64SampleCountOf1000FramesIs1000FromTheFirstBlockOn) {
  m_writer->SetPolicy({.bCountFrames = true});
  Open(true);
  ASSERT_TRUE(Write(std::string(4000, 's')));
  EXPECT_EQ(U64At(File(), 36), 1000U);
  ASSERT_TRUE(m_writer->Finish());
  EXPECT_EQ(File(), Rf64Header(kRf64HeaderSize + 4000 + 90 - 8, 4000, 1000) + std::string(4000, 's') + TrailerBytes());
}

TEST_F(RiffFileWriter, AFileWithoutSamplesIsValidToo) {
  Open(false);
  ASSERT_TRUE(m_writer->Finish());
  EXPECT_EQ(File(), WavHeader(kWavHeaderSize + 90 - 8, 0) + TrailerBytes());
}

TEST_F(RiffFileWriter, AKilledWavFileCoversEveryBlock) {
  Open(false);
  std::string samples;
  for (const char* block : {"abcd", "efghijkl", "mnop"}) {
    ASSERT_TRUE(Write(block));
    samples += block;
    EXPECT_EQ(File(), WavHeader(kWavHeaderSize + samples.size() - 8, samples.size()) + samples);
  }
  EXPECT_EQ(KilledFile(), WavHeader(kWavHeaderSize + 16 - 8, 16) + samples);
}

TEST_F(RiffFileWriter, AKilledRf64FileCoversTheBlocksUpToTheLast16SecondStep) {
  Open(true);
  ASSERT_TRUE(Write("aaaa", kNow + 1));  // the first block always
  EXPECT_EQ(File(), Rf64Header(kRf64HeaderSize + 4 - 8, 4, 2) + "aaaa");
  ASSERT_TRUE(Write("bbbb", kNow + 15));  // the same step
  EXPECT_EQ(File(), Rf64Header(kRf64HeaderSize + 4 - 8, 4, 2) + "aaaabbbb");
  ASSERT_TRUE(Write("cccc", kNow + 16));  // the next
  EXPECT_EQ(File(), Rf64Header(kRf64HeaderSize + 12 - 8, 12, 6) + "aaaabbbbcccc");
  ASSERT_TRUE(Write("dddd", kNow + 31));
  EXPECT_EQ(KilledFile(), Rf64Header(kRf64HeaderSize + 12 - 8, 12, 6) + "aaaabbbbccccdddd");
}

TEST_F(RiffFileWriter, TheXmlIsUtf16WithATerminatorAndAnEvenSize) {
  const std::string xml = "<a b=\"\xC3\xA4\xF0\x9F\x93\xBB\"/>";  // 12 UTF-16 characters
  ASSERT_NE(m_writer->Open(Path(), Format16(), xml, Texts(), false, {}), 0);
  const std::string file = File();
  EXPECT_EQ(U32At(file, 42), 12U * 2 + 2);
  EXPECT_EQ(file.substr(46, 26), Utf16Bytes("<a b=\"") + "\xE4\0"s + "\x3D\xD8\xFB\xDC"s + Utf16Bytes("\"/>\0"s));
  EXPECT_EQ(file.substr(72, 4), "data");
}

TEST_F(RiffFileWriter, OnlyTheFlagAddsAMetaChunkBeforeTheTrailer) {
  Open(false);
  m_writer->SetSignalDescription(true);
  ASSERT_TRUE(Write("abcd"));
  ASSERT_TRUE(m_writer->Finish());
  const std::string file = File();
  const std::string meta = BuildMetaChunk({kNow, 7'100'000, 48'000, 48'000});
  EXPECT_EQ(U32At(meta, 4) % 4, 0U);
  EXPECT_EQ(file, WavHeader(kWavHeaderSize + 4 + meta.size() + 90 - 8, 4) + "abcd" + meta + TrailerBytes());
}

TEST_F(RiffFileWriter, OpenClearsTheMetaFlag) {
  m_writer->SetSignalDescription(true);
  Open(false);
  ASSERT_TRUE(m_writer->Finish());
  EXPECT_EQ(File().find("meta"), std::string::npos);
}

TEST_F(RiffFileWriter, AFileThatCannotBeCreatedGivesZeroAndAReason) {
  const std::string path = m_folder / "none" + "/out.wav";
  EXPECT_EQ(m_writer->Open(path, Format16(), kXml, Texts(), false, {}), 0);
  EXPECT_NE(m_writer->ErrorCode(), 0U);
  EXPECT_FALSE(m_writer->IsOpen());
  EXPECT_FALSE(m_writer->HasOpened());
  EXPECT_TRUE(m_writer->Finish());
}

TEST_F(RiffFileWriter, WithoutAFileWriteFails) {
  EXPECT_FALSE(Write("abcd"));
}

}  // namespace
}  // namespace carvello
