#include "overview/picture_maker.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

#include "spectrum/code_powers.h"

namespace carvello {

namespace {

// The nearest row that is known, for each row; -1 where none is.
std::vector<std::int64_t> NearestKnown(const std::vector<ERowState>& states) {
  const auto rows = static_cast<std::int64_t>(states.size());
  std::vector<std::int64_t> nearest(states.size(), -1);
  std::int64_t known = -1;
  for (std::int64_t row = 0; row < rows; ++row) {
    if (states[static_cast<std::size_t>(row)] != ERowState::Nothing) known = row;
    nearest[static_cast<std::size_t>(row)] = known;
  }
  known = -1;
  for (std::int64_t row = rows - 1; row >= 0; --row) {
    if (states[static_cast<std::size_t>(row)] != ERowState::Nothing) known = row;
    std::int64_t& found = nearest[static_cast<std::size_t>(row)];
    if (known >= 0 && (found < 0 || known - row < row - found)) found = known;
  }
  return nearest;
}

// Over all rows of a picture: what its spectrum line shows.
class CSpectrumLine {
 public:
  explicit CSpectrumLine(std::size_t columns) : m_power(columns), m_count(columns), m_maximum(columns) {}

  void Add(const CColumnLevels& row) {
    m_bAny = true;
    for (std::size_t column = 0; column < m_power.size(); ++column) {
      if (!row.IsKnown(column)) continue;
      m_power[column] += row.Power(column);
      ++m_count[column];
      m_maximum[column] = std::max(m_maximum[column], row.Maximum(column));
    }
  }

  bool IsEmpty() const { return !m_bAny; }

  void Give(SSpectrumPicture& picture) const {
    for (std::size_t column = 0; column < m_power.size(); ++column) {
      if (m_count[column] == 0) continue;
      picture.average[column] =
          static_cast<float>(10 * std::log10(m_power[column] / static_cast<double>(m_count[column])));
      picture.peak[column] = static_cast<float>(CodeLevel(m_maximum[column]));
    }
  }

 private:
  bool m_bAny = false;
  std::vector<double> m_power;
  std::vector<std::int64_t> m_count;
  std::vector<std::uint8_t> m_maximum;
};

class CPictureMaker {
 public:
  CPictureMaker(const SSpectrumView& view, const SViewPlan& plan, double rate, CBaseLevels& base, CDetailRows& details)
      : m_view(view),
        m_plan(plan),
        m_base(base),
        m_details(details),
        m_states(base.States()),
        m_nearest(NearestKnown(m_states)),
        m_baseCells(kBaseBins, 1, rate, view.dLowFrequency, view.dHighFrequency, view.nColumns),
        m_cells(plan.grid.nTransform, plan.grid.nCellBins, rate, view.dLowFrequency, view.dHighFrequency,
                view.nColumns),
        m_row(static_cast<std::size_t>(view.nColumns)) {}

  std::shared_ptr<const SSpectrumPicture> Make() {
    const auto columns = static_cast<std::size_t>(m_view.nColumns);
    const auto rows = static_cast<std::size_t>(m_view.nRows);
    auto picture = std::make_shared<SSpectrumPicture>();
    picture->view = m_view;
    picture->nTransform = m_plan.grid.nTransform;
    picture->mean.resize(rows * columns);
    picture->maximum.resize(rows * columns);
    picture->rows.resize(rows);
    picture->average.assign(columns, -std::numeric_limits<float>::infinity());
    picture->peak = picture->average;
    CSpectrumLine own(columns);
    CSpectrumLine all(columns);
    picture->bComplete = true;
    for (int pixel = 0; pixel < m_view.nRows; ++pixel) {
      m_row.Clear();
      const auto [known, within] = MakeRow(pixel);
      const auto row = static_cast<std::size_t>(pixel);
      picture->rows[row] = known;
      if (within && known != ERowKnown::Every) picture->bComplete = false;
      if (known == ERowKnown::Nothing) continue;
      m_row.Codes(&picture->mean[row * columns], &picture->maximum[row * columns]);
      (known == ERowKnown::Neighbours ? all : own).Add(m_row);
    }
    // Stand-ins count only as long as there is nothing else.
    (own.IsEmpty() ? all : own).Give(*picture);
    const auto known = std::count_if(picture->mean.begin(), picture->mean.end(), [](auto code) { return code != 0; });
    picture->dKnown = static_cast<double>(known) / static_cast<double>(picture->mean.size());
    return picture;
  }

