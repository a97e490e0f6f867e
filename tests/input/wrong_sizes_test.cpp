// Files whose recorder could not end them, or counted past 4 GiB: all samples that are there are read, chunks behind
// them are not, and a warning says what was wrong. Sizes that can be are believed.
#include <string>
#include <vector>

#include "input/input_fixture.h"
#include "input/lookup_cache.h"
#include "input/recording_set.h"
#include "input/wave_file_reader.h"
#include "support/sparse_file.h"

namespace carvello::test {

namespace {

constexpr std::uint64_t kWrap = std::uint64_t{1} << 32;

class WrongSizes : public InputTest {
 protected:
  // The parse and the walk find so many bytes of samples, and the walk says this among its warnings ("": none at all).
  void ExpectSamples(const std::string& path, std::int64_t bytes, const std::string& warning) {
    CWaveFileReader parser;
    WAVEFORMATEXTENSIBLE format;
    std::int64_t dataSize = 0;
    EXPECT_TRUE(parser.Open(path));
    EXPECT_EQ(parser.ParseWave(format, dataSize), bytes > 0) << Joined(parser.Log());
    EXPECT_EQ(dataSize, bytes);
    CWaveFileReader reader;
    m_result = {};
    EXPECT_TRUE(reader.ScanChunks(path, m_result)) << Joined(reader.Log());
    EXPECT_EQ(m_result.nSampleBytes, bytes) << Joined(reader.Log());
    EXPECT_EQ(m_result.nDataBytes, bytes);
    if (bytes > 0) {
      EXPECT_EQ(m_result.nDataStart, parser.DataStart());
    }
    std::string said;
    for (const std::string& line : m_result.warnings) said += line + "\n";
    if (warning.empty()) {
      EXPECT_EQ(said, "");
    } else {
      EXPECT_NE(said.find(warning), std::string::npos) << said;
    }
  }

  std::string WriteHead(std::uint64_t riffSize, std::uint64_t dataSize, const std::string& behind) {
    return Write("input.wav",
                 ChunkHeader("RIFF", riffSize) + "WAVE" + FormatChunk() + ChunkHeader("data", dataSize) + behind);
  }

