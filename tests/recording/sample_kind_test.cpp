// Kinds of samples, their names and the wave formats that describe them.
#include "recording/sample_kind.h"

#include <gtest/gtest.h>

#include <string>

namespace carvello {
namespace {

TEST(SampleKind, EveryKindIsReadBackFromItsName) {
  for (const char* name :
       {"ci8", "ci16_le", "ci24_le", "ci32_le", "cu8", "cu16_le", "cu24_le", "cu32_le", "cf32_le", "cf64_le", "ci16_be",
        "ci24_be", "ci32_be", "cu16_be", "cu24_be", "cu32_be", "cf32_be", "cf64_be"}) {
    const std::optional<SSampleKind> kind = ParseSampleKind(name);
    ASSERT_TRUE(kind) << name;
    EXPECT_EQ(SampleKindName(*kind), name);
    EXPECT_TRUE(kind->IsKnown());
  }
}

TEST(SampleKind, NameWithoutByteOrderIsLittleEndian) {
  EXPECT_EQ(ParseSampleKind("ci16"), ParseSampleKind("ci16_le"));
  EXPECT_EQ(ParseSampleKind("cf64"), ParseSampleKind("cf64_le"));
}

TEST(SampleKind, OtherTextsAreNoKind) {
  for (const char* name :
       {"", "ci", "ci12", "ri16_le", "ci8_le", "cu8_be", "cf16", "ci64", "ci16_", "ci16_lee", "CI16"}) {
    EXPECT_FALSE(ParseSampleKind(name)) << name;
  }
}

TEST(SampleKind, FullScaleAndMiddleGoWithoutSaying) {
  EXPECT_EQ(MakeSampleKind(ENumber::Signed, 16).dFullScale, 32'768.0);
  EXPECT_EQ(MakeSampleKind(ENumber::Signed, 32).dFullScale, 2'147'483'648.0);
  EXPECT_EQ(MakeSampleKind(ENumber::Float, 64).dFullScale, 1.0);
  EXPECT_EQ(MakeSampleKind(ENumber::Unsigned, 8).dZero, 127.5);
  EXPECT_EQ(MakeSampleKind(ENumber::Unsigned, 16).dZero, 32'768.0);
  EXPECT_EQ(MakeSampleKind(ENumber::Signed, 24).FrameBytes(), 6U);
  EXPECT_FALSE(MakeSampleKind(ENumber::Float, 16).IsKnown());
  EXPECT_FALSE(MakeSampleKind(ENumber::Signed, 12).IsKnown());
}

TEST(SampleKind, WaveFormatsTellTheirKind) {
  const auto kindOf = [](const char* name, std::uint16_t channels = 2, bool floatScale = false) {
    WAVEFORMATEXTENSIBLE format = WaveFormatOf(*ParseSampleKind(name), 48'000);
    format.Format.nChannels = channels;
    return KindOfWave(format, floatScale);
  };
  EXPECT_EQ(kindOf("ci16"), *ParseSampleKind("ci16"));
  EXPECT_EQ(kindOf("ci24"), *ParseSampleKind("ci24"));
  EXPECT_EQ(kindOf("cf64"), *ParseSampleKind("cf64"));
  EXPECT_EQ(kindOf("ci8").number, ENumber::Signed) << "deliberately";
  EXPECT_EQ(kindOf("ci8").dFullScale, 32'768.0) << "taken value for value";
  EXPECT_EQ(kindOf("cf32").dFullScale, 1.0);
  EXPECT_EQ(kindOf("cf32", 2, true).dFullScale, 32'768.0);
  EXPECT_EQ(kindOf("ci16", 2, true), *ParseSampleKind("ci16")) << "said of 32-bit floats only";
  EXPECT_FALSE(kindOf("ci16", 1).IsKnown());
}

TEST(SampleKind, WaveFormatHasTheFramesOfItsKind) {
  const WAVEFORMATEXTENSIBLE format = WaveFormatOf(*ParseSampleKind("cu32_be"), 2'000'000);
  EXPECT_EQ(format.Format.nBlockAlign, 8);
  EXPECT_EQ(format.Format.nAvgBytesPerSec, 16'000'000U);
  EXPECT_EQ(format.Format.wBitsPerSample, 32);
  EXPECT_EQ(format.SubFormat, KSDATAFORMAT_SUBTYPE_PCM);
}

}  // namespace
}  // namespace carvello
