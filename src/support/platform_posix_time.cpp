// Calendar times of POSIX systems.
#include <clocale>
#include <ctime>
#include <memory>
#include <type_traits>

#include "support/mutex.h"
#include "support/platform.h"
#include "support/text.h"

namespace carvello::platform {

namespace {

constexpr std::int64_t kDay = 86'400;

// ---- locales

struct FreeLocale {
  void operator()(locale_t locale) const { freelocale(locale); }
};
using Locale = std::unique_ptr<std::remove_pointer_t<locale_t>, FreeLocale>;

Locale OpenLocale(const char* name) {
  return Locale(newlocale(LC_ALL_MASK, name, nullptr));
}

std::string FormatIn(const Locale& locale, const char* format, const std::tm& fields) {
  std::array<char, 128> text{};
  return {text.data(), strftime_l(text.data(), text.size(), format, &fields, locale.get())};
}

// The user may name a locale that is not installed; then the C locale serves.
Locale UserLocale() {
  Locale user = OpenLocale("");
  return user ? std::move(user) : OpenLocale("C");
}

// ---- the time zone in force

// The system keeps the names of zones in a list of its own, to which every conversion may add, also one of UTC. Whoever
// reads a name has been here behind the thread that added it.
CMutex s_zoneLock;

// Seconds since 1970 of fields in UTC, which are brought within their ranges.
std::int64_t NormaliseUtc(std::tm& fields) {
  const CLockGuard guard(s_zoneLock);
  return timegm(&fields);
}

struct ZoneMoment {
  std::int64_t nOffset = 0;  // seconds east of UTC
  bool bDaylight = false;
  std::string strName;

  bool operator==(const ZoneMoment&) const = default;
};

ZoneMoment MomentAt(std::int64_t seconds) {
  std::tm fields{};
  if (!LocalTime(seconds, fields)) return {};
  return {fields.tm_gmtoff, fields.tm_isdst > 0, fields.tm_zone == nullptr ? "" : fields.tm_zone};
}

// The first second of `after`'s rule, which is not yet in force at `before`.
std::int64_t FindTransition(std::int64_t before, std::int64_t after) {
  const ZoneMoment old = MomentAt(before);
  while (after - before > 1) {
    const std::int64_t middle = before + (after - before) / 2;
    (MomentAt(middle) == old ? before : after) = middle;
  }
  return after;
}

// One side of a zone's year: the rule, and when it begins as the rule before it shows the time.
struct Season {
  bool bFound = false;
  ZoneMoment moment;
  std::tm begin{};
};

// A record of the Windows layout, filled front to back.
class CRecordWriter {
 public:
  explicit CRecordWriter(std::array<std::uint8_t, 172>& bytes) : m_pNext(bytes.data()) {}

  void Number16(int value) {
    *m_pNext++ = static_cast<std::uint8_t>(value & 0xFF);
    *m_pNext++ = static_cast<std::uint8_t>((value >> 8) & 0xFF);
  }

  void Number32(std::int64_t value) {
    Number16(static_cast<int>(value & 0xFFFF));
    Number16(static_cast<int>((value >> 16) & 0xFFFF));
  }

  void Name(const std::string& name) {
    constexpr std::size_t kCharacters = 32;
    std::u16string wide = Utf8ToUtf16(name);
    wide.resize(kCharacters, u'\0');
    wide.back() = u'\0';
    for (const char16_t character : wide) Number16(character);
  }

  // Month, week of the month (5 is the last) and day of the week, as a rule that holds every year; all zero where no
  // season changes.
  void Date(const Season& season) {
    const std::tm& begin = season.begin;
    Number16(0);
    Number16(season.bFound ? begin.tm_mon + 1 : 0);
    Number16(season.bFound ? begin.tm_wday : 0);
    Number16(season.bFound ? WeekOf(begin) : 0);
    Number16(season.bFound ? begin.tm_hour : 0);
    Number16(season.bFound ? begin.tm_min : 0);
    Number16(season.bFound ? begin.tm_sec : 0);
    Number16(0);
  }

