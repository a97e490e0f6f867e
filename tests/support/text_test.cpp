#include "support/text.h"

#include <gtest/gtest.h>

namespace carvello {
namespace {

using namespace std::string_literals;

TEST(Format, MakesTextsOfAnyLength) {
  const std::string text(100'000, 'x');
  EXPECT_EQ(Format("<%s>", text.c_str()), "<" + text + ">");
  EXPECT_EQ(Format("%lld %u %08X %03d", -5LL, 7U, 0xABCU, 9), "-5 7 00000ABC 009");
  EXPECT_EQ(Format("%s", ""), "");
}

TEST(Trim, TakesAsciiWhiteSpaceOnly) {
  EXPECT_EQ(Trim(" \t\r\n\v\f a b \n"), "a b");
  EXPECT_EQ(TrimRight("  a  "), "  a");
  EXPECT_EQ(Trim(" \n "), "");
  EXPECT_EQ(Trim("\xC2\xA0x"), "\xC2\xA0x");
}

TEST(Printable, EscapesControlCharactersOfEveryKind) {
  EXPECT_EQ(Printable("a\x1B[2J\r\n\t\x7F"), "a\\x1B[2J\\r\\n\\t\\x7F");
  EXPECT_EQ(Printable("\0"s), "\\x00");
  EXPECT_EQ(Printable("\xC2\x85\xC2\x9B"), "\\u0085\\u009B");                             // C1
  EXPECT_EQ(Printable("a\xE2\x80\xAEvaw\xE2\x81\xA6"), "a\\u202Evaw\\u2066");             // direction
  EXPECT_EQ(Printable("\xE2\x80\xA8\xE2\x80\xA9\xEF\xBB\xBF"), "\\u2028\\u2029\\uFEFF");  // separators, mark
  EXPECT_EQ(Printable("\xF3\xA0\x80\x81"), "\\U000E0001");                                // a tag
}

TEST(Printable, EscapesBytesThatAreNoUtf8) {
  EXPECT_EQ(Printable("a\xFFz\xC3"), "a\\xFFz\\xC3");
  EXPECT_EQ(Printable("\xED\xA0\x80"), "\\xED\\xA0\\x80");  // half a surrogate pair
  EXPECT_EQ(Printable("\x9B"), "\\x9B");
}

TEST(Printable, LeavesEverythingElseAsItIs) {
  const std::string text = "C:\\r\u00E9c \u591C \U0001F4E1 \uFFFD \u200D~";
  EXPECT_EQ(Printable(text), text);
  EXPECT_EQ(Printable(Printable("\x1B\n\xFF")), Printable("\x1B\n\xFF"));
}

TEST(PrintableLines, KeepsLineBreaksOnly) {
  EXPECT_EQ(PrintableLines("a\nb\r\x1B\xFF"), "a\nb\\r\\x1B\\xFF");
}

TEST(PrintableJson, SaysTheSameWithoutSuchCharacters) {
  EXPECT_EQ(PrintableJson("{\n\"\x7F\xC2\x9B\xE2\x80\xAE\xF3\xA0\x80\x81\u591C\"\n}"),
            "{\n\"\\u007F\\u009B\\u202E\\uDB40\\uDC01\u591C\"\n}");
}

TEST(EqualsNoCaseAscii, FoldsAsciiLettersOnly) {
  EXPECT_TRUE(EqualsNoCaseAscii("Wav", "wAV"));
  EXPECT_FALSE(EqualsNoCaseAscii("wav", "wa"));
  EXPECT_FALSE(EqualsNoCaseAscii("\xC3\x84", "\xC3\xA4"));
  EXPECT_EQ(ToLowerAscii("A[Z]\xC3\x84"), "a[z]\xC3\x84");
}

TEST(ReplaceAll, ReplacesEveryOccurrenceOnce) {
  EXPECT_EQ(ReplaceAll("aXbXX", "X", "XX"), "aXXbXXXX");
  EXPECT_EQ(ReplaceAll("abc", "", "x"), "abc");
  EXPECT_EQ(ReplaceAll("", "a", "x"), "");
}

TEST(CutUtf8, CutsAtCharacterBorders) {
  EXPECT_EQ(CutUtf8("abc", 5), "abc");
  EXPECT_EQ(CutUtf8("abc", 2), "ab");
  EXPECT_EQ(CutUtf8("a\xE2\x82\xAC", 3), "a");
  EXPECT_EQ(CutUtf8("a\xE2\x82\xAC", 4), "a\xE2\x82\xAC");
  EXPECT_EQ(CutUtf8("\xE2\x82\xAC", 0), "");
}

TEST(Utf16, ConvertsCharactersOfEveryLength) {
  const std::string utf8 = "A\xC3\xA4\xE2\x82\xAC\xF0\x9F\x94\x92";
  const std::u16string utf16 = {u'A', 0xE4, 0x20AC, 0xD83D, 0xDD12};
  EXPECT_EQ(Utf8ToUtf16(utf8), utf16);
  EXPECT_EQ(Utf16ToUtf8(utf16), utf8);
}

TEST(Utf16, BytesThatAreNoUtf8BecomeReplacementCharacters) {
  EXPECT_EQ(Utf8ToUtf16("a\x80z"), std::u16string({u'a', 0xFFFD, u'z'}));
  EXPECT_EQ(Utf8ToUtf16("\xC0\x80"), std::u16string({0xFFFD, 0xFFFD}));                          // overlong
  EXPECT_EQ(Utf8ToUtf16("\xE0\x80\x80"), std::u16string({0xFFFD, 0xFFFD, 0xFFFD}));              // overlong
  EXPECT_EQ(Utf8ToUtf16("\xED\xA0\x80"), std::u16string({0xFFFD, 0xFFFD, 0xFFFD}));              // a surrogate
  EXPECT_EQ(Utf8ToUtf16("\xF4\x90\x80\x80"), std::u16string({0xFFFD, 0xFFFD, 0xFFFD, 0xFFFD}));  // above U+10FFFF
  EXPECT_EQ(Utf8ToUtf16("\xE2\x82"), std::u16string({0xFFFD, 0xFFFD}));                          // cut short
}

TEST(Utf16, SurrogatesWithoutPartnerBecomeReplacementCharacters) {
  const std::string replacement = "\xEF\xBF\xBD";
  EXPECT_EQ(Utf16ToUtf8(std::u16string({0xD83D, u'a'})), replacement + "a");
  EXPECT_EQ(Utf16ToUtf8(std::u16string({0xDD12, 0xD83D})), replacement + replacement);
}

TEST(Utf16, LittleEndianBytesEndAtTheFirstZeroCharacter) {
  EXPECT_EQ(Utf16FromLittleEndian("A\0\xAC\x20\0\0B\0"s), std::u16string({u'A', 0x20AC}));
  EXPECT_EQ(Utf16FromLittleEndian("A\0B"s), u"A");
  EXPECT_EQ(Utf16FromLittleEndian(""), u"");
  EXPECT_EQ(Utf16ToLittleEndian(std::u16string({u'A', 0x20AC})), "A\0\xAC\x20"s);
}

}  // namespace
}  // namespace carvello
