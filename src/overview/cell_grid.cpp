#include "overview/cell_grid.h"

#include <array>

namespace carvello {

namespace {

// Sixteenths of a row: the middle; with it quarters; with them all.
constexpr std::array<std::int64_t, 16> kSixteenths = {8, 0, 4, 12, 2, 10, 6, 14, 1, 9, 5, 13, 3, 11, 7, 15};

}  // namespace

SCellGrid BaseGrid(std::int64_t frames) {
  constexpr auto kBins = static_cast<std::int64_t>(kBaseBins);
  const std::int64_t transforms = std::max<std::int64_t>((frames + kBins - 1) / kBins, 1);
  return {.nTransform = kBaseBins,
          .window = EWindow::Hann,
          .nRowFrames = kBins * ((transforms + kBaseRows - 1) / kBaseRows),
          .nFrames = frames};
}

std::int64_t StateTransforms(ERowState state, std::int64_t transforms) {
  switch (state) {
    case ERowState::Nothing:
      return 0;
    case ERowState::One:
      return 1;
    case ERowState::Four:
      return 4;
    case ERowState::Sixteen:
      return 16;
    case ERowState::Whole:
      break;
  }
  return transforms;
}

ERowState NextState(ERowState state, std::int64_t transforms) {
  switch (state) {
    case ERowState::Nothing:
      return transforms > 1 ? ERowState::One : ERowState::Whole;
    case ERowState::One:
      return transforms > 16 ? ERowState::Four : ERowState::Whole;
    case ERowState::Four:
      return ERowState::Sixteen;
    case ERowState::Sixteen:
    case ERowState::Whole:
      break;
  }
  return ERowState::Whole;
}

std::int64_t SparseTransform(std::int64_t index, std::int64_t transforms) {
  return transforms * kSixteenths[static_cast<std::size_t>(index)] / 16;
}

}  // namespace carvello
