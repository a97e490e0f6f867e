#include "ui/taskbar_progress.h"

#include <utility>

#include "support/system_time.h"

namespace carvello {

CTaskbarUpdates::CTaskbarUpdates(std::unique_ptr<CTaskbarProgress> pProgress, std::function<std::int64_t()> clock)
    : m_pProgress(std::move(pProgress)), m_clock(clock ? std::move(clock) : CurrentTime) {}

void CTaskbarUpdates::Begin() {
  if (m_pProgress) m_pProgress->SetValue(0, kTaskbarTotal);
}

void CTaskbarUpdates::Update(std::uint64_t position, std::uint64_t done, std::uint64_t total) {
  if (!m_pProgress) return;
  const std::int64_t now = m_clock();
  if (now == m_tLastUpdate && done != total) return;
  m_tLastUpdate = now;
  m_pProgress->SetValue(position, kTaskbarTotal);
}

}  // namespace carvello
