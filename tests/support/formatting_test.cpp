#include "support/formatting.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <limits>

#include "support/hresult.h"
#include "support/platform.h"
#include "support/system_time.h"
#include "support/text.h"

namespace carvello {
namespace {

TEST(FormatDuration, ShowsHoursOnlyWhereThereAreAny) {
  EXPECT_EQ(FormatDuration(0), "0:00");
  EXPECT_EQ(FormatDuration(0.6), "0:01");
  EXPECT_EQ(FormatDuration(65), "1:05");
  EXPECT_EQ(FormatDuration(3599.4), "59:59");
  EXPECT_EQ(FormatDuration(3600), "1:00:00");
  EXPECT_EQ(FormatDuration(-5), "0:00");
}

TEST(FormatFrequency, BelowOneKilohertzIsHertz) {
  EXPECT_EQ(FormatFrequency(0), "0 Hz");
  EXPECT_EQ(FormatFrequency(999), "999 Hz");
}

TEST(FormatFrequency, WholeKilohertzHaveNoDecimals) {
  EXPECT_EQ(FormatFrequency(1000), "1 kHz");
  EXPECT_EQ(FormatFrequency(999'000), "999 kHz");
}

TEST(FormatFrequency, OtherKilohertzHaveThreeDecimals) {
  EXPECT_EQ(FormatFrequency(1500), "1.500 kHz");
  EXPECT_EQ(FormatFrequency(999'999), "999.999 kHz");
  EXPECT_EQ(FormatFrequency(1001), "1.001 kHz");
}

TEST(FormatFrequency, MegahertzHaveNoneThreeOrSixDecimals) {
  EXPECT_EQ(FormatFrequency(7'000'000), "7 MHz");
  EXPECT_EQ(FormatFrequency(14'200'000), "14.200 MHz");
  EXPECT_EQ(FormatFrequency(7'000'001), "7.000001 MHz");
  EXPECT_EQ(FormatFrequency(std::numeric_limits<std::uint32_t>::max()), "4294.967295 MHz");
}

TEST(FormatFrequency64, HasNoWholeMegahertzForm) {
  EXPECT_EQ(FormatFrequency64(7'000'000), "7.000 MHz");
  EXPECT_EQ(FormatFrequency64(7'100'000), "7.100 MHz");
  EXPECT_EQ(FormatFrequency64(7'000'001), "7.000001 MHz");
}

TEST(FormatFrequency64, BelowOneMegahertzIsLikeTheShortForm) {
  EXPECT_EQ(FormatFrequency64(0), "0 Hz");
  EXPECT_EQ(FormatFrequency64(999), "999 Hz");
  EXPECT_EQ(FormatFrequency64(1000), "1 kHz");
  EXPECT_EQ(FormatFrequency64(1500), "1.500 kHz");
}

TEST(FormatFrequency64, NegativeValuesGetASign) {
  EXPECT_EQ(FormatFrequency64(-1500), "-1.500 kHz");
  EXPECT_EQ(FormatFrequency64(-1), "-1 Hz");
  EXPECT_EQ(FormatFrequency64(-7'000'000), "-7.000 MHz");
}

TEST(FormatFrequency64, TakesTheWholeRangeOf64Bits) {
  EXPECT_EQ(FormatFrequency64(std::numeric_limits<std::int64_t>::max()), "9223372036854.775807 MHz");
  EXPECT_EQ(FormatFrequency64(std::numeric_limits<std::int64_t>::min()), "-9223372036854.775808 MHz");
}

TEST(GroupDigits, UpToThreeDigitsStayAsTheyAre) {
  EXPECT_EQ(GroupDigits(0), "0");
  EXPECT_EQ(GroupDigits(999), "999");
  EXPECT_EQ(GroupDigits(-999), "-999");
}

TEST(GroupDigits, LongerNumbersAreGroupedFromTheRight) {
  EXPECT_EQ(GroupDigits(1000), "1.000");
  EXPECT_EQ(GroupDigits(-1000), "-1.000");
  EXPECT_EQ(GroupDigits(14'200'000), "14.200.000");
  EXPECT_EQ(GroupDigits(123'456), "123.456");
  EXPECT_EQ(GroupDigits(std::numeric_limits<std::int64_t>::min()), "-9.223.372.036.854.775.808");
}

TEST(CountOf, OneThingIsNoSeveral) {
  EXPECT_EQ(CountOf(0, "part"), "0 parts");
  EXPECT_EQ(CountOf(1, "part"), "1 part");
  EXPECT_EQ(CountOf(2, "part"), "2 parts");
}

TEST(SystemErrorText, UnknownCodesAreNamedByNumber) {
  EXPECT_EQ(SystemErrorText(0xDEADBEEF), "Unknown error 3735928559");
}

TEST(SystemErrorText, IsTheSystemsTextOnOneLine) {
  // Code 2 is "no such file" on POSIX systems and on Windows alike.
  const std::string text = SystemErrorText(2);
  EXPECT_EQ(TrimRight(text), TrimRight(ReplaceAll(platform::ErrorText(2).value(), "\r\n", " ")));
  EXPECT_EQ(text.find_first_of("\r\n"), std::string::npos);
}

TEST(SystemErrorText, BlamesAnotherProgramOnlyWhereTheCodeMeansThat) {
  const std::string sentence = " The device is held open by another program.";
  EXPECT_EQ(SystemErrorText(5).ends_with(sentence), platform::MeansHeldOpen(5));
  EXPECT_FALSE(SystemErrorText(2).ends_with(sentence));
}

TEST(FormatUtcDateTime, IsTheLocalDateAndTheUtcTime) {
  // 2026-11-21 12:34:56 UTC; the date is the user's, so it is taken from the same local calendar.
  constexpr std::int64_t kTime = 1'795'264'496;
  std::tm local{};
  ASSERT_TRUE(platform::LocalTime(kTime, local));
  EXPECT_EQ(FormatUtcDateTime(kTime), platform::ShortDate(local) + " 12:34:56z");
}

TEST(FormatUtcDateTime, RaisesInvalidArgumentForAnImpossibleTime) {
  try {
    FormatUtcDateTime(std::numeric_limits<std::int64_t>::max());
    FAIL() << "no exception";
  } catch (const CHResultError& error) {
    EXPECT_EQ(error.Code(), kInvalidArgument);
  }
}

}  // namespace
}  // namespace carvello
