#include "dsp/primitives.h"

#include <gtest/gtest.h>

#include <array>
#include <cfenv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <numeric>
#include <string>
#include <vector>

#include "dsp/primitive_kernels.h"

namespace carvello {
namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

std::int32_t Length(const auto& values) {
  return static_cast<std::int32_t>(values.size());
}

std::vector<std::int16_t> ToInt16(const std::vector<float>& values, std::int32_t mode = kRoundHalfAway,
                                  std::int32_t scale = 0) {
  std::vector<std::int16_t> result(values.size(), 12345);
  EXPECT_EQ(FloatToInt16(values.data(), result.data(), Length(values), mode, scale), kPrimitiveOk);
  return result;
}

using Int16s = std::vector<std::int16_t>;

// Calls before InitPrimitives use the plain loops; these tests run with what start-up picks.
class Primitives : public testing::Test {
 protected:
  static void SetUpTestSuite() { InitPrimitives(); }
};

TEST_F(Primitives, CopiesMoveExactlyTheirLength) {
  const std::vector<float> floats = {1.0f, -0.0f, kInfinity, 4.0f};
  std::vector<float> copy(4, 9.0f);
  EXPECT_EQ(CopyFloat(floats.data(), copy.data(), 3), kPrimitiveOk);
  EXPECT_EQ(copy, (std::vector<float>{1.0f, 0.0f, kInfinity, 9.0f}));
  EXPECT_TRUE(std::signbit(copy[1])) << "bit for bit";

  const std::vector<SComplex> samples = {{1, 2}, {3, 4}, {5, 6}};
  std::vector<SComplex> sampleCopy(3);
  EXPECT_EQ(CopyComplex(samples.data(), sampleCopy.data(), 2), kPrimitiveOk);
  EXPECT_EQ(sampleCopy[1].im, 4.0f);
  EXPECT_EQ(sampleCopy[2].re, 0.0f);

  const std::vector<std::uint8_t> bytes = {1, 2, 3};
  std::vector<std::uint8_t> byteCopy(3);
  EXPECT_EQ(CopyBytes(bytes.data(), byteCopy.data(), 2), kPrimitiveOk);
  EXPECT_EQ(byteCopy, (std::vector<std::uint8_t>{1, 2, 0}));
}

TEST_F(Primitives, MultiplicationByOneLeavesTheBufferAndByZeroClearsIt) {
  std::vector<float> values = {1.5f, kNaN, kInfinity};
  EXPECT_EQ(MulConstInPlace(1.0f, values.data(), 3), kPrimitiveOk);
  EXPECT_EQ(values[0], 1.5f);
  EXPECT_TRUE(std::isnan(values[1]));
  EXPECT_EQ(MulConstInPlace(0.0f, values.data(), 3), kPrimitiveOk);
  EXPECT_EQ(values, (std::vector<float>{0.0f, 0.0f, 0.0f}));
}

TEST_F(Primitives, MultiplicationReachesEveryValueAndNoOther) {
  for (std::size_t nLength = 1; nLength < 40; ++nLength) {
    std::vector<float> values(nLength + 1, 3.0f);
    EXPECT_EQ(MulConstInPlace(-2.0f, values.data(), static_cast<std::int32_t>(nLength)), kPrimitiveOk);
    for (std::size_t i = 0; i < nLength; ++i) EXPECT_EQ(values[i], -6.0f);
    EXPECT_EQ(values[nLength], 3.0f);
  }
}

TEST_F(Primitives, DivisionMultipliesByTheReciprocal) {
  std::vector<float> values = {10.0f, 7.0f};
  EXPECT_EQ(DivConstInPlace(3.0f, values.data(), 2), kPrimitiveOk);
  EXPECT_EQ(values, (std::vector<float>{10.0f * (1.0f / 3.0f), 7.0f * (1.0f / 3.0f)}));
}

TEST_F(Primitives, DivisionByZeroIsRefusedAndLeavesTheBuffer) {
  std::vector<float> values = {10.0f, 7.0f};
  EXPECT_EQ(DivConstInPlace(0.0f, values.data(), 2), kPrimitiveDivideByZero);
  EXPECT_EQ(DivConstInPlace(-0.0f, values.data(), 2), kPrimitiveDivideByZero);
  EXPECT_EQ(values, (std::vector<float>{10.0f, 7.0f}));
}

TEST_F(Primitives, IntegersBecomeFloatsValueForValue) {
  std::vector<std::int8_t> bytes(256);
  std::iota(bytes.begin(), bytes.end(), std::int8_t{-128});
  std::vector<float> floats(256);
  EXPECT_EQ(Int8ToFloat(bytes.data(), floats.data(), 256), kPrimitiveOk);
  for (int i = 0; i < 256; ++i) EXPECT_EQ(floats[static_cast<std::size_t>(i)], static_cast<float>(i - 128));

  std::vector<std::int16_t> shorts(65536);
  for (int i = 0; i < 65536; ++i) shorts[static_cast<std::size_t>(i)] = static_cast<std::int16_t>(i - 32768);
  floats.resize(65536);
  EXPECT_EQ(Int16ToFloat(shorts.data(), floats.data(), 65536), kPrimitiveOk);
  for (int i = 0; i < 65536; ++i) EXPECT_EQ(floats[static_cast<std::size_t>(i)], static_cast<float>(i - 32768));

  const std::vector<std::int32_t> ints = {0, 1, -1, 2147483647, -2147483647 - 1, 16777217};
  floats.resize(ints.size());
  EXPECT_EQ(Int32ToFloat(ints.data(), floats.data(), Length(ints)), kPrimitiveOk);
  EXPECT_EQ(floats, (std::vector<float>{0.0f, 1.0f, -1.0f, 2147483648.0f, -2147483648.0f, 16777216.0f}));
}

TEST_F(Primitives, PackedTwentyFourBitIsLittleEndianAndSigned) {
  const std::vector<std::uint8_t> bytes = {0xFF, 0xFF, 0x7F, 0x00, 0x00, 0x80, 0xFF, 0xFF,
                                           0xFF, 0x56, 0x34, 0x12, 0x00, 0x00, 0x00};
  std::vector<float> floats(5);
  EXPECT_EQ(Int24ToFloat(bytes.data(), floats.data(), 5), kPrimitiveOk);
  EXPECT_EQ(floats, (std::vector<float>{8388607.0f, -8388608.0f, -1.0f, 1193046.0f, 0.0f}));
}

TEST_F(Primitives, TwentyFourBitFullScaleDividedBy256) {
  const std::array<std::uint8_t, 3> bytes = {0xFF, 0xFF, 0x7F};
  float value = 0.0f;
  EXPECT_EQ(Int24ToFloat(bytes.data(), &value, 1), kPrimitiveOk);
  EXPECT_EQ(DivConstInPlace(256.0f, &value, 1), kPrimitiveOk);
  EXPECT_EQ(value, 8388607.0f / 256.0f);
  EXPECT_NEAR(value, 32767.996, 0.001);
}

TEST_F(Primitives, UnsignedIntegersBecomeFloatsAroundTheirMiddle) {
  std::array<float, 3> values{};
  const std::array<std::uint8_t, 3> bytes = {0, 127, 255};
  EXPECT_EQ(Uint8ToFloat(bytes.data(), values.data(), 3, 127.5f), kPrimitiveOk);
  EXPECT_EQ(values, (std::array<float, 3>{-127.5f, -0.5f, 127.5f}));
  const std::array<std::uint16_t, 3> shorts = {0, 0x8000, 0xFFFF};
  EXPECT_EQ(Uint16ToFloat(shorts.data(), values.data(), 3), kPrimitiveOk);
  EXPECT_EQ(values, (std::array<float, 3>{-32768.0f, 0.0f, 32767.0f}));
  const std::array<std::uint8_t, 9> packed = {0, 0, 0, 0, 0, 0x80, 0xFF, 0xFF, 0xFF};
  EXPECT_EQ(Uint24ToFloat(packed.data(), values.data(), 3), kPrimitiveOk);
  EXPECT_EQ(values, (std::array<float, 3>{-8388608.0f, 0.0f, 8388607.0f}));
  const std::array<std::uint32_t, 3> ints = {0, 0x8000'0000, 0x8000'0100};
  EXPECT_EQ(Uint32ToFloat(ints.data(), values.data(), 3), kPrimitiveOk);
  EXPECT_EQ(values, (std::array<float, 3>{-2147483648.0f, 0.0f, 256.0f}));
}

TEST_F(Primitives, DoublesAreScaledBeforeTheyBecomeFloats) {
  const std::array<double, 3> source = {1e300, -0.5, 1e-3};
  std::array<float, 3> values{};
  EXPECT_EQ(DoubleToFloat(source.data(), values.data(), 3, 32768.0), kPrimitiveOk);
  EXPECT_EQ(values, (std::array<float, 3>{kInfinity, -16384.0f, static_cast<float>(32.768)}));
  EXPECT_EQ(DoubleToFloat(source.data(), values.data(), 1, 1e-300), kPrimitiveOk);
  EXPECT_NEAR(values[0], 1.0f, 1e-6f);
}

TEST_F(Primitives, BytesOfEveryValueAreTurnedRound) {
  const std::array<std::uint8_t, 24> source = {1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12,
                                               13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24};
  alignas(8) std::array<std::uint8_t, 24> bytes{};
  for (const std::uint32_t size : {1U, 2U, 3U, 4U, 8U}) {
    bytes = source;
    EXPECT_EQ(SwapBytes(bytes.data(), size, static_cast<std::int32_t>(24 / size)), kPrimitiveOk);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
      EXPECT_EQ(bytes[i], source[i / size * size + (size - 1 - i % size)]) << size << " " << i;
    }
  }
  EXPECT_EQ(SwapBytes(bytes.data(), 5, 1), kPrimitiveBadLength);
  EXPECT_EQ(SwapBytes(bytes.data(), 2, 0), kPrimitiveBadLength);
  EXPECT_EQ(SwapBytes(nullptr, 2, 1), kPrimitiveNullPointer);
}

