// Samples from numbers to the bytes of a file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "cli/synth_settings.h"

namespace carvello {

// Appends `count` values, full scale 1.0, in the format; all little-endian, 8 bit signed. PCM values are rounded to the
// nearest and held at full scale. Returns how many lay beyond full scale and were cut; floats never are.
std::int64_t PackSamples(const double* values, std::size_t count, ESynthFormat format,
                         std::vector<std::uint8_t>& bytes);

}  // namespace carvello
