// Reading a block and bringing every sample size to 16-bit full scale.
#include "engine/block_reader.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <fstream>
#include <limits>
#include <string>
#include <vector>

#include "engine/engine_fixture.h"

namespace carvello::test {
namespace {

class BlockReaderTest : public EngineTest {
 protected:
  // A RIFF file with the given format tag, bits and sample bytes, read as one block.
  std::vector<float> Read(std::uint16_t tag, std::uint16_t bits, const std::vector<std::uint8_t>& samples,
                          bool floatScale = false) {
    std::vector<std::uint8_t> file = {'R', 'I', 'F', 'F', 0xFF, 0,   0,  0, 'W', 'A',
                                      'V', 'E', 'f', 'm', 't',  ' ', 16, 0, 0,   0};
    const auto put = [&](std::uint32_t number, int bytes) {
      for (int i = 0; i < bytes; ++i) file.push_back(static_cast<std::uint8_t>(number >> (8 * i)));
    };
    put(tag, 2);
    put(2, 2);
    put(48'000, 4);
    put(48'000u * bits / 4, 4);
    put(bits / 4u, 2);
    put(bits, 2);
    file.insert(file.end(), {'d', 'a', 't', 'a'});
    put(static_cast<std::uint32_t>(samples.size()), 4);
    file.insert(file.end(), samples.begin(), samples.end());
    std::ofstream(m_folder / "in.wav", std::ios::binary)
        .write(reinterpret_cast<const char*>(file.data()), static_cast<std::streamsize>(file.size()));

    CSampleFile reader;
    WAVEFORMATEXTENSIBLE format;
    std::int64_t dataSize = 0;
    EXPECT_TRUE(reader.Open(Path("in.wav")));
    EXPECT_TRUE(reader.File().ParseWave(format, dataSize));
    reader.BeginWave(KindOfWave(format, floatScale));
    CBlockReader blockReader;
    const ComplexBuffer block(AllocComplex(kBlockFrames));
    block[0] = {-1.0f, -2.0f};
    const std::uint32_t frames = blockReader.ReadBlock(reader, block.get());
    EXPECT_EQ(blockReader.ReadBlock(reader, block.get()), 0u) << "nothing is left";
    std::vector<float> values(std::size_t{2} * frames);
    std::memcpy(values.data(), block.get(), values.size() * sizeof(float));
    m_nSilenced = blockReader.TakeSilenced();
    EXPECT_EQ(blockReader.TakeSilenced(), 0) << "told once";
    return values;
  }

  // A file of samples and nothing else, read as one block.
  std::vector<float> ReadRaw(const SSampleKind& kind, const std::vector<std::uint8_t>& samples) {
    return ReadRaw(kind, samples, {0, static_cast<std::int64_t>(samples.size() / kind.FrameBytes())});
  }

  std::vector<float> ReadRaw(const SSampleKind& kind, const std::vector<std::uint8_t>& samples,
                             const SSampleLayout& layout) {
    std::ofstream(m_folder / "in.raw", std::ios::binary)
        .write(reinterpret_cast<const char*>(samples.data()), static_cast<std::streamsize>(samples.size()));
    CSampleFile reader;
    EXPECT_TRUE(reader.Open(Path("in.raw")));
    reader.Begin(kind, layout);
    CBlockReader blockReader;
    const ComplexBuffer block(AllocComplex(kBlockFrames));
    const std::uint32_t frames = blockReader.ReadBlock(reader, block.get());
    EXPECT_EQ(frames, layout.Frames());
    std::vector<float> values(std::size_t{2} * frames);
    std::memcpy(values.data(), block.get(), values.size() * sizeof(float));
    m_nSilenced = blockReader.TakeSilenced();
    return values;
  }

  static std::vector<std::uint8_t> Bytes(const std::vector<float>& values) {
    std::vector<std::uint8_t> bytes(4 * values.size());
    std::memcpy(bytes.data(), values.data(), bytes.size());
    return bytes;
  }

  std::int64_t m_nSilenced = 0;
};

TEST_F(BlockReaderTest, EightBitSamplesAreSignedAndNotScaled) {
  EXPECT_EQ(Read(1, 8, {0x7F, 0x80, 0x00, 0xFF}), (std::vector<float>{127, -128, 0, -1}));
}

TEST_F(BlockReaderTest, SixteenBitSamplesAreTakenValueForValue) {
  EXPECT_EQ(Read(1, 16, {0xFF, 0x7F, 0x00, 0x80}), (std::vector<float>{32767, -32768}));
}

TEST_F(BlockReaderTest, TwentyFourBitSamplesComeToSixteenBitScale) {
  EXPECT_EQ(Read(1, 24, {0xFF, 0xFF, 0x7F, 0x00, 0x00, 0x80}), (std::vector<float>{8388607.0f / 256.0f, -32768}));
}

TEST_F(BlockReaderTest, ThirtyTwoBitSamplesComeToSixteenBitScale) {
  EXPECT_EQ(Read(1, 32, {0x00, 0x00, 0x00, 0x40, 0x00, 0x00, 0x00, 0x80}), (std::vector<float>{16384, -32768}));
}

TEST_F(BlockReaderTest, FloatSamplesAreScaledUnlessTheyStandAtSixteenBitScale) {
  const std::vector<std::uint8_t> oneAndMinusHalf = {0x00, 0x00, 0x80, 0x3F, 0x00, 0x00, 0x00, 0xBF};
  EXPECT_EQ(Read(3, 32, oneAndMinusHalf), (std::vector<float>{32768, -16384}));
  EXPECT_EQ(Read(3, 32, oneAndMinusHalf, true), (std::vector<float>{1, -0.5f}));
}

TEST_F(BlockReaderTest, FloatSamplesThatAreNoFiniteNumbersBecomeZeroAndAreCounted) {
  constexpr float kInfinity = std::numeric_limits<float>::infinity();
  const float none = std::numeric_limits<float>::quiet_NaN();
  std::vector<float> values(2'000, 0.25f);
  std::vector<float> expected(2'000, 8192.0f);
  const auto put = [&](std::size_t sample, float re, float im) {
    values[2 * sample] = re;
    values[2 * sample + 1] = im;
    expected[2 * sample] = expected[2 * sample + 1] = 0.0f;
  };
  put(0, none, 0.5f);
  put(255, 0.5f, -none);
  put(256, kInfinity, 0.5f);
  put(700, 0.5f, -kInfinity);
  put(998, 0x1.000002p85f, 0.5f);  // beyond 2^100 at 16-bit full scale
  put(999, -0x1p127f, none);
  values[1'000] = expected[1'000] = 0.0f;
  values[1'001] = -0x1p85f;
  expected[1'001] = -0x1p100f;
  EXPECT_EQ(Read(3, 32, Bytes(values)), expected);
  EXPECT_EQ(m_nSilenced, 6);
  EXPECT_EQ(Read(3, 32, Bytes({1.0f, 2.0f, none, none}), true), (std::vector<float>{1, 2, 0, 0}));
  EXPECT_EQ(m_nSilenced, 1);
}

// The same numbers in every kind: a frame of -1 and 0.5 of full scale, then one of 0 and 0.
TEST_F(BlockReaderTest, EveryKindComesToSixteenBitScale) {
  using Raw = std::vector<std::uint8_t>;
  const std::vector<std::pair<const char*, Raw>> kinds = {
      {"ci8", {0x80, 0x40, 0, 0}},
      {"ci16_le", {0, 0x80, 0, 0x40, 0, 0, 0, 0}},
      {"ci16_be", {0x80, 0, 0x40, 0, 0, 0, 0, 0}},
      {"ci24_le", {0, 0, 0x80, 0, 0, 0x40, 0, 0, 0, 0, 0, 0}},
      {"ci24_be", {0x80, 0, 0, 0x40, 0, 0, 0, 0, 0, 0, 0, 0}},
      {"ci32_le", {0, 0, 0, 0x80, 0, 0, 0, 0x40, 0, 0, 0, 0, 0, 0, 0, 0}},
      {"ci32_be", {0x80, 0, 0, 0, 0x40, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
      {"cu16_le", {0, 0, 0, 0xC0, 0, 0x80, 0, 0x80}},
      {"cu16_be", {0, 0, 0xC0, 0, 0x80, 0, 0x80, 0}},
      {"cu24_le", {0, 0, 0, 0, 0, 0xC0, 0, 0, 0x80, 0, 0, 0x80}},
      {"cu24_be", {0, 0, 0, 0xC0, 0, 0, 0x80, 0, 0, 0x80, 0, 0}},
      {"cu32_le", {0, 0, 0, 0, 0, 0, 0, 0xC0, 0, 0, 0, 0x80, 0, 0, 0, 0x80}},
      {"cu32_be", {0, 0, 0, 0, 0xC0, 0, 0, 0, 0x80, 0, 0, 0, 0x80, 0, 0, 0}},
      {"cf32_le", {0, 0, 0x80, 0xBF, 0, 0, 0, 0x3F, 0, 0, 0, 0, 0, 0, 0, 0}},
      {"cf32_be", {0xBF, 0x80, 0, 0, 0x3F, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
      {"cf64_le",
       {0, 0, 0, 0, 0, 0, 0xF0, 0xBF, 0, 0, 0, 0, 0, 0, 0xE0, 0x3F, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
      {"cf64_be",
       {0xBF, 0xF0, 0, 0, 0, 0, 0, 0, 0x3F, 0xE0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
  };
  for (const auto& [name, bytes] : kinds) {
    EXPECT_EQ(ReadRaw(*ParseSampleKind(name), bytes), (std::vector<float>{-32768, 16384, 0, 0})) << name;
  }
  EXPECT_EQ(ReadRaw(*ParseSampleKind("cu8"), {0, 255, 127, 128}), (std::vector<float>{-32640, 32640, -128, 128}));
}

TEST_F(BlockReaderTest, FullScaleOfAKindHolds) {
  SSampleKind kind = *ParseSampleKind("ci32");
  kind.dFullScale = 8'388'608.0;
  EXPECT_EQ(ReadRaw(kind, {0, 0, 0x80, 0xFF, 0, 0, 0x40, 0}), (std::vector<float>{-32768, 16384}));
}

TEST_F(BlockReaderTest, DoublesThatAreNoFiniteFloatsBecomeZeroAndAreCounted) {
  const std::vector<double> values = {1e300, 0.5, 0.5, std::numeric_limits<double>::quiet_NaN(), 0.5, 0.5};
  std::vector<std::uint8_t> bytes(8 * values.size());
  std::memcpy(bytes.data(), values.data(), bytes.size());
  EXPECT_EQ(ReadRaw(*ParseSampleKind("cf64"), bytes), (std::vector<float>{0, 0, 0, 0, 16384, 16384}));
  EXPECT_EQ(m_nSilenced, 2);
}

TEST_F(BlockReaderTest, LostFramesAreZeros) {
  const SSampleKind kind = *ParseSampleKind("cu8");
  SSampleLayout layout(0, 1);
  layout.runs.push_back({SSampleRun::kSilence, 2});
  layout.runs.push_back({2, 1});
  EXPECT_EQ(ReadRaw(kind, {255, 255, 0, 0}, layout), (std::vector<float>{32640, 32640, 0, 0, 0, 0, -32640, -32640}));
}

TEST_F(BlockReaderTest, WholeNumbersAreNeverSilenced) {
  Read(1, 32, {0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x00, 0xC0, 0x7F});
  EXPECT_EQ(m_nSilenced, 0);
}

TEST_F(BlockReaderTest, BytesBehindTheLastWholeFrameAreLeftOut) {
  EXPECT_EQ(Read(1, 16, {1, 0, 2, 0, 3, 0}), (std::vector<float>{1, 2}));
}

TEST_F(BlockReaderTest, FormatThatNothingConvertsIsToldWithWhatIsAccepted) {
  WAVEFORMATEXTENSIBLE format;
  format.Format.wFormatTag = kFormatTagExtensible;
  format.Format.nChannels = 2;
  format.SubFormat = KSDATAFORMAT_SUBTYPE_PCM;
  format.Format.wBitsPerSample = 12;
  EXPECT_EQ(UnsupportedFormatText(format),
            "12-bit PCM samples in 2 channels cannot be read; accepted are 2 channels of 8, 16, 24 or 32-bit PCM or "
            "32 or 64-bit float");
}

}  // namespace
}  // namespace carvello::test
