// What stands along the axes of a spectrum: round numbers of megahertz and decibels, and the times that a clock shows.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ui/view_span.h"

namespace carvello {

struct STick {
  double dAt = 0.0;
  std::string strText;  // empty for one between those with texts
  bool operator==(const STick&) const = default;
};

// At most `most` texts, from 1 on.
std::vector<STick> FrequencyTicks(const SSpan& hertz, int most);
std::vector<STick> LevelTicks(const SSpan& decibels, int most);
// Of seconds since `start`, which is in seconds since 1970 UTC. Days begin where the clock shown has midnight.
std::vector<STick> TimeTicks(const SSpan& seconds, std::int64_t start, bool utc, int most);

// Decimals of a megahertz that tell two frequencies apart which are `step` Hz from each other.
int MegahertzDecimals(double step);
// "7.100 MHz", as exact as a view of this many hertz a pixel can tell.
std::string FrequencyReading(double hertz, double step);
// The user's short date and the time of day, as exact as a view of this many seconds a pixel can tell; "z" behind UTC.
std::string TimeReading(double seconds, std::int64_t start, bool utc, double step);
// "12.5 s", "350 ms", "2 h 05 min": a length of time in few characters.
std::string LengthText(double seconds);
// "12.5 kHz", "350 Hz", "1.024 MHz"
std::string WidthText(double hertz);

}  // namespace carvello
