#include "recording/info_texts.h"

#include <gtest/gtest.h>

#include "recording/layout.h"

namespace carvello {
namespace {

using namespace std::string_literals;
using test::Le32;
using test::U32At;

TEST(InfoTrailer, LaysItsTextsOutInItsOwnOrder) {
  const SInfoTexts texts{.strIPRD = "IPRD5", .strIART = "four", .strICMT = "", .strICOP = "c", .strINAM = "nn"};
  const std::string expected = "LIST"s + Le32(64) + "INFO" +     //
                               "IART" + Le32(6) + "four\0\0"s +  //
                               "ICMT" + Le32(2) + "\0\0"s +      //
                               "ICOP" + Le32(2) + "c\0"s +       //
                               "INAM" + Le32(4) + "nn\0\0"s +    //
                               "IPRD" + Le32(6) + "IPRD5\0"s;
  ASSERT_EQ(expected.size(), 72U);
  EXPECT_EQ(BuildInfoTrailer(texts), expected);
}

TEST(InfoTrailer, ASubChunkOfFourOrFiveCharactersHasSize6) {
  SInfoTexts texts;
  texts.strIART = "1234";
  EXPECT_EQ(U32At(BuildInfoTrailer(texts), 16), 6U);
  texts.strIART = "12345";
  EXPECT_EQ(U32At(BuildInfoTrailer(texts), 16), 6U);
}

TEST(InfoTrailer, TextsThatFitExactlyAreKeptWhole) {
  // 65,536 bytes: 12 of the list's head, four empty sub-chunks of 10, and one of 8 + 65,476.
  SInfoTexts texts;
  texts.strIPRD.assign(65'475, 'x');
  const std::string trailer = BuildInfoTrailer(texts);
  ASSERT_EQ(trailer.size(), 65'536U);
  EXPECT_EQ(U32At(trailer, 4), 65'528U);
  EXPECT_EQ(trailer.substr(12 + 40), "IPRD" + Le32(65'476) + texts.strIPRD + '\0');
}

TEST(InfoTrailer, ATextThatWouldNotFitIsCut) {
  SInfoTexts texts;
  texts.strIART.assign(100'000, 'a');
  texts.strICMT = "lost for want of room";
  const std::string trailer = BuildInfoTrailer(texts);
  ASSERT_EQ(trailer.size(), 65'536U);
  EXPECT_EQ(trailer.substr(12, 8), "IART" + Le32(65'476));
  // One odd byte of room remains behind the rest of an even text; the text behind it gets that byte.
  EXPECT_EQ(trailer.substr(12 + 8 + 65'476, 10), "ICMT" + Le32(2) + "l\0"s);
}

TEST(InfoTrailer, ATextIsCutAtACharactersBorder) {
  SInfoTexts texts;
  for (int count = 0; count < 40'000; ++count) texts.strIPRD += "\xC3\xA4";
  const std::string trailer = BuildInfoTrailer(texts);
  EXPECT_LE(trailer.size(), 65'536U);
  EXPECT_EQ(U32At(trailer, 4), trailer.size() - 8);
  std::string text = trailer.substr(12 + 40 + 8);
  text.erase(text.find('\0'));
  // In code pages of one byte a character the text fits whole.
  const std::size_t bytesPerCharacter = text.size() == 40'000 ? 1 : 2;
  EXPECT_EQ(text.size() % bytesPerCharacter, 0U);
  EXPECT_GE(text.size(), 40'000U);
}

}  // namespace
}  // namespace carvello
