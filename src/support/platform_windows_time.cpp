// Calendar times of Windows.
#include "support/platform.h"

// clang-format off
#include <windows.h>
// clang-format on

#include <cstring>
#include <cwchar>

#include "support/platform_windows_text.h"

namespace carvello::platform {

namespace {

::SYSTEMTIME SystemTimeOf(const std::tm& fields) {
  ::SYSTEMTIME time{};
  time.wYear = static_cast<WORD>(fields.tm_year + 1900);
  time.wMonth = static_cast<WORD>(fields.tm_mon + 1);
  time.wDayOfWeek = static_cast<WORD>(fields.tm_wday);
  time.wDay = static_cast<WORD>(fields.tm_mday);
  time.wHour = static_cast<WORD>(fields.tm_hour);
  time.wMinute = static_cast<WORD>(fields.tm_min);
  time.wSecond = static_cast<WORD>(fields.tm_sec);
  return time;
}

}  // namespace

TimeZoneRecord GetTimeZoneRecord() {
  TIME_ZONE_INFORMATION zone{};
  TimeZoneRecord record;
  static_assert(sizeof(zone) == sizeof(record.bytes));
  record.nStatus = GetTimeZoneInformation(&zone);
  std::memcpy(record.bytes.data(), &zone, sizeof(zone));
  return record;
}

bool UtcTime(std::int64_t seconds, std::tm& out) {
  const __time64_t time = seconds;
  return _gmtime64_s(&out, &time) == 0;
}

bool LocalTime(std::int64_t seconds, std::tm& out) {
  const __time64_t time = seconds;
  return _localtime64_s(&out, &time) == 0;
}

std::int64_t UtcSeconds(const std::tm& fields) {
  std::tm copy = fields;
  return _mkgmtime64(&copy);
}

std::int64_t LocalSeconds(const std::tm& fields) {
  std::tm copy = fields;
  return _mktime64(&copy);
}

// No part of the program sets another locale than the C runtime's first one, which is "C".
std::string FormatTime(const char* format, const std::tm& fields) {
  std::array<wchar_t, 128> text{};
  const std::size_t length = std::wcsftime(text.data(), text.size(), Wide(format).c_str(), &fields);
  if (length == text.size()) return {};  // full without a terminating zero: not every runtime gives up
  return Narrow({text.data(), length});
}

std::string ShortDate(const std::tm& fields) {
  const ::SYSTEMTIME time = SystemTimeOf(fields);
  std::array<wchar_t, 128> text{};
  GetDateFormatW(LOCALE_USER_DEFAULT, DATE_SHORTDATE, &time, nullptr, text.data(), static_cast<int>(text.size()));
  return Narrow(text.data());
}

std::string LocaleTime(const std::tm& fields) {
  const ::SYSTEMTIME time = SystemTimeOf(fields);
  std::array<wchar_t, 128> text{};
  GetTimeFormatW(LOCALE_USER_DEFAULT, 0, &time, nullptr, text.data(), static_cast<int>(text.size()));
  return Narrow(text.data());
}

}  // namespace carvello::platform
