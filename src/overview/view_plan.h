// SViewPlan: what a view is made of: the overview, or cells of its own that are computed from the recording.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

#include "overview/cell_grid.h"
#include "overview/spectrum_view.h"

namespace carvello {

struct SViewPlan {
  bool bDetail = false;
  SCellGrid grid;              // the base grid where there is no detail
  int nLevel = 0;              // of the base levels, coarse enough for the view, none of its rows more than a pixel
  std::int64_t nFirstRow = 0;  // of the grid's rows, what is in view
  std::int64_t nEndRow = 0;
  std::size_t nFirstCell = 0;  // of its cells
  std::size_t nEndCell = 0;
  ERowState target = ERowState::Whole;  // how far the rows of a detail are brought
};

// Whether a view has pixels and a span that numbers can be reckoned with.
bool IsSound(const SSpectrumView& view);
// `frames`, `rate`: of the recording. Without a detail where the view is not sound or shows nothing of the recording.
SViewPlan PlanView(const SSpectrumView& view, std::int64_t frames, double rate);

// The rows of so many frames each that a row of the view's pixels shows: those whose middle lies in it or, where there
// is none, the one that its own middle lies in. None outside of the recording.
std::pair<std::int64_t, std::int64_t> RowsOfPixel(const SSpectrumView& view, int pixel, std::int64_t rowFrames,
                                                  std::int64_t frames);

}  // namespace carvello
