// SGivenFacts: what the user says of a recording that its files do not tell, or tell wrongly.
#pragma once

#include <cstdint>
#include <optional>

#include "input/calendar_time.h"
#include "recording/sample_kind.h"

namespace carvello {

// A moment with what it has of fractions of a second.
struct SExactTime {
  std::int64_t nSeconds = 0;  // since 1970 UTC
  std::uint32_t nNanoseconds = 0;
  bool operator==(const SExactTime&) const = default;
};

// The zone that times without one are in.
struct STimeZone {
  bool bLocal = false;             // of this computer, with its daylight saving; otherwise
  std::int32_t nSecondsAhead = 0;  // of UTC
  bool operator==(const STimeZone&) const = default;
};

// Seconds since 1970 UTC of an existing calendar time that is in this zone.
std::int64_t SecondsIn(const SDateFields& fields, const STimeZone& zone);
// The moment at which clocks of one zone show what those of another showed at this one.
std::int64_t MovedToZone(std::int64_t seconds, const STimeZone& from, const STimeZone& to);

struct SGivenFacts {
  std::optional<std::uint32_t> nSampleRate;  // frames/s, above 0
  std::optional<std::int64_t> nCentre;       // Hz
  std::optional<SExactTime> start;
  std::optional<SSampleKind> kind;
  std::optional<STimeZone> zone;
  std::uint32_t nPart{};  // of a recording that has several, from 1; 0 for the first

  bool operator==(const SGivenFacts&) const = default;
  bool IsEmpty() const { return !nSampleRate && !nCentre && !start && !kind && !zone; }
};

}  // namespace carvello
