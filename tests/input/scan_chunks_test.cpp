#include <string>
#include <vector>

#include "input/input_fixture.h"
#include "input/wave_file_reader.h"

namespace carvello::test {

namespace {

class AnalysisWalk : public InputTest {
 protected:
  bool Scan(const std::string& bytes) { return m_reader.ScanChunks(Write("input.wav", bytes), m_result); }

  const CMyStringArray& Log() const { return m_reader.Log(); }

  CWaveFileReader m_reader;
  SScanResult m_result;
};

}  // namespace

TEST_F(AnalysisWalk, LogsEveryStepOfAPlainFile) {
  ASSERT_TRUE(Scan(PlainWave(8)));
  const std::string path = Path("input.wav");
  const std::vector<std::string> lines(Log().begin() + 1, Log().end());
  const std::vector<std::string> expected = {
      "Opened " + path,
      "------",
      "RIFF marker",
      "RIFF Size = 44 (signed), 44 (unsigned)",
      "WAVE marker",
      "fmt  marker",
      "fmt  cbSize (Format.cbSize): 22",
      "fmt  Valid bits per sample (Samples.wValidBitsPerSample): 16",
      "data marker",
      "data Size = 8",
      "Finished",
      "--------",
      "Closing " + path,
  };
  EXPECT_EQ(lines, expected);
  EXPECT_EQ(m_result.nDataBytes, 8);
  EXPECT_FALSE(m_result.bRF64);
  EXPECT_EQ(m_result.format.Format.wFormatTag, 0xFFFE);
  EXPECT_EQ(m_result.format.dwChannelMask, 3u);
  EXPECT_EQ(m_result.strError, "");
  EXPECT_FALSE(m_reader.IsOpen());
  EXPECT_EQ(m_reader.FileName(), "");
}

TEST_F(AnalysisWalk, LogsTheSizesOfAnRf64File) {
  ASSERT_TRUE(Scan(Rf64(80, 8, FormatChunk() + ChunkHeader("data", 0xFFFFFFFF) + "ABCDEFGH")));
  EXPECT_TRUE(m_result.bRF64);
  EXPECT_EQ(m_result.nDataBytes, 8);
  for (const char* line : {"RF64 Size = -1", "ds64 Size = 28", "ds64 RIFF size 80", "ds64 Data size 8",
                           "ds64 Frames    2", "ds64 Table len 0", "data Size = -1", "Finished"}) {
    EXPECT_TRUE(HasLine(Log(), line)) << line;
  }
}

TEST_F(AnalysisWalk, AnRf64FileWithA32BitDataSizeUsesThat) {
  ASSERT_TRUE(Scan(Rf64(0, 400, FormatChunk() + ChunkHeader("data", 8) + "ABCDEFGH")));
  EXPECT_EQ(m_result.nDataBytes, 8);
}

TEST_F(AnalysisWalk, RefusesMonoWithTheTwoChannelWarning) {
  EXPECT_FALSE(Scan(Riff(FormatChunk({.nChannels = 1}) + Chunk("data", "ABCD"))));
  EXPECT_TRUE(HasLine(
      Log(),
      "fmt  [WARNING] WAVEFORMATEX structure is valid for representing wave formats with only 1 or 2 channels!"));
  EXPECT_TRUE(HasLine(Log(), "Closing " + Path("input.wav")));
  EXPECT_FALSE(m_reader.IsOpen());
}

TEST_F(AnalysisWalk, RefusesFormatTag2) {
  EXPECT_FALSE(Scan(Riff(FormatChunk({.nTag = 2}) + Chunk("data", "ABCD"))));
  EXPECT_TRUE(HasLine(Log(), "fmt  [WARNING] Not a format that we can handle...Exiting"));
}

TEST_F(AnalysisWalk, RefusesFormatsThatNothingCanRead) {
  EXPECT_FALSE(Scan(Riff(Chunk("fmt ", FormatBody().substr(0, 15)) + Chunk("data", "ABCD"))));
  EXPECT_TRUE(HasLine(Log(), "fmt  [ERROR] Format size 15, at least 16 bytes are needed"));
  EXPECT_FALSE(Scan(Riff(FormatChunk({.nBits = 0}) + Chunk("data", "ABCD"))));
  EXPECT_TRUE(HasLine(
      Log(), "fmt  [ERROR] Format with 2 channels and 0 bits per sample, at least one byte per frame is needed"));
  EXPECT_FALSE(Scan(Riff(Chunk("fmt ", ExtensibleBody({.nChannels = 0}, 1)) + Chunk("data", "ABCD"))));
  EXPECT_EQ(m_result.strError,
            "chunk \"fmt \": Format with 0 channels and 16 bits per sample, at least one byte per frame is needed");
}

TEST_F(AnalysisWalk, KeepsAnExtensibleFormatWithoutAskingForItsChannels) {
  ASSERT_TRUE(Scan(Riff(Chunk("fmt ", ExtensibleBody({.nChannels = 1, .nBits = 32}, 3)) + Chunk("data", "ABCD"))));
  EXPECT_EQ(m_result.format.SubFormat, KSDATAFORMAT_SUBTYPE_IEEE_FLOAT);
  EXPECT_EQ(CountLines(Log(), "cbSize"), 0);
}

TEST_F(AnalysisWalk, AFormatChunkOf50BytesIsReadTo40AndSkippedBy10) {
  ASSERT_TRUE(Scan(Riff(Chunk("fmt ", FormatBody() + std::string(34, '\x7F')) + Chunk("data", "ABCD"))));
  EXPECT_EQ(m_result.nDataBytes, 4);
}

TEST_F(AnalysisWalk, AFileThatIsNoRiffFileIsRefused) {
  EXPECT_FALSE(Scan("FORM" + Le32(4) + "AIFF"));
  EXPECT_TRUE(HasLine(Log(), "FORM marker"));
  EXPECT_TRUE(HasLine(Log(), "[ERROR] File does not start with RIFF or RF64"));
  EXPECT_EQ(Log()[Log().Size() - 1], "Closing " + Path("input.wav"));
}

TEST_F(AnalysisWalk, AnEladRecordingReachesToTheFilesEnd) {
  ASSERT_TRUE(Scan(ChunkHeader("RIFF", 0) + "WAVE" + FormatChunk() + Chunk("elad", "ELAD") + ChunkHeader("data", 16) +
                   std::string(4001, 'x')));
  EXPECT_EQ(m_result.nDataBytes, 4001);
}

TEST_F(AnalysisWalk, AnOddChunkBeforeTheDataIsNotPadded) {
  ASSERT_TRUE(Scan(PlainWave(8, Chunk("junk", "odd"))));
  EXPECT_EQ(m_result.nDataBytes, 8);
  EXPECT_TRUE(HasLine(Log(), "junk [WARNING] Unexpected subchunk, size 3"));
  EXPECT_TRUE(HasLine(Log(), "junk [WARNING] File position 44, size 55"));
}

TEST_F(AnalysisWalk, NotesAreLoggedAndSkipped) {
  ASSERT_TRUE(Scan(PlainWave(8, Chunk("note", "data"))));
  EXPECT_TRUE(HasLine(Log(), "note Size = 4"));
  EXPECT_TRUE(HasLine(Log(), "note Ignored"));
  EXPECT_EQ(m_result.nDataBytes, 8);
}

TEST_F(AnalysisWalk, TheFiveInfoTextsAreKept) {
  const std::string list = "INFO" + InfoText("IART", "artist") + InfoText("ICMT", "comment") +
                           InfoText("ICOP", "rights") + InfoText("INAM", "name") + InfoText("IPRD", "product") +
                           InfoText("ISFT", "software");
  ASSERT_TRUE(Scan(PlainWave(8, {}, Chunk("LIST", list))));
  EXPECT_EQ(m_result.infoTexts.strIART, "artist");
  EXPECT_EQ(m_result.infoTexts.strICMT, "comment");
  EXPECT_EQ(m_result.infoTexts.strICOP, "rights");
  EXPECT_EQ(m_result.infoTexts.strINAM, "name");
  EXPECT_EQ(m_result.infoTexts.strIPRD, "product");
  EXPECT_TRUE(HasLine(Log(), "LIST Found INFO marker"));
  // The size is that of the whole list.
  const std::string size = std::to_string(list.size());
  EXPECT_TRUE(HasLine(Log(), "LIST INFO Found IART marker, size = " + size + ", text = 'artist'"));
  EXPECT_TRUE(HasLine(Log(), "LIST INFO Found ISFT marker, size = " + size + ", text = 'software'"));
}

TEST_F(AnalysisWalk, TextsOfAnotherListTypeAreNotKept) {
  ASSERT_TRUE(Scan(PlainWave(8, Chunk("LIST", "adtl" + InfoText("INAM", "name")))));
  EXPECT_EQ(m_result.infoTexts.strINAM, "");
  EXPECT_EQ(m_result.nDataBytes, 8);
}

TEST_F(AnalysisWalk, QuestionMarksBeforeABlankAreRemovedFromTexts) {
  const std::string list = "INFO" + InfoText("INAM", "?? Which? Or that?? ?");
  ASSERT_TRUE(Scan(PlainWave(8, Chunk("LIST", list))));
  EXPECT_EQ(m_result.infoTexts.strINAM, "Which? Or that?");
}

TEST_F(AnalysisWalk, AnInfoTextThatBeginsWithQuestionMarksAndABlankIsStoredWithoutThem) {
  ASSERT_TRUE(Scan(PlainWave(8, Chunk("LIST", "INFO" + InfoText("INAM", "?? Radio? Yes")))));
  EXPECT_EQ(m_result.infoTexts.strINAM, "Radio? Yes");
}

TEST_F(AnalysisWalk, AnEmptyListIsPassedOver) {
  ASSERT_TRUE(Scan(PlainWave(8, Chunk("LIST", "INFO"))));
  EXPECT_EQ(m_result.nDataBytes, 8);
}

TEST_F(AnalysisWalk, AnAuxiChunkBehindTheDataIsFound) {
  ASSERT_TRUE(Scan(PlainWave(8, {}, XmlChunk("SampleRate=\"1000\""))));
  EXPECT_EQ(m_result.strXml,
            "<?xml version=\"1.0\"?><SDR-XML-Root Description=\"Saved recording data\"><Definition "
            "SampleRate=\"1000\"/></SDR-XML-Root>");
}

TEST_F(AnalysisWalk, ALaterAuxiChunkReplacesAnEarlierOne) {
  ASSERT_TRUE(Scan(PlainWave(8, XmlChunk("A=\"1\"") + XmlChunk("B=\"2\"") + Chunk("auxi", ""))));
  EXPECT_EQ(m_result.strXml.find("A="), std::string::npos);
  EXPECT_NE(m_result.strXml.find("B="), std::string::npos);
}

TEST_F(AnalysisWalk, XmlWithoutATerminatorAndWithAnOddByteIsRead) {
  ASSERT_TRUE(Scan(PlainWave(8, Chunk("auxi", Utf16("<?xml?><x/>") + "!"))));
  EXPECT_EQ(m_result.strXml, "<?xml?><x/>");
}

TEST_F(AnalysisWalk, CharactersOutsideAsciiArriveAsUtf8) {
  ASSERT_TRUE(Scan(PlainWave(8, Chunk("auxi", Utf16("<?xml") + "\xB5\x03" + Le16(0xD83D) + Le16(0xDCE1) + Le16(0)))));
  EXPECT_EQ(m_result.strXml, "<?xml\xCE\xB5\xF0\x9F\x93\xA1");
}

TEST_F(AnalysisWalk, TheWalkEnds8BytesEarly) {
  // The RIFF size counts from behind itself but is compared with the position: an empty chunk at the end is not seen.
  ASSERT_TRUE(Scan(PlainWave(8, {}, ChunkHeader("tail", 0))));
  EXPECT_FALSE(HasLine(Log(), "tail marker"));
  EXPECT_TRUE(HasLine(Log(), "Finished"));
}

TEST_F(AnalysisWalk, AFileThatEndsBeforeItsRiffSizeIsStillARecording) {
  std::string bytes = PlainWave(8);
  bytes.replace(4, 4, Le32(1'000'000));
  ASSERT_TRUE(Scan(bytes));
  EXPECT_TRUE(HasLine(Log(), "[ERROR] Failed to read next marker from the file"));
  EXPECT_FALSE(HasLine(Log(), "Finished"));
  EXPECT_EQ(m_result.nDataBytes, 8);
}

TEST_F(AnalysisWalk, AFileWithoutDataIsNoRecording) {
  EXPECT_FALSE(Scan(Riff(FormatChunk())));
  EXPECT_EQ(m_result.format.Format.nSamplesPerSec, 1000u);
  EXPECT_EQ(m_result.strError, "no data chunk found");
}

TEST_F(AnalysisWalk, AWalkThatEndsBeforeTheSamplesSaysWhatEndedIt) {
  EXPECT_FALSE(Scan(ChunkHeader("RIFF", 36) + "WAVE" + FormatChunk() + Chunk("junk", "ABCD")));
  EXPECT_EQ(m_result.strError, "the RIFF size, 36, ends the file before a data chunk");
  EXPECT_FALSE(Scan(ChunkHeader("RIFF", 0) + "WAVE" + FormatChunk() + ChunkHeader("junk", 100) + "x"));
  EXPECT_EQ(m_result.strError, "the file ends in chunk \"junk\", before a data chunk");
}

TEST_F(AnalysisWalk, FailuresNameTheChunkAndTheStep) {
  const std::string head = ChunkHeader("RIFF", 0xFFFFFFFF) + "WAVE";
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"RIFFab", "RIFF [ERROR] Failed to read file size from the file"},
      {"RF64", "RF64 [ERROR] Failed to read file size from the file"},
      {head + "ds64", "ds64 [ERROR] Failed to read ds64 size from the file"},
      {head + ChunkHeader("ds64", 28) + "short", "ds64 [ERROR] Failed to read ds64 data from the file"},
      {head + "fmt \x10", "fmt  [ERROR] Failed to read ds64 size from the file"},
      {head + ChunkHeader("fmt ", 16) + "short", "fmt  [ERROR] Failed to read wave format descriptor from the file"},
      {head + "data", "data [ERROR] Failed to read data size from the file"},
      {head + "LIST", "LIST [ERROR] Failed to read LIST size from the file"},
      {head + ChunkHeader("LIST", 20) + "IN", "LIST [ERROR] Failed to read LIST marker from the file"},
      {head + ChunkHeader("LIST", 20) + "INFOIN", "LIST INFO [ERROR] Failed to read subchunk marker from the file"},
      {head + ChunkHeader("LIST", 20) + "INFOINAM", "LIST INFO [ERROR] Failed to read subchunk size from the file"},
      {head + ChunkHeader("LIST", 20) + "INFO" + ChunkHeader("INAM", 8) + "short",
       "LIST INFO [ERROR] Failed to read subchunk data from the file"},
      {head + "meta", "meta [ERROR] Failed to read subchunk size from the file"},
      {head + ChunkHeader("meta", 8) + "short", "meta [ERROR] Failed to read meta buffer from the file"},
      {head + "elad", "elad [ERROR] Failed to read subchunk size from the file"},
      {head + ChunkHeader("elad", 8) + "short", "elad [ERROR] Failed to read ELAD buffer from the file"},
      {head + "note", "note [ERROR] Failed to read subchunk size from the file"},
      {head + "auxi", "auxi [ERROR] Failed to read Auxi size from the file"},
      {head + ChunkHeader("auxi", 8) + "short", "auxi [ERROR] Failed to read Auxi buffer from the file"},
      {head + "rcvr", "rcvr [ERROR] Failed to read rcvr size from the file"},
      {head + ChunkHeader("rcvr", 8) + "short", "rcvr [ERROR] Failed to read rcvr buffer from the file"},
      {head + "what", "what [ERROR] Failed to read subchunk size from the file"},
  };
  for (const auto& [bytes, line] : cases) {
    CWaveFileReader reader;
    SScanResult result;
    EXPECT_FALSE(reader.ScanChunks(Write("input.wav", bytes), result)) << line;
    EXPECT_TRUE(HasLine(reader.Log(), line)) << line << "\nin\n" << Joined(reader.Log());
    EXPECT_EQ(reader.Log()[reader.Log().Size() - 1], "Closing " + Path("input.wav"));
    EXPECT_NE(result.strError, "") << line;
  }
}

