#include "input/set_names.h"

#include <gtest/gtest.h>

namespace carvello::test {

TEST(SetNames, AreAlikeButForTheirDigits) {
  EXPECT_TRUE(AreNamesOfOneSet("rec 1.wav", "rec 22.wav"));
  EXPECT_TRUE(AreNamesOfOneSet("HDSDR_20230415_194510Z_7050kHz_RF.wav", "hdsdr_20230415_195010Z_7050kHz_RF.WAV"));
  EXPECT_TRUE(AreNamesOfOneSet("g-7.050MHz_23-04-17_19'45'10.ddc", "g-7.050MHz_23-04-17_19'45'10-^002.ddc"));
  EXPECT_FALSE(AreNamesOfOneSet("rec 1.wav", "rec.wav"));
  EXPECT_FALSE(AreNamesOfOneSet("rec 1.wav", "rec 1.txt"));
  EXPECT_FALSE(AreNamesOfOneSet("rec 1.wav", "secret 1.wav"));
}

TEST(SetNames, OfRecordingsEndInOneOfThreeWays) {
  for (const char* name : {"a.wav", "A.WAV", "a.ddc", "a b.Rf64"}) EXPECT_TRUE(IsNamedLikeARecording(name)) << name;
  for (const char* name : {"a.txt", "wav", "a.wav.part", ""}) EXPECT_FALSE(IsNamedLikeARecording(name)) << name;
}

}  // namespace carvello::test
