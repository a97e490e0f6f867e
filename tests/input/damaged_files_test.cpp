// Files cut short, sizes that cannot be, and files made to hold the reader up: the walk ends, memory and log stay
// small, and samples that are fine stay readable.
#include <string>

#include "input/input_fixture.h"
#include "input/wave_file_reader.h"

namespace carvello::test {

namespace {

class DamagedFiles : public InputTest {
 protected:
  bool Scan(const std::string& bytes) { return m_reader.ScanChunks(Write("input.wav", bytes), m_result); }

  bool Parse(const std::string& bytes) {
    EXPECT_TRUE(m_reader.Open(Write("input.wav", bytes)));
    return m_reader.ParseWave(m_format, m_nDataSize);
  }

  const CMyStringArray& Log() const { return m_reader.Log(); }

  CWaveFileReader m_reader;
  SScanResult m_result;
  WAVEFORMATEXTENSIBLE m_format;
  std::int64_t m_nDataSize = -1;
};

// A plain file that goes on with these bytes behind 8 bytes of samples.
std::string SamplesThen(const std::string& tail) {
  return PlainWave(8) + tail;
}

std::string WithOpenRiffSize(std::string bytes) {
  return bytes.replace(4, 4, Le32(0));
}

}  // namespace

TEST_F(DamagedFiles, ADataChunkCutShortIsReadToItsTrueEnd) {
  const std::string bytes = Riff(FormatChunk() + ChunkHeader("data", 1'000'000) + std::string(4002, 'x'));
  ASSERT_TRUE(Parse(bytes));
  EXPECT_EQ(m_nDataSize, 4002);
  EXPECT_EQ(m_reader.DataBytesTotal(), 4000);
  const std::string warning =
      "[WARNING] Data size 1000000 exceeds the 4002 bytes that the file holds, the samples end there; the "
      "last 2 are no whole frame";
  EXPECT_TRUE(HasLine(Log(), warning)) << Joined(Log());
  ASSERT_TRUE(Scan(bytes));
  EXPECT_EQ(m_result.nDataBytes, 4002);
  EXPECT_TRUE(HasLine(Log(), "data " + warning));
}

TEST_F(DamagedFiles, ADataSizeThatWasNeverMadeFinalIsReadToTheFilesEnd) {
  const std::string bytes = ChunkHeader("RIFF", 0xFFFFFFFF) + "WAVE" + FormatChunk() + ChunkHeader("data", 0xFFFFFFFF) +
                            std::string(400, 'x');
  ASSERT_TRUE(Parse(bytes));
  EXPECT_EQ(m_reader.DataBytesTotal(), 400);
  ASSERT_TRUE(Scan(bytes));
  EXPECT_EQ(m_result.nDataBytes, 400);
}

TEST_F(DamagedFiles, AnRf64FileCutShortIsReadToItsTrueEnd) {
  const std::string bytes =
      Rf64(5'000'000'000, 4'999'999'000, FormatChunk() + ChunkHeader("data", 0xFFFFFFFF) + std::string(400, 'x'));
  ASSERT_TRUE(Parse(bytes));
  EXPECT_EQ(m_nDataSize, 400);
  EXPECT_TRUE(HasLine(Log(), "Total data bytes: 400"));
  ASSERT_TRUE(Scan(bytes));
  EXPECT_EQ(m_result.nDataBytes, 400);
}

TEST_F(DamagedFiles, ANegativeSizeInDs64IsReadToTheFilesEnd) {
  const std::string bytes = Rf64(0x8000000000000000, 0xFFFFFFFFFFFFFFFF,
                                 FormatChunk() + ChunkHeader("data", 0xFFFFFFFF) + std::string(400, 'x'));
  ASSERT_TRUE(Parse(bytes));
  EXPECT_EQ(m_reader.DataBytesTotal(), 400);
  ASSERT_TRUE(Scan(bytes));
  EXPECT_EQ(m_result.nDataBytes, 400);
}

TEST_F(DamagedFiles, AFileFullOfEmptyChunksEndsTheWalk) {
  std::string chunks;
  for (int i = 0; i < 70'000; ++i) chunks += ChunkHeader("none", 0);
  ASSERT_TRUE(Scan(PlainWave(8, {}, chunks)));
  EXPECT_EQ(m_result.nDataBytes, 8);
  EXPECT_TRUE(HasLine(Log(), "[ERROR] More than 65536 chunks, the rest of the file is ignored"));
  EXPECT_EQ(CountLines(Log(), "none marker"), 65'536 - 4);
  EXPECT_FALSE(Scan(PlainWave(8, chunks)));
  EXPECT_FALSE(Parse(PlainWave(8, chunks)));
  EXPECT_TRUE(HasLine(Log(), "[ERROR] More than 65536 chunks and none of them holds samples"));
}

TEST_F(DamagedFiles, AnRf64FileFullOfEmptyChunksEndsTheParse) {
  std::string chunks = FormatChunk();
  for (int i = 0; i < 70'000; ++i) chunks += ChunkHeader("none", 0);
  EXPECT_FALSE(Parse(Rf64(0, 8, chunks)));
  EXPECT_TRUE(HasLine(Log(), "[ERROR] More than 65536 chunks and none of them holds samples"));
}

TEST_F(DamagedFiles, ListsFullOfEmptySubchunksEndTheirReading) {
  std::string list = "INFO";
  for (int i = 0; i < 40'000; ++i) list += ChunkHeader("INAM", 0);
  ASSERT_TRUE(Scan(PlainWave(8, Chunk("LIST", list) + Chunk("LIST", list))));
  EXPECT_TRUE(HasLine(Log(), "LIST INFO [ERROR] More than 65536 subchunks, the rest is ignored"));
  EXPECT_EQ(CountLines(Log(), "Found INAM marker"), 65'536);
  EXPECT_EQ(m_result.nDataBytes, 8);
}

TEST_F(DamagedFiles, AnOversizedSubchunkIsSkippedWithItsList) {
  const std::string list =
      "INFO" + InfoText("INAM", "name") + Chunk("ICMT", std::string(65'537, 'c')) + InfoText("IART", "artist");
  ASSERT_TRUE(Scan(PlainWave(8, Chunk("LIST", list))));
  EXPECT_TRUE(HasLine(Log(),
                      "LIST INFO [ERROR] Subchunk ICMT of 65537 bytes, at most 65536 are read, the rest of the list is "
                      "ignored"));
  EXPECT_EQ(m_result.infoTexts.strINAM, "name");
  EXPECT_EQ(m_result.infoTexts.strICMT, "");
  EXPECT_EQ(m_result.nDataBytes, 8);
}

TEST_F(DamagedFiles, TheLargestSubchunkIsRead) {
  ASSERT_TRUE(Scan(PlainWave(8, Chunk("LIST", "INFO" + Chunk("ICMT", std::string(65'536, 'c'))))));
  EXPECT_EQ(m_result.infoTexts.strICMT, std::string(65'536, 'c'));
}

TEST_F(DamagedFiles, ASubchunkSizeOf0xFFFFFFFFIsRefused) {
  ASSERT_TRUE(Scan(
      SamplesThen(ChunkHeader("LIST", 0xFFFFFFFF) + "INFO" + ChunkHeader("INAM", 0xFFFFFFFF)).replace(4, 4, Le32(0))));
  EXPECT_EQ(CountLines(Log(), "[ERROR] Subchunk INAM of 4294967295 bytes"), 1);
  EXPECT_EQ(m_result.nDataBytes, 8);
}

TEST_F(DamagedFiles, AMetadataChunkAbove16MiBIsSkipped) {
  for (const char* id : {"auxi", "rcvr", "meta", "elad"}) {
    const std::string huge = Chunk(id, std::string((16u << 20) + 1, 'x'));
    ASSERT_TRUE(Scan(PlainWave(8, huge))) << id;
    EXPECT_EQ(CountLines(Log(), std::string(id) + " [ERROR] Size 16777217, at most 16777216 bytes"), 1) << id;
    EXPECT_EQ(m_result.nDataBytes, 8) << id;
  }
}

TEST_F(DamagedFiles, ManyLargeMetadataChunksAreReadUpToALimitInAll) {
  std::string chunks;
  for (int i = 0; i < 5; ++i) chunks += Chunk("auxi", std::string(16u << 20, static_cast<char>('0' + i)));
  ASSERT_TRUE(Scan(PlainWave(8, chunks)));
  EXPECT_EQ(CountLines(Log(), "auxi [ERROR] Size 16777216"), 1);
  EXPECT_LT(m_result.statistics.nBytes, (64 << 20) + 1000);
}

TEST_F(DamagedFiles, AMetadataChunkThatReachesPastTheEndLeavesTheSamplesReadable) {
  for (const char* id : {"auxi", "rcvr", "meta", "elad"}) {
    ASSERT_TRUE(Scan(WithOpenRiffSize(SamplesThen(ChunkHeader(id, 0xFFFFFFF0) + "<?xml")))) << id;
    EXPECT_EQ(CountLines(Log(), std::string(id) + " [ERROR] Failed to read "), 1) << id;
    EXPECT_EQ(m_result.nDataBytes, 8) << id;
    EXPECT_EQ(m_result.strError, "") << id;
  }
}

TEST_F(DamagedFiles, DamageBehindTheSamplesKeepsWhatWasFoundBefore) {
  const std::string xml = XmlChunk("A=\"1\"");
  for (const std::string& tail :
       {std::string("ab"), std::string("junk\x01"), ChunkHeader("LIST", 20) + "INFOIN", ChunkHeader("LIST", 20) + "I",
        std::string("fmt \x10"), FormatChunk({.nTag = 2}), FormatChunk({.nBits = 0}), std::string("auxi"),
        std::string("data"), ChunkHeader("ds64", 28) + "short"}) {
    ASSERT_TRUE(Scan(WithOpenRiffSize(PlainWave(8, xml) + tail))) << tail;
    EXPECT_EQ(m_result.nDataBytes, 8) << tail;
    EXPECT_EQ(m_result.format.Format.wBitsPerSample, 16) << tail;
    EXPECT_NE(m_result.strXml, "") << tail;
    EXPECT_EQ(m_result.strError, "") << tail;
  }
}

TEST_F(DamagedFiles, ASecondDataChunkIsIgnored) {
  const std::string bytes = PlainWave(8, {}, Chunk("data", std::string(400, 'x')));
  ASSERT_TRUE(Scan(bytes));
  EXPECT_EQ(m_result.nDataBytes, 8);
  EXPECT_TRUE(HasLine(Log(), "data [WARNING] Not the first data chunk, ignored"));
  ASSERT_TRUE(Parse(bytes));
  EXPECT_EQ(m_reader.DataBytesTotal(), 8);
}

TEST_F(DamagedFiles, AFormatBehindTheSamplesIsIgnored) {
  const std::string bytes = PlainWave(8, {}, FormatChunk({.nTag = 3, .nBits = 32}));
  ASSERT_TRUE(Scan(bytes));
  EXPECT_EQ(m_result.format.Format.wBitsPerSample, 16);
  EXPECT_TRUE(HasLine(Log(), "fmt  [WARNING] Format behind the samples, ignored"));
}

TEST_F(DamagedFiles, AnUnknownChunkPastTheEndEndsTheWalk) {
  ASSERT_TRUE(Scan(WithOpenRiffSize(SamplesThen(ChunkHeader("junk", 0xFFFFFFFF)))));
  EXPECT_TRUE(HasLine(Log(), "[ERROR] Failed to read next marker from the file"));
  EXPECT_EQ(m_result.nDataBytes, 8);
}

TEST_F(DamagedFiles, BytesThatWouldMoveATerminalsCursorAreNotLogged) {
  const std::string bytes =
      PlainWave(8, Chunk(std::string("\x1B[2\0", 4), "") + Chunk("LIST", "INFO" + InfoText("INAM", "a\x1B[31m\n")));
  ASSERT_TRUE(Scan(bytes));
  for (const std::string& line : Log()) EXPECT_EQ(line.find_first_of("\x1B\n"), std::string::npos) << line;
  EXPECT_TRUE(HasLine(Log(), "\\x1B[2\\x00 marker"));
  EXPECT_EQ(m_result.infoTexts.strINAM, "a\x1B[31m\n");
}

TEST_F(DamagedFiles, EveryCutOfAGoodFileEndsWithAnAnswer) {
  const std::string list = "INFO" + InfoText("INAM", "name");
  const std::string bytes = PlainWave(8, XmlChunk("A=\"1\""), Chunk("LIST", list));
  const std::size_t samples = bytes.find("data") + 8;
  for (std::size_t length = 0; length < bytes.size(); ++length) {
    const std::string cut = bytes.substr(0, length);
    // The walk says yes as soon as it has seen the data chunk's header, the parse as soon as there is a sample.
    EXPECT_EQ(Scan(cut), length >= samples) << length;
    EXPECT_EQ(Parse(cut), length > samples) << length;
    m_reader.Close();
  }
}

}  // namespace carvello::test
