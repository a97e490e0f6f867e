#include "support/mutex.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace carvello {
namespace {

struct SShared {
  CMutex lock;
  std::condition_variable changed;
  int nTurns CARVELLO_GUARDED_BY(lock) = 0;
};

TEST(Mutex, ThreadsThatHoldItDoNotMeet) {
  SShared shared;
  const auto count = [&shared] {
    for (int i = 0; i < 10'000; ++i) {
      const CLockGuard guard(shared.lock);
      ++shared.nTurns;
    }
  };
  std::thread other(count);
  count();
  other.join();
  const CLockGuard guard(shared.lock);
  EXPECT_EQ(shared.nTurns, 20'000);
}

// Each waits for the other's turn, which comes only if the lock is given back meanwhile.
TEST(Mutex, IsGivenBackWhileItsHolderWaits) {
  SShared shared;
  const auto take = [&shared](int turn) {
    CLockGuard guard(shared.lock);
    for (; turn < 1'000; turn += 2) {
      while (shared.nTurns != turn) guard.Wait(shared.changed);
      ++shared.nTurns;
      shared.changed.notify_one();
    }
  };
  std::thread other(take, 1);
  take(0);
  other.join();
  const CLockGuard guard(shared.lock);
  EXPECT_EQ(shared.nTurns, 1'000);
}

TEST(Mutex, WaitEndsWhenTheTimeHasCome) {
  SShared shared;
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(20);
  CLockGuard guard(shared.lock);
  while (guard.WaitUntil(shared.changed, end)) continue;
  EXPECT_GE(std::chrono::steady_clock::now(), end);
}

}  // namespace
}  // namespace carvello
