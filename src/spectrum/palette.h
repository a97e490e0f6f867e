// The colours of levels in pictures.
#pragma once

#include <array>
#include <cstdint>

namespace carvello {

enum class EPalette {
  Viridis,  // told apart by nearly all eyes, and even: the same step in level looks the same anywhere
  Turbo,    // many hues
  Grey,
};

struct SColour {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;
};

// From the weakest to the strongest: in every palette the luminance never falls. Turbo as it was published falls from
// its middle on, to a dark red; here its hues rise in lightness to the end.
const std::array<SColour, 256>& PaletteColours(EPalette palette);

}  // namespace carvello