 private:
  // What the row comes from, and whether any of it lies in the recording.
  std::pair<ERowKnown, bool> MakeRow(int pixel) {
    const std::int64_t frames = m_plan.grid.nFrames;
    const auto [first, end] = RowsOfPixel(m_view, pixel, m_base.Grid().nRowFrames, frames);
    if (first >= end) return {ERowKnown::Nothing, false};
    if (m_plan.bDetail) {
      const ERowKnown known = MakeDetailRow(pixel);
      if (known != ERowKnown::Nothing) return {known, true};
      return {StandIn(first, end), true};
    }
    ERowKnown known = ERowKnown::Nothing;
    std::int64_t whole = 0;
    for (std::int64_t row = first; row < end; ++row) {
      const ERowState state = m_states[static_cast<std::size_t>(row)];
      if (state != ERowState::Nothing) known = ERowKnown::Stretches;
      if (state == ERowState::Whole) ++whole;
    }
    if (known == ERowKnown::Nothing) return {StandIn(first, end), true};
    std::int64_t factor = 1;
    for (int i = 0; i < m_plan.nLevel; ++i) factor *= 4;
    const auto [coarse, coarseEnd] = RowsOfPixel(m_view, pixel, factor * m_base.Grid().nRowFrames, frames);
    // What is known may belong to a coarse row whose middle lies in another pixel.
    if (!AddBase(m_plan.nLevel, coarse, coarseEnd)) AddBase(0, first, end);
    return {whole == end - first ? ERowKnown::Every : known, true};
  }

  ERowKnown MakeDetailRow(int pixel) {
    const SCellGrid& grid = m_plan.grid;
    const auto [first, end] = RowsOfPixel(m_view, pixel, grid.nRowFrames, grid.nFrames);
    ERowKnown known = ERowKnown::Nothing;
    ERowState least = ERowState::Whole;
    for (std::int64_t row = first; row < end; ++row) {
      least = std::min(least, m_details.State(grid, row, m_plan.nFirstCell, m_plan.nEndCell));
      m_details.ForPieces(grid, row, m_plan.nFirstCell, m_plan.nEndCell,
                          [&](const auto* mean, const auto* maximum, std::size_t firstCell, std::size_t endCell) {
                            known = ERowKnown::Stretches;
                            m_row.Add(m_cells, mean, maximum, firstCell, endCell);
                          });
      m_row.EndRow();
    }
    return known != ERowKnown::Nothing && least >= m_plan.target ? ERowKnown::Every : known;
  }

  // The nearest of the overview's rows that is known.
  ERowKnown StandIn(std::int64_t first, std::int64_t end) {
    const std::int64_t row = m_nearest[static_cast<std::size_t>((first + end - 1) / 2)];
    if (row < 0) return ERowKnown::Nothing;
    AddBase(0, row, row + 1);
    return ERowKnown::Neighbours;
  }

  bool AddBase(int level, std::int64_t first, std::int64_t end) {
    return m_base.ForRows(level, first, end, [&](std::int64_t /*row*/, const auto* mean, const auto* maximum) {
      m_row.Add(m_baseCells, mean, maximum, 0, kBaseBins);
      m_row.EndRow();
    });
  }

  const SSpectrumView& m_view;
  const SViewPlan& m_plan;
  CBaseLevels& m_base;
  CDetailRows& m_details;
  const std::vector<ERowState> m_states;
  const std::vector<std::int64_t> m_nearest;
  const CColumnCells m_baseCells;
  const CColumnCells m_cells;
  CColumnLevels m_row;
};

}  // namespace

std::shared_ptr<const SSpectrumPicture> MakePicture(const SSpectrumView& view, const SViewPlan& plan, double rate,
                                                    CBaseLevels& base, CDetailRows& details) {
  return CPictureMaker(view, plan, rate, base, details).Make();
}

}  // namespace carvello
