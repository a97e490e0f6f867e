// The first stage's filter: a sinc under a Kaiser window (J. F. Kaiser, "Nonrecursive digital filter design using the
// I0-sinh window function", 1974), as gains of a frame's bins.
#pragma once

#include <cstdint>
#include <vector>

#include "spectrum/band_plan.h"

namespace carvello {

// The gains of `count` bins from the filter's centre on, 1 at the centre; those on the other side are the same. By
// operations only that every system rounds in one way.
std::vector<double> FirstFilterGains(const SBandPlan& plan, std::int64_t count);

}  // namespace carvello
