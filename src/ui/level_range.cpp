#include "ui/level_range.h"

#include <algorithm>
#include <cmath>

#include "spectrum/level_code.h"

namespace carvello {

namespace {

constexpr double kFloorPart = 0.3;    // so much of what is known is below the noise floor, or little above
constexpr double kTopPart = 0.9985;   // so much is below what is strong
constexpr double kBelowFloor = 5.0;   // dB that the darkest colour lies below the floor
constexpr double kAboveTop = 3.0;     // dB
constexpr double kLeastRange = 36.0;  // dB; less makes noise as bright as a station
constexpr double kSlack = 2.0;        // dB

std::uint8_t Quantile(const std::array<std::int64_t, 256>& counts, std::int64_t known, double part) {
  const auto wanted = static_cast<std::int64_t>(part * static_cast<double>(known));
  std::int64_t below = 0;
  for (std::size_t code = 1; code < counts.size(); ++code) {
    below += counts[code];
    if (below > wanted) return static_cast<std::uint8_t>(code);
  }
  return 255;
}

}  // namespace

SLevels HeldLevels(const SLevels& levels, const SLevels& before) {
  SLevels held = levels;
  held.dLow = std::clamp(held.dLow, kLowestShown, kHighestShown - kLeastLevels);
  held.dHigh = std::clamp(held.dHigh, kLowestShown + kLeastLevels, kHighestShown);
  if (held.dHigh - held.dLow >= kLeastLevels) return held;
  // Whichever was moved gives way to the other.
  if (held.dLow != before.dLow) {
    held.dLow = held.dHigh - kLeastLevels;
  } else {
    held.dHigh = held.dLow + kLeastLevels;
  }
  return held;
}

std::optional<SLevels> AutomaticLevels(const std::vector<std::uint8_t>& codes) {
  std::array<std::int64_t, 256> counts{};
  for (const std::uint8_t code : codes) ++counts[code];
  const std::int64_t known = static_cast<std::int64_t>(codes.size()) - counts[kUnknownLevel];
  if (known == 0) return std::nullopt;
  SLevels levels;
  levels.dLow = std::round(CodeLevel(Quantile(counts, known, kFloorPart)) - kBelowFloor);
  levels.dHigh =
      std::round(std::max(CodeLevel(Quantile(counts, known, kTopPart)) + kAboveTop, levels.dLow + kLeastRange));
  return HeldLevels(levels, levels);
}

bool IsWorthAChange(const SLevels& present, const SLevels& wanted) {
  return std::abs(present.dLow - wanted.dLow) > kSlack || std::abs(present.dHigh - wanted.dHigh) > kSlack;
}

std::array<std::uint32_t, 256> ColourTable(EPalette palette, const SLevels& levels) {
  const std::array<SColour, 256>& colours = PaletteColours(palette);
  std::array<std::uint32_t, 256> table{};
  for (std::size_t code = 1; code < table.size(); ++code) {
    const double part = (CodeLevel(static_cast<std::uint8_t>(code)) - levels.dLow) / (levels.dHigh - levels.dLow);
    const SColour& colour = colours[static_cast<std::size_t>(std::clamp(std::lround(part * 255.0), 0L, 255L))];
    table[code] = 0xFF000000U | static_cast<std::uint32_t>(colour.red) << 16U |
                  static_cast<std::uint32_t>(colour.green) << 8U | colour.blue;
  }
  return table;
}

}  // namespace carvello
