#include "overview/job_feed.h"

#include <algorithm>
#include <new>
#include <utility>

#include "engine/block_reader.h"

namespace carvello {

void CFedBlocks::SetRow(std::int64_t frames) {
  const CLockGuard guard(m_lock);
  m_nRowFrames = frames;
}

void CFedBlocks::Offer(const SharedBlock& samples, std::int64_t position, std::int32_t frames) noexcept {
  {
    const CLockGuard guard(m_lock);
    if (m_bEnd || m_nRowFrames == 0 || frames <= 0 || frames > static_cast<std::int32_t>(kBlockFrames)) return;
    // Behind a gap only what a row begins in is of use, with room for all of it.
    const bool rowBegins = (position + frames) / m_nRowFrames != position / m_nRowFrames || position == 0;
    if (m_bLeavesOut && (!rowBegins || m_nCount > 0)) return;
    m_bLeavesOut = m_nCount == kMost;
    if (m_bLeavesOut) return;
    m_blocks[(m_nFirst + m_nCount++) % kMost] = {samples, position, frames};
  }
  m_come.notify_one();
}

std::optional<SFedBlock> CFedBlocks::Take() {
  CLockGuard guard(m_lock);
  while (!m_bEnd && m_nCount == 0) guard.Wait(m_come);
  if (m_bEnd) return std::nullopt;
  SFedBlock block = std::exchange(m_blocks[m_nFirst], {});
  m_nFirst = (m_nFirst + 1) % kMost;
  --m_nCount;
  return block;
}

void CFedBlocks::End() noexcept {
  {
    const CLockGuard guard(m_lock);
    m_bEnd = true;
    m_blocks = {};
    m_nCount = 0;
  }
  m_come.notify_all();
}

CJobFeed::CJobFeed(CBaseLevels& base)
    : m_base(base),
      m_grid(base.Grid()),
      m_spectrum(m_grid.nTransform, m_grid.window),
      m_pFrames(AllocComplex(static_cast<std::int64_t>(m_grid.nTransform) + kBlockFrames)),
      m_power(m_grid.nTransform) {
  if (!m_pFrames) throw std::bad_alloc();
  BeginAt(0);
}

bool CJobFeed::Add(const SFedBlock& block) {
  if (block.llPosition != m_nBegin + m_nFrames) BeginAt(block.llPosition);
  std::copy_n(block.samples.get(), block.nFrames, m_pFrames.get() + m_nFrames);
  m_nFrames += block.nFrames;
  return AddTransforms();
}

// With the first row of which nothing is missed.
void CJobFeed::BeginAt(std::int64_t position) {
  m_nBegin = position;
  m_nFrames = 0;
  m_nTransform = 0;
  m_nRow = position / m_grid.nRowFrames;
  while (m_nRow < m_grid.Rows() && m_grid.Begin(m_nRow, 0) < position) ++m_nRow;
  m_powers.Clear(m_grid.nTransform);
}

bool CJobFeed::AddTransforms() {
  const auto length = static_cast<std::int64_t>(m_grid.nTransform);
  bool whole = false;
  while (m_nRow < m_grid.Rows() && m_grid.Begin(m_nRow, m_nTransform) + length <= m_nBegin + m_nFrames) {
    if (m_nTransform == 0 && m_base.State(m_nRow) == ERowState::Whole) {
      ++m_nRow;
      continue;
    }
    m_spectrum.Transform(m_pFrames.get() + (m_grid.Begin(m_nRow, m_nTransform) - m_nBegin), m_power.data());
    Accumulate(m_power.data(), m_power.size(), m_powers.sum.data(), m_powers.maximum.data());
    ++m_powers.nTransforms;
    if (++m_nTransform == m_grid.Transforms(m_nRow)) {
      EndRow();
      whole = true;
    }
  }
  // What the next transforms need stays: less than one, unless rows were passed over.
  const std::int64_t next = m_nRow < m_grid.Rows() ? m_grid.Begin(m_nRow, m_nTransform) : m_nBegin + m_nFrames;
  const std::int64_t kept = std::clamp<std::int64_t>(m_nBegin + m_nFrames - next, 0, length);
  std::copy(m_pFrames.get() + (m_nFrames - kept), m_pFrames.get() + m_nFrames, m_pFrames.get());
  m_nBegin += m_nFrames - kept;
  m_nFrames = kept;
  return whole;
}

void CJobFeed::EndRow() {
  m_base.Take(m_nRow, ERowState::Nothing, ERowState::Whole, m_powers);
  m_powers.Clear(m_grid.nTransform);
  m_nTransform = 0;
  ++m_nRow;
}

}  // namespace carvello