TEST_F(AnalysisWalk, TheResultIsResetFirst) {
  ASSERT_TRUE(Scan(PlainWave(8, XmlChunk("A=\"1\"") + Chunk("LIST", "INFO" + InfoText("INAM", "name")))));
  EXPECT_FALSE(m_reader.ScanChunks(Path("missing.wav"), m_result));
  EXPECT_EQ(m_result.strXml, "");
  EXPECT_EQ(m_result.infoTexts.strINAM, "");
  EXPECT_EQ(m_result.nDataBytes, 0);
  EXPECT_EQ(m_result.format.Format.nChannels, 0);
}

TEST_F(AnalysisWalk, InfoTextsAloneCanBeAskedFor) {
  const std::string list = "INFO" + InfoText("ICMT", "comment");
  SInfoTexts texts;
  texts.strINAM = "of another file";
  EXPECT_TRUE(ReadInfoTexts(Write("with.wav", PlainWave(8, {}, Chunk("LIST", list))), texts));
  EXPECT_EQ(texts.strICMT, "comment");
  EXPECT_EQ(texts.strINAM, "");
  EXPECT_FALSE(ReadInfoTexts(Write("without.wav", PlainWave(8)), texts));
  EXPECT_TRUE(texts.IsEmpty());
}

}  // namespace carvello::test