TEST_F(Primitives, FloatToInt16Saturates) {
  EXPECT_EQ(ToInt16({40000.0f, -40000.0f, 32767.4f, 32767.5f, 32768.0f, -32768.5f, -32769.0f}),
            (Int16s{32767, -32768, 32767, 32767, 32767, -32768, -32768}));
  EXPECT_EQ(ToInt16({3.4e38f, -3.4e38f, kInfinity, -kInfinity}), (Int16s{32767, -32768, 32767, -32768}));
}

TEST_F(Primitives, NotANumberBecomesZero) {
  EXPECT_EQ(ToInt16({kNaN, -kNaN, 5.0f}), (Int16s{0, 0, 5}));
}

TEST_F(Primitives, MinusTwoAndAHalfRoundsAwayFromZero) {
  EXPECT_EQ(ToInt16({-2.5f, 2.5f, -0.5f, 0.5f, 1.5f, -32767.5f}), (Int16s{-3, 3, -1, 1, 2, -32768}));
}

TEST_F(Primitives, TheFloatsNextToAHalfRoundToTheirOwnSide) {
  EXPECT_EQ(ToInt16({0.49999997f, -0.49999997f, 0.50000006f, 8191.4995f, 8191.5005f}), (Int16s{0, 0, 1, 8191, 8192}));
}

