// What the analysis tells of a file's samples is what a job finds when it opens the file.
#include <algorithm>
#include <string>
#include <vector>

#include "input/input_fixture.h"
#include "input/lookup_cache.h"
#include "input/wave_file_reader.h"
#include "support/sparse_file.h"

namespace carvello::test {

namespace {

class ParseEqualsWalk : public InputTest {
 protected:
  void ExpectEqual(const std::string& path, std::int64_t bytes) {
    CWaveFileReader reader;
    WAVEFORMATEXTENSIBLE format;
    std::int64_t dataSize = 0;
    ASSERT_TRUE(reader.Open(path) && reader.ParseWave(format, dataSize)) << Joined(reader.Log());
    EXPECT_EQ(dataSize, bytes);
    const SFileFacts facts = LookupMetadata(path);
    EXPECT_EQ(facts.nSampleBytes, bytes);
    EXPECT_TRUE(facts.bRecording);
    EXPECT_EQ(facts.format.SubFormat, format.SubFormat);
    EXPECT_EQ(facts.format.Format.wBitsPerSample, format.Format.wBitsPerSample);
    EXPECT_EQ(facts.format.Format.nSamplesPerSec, format.Format.nSamplesPerSec);
    const auto status = platform::GetFileStatus(path);
    ASSERT_TRUE(status);
    EXPECT_EQ(facts.stamp, SFileStamp(*status));
  }
};

std::string Head(std::uint64_t claimed, const std::string& before = {}) {
  return ChunkHeader("RIFF", 0) + "WAVE" + FormatChunk() + before + ChunkHeader("data", claimed);
}

}  // namespace

TEST_F(ParseEqualsWalk, ForEverySizeThatADataChunkCanClaim) {
  const std::string elad = Chunk("elad", "xyz");
  const std::string samples(4003, 'x');
  struct SCase {
    std::string strBytes;
    std::int64_t nSampleBytes;
  };
  const std::vector<SCase> cases = {
      {Head(4003) + samples, 4003},
      {Head(4003, Chunk("auxi", "odd")) + samples + Chunk("LIST", "INFO" + InfoText("INAM", "name")), 4003},
      {Head(1000) + samples, 1000},
      {Head(5000) + samples, 4003},
      {Head(0xFFFFFFFF) + samples, 4003},
      {Head(0, elad) + samples, 4003},
      {Head(1000, elad) + samples, 4003},
      {Head(5000, elad) + samples, 4003},
      {Head(0xFFFFFFFF, elad) + samples, 4003},
      {Head(1000) + samples.substr(0, 1000) + elad, 1000},
      {Rf64(0, 4003, FormatChunk() + ChunkHeader("data", 0xFFFFFFFF)) + samples, 4003},
      {Rf64(0, 1001, FormatChunk() + ChunkHeader("data", 0xFFFFFFFF)) + samples, 1001},
      {Rf64(0, 5000, FormatChunk() + ChunkHeader("data", 0xFFFFFFFF)) + samples, 4003},
      {Rf64(0, 0xFFFFFFFFFFFFFFFF, FormatChunk() + ChunkHeader("data", 0xFFFFFFFF)) + samples, 4003},
      {Rf64(0, 1001, FormatChunk() + elad + ChunkHeader("data", 0xFFFFFFFF)) + samples, 1001},
      {Rf64(0, 2000, FormatChunk() + ChunkHeader("data", 4003)) + samples, 2000},
      {Rf64(0, 2000, FormatChunk() + elad + ChunkHeader("data", 1000)) + samples, 2000},
  };
  for (std::size_t i = 0; i < cases.size(); ++i) {
    SCOPED_TRACE(i);
    ExpectEqual(Write("case " + std::to_string(i) + ".wav", cases[i].strBytes), cases[i].nSampleBytes);
  }
}

TEST_F(ParseEqualsWalk, ForEveryCutOfAFile) {
  const std::string whole = PlainWave(64, XmlChunk("A=\"1\""), Chunk("LIST", "INFO" + InfoText("INAM", "name")));
  const std::size_t samples = whole.find("data") + 8;
  for (std::size_t length = samples + 1; length <= whole.size(); ++length) {
    SCOPED_TRACE(length);
    ExpectEqual(Write("cut " + std::to_string(length) + ".wav", whole.substr(0, length)),
                static_cast<std::int64_t>(std::min<std::size_t>(length - samples, 64)));
  }
}

TEST_F(ParseEqualsWalk, ForSixGigabytesWhoseSizeWasNeverMadeFinal) {
  constexpr std::uint64_t kLength = 6'000'000'000;
  const std::string head = Head(0xFFFFFFFF);
  for (const std::string& bytes : {head, head.substr(0, 4) + Le32(0xFFFFFFFF) + head.substr(8)}) {
    const std::string path = Write("huge.wav", bytes);
    ExtendFile(path, kLength);
    ExpectEqual(path, static_cast<std::int64_t>(kLength - head.size()));
    Remove("huge.wav");
  }
}

}  // namespace carvello::test
