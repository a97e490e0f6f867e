#include "cli/span_progress.h"

#include "cli/stop_requests.h"
#include "support/platform.h"

namespace carvello {
namespace {

constexpr std::uint64_t kParts = 1'000'000;

CProgressDisplay::EMode ModeOf(bool quiet) {
  if (quiet) return CProgressDisplay::EMode::None;
  return platform::IsTerminal(2) ? CProgressDisplay::EMode::Bar : CProgressDisplay::EMode::Lines;
}

}  // namespace

CSpanProgress::CSpanProgress(bool quiet, std::int64_t bytes) : m_display(ModeOf(quiet)) {
  const auto fBytes = static_cast<double>(bytes);
  m_display.BeginBatch("", {0.0, fBytes, fBytes});
}

std::function<bool(double)> CSpanProgress::GoesOn() {
  return [this](double done) {
    m_display.Update(kParts, static_cast<std::uint64_t>(done * static_cast<double>(kParts)));
    return StopRequests() == 0;
  };
}

void CSpanProgress::End(bool complete) {
  m_display.EndBatch(complete);
}

}  // namespace carvello