TEST_F(Primitives, OtherModesCutOffOrRoundHalvesToEven) {
  const std::vector<float> values = {2.5f, 3.5f, -2.5f, -3.5f, 0.5f, 2.9f, -2.9f, 32767.9f};
  EXPECT_EQ(ToInt16(values, 0), (Int16s{2, 3, -2, -3, 0, 2, -2, 32767}));
  EXPECT_EQ(ToInt16(values, 1), (Int16s{2, 4, -2, -4, 0, 3, -3, 32767}));
}

// Against the C library's own rounding, in double, where a product with a power of two is exact.
TEST_F(Primitives, RoundingAgreesWithTheCLibraryForFloatsOfEverySize) {
  ASSERT_EQ(std::fegetround(), FE_TONEAREST);
  std::vector<float> values;
  for (std::uint32_t nBits = 0; nBits < 0xFFFFE000u; nBits += 0x1FFF) {
    float value = 0.0f;
    std::memcpy(&value, &nBits, sizeof value);
    if (!std::isnan(value)) values.push_back(value);
  }
  for (int i = -200; i <= 200; ++i) values.push_back(static_cast<float>(i) / 4.0f);
  const auto saturated = [](double value) {
    return static_cast<std::int16_t>(std::min(std::max(value, -32768.0), 32767.0));
  };
  for (const std::int32_t nScale :
       {0, 1, 8, -8, 126, -126, 160, -160, 249, -249, 1000, -1000, 2147483647, -2147483647}) {
    const Int16s away = ToInt16(values, 2, nScale);
    const Int16s even = ToInt16(values, 1, nScale);
    const Int16s cut = ToInt16(values, 0, nScale);
    std::size_t nWrong = 0;
    for (std::size_t i = 0; i < values.size(); ++i) {
      // Beyond 2^±500 a double could overflow, and the result is certain anyway.
      const double exact = std::ldexp(static_cast<double>(values[i]), -std::max(-500, std::min(500, nScale)));
      nWrong += away[i] != saturated(std::round(exact)) || even[i] != saturated(std::nearbyint(exact)) ||
                cut[i] != saturated(std::trunc(exact));
    }
    EXPECT_EQ(nWrong, 0u) << "scale " << nScale;
  }
}

