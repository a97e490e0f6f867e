#include "ui/frequency_text.h"

#include "ui/ui_test.h"

namespace carvello {

class FrequencyTextTest : public QObject {
  Q_OBJECT

 private slots:
  void FillsTheTemplateFromTheRight_data();
  void FillsTheTemplateFromTheRight();
  void ReadsFieldTexts_data();
  void ReadsFieldTexts();
  void AlignsTheMegahertzGroup_data();
  void AlignsTheMegahertzGroup();
  void ParsesWhatPeopleWrite_data();
  void ParsesWhatPeopleWrite();
  void RefusesWhatIsNoFrequency_data();
  void RefusesWhatIsNoFrequency();
};

void FrequencyTextTest::FillsTheTemplateFromTheRight_data() {
  QTest::addColumn<quint64>("frequency");
  QTest::addColumn<QString>("text");
  QTest::newRow("0 is a single 0 in the last place") << quint64{0} << "_____.___.__0";
  QTest::newRow("7.1 MHz") << quint64{7'100'000} << "____7.100.000";
  QTest::newRow("1 kHz") << quint64{1000} << "_____.__1.000";
  QTest::newRow("all places") << quint64{12'345'678'901} << "12345.678.901";
  QTest::newRow("leading digits are lost") << quint64{99'912'345'678'901} << "12345.678.901";
}

void FrequencyTextTest::FillsTheTemplateFromTheRight() {
  QFETCH(quint64, frequency);
  QFETCH(QString, text);
  QCOMPARE(QString::fromStdString(FrequencyTemplateText(frequency)), text);
}

void FrequencyTextTest::ReadsFieldTexts_data() {
  QTest::addColumn<QString>("text");
  QTest::addColumn<qint64>("frequency");
  QTest::newRow("empty text") << "" << qint64{0};
  QTest::newRow("empty field") << "_____.___.___" << qint64{0};
  QTest::newRow("0 written") << "_____.___.__0" << qint64{0};
  QTest::newRow("7.1 MHz") << "____7.100.000" << qint64{7'100'000};
  QTest::newRow("blanks for underscores") << "    7.100.000" << qint64{7'100'000};
  QTest::newRow("empty places inside count as 0") << "____7.1__.___" << qint64{7'100'000};
  QTest::newRow("empty places at the end of a group") << "7____.100.000" << qint64{70'000'100'000};
  QTest::newRow("another character ends the number") << "____7x100.000" << qint64{7};
  QTest::newRow("another character in front") << "x___7.100.000" << qint64{7'100'000};
  QTest::newRow("all places") << "99999.999.999" << qint64{99'999'999'999};
}

void FrequencyTextTest::ReadsFieldTexts() {
  QFETCH(QString, text);
  QFETCH(qint64, frequency);
  QCOMPARE(qint64{ReadFrequencyText(text.toStdString())}, frequency);
}

void FrequencyTextTest::AlignsTheMegahertzGroup_data() {
  QTest::addColumn<QString>("text");
  QTest::addColumn<QString>("aligned");
  QTest::newRow("empty text") << ""
                              << "";
  QTest::newRow("empty field") << "_____.___.___"
                               << "_____.___.___";
  QTest::newRow("digits at the left") << "7____.100.000"
                                      << "____7.100.000";
  QTest::newRow("blanks at the end") << "14   .200.___"
                                     << "___14.200.___";
  QTest::newRow("a gap between digits stays") << "1_4__.200.___"
                                              << "__1_4.200.___";
  QTest::newRow("in place") << "___14.200.000"
                            << "___14.200.000";
  QTest::newRow("full") << "12345.678.901"
                        << "12345.678.901";
  QTest::newRow("the other groups stay") << "1____.2__.3__"
                                         << "____1.2__.3__";
}

void FrequencyTextTest::AlignsTheMegahertzGroup() {
  QFETCH(QString, text);
  QFETCH(QString, aligned);
  QCOMPARE(QString::fromStdString(AlignMegahertz(text.toStdString())), aligned);
}

void FrequencyTextTest::ParsesWhatPeopleWrite_data() {
  QTest::addColumn<QString>("text");
  QTest::addColumn<qint64>("frequency");
  const auto row = [](const char* text, qint64 frequency) {
    QTest::newRow(text) << QString::fromUtf8(text) << frequency;
  };
  row("7.1 MHz", 7'100'000);
  row("7100 kHz", 7'100'000);
  row("7100000", 7'100'000);
  row("7,100,000 Hz", 7'100'000);
  row("7.100.000", 7'100'000);
  row("7.100.000 Hz", 7'100'000);
  row("____7.100.000", 7'100'000);
  row("_____.500.000", 500'000);
  row("7____.100.000", 7'100'000);
  row("7.1", 7'100'000);
  row("7,1", 7'100'000);
  row("7.", 7'000'000);
  row(".5 MHz", 500'000);
  row("0.500.000", 500'000);
  row("7.1MHZ", 7'100'000);
  row("  7.1\tmhz \n", 7'100'000);
  row("7,1 MHz", 7'100'000);
  row("7.100 MHz", 7'100'000);
  row("7,100 kHz", 7'100'000);
  row("14.200 kHz", 14'200);
  row("7,100 Hz", 7'100);
  row("7.100 Hz", 7'100);
  row("1,234.5 kHz", 1'234'500);
  row("1.234,5 kHz", 1'234'500);
  row("7 100 000", 7'100'000);
  row("7 100 kHz", 7'100'000);
  row("7'100'000 Hz", 7'100'000);
  row("7\xC2\xA0"
      "100\xE2\x80\xAF"
      "000 Hz",
      7'100'000);
  row("1.42040575 GHz", 1'420'405'750);
  row("7.0000004 MHz", 7'000'000);
  row("7.0000005 MHz", 7'000'001);
  row("0", 0);
  row("0 Hz", 0);
  row("99999999999", 99'999'999'999);
  row("99.999999999 GHz", 99'999'999'999);
}

void FrequencyTextTest::ParsesWhatPeopleWrite() {
  QFETCH(QString, text);
  QFETCH(qint64, frequency);
  const auto parsed = ReadFrequency(text.toStdString());
  QVERIFY(parsed.has_value());
  QCOMPARE(qint64{*parsed}, frequency);
}

void FrequencyTextTest::RefusesWhatIsNoFrequency_data() {
  QTest::addColumn<QString>("text");
  for (const char* text : {"",
                           " ",
                           "MHz",
                           ".",
                           ",",
                           ". kHz",
                           "abc",
                           "7 m",
                           "7 MHz 1",
                           "-7 MHz",
                           "+7",
                           "7e6",
                           "0x10",
                           "1,23,456",
                           "7.1.5",
                           "1.234.56 kHz",
                           "1,234,567.890.1",
                           "1.234,567.8 kHz",
                           "100000000000",
                           "100 GHz",
                           "99999999999.5 Hz",
                           "123456789012345678901234567890",
                           "1..2",
                           "7,.1"}) {
    QTest::newRow(text) << text;
  }
}

void FrequencyTextTest::RefusesWhatIsNoFrequency() {
  QFETCH(QString, text);
  QVERIFY(!ReadFrequency(text.toStdString()).has_value());
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::FrequencyTextTest)
#include "frequency_text_test.moc"
