#include "cli/stop_requests.h"

#include <atomic>
#include <csignal>

namespace carvello {
namespace {

std::atomic<int> g_nRequests{0};
static_assert(std::atomic<int>::is_always_lock_free, "a signal handler may touch nothing else");

extern "C" void CountStopRequest(int signalNumber) {
  g_nRequests.fetch_add(1);
  // Windows forgets the handler when it calls it.
  static_cast<void>(std::signal(signalNumber, CountStopRequest));
}

}  // namespace

void CatchStopRequests() {
  static_cast<void>(std::signal(SIGINT, CountStopRequest));
  static_cast<void>(std::signal(SIGTERM, CountStopRequest));
}

int StopRequests() {
  return g_nRequests.load();
}

}  // namespace carvello
