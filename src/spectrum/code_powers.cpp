#include "spectrum/code_powers.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace carvello {

const float* CodePowers() {
  static const std::array<float, 256> powers = [] {
    std::array<float, 256> made{};
    for (std::size_t code = 1; code < made.size(); ++code) {
      made[code] = static_cast<float>(std::pow(10.0, CodeLevel(static_cast<std::uint8_t>(code)) / 10.0));
    }
    return made;
  }();
  return powers.data();
}

void AddCodePowers(const std::uint8_t* codes, std::size_t count, float weight, float* sum) noexcept {
  const float* const powers = CodePowers();
  for (std::size_t i = 0; i < count; ++i) sum[i] += weight * powers[codes[i]];
}

CColumnCells::CColumnCells(std::size_t length, std::size_t cellBins, double rate, double low, double high,
                           int columns) {
  const auto bins = static_cast<double>(length);
  const auto perCell = static_cast<double>(cellBins);
  const std::size_t wholeCells = length / cellBins;
  const auto cells = static_cast<double>(wholeCells);
  const auto count = static_cast<std::size_t>(std::max(columns, 0));
  const double width = (high - low) / static_cast<double>(count);
  // The place of a frequency among the cells: cell k reaches from k to k + 1.
  const auto place = [&](double frequency) { return (frequency / rate * bins + bins / 2 + 0.5) / perCell; };
  m_first.resize(count);
  m_end.resize(count);
  m_nFirstCell = length;
  for (std::size_t column = 0; column < count; ++column) {
    const double begin = place(low + static_cast<double>(column) * width);
    const double end = place(low + static_cast<double>(column + 1) * width);
    // Cells by their middles, k + 0.5.
    double first = std::ceil(begin - 0.5);
    double last = std::ceil(end - 0.5);
    if (first >= last) {
      first = std::floor((begin + end) / 2);
      last = first + 1;
    }
    m_first[column] = static_cast<std::size_t>(std::clamp(first, 0.0, cells));
    m_end[column] = static_cast<std::size_t>(std::clamp(last, 0.0, cells));
    if (m_first[column] == m_end[column]) continue;
    m_nFirstCell = std::min(m_nFirstCell, m_first[column]);
    m_nEndCell = std::max(m_nEndCell, m_end[column]);
  }
  m_nFirstCell = std::min(m_nFirstCell, m_nEndCell);
}

void CColumnLevels::Clear() {
  std::fill(m_power.begin(), m_power.end(), 0.0f);
  std::fill(m_count.begin(), m_count.end(), 0);
  std::fill(m_strongest.begin(), m_strongest.end(), kUnknownLevel);
  std::fill(m_maximum.begin(), m_maximum.end(), kUnknownLevel);
}

void CColumnLevels::Add(const CColumnCells& cells, const std::uint8_t* mean, const std::uint8_t* maximum,
                        std::size_t first, std::size_t end) {
  for (std::size_t column = 0; column < m_power.size(); ++column) {
    std::uint8_t strongest = m_strongest[column];
    std::uint8_t largest = m_maximum[column];
    const std::size_t last = std::min(cells.End(column), end);
    for (std::size_t cell = std::max(cells.First(column), first); cell < last; ++cell) {
      strongest = std::max(strongest, mean[cell - first]);
      largest = std::max(largest, maximum[cell - first]);
    }
    m_strongest[column] = strongest;
    m_maximum[column] = largest;
  }
}

void CColumnLevels::EndRow() {
  const float* const powers = CodePowers();
  for (std::size_t column = 0; column < m_power.size(); ++column) {
    m_power[column] += powers[m_strongest[column]];
    m_count[column] += m_strongest[column] != kUnknownLevel ? 1 : 0;
    m_strongest[column] = kUnknownLevel;
  }
}

void CColumnLevels::Codes(std::uint8_t* mean, std::uint8_t* maximum) const {
  for (std::size_t column = 0; column < m_power.size(); ++column) {
    mean[column] = IsKnown(column) ? LevelCode(Power(column)) : std::uint8_t{0};
    maximum[column] = m_maximum[column];
  }
}

}  // namespace carvello
