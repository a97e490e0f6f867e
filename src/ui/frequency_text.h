// Frequencies as the frequency field shows and reads them: digits in fixed places, "_____.___.___" when empty, in
// groups of MHz, kHz and Hz.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace carvello {

inline constexpr std::string_view kFrequencyMask = "ddddd.ddd.ddd";  // d: a place for a digit
inline constexpr std::string_view kFrequencyTemplate = "_____.___.___";

// Whether a text fits the mask. A blank or an underscore is a place without a digit.
bool IsFrequencyFieldText(std::string_view text);

// The template filled with the number's digits from the right: 7100000 gives "____7.100.000". Leading digits beyond the
// eleven places are lost.
std::string FrequencyTemplateText(std::uint64_t frequency);

// The frequency in Hz of a text as the field shows it: an empty place counts as 0, an empty text is 0, and anything
// else than a digit, a point, a blank or an underscore ends the number.
std::int64_t ReadFrequencyText(std::string_view text);

// A field text whose MHz group ends in empty places, with that group's digits moved to its right end.
std::string AlignMegahertz(std::string_view text);

// A frequency as people write one elsewhere: "7.1 MHz", "7100 kHz", "7100000", "7,100,000 Hz", "____7.100.000". Without
// a unit, whole digits are Hz and one point or comma separates MHz from their fraction, as it does in the field.
// Nothing for other texts, negative values and what has no place in the field.
std::optional<std::int64_t> ReadFrequency(std::string_view text);

}  // namespace carvello
