// Calendar times: texts in UTC and local time, and the SYSTEMTIME record that other recording programs write.
#pragma once

#include <cstdint>
#include <string>

namespace carvello {

// The Windows calendar record as it stands in files: eight 16-bit little-endian numbers, 16 bytes.
struct SYSTEMTIME {
  std::uint16_t wYear = 0;
  std::uint16_t wMonth = 0;      // 1 to 12
  std::uint16_t wDayOfWeek = 0;  // 0 is Sunday
  std::uint16_t wDay = 0;
  std::uint16_t wHour = 0;
  std::uint16_t wMinute = 0;
  std::uint16_t wSecond = 0;
  std::uint16_t wMilliseconds = 0;
};

// Now, in whole seconds since 1970 UTC, and the milliseconds of the present second.
std::int64_t CurrentTime();
unsigned CurrentMilliseconds();

// strftime of the UTC or local breakdown of `seconds`. Raises the invalid-argument error (ThrowHResult) when the value
// has no breakdown; gives an empty text when the result has more than 127 characters.
std::string FormatUtc(const char* format, std::int64_t seconds);
std::string FormatLocal(const char* format, std::int64_t seconds);

// File time: 100-nanosecond units since 1 January 1601. Nothing is range-checked but the fields of the calendar: false
// when they name no existing time.
bool SystemTimeToFileTime(const SYSTEMTIME& time, std::int64_t& fileTime);
bool FileTimeToSystemTime(std::int64_t fileTime, SYSTEMTIME& time);
// Whole seconds since 1970 (truncated towards zero), both ends taken as file times. False as above.
bool SystemTimeToSeconds(const SYSTEMTIME& time, std::int64_t& seconds);

}  // namespace carvello
