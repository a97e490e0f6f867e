#include "overview/base_levels.h"

#include <algorithm>
#include <array>

#include "spectrum/code_powers.h"

namespace carvello {

namespace {

constexpr std::int64_t kFactor = 4;  // from level to level

std::size_t Index(std::int64_t row) {
  return static_cast<std::size_t>(row);
}

}  // namespace

CBaseLevels::CBaseLevels(std::int64_t frames) : m_grid(BaseGrid(frames)) {
  const CLockGuard guard(m_lock);
  std::size_t rows = Index(Rows());
  m_states.resize(rows, ERowState::Nothing);
  for (int level = 0; level < kLevels; ++level) {
    SLevel& made = m_levels.emplace_back();
    made.mean.resize(rows * kBaseBins);
    made.maximum.resize(rows * kBaseBins);
    made.known.resize(rows);
    made.stale.resize(rows);
    rows = (rows + kFactor - 1) / kFactor;
  }
}

ERowState CBaseLevels::State(std::int64_t row) const {
  const CLockGuard guard(m_lock);
  return m_states[Index(row)];
}

std::vector<ERowState> CBaseLevels::States() const {
  const CLockGuard guard(m_lock);
  return m_states;
}

std::int64_t CBaseLevels::WholeRows() const {
  const CLockGuard guard(m_lock);
  return m_nWhole;
}

std::int64_t CBaseLevels::Known() const {
  const CLockGuard guard(m_lock);
  std::int64_t known = 0;
  for (const ERowState state : m_states) known += static_cast<std::int64_t>(state);
  return known;
}

void CBaseLevels::Take(std::int64_t row, ERowState from, ERowState to, const SRowPowers& powers) {
  SCodeRow before;
  if (to != ERowState::Whole) Copy(row, before);
  const SCodeRow codes = MakeCodes(powers, m_grid, 0, kBaseBins, before, StateTransforms(from, m_grid.Transforms(row)));
  Restore(row, to, codes.mean, codes.maximum);
}

void CBaseLevels::Restore(std::int64_t row, ERowState state, std::span<const std::uint8_t> mean,
                          std::span<const std::uint8_t> maximum) {
  const CLockGuard guard(m_lock);
  if (m_states[Index(row)] >= state) return;
  std::copy_n(mean.data(), kBaseBins, Mean(0, row));
  std::copy_n(maximum.data(), kBaseBins, Maximum(0, row));
  Changed(row, state);
}

void CBaseLevels::Copy(std::int64_t row, SCodeRow& codes) const {
  const CLockGuard guard(m_lock);
  const auto begin = static_cast<std::ptrdiff_t>(Index(row) * kBaseBins);
  const SLevel& base = m_levels.front();
  codes.mean.assign(base.mean.begin() + begin, base.mean.begin() + begin + kBaseBins);
  codes.maximum.assign(base.maximum.begin() + begin, base.maximum.begin() + begin + kBaseBins);
}

std::uint8_t* CBaseLevels::Mean(int level, std::int64_t row) {
  return &m_levels[static_cast<std::size_t>(level)].mean[Index(row) * kBaseBins];
}

std::uint8_t* CBaseLevels::Maximum(int level, std::int64_t row) {
  return &m_levels[static_cast<std::size_t>(level)].maximum[Index(row) * kBaseBins];
}

bool CBaseLevels::IsKnown(int level, std::int64_t row) const {
  return m_levels[static_cast<std::size_t>(level)].known[Index(row)];
}

void CBaseLevels::Changed(std::int64_t row, ERowState state) {
  if (state == ERowState::Whole) ++m_nWhole;
  m_states[Index(row)] = state;
  m_levels.front().known[Index(row)] = true;
  for (std::size_t level = 1; level < m_levels.size(); ++level) {
    row /= kFactor;
    m_levels[level].known[Index(row)] = true;
    m_levels[level].stale[Index(row)] = true;
  }
}

void CBaseLevels::Refresh(int level, std::int64_t row) {
  SLevel& coarse = m_levels[static_cast<std::size_t>(level)];
  if (!coarse.stale[Index(row)]) return;
  const auto rowsBelow = static_cast<std::int64_t>(m_levels[static_cast<std::size_t>(level) - 1].known.size());
  std::array<float, kBaseBins> sum{};
  std::uint8_t* const maximum = Maximum(level, row);
  std::fill_n(maximum, kBaseBins, std::uint8_t{0});
  int known = 0;
  for (std::int64_t below = row * kFactor; below < std::min((row + 1) * kFactor, rowsBelow); ++below) {
    if (!IsKnown(level - 1, below)) continue;
    Refresh(level - 1, below);
    ++known;
    AddCodePowers(Mean(level - 1, below), kBaseBins, 1.0f, sum.data());
    const std::uint8_t* const codes = Maximum(level - 1, below);
    for (std::size_t i = 0; i < kBaseBins; ++i) maximum[i] = std::max(maximum[i], codes[i]);
  }
  for (float& power : sum) power /= static_cast<float>(known);
  LevelCodes(sum.data(), kBaseBins, Mean(level, row));
  coarse.stale[Index(row)] = false;
}

}  // namespace carvello
