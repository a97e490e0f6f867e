#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

#include "support/platform.h"
#include "support/system_facts.h"

namespace carvello::test {
namespace {

TEST(UsableProcessors, AreThoseThatTheProcessMayRunOn) {
  EXPECT_EQ(platform::UsableProcessors({8, 8, {}}), 8U);
  EXPECT_EQ(platform::UsableProcessors({8, 3, {}}), 3U);
  EXPECT_EQ(platform::UsableProcessors({8, 0, {}}), 8U);  // the system does not tell
  EXPECT_EQ(platform::UsableProcessors({0, 0, {}}), 1U);
}

TEST(UsableProcessors, AreNoMoreThanTheShareOfAContainer) {
  EXPECT_EQ(platform::UsableProcessors({8, 8, 2.0}), 2U);
  EXPECT_EQ(platform::UsableProcessors({8, 8, 1.5}), 2U);
  EXPECT_EQ(platform::UsableProcessors({8, 8, 0.1}), 1U);
  EXPECT_EQ(platform::UsableProcessors({8, 8, 0.0}), 1U);
  EXPECT_EQ(platform::UsableProcessors({8, 2, 5.0}), 2U);
  EXPECT_EQ(platform::UsableProcessors({8, 8, 1e300}), 8U);
}

TEST(UsableProcessors, AreNoMoreThanABatchSystemGrants) {
  EXPECT_EQ(platform::UsableProcessors({8, 8, {}, 3}), 3U);
  EXPECT_EQ(platform::UsableProcessors({8, 2, {}, 3}), 2U);
  EXPECT_EQ(platform::UsableProcessors({8, 8, 2.0, 3}), 2U);
  EXPECT_EQ(platform::UsableProcessors({8, 8, {}, 0}), 8U);  // it does not tell
}

TEST(GrantedProcessors, AreWhatTheVariableTells) {
  EXPECT_EQ(platform::GrantedProcessors("1"), 1U);
  EXPECT_EQ(platform::GrantedProcessors("64"), 64U);
  for (const char* const told : {"", " 4", "4 ", "-4", "4x", "two", "99999999999"}) {
    EXPECT_EQ(platform::GrantedProcessors(told), 0U) << told;
  }
  EXPECT_EQ(platform::GrantedProcessors(nullptr), 0U);
}

TEST(UsableProcessors, AreWhatThreadsAreCountedBy) {
  EXPECT_EQ(platform::ProcessorCount(), platform::UsableProcessors(platform::GetProcessorLimits()));
  EXPECT_LE(platform::ProcessorCount(), std::max(1U, std::thread::hardware_concurrency()));
}

}  // namespace
}  // namespace carvello::test
