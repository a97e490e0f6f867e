// Steps side by side.
#include "engine/side_by_side.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstddef>
#include <latch>
#include <vector>

namespace carvello::test {
namespace {

TEST(SideBySideTest, EveryStepIsDoneOnceWhateverTheNumberOfThreads) {
  for (const std::size_t count : {0U, 1U, 2U, 31U, 1'000U}) {
    for (const std::size_t most : {1U, 2U, 16U}) {
      std::vector<std::atomic<int>> done(count);
      SideBySide(count, most, [&](std::size_t i) { ++done[i]; });
      for (std::size_t i = 0; i < count; ++i) EXPECT_EQ(done[i], 1) << i << " of " << count << ", " << most;
    }
  }
}

// Each step waits until all are at work, which would never be, did one wait for another.
TEST(SideBySideTest, AsManyStepsRunAtATimeAsAreAskedFor) {
  std::latch atWork(8);
  SideBySide(8, 8, [&](std::size_t) { atWork.arrive_and_wait(); });
  EXPECT_TRUE(atWork.try_wait());
}

}  // namespace
}  // namespace carvello::test
