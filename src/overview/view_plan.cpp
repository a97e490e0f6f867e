#include "overview/view_plan.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "overview/base_levels.h"
#include "spectrum/code_powers.h"

namespace carvello {

namespace {

constexpr std::size_t kShortest = 64;
constexpr std::size_t kLongest = 1'048'576;
// Frames in view up to which every one of them is looked at; beyond, sixteen transforms a row are all.
constexpr double kEveryFrame = 0x1p30;
// A row need not begin more often than so many times in a transform: the next one would show the same.
constexpr std::size_t kRowsPerTransform = 16;

std::size_t PowerOfTwo(double wanted) {
  return std::bit_ceil(static_cast<std::size_t>(
      std::clamp(std::ceil(wanted), static_cast<double>(kShortest), static_cast<double>(kLongest))));
}

// As long as the columns of pixels want; where the rows want shorter ones, as much too long for these as too short for
// those, so that a picture is equally sharp both ways.
std::size_t TransformFor(double columnWants, double rowWants) {
  return PowerOfTwo(columnWants <= rowWants ? columnWants : std::sqrt(columnWants * rowWants));
}

}  // namespace

bool IsSound(const SSpectrumView& view) {
  constexpr double kFarthest = 1e15;
  return view.nColumns > 0 && view.nRows > 0 && view.dFrames > 0 && view.dHighFrequency > view.dLowFrequency &&
         std::abs(view.dFirstFrame) < kFarthest && view.dFrames < kFarthest &&
         std::abs(view.dLowFrequency) < kFarthest && std::abs(view.dHighFrequency) < kFarthest;
}

std::pair<std::int64_t, std::int64_t> RowsOfPixel(const SSpectrumView& view, int pixel, std::int64_t rowFrames,
                                                  std::int64_t frames) {
  const auto length = static_cast<double>(rowFrames);
  const auto total = static_cast<double>(frames);
  const std::int64_t rowCount = (frames + rowFrames - 1) / rowFrames;
  const auto rows = static_cast<double>(rowCount);
  const double lastMiddle = ((rows - 1) * length + total) / 2;  // the last row ends with the recording
  const auto middlesBefore = [&](double frame) {
    return rows > 0 && lastMiddle < frame ? rows : std::clamp(std::ceil(frame / length - 0.5), 0.0, rows);
  };
  const double step = view.dFrames / view.nRows;
  const double begin = view.dFirstFrame + pixel * step;
  const double end = view.dFirstFrame + (pixel + 1) * step;
  double first = middlesBefore(begin);
  double last = middlesBefore(end);
  if (const double middle = (begin + end) / 2; first >= last && middle >= 0 && middle < total) {
    first = std::floor(middle / length);
    last = first + 1;
  }
  return {static_cast<std::int64_t>(first), static_cast<std::int64_t>(last)};
}

SViewPlan PlanView(const SSpectrumView& view, std::int64_t frames, double rate) {
  SViewPlan plan;
  plan.grid = BaseGrid(frames);
  if (!IsSound(view) || frames <= 0 || !(rate > 0)) return plan;
  const double pixelFrames = view.dFrames / view.nRows;
  const double columnWants = rate * view.nColumns / (view.dHighFrequency - view.dLowFrequency);
  const auto baseRow = static_cast<double>(plan.grid.nRowFrames);
  // Rows of the base may be somewhat larger than a pixel, before it is worth while to read the recording for it.
  constexpr double kNearEnough = 1.25;
  const bool window = view.window == plan.grid.window;
  const bool length = view.nTransform == kBaseBins ||
                      (view.nTransform == 0 && columnWants <= kNearEnough * static_cast<double>(kBaseBins));
  plan.bDetail = !window || !length || pixelFrames * kNearEnough < baseRow;
  if (plan.bDetail) {
    SCellGrid& grid = plan.grid;
    grid.window = view.window;
    grid.nTransform = view.nTransform != 0 ? PowerOfTwo(static_cast<double>(view.nTransform))
                                           : TransformFor(columnWants, pixelFrames);
    const double binsPerColumn = static_cast<double>(grid.nTransform) / columnWants;
    grid.nCellBins =
        std::bit_floor(static_cast<std::size_t>(std::clamp(binsPerColumn, 1.0, static_cast<double>(grid.nTransform))));
    const auto shortestRow = grid.nTransform / kRowsPerTransform;
    const auto shortest = static_cast<double>(shortestRow);
    grid.nRowFrames = static_cast<std::int64_t>(
        std::bit_floor(static_cast<std::uint64_t>(std::clamp(pixelFrames, shortest, 0x1p40))));
    const bool few = grid.nRowFrames / grid.Hop() <= StateTransforms(ERowState::Sixteen, 0);
    plan.target = few || view.dFrames <= kEveryFrame ? ERowState::Whole : ERowState::Sixteen;
  } else {
    double coarser = 4 * baseRow;
    while (plan.nLevel + 1 < CBaseLevels::kLevels && coarser <= pixelFrames) {
      ++plan.nLevel;
      coarser *= 4;
    }
  }
  plan.nFirstRow = RowsOfPixel(view, 0, plan.grid.nRowFrames, frames).first;
  plan.nEndRow = RowsOfPixel(view, view.nRows - 1, plan.grid.nRowFrames, frames).second;
  const CColumnCells columns(plan.grid.nTransform, plan.grid.nCellBins, rate, view.dLowFrequency, view.dHighFrequency,
                             view.nColumns);
  plan.nFirstCell = columns.FirstCell();
  plan.nEndCell = columns.EndCell();
  if (plan.nFirstRow >= plan.nEndRow || plan.nFirstCell >= plan.nEndCell) plan.bDetail = false;
  return plan;
}

}  // namespace carvello
