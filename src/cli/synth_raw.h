// Made-up samples as numbers of any kind.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "recording/sample_kind.h"

namespace carvello {

// Appends `count` values, full scale 1.0, as numbers of the kind. Integers are rounded to the nearest and held at their
// ends. Returns how many lay beyond full scale and were cut; floats never are.
std::int64_t PackKind(const double* values, std::size_t count, const SSampleKind& kind,
                      std::vector<std::uint8_t>& bytes);

}  // namespace carvello
