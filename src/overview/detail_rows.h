// CDetailRows: what was computed below the overview because it came into view, as long as there is room for it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <unordered_map>

#include "overview/cell_grid.h"
#include "overview/code_row.h"
#include "support/mutex.h"

namespace carvello {

// Rows of cells on any grid, in pieces of so many cells. Those that nobody asked for longest go when the room is used
// up. Thread-safe.
class CDetailRows {
 public:
  static constexpr std::size_t kPieceCells = 1024;

  explicit CDetailRows(std::size_t bytes) : m_nMostBytes(bytes) {}

  // How far all of a row is known between two cells.
  ERowState State(const SCellGrid& grid, std::int64_t row, std::size_t firstCell, std::size_t endCell) const;
  // Takes over what was made of a row, for the pieces that these cells stand in. What is there in a later state stays.
  void Take(const SCellGrid& grid, std::int64_t row, std::size_t firstCell, std::size_t endCell, ERowState from,
            ERowState to, const SRowPowers& powers);
  // Gives the pieces of a row that are known to `use`, as (mean, maximum, first cell, end). The lock is held.
  template <typename TUse>
  void ForPieces(const SCellGrid& grid, std::int64_t row, std::size_t firstCell, std::size_t endCell, const TUse& use) {
    const CLockGuard guard(m_lock);
    for (std::size_t piece = firstCell / kPieceCells; piece * kPieceCells < endCell; ++piece) {
      const SPiece* const found = Touch({grid, row, piece});
      if (found == nullptr) continue;
      const std::size_t first = piece * kPieceCells;
      use(found->codes.mean.data(), found->codes.maximum.data(), first, first + found->codes.mean.size());
    }
  }
  std::size_t Bytes() const;

 private:
  struct SKey {
    SCellGrid grid;
    std::int64_t nRow = 0;
    std::size_t nPiece = 0;
    bool operator==(const SKey&) const = default;
  };
  struct SHash {
    std::size_t operator()(const SKey& key) const noexcept;
  };
  struct SPiece {
    SKey key;
    SCodeRow codes;
    ERowState state = ERowState::Nothing;
  };
  using Pieces = std::list<SPiece>;

  static std::size_t BytesOf(const SPiece& piece);
  const SPiece* Touch(const SKey& key) CARVELLO_NEEDS(m_lock);

  const std::size_t m_nMostBytes;
  mutable CMutex m_lock;
  Pieces m_pieces CARVELLO_GUARDED_BY(m_lock);  // the one that was asked for last first
  std::unordered_map<SKey, Pieces::iterator, SHash> m_places CARVELLO_GUARDED_BY(m_lock);
  std::size_t m_nBytes CARVELLO_GUARDED_BY(m_lock) = 0;
};

}  // namespace carvello
