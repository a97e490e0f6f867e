// Calendar times as recording programs leave them in files and file names.
#pragma once

#include <cstdint>
#include <ctime>
#include <string>

#include "support/system_time.h"

namespace carvello {

// Records and names that tell no time hold zeros, or the first day of some calendar. No recording is older.
inline constexpr int kFirstWrittenYear = 1900;

struct SDateFields {
  int nYear = 0;
  int nMonth = 0;  // 1 to 12
  int nDay = 0;
  int nHour = 0;
  int nMinute = 0;
  int nSecond = 0;
};

// As the system's calendar takes them, which finds out whether there is daylight saving.
std::tm BrokenDownTime(const SDateFields& fields);

// Seconds since 1970 UTC of fields that a file gives in UTC, or in local time with daylight saving as the system knows
// it. `where` names the place in the file for the error text. Raises the failure error for a year before 1970 or a
// field out of its range, the invalid-argument error for a day that its month does not have.
std::int64_t UtcCalendarTime(const SDateFields& fields, const std::string& where);
std::int64_t LocalCalendarTime(const SDateFields& fields, const std::string& where);

// The UTC calendar record of a time. Raises the invalid-argument error for a time before 1970 or behind the year 9999.
SYSTEMTIME UtcSystemTime(std::int64_t seconds, const std::string& where);

// The record moved on by seconds with their fraction; unchanged when it is no date, or would be none.
SYSTEMTIME AddSeconds(const SYSTEMTIME& time, double seconds);

// What the user is told of a start that was never written.
std::string NeverWritten(const std::string& where);

// "2023-04-15 19:45:10", also for fields that are no date.
std::string DateText(const SYSTEMTIME& time);

}  // namespace carvello
