// Bandwidths as the dialog writes them and as users type them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace carvello {

// Up to 1000 kHz shorter than FormatFrequency: "1000 kHz", "12.5 kHz", "300 Hz"; above that the same, "2 MHz".
std::string BandwidthText(std::uint32_t bandwidth);

// Hz of "12.5k", "10 kHz", "12500 Hz", "1.2M" and the like, in any case, with a point or a comma. Without a unit, what
// is below 1000 is in kHz and the rest in Hz: "10" is 10 kHz, "12500" is 12.5 kHz. Nothing for other texts, fractions
// of 1 Hz, and what is beyond 32 bits.
std::optional<std::uint32_t> ParseBandwidth(std::string_view text);

}  // namespace carvello
