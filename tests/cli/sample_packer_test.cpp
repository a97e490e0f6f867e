#include "cli/sample_packer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace carvello::test {
namespace {

using testing::ElementsAre;

std::vector<std::uint8_t> Packed(double value, ESynthFormat format) {
  std::vector<std::uint8_t> bytes;
  PackSamples(&value, 1, format, bytes);
  return bytes;
}

TEST(PackSamples, WritesEveryFormatLittleEndian) {
  EXPECT_THAT(Packed(0.5, ESynthFormat::Pcm8), ElementsAre(0x40));
  EXPECT_THAT(Packed(-0.5, ESynthFormat::Pcm8), ElementsAre(0xC0));  // signed, unlike in other WAV files
  EXPECT_THAT(Packed(0.5, ESynthFormat::Pcm16), ElementsAre(0x00, 0x40));
  EXPECT_THAT(Packed(-1.0 / 32768, ESynthFormat::Pcm16), ElementsAre(0xFF, 0xFF));
  EXPECT_THAT(Packed(258.0 / 32768, ESynthFormat::Pcm16), ElementsAre(0x02, 0x01));
  EXPECT_THAT(Packed(0x010203 / 8388608.0, ESynthFormat::Pcm24), ElementsAre(0x03, 0x02, 0x01));
  EXPECT_THAT(Packed(-2.0 / 8388608, ESynthFormat::Pcm24), ElementsAre(0xFE, 0xFF, 0xFF));
  EXPECT_THAT(Packed(0x01020304 / 2147483648.0, ESynthFormat::Pcm32), ElementsAre(0x04, 0x03, 0x02, 0x01));
  EXPECT_THAT(Packed(1.0, ESynthFormat::Float32), ElementsAre(0x00, 0x00, 0x80, 0x3F));
  EXPECT_THAT(Packed(-2.0, ESynthFormat::Float32), ElementsAre(0x00, 0x00, 0x00, 0xC0));
}

TEST(PackSamples, RoundsToTheNearest) {
  EXPECT_THAT(Packed(0.49 / 32768, ESynthFormat::Pcm16), ElementsAre(0x00, 0x00));
  EXPECT_THAT(Packed(0.5 / 32768, ESynthFormat::Pcm16), ElementsAre(0x01, 0x00));
  EXPECT_THAT(Packed(-0.5 / 32768, ESynthFormat::Pcm16), ElementsAre(0xFF, 0xFF));
  EXPECT_THAT(Packed(-0.49 / 32768, ESynthFormat::Pcm16), ElementsAre(0x00, 0x00));
}

TEST(PackSamples, HoldsFullScale) {
  EXPECT_THAT(Packed(1.0, ESynthFormat::Pcm8), ElementsAre(0x7F));
  EXPECT_THAT(Packed(1.0, ESynthFormat::Pcm16), ElementsAre(0xFF, 0x7F));
  EXPECT_THAT(Packed(5.0, ESynthFormat::Pcm24), ElementsAre(0xFF, 0xFF, 0x7F));
  EXPECT_THAT(Packed(5.0, ESynthFormat::Pcm32), ElementsAre(0xFF, 0xFF, 0xFF, 0x7F));
  EXPECT_THAT(Packed(-1.0, ESynthFormat::Pcm16), ElementsAre(0x00, 0x80));
  EXPECT_THAT(Packed(-5.0, ESynthFormat::Pcm32), ElementsAre(0x00, 0x00, 0x00, 0x80));
}

TEST(PackSamples, CountsWhatLiesBeyondFullScale) {
  const double values[] = {1.0, -1.0, 1.001, -1.001, 0.0};
  std::vector<std::uint8_t> bytes;
  EXPECT_EQ(PackSamples(values, 5, ESynthFormat::Pcm16, bytes), 2);
  EXPECT_EQ(PackSamples(values, 5, ESynthFormat::Float32, bytes), 0);
  EXPECT_EQ(bytes.size(), 5U * 2 + 5U * 4);  // appended
}

}  // namespace
}  // namespace carvello::test
