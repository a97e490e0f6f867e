// Reading a block and bringing every sample size to 16-bit full scale.
#include "engine/block_reader.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <fstream>
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

    CWaveFileReader reader;
    WAVEFORMATEXTENSIBLE format;
    std::int64_t dataSize = 0;
    EXPECT_TRUE(reader.Open(Path("in.wav")));
    EXPECT_TRUE(reader.ParseWave(format, dataSize));
    reader.SetFloatScale(floatScale);
    CBlockReader blockReader;
    const ComplexBuffer block(AllocComplex(kBlockFrames));
    block[0] = {-1.0f, -2.0f};
    const std::uint32_t frames = blockReader.ReadBlock(reader, block.get());
    EXPECT_EQ(blockReader.ReadBlock(reader, block.get()), 0u) << "nothing is left";
    std::vector<float> values(std::size_t{2} * frames);
    std::memcpy(values.data(), block.get(), values.size() * sizeof(float));
    return values;
  }
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

TEST_F(BlockReaderTest, BytesBehindTheLastWholeFrameAreLeftOut) {
  EXPECT_EQ(Read(1, 16, {1, 0, 2, 0, 3, 0}), (std::vector<float>{1, 2}));
}

TEST_F(BlockReaderTest, FormatThatNothingConvertsLeavesTheDestination) {
  WAVEFORMATEXTENSIBLE format;
  format.Format.wFormatTag = kFormatTagExtensible;
  format.Format.nChannels = 2;
  format.SubFormat = KSDATAFORMAT_SUBTYPE_PCM;
  format.Format.wBitsPerSample = 12;
  EXPECT_FALSE(CanConvert(format));
  EXPECT_EQ(UnsupportedFormatText(format),
            "12-bit PCM samples in 2 channels cannot be read; accepted are 2 channels of 8, 16, 24 or 32-bit PCM or "
            "32-bit float");
  format.Format.wBitsPerSample = 16;
  EXPECT_TRUE(CanConvert(format));
  format.Format.nChannels = 1;
  EXPECT_FALSE(CanConvert(format));
  format.Format.nChannels = 2;
  format.SubFormat = KSDATAFORMAT_SUBTYPE_IEEE_FLOAT;
  EXPECT_FALSE(CanConvert(format));
  format.Format.wBitsPerSample = 64;
  EXPECT_FALSE(CanConvert(format));
  format.Format.wBitsPerSample = 32;
  EXPECT_TRUE(CanConvert(format));
}

}  // namespace
}  // namespace carvello::test
