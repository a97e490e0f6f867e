// The worker base: order, recycling, priorities, log rules.
#include "engine/background_thread_base.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <future>
#include <string>
#include <thread>
#include <vector>

namespace carvello {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class CTestWorker final : public CBackgroundThreadBase {
 public:
  CTestWorker() {
    SetName("Worker");
    SetLogCallback(
        [this](const std::string& name, const std::string& text, int) { lines.push_back(name + "|" + text); });
  }
  ~CTestWorker() override { Stop(); }

  std::vector<std::uint32_t> codes;
  std::vector<std::uint32_t> remaining;
  std::vector<std::string> lines;
  std::function<void(CBackgroundRequest&)> onRequest = [](CBackgroundRequest&) {};

 private:
  void HandleRequest(CBackgroundRequest& request, std::uint32_t left) override {
    codes.push_back(request.nCode);
    remaining.push_back(left);
    onRequest(request);
  }
};

TEST(BackgroundThread, HandlesRequestsInTheOrderTheyWerePosted) {
  CTestWorker worker;
  for (std::uint32_t code = 300; code < 305; ++code) worker.Post(code);
  EXPECT_EQ(worker.Queued(), 5u);
  worker.Start();
  worker.WaitIdle();
  worker.Stop();
  EXPECT_THAT(worker.codes, ElementsAre(300, 301, 302, 303, 304));
  EXPECT_THAT(worker.remaining.front(), testing::AnyOf(4u, 5u)) << "the others, and the marker when it is in already";
  EXPECT_GE(worker.QueuedMax(), 5u);
  EXPECT_EQ(worker.Queued(), 0u);
}

TEST(BackgroundThread, CancelledRequestIsRecycledWithoutReachingTheHandler) {
  CTestWorker worker;
  auto request = worker.TakeRequest(300);
  const CBackgroundRequest* const cancelled = request.get();
  request->bCancelled = true;
  worker.Post(std::move(request));
  worker.Post(301);
  worker.Start();
  worker.WaitIdle();
  worker.Stop();
  EXPECT_THAT(worker.codes, ElementsAre(301));
  std::vector<CBackgroundThreadBase::RequestPtr> recycled;
  while (worker.FreeRequests() > 0) recycled.push_back(worker.TakeRequest(302));
  EXPECT_TRUE(std::any_of(recycled.begin(), recycled.end(), [&](const auto& one) { return one.get() == cancelled; }));
}

TEST(BackgroundThread, ParametersArriveAsPosted) {
  CTestWorker worker;
  OutputEntry entry;
  bool seen = false;
  worker.onRequest = [&](CBackgroundRequest& request) {
    seen = request.pOwner == &worker && request.nParam1 == -7 && request.nParam2 == 8 &&
           request.llParam1 == (1LL << 40) && request.llParam2 == -1 && request.strParam == "käse" &&
           request.pEntry == &entry && !request.bCancelled;
  };
  auto request = worker.TakeRequest(300);
  request->nParam1 = -7;
  request->nParam2 = 8;
  request->llParam1 = 1LL << 40;
  request->llParam2 = -1;
  request->strParam = "käse";
  request->pEntry = &entry;
  worker.Post(std::move(request));
  worker.Start();
  worker.WaitIdle();
  worker.Stop();
  EXPECT_TRUE(seen);
}

TEST(BackgroundThread, RecycledRequestComesBackEmpty) {
  CTestWorker worker;
  worker.Start();
  auto request = worker.TakeRequest(300);
  request->nParam1 = 5;
  request->strParam = "text";
  request->block = CBlockPool(16).Take();
  worker.Post(std::move(request));
  worker.WaitIdle();
  worker.Stop();
  ASSERT_GE(worker.FreeRequests(), 1u);
  for (std::uint32_t left = worker.FreeRequests(); left > 0; --left) {
    const auto recycled = worker.TakeRequest(301);
    EXPECT_EQ(recycled->nParam1, 0);
    EXPECT_THAT(recycled->strParam, IsEmpty());
    EXPECT_EQ(recycled->block, nullptr);
    EXPECT_EQ(recycled->nCode, 301u);
  }
}

TEST(BackgroundThread, HundredthFreeRequestEmptiesTheFreeList) {
  CTestWorker worker;
  // All posted before the start: a later one could take one that was recycled already. So no marker of WaitIdle's
  // either.
  for (int i = 0; i < 100; ++i) worker.Post(300);
  worker.Start();
  while (worker.Queued() != 0) std::this_thread::yield();
  worker.Stop();  // ends after the last one is recycled
  EXPECT_EQ(worker.codes.size(), 100u);
  EXPECT_EQ(worker.FreeRequests(), 0u);
}

TEST(BackgroundThread, SettingThePriorityInForceDoesNothing) {
  CTestWorker worker;
  worker.Start();
  worker.Post(request::kSetPriority, 0);
  worker.WaitIdle();
  worker.Stop();
  EXPECT_THAT(worker.lines, IsEmpty());
  EXPECT_THAT(worker.codes, IsEmpty());
}

TEST(BackgroundThread, SettingAnotherPriorityLogsItsName) {
  CTestWorker worker;
  worker.Start();
  worker.Post(request::kSetPriority, -2);
  worker.Post(request::kSetPriority, -2);
  worker.WaitIdle();
  worker.Stop();
  EXPECT_THAT(worker.lines, ElementsAre("Worker|Setting priority to 'Lowest' (-2)"));
  EXPECT_EQ(worker.Priority(), -2);
}

TEST(BackgroundThread, PriorityNamesCoverEveryNumber) {
  EXPECT_STREQ(PriorityName(15).data(), "Low real time");
  EXPECT_STREQ(PriorityName(2).data(), "Highest");
  EXPECT_STREQ(PriorityName(1).data(), "Above normal");
  EXPECT_STREQ(PriorityName(0).data(), "Normal");
  EXPECT_STREQ(PriorityName(-1).data(), "Below normal");
  EXPECT_STREQ(PriorityName(-2).data(), "Lowest");
  EXPECT_STREQ(PriorityName(-15).data(), "Idle");
  EXPECT_STREQ(PriorityName(7).data(), "Other (7)");
}

TEST(BackgroundThread, SecondEmptyLineInARowIsNotLogged) {
  CTestWorker worker;
  worker.Log("%s", "one");
  worker.Log("%s", "");
  worker.Log("%s", " \r\n\t");
  worker.Log("%s", "two \n");
  EXPECT_THAT(worker.lines, ElementsAre("Worker|one", "Worker|", "Worker|two"));
}

TEST(BackgroundThread, HistoryKeepsLinesWithTheTimeWhenAskedTo) {
  CTestWorker worker;
  worker.SetHistory(true, false);
  worker.Log("%s", "plain");
  worker.SetHistory(true, true);
  worker.Log("%s", "timed");
  const CMyStringArray history = worker.History();
  ASSERT_EQ(history.Size(), 2u);
  EXPECT_EQ(history[0], "plain");
  EXPECT_THAT(history[1], testing::MatchesRegex("..:..:.. timed"));
}

TEST(BackgroundThread, LogGoesNowhereWhenSendingIsOff) {
  CTestWorker worker;
  worker.SetSendLog(false);
  worker.Log("%s", "text");
  EXPECT_THAT(worker.lines, IsEmpty());
}

TEST(BackgroundThread, CanBeStartedAgainAfterAStop) {
  CTestWorker worker;
  for (std::uint32_t round = 0; round < 3; ++round) {
    EXPECT_TRUE(worker.Start());
    worker.Post(400 + round);
    worker.WaitIdle();
    worker.Stop();
    EXPECT_FALSE(worker.IsThreadRunning());
  }
  EXPECT_THAT(worker.codes, ElementsAre(400, 401, 402));
}

TEST(BackgroundThread, StopWaitsForTheRequestBeingHandled) {
  CTestWorker worker;
  std::promise<void> begun;
  std::atomic<bool> finished = false;
  worker.onRequest = [&](CBackgroundRequest&) {
    begun.set_value();
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    finished = true;
  };
  worker.Start();
  worker.Post(300);
  begun.get_future().wait();
  worker.Stop();
  EXPECT_TRUE(finished);
}

TEST(BackgroundThread, ManyPostersLoseNoRequest) {
  CTestWorker worker;
  worker.Start();
  std::vector<std::thread> posters;
  for (int i = 0; i < 4; ++i) {
    posters.emplace_back([&] {
      for (int k = 0; k < 1000; ++k) worker.Post(300);
    });
  }
  for (auto& poster : posters) poster.join();
  worker.WaitIdle();
  worker.Stop();
  EXPECT_EQ(worker.codes.size(), 4000u);
}

TEST(BackgroundThread, WaitIdleReturnsWhenTheWorkerWasNeverStarted) {
  CTestWorker worker;
  worker.Post(300);
  worker.WaitIdle();
  EXPECT_EQ(worker.Queued(), 1u);
}

TEST(RegisterMessage, GivesOneNumberAName) {
  const std::uint32_t log = RegisterMessage(kLogMessageName);
  EXPECT_NE(log, 0u);
  EXPECT_EQ(RegisterMessage("Carvello::nMsgLogfile"), log);
  EXPECT_NE(RegisterMessage("Carvello::nMsgProgress"), log);
}

}  // namespace
}  // namespace carvello
