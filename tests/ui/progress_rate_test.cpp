#include "ui/progress_rate.h"

#include "ui/ui_test.h"

namespace carvello {

class ProgressRateTest : public QObject {
  Q_OBJECT

 private slots:
  void TellsNothingUntilItIsKnown();
  void TellsSpeedAndTimeLeft();
  void CountsOnlyTheStretchThatIsRead();
  void FollowsAChangeOfSpeedSmoothly();
  void TimeGoesOnBetweenTwoSteps();
  void TellsNothingOfAJobThatStandsStill();
  void AnotherJobBeginsAnew();

 private:
  CProgressRate m_rate;
};

void ProgressRateTest::TellsNothingUntilItIsKnown() {
  QCOMPARE(m_rate.Text(0), std::string());
  m_rate.Begin({0, 1e9, 1e9}, 1000);
  QCOMPARE(m_rate.Text(9000), std::string());
  m_rate.Update(0.01, 1500);
  QCOMPARE(m_rate.Text(1500), std::string());
  m_rate.Update(0.02, 3000);
  QCOMPARE(m_rate.Text(3000), std::string("10.0 MB/s, 1:38 left"));
}

void ProgressRateTest::TellsSpeedAndTimeLeft() {
  m_rate.Begin({0, 400e9, 400e9}, 0);
  for (int second = 1; second <= 100; ++second) m_rate.Update(second * 1e8 / 400e9, second * 1000);
  QCOMPARE(m_rate.Text(100'000), std::string("100.0 MB/s, 1:05:00 left"));
}

void ProgressRateTest::CountsOnlyTheStretchThatIsRead() {
  // The third quarter of an input: progress is told of the whole.
  m_rate.Begin({500e6, 750e6, 1000e6}, 0);
  m_rate.Update(0.6, 4000);
  QCOMPARE(m_rate.Text(4000), std::string("25.0 MB/s, 0:06 left"));
  m_rate.Update(1.0, 10'000);  // the job says so when it ends early
  QCOMPARE(m_rate.Text(10'000), std::string("25.0 MB/s, 0:00 left"));
}

void ProgressRateTest::FollowsAChangeOfSpeedSmoothly() {
  m_rate.Begin({0, 10e9, 10e9}, 0);
  double place = 0;
  std::int64_t now = 0;
  const auto run = [&](int seconds, double bytesPerSecond) {
    for (int i = 0; i < seconds; ++i) m_rate.Update((place += bytesPerSecond) / 10e9, now += 1000);
    return std::stod(m_rate.Text(now));
  };
  QCOMPARE(run(30, 100e6), 100.0);
  const double soon = run(1, 50e6);
  QVERIFY(soon > 90.0 && soon < 100.0);  // not at once
  QCOMPARE(run(10, 50e6), 50.0);         // but within the window
}

void ProgressRateTest::TimeGoesOnBetweenTwoSteps() {
  m_rate.Begin({0, 100e6, 100e6}, 0);
  m_rate.Update(0.1, 10'000);
  QCOMPARE(m_rate.Text(10'000), std::string("1.0 MB/s, 1:30 left"));
  QCOMPARE(m_rate.Text(13'000), std::string("1.0 MB/s, 1:27 left"));
}

void ProgressRateTest::TellsNothingOfAJobThatStandsStill() {
  m_rate.Begin({0, 100e6, 100e6}, 0);
  m_rate.Update(0.1, 10'000);
  // Slower and slower, then nothing.
  QVERIFY(std::stod(m_rate.Text(30'000)) < 0.5);
  QCOMPARE(m_rate.Text(80'000), std::string());
}

void ProgressRateTest::AnotherJobBeginsAnew() {
  m_rate.Begin({0, 100e6, 100e6}, 0);
  m_rate.Update(0.5, 10'000);
  m_rate.Begin({0, 100e6, 100e6}, 20'000);
  QCOMPARE(m_rate.Text(25'000), std::string());
  m_rate.Update(0.1, 22'000);
  QCOMPARE(m_rate.Text(22'000), std::string("5.0 MB/s, 0:18 left"));
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::ProgressRateTest)
#include "progress_rate_test.moc"
