#include <QDateEdit>
#include <QDir>
#include <QFileInfo>
#include <QTimeEdit>
#include <ctime>

#include "ui/dialog_fixture.h"
#include "ui/ui_test.h"
#include "ui/ways_out.h"

namespace carvello {

using test::CDialogFixture;
using test::SRecordingSpec;

class DialogInputTest : public QObject {
  Q_OBJECT

 private slots:
  void initTestCase();
  void init() { m_pFixture = std::make_unique<CDialogFixture>(); }
  void cleanup() { m_pFixture.reset(); }

  void StartsWithDashesAndTheReadyLines();
  void ShowsWhatIsKnownOfTheRecording();
  void ShowsLocalTimesWithoutUtc();
  void GivesThePickersTheRecordingsRangeAndEnds();
  void TakesTheRecordingsCentreIntoTheFrequencyField();
  void TheArrowTakesTheRecordingsCentreBack();
  void OffersTheBandwidthsOfTheRecording();
  void SelectsNoBandwidthWhereOneMegahertzIsNotOffered();
  void OffersDurationsWithinTheRecording();
  void ARejectedInputSaysWhyAndDisablesWhatFollows();
  void AMissingInputSaysSo();
  void AnEmptiedInputIsNoError();
  void ANewInputEmptiesTheList();
  void TogglingUtcEmptiesTheListOfAValidInput();
  void TogglingUtcShowsTheTimesAnew();
  void TheFirstFileSizeIsSelectedAtStartUp();
  void SelectsTheGivenInputAtOnce();
  void AGivenInputIsRememberedWithItsFolder();
  void AGivenInputThatCannotBeReadSaysWhy();
  void DropsTheHighlightOfTheInputPathAfterStartUp();
  void EveryChangeOfTheTextIsASelection();
  void TheOutputFolderIsOpened();
  void AnEmptyOutputFolderIsNotOpened();
  void AnOutputFolderThatIsGoneIsTold();

