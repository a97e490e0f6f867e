// The forms in which a "signaltime" can stand.
#pragma once

#include <optional>
#include <string>

#include "input/calendar_time.h"

namespace carvello {

// A date, and behind it a time of day or nothing:
//   2023-04-15, 2023/04/15, 2023.04.15   year first
//   15.04.2023                           day first
//   15 Apr 2023, 15-April-2023, April 15, 2023
//   19:45, 19:45:10, 19:45:10.250, 7:45:10 PM, between "T" and "Z" too; fractions are cut off
// Nothing for any other text: 04/05/2023 has a month that only its writer knows. The fields may be no date that exists.
std::optional<SDateFields> ParseSignalTime(const std::string& text);

}  // namespace carvello
