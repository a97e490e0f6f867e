// CWorkPlan: which row of cells is looked at next.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "overview/cell_grid.h"
#include "overview/view_plan.h"

namespace carvello {

// A row, and how far it is to be brought. Whether it is there already is for the worker to find out.
struct SRowTask {
  bool bDetail = false;
  SCellGrid grid;
  std::int64_t nRow = 0;
  ERowState target = ERowState::Nothing;
  std::size_t nFirstCell = 0;  // of a detail: what is in view
  std::size_t nEndCell = 0;
  std::uint64_t nView = 0;  // the view that wants it; 0 where it is the overview's own
};

// Rows in an order that spreads evenly from the first on: 64 of them, then those half way between, and so on, each
// round sorted by place.
std::vector<std::int64_t> SpreadRows(std::int64_t first, std::int64_t end);

// Not thread-safe. First 64 stretches over all of the recording, then what the view shows, then the overview from
// coarse to fine, and in the end every sample.
class CWorkPlan {
 public:
  explicit CWorkPlan(const SCellGrid& base);

  // The newest view; what is left of the one before is dropped.
  void Show(const SViewPlan& view);
  std::uint64_t View() const { return m_nView; }
  // The length of the transforms that the view is made of.
  std::size_t ViewTransform() const { return m_plan.grid.nTransform; }

  // What a few short reads do. `own`: also what no view asks for. `slow`: as far as that is worth the way on a disk
  // that takes long to get anywhere.
  std::optional<SRowTask> Next(bool own, bool slow);
  bool HasNext(bool own, bool slow) { return Pick(own, slow) != nullptr; }
  // A row of the overview that is to be read as a whole.
  std::optional<SRowTask> NextWhole();
  // It was not made, and is wanted later.
  void GiveBackWhole(const SRowTask& task) { m_ownWhole.rows.push_back(task.nRow); }

 private:
  // Rows that are brought to one state, in their order.
  struct SRound {
    std::vector<std::int64_t> rows;
    ERowState target = ERowState::Nothing;
    bool bDetail = false;
    bool bSlowToo = true;
    std::size_t nNext = 0;
  };

  static SRound* FirstLeft(std::vector<SRound>& rounds, bool slow);
  SRound* Pick(bool own, bool slow);

  const SCellGrid m_base;
  SViewPlan m_plan;
  std::uint64_t m_nView = 0;
  std::vector<SRound> m_first;  // over all of the recording, before any view
  std::vector<SRound> m_view;
  std::vector<SRound> m_own;
  SRound m_viewWhole;
  SRound m_ownWhole;
};

}  // namespace carvello
