#include "input/given_facts.h"

#include <ctime>

#include "support/platform.h"

namespace carvello {

std::int64_t SecondsIn(const SDateFields& fields, const STimeZone& zone) {
  const std::tm broken = BrokenDownTime(fields);
  return zone.bLocal ? platform::LocalSeconds(broken) : platform::UtcSeconds(broken) - zone.nSecondsAhead;
}

std::int64_t MovedToZone(std::int64_t seconds, const STimeZone& from, const STimeZone& to) {
  std::tm broken{};
  const bool known =
      from.bLocal ? platform::LocalTime(seconds, broken) : platform::UtcTime(seconds + from.nSecondsAhead, broken);
  if (!known) return seconds;
  return SecondsIn(
      {broken.tm_year + 1900, broken.tm_mon + 1, broken.tm_mday, broken.tm_hour, broken.tm_min, broken.tm_sec}, to);
}

}  // namespace carvello
