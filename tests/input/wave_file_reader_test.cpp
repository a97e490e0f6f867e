#include "input/wave_file_reader.h"

#include <cerrno>
#include <cstring>
#include <string>
#include <vector>

#include "input/input_fixture.h"

namespace carvello::test {

namespace {

// The runtime's text for no error.
std::string StatusOfSuccess() {
  return std::strerror(0);
}

class StreamingParse : public InputTest {
 protected:
  // Writes the bytes, opens them and parses.
  bool Parse(const std::string& bytes) {
    EXPECT_TRUE(m_reader.Open(Write("input.wav", bytes)));
    return m_reader.ParseWave(m_format, m_nDataSize);
  }

  std::string NextBytes(std::size_t count) {
    std::string bytes(count, '\0');
    bytes.resize(m_reader.File().Read(bytes.data(), count));
    return bytes;
  }

  const CMyStringArray& Log() const { return m_reader.Log(); }

  CWaveFileReader m_reader;
  WAVEFORMATEXTENSIBLE m_format;
  std::int64_t m_nDataSize = -1;
};

}  // namespace

TEST_F(StreamingParse, StandsAtTheFirstSampleOfAPlainFile) {
  ASSERT_TRUE(Parse(Riff(FormatChunk() + Chunk("data", "ABCDEFGH"))));
  EXPECT_EQ(m_nDataSize, 8);
  EXPECT_EQ(m_reader.DataBytesTotal(), 8);
  EXPECT_EQ(m_reader.DataStart(), 44);
  EXPECT_EQ(NextBytes(4), "ABCD");
}

TEST_F(StreamingParse, NormalisesPcmIntoTheExtensibleForm) {
  ASSERT_TRUE(Parse(PlainWave(8)));
  const WAVEFORMATEXTENSIBLE& format = m_reader.Format();
  EXPECT_EQ(format.Format.wFormatTag, 0xFFFE);
  EXPECT_EQ(format.Format.nChannels, 2);
  EXPECT_EQ(format.Format.nSamplesPerSec, 1000u);
  EXPECT_EQ(format.Format.nAvgBytesPerSec, 4000u);
  EXPECT_EQ(format.Format.nBlockAlign, 4);
  EXPECT_EQ(format.Format.wBitsPerSample, 16);
  EXPECT_EQ(format.Format.cbSize, 22);
  EXPECT_EQ(format.wValidBitsPerSample, 16);
  EXPECT_EQ(format.dwChannelMask, 3u);
  EXPECT_EQ(format.SubFormat, KSDATAFORMAT_SUBTYPE_PCM);
}

TEST_F(StreamingParse, NormalisesFloatIntoTheExtensibleForm) {
  ASSERT_TRUE(Parse(Riff(FormatChunk({.nTag = 3, .nBits = 32}) + Chunk("data", std::string(8, 'x')))));
  EXPECT_EQ(m_reader.Format().SubFormat, KSDATAFORMAT_SUBTYPE_IEEE_FLOAT);
  EXPECT_EQ(m_reader.Format().wValidBitsPerSample, 32);
}

TEST_F(StreamingParse, KeepsAnExtensibleFormatAsRead) {
  const std::string body = ExtensibleBody({.nChannels = 3, .nBits = 24}, 1);
  ASSERT_TRUE(Parse(Riff(Chunk("fmt ", body) + Chunk("data", std::string(9, 'x')))));
  EXPECT_EQ(m_reader.Format().Format.nChannels, 3);
  EXPECT_EQ(m_reader.Format().wValidBitsPerSample, 24);
  EXPECT_EQ(m_reader.DataBytesTotal(), 9);
}

TEST_F(StreamingParse, RefusesAnExtensibleFormatOfAnotherSubFormat) {
  EXPECT_FALSE(Parse(Riff(Chunk("fmt ", ExtensibleBody({}, 2)) + Chunk("data", "ABCD"))));
  EXPECT_TRUE(HasLine(Log(), "[WARNING] Not a format that we can handle...Exiting"));
}

TEST_F(StreamingParse, AcceptsAMonoFileWithChannelMask4) {
  ASSERT_TRUE(Parse(Riff(FormatChunk({.nChannels = 1}) + Chunk("data", "ABCD"))));
  EXPECT_EQ(m_reader.Format().dwChannelMask, 4u);
}

TEST_F(StreamingParse, RefusesThreePlainChannels) {
  EXPECT_FALSE(Parse(Riff(FormatChunk({.nChannels = 3}) + Chunk("data", "ABCDEF"))));
  EXPECT_TRUE(HasLine(
      Log(), "[WARNING] WAVEFORMATEX structure is valid for representing wave formats with only 1 or 2 channels!"));
}

TEST_F(StreamingParse, RefusesFormatTag2) {
  EXPECT_FALSE(Parse(Riff(FormatChunk({.nTag = 2}) + Chunk("data", "ABCD"))));
  EXPECT_TRUE(HasLine(Log(), "[WARNING] Not a format that we can handle...Exiting"));
}

TEST_F(StreamingParse, RefusesFormatsWhoseFrameHasNoBytes) {
  for (const SFormatBytes& format : {SFormatBytes{.nChannels = 2, .nBits = 0}, SFormatBytes{.nChannels = 1, .nBits = 7},
                                     SFormatBytes{.nChannels = 2, .nBits = 3}}) {
    EXPECT_FALSE(Parse(Riff(FormatChunk(format) + Chunk("data", "ABCD"))));
  }
  EXPECT_FALSE(Parse(Riff(Chunk("fmt ", ExtensibleBody({.nChannels = 0}, 1)) + Chunk("data", "ABCD"))));
  EXPECT_TRUE(
      HasLine(Log(), "[ERROR] Format with 2 channels and 0 bits per sample, at least one byte per frame is needed"));
  EXPECT_TRUE(
      HasLine(Log(), "[ERROR] Format with 0 channels and 16 bits per sample, at least one byte per frame is needed"));
}

TEST_F(StreamingParse, AFormatChunkOf18BytesIsReadWhole) {
  ASSERT_TRUE(Parse(Riff(Chunk("fmt ", FormatBody() + Le16(0)) + Chunk("data", "ABCD"))));
  EXPECT_EQ(m_reader.DataStart(), 46);
  EXPECT_EQ(m_reader.Format().Format.cbSize, 22);
}

TEST_F(StreamingParse, AFormatChunkOf50BytesIsReadTo40AndSkippedBy10) {
  ASSERT_TRUE(Parse(Riff(Chunk("fmt ", FormatBody() + std::string(34, '\x7F')) + Chunk("data", "ABCD"))));
  EXPECT_EQ(m_reader.DataStart(), 12 + 8 + 50 + 8);
  EXPECT_EQ(m_reader.Format().SubFormat, KSDATAFORMAT_SUBTYPE_PCM);
}

TEST_F(StreamingParse, RoundsTheTotalToWholeFramesAndLeavesTheSizeOut) {
  ASSERT_TRUE(Parse(PlainWave(1'000'003)));
  EXPECT_EQ(m_reader.DataBytesTotal(), 1'000'000);
  EXPECT_EQ(m_nDataSize, 1'000'003);
}

TEST_F(StreamingParse, AnOddChunkBeforeTheDataIsNotPadded) {
  ASSERT_TRUE(Parse(PlainWave(8, Chunk("junk", "odd"))));
  EXPECT_EQ(m_reader.DataStart(), 36 + 11 + 8);
  EXPECT_EQ(m_reader.DataBytesTotal(), 8);
}

TEST_F(StreamingParse, AnEladRecordingIsReadToTheFilesEnd) {
  const std::string elad = Chunk("elad", "ELAD");
  ASSERT_TRUE(Parse(Riff(FormatChunk() + elad + ChunkHeader("data", 16) + std::string(4001, 'x'))));
  EXPECT_EQ(m_nDataSize, 4001);
  EXPECT_EQ(m_reader.DataBytesTotal(), 4000);
}

TEST_F(StreamingParse, WrongSignaturesAreWarningsOnly) {
  std::string bytes = PlainWave(8);
  bytes.replace(0, 4, "Riff");
  bytes.replace(4, 4, Le32(44));
  bytes.replace(8, 8, "Wavefmt_");
  ASSERT_TRUE(Parse(bytes));
  EXPECT_EQ(m_reader.DataBytesTotal(), 8);
  EXPECT_TRUE(HasLine(Log(), "[WARNING] RIFF signature: Not Found"));
  EXPECT_TRUE(HasLine(Log(), "[WARNING] WAVE signature: Not Found"));
  EXPECT_TRUE(HasLine(Log(), "[WARNING] fmt  signature: Not Found"));
  EXPECT_TRUE(HasLine(Log(), "[WARNING] File size: 44 (Minimum WAV file size supported is 45)"));
}

TEST_F(StreamingParse, AShortFormatChunkIsAWarning) {
  // 15 bytes hold every bit of 16 bits per sample but the high byte, which is 0 anyway.
  ASSERT_TRUE(Parse(Riff(Chunk("fmt ", FormatBody().substr(0, 15)) + Chunk("data", std::string(40, 'x')))));
  EXPECT_TRUE(HasLine(Log(), "[WARNING] Format size: 15 (Smaller than size of PCMWAVEFORMAT 16)"));
}

TEST_F(StreamingParse, AFileWithoutAHeaderIsNoWaveFile) {
  EXPECT_FALSE(Parse(PlainWave(8).substr(0, 19)));
  EXPECT_TRUE(HasLine(Log(), "Not a valid WAVE file"));
}

TEST_F(StreamingParse, AFileWithoutDataEndsAtTheMissingHeader) {
  EXPECT_FALSE(Parse(Riff(FormatChunk() + Chunk("junk", "12345678"))));
  EXPECT_TRUE(HasLine(Log(), "[ERROR] Failed to read header!"));
}

TEST_F(StreamingParse, AFormatThatTheFileCutsShortFails) {
  EXPECT_FALSE(Parse(PlainWave(8).substr(0, 30)));
  EXPECT_TRUE(HasLine(Log(), "[ERROR] Failed to copy wave format descriptor from the file"));
}

TEST_F(StreamingParse, EmptyDataFailsAndLeavesFormatAndCountersAlone) {
  EXPECT_FALSE(Parse(PlainWave(0)));
  EXPECT_TRUE(HasLine(Log(), "[ERROR] Invalid data bytes size!"));
  EXPECT_EQ(m_reader.Format().Format.nChannels, 0);
  EXPECT_EQ(m_reader.DataBytesTotal(), 0);
  EXPECT_TRUE(m_reader.IsOpen());
}

TEST_F(StreamingParse, LogsOpeningAndClosing) {
  const std::string path = Write("input.wav", PlainWave(16));
  ASSERT_TRUE(m_reader.Open(path));
  EXPECT_EQ(m_reader.FileName(), path);
  EXPECT_EQ(Log()[0].find("Opening " + path + ", Handle = "), 0u) << Log()[0];
  EXPECT_TRUE(Log()[0].ends_with(", Status = " + StatusOfSuccess())) << Log()[0];
  ASSERT_TRUE(m_reader.ParseWave(m_format, m_nDataSize));
  m_reader.Close();
  EXPECT_EQ(Log()[1], "Closing " + path);
  EXPECT_EQ(m_reader.FileName(), "");
  EXPECT_EQ(m_reader.DataBytesTotal(), 0);
  EXPECT_FALSE(m_reader.IsOpen());
  m_reader.Close();
  EXPECT_EQ(Log().Size(), 2u);
}

TEST_F(StreamingParse, LogsWhyAFileDoesNotOpen) {
  const std::string path = Path("missing.wav");
  EXPECT_FALSE(m_reader.Open(path));
  EXPECT_EQ(Log()[0].find("Opening " + path + ", Handle = 00000000, Status = "), 0u) << Log()[0];
  EXPECT_TRUE(Log()[0].ends_with(std::string(", Status = ") + std::strerror(ENOENT))) << Log()[0];
  EXPECT_EQ(m_reader.FileName(), "");
}

TEST_F(StreamingParse, OpensAFileUnderAUnicodeName) {
  const std::string name = "Aufnahme \xE2\x84\x96 \xE6\x97\xA5\xE6\x9C\xAC 000.wav";
  ASSERT_TRUE(m_reader.Open(Write(name, PlainWave(8))));
  EXPECT_TRUE(m_reader.ParseWave(m_format, m_nDataSize));
}

TEST_F(StreamingParse, AnyPlaceOfTheFileIsRead) {
  ASSERT_TRUE(Parse(Riff(FormatChunk() + Chunk("data", "AAAABBBBCCCC"))));
  char frame[4] = {};
  EXPECT_EQ(m_reader.ReadAt(m_reader.DataStart() + 8, frame, 4), 4U);
  EXPECT_EQ(std::string(frame, 4), "CCCC");
  EXPECT_EQ(m_reader.ReadAt(m_reader.DataStart() + 4, frame, 4), 4U);
  EXPECT_EQ(std::string(frame, 4), "BBBB");
  EXPECT_EQ(m_reader.ReadAt(m_reader.DataStart() + 12, frame, 4), 0U);
}

TEST_F(StreamingParse, ReadsAnRf64File) {
  ASSERT_TRUE(Parse(Rf64(0, 8, FormatChunk() + ChunkHeader("data", 0xFFFFFFFF) + "ABCDEFGH")));
  EXPECT_EQ(m_nDataSize, 8);
  EXPECT_EQ(m_reader.DataBytesTotal(), 8);
  EXPECT_EQ(m_reader.DataStart(), 48 + 24 + 8);
  EXPECT_EQ(NextBytes(8), "ABCDEFGH");
  const std::vector<std::string> lines(Log().begin() + 1, Log().end());
  const std::vector<std::string> expected = {
      "WAVE RF64 signature: Found", "fmt  chunk found, size 16",
      "cbSize (Format.cbSize): 22", "Valid bits per sample (Samples.wValidBitsPerSample): 16",
      "data chunk found, size -1",  "Total data bytes: 8",
  };
  EXPECT_EQ(lines, expected);
}

TEST_F(StreamingParse, AnRf64FileWithABad32BitSizeIsRead) {
  std::string bytes = Rf64(0, 8, FormatChunk() + ChunkHeader("data", 0xFFFFFFFF) + "ABCDEFGH");
  bytes.replace(4, 4, Le32(1234));
  ASSERT_TRUE(Parse(bytes));
  EXPECT_EQ(Log()[1], "Not a valid WAVE RF64 file");
  EXPECT_EQ(Log()[2], "WAVE RF64 signature: Found");
  EXPECT_EQ(m_reader.DataBytesTotal(), 8);
}

TEST_F(StreamingParse, TheSizeInDs64HoldsAndIsNotRounded) {
  ASSERT_TRUE(Parse(Rf64(0, 7, FormatChunk() + ChunkHeader("data", 4) + "ABCDEFGHIJKL")));
  EXPECT_EQ(m_nDataSize, 7);
  EXPECT_EQ(m_reader.DataBytesTotal(), 7);
}

TEST_F(StreamingParse, OtherChunksOfAnRf64FileAreLoggedAndSkipped) {
  ASSERT_TRUE(Parse(Rf64(0, 4, FormatChunk() + Chunk("auxi", "xyz") + ChunkHeader("data", 0xFFFFFFFF) + "ABCD")));
  EXPECT_TRUE(HasLine(Log(), "auxi chunk found, size 3"));
  EXPECT_TRUE(HasLine(Log(), "auxi chunk found, size 3, ignored"));
  EXPECT_EQ(NextBytes(4), "ABCD");
}

TEST_F(StreamingParse, ChunkNamesCannotMoveATerminalsCursor) {
  ASSERT_TRUE(Parse(Rf64(0, 4, FormatChunk() + Chunk("\x1B[2\xCB", "x") + ChunkHeader("data", 0xFFFFFFFF) + "ABCD")));
  EXPECT_TRUE(HasLine(Log(), "\\x1B[2\\xCB chunk found, size 1"));
}

TEST_F(StreamingParse, ASizeTableInDs64IsNotSkipped) {
  // Deliberate: the header behind ds64 is expected directly after the table length.
  const std::string ds64 = Le64(0) + Le64(4) + Le64(1) + Le32(1) + std::string(12, 't');
  const std::string bytes = ChunkHeader("RF64", 0xFFFFFFFF) + "WAVE" + Chunk("ds64", ds64) + FormatChunk() +
                            ChunkHeader("data", 0xFFFFFFFF) + "ABCD";
  EXPECT_FALSE(Parse(bytes));
  EXPECT_EQ(CountLines(Log(), "tttt chunk found"), 2);
}

TEST_F(StreamingParse, Rf64FailuresNameTheirStep) {
  EXPECT_FALSE(Parse(Rf64(0, 8, "").substr(0, 40)));
  EXPECT_TRUE(HasLine(Log(), "[ERROR] Failed to read ds64 chunk from the file"));
  EXPECT_FALSE(Parse(Rf64(0, 8, FormatChunk())));
  EXPECT_TRUE(HasLine(Log(), "[ERROR] Failed to read next chunk from the file"));
  EXPECT_FALSE(Parse(Rf64(0, 0, FormatChunk() + ChunkHeader("data", 0xFFFFFFFF))));
  EXPECT_TRUE(HasLine(Log(), "Total data bytes: 0"));
  EXPECT_TRUE(HasLine(Log(), "[ERROR] Invalid data bytes size!"));
  EXPECT_FALSE(Parse(Rf64(0, 4, ChunkHeader("data", 0xFFFFFFFF) + "ABCD")));
  EXPECT_TRUE(HasLine(Log(), "[ERROR] No format before the data chunk"));
}

}  // namespace carvello::test
