// Levels as bytes: pictures and tiles of whole recordings keep them so.
#pragma once

#include <cstddef>
#include <cstdint>

namespace carvello {

// 0 is "nothing known"; 1 to 255 are -150.0 to +2.4 dBFS in steps of 0.6 dB.
inline constexpr std::uint8_t kUnknownLevel = 0;
inline constexpr double kLowestLevel = -150.0;
inline constexpr double kLevelStep = 0.6;

// The nearest level of a power, full scale being 1.0; the lowest or the highest one beyond them. 1 of what is no
// number.
std::uint8_t LevelCode(float power) noexcept;
void LevelCodes(const float* power, std::size_t count, std::uint8_t* codes) noexcept;

// dBFS; minus infinity of 0.
double CodeLevel(std::uint8_t code) noexcept;

}  // namespace carvello
