#include "overview/left_threads.h"

#include <gtest/gtest.h>

#include <future>
#include <memory>

namespace carvello {
namespace {

using std::chrono::milliseconds;

class LeftThreads : public testing::TestWithParam<ELeft> {
 protected:
  // Starts a thread that lives until m_end is told.
  void Start() {
    ASSERT_TRUE(StartLeftThread(
        "Test", [end = std::make_shared<std::future<void>>(m_end.get_future())] { end->wait(); }, GetParam()));
  }
  std::promise<void> m_end;
};

TEST_P(LeftThreads, AreWaitedForNoLongerThanTheLimitOfTheirKind) {
  Start();
  EXPECT_FALSE(JoinLeftThreadsFor(milliseconds(1), milliseconds(1)));
  m_end.set_value();
  constexpr milliseconds kLong(600'000);
  const bool bWrites = GetParam() == ELeft::Writes;
  EXPECT_TRUE(JoinLeftThreadsFor(bWrites ? milliseconds(0) : kLong, bWrites ? kLong : milliseconds(0)));
}

INSTANTIATE_TEST_SUITE_P(Kinds, LeftThreads, testing::Values(ELeft::Reads, ELeft::Writes),
                         [](const auto& kind) { return kind.param == ELeft::Reads ? "Readers" : "Writers"; });

}  // namespace
}  // namespace carvello
