// What an overview's workers do at the lowest priority: look at every sample, take the blocks of a job, keep the
// overview.
#include <utility>

#include "overview/overview_core.h"
#include "support/platform.h"

namespace carvello {

namespace {

constexpr int kLowest = -2;
constexpr std::chrono::seconds kBetweenKeeps{60};

}  // namespace

// ---- every sample ----

void COverviewCore::LookAtEverything() {
  platform::SetCurrentThreadPriority(kLowest);
  CBaseLevels* const base = WaitForBase();
  if (base == nullptr) return;
  CRowMaker maker(MakeSource());
  SRowPowers powers;
  while (const std::optional<SRowTask> task = WaitForWhole()) {
    ERowEnd end = ERowEnd::Made;
    const bool done = DoIfThereIsMemory([&] {
      const ERowState state = base->State(task->nRow);
      if (state == ERowState::Whole) return;
      end = maker.Make(
          task->grid, task->nRow, state, ERowState::Whole, [this] { return MayGoOn(); }, powers);
      if (end == ERowEnd::Unreadable) Fail(maker.Problem());
      if (end != ERowEnd::Made) return;
      base->Take(task->nRow, state, ERowState::Whole, powers);
      RowIsWhole(*base);
    });
    if (!done) PictureNews();
    const CLockGuard guard(m_lock);
    --m_nWhole;
    if (end == ERowEnd::Dropped) m_pPlan->GiveBackWhole(*task);
  }
}

std::optional<SRowTask> COverviewCore::WaitForWhole() {
  CLockGuard guard(m_lock);
  while (!m_bEnd) {
    if (!m_bPaused && IsIdle() && (!m_bSlow || m_nWhole == 0)) {
      if (auto task = m_pPlan->NextWhole()) {
        ++m_nWhole;
        return task;
      }
    }
    guard.Wait(m_idle);
  }
  return std::nullopt;
}

// A row that is under way waits while a disk that takes long to get anywhere has something else to do.
bool COverviewCore::MayGoOn() {
  CLockGuard guard(m_lock);
  while (!m_bEnd && !m_bPaused && m_bSlow && !IsIdle()) guard.Wait(m_idle);
  return !m_bEnd && !m_bPaused;
}

// ---- the blocks of a job ----

std::shared_ptr<IBlockListener> COverviewCore::Listener() {
  bool begin = false;
  {
    const CLockGuard guard(m_lock);
    begin = !std::exchange(m_bFed, true);
  }
  if (begin) StartWorker("Overview", &COverviewCore::TakeJobBlocks);
  return std::make_shared<CJobListener>(m_pFed);
}

void COverviewCore::TakeJobBlocks() {
  platform::SetCurrentThreadPriority(kLowest);
  CBaseLevels* const base = WaitForBase();
  if (base == nullptr) return;
  CJobFeed feed(*base);
  m_pFed->SetRow(base->Grid().nRowFrames);
  while (const std::optional<SFedBlock> block = m_pFed->Take()) {
    if (feed.Add(*block)) RowIsWhole(*base);
  }
}

// ---- the cache ----

void COverviewCore::RowIsWhole(const CBaseLevels& base) {
  const bool complete = base.WholeRows() == base.Rows();
  {
    const CLockGuard guard(m_lock);
    m_bComplete = m_bComplete || complete;
  }
  if (complete) m_keep.notify_one();
  PictureNews();
}

bool COverviewCore::WaitToKeep() {
  CLockGuard guard(m_lock);
  const Clock::time_point next = Clock::now() + kBetweenKeeps;
  while (!m_bEnd && !m_bComplete && Clock::now() < next) guard.WaitUntil(m_keep, next);
  return !m_bEnd;
}

void COverviewCore::Keep() {
  platform::SetCurrentThreadPriority(kLowest);
  // Of the lowest priority, this may come to run only when all rows are made, or when the end has come.
  const CBaseLevels* base = nullptr;
  std::int64_t kept = 0;
  {
    CLockGuard guard(m_lock);
    while (!m_bEnd && !m_pBase) guard.Wait(m_work);
    base = m_pBase.get();
    kept = m_nKept;
  }
  if (base == nullptr) return;
  const std::int64_t everything = base->Rows() * static_cast<std::int64_t>(ERowState::Whole);
  bool goesOn = true;
  while (goesOn && kept < everything) {
    goesOn = WaitToKeep();
    const std::int64_t known = base->Known();
    if (known > kept) m_cache.Save(*base);
    kept = known;
  }
}

}  // namespace carvello
