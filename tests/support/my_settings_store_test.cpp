#include "support/my_settings_store.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "support/settings_map.h"

namespace carvello {
namespace {

using Bytes = std::vector<std::uint8_t>;

class MySettingsStore : public ::testing::Test {
 protected:
  test::SSettingsMap m_map;
  CMySettingsStore m_store{std::make_unique<test::CSettingsInMemory>(m_map)};
};

struct CPair : ISettingsObject {
  std::uint8_t nA = 1;
  std::uint8_t nB = 2;
  Bytes ToBytes() const override { return {nA, nB}; }
  bool FromBytes(const Bytes& bytes) override {
    if (bytes.size() != 2) return false;
    nA = bytes[0];
    nB = bytes[1];
    return true;
  }
};

TEST_F(MySettingsStore, Keeps64BitNumbersAsEightLittleEndianBytes) {
  EXPECT_TRUE(m_store.Write("CentreFreq", std::int64_t{0x0102030405060708}));
  EXPECT_EQ(m_map.bytes["CentreFreq"], (Bytes{8, 7, 6, 5, 4, 3, 2, 1}));
  EXPECT_TRUE(m_store.Write("CentreFreq", std::int64_t{-2}));
  EXPECT_EQ(m_map.bytes["CentreFreq"], (Bytes{0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}));
  std::int64_t value = 0;
  EXPECT_TRUE(m_store.Read("CentreFreq", value));
  EXPECT_EQ(value, -2);
}

TEST_F(MySettingsStore, KeepsDoublesAndFloatsAsTheirIeeeBytes) {
  EXPECT_TRUE(m_store.Write("D", 1.5));
  EXPECT_EQ(m_map.bytes["D"], (Bytes{0, 0, 0, 0, 0, 0, 0xF8, 0x3F}));
  EXPECT_TRUE(m_store.Write("F", -2.0F));
  EXPECT_EQ(m_map.bytes["F"], (Bytes{0, 0, 0, 0xC0}));
  double d = 0;
  float f = 0;
  EXPECT_TRUE(m_store.Read("D", d));
  EXPECT_TRUE(m_store.Read("F", f));
  EXPECT_EQ(d, 1.5);
  EXPECT_EQ(f, -2.0F);
}

TEST_F(MySettingsStore, ReadsADoubleStoredAsNaNWithSuccessAndTheVariableUnchanged) {
  m_map.bytes["D"] = {0, 0, 0, 0, 0, 0, 0xF8, 0x7F};
  double value = 4.25;
  EXPECT_TRUE(m_store.Read("D", value));
  EXPECT_EQ(value, 4.25);
}

TEST_F(MySettingsStore, ReadsAFloatStoredAsNaNAsItIs) {
  m_map.bytes["F"] = {0, 0, 0xC0, 0x7F};
  float value = 4.25F;
  EXPECT_TRUE(m_store.Read("F", value));
  EXPECT_TRUE(std::isnan(value));
}

TEST_F(MySettingsStore, RejectsABinaryValueShorterThanTheRequestedSize) {
  m_map.bytes = {{"I", Bytes(7)}, {"D", Bytes(7)}, {"F", Bytes(3)}, {"R", Bytes(15)}, {"007-I", Bytes(7)}};
  std::int64_t i = 1;
  double d = 2;
  float f = 3;
  SSettingsRect rect{1, 2, 3, 4};
  EXPECT_FALSE(m_store.Read("I", i));
  EXPECT_FALSE(m_store.Read("D", d));
  EXPECT_FALSE(m_store.Read("F", f));
  EXPECT_FALSE(m_store.Read("R", rect));
  EXPECT_FALSE(m_store.Read(7, "I", i));
  EXPECT_EQ(i, 1);
  EXPECT_EQ(d, 2);
  EXPECT_EQ(f, 3);
  EXPECT_EQ(rect, (SSettingsRect{1, 2, 3, 4}));
}

TEST_F(MySettingsStore, TakesTheFirstBytesOfALongerBinaryValue) {
  m_map.bytes = {{"I", {1, 0, 0, 0, 0, 0, 0, 0, 9}}, {"F", {0, 0, 0x80, 0x3F, 9}}};
  std::int64_t i = 0;
  float f = 0;
  EXPECT_TRUE(m_store.Read("I", i));
  EXPECT_TRUE(m_store.Read("F", f));
  EXPECT_EQ(i, 1);
  EXPECT_EQ(f, 1.0F);
}

TEST_F(MySettingsStore, LeavesEveryKindOfVariableUnchangedWhenTheValueIsMissing) {
  const CMySettingsStore& store = m_store;
  std::int64_t i64 = 1;
  double d = 2;
  float f = 3;
  bool b = true;
  int i = 4;
  std::uint32_t u = 5;
  std::string text = "six";
  Bytes bytes{7};
  SSettingsRect rect{8, 9, 10, 11};
  CPair pair;
  EXPECT_FALSE(store.Read("x", i64) || store.Read("x", d) || store.Read("x", f) || store.Read("x", b));
  EXPECT_FALSE(store.Read("x", i) || store.Read("x", u) || store.Read("x", text) || store.Read("x", bytes));
  EXPECT_FALSE(store.Read("x", rect) || store.Read("x", pair));
  EXPECT_FALSE(store.Read(0, "x", i64) || store.Read(0, "x", i) || store.Read(0, "x", u) || store.Read(0, "x", text));
  EXPECT_FALSE(store.Read(0, "x", bytes) || store.Read(0, "x", rect) || store.Read(0, "x", pair));
  EXPECT_EQ(i64, 1);
  EXPECT_EQ(d, 2);
  EXPECT_EQ(f, 3);
  EXPECT_TRUE(b);
  EXPECT_EQ(i, 4);
  EXPECT_EQ(u, 5U);
  EXPECT_EQ(text, "six");
  EXPECT_EQ(bytes, Bytes{7});
  EXPECT_EQ(rect, (SSettingsRect{8, 9, 10, 11}));
  EXPECT_EQ(pair.nA, 1);
}

TEST_F(MySettingsStore, LeavesTheVariableUnchangedWhenTheValueIsOfAnotherKind) {
  m_store.Write("Text", "words");
  m_store.Write("Number", 3);
  int number = 1;
  std::string text = "kept";
  std::int64_t big = 2;
  EXPECT_FALSE(m_store.Read("Text", number));
  EXPECT_FALSE(m_store.Read("Number", text));
  EXPECT_FALSE(m_store.Read("Number", big));
  EXPECT_EQ(number, 1);
  EXPECT_EQ(text, "kept");
  EXPECT_EQ(big, 2);
}

TEST_F(MySettingsStore, KeepsABooleanAsANumber) {
  EXPECT_TRUE(m_store.Write("UTC", true));
  EXPECT_EQ(m_map.numbers["UTC"], 1U);
  EXPECT_TRUE(m_store.Write("UTC", false));
  EXPECT_EQ(m_map.numbers["UTC"], 0U);
  bool value = true;
  EXPECT_TRUE(m_store.Read("UTC", value));
  EXPECT_FALSE(value);
  m_map.numbers["UTC"] = 17;
  EXPECT_TRUE(m_store.Read("UTC", value));
  EXPECT_TRUE(value);
}

TEST_F(MySettingsStore, KeepsSignedAndUnsignedNumbersToTheirLimits) {
  EXPECT_TRUE(m_store.Write("I", std::numeric_limits<int>::min()));
  EXPECT_TRUE(m_store.Write("U", std::numeric_limits<std::uint32_t>::max()));
  int i = 0;
  std::uint32_t u = 0;
  EXPECT_TRUE(m_store.Read("I", i));
  EXPECT_TRUE(m_store.Read("U", u));
  EXPECT_EQ(i, std::numeric_limits<int>::min());
  EXPECT_EQ(u, std::numeric_limits<std::uint32_t>::max());
}

TEST_F(MySettingsStore, TakesALiteralForATextAndNotForABoolean) {
  EXPECT_TRUE(m_store.Write("InputFile", "/r/\xC3\xA4.wav"));
  EXPECT_EQ(m_map.texts["InputFile"], "/r/\xC3\xA4.wav");
  EXPECT_TRUE(m_map.numbers.empty());
  std::string text;
  EXPECT_TRUE(m_store.Read("InputFile", text));
  EXPECT_EQ(text, "/r/\xC3\xA4.wav");
}

TEST_F(MySettingsStore, KeepsByteBlocksObjectsAndRectangles) {
  const Bytes block{1, 0, 255};
  EXPECT_TRUE(m_store.Write("Block", block.data(), block.size()));
  Bytes readBlock;
  EXPECT_TRUE(m_store.Read("Block", readBlock));
  EXPECT_EQ(readBlock, block);

  EXPECT_TRUE(m_store.Write("Rect", SSettingsRect{-1, 2, 3, 256}));
  EXPECT_EQ(m_map.bytes["Rect"], (Bytes{0xFF, 0xFF, 0xFF, 0xFF, 2, 0, 0, 0, 3, 0, 0, 0, 0, 1, 0, 0}));
  SSettingsRect rect;
  EXPECT_TRUE(m_store.Read("Rect", rect));
  EXPECT_EQ(rect, (SSettingsRect{-1, 2, 3, 256}));

  CPair pair;
  pair.nA = 40;
  EXPECT_TRUE(m_store.Write("Pair", pair));
  EXPECT_EQ(m_map.bytes["Pair"], (Bytes{40, 2}));
  CPair other;
  ISettingsObject* pOther = &other;
  EXPECT_TRUE(m_store.Write("Pointer", static_cast<const ISettingsObject*>(&pair)));
  EXPECT_TRUE(m_store.Read("Pointer", pOther));
  EXPECT_EQ(other.nA, 40);

  ISettingsObject* pNone = nullptr;
  EXPECT_FALSE(m_store.Write("None", pNone));
  EXPECT_FALSE(m_store.Read("Pair", pNone));
}

TEST_F(MySettingsStore, StoresIndex0OfBandwidthUnder000Bandwidth) {
  EXPECT_TRUE(m_store.Write(0, "Bandwidth", 5));
  EXPECT_EQ(m_map.numbers, (std::map<std::string, std::uint32_t>{{"000-Bandwidth", 5}}));
}

TEST_F(MySettingsStore, LetsAnIndexBeWiderThanThreeDigits) {
  EXPECT_TRUE(m_store.Write(1000, "Bandwidth", 6));
  EXPECT_EQ(m_map.numbers, (std::map<std::string, std::uint32_t>{{"1000-Bandwidth", 6}}));
}

TEST_F(MySettingsStore, ReadsEveryKindOfIndexedValueBack) {
  const Bytes block{9, 8};
  const CPair pair;
  EXPECT_TRUE(m_store.Write(7, "I64", std::int64_t{7100000}));
  EXPECT_TRUE(m_store.Write(7, "Block", block.data(), block.size()));
  EXPECT_TRUE(m_store.Write(7, "Rect", SSettingsRect{1, 2, 3, 4}));
  EXPECT_TRUE(m_store.Write(7, "Text", "t"));
  EXPECT_TRUE(m_store.Write(7, "View", std::string_view("v")));
  EXPECT_TRUE(m_store.Write(7, "U", std::uint32_t{8}));
  EXPECT_TRUE(m_store.Write(7, "I", -9));
  EXPECT_TRUE(m_store.Write(7, "Pair", pair));
  EXPECT_TRUE(m_store.Write(7, "Pointer", static_cast<const ISettingsObject*>(&pair)));
  EXPECT_EQ(m_map.bytes["007-I64"], (Bytes{0x60, 0x56, 0x6C, 0, 0, 0, 0, 0}));
  EXPECT_EQ(m_map.texts["007-View"], "v");

  std::int64_t i64 = 0;
  Bytes readBlock;
  SSettingsRect rect;
  std::string text;
  std::uint32_t u = 0;
  int i = 0;
  CPair other;
  other.nA = 0;
  EXPECT_TRUE(m_store.Read(7, "I64", i64));
  EXPECT_TRUE(m_store.Read(7, "Block", readBlock));
  EXPECT_TRUE(m_store.Read(7, "Rect", rect));
  EXPECT_TRUE(m_store.Read(7, "Text", text));
  EXPECT_TRUE(m_store.Read(7, "U", u));
  EXPECT_TRUE(m_store.Read(7, "I", i));
  EXPECT_TRUE(m_store.Read(7, "Pair", other));
  EXPECT_EQ(i64, 7100000);
  EXPECT_EQ(readBlock, block);
  EXPECT_EQ(rect, (SSettingsRect{1, 2, 3, 4}));
  EXPECT_EQ(text, "t");
  EXPECT_EQ(u, 8U);
  EXPECT_EQ(i, -9);
  EXPECT_EQ(other.nA, 1);
  ISettingsObject* pOther = &other;
  other.nA = 0;
  EXPECT_TRUE(m_store.Read(7, "Pointer", pOther));
  EXPECT_EQ(other.nA, 1);
}

}  // namespace
}  // namespace carvello