 private:
  static int WeekOf(const std::tm& day) {
    std::tm weekLater = day;
    weekLater.tm_mday += 7;
    NormaliseUtc(weekLater);
    const bool isLast = weekLater.tm_mon != day.tm_mon;
    return isLast ? 5 : (day.tm_mday - 1) / 7 + 1;
  }

  std::uint8_t* m_pNext;
};

}  // namespace

TimeZoneRecord GetTimeZoneRecord() {
  const auto now = static_cast<std::int64_t>(std::time(nullptr));
  const ZoneMoment present = MomentAt(now);
  std::tm yearStart{};
  UtcTime(now + present.nOffset, yearStart);
  yearStart.tm_mon = 0;
  yearStart.tm_mday = 1;
  yearStart.tm_hour = yearStart.tm_min = yearStart.tm_sec = 0;

  Season standard;
  Season daylight;
  const std::int64_t first = UtcSeconds(yearStart) - present.nOffset;
  for (std::int64_t day = first; day < first + 366 * kDay; day += kDay) {
    const ZoneMoment before = MomentAt(day);
    const ZoneMoment after = MomentAt(day + kDay);
    if (before.bDaylight == after.bDaylight) continue;
    Season& season = after.bDaylight ? daylight : standard;
    season.bFound = true;
    season.moment = after;
    UtcTime(FindTransition(day, day + kDay) + before.nOffset, season.begin);
  }

  TimeZoneRecord record;
  if (standard.bFound && daylight.bFound) {
    record.nStatus = present.bDaylight ? 2 : 1;
  } else {
    // No seasons this year: one rule, which is the standard time whatever the zone calls it.
    standard = daylight = Season{false, present, {}};
  }
  CRecordWriter writer(record.bytes);
  writer.Number32(-standard.moment.nOffset / 60);
  writer.Name(standard.moment.strName);
  writer.Date(standard);
  writer.Number32(0);
  writer.Name(daylight.moment.strName);
  writer.Date(daylight);
  // Windows counts an hour of daylight time even for zones that have none.
  writer.Number32(daylight.bFound ? (standard.moment.nOffset - daylight.moment.nOffset) / 60 : -60);
  return record;
}

bool UtcTime(std::int64_t seconds, std::tm& out) {
  const std::time_t time = seconds;
  const CLockGuard guard(s_zoneLock);
  return gmtime_r(&time, &out) != nullptr;
}

bool LocalTime(std::int64_t seconds, std::tm& out) {
  const std::time_t time = seconds;
  const CLockGuard guard(s_zoneLock);
  return localtime_r(&time, &out) != nullptr;
}

std::int64_t UtcSeconds(const std::tm& fields) {
  std::tm copy = fields;
  return NormaliseUtc(copy);
}

// Not by mktime: in an hour that comes twice it chooses by what it was asked before. Here the first one is meant, and
// an hour that is left out counts by the rule in front of it.
std::int64_t LocalSeconds(const std::tm& fields) {
  const std::int64_t wall = UtcSeconds(fields);
  const std::int64_t before = MomentAt(wall - kDay).nOffset;
  const std::int64_t behind = MomentAt(wall + kDay).nOffset;
  const bool onlyBehind = MomentAt(wall - before).nOffset != before && MomentAt(wall - behind).nOffset == behind;
  return wall - (onlyBehind ? behind : before);
}

std::string FormatTime(const char* format, const std::tm& fields) {
  return FormatIn(OpenLocale("C"), format, fields);
}

std::string ShortDate(const std::tm& fields) {
  return FormatIn(UserLocale(), "%x", fields);
}

std::string LocaleTime(const std::tm& fields) {
  return FormatIn(UserLocale(), "%X", fields);
}

}  // namespace carvello::platform
