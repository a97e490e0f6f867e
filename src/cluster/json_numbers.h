// Whole numbers of JSON, as plans and manifests hold them.
#pragma once

#include <cstdint>
#include <limits>
#include <nlohmann/json_fwd.hpp>

namespace carvello {

// Raises std::invalid_argument for what is no whole number, or none from `least` to `most`.
std::int64_t WholeNumber(const nlohmann::json& json, std::int64_t least = 0,
                         std::int64_t most = std::numeric_limits<std::int64_t>::max());

}  // namespace carvello
