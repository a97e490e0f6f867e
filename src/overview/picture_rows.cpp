#include "overview/picture_rows.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "spectrum/signal_search.h"

namespace carvello {
namespace {

constexpr double kSureSlip = 0.2;   // bins: bursts tell their frequencies no better
constexpr double kLineSlip = 0.05;  // bins: what stands where a column begins belongs to it, noise or not
constexpr double kClear = 0.1;      // of a line's power: two bins away there is less

// What a bin has of the power of a line that stands so many bins beside its middle, under a window of Hann.
double HannShare(double bins) {
  if (std::abs(bins) < 1e-6) return 1.0;
  const double fAngle = std::numbers::pi * bins;
  const double fAmplitude = std::sin(fAngle) / fAngle / (1.0 - bins * bins);
  return fAmplitude * fAmplitude;
}

}  // namespace

CTransformLine::CTransformLine(const CPicturePlan& plan) : m_plan(plan) {
  m_begins.reserve(static_cast<std::size_t>(plan.Rows()) + 1);
  m_begins.push_back(0);
  for (std::int64_t nRow = 0; nRow < plan.Rows(); ++nRow) {
    m_begins.push_back(m_begins.back() + plan.Transforms(nRow));
  }
}

std::int64_t CTransformLine::RowOf(std::int64_t transform) const {
  return std::upper_bound(m_begins.begin(), m_begins.end(), transform) - m_begins.begin() - 1;
}

CPictureRows::CPictureRows(const CPicturePlan& plan, EPictureLevels levels, SLevelPicture& picture)
    : m_plan(plan),
      m_levels(levels),
      m_picture(picture),
      m_row(plan.Length(), 0.0),
      m_lines(static_cast<std::size_t>(plan.Columns())) {}

void CPictureRows::Add(const std::vector<float>& powers, std::int64_t transforms) {
  for (std::size_t i = 0; i < m_row.size(); ++i) {
    const double fPower = powers[i];
    m_row[i] = m_levels == EPictureLevels::Mean ? m_row[i] + fPower : std::max(m_row[i], fPower);
  }
  m_nTransforms += transforms;
}

void CPictureRows::Finish(std::int64_t row) {
  const double fCount = m_levels == EPictureLevels::Mean ? static_cast<double>(m_nTransforms) : 1.0;
  float* const pPixels = m_picture.levels.data() + row * m_plan.Columns();
  PlaceLines();
  for (std::int64_t nColumn = 0; nColumn < m_plan.Columns(); ++nColumn) {
    const auto [nFirst, nEnd] = m_plan.Bins(nColumn);
    double fPower = m_lines[static_cast<std::size_t>(nColumn)];
    for (std::size_t nBin = nFirst; nBin < nEnd; ++nBin) {
      if (nEnd - nFirst == 1 || LineColumn(nBin, nColumn) == nColumn) fPower = std::max(fPower, LinePower(nBin));
    }
    if (fPower > 0.0) pPixels[nColumn] = static_cast<float>(10.0 * std::log10(fPower / fCount));
  }
  std::fill(m_row.begin(), m_row.end(), 0.0);
  m_nTransforms = 0;
}

// Lines whose nearest bin has its middle beside the column that they stand in.
void CPictureRows::PlaceLines() {
  std::fill(m_lines.begin(), m_lines.end(), 0.0);
  if (!m_plan.HoldsBins()) return;
  for (std::int64_t nColumn = 0; nColumn < m_plan.Columns(); ++nColumn) {
    const auto [nFirst, nEnd] = m_plan.Bins(nColumn);
    for (const std::size_t nBin : {nFirst, nEnd - 1}) {
      if (nEnd == 0) continue;
      const std::int64_t nOther = LineColumn(nBin, nColumn);
      if (nOther == nColumn || nOther < 0 || nOther >= m_plan.Columns()) continue;
      double& fLine = m_lines[static_cast<std::size_t>(nOther)];
      fLine = std::max(fLine, LinePower(nBin));
    }
  }
}

// The column that the line stands in whose middle is in this bin; the bin's own where there is none.
std::int64_t CPictureRows::LineColumn(std::size_t bin, std::int64_t own) const {
  if (!m_plan.HoldsBins() || !IsPeak(bin)) return own;
  const double fLine = static_cast<double>(bin) + PlaceIn(bin);
  const std::int64_t nColumn = m_plan.ColumnOf(fLine + kLineSlip);
  return nColumn >= own ? nColumn : std::min(m_plan.ColumnOf(fLine + kSureSlip), own);
}

// What stands clear of all around it is a line, and counts with its own power wherever between bins it stands.
double CPictureRows::LinePower(std::size_t bin) const {
  const double fPower = m_row[bin];
  if (bin < 2 || bin + 2 >= m_row.size() || !IsPeak(bin)) return fPower;
  if (std::max(m_row[bin - 2], m_row[bin + 2]) > kClear * fPower) return fPower;
  return fPower / HannShare(PlaceIn(bin));
}

bool CPictureRows::IsPeak(std::size_t bin) const {
  return bin > 0 && bin + 1 < m_row.size() && m_row[bin] > m_row[bin - 1] && m_row[bin] >= m_row[bin + 1];
}

// Of the line that is strongest in this bin, a peak: how far above its middle.
double CPictureRows::PlaceIn(std::size_t bin) const {
  return LinePlace(static_cast<float>(m_row[bin - 1]), static_cast<float>(m_row[bin]),
                   static_cast<float>(m_row[bin + 1]));
}

}  // namespace carvello
