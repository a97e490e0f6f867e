#include "jobs/quantities.h"

#include <gtest/gtest.h>

#include <limits>

namespace carvello::test {
namespace {

constexpr std::int64_t kNoon = 1'795'262'400;  // 2026-11-21T12:00:00Z

TEST(ParseFrequency, AcceptsWholeHzWithAndWithoutSuffix) {
  EXPECT_EQ(ParseFrequency("7100000"), 7'100'000);
  EXPECT_EQ(ParseFrequency("7100k"), 7'100'000);
  EXPECT_EQ(ParseFrequency("7.1M"), 7'100'000);
  EXPECT_EQ(ParseFrequency("7.100001M"), 7'100'001);
  EXPECT_EQ(ParseFrequency("1.5G"), 1'500'000'000);
  EXPECT_EQ(ParseFrequency("0"), 0);
  EXPECT_EQ(ParseFrequency("0.001k"), 1);
  EXPECT_EQ(ParseFrequency("007k"), 7000);
}

TEST(ParseFrequency, AcceptsNegativeValuesOfBasebandRecordings) {
  EXPECT_EQ(ParseFrequency("-7k"), -7000);
  EXPECT_EQ(ParseFrequency("-0.5k"), -500);
}

TEST(ParseFrequency, IsExactWhereFloatingPointIsNot) {
  EXPECT_EQ(ParseFrequency("144.390001M"), 144'390'001);
  EXPECT_EQ(ParseFrequency("999.999999999G"), 999'999'999'999);
  EXPECT_EQ(ParseFrequency("0.1M"), 100'000);
}

TEST(ParseFrequency, AcceptsZerosBehindTheLastWholeHz) {
  EXPECT_EQ(ParseFrequency("7.10000000M"), 7'100'000);
  EXPECT_EQ(ParseFrequency("7100000.0"), 7'100'000);
}

TEST(ParseFrequency, RefusesFractionsOfAHz) {
  EXPECT_EQ(ParseFrequency("0.5"), std::nullopt);
  EXPECT_EQ(ParseFrequency("7.1000001M"), std::nullopt);
  EXPECT_EQ(ParseFrequency("1.0001k"), std::nullopt);
}

TEST(ParseFrequency, RefusesWhatIsNoNumber) {
  for (const char* text : {"",   "M",   "k",   ".",    ".5M",  "7.",   "7.M",   "7,1M",   "7.1.1M", "7.1 M", " 7", "7 ",
                           "+7", "--7", "7e6", "0x10", "7.1m", "7.1K", "7.1MM", "7.1MHz", "nan",    "inf",   "-"}) {
    EXPECT_EQ(ParseFrequency(text), std::nullopt) << text;
  }
}

TEST(ParseFrequency, RefusesMoreThan1000GHzWithoutOverflow) {
  EXPECT_EQ(ParseFrequency("1000G"), 1'000'000'000'000);
  EXPECT_EQ(ParseFrequency("1000000000001"), std::nullopt);
  EXPECT_EQ(ParseFrequency("1000.000000001G"), std::nullopt);
  EXPECT_EQ(ParseFrequency("9223372036854775808"), std::nullopt);
  EXPECT_EQ(ParseFrequency("99999999999999999999999999G"), std::nullopt);
}

TEST(ParseDecimal, ReachesItsLimitAndNoFurther) {
  constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();
  EXPECT_EQ(ParseDecimal("9223372036854775807", 0, kMax), kMax);
  EXPECT_EQ(ParseDecimal("9223372036854775808", 0, kMax), std::nullopt);
  EXPECT_EQ(ParseDecimal("9223372036.854775807", 9, kMax), kMax);
  EXPECT_EQ(ParseDecimal("9223372036.854775808", 9, kMax), std::nullopt);
}

TEST(ParseWholeNumber, AcceptsDigitsOnly) {
  EXPECT_EQ(ParseWholeNumber("0"), 0);
  EXPECT_EQ(ParseWholeNumber("42"), 42);
  for (const char* text : {"", "-1", "+1", "1.0", "1k", "9223372036854775808"}) {
    EXPECT_EQ(ParseWholeNumber(text), std::nullopt) << text;
  }
}

TEST(ParseDateTime, AcceptsEveryFormOfZone) {
  EXPECT_EQ(ParseDateTime("2026-11-21T12:00:00Z"), kNoon);
  EXPECT_EQ(ParseDateTime("2026-11-21T14:00:00+02:00"), kNoon);
  EXPECT_EQ(ParseDateTime("2026-11-21T14:00:00+0200"), kNoon);
  EXPECT_EQ(ParseDateTime("2026-11-21T07:30:00-04:30"), kNoon);
  EXPECT_EQ(ParseDateTime("2026-11-22T01:00:00+13:00"), kNoon);
}

TEST(ParseDateTime, AcceptsATimeWithoutSeconds) {
  EXPECT_EQ(ParseDateTime("2026-11-21T12:00Z"), kNoon);
  EXPECT_EQ(ParseDateTime("2026-11-21T14:00+02:00"), kNoon);
}

TEST(ParseDateTime, KnowsTheCalendar) {
  EXPECT_EQ(ParseDateTime("1970-01-01T00:00:00Z"), 0);
  EXPECT_EQ(ParseDateTime("1969-12-31T23:59:59Z"), -1);
  EXPECT_EQ(ParseDateTime("2024-02-29T00:00:00Z"), 1'709'164'800);
  EXPECT_EQ(ParseDateTime("2038-01-19T03:14:08Z"), 2'147'483'648);
  EXPECT_EQ(ParseDateTime("9999-12-31T23:59:59Z"), 253'402'300'799);
  for (const char* text :
       {"2023-02-29T00:00:00Z", "2026-13-01T00:00:00Z", "2026-00-01T00:00:00Z", "2026-11-31T00:00:00Z",
        "2026-11-00T00:00:00Z", "2026-11-21T24:00:00Z", "2026-11-21T12:60:00Z", "2026-11-21T12:00:60Z",
        "2026-11-21T12:00:00+24:00", "2026-11-21T12:00:00+02:60"}) {
    EXPECT_EQ(ParseDateTime(text), std::nullopt) << text;
  }
}

TEST(ParseDateTime, RefusesATimeWithoutZone) {
  EXPECT_EQ(ParseDateTime("2026-11-21T12:00:00"), std::nullopt);
  EXPECT_EQ(ParseDateTime("2026-11-21T12:00"), std::nullopt);
  EXPECT_EQ(ParseDateTime("2026-11-21"), std::nullopt);
}

TEST(ParseDateTime, RefusesFractionsOfASecond) {
  EXPECT_EQ(ParseDateTime("2026-11-21T12:00:00.5Z"), std::nullopt);
  EXPECT_EQ(ParseDateTime("2026-11-21T12:00:00.0Z"), std::nullopt);
}

TEST(ParseDateTime, RefusesOtherForms) {
  for (const char* text : {"", "Z", "now", "2026-11-21 12:00:00Z", "2026-11-21t12:00:00z", "26-11-21T12:00:00Z",
                           "99999-11-21T12:00:00Z", "-2026-11-21T12:00:00Z", "20261121T120000Z", "2026-1-21T12:00:00Z",
                           "2026-11-21T12Z", "2026-11-21T12:00:Z", "2026-11-21T12:00:00+2", "2026-11-21T12:00:00+02:0",
                           "2026-11-21T12:00:00Z ", "2026-11-21T12:00:00ZZ", "1795262400"}) {
    EXPECT_EQ(ParseDateTime(text), std::nullopt) << text;
  }
}

TEST(ParseMoment, TellsDatesFromSecondsBehindTheStart) {
  const auto date = ParseMoment("2026-11-21T12:00:00Z");
  ASSERT_TRUE(date);
  EXPECT_EQ(date->Resolve(5), kNoon);
  const auto offset = ParseMoment("+90");
  ASSERT_TRUE(offset);
  EXPECT_EQ(offset->Resolve(kNoon), kNoon + 90);
  EXPECT_EQ(ParseMoment("+0")->Resolve(kNoon), kNoon);
}

TEST(ParseMoment, RefusesOtherOffsets) {
  for (const char* text :
       {"+", "+-1", "++1", "+1.5", "+1k", "+1:00", "90", "-90", "+9223372036854775808", "+99999999999999999999"}) {
    EXPECT_FALSE(ParseMoment(text)) << text;
  }
}

TEST(Moment, BeyondAllTimeIsNothing) {
  const auto moment = ParseMoment("+9223372036854775807");
  ASSERT_TRUE(moment);
  EXPECT_EQ(moment->Resolve(0), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(moment->Resolve(1), std::nullopt);
}

TEST(ParseDuration, AcceptsSecondsMinutesAndHours) {
  EXPECT_EQ(ParseDuration("90"), 90U);
  EXPECT_EQ(ParseDuration("0"), 0U);
  EXPECT_EQ(ParseDuration("1:30"), 5400U);
  EXPECT_EQ(ParseDuration("0:10"), 600U);
  EXPECT_EQ(ParseDuration("0:01:30"), 90U);
  EXPECT_EQ(ParseDuration("100:00:01"), 360'001U);
  EXPECT_EQ(ParseDuration("4294967295"), 4'294'967'295U);
}

TEST(ParseDuration, RefusesOtherForms) {
  for (const char* text : {"", ":", "1:", ":30", "1:5", "1:60", "1:00:60", "1:00:5", "1:00:00:00", "1:00:", "-1", "+1",
                           "1.5", "1h", "4294967296", "1193046:28:16", "99999999999999999999:00"}) {
    EXPECT_EQ(ParseDuration(text), std::nullopt) << text;
  }
}

TEST(ParseFileSize, KnowsThreeSizes) {
  EXPECT_EQ(ParseFileSize("100MB"), 100U);
  EXPECT_EQ(ParseFileSize("1GB"), 1000U);
  EXPECT_EQ(ParseFileSize("RF64"), 0U);
  EXPECT_EQ(ParseFileSize("rf64"), 0U);
  for (const char* text : {"", "100", "2GB", "1000MB", "100 MB", "WAV"}) EXPECT_EQ(ParseFileSize(text), std::nullopt);
}

TEST(ParseDecibels, AcceptsASignAndDecimals) {
  EXPECT_EQ(ParseDecibels("-20"), -20.0);
  EXPECT_EQ(ParseDecibels("-3.5"), -3.5);
  EXPECT_EQ(ParseDecibels("0"), 0.0);
  EXPECT_EQ(ParseDecibels("6"), 6.0);
  for (const char* text : {"", "-", "dB", "-20dB", "401", "-401", "1e3", "nan"}) {
    EXPECT_EQ(ParseDecibels(text), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace carvello::test
