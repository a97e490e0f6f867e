#include "cli/message_queue.h"

#include <gtest/gtest.h>

#include <thread>

namespace carvello::test {
namespace {

using std::chrono::milliseconds;

TEST(MessageQueue, HandsMessagesOverInOrderAndOnce) {
  CMessageQueue queue;
  queue.PostTexts(1, "Reader", "Stop");
  queue.PostNumbers(2, 10'000, 17);
  const std::vector<SMessage> messages = queue.Take(milliseconds(0));
  ASSERT_EQ(messages.size(), 2U);
  EXPECT_EQ(messages[0].nMessage, 1U);
  EXPECT_EQ(messages[0].strWorker, "Reader");
  EXPECT_EQ(messages[0].strText, "Stop");
  EXPECT_EQ(messages[1].nMessage, 2U);
  EXPECT_EQ(messages[1].nTotal, 10'000U);
  EXPECT_EQ(messages[1].nDone, 17U);
  EXPECT_TRUE(queue.Take(milliseconds(0)).empty());
}

TEST(MessageQueue, ComesBackWithoutAMessage) {
  CMessageQueue queue;
  EXPECT_TRUE(queue.Take(milliseconds(1)).empty());
}

TEST(MessageQueue, WakesForAMessageOfAnotherThread) {
  CMessageQueue queue;
  std::thread poster([&queue] { queue.PostTexts(1, "Writer [0]", "Closing"); });
  // Far longer than a test may take: only the message can end the wait.
  const std::vector<SMessage> messages = queue.Take(milliseconds(500'000));
  poster.join();
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_EQ(messages[0].strText, "Closing");
}

}  // namespace
}  // namespace carvello::test