TEST_F(Primitives, ScaleDividesByAPowerOfTwo) {
  EXPECT_EQ(ToInt16({256.0f, 384.0f, 383.0f}, kRoundHalfAway, 8), (Int16s{1, 2, 1}));
  EXPECT_EQ(ToInt16({0.25f, -1.0f}, kRoundHalfAway, -2), (Int16s{1, -4}));
}

TEST_F(Primitives, NullPointersAndBadLengthsAreRefused) {
  float f = 1.0f;
  SComplex c;
  std::uint8_t b = 0;
  std::int8_t i8 = 0;
  std::int16_t i16 = 0;
  std::int32_t i32 = 0;
  EXPECT_EQ(CopyFloat(nullptr, &f, 1), -8);
  EXPECT_EQ(CopyFloat(&f, nullptr, 1), -8);
  EXPECT_EQ(CopyFloat(&f, &f, 0), -6);
  EXPECT_EQ(CopyComplex(nullptr, &c, 1), -8);
  EXPECT_EQ(CopyComplex(&c, &c, -1), -6);
  EXPECT_EQ(CopyBytes(&b, nullptr, 1), -8);
  EXPECT_EQ(CopyBytes(&b, &b, 0), -6);
  EXPECT_EQ(MulConstInPlace(2.0f, nullptr, 1), -8);
  EXPECT_EQ(MulConstInPlace(2.0f, &f, 0), -6);
  EXPECT_EQ(DivConstInPlace(0.0f, nullptr, 1), -8);
  EXPECT_EQ(DivConstInPlace(0.0f, &f, 0), -6);
  EXPECT_EQ(Int8ToFloat(nullptr, &f, 1), -8);
  EXPECT_EQ(Int8ToFloat(&i8, &f, 0), -6);
  EXPECT_EQ(Int16ToFloat(&i16, nullptr, 1), -8);
  EXPECT_EQ(Int16ToFloat(&i16, &f, 0), -6);
  EXPECT_EQ(Int24ToFloat(nullptr, &f, 1), -8);
  EXPECT_EQ(Int24ToFloat(&b, &f, 0), -6);
  EXPECT_EQ(Int32ToFloat(&i32, nullptr, 1), -8);
  EXPECT_EQ(Int32ToFloat(&i32, &f, -5), -6);
  EXPECT_EQ(FloatToInt16(nullptr, &i16, 1, 2, 0), -8);
  EXPECT_EQ(FloatToInt16(&f, &i16, 0, 2, 0), -6);
  EXPECT_EQ(f, 1.0f);
}

