#include "overview/detail_rows.h"

#include <algorithm>
#include <utility>

namespace carvello {

std::size_t CDetailRows::SHash::operator()(const SKey& key) const noexcept {
  std::uint64_t hash = static_cast<std::uint64_t>(key.nRow);
  for (const std::uint64_t part :
       {static_cast<std::uint64_t>(key.nPiece), static_cast<std::uint64_t>(key.grid.nTransform),
        static_cast<std::uint64_t>(key.grid.nRowFrames)}) {
    hash = (hash ^ part) * 0x9E3779B97F4A7C15ULL;
    hash ^= hash >> 29;
  }
  return static_cast<std::size_t>(hash);
}

ERowState CDetailRows::State(const SCellGrid& grid, std::int64_t row, std::size_t firstCell,
                             std::size_t endCell) const {
  const CLockGuard guard(m_lock);
  ERowState state = ERowState::Whole;
  for (std::size_t piece = firstCell / kPieceCells; piece * kPieceCells < endCell; ++piece) {
    const auto found = m_places.find({grid, row, piece});
    state = std::min(state, found == m_places.end() ? ERowState::Nothing : found->second->state);
  }
  return state;
}

void CDetailRows::Take(const SCellGrid& grid, std::int64_t row, std::size_t firstCell, std::size_t endCell,
                       ERowState from, ERowState to, const SRowPowers& powers) {
  const std::int64_t earlier = to == ERowState::Whole ? 0 : StateTransforms(from, grid.Transforms(row));
  const CLockGuard guard(m_lock);
  for (std::size_t piece = firstCell / kPieceCells; piece * kPieceCells < endCell; ++piece) {
    const SKey key{grid, row, piece};
    auto place = m_places.find(key);
    const ERowState known = place == m_places.end() ? ERowState::Nothing : place->second->state;
    // A piece that went in between has nothing to go on from.
    if (known >= to || (earlier > 0 && known < from)) continue;
    if (place == m_places.end()) {
      m_pieces.push_front({.key = key, .codes = {}, .state = ERowState::Nothing});
      place = m_places.emplace(key, m_pieces.begin()).first;
    }
    SPiece& target = *place->second;
    m_nBytes -= target.codes.mean.empty() ? 0 : BytesOf(target);
    const std::size_t first = piece * kPieceCells;
    target.codes = MakeCodes(powers, grid, first, std::min(first + kPieceCells, grid.Cells()), target.codes, earlier);
    target.state = to;
    m_nBytes += BytesOf(target);
    m_pieces.splice(m_pieces.begin(), m_pieces, place->second);
  }
  while (m_nBytes > m_nMostBytes && m_pieces.size() > 1) {
    m_nBytes -= BytesOf(m_pieces.back());
    m_places.erase(m_pieces.back().key);
    m_pieces.pop_back();
  }
}

std::size_t CDetailRows::Bytes() const {
  const CLockGuard guard(m_lock);
  return m_nBytes;
}

// With what the lists take for it, about.
std::size_t CDetailRows::BytesOf(const SPiece& piece) {
  return 2 * piece.codes.mean.size() + sizeof(SPiece) + 3 * sizeof(SKey);
}

const CDetailRows::SPiece* CDetailRows::Touch(const SKey& key) {
  const auto found = m_places.find(key);
  if (found == m_places.end()) return nullptr;
  m_pieces.splice(m_pieces.begin(), m_pieces, found->second);
  return &*found->second;
}

}  // namespace carvello