 private:
  std::unique_ptr<CDialogFixture> m_pFixture;
};

void DialogInputTest::initTestCase() {
  test::SetTimeZone("XXX-3");  // three hours ahead of UTC
}

void DialogInputTest::StartsWithDashesAndTheReadyLines() {
  m_pFixture->Open();
  for (const int id : {1001, 1002, 1003, 1004, 1005, 1006, 1007, 1036}) QCOMPARE(m_pFixture->Text(id), QString("-"));
  QCOMPARE(m_pFixture->Log(), (QStringList{"Ready", "Processors: 2, max threads: 8"}));
  QCOMPARE(m_pFixture->Control<CMyMFCMaskedEdit>(1010).text(), QString("_____.___.__0"));
}

void DialogInputTest::ShowsWhatIsKnownOfTheRecording() {
  m_pFixture->OpenReady({.nSampleRate = 2'000'000, .nCentre = 7'000'000, .nSeconds = 300});
  QCOMPARE(m_pFixture->Text(1001), QString("7.000 MHz"));
  QCOMPARE(m_pFixture->Text(1002), QString("2 MHz"));
  QCOMPARE(m_pFixture->Text(1003), QString("16 bit"));
  QCOMPARE(m_pFixture->Text(1004), QString("1 "));
  QCOMPARE(m_pFixture->Text(1005), test::DateText(2020, 11, 1) + " 23:59:00z");
  QCOMPARE(m_pFixture->Text(1006), test::DateText(2020, 11, 2) + " 00:04:00z");
  QCOMPARE(m_pFixture->Text(1007), QString("0d 00:05:00"));
  QCOMPARE(m_pFixture->Text(1036), QString("Halvarn (V3)"));
}

void DialogInputTest::ShowsLocalTimesWithoutUtc() {
  m_pFixture->Settings().Write("UTC", false);
  m_pFixture->OpenReady({.nSeconds = 300});
  QVERIFY(!m_pFixture->Control<QAbstractButton>(1034).isChecked());
  QCOMPARE(m_pFixture->Text(1005), test::DateText(2020, 11, 2) + " " + test::TimeText(2, 59, 0));
  QCOMPARE(m_pFixture->Text(1006), test::DateText(2020, 11, 2) + " " + test::TimeText(3, 4, 0));
  QCOMPARE(m_pFixture->Control<QTimeEdit>(1103).time(), QTime(2, 59, 0));
}

void DialogInputTest::GivesThePickersTheRecordingsRangeAndEnds() {
  m_pFixture->OpenReady({.nSampleRate = 8000, .nSeconds = 26 * 3600});
  const QDate first(2020, 11, 1);
  const QDate last(2020, 11, 3);
  for (const int id : {1105, 1106}) {
    QCOMPARE(m_pFixture->Control<QDateEdit>(id).minimumDate(), first);
    QCOMPARE(m_pFixture->Control<QDateEdit>(id).maximumDate(), last);
  }
  QCOMPARE(m_pFixture->Control<QDateEdit>(1105).date(), first);
  QCOMPARE(m_pFixture->Control<QTimeEdit>(1103).time(), QTime(23, 59, 0));
  QCOMPARE(m_pFixture->Control<QDateEdit>(1106).date(), last);
  QCOMPARE(m_pFixture->Control<QTimeEdit>(1104).time(), QTime(1, 59, 0));
}

void DialogInputTest::TakesTheRecordingsCentreIntoTheFrequencyField() {
  m_pFixture->OpenReady({.nCentre = 7'100'000});
  QCOMPARE(m_pFixture->Control<CMyMFCMaskedEdit>(1010).text(), QString("____7.100.000"));
}

void DialogInputTest::TheArrowTakesTheRecordingsCentreBack() {
  m_pFixture->OpenReady({.nCentre = 7'100'000});
  m_pFixture->SetFrequency(3'500'000);
  m_pFixture->Click(1035);
  QCOMPARE(m_pFixture->Control<CMyMFCMaskedEdit>(1010).Frequency(), std::int64_t{7'100'000});
}

void DialogInputTest::OffersTheBandwidthsOfTheRecording() {
  m_pFixture->OpenReady({.nSampleRate = 2'000'000, .nSeconds = 60});
  const QStringList choices = m_pFixture->Choices(1011);
  QCOMPARE(choices.mid(0, 3), (QStringList{"2 MHz", "1000 kHz", "975 kHz"}));
  QCOMPARE(choices.last(), QString("10 Hz"));
  QCOMPARE(m_pFixture->Control<QComboBox>(1011).currentText(), QString("1000 kHz"));
}

void DialogInputTest::SelectsNoBandwidthWhereOneMegahertzIsNotOffered() {
  m_pFixture->OpenReady({.nSampleRate = 192'000, .nSeconds = 60});
  QCOMPARE(m_pFixture->Choices(1011).first(), QString("190 kHz"));
  QCOMPARE(m_pFixture->Control<QComboBox>(1011).currentIndex(), -1);
}

void DialogInputTest::OffersDurationsWithinTheRecording() {
  m_pFixture->OpenReady({.nSampleRate = 8000, .nSeconds = 26 * 3600});
  QCOMPARE(m_pFixture->Choices(1028).size(), 24);
  QCOMPARE(m_pFixture->Choices(1029).size(), 60);
  m_pFixture->Choose(1029, "40");
  m_pFixture->SetPath(1000, m_pFixture->WriteInput({.nSampleRate = 8000, .nSeconds = 40 * 60}, "short.wav"));
  QCOMPARE(m_pFixture->Choices(1028), QStringList{"0"});
  QCOMPARE(m_pFixture->Choices(1029).last(), QString("40"));
  QCOMPARE(m_pFixture->Control<QComboBox>(1029).currentText(), QString("0"));
}

void DialogInputTest::ARejectedInputSaysWhyAndDisablesWhatFollows() {
  m_pFixture->OpenReady();
  m_pFixture->Choose(1011, "10 kHz");
  m_pFixture->Click(1015);
  QCOMPARE(m_pFixture->List().RowCount(), 1);
  const std::string text = m_pFixture->Folder() / "text.wav";
  test::WriteWholeFile(text, "this is no recording");
  m_pFixture->SetPath(1000, text);
  for (const int id : {1001, 1002, 1003, 1004, 1005, 1006, 1007, 1036}) QCOMPARE(m_pFixture->Text(id), QString("-"));
  for (const int id : {1032, 1034, 1009, 1010, 1011, 1015, 1016, 1008, 1017, 1018}) {
    QVERIFY(!m_pFixture->Control(id).isEnabled());
  }
  QVERIFY(m_pFixture->Control(1000).isEnabled());
  QCOMPARE(m_pFixture->List().RowCount(), 0);
  QVERIFY(m_pFixture->Choices(1011).isEmpty());
  const QStringList log = m_pFixture->Log();
  QCOMPARE(log.mid(0, 2), (QStringList{"Ready", "Processors: 2, max threads: 8"}));
  QCOMPARE(log.size(), 3);
  QVERIFY2(log.last().startsWith(QString::fromStdString(text) + ": not recognised as an IQ recording"),
           qPrintable(log.last()));
}

void DialogInputTest::AMissingInputSaysSo() {
  m_pFixture->Open();
  m_pFixture->SetPath(1000, m_pFixture->Folder() / "none.wav");
  QVERIFY(m_pFixture->Log().last().endsWith("none.wav: " + test::MissingReason()));
}

void DialogInputTest::AnEmptiedInputIsNoError() {
  m_pFixture->OpenReady();
  m_pFixture->SetPath(1000, "");
  QCOMPARE(m_pFixture->Log().size(), 2);
  QVERIFY(!m_pFixture->Control(1010).isEnabled());
}

void DialogInputTest::ANewInputEmptiesTheList() {
  m_pFixture->OpenReady();
  m_pFixture->Choose(1011, "10 kHz");
  m_pFixture->Click(1015);
  QCOMPARE(m_pFixture->List().RowCount(), 1);
  m_pFixture->SetPath(1000, m_pFixture->WriteInput({}, "other.wav"));
  QCOMPARE(m_pFixture->List().RowCount(), 0);
  QCOMPARE(m_pFixture->Text(1027), QString("Maximum entries: 8, current: 0"));
}

void DialogInputTest::TogglingUtcEmptiesTheListOfAValidInput() {
  m_pFixture->OpenReady();
  for (const char* bandwidth : {"10 kHz", "20 kHz", "30 kHz"}) {
    m_pFixture->Choose(1011, bandwidth);
    m_pFixture->Click(1015);
  }
  QCOMPARE(m_pFixture->List().RowCount(), 3);
  m_pFixture->Click(1034);
  QCOMPARE(m_pFixture->List().RowCount(), 0);
}

void DialogInputTest::TogglingUtcShowsTheTimesAnew() {
  m_pFixture->OpenReady({.nSeconds = 300});
  m_pFixture->Click(1034);
  QCOMPARE(m_pFixture->Text(1005), test::DateText(2020, 11, 2) + " " + test::TimeText(2, 59, 0));
  QCOMPARE(m_pFixture->Control<QDateEdit>(1105).date(), QDate(2020, 11, 2));
  QCOMPARE(m_pFixture->Control<QTimeEdit>(1103).time(), QTime(2, 59, 0));
  m_pFixture->Click(1034);
  QCOMPARE(m_pFixture->Text(1005), test::DateText(2020, 11, 1) + " 23:59:00z");
  QCOMPARE(m_pFixture->Control<QTimeEdit>(1103).time(), QTime(23, 59, 0));
}

void DialogInputTest::TheFirstFileSizeIsSelectedAtStartUp() {
  m_pFixture->Open();
  QCOMPARE(m_pFixture->Choices(1014), (QStringList{"100 MB", "1 GB", "One file (RF64)", "SigMF"}));
  QCOMPARE(m_pFixture->Control<QComboBox>(1014).currentText(), QString("100 MB"));
}

void DialogInputTest::SelectsTheGivenInputAtOnce() {
  m_pFixture->Settings().Write("InputFile", m_pFixture->WriteInput({.nCentre = 3'500'000}, "remembered.wav"));
  m_pFixture->Open(m_pFixture->WriteInput({.nCentre = 14'200'000}, "given.wav"));
  QCOMPARE(m_pFixture->Text(1001), QString("14.200 MHz"));
}

// The next start may be from another folder.
void DialogInputTest::AGivenInputIsRememberedWithItsFolder() {
  const std::string path = m_pFixture->WriteInput({.nCentre = 14'200'000}, "given.wav");
  const QString before = QDir::currentPath();
  QVERIFY(QDir::setCurrent(QFileInfo(QString::fromStdString(path)).path()));
  m_pFixture->Open("given.wav");
  QVERIFY(QDir::setCurrent(before));
  QCOMPARE(m_pFixture->Text(1001), QString("14.200 MHz"));
  const QFileInfo shown(m_pFixture->Control<CMyMFCEditBrowseCtrl>(1000).Path());
  QVERIFY(shown.isAbsolute());
  QCOMPARE(shown.canonicalFilePath(), QFileInfo(QString::fromStdString(path)).canonicalFilePath());
  std::string saved;
  QVERIFY(m_pFixture->Settings().Read("InputFile", saved));
  QCOMPARE(QString::fromStdString(saved), m_pFixture->Control<CMyMFCEditBrowseCtrl>(1000).Path());
}

void DialogInputTest::AGivenInputThatCannotBeReadSaysWhy() {
  m_pFixture->Open(m_pFixture->Folder() / "none.wav");
  QVERIFY(m_pFixture->Log().last().endsWith("none.wav: " + test::MissingReason()));
  QVERIFY(m_pFixture->Control(1000).isEnabled());
}

void DialogInputTest::DropsTheHighlightOfTheInputPathAfterStartUp() {
  m_pFixture->Make(m_pFixture->WriteInput());  // no time passes for it before the first wait
  auto& path = m_pFixture->Control<QLineEdit>(1000);
  path.selectAll();
  QVERIFY(path.hasSelectedText());
  QTRY_VERIFY(!path.hasSelectedText());
}

void DialogInputTest::EveryChangeOfTheTextIsASelection() {
  m_pFixture->OpenReady();
  auto& path = m_pFixture->Control<QLineEdit>(1000);
  path.setFocus();
  QTest::keyClick(&path, Qt::Key_End);
  QTest::keyClick(&path, 'x');
  QCOMPARE(m_pFixture->Text(1001), QString("-"));
  QTest::keyClick(&path, Qt::Key_Backspace);
  QCOMPARE(m_pFixture->Text(1001), QString("7.100 MHz"));
}

void DialogInputTest::TheOutputFolderIsOpened() {
  m_pFixture->OpenReady();
  const auto opened = test::OpenedPaths().size();
  m_pFixture->Click(1033);
  QTRY_COMPARE(test::OpenedPaths().size(), opened + 1);
  QCOMPARE(test::OpenedPaths().last().toStdString(), m_pFixture->OutputFolder());
}

void DialogInputTest::AnEmptyOutputFolderIsNotOpened() {
  m_pFixture->OpenReady();
  m_pFixture->SetPath(1009, "");
  const auto opened = test::OpenedPaths().size();
  m_pFixture->Click(1033);
  m_pFixture->SetPath(1009, m_pFixture->OutputFolder());
  m_pFixture->Click(1033);
  QTRY_VERIFY(test::OpenedPaths().size() > opened);
  QCOMPARE(test::OpenedPaths().size(), opened + 1);
  QVERIFY(m_pFixture->Answers().AllUsed());
}

void DialogInputTest::AnOutputFolderThatIsGoneIsTold() {
  m_pFixture->OpenReady();
  m_pFixture->SetPath(1009, "/nowhere at all");
  m_pFixture->Answers().Give(QMessageBox::Ok);
  m_pFixture->Click(1033);
  QVERIFY(m_pFixture->Answers().AllUsed());
  QCOMPARE(m_pFixture->Answers().Shown().back().text, "Error processing \"/nowhere at all\" -\n \n" +
                                                          test::MissingReason() + "\n\n" +
                                                          QString::fromStdString(WayOutOfOpening(2)));
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::DialogInputTest)
#include "dialog_input_test.moc"
