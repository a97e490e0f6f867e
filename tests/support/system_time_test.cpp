#include "support/system_time.h"

#include <gtest/gtest.h>

#include <limits>

#include "support/hresult.h"

namespace carvello {
namespace {

SYSTEMTIME At(std::uint16_t year, std::uint16_t month, std::uint16_t day, std::uint16_t hour = 0,
              std::uint16_t minute = 0, std::uint16_t second = 0, std::uint16_t milliseconds = 0) {
  return {year, month, 0, day, hour, minute, second, milliseconds};
}

TEST(FormatUtc, UsesEnglishNames) {
  // 2026-11-16 00:44:40 UTC
  EXPECT_EQ(FormatUtc("%d-%b-%Y %H:%M", 1'794'789'880), "16-Nov-2026 00:44");
  EXPECT_EQ(FormatUtc("%d-%m-%Y %H:%M:%S", 0), "01-01-1970 00:00:00");
}

TEST(FormatUtc, GivesAnEmptyTextAbove127Characters) {
  const std::string fits(127, 'x');
  EXPECT_EQ(FormatUtc(fits.c_str(), 0), fits);
  EXPECT_EQ(FormatUtc((fits + "x").c_str(), 0), "");
}

TEST(FormatUtc, RaisesInvalidArgumentForATimeWithoutDate) {
  EXPECT_THROW(FormatUtc("%Y", std::numeric_limits<std::int64_t>::max()), CHResultError);
  EXPECT_THROW(FormatLocal("%Y", std::numeric_limits<std::int64_t>::max()), CHResultError);
}

TEST(SystemTime, FileTimeCountsFrom1601) {
  std::int64_t fileTime = -1;
  ASSERT_TRUE(SystemTimeToFileTime(At(1601, 1, 1), fileTime));
  EXPECT_EQ(fileTime, 0);
  ASSERT_TRUE(SystemTimeToFileTime(At(1970, 1, 1), fileTime));
  EXPECT_EQ(fileTime, 116'444'736'000'000'000);
  ASSERT_TRUE(SystemTimeToFileTime(At(1601, 1, 1, 0, 0, 1, 1), fileTime));
  EXPECT_EQ(fileTime, 10'010'000);
}

TEST(SystemTime, ComesBackFromFileTimeWithItsWeekday) {
  SYSTEMTIME time;
  ASSERT_TRUE(FileTimeToSystemTime(116'444'736'000'000'000 + 17'947'898'801'230'000, time));
  EXPECT_EQ(time.wYear, 2026);
  EXPECT_EQ(time.wMonth, 11);
  EXPECT_EQ(time.wDay, 16);
  EXPECT_EQ(time.wDayOfWeek, 1);  // a Monday
  EXPECT_EQ(time.wHour, 0);
  EXPECT_EQ(time.wMinute, 44);
  EXPECT_EQ(time.wSecond, 40);
  EXPECT_EQ(time.wMilliseconds, 123);
  EXPECT_FALSE(FileTimeToSystemTime(-1, time));
}

TEST(SystemTime, EveryFieldIsCheckedAgainstTheCalendar) {
  std::int64_t fileTime = 0;
  EXPECT_TRUE(SystemTimeToFileTime(At(2024, 2, 29), fileTime));
  EXPECT_TRUE(SystemTimeToFileTime(At(30827, 12, 31, 23, 59, 59, 999), fileTime));
  EXPECT_FALSE(SystemTimeToFileTime(At(2023, 2, 29), fileTime));
  EXPECT_FALSE(SystemTimeToFileTime(At(2023, 0, 1), fileTime));
  EXPECT_FALSE(SystemTimeToFileTime(At(2023, 13, 1), fileTime));
  EXPECT_FALSE(SystemTimeToFileTime(At(2023, 257, 1), fileTime));
  EXPECT_FALSE(SystemTimeToFileTime(At(2023, 1, 0), fileTime));
  EXPECT_FALSE(SystemTimeToFileTime(At(2023, 1, 257), fileTime));
  EXPECT_FALSE(SystemTimeToFileTime(At(2023, 1, 1, 24), fileTime));
  EXPECT_FALSE(SystemTimeToFileTime(At(2023, 1, 1, 0, 60), fileTime));
  EXPECT_FALSE(SystemTimeToFileTime(At(2023, 1, 1, 0, 0, 60), fileTime));
  EXPECT_FALSE(SystemTimeToFileTime(At(2023, 1, 1, 0, 0, 0, 1000), fileTime));
  EXPECT_FALSE(SystemTimeToFileTime(At(1600, 1, 1), fileTime));
  EXPECT_FALSE(SystemTimeToFileTime(At(30828, 1, 1), fileTime));
}

TEST(SystemTime, SecondsAreTruncatedTowardsZero) {
  std::int64_t seconds = 0;
  ASSERT_TRUE(SystemTimeToSeconds(At(2026, 11, 16, 0, 44, 40, 999), seconds));
  EXPECT_EQ(seconds, 1'794'789'880);
  ASSERT_TRUE(SystemTimeToSeconds(At(1969, 12, 31, 23, 59, 58, 500), seconds));
  EXPECT_EQ(seconds, -1);
  EXPECT_FALSE(SystemTimeToSeconds(At(2026, 11, 31), seconds));
}

}  // namespace
}  // namespace carvello
