// SCellGrid: the cells that levels are kept for, and the transforms that each row of them is made of.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "spectrum/power_spectrum.h"

namespace carvello {

// The overview's own cells: this many bins, and at most this many rows.
inline constexpr std::size_t kBaseBins = 4096;
inline constexpr std::int64_t kBaseRows = 8192;

// A row is so many frames of the recording, counted from its beginning, and a cell of it so many bins of the transform.
// The transforms overlap by half, or by more where a row is shorter than that. Each stands with its middle in one row
// and nowhere else, so that it does not matter in what portions rows are made.
struct SCellGrid {
  std::size_t nTransform = kBaseBins;
  EWindow window = EWindow::Hann;
  std::size_t nCellBins = 1;    // a power of two
  std::int64_t nRowFrames = 1;  // a multiple of half a transform, or a part of it by a power of two
  std::int64_t nFrames = 0;     // of the recording
  bool operator==(const SCellGrid&) const = default;

  std::size_t Cells() const { return nTransform / nCellBins; }
  std::int64_t Rows() const { return (nFrames + nRowFrames - 1) / nRowFrames; }
  std::int64_t Hop() const { return std::min(nRowFrames, static_cast<std::int64_t>(nTransform / 2)); }
  // Of a row; fewer of the last.
  std::int64_t Transforms(std::int64_t row) const {
    const std::int64_t left = nFrames - row * nRowFrames;
    return left >= nRowFrames ? nRowFrames / Hop() : (left + Hop() - 1) / Hop();
  }
  // The first frame of a row's transform; those that would begin before the recording or end behind it are moved.
  std::int64_t Begin(std::int64_t row, std::int64_t transform) const {
    const auto length = static_cast<std::int64_t>(nTransform);
    const std::int64_t begin = row * nRowFrames + transform * Hop() + Hop() / 2 - length / 2;
    return std::clamp<std::int64_t>(begin, 0, std::max<std::int64_t>(nFrames - length, 0));
  }
};

// The grid of the overview itself.
SCellGrid BaseGrid(std::int64_t frames);

// How much of a row was looked at: so many of its transforms, or all. Each step holds the transforms of the one before.
enum class ERowState : std::uint8_t { Nothing, One, Four, Sixteen, Whole };
// Transforms of a row of so many that make up a state.
std::int64_t StateTransforms(ERowState state, std::int64_t transforms);
// The next step for a row of so many transforms: where there are few, no steps between.
ERowState NextState(ERowState state, std::int64_t transforms);
// The transform that is looked at as number `index` (0 to 15) when a row is looked at here and there: first the middle,
// then evenly between.
std::int64_t SparseTransform(std::int64_t index, std::int64_t transforms);

}  // namespace carvello