TEST_F(Primitives, BuffersAreAlignedAndNoneForABadLength) {
  for (const std::int64_t nLength : {1, 3, 1000}) {
    const ComplexBuffer samples(AllocComplex(nLength));
    const Int16Buffer pairs(AllocInt16Pairs(nLength));
    ASSERT_NE(samples, nullptr);
    ASSERT_NE(pairs, nullptr);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(samples.get()) % 64, 0u);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(pairs.get()) % 64, 0u);
    samples[static_cast<std::size_t>(nLength - 1)] = {1.0f, 2.0f};
    pairs[static_cast<std::size_t>(2 * nLength - 1)] = 7;  // two values an element
  }
  EXPECT_EQ(AllocComplex(0), nullptr);
  EXPECT_EQ(AllocInt16Pairs(-1), nullptr);
  EXPECT_EQ(AllocComplex(std::numeric_limits<std::int64_t>::max()), nullptr);
  FreeAligned(nullptr);
}

// Every length up to a few vectors, so that bodies and remainders of the loops are compared, at odd addresses too.
void ExpectSameBitsAsPlain(const SPrimitiveKernels& kernels) {
  std::vector<std::uint8_t> bytes(4096);
  std::uint32_t nState = 1;
  for (std::uint8_t& byte : bytes) {
    nState = nState * 1664525u + 1013904223u;
    byte = static_cast<std::uint8_t>(nState >> 24);
  }
  const auto* shorts = reinterpret_cast<const std::int16_t*>(bytes.data());
  const auto* ints = reinterpret_cast<const std::int32_t*>(bytes.data());
  std::vector<float> source(200);
  kPlainPrimitives.Int16ToFloat(shorts, source.data(), source.size());
  kPlainPrimitives.Multiply(1.25f, source.data(), source.size());

  for (std::size_t nLength = 1; nLength <= 100; ++nLength) {
    std::vector<float> plain(nLength);
    std::vector<float> other(nLength);
    const auto expectSame = [&](const char* what) {
      EXPECT_EQ(std::memcmp(plain.data(), other.data(), nLength * sizeof(float)), 0)
          << kernels.pszName << " " << what << " " << nLength;
    };
    kPlainPrimitives.Int8ToFloat(reinterpret_cast<const std::int8_t*>(bytes.data() + 1), plain.data(), nLength);
    kernels.Int8ToFloat(reinterpret_cast<const std::int8_t*>(bytes.data() + 1), other.data(), nLength);
    expectSame("Int8ToFloat");
    kPlainPrimitives.Int16ToFloat(shorts + 1, plain.data(), nLength);
    kernels.Int16ToFloat(shorts + 1, other.data(), nLength);
    expectSame("Int16ToFloat");
    kPlainPrimitives.Int24ToFloat(bytes.data() + 1, plain.data(), nLength);
    kernels.Int24ToFloat(bytes.data() + 1, other.data(), nLength);
    expectSame("Int24ToFloat");
    kPlainPrimitives.Int32ToFloat(ints + 1, plain.data(), nLength);
    kernels.Int32ToFloat(ints + 1, other.data(), nLength);
    expectSame("Int32ToFloat");
    kPlainPrimitives.Multiply(0.1f, plain.data(), nLength);
    kernels.Multiply(0.1f, other.data(), nLength);
    expectSame("Multiply");
    kPlainPrimitives.Uint8ToFloat(bytes.data() + 1, plain.data(), nLength, 127.5f);
    kernels.Uint8ToFloat(bytes.data() + 1, other.data(), nLength, 127.5f);
    expectSame("Uint8ToFloat");
    const auto* unsignedShorts = reinterpret_cast<const std::uint16_t*>(bytes.data());
    kPlainPrimitives.Uint16ToFloat(unsignedShorts + 1, plain.data(), nLength);
    kernels.Uint16ToFloat(unsignedShorts + 1, other.data(), nLength);
    expectSame("Uint16ToFloat");
    kPlainPrimitives.Uint24ToFloat(bytes.data() + 1, plain.data(), nLength);
    kernels.Uint24ToFloat(bytes.data() + 1, other.data(), nLength);
    expectSame("Uint24ToFloat");
    const auto* unsignedInts = reinterpret_cast<const std::uint32_t*>(bytes.data());
    kPlainPrimitives.Uint32ToFloat(unsignedInts + 1, plain.data(), nLength);
    kernels.Uint32ToFloat(unsignedInts + 1, other.data(), nLength);
    expectSame("Uint32ToFloat");
    std::vector<double> doubles(nLength);
    for (std::size_t i = 0; i < nLength; ++i) doubles[i] = 0.1 * ints[i];
    kPlainPrimitives.DoubleToFloat(doubles.data(), plain.data(), nLength, 1.0 / 3.0);
    kernels.DoubleToFloat(doubles.data(), other.data(), nLength, 1.0 / 3.0);
    expectSame("DoubleToFloat");
    const auto expectSameSwap = [&](const char* what, const auto& swap) {
      // 8 bytes of room behind the last value: nothing may be written there.
      std::vector<std::uint64_t> words(nLength + 2);
      std::memcpy(words.data(), bytes.data(), words.size() * sizeof(std::uint64_t));
      std::vector<std::uint64_t> otherWords = words;
      swap(kPlainPrimitives, words.data());
      swap(kernels, otherWords.data());
      EXPECT_EQ(words, otherWords) << kernels.pszName << " " << what << " " << nLength;
      EXPECT_EQ(std::memcmp(&words[nLength], bytes.data() + 8 * nLength, 16), 0) << what << " " << nLength;
    };
    expectSameSwap("SwapBytes16", [&](const SPrimitiveKernels& set, void* buffer) {
      set.SwapBytes16(static_cast<std::uint16_t*>(buffer), nLength);
    });
    expectSameSwap("SwapBytes24", [&](const SPrimitiveKernels& set, void* buffer) {
      set.SwapBytes24(static_cast<std::uint8_t*>(buffer), nLength);
    });
    expectSameSwap("SwapBytes32", [&](const SPrimitiveKernels& set, void* buffer) {
      set.SwapBytes32(static_cast<std::uint32_t*>(buffer), nLength);
    });
    expectSameSwap("SwapBytes64", [&](const SPrimitiveKernels& set, void* buffer) {
      set.SwapBytes64(static_cast<std::uint64_t*>(buffer), nLength);
    });
    for (const ERounding rounding : {ERounding::TowardsZero, ERounding::HalfToEven, ERounding::HalfAway}) {
      Int16s plain16(nLength);
      Int16s other16(nLength);
      kPlainPrimitives.FloatToInt16(source.data() + 1, plain16.data(), nLength, rounding, 1.0f);
      kernels.FloatToInt16(source.data() + 1, other16.data(), nLength, rounding, 1.0f);
      EXPECT_EQ(plain16, other16) << kernels.pszName << " " << nLength;
    }
  }
}

TEST(PrimitiveKernels, AllSetsGiveTheSameBits) {
  for (const EInstructionSet set : InstructionSets()) {
    EXPECT_STREQ(PrimitiveKernels(set).pszName, NameOf(set));
    ExpectSameBitsAsPlain(PrimitiveKernels(set));
  }
}

}  // namespace
}  // namespace carvello
