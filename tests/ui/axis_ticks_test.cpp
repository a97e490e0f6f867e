#include "ui/axis_ticks.h"

#include <QStringList>

#include "ui/test_desktop.h"
#include "ui/ui_test.h"

namespace carvello {

namespace {

constexpr std::int64_t kStart = 1'604'275'140;  // 2020-11-01 23:59:00 UTC

QStringList Texts(const std::vector<STick>& ticks) {
  QStringList texts;
  for (const STick& tick : ticks) {
    if (!tick.strText.empty()) texts << QString::fromStdString(tick.strText);
  }
  return texts;
}

}  // namespace

class AxisTicksTest : public QObject {
  Q_OBJECT

 private slots:
  void FrequenciesAreRoundNumbersOfMegahertz();
  void FrequenciesHaveTheDecimalsThatTheyNeed();
  void TextsAreNoMoreThanWanted();
  void MarksStandBetweenTheTexts();
  void TimesAreRoundOnTheClock();
  void MidnightIsTheDate();
  void FractionsOfASecond();
  void LevelsHaveAMinusSign();
  void AnEmptySpanHasNoMarks();
  void ReadingsAreAsExactAsThePixels();
  void LengthsAndWidthsInFewCharacters();
};

void AxisTicksTest::FrequenciesAreRoundNumbersOfMegahertz() {
  QCOMPARE(Texts(FrequencyTicks({6'098'000.0, 8'102'000.0}, 5)), QStringList({"6.5", "7.0", "7.5", "8.0"}));
  QCOMPARE(Texts(FrequencyTicks({0.0, 2e6}, 10)).size(), 11);
}

void AxisTicksTest::FrequenciesHaveTheDecimalsThatTheyNeed() {
  QCOMPARE(Texts(FrequencyTicks({7'099'990.0, 7'100'021.0}, 4)),
           QStringList({"7.09999", "7.10000", "7.10001", "7.10002"}));
  QCOMPARE(Texts(FrequencyTicks({7'100'000.0, 7'100'000.25}, 3)), QStringList({"7.1000000", "7.1000001", "7.1000002"}));
  QCOMPARE(Texts(FrequencyTicks({-1e6, 1e6}, 2)), QStringList({"-1", "0", "1"}));
}

void AxisTicksTest::TextsAreNoMoreThanWanted() {
  for (const double length : {3.0, 17.0, 999.0, 96'000.0, 2e6, 61.44e6}) {
    for (const int most : {1, 2, 5, 12}) {
      const auto texts = Texts(FrequencyTicks({7.1e6, 7.1e6 + length}, most)).size();
      QVERIFY2(texts <= most + 1, qPrintable(QString("%1 %2: %3").arg(length).arg(most).arg(texts)));
    }
  }
}

void AxisTicksTest::MarksStandBetweenTheTexts() {
  const std::vector<STick> ticks = FrequencyTicks({7'000'000.0, 7'200'000.0}, 2);
  QCOMPARE(ticks.size(), std::size_t{11});
  QCOMPARE(ticks[1].dAt, 7'020'000.0);
  QVERIFY(ticks[1].strText.empty());
  QCOMPARE(ticks[5].strText, std::string("7.1"));
}

void AxisTicksTest::TimesAreRoundOnTheClock() {
  // From 23:59:00 on.
  QCOMPARE(Texts(TimeTicks({0.0, 40.0}, kStart, true, 4)),
           QStringList({"23:59:00", "23:59:10", "23:59:20", "23:59:30", "23:59:40"}));
  QCOMPARE(Texts(TimeTicks({100.0, 1900.0}, kStart, true, 3)), QStringList({"00:10", "00:20", "00:30"}));
  QCOMPARE(Texts(TimeTicks({60.0 + 3 * 3600.0, 60.0 + 15 * 3600.0}, kStart, true, 4)),
           QStringList({"03:00", "06:00", "09:00", "12:00", "15:00"}));
}

void AxisTicksTest::MidnightIsTheDate() {
  const QStringList texts = Texts(TimeTicks({0.0, 600.0}, kStart, true, 5));
  QCOMPARE(texts.size(), 5);
  QVERIFY2(texts[0].contains("02") || texts[0].contains("2"), qPrintable(texts[0]));
  QVERIFY2(!texts[0].contains(':'), qPrintable(texts[0]));
  QCOMPARE(texts.mid(1), QStringList({"00:02", "00:04", "00:06", "00:08"}));
}

void AxisTicksTest::FractionsOfASecond() {
  QCOMPARE(Texts(TimeTicks({0.95, 1.25}, kStart, true, 3)), QStringList({"23:59:01.0", "23:59:01.1", "23:59:01.2"}));
  QCOMPARE(Texts(TimeTicks({2.0, 2.0003}, kStart, true, 3)),
           QStringList({":02.0000", ":02.0001", ":02.0002", ":02.0003"}));
}

void AxisTicksTest::LevelsHaveAMinusSign() {
  QCOMPARE(Texts(LevelTicks({-60.0, 10.0}, 4)), QStringList({"−60", "−40", "−20", "0"}));
}

void AxisTicksTest::AnEmptySpanHasNoMarks() {
  QVERIFY(FrequencyTicks({5.0, 5.0}, 5).empty());
  QVERIFY(LevelTicks({5.0, 4.0}, 5).empty());
  QVERIFY(TimeTicks({0.0, 0.0}, kStart, true, 5).empty());
}

void AxisTicksTest::ReadingsAreAsExactAsThePixels() {
  QCOMPARE(FrequencyReading(7'100'123.45, 2'000.0), std::string("7.100 MHz"));
  QCOMPARE(FrequencyReading(7'100'123.45, 10.0), std::string("7.10012 MHz"));
  QCOMPARE(FrequencyReading(7'100'123.46, 0.01), std::string("7.1001235 MHz"));
  const QString whole = QString::fromStdString(TimeReading(1.5, kStart, true, 1.0));
  QVERIFY2(whole.endsWith(" 23:59:02z") || whole.endsWith(" 23:59:01z"), qPrintable(whole));
  QVERIFY(QString::fromStdString(TimeReading(1.5, kStart, true, 0.01)).endsWith(" 23:59:01.50z"));
  QVERIFY(QString::fromStdString(TimeReading(59.9999, kStart, true, 0.01)).endsWith(" 00:00:00.00z"));
  QVERIFY(!QString::fromStdString(TimeReading(1.5, kStart, false, 1.0)).endsWith("z"));
}

void AxisTicksTest::LengthsAndWidthsInFewCharacters() {
  QCOMPARE(LengthText(0.00035), std::string("350 µs"));
  QCOMPARE(LengthText(0.35), std::string("350 ms"));
  QCOMPARE(LengthText(12.5), std::string("12.5 s"));
  QCOMPARE(LengthText(125.0), std::string("2 min 05 s"));
  QCOMPARE(LengthText(7500.0), std::string("2 h 05 min"));
  QCOMPARE(LengthText(100'000.0), std::string("1 d 04 h"));
  QCOMPARE(WidthText(350.0), std::string("350 Hz"));
  QCOMPARE(WidthText(12'500.0), std::string("12.5 kHz"));
  QCOMPARE(WidthText(1'024'000.0), std::string("1.024 MHz"));
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::AxisTicksTest)
#include "axis_ticks_test.moc"
