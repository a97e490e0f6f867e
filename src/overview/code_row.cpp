#include "overview/code_row.h"

#include <algorithm>

#include "spectrum/code_powers.h"

namespace carvello {

SCodeRow MakeCodes(const SRowPowers& powers, const SCellGrid& grid, std::size_t first, std::size_t end,
                   const SCodeRow& before, std::int64_t earlier) {
  const std::size_t cells = end - first;
  std::vector<float> mean(cells);
  std::vector<float> maximum(cells);
  for (std::size_t i = 0; i < cells; ++i) {
    const std::size_t bin = (first + i) * grid.nCellBins;
    for (std::size_t k = bin; k < bin + grid.nCellBins; ++k) {
      mean[i] = std::max(mean[i], powers.sum[k]);
      maximum[i] = std::max(maximum[i], powers.maximum[k]);
    }
  }
  SCodeRow codes{std::vector<std::uint8_t>(cells), std::vector<std::uint8_t>(cells)};
  LevelCodes(maximum.data(), cells, codes.maximum.data());
  std::int64_t count = powers.nTransforms;
  if (before.mean.size() == cells && earlier > 0) {
    AddCodePowers(before.mean.data(), cells, static_cast<float>(earlier), mean.data());
    for (std::size_t i = 0; i < cells; ++i) codes.maximum[i] = std::max(codes.maximum[i], before.maximum[i]);
    count += earlier;
  }
  for (float& power : mean) power /= static_cast<float>(std::max<std::int64_t>(count, 1));
  LevelCodes(mean.data(), cells, codes.mean.data());
  return codes;
}

}  // namespace carvello
