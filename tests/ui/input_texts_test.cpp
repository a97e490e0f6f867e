#include "ui/input_texts.h"

#include <ctime>

#include "ui/ui_test.h"

namespace carvello {

namespace {

CRecordingSet Recording() {
  CRecordingSet recording;
  recording.strSourceName = "Halvarn (V3)";
  recording.files.resize(3);
  recording.nRadioCenterFreq = 7'000'000;
  recording.nSampleRate = 2'000'000;
  recording.nBitsPerSample = 16;
  recording.tStart = 1'604'275'140;  // 2020-11-01 23:59:00 UTC
  recording.tEnd = recording.tStart + 26 * 3600 + 61;
  return recording;
}

}  // namespace

class InputTextsTest : public QObject {
  Q_OBJECT

 private slots:
  void initTestCase();
  void ShowsEachFieldInItsFormat();
  void ShowsTimesOfDayInUtcWithAZ();
  void ShowsLocalTimesInTheUsersFormat();
  void ShowsDashesWithoutARecording();
  void ShowsADashForATimeBeyondTheCalendar();
  void ShowsNoLengthBelowZero();
};

void InputTextsTest::initTestCase() {
  test::SetTimeZone("XXX-3");  // three hours ahead of UTC
}

void InputTextsTest::ShowsEachFieldInItsFormat() {
  const SInputTexts texts = InputTexts(Recording(), true);
  QCOMPARE(texts.strCentre, std::string("7.000 MHz"));  // the signed form
  QCOMPARE(texts.strBandwidth, std::string("2 MHz"));   // the unsigned form
  QCOMPARE(texts.strSampleSize, std::string("16 bit"));
  QCOMPARE(texts.strTotalFiles, std::string("3 "));
  QCOMPARE(texts.strTotal, std::string("1d 02:01:01"));
  QCOMPARE(texts.strSource, std::string("Halvarn (V3)"));
}

void InputTextsTest::ShowsTimesOfDayInUtcWithAZ() {
  // The C locale's short date.
  const SInputTexts texts = InputTexts(Recording(), true);
  QCOMPARE(texts.strStart, (test::DateText(2020, 11, 1) + " 23:59:00z").toStdString());
  QCOMPARE(texts.strFinish, (test::DateText(2020, 11, 3) + " 02:00:01z").toStdString());
}

void InputTextsTest::ShowsLocalTimesInTheUsersFormat() {
  const SInputTexts texts = InputTexts(Recording(), false);
  QCOMPARE(texts.strStart, (test::DateText(2020, 11, 2) + " " + test::TimeText(2, 59, 0)).toStdString());
  QCOMPARE(texts.strFinish, (test::DateText(2020, 11, 3) + " " + test::TimeText(5, 0, 1)).toStdString());
}

void InputTextsTest::ShowsDashesWithoutARecording() {
  const SInputTexts texts;
  for (const std::string& text : {texts.strCentre, texts.strBandwidth, texts.strSampleSize, texts.strTotalFiles,
                                  texts.strStart, texts.strFinish, texts.strTotal, texts.strSource}) {
    QCOMPARE(text, std::string("-"));
  }
}

void InputTextsTest::ShowsADashForATimeBeyondTheCalendar() {
  QCOMPARE(DateTimeText(std::int64_t{1} << 62, true), std::string("-"));
  QCOMPARE(DateTimeText(std::int64_t{1} << 62, false), std::string("-"));
}

void InputTextsTest::ShowsNoLengthBelowZero() {
  CRecordingSet recording = Recording();
  recording.tEnd = recording.tStart - 5;
  QCOMPARE(InputTexts(recording, true).strTotal, std::string("0d 00:00:00"));
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::InputTextsTest)
#include "input_texts_test.moc"
