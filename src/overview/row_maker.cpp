#include "overview/row_maker.h"

#include <algorithm>
#include <new>

namespace carvello {

namespace {

// Frames that are read at a time where a row is one stretch: enough for a device, few enough for the processor's cache.
constexpr std::int64_t kPortion = 65'536;
constexpr std::int64_t kShortRead = 16'384;

}  // namespace

void SRowPowers::Clear(std::size_t bins) {
  sum.assign(bins, 0.0f);
  maximum.assign(bins, 0.0f);
  nTransforms = 0;
}

ERowEnd CRowMaker::Make(const SCellGrid& grid, std::int64_t row, ERowState from, ERowState to, const GoesOn& goesOn,
                        SRowPowers& powers) {
  const std::int64_t transforms = grid.Transforms(row);
  powers.Clear(grid.nTransform);
  const std::int64_t first = StateTransforms(from, transforms);
  const std::int64_t last = StateTransforms(to, transforms);
  return to != ERowState::Whole ? MakeSparse(grid, row, first, last, goesOn, powers)
                                : MakeWhole(grid, row, goesOn, powers);
}

void CRowMaker::Prepare(const SCellGrid& grid, std::int64_t frames) {
  if (!m_pSpectrum || m_pSpectrum->Length() != grid.nTransform || m_pSpectrum->Window() != grid.window) {
    m_pSpectrum = std::make_unique<CPowerSpectrum>(grid.nTransform, grid.window);
    m_power.resize(grid.nTransform);
    m_power.shrink_to_fit();
    m_pFrames.reset();
    m_nRoom = 0;
  }
  if (frames <= m_nRoom) return;
  m_pFrames.reset(AllocComplex(frames));
  if (!m_pFrames) throw std::bad_alloc();
  m_nRoom = frames;
}

// What a recording shorter than a transform lacks is silence.
bool CRowMaker::Read(const SCellGrid& grid, std::int64_t first, std::int64_t count, SComplex* destination) {
  const auto start = std::chrono::steady_clock::now();
  const std::int64_t done = m_pSource->Read(first, destination, std::min(count, grid.nFrames - first));
  if (count <= kShortRead) m_readTime = std::chrono::steady_clock::now() - start;
  std::fill(destination + done, destination + count, SComplex{});
  return m_pSource->Problem().empty();
}

void CRowMaker::Add(const SComplex* frames, SRowPowers& powers) {
  m_pSpectrum->Transform(frames, m_power.data());
  Accumulate(m_power.data(), m_power.size(), powers.sum.data(), powers.maximum.data());
  ++powers.nTransforms;
}

ERowEnd CRowMaker::MakeSparse(const SCellGrid& grid, std::int64_t row, std::int64_t from, std::int64_t to,
                              const GoesOn& goesOn, SRowPowers& powers) {
  const auto length = static_cast<std::int64_t>(grid.nTransform);
  Prepare(grid, length);
  for (std::int64_t i = from; i < to; ++i) {
    if (!goesOn()) return ERowEnd::Dropped;
    const std::int64_t begin = grid.Begin(row, SparseTransform(i, grid.Transforms(row)));
    if (!Read(grid, begin, length, m_pFrames.get())) return ERowEnd::Unreadable;
    Add(m_pFrames.get(), powers);
  }
  return ERowEnd::Made;
}

// The stretch from the first transform's begin on is read in portions; what a portion's last transforms share with the
// next ones is moved to the front.
ERowEnd CRowMaker::MakeWhole(const SCellGrid& grid, std::int64_t row, const GoesOn& goesOn, SRowPowers& powers) {
  const auto length = static_cast<std::int64_t>(grid.nTransform);
  const std::int64_t room = length + std::max(kPortion, grid.Hop());
  Prepare(grid, room);
  SComplex* const frames = m_pFrames.get();
  const std::int64_t transforms = grid.Transforms(row);
  const std::int64_t end = grid.Begin(row, transforms - 1) + length;
  std::int64_t first = grid.Begin(row, 0);  // of the frames that are there
  std::int64_t held = 0;
  for (std::int64_t i = 0; i < transforms; ++i) {
    const std::int64_t begin = grid.Begin(row, i);
    if (begin + length > first + held) {
      if (!goesOn()) return ERowEnd::Dropped;
      const std::int64_t kept = std::max<std::int64_t>(first + held - begin, 0);
      std::move(frames + (held - kept), frames + held, frames);
      first = begin;
      const std::int64_t wanted = std::min(room, end - first) - kept;
      if (!Read(grid, first + kept, wanted, frames + kept)) return ERowEnd::Unreadable;
      held = kept + wanted;
    }
    Add(frames + (begin - first), powers);
  }
  return ERowEnd::Made;
}

}  // namespace carvello
