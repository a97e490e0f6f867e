#include "cli/stop_requests.h"

#include <atomic>
#include <cstdlib>

#include "cli/exit_codes.h"
#include "support/platform.h"

namespace carvello {
namespace {

std::atomic<int> g_nRequests{0};
static_assert(std::atomic<int>::is_always_lock_free, "a signal handler may touch nothing else");

}  // namespace

void EndOnStopRequests() {
  platform::HandleStopRequests([] { std::_Exit(static_cast<int>(EExit::Stopped)); });
}

void CatchStopRequests() {
  platform::HandleStopRequests([] { g_nRequests.fetch_add(1); });
}

int StopRequests() {
  return g_nRequests.load();
}

}  // namespace carvello
