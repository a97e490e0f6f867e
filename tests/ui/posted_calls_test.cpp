#include "ui/posted_calls.h"

#include <thread>
#include <vector>

#include "ui/ui_test.h"

namespace carvello {

class PostedCallsTest : public QObject {
  Q_OBJECT

 private slots:
  void CallsOnTheThreadOfTheWindowInTheirOrder();
  void WhatIsPostedAfterTheEndIsDropped();
  void ACallMayEndTheObject();
};

void PostedCallsTest::CallsOnTheThreadOfTheWindowInTheirOrder() {
  CPostedCalls calls;
  std::vector<int> seen;
  const auto here = std::this_thread::get_id();
  bool elsewhere = false;
  std::thread worker([post = calls.MakePoster(), &seen, &elsewhere, here] {
    for (int i = 0; i < 100; ++i) {
      post([&seen, &elsewhere, here, i] {
        seen.push_back(i);
        elsewhere = elsewhere || std::this_thread::get_id() != here;
      });
    }
  });
  worker.join();
  QVERIFY(seen.empty());
  QCoreApplication::processEvents();
  QCOMPARE(seen.size(), std::size_t{100});
  for (int i = 0; i < 100; ++i) QCOMPARE(seen[static_cast<std::size_t>(i)], i);
  QVERIFY(!elsewhere);
}

void PostedCallsTest::WhatIsPostedAfterTheEndIsDropped() {
  int called = 0;
  CPostedCalls::Poster post;
  {
    const CPostedCalls calls;
    post = calls.MakePoster();
    post([&called] { ++called; });
  }
  post([&called] { ++called; });
  QCoreApplication::processEvents();
  QCOMPARE(called, 0);
}

void PostedCallsTest::ACallMayEndTheObject() {
  auto pCalls = std::make_unique<CPostedCalls>();
  int called = 0;
  const auto post = pCalls->MakePoster();
  post([&pCalls, &called] {
    ++called;
    pCalls.reset();
  });
  post([&called] { ++called; });
  QCoreApplication::processEvents();
  QCOMPARE(called, 1);
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::PostedCallsTest)
#include "posted_calls_test.moc"
