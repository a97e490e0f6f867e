#include "support/system_time.h"

#include <chrono>
#include <ctime>

#include "support/hresult.h"
#include "support/platform.h"
#include "support/text.h"

namespace carvello {

namespace {

namespace chr = std::chrono;

using FileTicks = chr::duration<std::int64_t, std::ratio<1, 10'000'000>>;

constexpr chr::sys_days kFileTimeEpoch = chr::year{1601} / chr::January / 1;
constexpr chr::sys_days kUnixEpoch{};
constexpr std::int64_t kUnixEpochAsFileTime = FileTicks(kUnixEpoch - kFileTimeEpoch).count();
// What fits the signed 64 bits of a file time, in whole years, and a calendar record's first year.
constexpr int kFirstYear = 1601;
constexpr int kLastYear = 30827;

[[noreturn]] void ThrowNoCalendarTime(std::int64_t seconds) {
  ThrowHResult(kInvalidArgument, Format("The time value %lld has no calendar date", static_cast<long long>(seconds)));
}

}  // namespace

std::int64_t CurrentTime() {
  return chr::floor<chr::seconds>(chr::system_clock::now()).time_since_epoch().count();
}

unsigned CurrentMilliseconds() {
  const auto now = chr::system_clock::now();
  return static_cast<unsigned>(chr::floor<chr::milliseconds>(now - chr::floor<chr::seconds>(now)).count());
}

std::string FormatUtc(const char* format, std::int64_t seconds) {
  std::tm fields{};
  if (!platform::UtcTime(seconds, fields)) ThrowNoCalendarTime(seconds);
  return platform::FormatTime(format, fields);
}

std::string FormatLocal(const char* format, std::int64_t seconds) {
  std::tm fields{};
  if (!platform::LocalTime(seconds, fields)) ThrowNoCalendarTime(seconds);
  return platform::FormatTime(format, fields);
}

bool SystemTimeToFileTime(const SYSTEMTIME& time, std::int64_t& fileTime) {
  if (time.wYear < kFirstYear || time.wYear > kLastYear) return false;
  if (time.wHour > 23 || time.wMinute > 59 || time.wSecond > 59 || time.wMilliseconds > 999) return false;
  // Before chrono, which keeps 8 bits of a month and a day.
  if (time.wMonth > 12 || time.wDay > 31) return false;
  const chr::year_month_day date{chr::year{time.wYear}, chr::month{time.wMonth}, chr::day{time.wDay}};
  if (!date.ok()) return false;
  const auto sinceEpoch = chr::sys_days(date) - kFileTimeEpoch + chr::hours(time.wHour) + chr::minutes(time.wMinute) +
                          chr::seconds(time.wSecond) + chr::milliseconds(time.wMilliseconds);
  fileTime = FileTicks(sinceEpoch).count();
  return true;
}

bool FileTimeToSystemTime(std::int64_t fileTime, SYSTEMTIME& time) {
  if (fileTime < 0) return false;
  const FileTicks ticks(fileTime);
  const auto days = chr::floor<chr::days>(ticks);
  const chr::year_month_day date{kFileTimeEpoch + days};
  const chr::hh_mm_ss<chr::milliseconds> clock{chr::floor<chr::milliseconds>(ticks - days)};
  time.wYear = static_cast<std::uint16_t>(static_cast<int>(date.year()));
  time.wMonth = static_cast<std::uint16_t>(static_cast<unsigned>(date.month()));
  time.wDay = static_cast<std::uint16_t>(static_cast<unsigned>(date.day()));
  time.wDayOfWeek = static_cast<std::uint16_t>(chr::weekday(kFileTimeEpoch + days).c_encoding());
  time.wHour = static_cast<std::uint16_t>(clock.hours().count());
  time.wMinute = static_cast<std::uint16_t>(clock.minutes().count());
  time.wSecond = static_cast<std::uint16_t>(clock.seconds().count());
  time.wMilliseconds = static_cast<std::uint16_t>(clock.subseconds().count());
  return true;
}

bool SystemTimeToSeconds(const SYSTEMTIME& time, std::int64_t& seconds) {
  std::int64_t fileTime = 0;
  if (!SystemTimeToFileTime(time, fileTime)) return false;
  seconds = (fileTime - kUnixEpochAsFileTime) / FileTicks::period::den;
  return true;
}

}  // namespace carvello
