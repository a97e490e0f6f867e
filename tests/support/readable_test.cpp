#include "support/readable.h"

#include <gtest/gtest.h>

namespace carvello::test {
namespace {

TEST(FormatIsoTime, IsWhatParsersOfIso8601Take) {
  EXPECT_EQ(FormatIsoTime(1'795'262'400), "2026-11-21T12:00:00Z");
  EXPECT_EQ(FormatIsoTime(0), "1970-01-01T00:00:00Z");
  EXPECT_EQ(FormatIsoTime(0, 50), "1970-01-01T00:00:00.050Z");
}

TEST(FormatBytes, UsesUnitsOf1000) {
  EXPECT_EQ(FormatBytes(0), "0 B");
  EXPECT_EQ(FormatBytes(999), "999 B");
  EXPECT_EQ(FormatBytes(1000), "1.0 kB");
  EXPECT_EQ(FormatBytes(80e6), "80.0 MB");
  EXPECT_EQ(FormatBytes(999.96e6), "1.00 GB");
  EXPECT_EQ(FormatBytes(1.25e9), "1.25 GB");
  EXPECT_EQ(FormatBytes(5e15), "5000.00 TB");
}

TEST(TextWidth, CountsCharactersNotBytes) {
  EXPECT_EQ(TextWidth(""), 0U);
  EXPECT_EQ(TextWidth("abc"), 3U);
  EXPECT_EQ(TextWidth("Größe"), 5U);
  EXPECT_EQ(TextWidth("\xF0\x9F\x93\xBB"), 1U);
}

TEST(FormatColumns, AlignsLeftAndRight) {
  EXPECT_EQ(FormatColumns({{"Name", "Size", "Note"}, {"ä", "5", "x"}, {"long", "500000"}}, "lrl"),
            "Name    Size  Note\n"
            "ä          5  x\n"
            "long  500000\n");
}

}  // namespace
}  // namespace carvello::test
