#include "ui/output_choices.h"

#include <QComboBox>

#include "ui/ui_test.h"

namespace carvello {

namespace {

std::vector<std::string> Texts(const std::vector<SChoice>& choices) {
  std::vector<std::string> texts;
  for (const SChoice& choice : choices) texts.push_back(choice.strText);
  return texts;
}

std::vector<SChoice> Offered(std::uint32_t rate, std::uint32_t from, std::uint32_t to) {
  std::vector<SChoice> part;
  for (const SChoice& choice : BandwidthChoices(rate)) {
    if (choice.nValue <= from && choice.nValue >= to) part.push_back(choice);
  }
  return part;
}

CRecordingSet RecordingOf(std::int64_t seconds) {
  CRecordingSet recording;
  recording.tStart = 1'604'275'140;
  recording.tEnd = recording.tStart + seconds;
  return recording;
}

}  // namespace

class OutputChoicesTest : public QObject {
  Q_OBJECT

 private slots:
  void Offers2MegahertzThen1000KilohertzOfA2MegahertzRecording();
  void HalvesTheRateWhileItIsAboveOneMegahertz();
  void OffersNothingAboveTheSampleRate();
  void OffersEveryStepOfEachRow_data();
  void OffersEveryStepOfEachRow();
  void OffersNothingWithoutARecording();
  void OffersThreeFileSizes();
  void OffersHoursAndMinutesWithinTheRecording_data();
  void OffersHoursAndMinutesWithinTheRecording();
  void KeepsTheSelectionWhenAValueIsNotOffered();
};

void OutputChoicesTest::Offers2MegahertzThen1000KilohertzOfA2MegahertzRecording() {
  const auto choices = BandwidthChoices(2'000'000);
  QCOMPARE(choices.at(0), (SChoice{"2 MHz", 2'000'000}));
  QCOMPARE(choices.at(1), (SChoice{"1000 kHz", 1'000'000}));
  QCOMPARE(choices.at(2), (SChoice{"975 kHz", 975'000}));
}

void OutputChoicesTest::HalvesTheRateWhileItIsAboveOneMegahertz() {
  const std::vector<SChoice> wide = Offered(10'000'001, 10'000'001, 1'000'001);
  QCOMPARE(
      wide,
      (std::vector<SChoice>{
          {"10.000001 MHz", 10'000'001}, {"5 MHz", 5'000'000}, {"2.500 MHz", 2'500'000}, {"1.250 MHz", 1'250'000}}));
}

void OutputChoicesTest::OffersNothingAboveTheSampleRate() {
  const auto choices = BandwidthChoices(192'000);
  QCOMPARE(choices.front(), (SChoice{"190 kHz", 190'000}));
  for (const SChoice& choice : choices) QVERIFY(choice.nValue != 1'000'000);
  QCOMPARE(BandwidthChoices(1'000'000).front(), (SChoice{"1000 kHz", 1'000'000}));
  QCOMPARE(BandwidthChoices(999'999).front(), (SChoice{"975 kHz", 975'000}));
}

void OutputChoicesTest::OffersEveryStepOfEachRow_data() {
  QTest::addColumn<unsigned>("from");
  QTest::addColumn<unsigned>("to");
  QTest::addColumn<int>("count");
  QTest::addColumn<QString>("first");
  QTest::addColumn<QString>("last");
  QTest::newRow("25 kHz steps") << 1'000'000U << 275'000U << 30 << "1000 kHz"
                                << "275 kHz";
  QTest::newRow("10 kHz steps") << 250'000U << 30'000U << 23 << "250 kHz"
                                << "30 kHz";
  QTest::newRow("1 kHz steps") << 20'000U << 3'000U << 18 << "20 kHz"
                               << "3 kHz";
  QTest::newRow("100 Hz steps") << 2'000U << 300U << 18 << "2 kHz"
                                << "300 Hz";
  QTest::newRow("a part of a kHz") << 1'900U << 1'100U << 9 << "1.9 kHz"
                                   << "1.1 kHz";
  QTest::newRow("10 Hz steps") << 200U << 10U << 20 << "200 Hz"
                               << "10 Hz";
  QTest::newRow("between rows") << 274'999U << 250'001U << 0 << ""
                                << "";
}

void OutputChoicesTest::OffersEveryStepOfEachRow() {
  QFETCH(unsigned, from);
  QFETCH(unsigned, to);
  QFETCH(int, count);
  QFETCH(QString, first);
  QFETCH(QString, last);
  const auto part = Offered(4'000'000, from, to);
  QCOMPARE(static_cast<int>(part.size()), count);
  if (part.empty()) return;
  QCOMPARE(QString::fromStdString(part.front().strText), first);
  QCOMPARE(QString::fromStdString(part.back().strText), last);
  // Evenly spaced from end to end.
  QCOMPARE(part.front().nValue, from);
  QCOMPARE(part.back().nValue, to);
  for (std::size_t i = 1; i < part.size(); ++i) {
    QCOMPARE(part[i - 1].nValue - part[i].nValue, (from - to) / static_cast<unsigned>(count - 1));
  }
}

void OutputChoicesTest::OffersNothingWithoutARecording() {
  QVERIFY(BandwidthChoices(0).empty());
}

void OutputChoicesTest::OffersThreeFileSizes() {
  QCOMPARE(FileSizeChoices(),
           (std::vector<SChoice>{{"100 MB", 100}, {"1 GB", 1000}, {"One file (RF64)", 0}, {"SigMF", kSigMfChoice}}));
}

void OutputChoicesTest::OffersHoursAndMinutesWithinTheRecording_data() {
  QTest::addColumn<int>("seconds");
  QTest::addColumn<QString>("lastHour");
  QTest::addColumn<QString>("lastMinute");
  QTest::newRow("26 hours") << 26 * 3600 << "23"
                            << "59";
  QTest::newRow("40 minutes") << 40 * 60 << "0"
                              << "40";
  QTest::newRow("a second less than 40 minutes") << 40 * 60 - 1 << "0"
                                                 << "39";
  QTest::newRow("60 minutes") << 3600 << "1"
                              << "59";
  QTest::newRow("10 seconds") << 10 << "0"
                              << "0";
  QTest::newRow("an end before the start") << -100 << "0"
                                           << "0";
}

void OutputChoicesTest::OffersHoursAndMinutesWithinTheRecording() {
  QFETCH(int, seconds);
  QFETCH(QString, lastHour);
  QFETCH(QString, lastMinute);
  const auto hours = Texts(HourChoices(RecordingOf(seconds)));
  const auto minutes = Texts(MinuteChoices(RecordingOf(seconds)));
  QCOMPARE(hours.front(), std::string("0"));
  QCOMPARE(minutes.front(), std::string("0"));
  QCOMPARE(QString::fromStdString(hours.back()), lastHour);
  QCOMPARE(QString::fromStdString(minutes.back()), lastMinute);
  QCOMPARE(static_cast<int>(hours.size()), lastHour.toInt() + 1);
  QCOMPARE(static_cast<int>(minutes.size()), lastMinute.toInt() + 1);
}

void OutputChoicesTest::KeepsTheSelectionWhenAValueIsNotOffered() {
  QComboBox list;
  FillList(list, FileSizeChoices(), ESelect::Nothing);
  QCOMPARE(list.currentIndex(), -1);
  QCOMPARE(SelectedValue(list), 0U);
  SelectByValue(list, 1000);
  SelectByValue(list, 77);
  QCOMPARE(list.currentText(), QString("1 GB"));
  QCOMPARE(SelectedValue(list), 1000U);
  FillList(list, FileSizeChoices(), ESelect::First);
  QCOMPARE(list.currentText(), QString("100 MB"));
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::OutputChoicesTest)
#include "output_choices_test.moc"
