// CBaseLevels: the overview itself: mean and maximum level of every cell of the base grid, and coarser levels above it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "overview/cell_grid.h"
#include "overview/code_row.h"
#include "overview/row_maker.h"
#include "support/mutex.h"

namespace carvello {

// Bytes for the base: 64 MiB at most, a third of that above it. Level 0 is the base, and a row of level n + 1 stands
// for four of level n: the mean of those that are known, and their maximum. Thread-safe.
class CBaseLevels {
 public:
  static constexpr int kLevels = 7;  // 8192 rows of the base are 2 of the last

  explicit CBaseLevels(std::int64_t frames);

  const SCellGrid& Grid() const { return m_grid; }
  std::int64_t Rows() const { return m_grid.Rows(); }

  ERowState State(std::int64_t row) const;
  // Takes over what was made of a row to bring it from one state to another. What is already there in a later state
  // stays.
  void Take(std::int64_t row, ERowState from, ERowState to, const SRowPowers& powers);
  // The same for codes that were kept.
  void Restore(std::int64_t row, ERowState state, std::span<const std::uint8_t> mean,
               std::span<const std::uint8_t> maximum);
  std::int64_t WholeRows() const;
  std::int64_t Known() const;  // the sum of all states, which grows with everything that becomes known

  std::vector<ERowState> States() const;
  void Copy(std::int64_t row, SCodeRow& codes) const;

  // The rows from `first` up to `end` of a level that are known, brought up to date and given to `use` one after the
  // other, with their number: as (row, mean, maximum). The lock is held. False when there was none.
  template <typename TUse>
  bool ForRows(int level, std::int64_t first, std::int64_t end, const TUse& use);

 private:
  struct SLevel {
    std::vector<std::uint8_t> mean, maximum;
    std::vector<bool> known;  // anything
    std::vector<bool> stale;  // a row below has changed
  };

  std::uint8_t* Mean(int level, std::int64_t row) CARVELLO_NEEDS(m_lock);
  std::uint8_t* Maximum(int level, std::int64_t row) CARVELLO_NEEDS(m_lock);
  void Changed(std::int64_t row, ERowState state) CARVELLO_NEEDS(m_lock);
  void Refresh(int level, std::int64_t row) CARVELLO_NEEDS(m_lock);
  bool IsKnown(int level, std::int64_t row) const CARVELLO_NEEDS(m_lock);

  const SCellGrid m_grid;
  mutable CMutex m_lock;
  std::vector<SLevel> m_levels CARVELLO_GUARDED_BY(m_lock);
  std::vector<ERowState> m_states CARVELLO_GUARDED_BY(m_lock);
  std::int64_t m_nWhole CARVELLO_GUARDED_BY(m_lock) = 0;
};

template <typename TUse>
bool CBaseLevels::ForRows(int level, std::int64_t first, std::int64_t end, const TUse& use) {
  const CLockGuard guard(m_lock);
  bool any = false;
  for (std::int64_t row = first; row < end; ++row) {
    if (!IsKnown(level, row)) continue;
    Refresh(level, row);
    use(row, Mean(level, row), Maximum(level, row));
    any = true;
  }
  return any;
}

}  // namespace carvello