  SScanResult m_result;
};

const std::string kSamples(4000, 'x');

std::string List() {
  return Chunk("LIST", "INFO" + InfoText("INAM", "name"));
}

}  // namespace

TEST_F(WrongSizes, ThoseThatWereNeverMadeFinalReachToTheFilesEnd) {
  struct SCase {
    std::uint64_t nRiff, nData;
    const char* pszWarning;
  };
  const SCase cases[] = {
      {0, 0, "Data size 0 was never made final, the samples are read to the file's end, 4000 bytes"},
      {36, 0, "Data size 0 was never made final, the samples are read to the file's end, 4000 bytes"},
      {0xFFFFFFFF, 0xFFFFFFFF, "Data size 4294967295 (0xFFFFFFFF) was never made final"},
      {0x7FFFF024, 0x7FFFF000, "Data size 2147479552 (0x7FFFF000) was never made final"},
      {0x2D2D2D2D, 0x2D2D2D2D, "Data size 757935405 (0x2D2D2D2D) was never made final"},
      {5036, 5000, "Data size 5000 exceeds the 4000 bytes that the file holds, the samples end there"},
      {4000, 4036, "Data size 4036 exceeds the 4000 bytes"},  // the two sizes interchanged, as one program does
  };
  for (const SCase& one : cases) {
    SCOPED_TRACE(one.pszWarning);
    ExpectSamples(WriteHead(one.nRiff, one.nData, kSamples), 4000, one.pszWarning);
    EXPECT_TRUE(m_result.bCutShort);
    EXPECT_FALSE(m_result.sizeFaults.empty());
  }
}

TEST_F(WrongSizes, TheMarkOfAPipeIsOneAlsoInALargerFile) {
  for (const std::uint64_t mark : {0x7FFFF000U, 0x2D2D2D2DU}) {
    const std::string path = WriteHead(mark, mark, {});
    ExtendFile(path, 44 + 3'000'000'000);
    ExpectSamples(path, 3'000'000'000, "was never made final");
    // Unless the file is as long as that.
    ExtendFile(WriteHead(mark + 36, mark, {}), 44 + mark);
    ExpectSamples(path, static_cast<std::int64_t>(mark), "");
  }
}

TEST_F(WrongSizes, ASizeOfTheFileThatEndsItBeforeTheSamplesIsNotBelieved) {
  ExpectSamples(WriteHead(36, 4000, kSamples), 4000, "the RIFF size, 36, ends the file before a data chunk");
  ExpectSamples(WriteHead(8, 4000, kSamples), 4000, "the RIFF size, 8, ends the file before a data chunk");
}

TEST_F(WrongSizes, ChunksAtTheFilesEndAreNoSamples) {
  const std::string tail = List() + Chunk("id3 ", "abcd");
  for (const std::uint64_t size : {0x0U, 0xFFFFFFFFU, 0x7FFFF000U, 0x2D2D2D2DU, 0x10000000U}) {
    SCOPED_TRACE(size);
    ExpectSamples(
        WriteHead(0, size, kSamples + tail), 4000,
        size == 0x10000000 ? "exceeds the 4000 bytes" : "are read to the chunks at the file's end, 4000 bytes");
    EXPECT_EQ(m_result.infoTexts.strINAM, "name");
  }
  // What only looks like one at its beginning is samples.
  ExpectSamples(WriteHead(0, 0, kSamples + "LIST" + Le32(1000) + "INFO"), 4012, "never made final");
  ExpectSamples(WriteHead(0, 0, kSamples + Chunk("what", "abcd")), 4012, "never made final");
}

TEST_F(WrongSizes, ADataSizeOf0InFrontOfAChunkIsAnEmptyRecording) {
  ExpectSamples(WriteHead(0, 0, List()), 0, "");
  ExpectSamples(WriteHead(0, 0, {}), 0, "");
  EXPECT_FALSE(LookupMetadata(Path("input.wav")).bRecording);
}

TEST_F(WrongSizes, ASizeThatCanBeIsBelieved) {
  ExpectSamples(WriteHead(1036, 1000, kSamples), 1000, "");
  ExpectSamples(WriteHead(0, 3996, kSamples), 3996, "damage behind the samples");
}

TEST_F(WrongSizes, ASizeCountedPast4GiBIsCompleted) {
  struct SCase {
    std::uint64_t nHeld, nClaimed, nRead;
  };
  const SCase cases[] = {
      {kWrap, 0, kWrap},
      {kWrap + 4000, 4000, kWrap + 4000},
      {kWrap + 4036, 4000, kWrap + 4000},  // a few bytes behind the samples
      {kWrap + 4000, 4036, kWrap + 4000},  // the recorder counted its header, too
      {3 * kWrap + 400, 400, 3 * kWrap + 400},
      {kWrap + 1'000'000, 4000, 4000},  // nothing that fits
  };
  for (const SCase& one : cases) {
    SCOPED_TRACE(one.nHeld);
    const std::string path = WriteHead((one.nClaimed + 36) % kWrap, one.nClaimed, {});
    ExtendFile(path, 44 + one.nHeld);
    const bool wrapped = one.nClaimed != 0 && one.nRead > kWrap;
    ExpectSamples(path, static_cast<std::int64_t>(one.nRead),
                  wrapped ? "was counted past 4 GiB from 0 again, " + std::to_string(one.nRead) + " bytes are read"
                  : one.nClaimed == 0 ? "never made final"
                                      : "");
  }
}

TEST_F(WrongSizes, ChunksBehindSamplesThatWereCountedPast4GiBAreFound) {
  const std::string path = WriteHead(4036 + List().size(), 4000, {});
  ExtendFile(path, 44 + kWrap + 4000);
  Append("input.wav", List());
  ExpectSamples(path, static_cast<std::int64_t>(kWrap + 4000), "Data size 4000 was counted past 4 GiB");
  EXPECT_EQ(m_result.infoTexts.strINAM, "name");
  EXPECT_LE(m_result.statistics.nBytes, 1000);
}

TEST_F(WrongSizes, AFrameThatWasNotFinishedIsToldOf) {
  ExpectSamples(WriteHead(0, 0, kSamples + "ab"), 4002, "4002 bytes; the last 2 are no whole frame");
}

TEST_F(WrongSizes, AnRf64FileWhoseSizesWereNeverFilledInIsReadToItsEnd) {
  const std::string data = ChunkHeader("data", 0xFFFFFFFF) + kSamples;
  ExpectSamples(Write("zeros.wav", Rf64(0, 0, FormatChunk() + data)), 4000, "Data size 0 was never made final");
  // 36 bytes too many, as of a header that grew over the first samples.
  ExpectSamples(Write("more.wav", Rf64(4072 + 36, 4036, FormatChunk() + data)), 4000, "Data size 4036 exceeds");
  ExpectSamples(Write("tail.wav", Rf64(0, 0, FormatChunk() + data + List())), 4000, "the chunks at the file's end");
  ExpectSamples(Write("dashes.wav", Rf64(0, 4000, FormatChunk() + ChunkHeader("data", 0x2D2D2D2D) + kSamples)), 4000,
                "");
}

TEST_F(WrongSizes, AnRf64FileWithoutDs64IsRead) {
  const std::string head = ChunkHeader("RF64", 0xFFFFFFFF) + "WAVE";
  const std::string samples = ChunkHeader("data", 0xFFFFFFFF) + kSamples;
  const char* const warning = "Its ds64 chunk, which tells large sizes, is missing";
  ExpectSamples(Write("none.wav", head + FormatChunk() + samples), 4000, warning);
  ExpectSamples(Write("junk.wav", head + Chunk("JUNK", std::string(28, '\0')) + FormatChunk() + samples), 4000,
                warning);
  ExpectSamples(Write("wide.wav", head + Chunk("fmt ", ExtensibleBody({}, 1)) + samples), 4000, warning);
  ExpectSamples(Write("size.wav", head + FormatChunk() + ChunkHeader("data", 3000) + kSamples), 3000, warning);
}

TEST_F(WrongSizes, RoomThatWasKeptForLargeSizesIsPassedOver) {
  const std::string room = Chunk("JUNK", std::string(28, '\0'));
  ExpectSamples(Write("sound.wav", Riff(room + FormatChunk() + ChunkHeader("data", 4000) + kSamples)), 4000, "");
  ExpectSamples(
      Write("open.wav", ChunkHeader("RIFF", 0) + "WAVE" + room + FormatChunk() + ChunkHeader("data", 0) + kSamples),
      4000, "never made final");
}

TEST_F(WrongSizes, ARateOf0IsAskedForAndTaken) {
  const std::string auxi =
      Chunk("auxi", Le16(2026) + Le16(11) + Le16(0) + Le16(16) + Le16(10) + Le16(0) + Le16(0) + Le16(0) +
                        std::string(16, '\0') + Le32(7'100'000) + std::string(128, '\0'));
  const std::string path = Write("rate.wav", ChunkHeader("RIFF", 0) + "WAVE" + FormatChunk({.nRate = 0}) + auxi +
                                                 ChunkHeader("data", 0) + kSamples);
  CRecordingSet set;
  CMyStringArray log;
  EXPECT_FALSE(AnalyseRecordingSet(path, set, log));
  EXPECT_EQ(set.missing, std::vector{EFact::SampleRate});
  SGivenFacts given;
  given.nSampleRate = 500;
  ASSERT_TRUE(AnalyseRecordingSet(path, set, log, given)) << Joined(log);
  EXPECT_EQ(set.nSampleRate, 500u);
  EXPECT_EQ(set.nRadioCenterFreq, 7'100'000);
  EXPECT_EQ(set.TotalBytes(), 4000);
  EXPECT_EQ(set.tEnd - set.tStart, 2);
}

TEST_F(WrongSizes, AFormatOfZerosIsAskedForAndTheNameCounts) {
  const std::string path = Write("AirSpy_20131128_101500Z_100000kHz_IQ.wav",
                                 ChunkHeader("RIFF", 0) + "WAVE" + Chunk("fmt ", std::string(16, '\0')) +
                                     ChunkHeader("data", 0) + kSamples + "ab");
  CRecordingSet set;
  CMyStringArray log;
  EXPECT_FALSE(AnalyseRecordingSet(path, set, log));
  EXPECT_EQ(set.missing, (std::vector{EFact::SampleType, EFact::SampleRate}));
  SGivenFacts given;
  given.nSampleRate = 500;
  given.kind = ParseSampleKind("ci16");
  ASSERT_TRUE(AnalyseRecordingSet(path, set, log, given)) << Joined(log);
  EXPECT_EQ(set.nRadioCenterFreq, 100'000'000);
  EXPECT_EQ(set.TotalBytes(), 4000);
  EXPECT_EQ(set.files.front().layout, SSampleLayout(44, 1000));
  EXPECT_EQ(CountLines(log, "Format of zeros, it was never filled in"), 1);
  EXPECT_EQ(CountLines(log, "Data size 0 was never made final"), 1);
}

TEST_F(WrongSizes, TheLastMemberOfASetMayBeBroken) {
  const auto auxi = [](unsigned second) {
    return Chunk("auxi", Le16(2026) + Le16(11) + Le16(0) + Le16(16) + Le16(10) + Le16(0) + Le16(second) + Le16(0) +
                             std::string(16, '\0') + Le32(7'100'000) + std::string(128, '\0'));
  };
  const std::string samples(40'000, 'x');
  Write("rec 1.wav", Riff(FormatChunk() + auxi(0) + Chunk("data", samples)));
  const std::string last = Write("rec 2.wav", ChunkHeader("RIFF", 0) + "WAVE" + FormatChunk() + auxi(10) +
                                                  ChunkHeader("data", 0) + samples.substr(0, 20'000));
  CRecordingSet set;
  CMyStringArray log;
  ASSERT_TRUE(AnalyseRecordingSet(Path("rec 1.wav"), set, log)) << Joined(log);
  ASSERT_EQ(set.files.size(), 2u);
  EXPECT_EQ(set.TotalBytes(), 60'000);
  EXPECT_EQ(set.tEnd - set.tStart, 15);
  EXPECT_EQ(CountLines(log, last + ": chunk \"data\": Data size 0 was never made final"), 1) << Joined(log);
}

}  // namespace carvello::test
