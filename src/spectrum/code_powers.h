// Levels as bytes, back to powers, and laid out on the columns of a picture.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "spectrum/level_code.h"

namespace carvello {

// The power of each code; 0 of the code that stands for nothing known.
const float* CodePowers();

// sum[i] += weight x the power of codes[i]
void AddCodePowers(const std::uint8_t* codes, std::size_t count, float weight, float* sum) noexcept;

// Which cells of a row each column of a picture shows: those whose middle lies in it or, where there is none, the one
// that its own middle lies in. Columns outside of the band show none.
class CColumnCells {
 public:
  // A transform's bins, so many a cell. `rate`: frames a second, so that bin k lies (k - length / 2) x rate / length
  // from the centre. Columns from `low` to `high`, in Hz from the centre.
  CColumnCells(std::size_t length, std::size_t cellBins, double rate, double low, double high, int columns);

  std::size_t Columns() const { return m_first.size(); }
  std::size_t First(std::size_t column) const { return m_first[column]; }
  std::size_t End(std::size_t column) const { return m_end[column]; }  // as First where a column shows none
  // Of all columns.
  std::size_t FirstCell() const { return m_nFirstCell; }
  std::size_t EndCell() const { return m_nEndCell; }

 private:
  std::vector<std::size_t> m_first;
  std::vector<std::size_t> m_end;
  std::size_t m_nFirstCell = 0;
  std::size_t m_nEndCell = 0;
};

// A row of a picture in the making: of each column the strongest of its cells, so that a carrier keeps its level
// however wide a column is, and over the rows of cells the mean of means and the maximum of maxima.
class CColumnLevels {
 public:
  explicit CColumnLevels(std::size_t columns)
      : m_power(columns), m_count(columns), m_strongest(columns), m_maximum(columns) {}

  void Clear();
  // The cells from `first` up to `end` of a row, the codes beginning with that of `first`; only those that columns show
  // count. A row may come in pieces.
  void Add(const CColumnCells& cells, const std::uint8_t* mean, const std::uint8_t* maximum, std::size_t first,
           std::size_t end);
  // Behind the last piece of a row of cells.
  void EndRow();
  // Of the rows that have ended. Mean power of a column; 0 where nothing is known.
  float Power(std::size_t column) const {
    return m_count[column] == 0 ? 0.0f : m_power[column] / static_cast<float>(m_count[column]);
  }
  std::uint8_t Maximum(std::size_t column) const { return m_maximum[column]; }
  bool IsKnown(std::size_t column) const { return m_count[column] != 0; }
  // The codes of the row; 0 where nothing is known.
  void Codes(std::uint8_t* mean, std::uint8_t* maximum) const;

 private:
  std::vector<float> m_power;
  std::vector<std::int32_t> m_count;
  std::vector<std::uint8_t> m_strongest;  // of the row that has not ended
  std::vector<std::uint8_t> m_maximum;
};

}  // namespace carvello
