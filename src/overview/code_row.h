// SCodeRow: the levels of a row of cells as bytes, mean and maximum (spectrum/level_code.h).
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "overview/cell_grid.h"
#include "overview/row_maker.h"

namespace carvello {

struct SCodeRow {
  std::vector<std::uint8_t> mean;
  std::vector<std::uint8_t> maximum;
};

// The codes of the cells from `first` up to `end`: of the transforms in `powers` and, unless these are all of the row,
// the `earlier` ones behind `before`, which are known as codes only. That is near enough for a row that is not
// complete.
SCodeRow MakeCodes(const SRowPowers& powers, const SCellGrid& grid, std::size_t first, std::size_t end,
                   const SCodeRow& before, std::int64_t earlier);

}  // namespace carvello
