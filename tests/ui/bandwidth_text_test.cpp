#include "ui/bandwidth_text.h"

#include "ui/ui_test.h"

namespace carvello {

class BandwidthTextTest : public QObject {
  Q_OBJECT

 private slots:
  void ReadsWhatUsersType_data();
  void ReadsWhatUsersType();
  void RefusesWhatIsNoBandwidth_data();
  void RefusesWhatIsNoBandwidth();
  void WritesWhatItReads_data();
  void WritesWhatItReads();
};

void BandwidthTextTest::ReadsWhatUsersType_data() {
  QTest::addColumn<QString>("text");
  QTest::addColumn<unsigned>("bandwidth");
  QTest::newRow("k") << "12.5k" << 12'500U;
  QTest::newRow("kHz") << "10 kHz" << 10'000U;
  QTest::newRow("Hz") << "12500 Hz" << 12'500U;
  QTest::newRow("any case") << "10KHZ" << 10'000U;
  QTest::newRow("comma") << "12,5 kHz" << 12'500U;
  QTest::newRow("M") << "1.2M" << 1'200'000U;
  QTest::newRow("MHz") << " 2 MHz " << 2'000'000U;
  QTest::newRow("no digit before the point") << ".5k" << 500U;
  QTest::newRow("a small number alone is kHz") << "10" << 10'000U;
  QTest::newRow("a fraction alone is kHz") << "12.5" << 12'500U;
  QTest::newRow("a large number alone is Hz") << "12500" << 12'500U;
  QTest::newRow("from 1000 on") << "1000" << 1'000U;
  QTest::newRow("below 1000") << "999" << 999'000U;
  QTest::newRow("groups") << "12.500 Hz" << 12'500U;
  QTest::newRow("whole hertz") << "12.345k" << 12'345U;
  QTest::newRow("zeros behind") << "12.3450000k" << 12'345U;
  QTest::newRow("the largest") << "4294967295 Hz" << 4'294'967'295U;
}

void BandwidthTextTest::ReadsWhatUsersType() {
  QFETCH(QString, text);
  QFETCH(unsigned, bandwidth);
  const auto read = ParseBandwidth(text.toStdString());
  QVERIFY(read.has_value());
  QCOMPARE(*read, bandwidth);
}

void BandwidthTextTest::RefusesWhatIsNoBandwidth_data() {
  QTest::addColumn<QString>("text");
  for (const char* text : {"", " ", "k", "kHz", "Hz", ".", ".k", "-10k", "+10k", "12.3456k", "0.5 Hz", "1.2.3k", "10q",
                           "10 kHzz", "1e4", "4294967296 Hz", "99999999999999999999k", "0x10", "10\n"}) {
    QTest::newRow(text) << text;
  }
}

void BandwidthTextTest::RefusesWhatIsNoBandwidth() {
  QFETCH(QString, text);
  QVERIFY(!ParseBandwidth(text.toStdString()).has_value());
}

void BandwidthTextTest::WritesWhatItReads_data() {
  QTest::addColumn<unsigned>("bandwidth");
  QTest::addColumn<QString>("text");
  QTest::newRow("Hz") << 300U << "300 Hz";
  QTest::newRow("kHz") << 10'000U << "10 kHz";
  QTest::newRow("a fraction") << 1'900U << "1.9 kHz";
  QTest::newRow("a fraction with a zero in front") << 12'050U << "12.05 kHz";
  QTest::newRow("single hertz") << 12'001U << "12.001 kHz";
  QTest::newRow("the widest in kHz") << 1'000'000U << "1000 kHz";
  QTest::newRow("MHz") << 2'400'000U << "2.400 MHz";
}

void BandwidthTextTest::WritesWhatItReads() {
  QFETCH(unsigned, bandwidth);
  QFETCH(QString, text);
  QCOMPARE(QString::fromStdString(BandwidthText(bandwidth)), text);
  QCOMPARE(ParseBandwidth(text.toStdString()).value_or(0), bandwidth);
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::BandwidthTextTest)
#include "bandwidth_text_test.moc"
