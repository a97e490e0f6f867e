// What who thinks in kilohertz has typed into a field of megahertz.
#pragma once

#include <cstdint>
#include <optional>

namespace carvello {

// A frequency within the recorded band that the one given becomes when its megahertz are taken for kilohertz, or its
// hertz for kilohertz, as a pasted "6070" is; nothing when it lies in the band itself, or neither does. All in Hz.
std::optional<std::int64_t> MeantFrequency(std::int64_t frequency, std::int64_t centre, std::int64_t bandwidth);

}  // namespace carvello
