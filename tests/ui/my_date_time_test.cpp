#include "ui/my_date_time.h"

#include <QLineEdit>
#include <cstdlib>
#include <ctime>
#include <vector>

#include "support/platform.h"
#include "ui/ui_test.h"

namespace carvello {

class MyDateTimeTest : public QObject {
  Q_OBJECT

 private slots:
  void initTestCase();
  void init();
  void ShowsUtc();
  void ShowsLocalTime();
  void ReadsBackWhatItShows_data();
  void ReadsBackWhatItShows();
  void ReadsTheStartBackExactlyWhenClocksChangeWithinHours_data();
  void ReadsTheStartBackExactlyWhenClocksChangeWithinHours();
  void TakesTheOffsetAtTheRecordingsStart();
  void ReadsWhatIsTyped();
  void TypingOverASelectionBeginsAnew_data();
  void TypingOverASelectionBeginsAnew();
  void ADateTypedOverASelectionMayLieInAnotherMonth_data();
  void ADateTypedOverASelectionMayLieInAnotherMonth();
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
constexpr std::int64_t kDay = 24 * kHour;

// How far local time is ahead of UTC.
std::int64_t Offset(std::int64_t moment) {
  return test::WallClock(moment).toSecsSinceEpoch() - moment;
}

// The moments of 2021 at which clocks are changed.
std::vector<std::int64_t> Changes() {
  constexpr std::int64_t kYear = 1'609'459'200;
  std::vector<std::int64_t> changes;
  for (std::int64_t moment = kYear; moment < kYear + 365 * kDay; moment += kHour / 2) {
    if (Offset(moment) != Offset(moment - 1)) changes.push_back(moment);
  }
  return changes;
}

}  // namespace

// The tests hold in every time zone; what Berlin's clocks show is known besides.
void MyDateTimeTest::initTestCase() {
  const bool bBerlin = test::UseBerlinTime();
  QVERIFY(bBerlin || !qEnvironmentVariableIsSet("CARVELLO_IN_BERLIN"));
  if (bBerlin) {
    QCOMPARE(test::WallClock(kWinter), QDateTime(QDate(2020, 11, 2), QTime(0, 59), Qt::UTC));
    QCOMPARE(test::WallClock(kSummer), QDateTime(QDate(2020, 7, 1), QTime(2, 0), Qt::UTC));
    // Forward on 2021-03-28 and back on 2021-10-31, each at 01:00:00 UTC.
    QCOMPARE(Changes(), (std::vector<std::int64_t>{1'616'893'200, 1'635'642'000}));
  }
}

void MyDateTimeTest::init() {
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
  for (const std::int64_t moment : {kWinter, kSummer}) {
    m_pPickers->Set(moment, false);
    QCOMPARE(m_pDate->date(), test::WallClock(moment).date());
    QCOMPARE(m_pTime->time(), test::WallClock(moment).time());
  }
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

void MyDateTimeTest::ReadsTheStartBackExactlyWhenClocksChangeWithinHours_data() {
  QTest::addColumn<qint64>("change");
  QTest::newRow("no change") << qint64{kSummer};
  for (const std::int64_t change : Changes()) {
    QTest::newRow(Offset(change) > Offset(change - 1) ? "forward" : "back") << qint64{change};
  }
}

void MyDateTimeTest::ReadsTheStartBackExactlyWhenClocksChangeWithinHours() {
  QFETCH(qint64, change);
  const std::int64_t nBack = Offset(change - 1) - Offset(change);
  // UTC is read from local time, so the starts that matter are away from the change by the offset.
  for (std::int64_t start = change - 16 * kHour; start <= change + 16 * kHour; start += kHour / 4) {
    m_pPickers->SetRange(start, start + kHour, true);
    m_pPickers->Set(start, true);
    const std::int64_t read = m_pPickers->Get(true, start);
    // The hour of the night that comes twice by the clock on the wall cannot be told apart.
    const std::int64_t asLocal = start - Offset(start);
    const bool bTwice = asLocal >= change - nBack && asLocal < change + nBack;
    QVERIFY(read == start || (bTwice && std::abs(read - start) == nBack));
  }
}

void MyDateTimeTest::TakesTheOffsetAtTheRecordingsStart() {
  // A recording that began in summer time: its offset counts for a moment in winter as well.
  m_pDate->setDate(QDate(2020, 11, 1));
  m_pTime->setTime(QTime(12, 0, 0));
  const std::int64_t noonUtc = 1'604'232'000;
  QCOMPARE(m_pPickers->Get(true, kWinter), noonUtc);
  QCOMPARE(m_pPickers->Get(true, kSummer), noonUtc + Offset(kSummer) - Offset(kWinter));
  QCOMPARE(m_pPickers->Get(false, kSummer), noonUtc - Offset(kWinter));
}

void MyDateTimeTest::ReadsWhatIsTyped() {
  m_pPickers->Set(kWinter, true);
  m_pTime->setFocus();
  m_pTime->setSelectedSection(QDateTimeEdit::HourSection);
  QTest::keyClicks(m_pTime.get(), "081530");
  QCOMPARE(m_pTime->time(), QTime(8, 15, 30));
  QCOMPARE(m_pPickers->Get(true, kWinter), kWinter - 23 * kHour - 59 * 60 + 8 * kHour + 15 * 60 + 30);
}

void MyDateTimeTest::TypingOverASelectionBeginsAnew_data() {
  QTest::addColumn<int>("from");
  QTest::addColumn<int>("length");
  QTest::addColumn<QString>("typed");
  QTest::addColumn<QTime>("time");
  QTest::newRow("all, digits") << 0 << 8 << "235901" << QTime(23, 59, 1);
  QTest::newRow("all, with colons") << 0 << 8 << "23:59:01" << QTime(23, 59, 1);
  QTest::newRow("all, a short hour") << 0 << 8 << "7:05:09" << QTime(7, 5, 9);
  QTest::newRow("all, the hour alone") << 0 << 8 << "9" << QTime(9, 34, 56);
  QTest::newRow("hours and minutes") << 0 << 5 << "1820" << QTime(18, 20, 56);
  QTest::newRow("minutes and seconds in part") << 4 << 3 << "1807" << QTime(12, 18, 7);
}

void MyDateTimeTest::TypingOverASelectionBeginsAnew() {
  QFETCH(int, from);
  QFETCH(int, length);
  QFETCH(QString, typed);
  QFETCH(QTime, time);
  m_pTime->setTime(QTime(12, 34, 56));
  m_pTime->findChild<QLineEdit*>()->setSelection(from, length);
  QTest::keyClicks(m_pTime.get(), typed);
  QCOMPARE(m_pTime->time(), time);
}

void MyDateTimeTest::ADateTypedOverASelectionMayLieInAnotherMonth_data() {
  QTest::addColumn<QString>("format");
  QTest::addColumn<QString>("typed");
  QTest::addColumn<QDate>("date");
  QTest::newRow("points") << "dd.MM.yyyy"
                          << "31.10.2020" << QDate(2020, 10, 31);
  QTest::newRow("short") << "dd.MM.yyyy"
                         << "2.11.2020" << QDate(2020, 11, 2);
  QTest::newRow("digits") << "dd.MM.yyyy"
                          << "31102020" << QDate(2020, 10, 31);
  QTest::newRow("the month first") << "MM/dd/yyyy"
                                   << "10/31/2020" << QDate(2020, 10, 31);
  QTest::newRow("a name") << "d MMM yyyy"
                          << "31 Oct 2020" << QDate(2020, 10, 31);
  QTest::newRow("the year first") << "dd.MM.yyyy"
                                  << "2020-10-31" << QDate(2020, 10, 31);
}

void MyDateTimeTest::ADateTypedOverASelectionMayLieInAnotherMonth() {
  QFETCH(QString, format);
  QFETCH(QString, typed);
  QFETCH(QDate, date);
  m_pDate->setLocale(QLocale::c());
  m_pDate->setDisplayFormat(format);
  m_pDate->setDateRange(QDate(2020, 10, 30), QDate(2020, 11, 3));
  m_pDate->setDate(QDate(2020, 11, 1));
  QTest::keySequence(m_pDate.get(), QKeySequence::SelectAll);
  QTest::keyClicks(m_pDate.get(), typed);
  QCOMPARE(m_pDate->date(), date);
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
  QCOMPARE(m_pDate->minimumDate(), test::WallClock(kWinter).date());
  m_pPickers->Set(kWinter + 10 * kDay, false);
  QCOMPARE(m_pDate->date(), test::WallClock(kWinter + 26 * kHour).date());
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
