#include "overview/work_plan.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace carvello {

namespace {

constexpr std::int64_t kFirstRows = 64;
// On a disk that takes long to get anywhere more stretches than these cost more than reading everything.
constexpr std::int64_t kSlowRows = 1024;

std::vector<std::int64_t> AllRows(std::int64_t first, std::int64_t end) {
  std::vector<std::int64_t> rows(static_cast<std::size_t>(std::max<std::int64_t>(end - first, 0)));
  std::iota(rows.begin(), rows.end(), first);
  return rows;
}

}  // namespace

std::vector<std::int64_t> SpreadRows(std::int64_t first, std::int64_t end) {
  std::vector<std::int64_t> rows;
  const std::int64_t count = std::max<std::int64_t>(end - first, 0);
  std::vector<bool> taken(static_cast<std::size_t>(count));
  for (std::int64_t round = kFirstRows; rows.size() < taken.size(); round *= 2) {
    const std::int64_t stretches = std::min(round, count);
    for (std::int64_t i = 0; i < stretches; ++i) {
      // The row in the middle of each stretch.
      const std::int64_t row = (2 * i + 1) * count / (2 * stretches);
      if (taken[static_cast<std::size_t>(row)]) continue;
      taken[static_cast<std::size_t>(row)] = true;
      rows.push_back(first + row);
    }
  }
  return rows;
}

CWorkPlan::CWorkPlan(const SCellGrid& base) : m_base(base) {
  const std::vector<std::int64_t> spread = SpreadRows(0, base.Rows());
  const auto part = [&](std::int64_t from, std::int64_t to) {
    const auto size = static_cast<std::int64_t>(spread.size());
    return std::vector<std::int64_t>(spread.begin() + std::min(from, size), spread.begin() + std::min(to, size));
  };
  const auto whole = [&](ERowState target) {
    return SRound{.rows = AllRows(0, base.Rows()), .target = target, .bSlowToo = false};
  };
  m_first.push_back({.rows = part(0, kFirstRows), .target = ERowState::One});
  m_own.push_back({.rows = part(kFirstRows, kSlowRows), .target = ERowState::One});
  m_own.push_back({.rows = part(kSlowRows, base.Rows()), .target = ERowState::One, .bSlowToo = false});
  m_own.push_back(whole(ERowState::Four));
  m_own.push_back(whole(ERowState::Sixteen));
  m_ownWhole.rows = AllRows(0, base.Rows());
}

void CWorkPlan::Show(const SViewPlan& view) {
  m_plan = view;
  ++m_nView;
  m_view.clear();
  const std::vector<std::int64_t> rows = SpreadRows(view.nFirstRow, view.nEndRow);
  const std::vector<std::int64_t> sorted = AllRows(view.nFirstRow, view.nEndRow);
  m_view.push_back({.rows = rows, .target = ERowState::One, .bDetail = view.bDetail});
  m_view.push_back({.rows = sorted, .target = ERowState::Four, .bDetail = view.bDetail, .bSlowToo = view.bDetail});
  m_view.push_back({.rows = sorted, .target = ERowState::Sixteen, .bDetail = view.bDetail, .bSlowToo = view.bDetail});
  SRound last{.rows = sorted, .target = view.target, .bDetail = view.bDetail};
  m_viewWhole = {};
  if (view.bDetail) {
    m_view.push_back(std::move(last));
  } else {
    m_viewWhole = std::move(last);
  }
}

CWorkPlan::SRound* CWorkPlan::FirstLeft(std::vector<SRound>& rounds, bool slow) {
  for (SRound& round : rounds) {
    if (round.nNext < round.rows.size() && (!slow || round.bSlowToo)) return &round;
  }
  return nullptr;
}

CWorkPlan::SRound* CWorkPlan::Pick(bool own, bool slow) {
  SRound* round = FirstLeft(m_first, slow);
  if (round == nullptr) round = FirstLeft(m_view, slow);
  if (round == nullptr && own) round = FirstLeft(m_own, slow);
  return round;
}

std::optional<SRowTask> CWorkPlan::Next(bool own, bool slow) {
  SRound* const round = Pick(own, slow);
  if (round == nullptr) return std::nullopt;
  SRowTask task{.bDetail = round->bDetail,
                .grid = round->bDetail ? m_plan.grid : m_base,
                .nRow = round->rows[round->nNext++],
                .target = round->target,
                .nFirstCell = m_plan.nFirstCell,
                .nEndCell = m_plan.nEndCell,
                .nView = round->bDetail ? m_nView : 0};
  return task;
}

std::optional<SRowTask> CWorkPlan::NextWhole() {
  for (SRound* const round : {&m_viewWhole, &m_ownWhole}) {
    if (round->nNext == round->rows.size()) continue;
    return SRowTask{.grid = m_base, .nRow = round->rows[round->nNext++], .target = ERowState::Whole};
  }
  return std::nullopt;
}

}  // namespace carvello
