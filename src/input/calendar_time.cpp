#include "input/calendar_time.h"

#include <chrono>
#include <cmath>
#include <ctime>

#include "support/hresult.h"
#include "support/platform.h"
#include "support/text.h"

namespace carvello {

namespace {

constexpr std::int64_t kLastSecond = 253'402'300'799;  // of the year 9999
constexpr double kTicksPerSecond = 1e7;                // of a file time
constexpr double kMostSeconds = 1e11;                  // 3,000 years: no recording lasts that long

std::string Text(const SDateFields& fields) {
  return Format("%04d-%02d-%02d %02d:%02d:%02d", fields.nYear, fields.nMonth, fields.nDay, fields.nHour, fields.nMinute,
                fields.nSecond);
}

void Check(const SDateFields& fields, const std::string& where) {
  const auto within = [](int value, int least, int most) { return value >= least && value <= most; };
  if (fields.nYear < 1970 || !within(fields.nMonth, 1, 12) || !within(fields.nDay, 1, 31) ||
      !within(fields.nHour, 0, 23) || !within(fields.nMinute, 0, 59) || !within(fields.nSecond, 0, 59)) {
    ThrowHResult(kFailure, Format("%s %s is no date from 1970 on", where.c_str(), Text(fields).c_str()));
  }
  // C libraries take 30 February for 2 March without a word.
  const std::chrono::year_month_day date{std::chrono::year{fields.nYear},
                                         std::chrono::month{static_cast<unsigned>(fields.nMonth)},
                                         std::chrono::day{static_cast<unsigned>(fields.nDay)}};
  if (!date.ok()) {
    ThrowHResult(kInvalidArgument, Format("%s %s is a day that does not exist", where.c_str(), Text(fields).c_str()));
  }
}

}  // namespace

std::tm BrokenDownTime(const SDateFields& fields) {
  std::tm broken{};
  broken.tm_year = fields.nYear - 1900;
  broken.tm_mon = fields.nMonth - 1;
  broken.tm_mday = fields.nDay;
  broken.tm_hour = fields.nHour;
  broken.tm_min = fields.nMinute;
  broken.tm_sec = fields.nSecond;
  broken.tm_isdst = -1;
  return broken;
}

std::int64_t UtcCalendarTime(const SDateFields& fields, const std::string& where) {
  Check(fields, where);
  return platform::UtcSeconds(BrokenDownTime(fields));
}

std::int64_t LocalCalendarTime(const SDateFields& fields, const std::string& where) {
  Check(fields, where);
  const std::int64_t seconds = platform::LocalSeconds(BrokenDownTime(fields));
  if (seconds < 0) {
    ThrowHResult(kInvalidArgument, Format("%s %s is no local time from 1970 on", where.c_str(), Text(fields).c_str()));
  }
  return seconds;
}

SYSTEMTIME UtcSystemTime(std::int64_t seconds, const std::string& where) {
  std::tm broken{};
  if (seconds < 0 || seconds > kLastSecond || !platform::UtcTime(seconds, broken)) {
    ThrowHResult(kInvalidArgument, Format("%s %lld (seconds since 1970) has no calendar date", where.c_str(),
                                          static_cast<long long>(seconds)));
  }
  SYSTEMTIME time;
  time.wYear = static_cast<std::uint16_t>(broken.tm_year + 1900);
  time.wMonth = static_cast<std::uint16_t>(broken.tm_mon + 1);
  time.wDayOfWeek = static_cast<std::uint16_t>(broken.tm_wday);
  time.wDay = static_cast<std::uint16_t>(broken.tm_mday);
  time.wHour = static_cast<std::uint16_t>(broken.tm_hour);
  time.wMinute = static_cast<std::uint16_t>(broken.tm_min);
  time.wSecond = static_cast<std::uint16_t>(broken.tm_sec);
  return time;
}

SYSTEMTIME AddSeconds(const SYSTEMTIME& time, double seconds) {
  std::int64_t ticks = 0;
  SYSTEMTIME moved;
  if (!(std::abs(seconds) < kMostSeconds) || !SystemTimeToFileTime(time, ticks) ||
      !FileTimeToSystemTime(ticks + std::llround(seconds * kTicksPerSecond), moved)) {
    return time;
  }
  return moved;
}

std::string NeverWritten(const std::string& where) {
  return where + " was never written, 1970-01-01 taken";
}

std::string DateText(const SYSTEMTIME& time) {
  return Text({time.wYear, time.wMonth, time.wDay, time.wHour, time.wMinute, time.wSecond});
}

}  // namespace carvello
