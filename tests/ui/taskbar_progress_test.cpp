#include "ui/taskbar_progress.h"

#include "ui/ui_test.h"

namespace carvello {

class TaskbarProgressTest : public QObject {
  Q_OBJECT

 private slots:
  void UpdatesAtMostOncePerClockSecond();
  void AlwaysShowsTheEndEvenWithinTheSameSecond();
  void UpdatesWhenTheClockGoesBack();
  void BeginsAt0WithinTheSameSecond();
  void DoesNothingWithoutATaskbar();
};

namespace {

using Calls = std::vector<std::pair<std::uint64_t, std::uint64_t>>;

class CRecordedProgress : public CTaskbarProgress {
 public:
  explicit CRecordedProgress(Calls& calls) : m_calls(calls) {}
  void SetValue(std::uint64_t position, std::uint64_t total) override { m_calls.emplace_back(position, total); }

 private:
  Calls& m_calls;
};

}  // namespace

void TaskbarProgressTest::UpdatesAtMostOncePerClockSecond() {
  Calls calls;
  std::int64_t now = 100;
  CTaskbarUpdates updates(std::make_unique<CRecordedProgress>(calls), [&] { return now; });
  updates.Update(1, 10, 10'000);
  updates.Update(2, 20, 10'000);
  now = 101;
  updates.Update(3, 30, 10'000);
  updates.Update(4, 40, 10'000);
  QCOMPARE(calls, (Calls{{1, 1000}, {3, 1000}}));
}

void TaskbarProgressTest::AlwaysShowsTheEndEvenWithinTheSameSecond() {
  Calls calls;
  CTaskbarUpdates updates(std::make_unique<CRecordedProgress>(calls), [] { return std::int64_t{100}; });
  updates.Update(999, 9'999, 10'000);
  updates.Update(1000, 10'000, 10'000);
  QCOMPARE(calls, (Calls{{999, 1000}, {1000, 1000}}));
}

void TaskbarProgressTest::UpdatesWhenTheClockGoesBack() {
  Calls calls;
  std::int64_t now = 100;
  CTaskbarUpdates updates(std::make_unique<CRecordedProgress>(calls), [&] { return now; });
  updates.Update(1, 10, 10'000);
  now = 50;
  updates.Update(2, 20, 10'000);
  QCOMPARE(calls, (Calls{{1, 1000}, {2, 1000}}));
}

// The next batch begins moments after the last one has ended.
void TaskbarProgressTest::BeginsAt0WithinTheSameSecond() {
  Calls calls;
  CTaskbarUpdates updates(std::make_unique<CRecordedProgress>(calls), [] { return std::int64_t{100}; });
  updates.Update(1000, 10'000, 10'000);
  updates.Begin();
  QCOMPARE(calls, (Calls{{1000, 1000}, {0, 1000}}));
}

void TaskbarProgressTest::DoesNothingWithoutATaskbar() {
  int asked = 0;
  CTaskbarUpdates updates(nullptr, [&] { return std::int64_t{++asked}; });
  updates.Begin();
  updates.Update(1000, 10'000, 10'000);
  QCOMPARE(asked, 0);
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::TaskbarProgressTest)
#include "taskbar_progress_test.moc"
