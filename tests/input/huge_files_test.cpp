// Files above 4 GiB, made as holes: they take no room and no time.
#include <string>

#include "input/input_fixture.h"
#include "input/sample_file.h"

namespace carvello::test {

namespace {

constexpr std::uint64_t kGigabyte = 1'000'000'000;

using HugeFiles = InputTest;

std::string Rf64Head(std::uint64_t fileSize, std::uint64_t dataSize) {
  return Rf64(fileSize - 8, dataSize, FormatChunk({.nRate = 2'000'000}) + ChunkHeader("data", 0xFFFFFFFF));
}

}  // namespace

TEST_F(HugeFiles, A60GigabyteRf64FileIsWalkedInAFewSmallReads) {
  const std::uint64_t dataSize = 60 * kGigabyte;
  const std::string tail = XmlChunk("SampleRate=\"2000000\"");
  const std::uint64_t headSize = Rf64Head(0, 0).size();
  const std::string path = Write("huge.wav", Rf64Head(headSize + dataSize + tail.size(), dataSize));
  Extend("huge.wav", headSize + dataSize);
  Append("huge.wav", tail);

  CWaveFileReader reader;
  SScanResult result;
  ASSERT_TRUE(reader.ScanChunks(path, result)) << Joined(reader.Log());
  EXPECT_TRUE(result.bRF64);
  EXPECT_EQ(result.nDataBytes, 60'000'000'000);
  EXPECT_NE(result.strXml, "");
  EXPECT_TRUE(HasLine(reader.Log(), "ds64 Data size 60000000000"));
  EXPECT_LE(result.statistics.nReads, 16u);
  EXPECT_LE(result.statistics.nBytes, 1000);
}

TEST_F(HugeFiles, SamplesBehind4GiBAreReached) {
  const std::uint64_t dataSize = 5 * kGigabyte;
  const std::uint64_t headSize = Rf64Head(0, 0).size();
  const std::string path = Write("huge.wav", Rf64Head(headSize + dataSize, dataSize));
  Extend("huge.wav", headSize + dataSize - 4);
  Append("huge.wav", "LAST");

  CWaveFileReader reader;
  WAVEFORMATEXTENSIBLE format;
  std::int64_t size = 0;
  ASSERT_TRUE(reader.Open(path));
  ASSERT_TRUE(reader.ParseWave(format, size));
  EXPECT_EQ(size, 5'000'000'000);
  CSampleFile file;
  ASSERT_TRUE(file.Open(path));
  ASSERT_TRUE(file.File().ParseWave(format, size));
  file.BeginWave(KindOfWave(format));
  ASSERT_TRUE(file.Seek(5'000'000'000 / 4 - 1));
  EXPECT_EQ(file.Ahead().nFrames, 1);
  char frame[8] = {};
  EXPECT_EQ(file.Read(frame, 1), 1);
  EXPECT_STREQ(frame, "LAST");
  EXPECT_EQ(file.Position(), 5'000'000'000 / 4);
}

TEST_F(HugeFiles, AnEladRecordingWhoseSizeOverflowedIsReadToItsTrueEnd) {
  const std::string head = ChunkHeader("RIFF", 0) + "WAVE" + FormatChunk() + Chunk("elad", "ELAD") +
                           ChunkHeader("data", 5 * kGigabyte - (std::uint64_t{1} << 32));
  const std::string path = Write("elad.wav", head);
  Extend("elad.wav", head.size() + 5 * kGigabyte);

  CWaveFileReader reader;
  SScanResult result;
  ASSERT_TRUE(reader.ScanChunks(path, result));
  EXPECT_EQ(result.nDataBytes, 5'000'000'000);
  WAVEFORMATEXTENSIBLE format;
  std::int64_t size = 0;
  ASSERT_TRUE(reader.Open(path));
  ASSERT_TRUE(reader.ParseWave(format, size));
  EXPECT_EQ(size, 5'000'000'000);
}

TEST_F(HugeFiles, A4GigabyteDataChunkOfARiffFileHasItsWholeSize) {
  const std::uint64_t dataSize = 4'200'000'000;
  const std::string head = ChunkHeader("RIFF", dataSize + 36) + "WAVE" + FormatChunk() + ChunkHeader("data", dataSize);
  const std::string path = Write("large.wav", head);
  Extend("large.wav", head.size() + dataSize);
  CWaveFileReader reader;
  SScanResult result;
  ASSERT_TRUE(reader.ScanChunks(path, result));
  EXPECT_EQ(result.nDataBytes, 4'200'000'000);
  EXPECT_TRUE(HasLine(reader.Log(), "RIFF Size = -94967260 (signed), 4200000036 (unsigned)"));
}

}  // namespace carvello::test
