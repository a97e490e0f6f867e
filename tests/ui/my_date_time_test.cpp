#include "ui/my_date_time.h"

#include <QLineEdit>
#include <cstdlib>
#include <ctime>

#include "support/platform.h"
#include "ui/ui_test.h"

namespace carvello {

class MyDateTimeTest : public QObject {
  Q_OBJECT

 private slots:
  void init();
  void ShowsUtc();
  void ShowsLocalTime();
  void ReadsBackWhatItShows_data();
  void ReadsBackWhatItShows();
  void ReadsTheStartBackExactlyWhenClocksChangeWithinHours();
  void TakesTheOffsetAtTheRecordingsStart();
  void ReadsWhatIsTyped();
  void ReadsTheArrows();
  void OffersTheDatesOfTheRecording();
  void ShowsFourDigitsOfTheYear();
  void KeepsItsWidthWithEveryRange();

 private:
  std::unique_ptr<CMyDatePicker> m_pDate;
  std::unique_ptr<CMyTimePicker> m_pTime;
  std::unique_ptr<CMyDateTime> m_pPickers;
};

namespace {

constexpr std::int64_t kWinter = 1'604'275'140;  // 2020-11-01 23:59:00 UTC, 2020-11-02 00:59:00 in Berlin
constexpr std::int64_t kSummer = 1'593'561'600;  // 2020-07-01 00:00:00 UTC, 02:00:00 in Berlin
constexpr std::int64_t kHour = 3600;

}  // namespace

void MyDateTimeTest::init() {
  test::UseBerlinTime();
  m_pDate = std::make_unique<CMyDatePicker>();
  m_pTime = std::make_unique<CMyTimePicker>();
  m_pPickers = std::make_unique<CMyDateTime>(m_pDate.get(), m_pTime.get());
}

void MyDateTimeTest::ShowsUtc() {
  m_pPickers->Set(kWinter, true);
  QCOMPARE(m_pDate->date(), QDate(2020, 11, 1));
  QCOMPARE(m_pTime->time(), QTime(23, 59, 0));
  QCOMPARE(m_pTime->text(), "23:59:00");
}

void MyDateTimeTest::ShowsLocalTime() {
  m_pPickers->Set(kWinter, false);
  QCOMPARE(m_pDate->date(), QDate(2020, 11, 2));
  QCOMPARE(m_pTime->time(), QTime(0, 59, 0));
  m_pPickers->Set(kSummer, false);
  QCOMPARE(m_pTime->time(), QTime(2, 0, 0));
}

void MyDateTimeTest::ReadsBackWhatItShows_data() {
  QTest::addColumn<qint64>("moment");
  QTest::addColumn<bool>("utc");
  QTest::newRow("winter, UTC") << qint64{kWinter} << true;
  QTest::newRow("winter, local") << qint64{kWinter} << false;
  QTest::newRow("summer, UTC") << qint64{kSummer} << true;
  QTest::newRow("summer, local") << qint64{kSummer} << false;
  std::tm ignored{};
  if (platform::LocalTime(-86'400 * 365, ignored)) {  // not every system has local times so early
    QTest::newRow("before 1970") << qint64{-86'400 * 365} << true;
  }
  QTest::newRow("behind 2038") << qint64{4'102'444'799} << true;
}

void MyDateTimeTest::ReadsBackWhatItShows() {
  QFETCH(qint64, moment);
  QFETCH(bool, utc);
  m_pPickers->Set(moment, utc);
  QCOMPARE(qint64{m_pPickers->Get(utc, moment)}, moment);
}

void MyDateTimeTest::ReadsTheStartBackExactlyWhenClocksChangeWithinHours() {
  // Clocks in Berlin went forward on 2021-03-28 and back on 2021-10-31, each at 01:00:00 UTC.
  for (const std::int64_t change : {std::int64_t{1'616'893'200}, std::int64_t{1'635'642'000}}) {
    for (std::int64_t start = change - 3 * kHour; start <= change + 3 * kHour; start += kHour / 4) {
      m_pPickers->SetRange(start, start + kHour, true);
      m_pPickers->Set(start, true);
      const std::int64_t read = m_pPickers->Get(true, start);
      // The hour of the night that comes twice by the clock on the wall cannot be told apart.
      const bool bTwice = change == 1'635'642'000 && start >= change && start < change + 2 * kHour;
      QVERIFY(read == start || (bTwice && std::abs(read - start) == kHour));
    }
  }
}

void MyDateTimeTest::TakesTheOffsetAtTheRecordingsStart() {
  // A recording that began in summer time: its offset of two hours counts for a moment in winter as well.
  m_pDate->setDate(QDate(2020, 11, 1));
  m_pTime->setTime(QTime(12, 0, 0));
  const std::int64_t noonUtc = 1'604'232'000;
  QCOMPARE(m_pPickers->Get(true, kWinter), noonUtc);
  QCOMPARE(m_pPickers->Get(true, kSummer), noonUtc + kHour);
  QCOMPARE(m_pPickers->Get(false, kSummer), noonUtc - kHour);
}

void MyDateTimeTest::ReadsWhatIsTyped() {
  m_pPickers->Set(kWinter, true);
  m_pTime->setFocus();
  m_pTime->setSelectedSection(QDateTimeEdit::HourSection);
  QTest::keyClicks(m_pTime.get(), "081530");
  QCOMPARE(m_pTime->time(), QTime(8, 15, 30));
  QCOMPARE(m_pPickers->Get(true, kWinter), kWinter - 23 * kHour - 59 * 60 + 8 * kHour + 15 * 60 + 30);
}

void MyDateTimeTest::ReadsTheArrows() {
  m_pPickers->Set(kSummer, true);
  m_pTime->setSelectedSection(QDateTimeEdit::MinuteSection);
  QTest::keyClick(m_pTime.get(), Qt::Key_Up);
  QCOMPARE(m_pPickers->Get(true, kSummer), kSummer + 60);
}

void MyDateTimeTest::OffersTheDatesOfTheRecording() {
  m_pPickers->SetRange(kWinter, kWinter + 26 * kHour, true);
  QCOMPARE(m_pDate->minimumDate(), QDate(2020, 11, 1));
  QCOMPARE(m_pDate->maximumDate(), QDate(2020, 11, 3));
  m_pPickers->SetRange(kWinter, kWinter + 26 * kHour, false);
  QCOMPARE(m_pDate->minimumDate(), QDate(2020, 11, 2));
  m_pPickers->Set(kWinter + 10 * 24 * kHour, false);
  QCOMPARE(m_pDate->date(), QDate(2020, 11, 3));
}

void MyDateTimeTest::ShowsFourDigitsOfTheYear() {
  for (const QLocale& locale : {QLocale(QLocale::German), QLocale(QLocale::English), QLocale(QLocale::Japanese)}) {
    QLocale::setDefault(locale);
    CMyDatePicker picker;
    picker.setDate(QDate(2020, 11, 1));
    QVERIFY2(picker.text().contains("2020"), qPrintable(picker.text()));
  }
  QLocale::setDefault(QLocale::c());
}

// The window would move with it.
void MyDateTimeTest::KeepsItsWidthWithEveryRange() {
  const auto width = [this] { return std::max(m_pDate->sizeHint().width(), m_pDate->minimumWidth()); };
  const int before = width();
  m_pPickers->SetRange(kSummer, kSummer, true);
  QCOMPARE(width(), before);
  m_pPickers->SetRange(kSummer, kWinter, true);
  QCOMPARE(width(), before);
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::MyDateTimeTest)
#include "my_date_time_test.moc"
