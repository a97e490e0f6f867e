// Letters as dots, for pictures: a fixed font of 7 by 13.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace carvello {

inline constexpr std::int64_t kGlyphWidth = 7;
inline constexpr std::int64_t kGlyphHeight = 13;
inline constexpr std::int64_t kGlyphBaseline = 11;  // rows above the line that letters stand on

// A row of dots a byte, the leftmost one in the highest bit.
using SmallGlyph = std::array<std::uint8_t, kGlyphHeight>;

// Of a character of Latin-1; a question mark's of any other.
const SmallGlyph& GlyphOf(char16_t character);

}  // namespace carvello
