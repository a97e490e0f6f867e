#include "cluster/json_numbers.h"

#include <nlohmann/json.hpp>
#include <stdexcept>
#include <utility>

namespace carvello {

std::int64_t WholeNumber(const nlohmann::json& json, std::int64_t least, std::int64_t most) {
  // One that is larger than any of 64 bits is a fraction to the parser.
  if (!json.is_number_integer()) throw std::invalid_argument("a number");
  const bool fits = json.is_number_unsigned() ? std::cmp_less_equal(json.get<std::uint64_t>(), most) &&
                                                    std::cmp_greater_equal(json.get<std::uint64_t>(), least)
                                              : json.get<std::int64_t>() >= least && json.get<std::int64_t>() <= most;
  if (!fits) throw std::invalid_argument("a number");
  return json.get<std::int64_t>();
}

}  // namespace carvello
