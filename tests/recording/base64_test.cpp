#include "recording/base64.h"

#include <gtest/gtest.h>

#include <array>
#include <string_view>
#include <vector>

namespace carvello {
namespace {

std::string Encode(std::string_view text) {
  const std::vector<std::uint8_t> bytes(text.begin(), text.end());
  return CBase64::Encode(bytes);
}

TEST(Base64, MatchesTheVectorsOfRfc4648) {
  EXPECT_EQ(Encode(""), "");
  EXPECT_EQ(Encode("f"), "Zg==");
  EXPECT_EQ(Encode("fo"), "Zm8=");
  EXPECT_EQ(Encode("foo"), "Zm9v");
  EXPECT_EQ(Encode("foob"), "Zm9vYg==");
  EXPECT_EQ(Encode("fooba"), "Zm9vYmE=");
  EXPECT_EQ(Encode("foobar"), "Zm9vYmFy");
}

TEST(Base64, UsesTheWholeAlphabet) {
  // The 48 bytes that hold the numbers 0 to 63 in six bits each.
  std::vector<std::uint8_t> bytes;
  for (unsigned value = 0; value < 64; value += 4) {
    const unsigned group = value << 18U | (value + 1) << 12U | (value + 2) << 6U | (value + 3);
    for (const unsigned shift : {16U, 8U, 0U}) bytes.push_back(static_cast<std::uint8_t>(group >> shift));
  }
  EXPECT_EQ(CBase64::Encode(bytes), "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/");
}

TEST(Base64, ATimeZoneRecordGives232Characters) {
  const std::string text = CBase64::Encode(std::array<std::uint8_t, 172>{});
  EXPECT_EQ(text, std::string(230, 'A').append("=="));
}

}  // namespace
}  // namespace carvello
