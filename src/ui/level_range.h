// From the levels of a picture to its colours.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "spectrum/palette.h"

namespace carvello {

struct SLevels {
  double dLow = -120.0;  // dBFS
  double dHigh = -40.0;
  bool operator==(const SLevels&) const = default;
};

inline constexpr double kLowestShown = -150.0;
inline constexpr double kHighestShown = 10.0;
inline constexpr double kLeastLevels = 6.0;  // between the two

// Held within what can be shown, the low one below the high one.
SLevels HeldLevels(const SLevels& levels, const SLevels& before);

// From a little below the noise floor to a little above the strongest of what is known, as whole decibels; nothing
// where nothing is known. `codes` are level codes (spectrum/level_code.h).
std::optional<SLevels> AutomaticLevels(const std::vector<std::uint8_t>& codes);
// Whether the new levels are far enough from the present ones to be worth a change of all colours.
bool IsWorthAChange(const SLevels& present, const SLevels& wanted);

// 0xAARRGGBB for each level code; the code of what is not known is wholly transparent.
std::array<std::uint32_t, 256> ColourTable(EPalette palette, const SLevels& levels);

}  // namespace carvello
