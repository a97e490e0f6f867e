#include <QAction>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QProgressBar>
#include <thread>

#include "recording/layout.h"
#include "ui/dialog_fixture.h"
#include "ui/job_menu.h"
#include "ui/longest_turn.h"
#include "ui/ui_test.h"

namespace carvello {

using test::CDialogFixture;
using test::SRecordingSpec;
using test::SShownBox;

class DialogJobTest : public QObject {
  Q_OBJECT

 private slots:
  void init() { m_pFixture = std::make_unique<CDialogFixture>(); }
  void cleanup();

  void AJobWritesItsFilesAndEndsByItself();
  void AfterARunTheKeyboardIsWhereItWas();
  void AfterARunTheKeyboardStaysWhereTheUserWent();
  void Rf64OutputsCountFramesWhereThatIsChosen();
  void TenEntriesOnTwoProcessorsRunInTwoBatches();
  void InOnePassTenEntriesRunWithoutAQuestion();
  void OnePassCountsFromTheNextStartOn();
  void AnsweringNoToTooManyEntriesStartsNothing();
  void AnsweringNoToContinueKeepsAllEntries();
  void NineEntriesLeaveOneForTheSecondBatch();
  void AnExistingFileIsOverwrittenOnYes();
  void AnExistingFileIsKeptOnCancel();
  void NothingStartsWhenAllFilesExistAndTheAnswerIsNo();
  void OnlyMissingFilesAreMadeOnNo();
  void YesOverwritesEveryExistingFile();
  void AMissingOutputFolderIsTold();
  void AJobClearsTheLogAndTheProgress();
  void EscapeAndCloseBoxOnlyBeepDuringARun();
  void ControlsFollowTheRun();
  void StopEndsARunWithValidFiles();
  void TheDialogAnswersWhileARunGoesOn();
  void ClosingTheDialogForGoodEndsARun();

 private:
  // Entries at 7.1 MHz and above, 1 kHz apart.
  void AddEntries(int count, const QString& bandwidth = "10 kHz", int first = 0);
  void OpenForALongRun();
  void WaitForEnd() { QTRY_VERIFY_WITH_TIMEOUT(!IsRunning(), 300'000); }
  bool IsRunning() { return m_pFixture->Control(1019).isEnabled(); }
  const SShownBox& Box(std::size_t index) { return m_pFixture->Answers().Shown().at(index); }
  void CompareBox(const SShownBox& box, const QString& caption, const QString& text, QMessageBox::Icon icon,
                  QMessageBox::StandardButtons buttons);
  QStringList OutputNames();
  // The length of the samples in seconds, after a look at all sizes in the file.
  double CheckOutput(const QString& name, std::uint32_t rate);

  std::unique_ptr<CDialogFixture> m_pFixture;
};

void DialogJobTest::cleanup() {
  QVERIFY(m_pFixture->Answers().AllUsed());
  m_pFixture.reset();
}

void DialogJobTest::AddEntries(int count, const QString& bandwidth, int first) {
  m_pFixture->Choose(1011, bandwidth);
  for (int i = first; i < first + count; ++i) {
    m_pFixture->SetFrequency(7'100'000 + 1000 * i);
    m_pFixture->Click(1015);
  }
}

// Long enough that it cannot end while a test looks at it.
void DialogJobTest::OpenForALongRun() {
  m_pFixture->OpenReady({.nSampleRate = 1'000'000, .nSeconds = 1000});
  m_pFixture->Choose(1014, "One file (RF64)");
  AddEntries(8, "250 kHz");
}

void DialogJobTest::CompareBox(const SShownBox& box, const QString& caption, const QString& text,
                               QMessageBox::Icon icon, QMessageBox::StandardButtons buttons) {
  QCOMPARE(box.caption, caption);
  QCOMPARE(box.text, text);
  QCOMPARE(box.icon, icon);
  QCOMPARE(box.buttons, buttons);
}

QStringList DialogJobTest::OutputNames() {
  QStringList names;
  for (const auto& entry : std::filesystem::directory_iterator(test::PathOf(m_pFixture->OutputFolder()))) {
    names << QString::fromStdString(test::Utf8Of(entry.path().filename()));
  }
  names.sort();
  return names;
}

double DialogJobTest::CheckOutput(const QString& name, std::uint32_t rate) {
  const std::string bytes = test::ReadWholeFile(m_pFixture->OutputFolder() + "/" + name.toStdString());
  const bool rf64 = bytes.starts_with("RF64");
  const std::uint64_t riffSize = rf64 ? test::U64At(bytes, 20) : test::U32At(bytes, 4);
  if (riffSize != bytes.size() - 8) throw std::runtime_error("RIFF size of " + name.toStdString());
  const auto chunks = test::ChunksOf(bytes);  // raises when they do not fill the file
  std::uint64_t samples = 0;
  std::uint32_t fileRate = 0;
  for (const test::SChunk& chunk : chunks) {
    if (chunk.identifier == "fmt ") fileRate = static_cast<std::uint32_t>(test::U32At(chunk.body, 4));
    if (chunk.identifier == "data") samples = chunk.body.size() / 4;
  }
  if (fileRate != rate || chunks.back().identifier != "LIST")
    throw std::runtime_error("chunks of " + name.toStdString());
  return static_cast<double>(samples) / rate;
}

void DialogJobTest::AJobWritesItsFilesAndEndsByItself() {
  m_pFixture->OpenReady({.nSeconds = 20});
  AddEntries(2);
  m_pFixture->Click(1018);
  QVERIFY(IsRunning());
  WaitForEnd();
  QCOMPARE(OutputNames(), (QStringList{"2020-11-01 2359z, f=7.100 MHz, bw=10 kHz 000.wav",
                                       "2020-11-01 2359z, f=7.101 MHz, bw=10 kHz 000.wav"}));
  for (const QString& name : OutputNames()) QCOMPARE(CheckOutput(name, 10'000), 20.0);
  QTRY_COMPARE(m_pFixture->Text(1021), QString("100.00%"));
  QCOMPARE(m_pFixture->Control<QProgressBar>(1020).value(), 1000);
  QCOMPARE(m_pFixture->List().RowCount(), 2);
  QTRY_VERIFY(m_pFixture->Log().contains("Reader> Closed"));
}

void DialogJobTest::AfterARunTheKeyboardIsWhereItWas() {
  m_pFixture->OpenReady({.nSeconds = 20});
  AddEntries(2);
  for (const int id : {1010, 1011, 1008, 1018}) {
    m_pFixture->Control(id).setFocus();
    if (id != 1010) m_pFixture->Answers().Give(QMessageBox::Yes);  // what the first run made is overwritten
    m_pFixture->Control<QAbstractButton>(1018).click();
    QVERIFY(IsRunning());
    QVERIFY(m_pFixture->Dialog().focusWidget() != &m_pFixture->Control(id));
    WaitForEnd();
    QCOMPARE(m_pFixture->Dialog().focusWidget(), &m_pFixture->Control(id));
  }
}

void DialogJobTest::AfterARunTheKeyboardStaysWhereTheUserWent() {
  m_pFixture->OpenReady({.nSeconds = 20});
  AddEntries(2);
  m_pFixture->Control(1010).setFocus();
  m_pFixture->Control<QAbstractButton>(1018).click();
  QVERIFY(IsRunning());
  m_pFixture->Control(1024).setFocus();
  WaitForEnd();
  QCOMPARE(m_pFixture->Dialog().focusWidget(), &m_pFixture->Control(1024));
}

void DialogJobTest::Rf64OutputsCountFramesWhereThatIsChosen() {
  m_pFixture->OpenReady({.nSeconds = 20});
  m_pFixture->Choose(1014, "One file (RF64)");
  AddEntries(1);
  for (QAction* pAction : m_pFixture->Dialog().findChild<CJobMenu*>()->actions()) {
    if (pAction->text().remove('&') == "Count Frames in RF64 Files") pAction->trigger();
  }
  m_pFixture->Click(1018);
  WaitForEnd();
  const std::string bytes = test::ReadWholeFile(m_pFixture->OutputFolder() + "/" + OutputNames().front().toStdString());
  QCOMPARE(test::U64At(bytes, 28), std::uint64_t{200'000 * 4});
  QCOMPARE(test::U64At(bytes, 36), std::uint64_t{200'000});
}

void DialogJobTest::TenEntriesOnTwoProcessorsRunInTwoBatches() {
  m_pFixture->OpenReady({.nSeconds = 20});
  AddEntries(10);
  m_pFixture->Answers().Give(QMessageBox::Yes);  // too many
  m_pFixture->Answers().Give(QMessageBox::Yes);  // continue
  m_pFixture->Click(1018);
  QCOMPARE(m_pFixture->Answers().Shown().size(), std::size_t{1});
  CompareBox(Box(0), "Start", "The maximum entries which can be processed is 10, you have added 8.\n\nContinue?",
             QMessageBox::Critical, QMessageBox::Yes | QMessageBox::No);
  QTRY_COMPARE_WITH_TIMEOUT(m_pFixture->Answers().Shown().size(), std::size_t{2}, 300'000);
  CompareBox(Box(1), "Continue", "10 of 8 entries have been processed. Remove from list and continue?",
             QMessageBox::Critical, QMessageBox::Yes | QMessageBox::No);
  QTRY_COMPARE(m_pFixture->List().RowCount(), 2);
  QCOMPARE(m_pFixture->Row(0)[0], QString("7.108.000"));
  QTRY_VERIFY(IsRunning());  // without a further click
  WaitForEnd();
  QCOMPARE(OutputNames().size(), 10);
  for (const QString& name : OutputNames()) QCOMPARE(CheckOutput(name, 10'000), 20.0);
  QCOMPARE(m_pFixture->List().RowCount(), 2);
}

void DialogJobTest::InOnePassTenEntriesRunWithoutAQuestion() {
  m_pFixture->OpenReady({.nSeconds = 20});
  AddEntries(10);
  auto* pOnePass = m_pFixture->Dialog().findChild<QCheckBox*>("checkOnePass");
  pOnePass->click();
  QCOMPARE(m_pFixture->Text(1027), QString("Maximum entries: 1000, current: 10"));
  m_pFixture->Click(1018);
  WaitForEnd();
  QTest::qWait(300);  // time enough for a question about the next batch
  QVERIFY(m_pFixture->Answers().Shown().empty());
  QCOMPARE(OutputNames().size(), 10);
  for (const QString& name : OutputNames()) QCOMPARE(CheckOutput(name, 10'000), 20.0);
  pOnePass->click();
  QCOMPARE(m_pFixture->Text(1027), QString("Maximum entries: 8, current: 10"));
}

void DialogJobTest::OnePassCountsFromTheNextStartOn() {
  m_pFixture->OpenReady({.nSeconds = 20});
  AddEntries(10);
  m_pFixture->Answers().Give(QMessageBox::Yes);  // too many
  m_pFixture->Click(1018);
  auto* pOnePass = m_pFixture->Dialog().findChild<QCheckBox*>("checkOnePass");
  QVERIFY(IsRunning() && !pOnePass->isEnabled());
  QTRY_VERIFY_WITH_TIMEOUT(pOnePass->isEnabled(), 300'000);
  pOnePass->click();  // before the question about the next batch, which counted by the old maximum
  QTest::qWait(300);
  QCOMPARE(m_pFixture->Answers().Shown().size(), std::size_t{1});
  QCOMPARE(m_pFixture->List().RowCount(), 10);
  m_pFixture->Answers().Give(QMessageBox::No);  // leave what exists
  m_pFixture->Click(1018);
  WaitForEnd();
  QCOMPARE(OutputNames().size(), 10);
}

void DialogJobTest::AnsweringNoToTooManyEntriesStartsNothing() {
  m_pFixture->OpenReady({.nSeconds = 20});
  AddEntries(9);
  m_pFixture->Answers().Give(QMessageBox::No);
  m_pFixture->Click(1018);
  QVERIFY(!IsRunning());
  QVERIFY(OutputNames().isEmpty());
  QCOMPARE(m_pFixture->List().RowCount(), 9);
}

void DialogJobTest::AnsweringNoToContinueKeepsAllEntries() {
  m_pFixture->OpenReady({.nSeconds = 20});
  AddEntries(9);
  m_pFixture->Answers().Give(QMessageBox::Yes);
  m_pFixture->Answers().Give(QMessageBox::No);
  m_pFixture->Click(1018);
  QTRY_COMPARE_WITH_TIMEOUT(m_pFixture->Answers().Shown().size(), std::size_t{2}, 300'000);
  QTest::qWait(300);
  QVERIFY(!IsRunning());
  QCOMPARE(m_pFixture->List().RowCount(), 9);
  QCOMPARE(OutputNames().size(), 8);
}

void DialogJobTest::NineEntriesLeaveOneForTheSecondBatch() {
  m_pFixture->OpenReady({.nSeconds = 20});
  AddEntries(9);
  m_pFixture->Answers().Give(QMessageBox::Yes);
  m_pFixture->Answers().Give(QMessageBox::Yes);
  m_pFixture->Click(1018);
  QTRY_COMPARE_WITH_TIMEOUT(m_pFixture->Answers().Shown().size(), std::size_t{2}, 300'000);
  QVERIFY(Box(1).text.startsWith("9 of 8 "));
  QTRY_COMPARE(m_pFixture->List().RowCount(), 1);
  QTRY_COMPARE_WITH_TIMEOUT(OutputNames().size(), 9, 300'000);
  WaitForEnd();
}

void DialogJobTest::AnExistingFileIsOverwrittenOnYes() {
  m_pFixture->OpenReady({.nSeconds = 20});
  m_pFixture->Choose(1014, "One file (RF64)");
  AddEntries(1);
  const std::string path = m_pFixture->OutputFolder() + "/2020-11-01 2359z, f=7.100 MHz, bw=10 kHz.wav";
  test::WriteWholeFile(path, "old");
  m_pFixture->Answers().Give(QMessageBox::Yes);
  m_pFixture->Click(1018);
  CompareBox(Box(0), "Start", "The output file already exists, overwrite it?", QMessageBox::Question,
             QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
  WaitForEnd();
  QCOMPARE(OutputNames().size(), 1);
  QCOMPARE(CheckOutput(OutputNames()[0], 10'000), 20.0);
}

void DialogJobTest::AnExistingFileIsKeptOnCancel() {
  m_pFixture->OpenReady({.nSeconds = 20});
  m_pFixture->Choose(1014, "One file (RF64)");
  AddEntries(1);
  const std::string path = m_pFixture->OutputFolder() + "/2020-11-01 2359z, f=7.100 MHz, bw=10 kHz.wav";
  test::WriteWholeFile(path, "old");
  m_pFixture->Answers().Give(QMessageBox::Cancel);
  m_pFixture->Click(1018);
  QVERIFY(!IsRunning());
  QCOMPARE(test::ReadWholeFile(path), std::string("old"));
}

void DialogJobTest::NothingStartsWhenAllFilesExistAndTheAnswerIsNo() {
  m_pFixture->OpenReady({.nSeconds = 20});
  m_pFixture->Choose(1014, "One file (RF64)");
  AddEntries(1);
  const std::string path = m_pFixture->OutputFolder() + "/2020-11-01 2359z, f=7.100 MHz, bw=10 kHz.wav";
  test::WriteWholeFile(path, "old");
  m_pFixture->Answers().Give(QMessageBox::No);
  m_pFixture->Answers().Give(QMessageBox::Ok);
  m_pFixture->Click(1018);
  CompareBox(Box(1), "Start", "All output files exist, processing not started.", QMessageBox::Warning, QMessageBox::Ok);
  QVERIFY(!IsRunning());
  QVERIFY(m_pFixture->Control(1018).isEnabled());
  QCOMPARE(test::ReadWholeFile(path), std::string("old"));
}

void DialogJobTest::OnlyMissingFilesAreMadeOnNo() {
  m_pFixture->OpenReady({.nSeconds = 20});
  m_pFixture->Choose(1014, "One file (RF64)");
  AddEntries(3);
  const std::string path = m_pFixture->OutputFolder() + "/2020-11-01 2359z, f=7.101 MHz, bw=10 kHz.wav";
  test::WriteWholeFile(path, "old");
  m_pFixture->Answers().Give(QMessageBox::No);
  m_pFixture->Click(1018);
  CompareBox(Box(0), "Start", "1 of 3 file(s) already exist, do you want to overwrite them?", QMessageBox::Question,
             QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
  WaitForEnd();
  QCOMPARE(OutputNames().size(), 3);
  QCOMPARE(test::ReadWholeFile(path), std::string("old"));
  QCOMPARE(CheckOutput(OutputNames()[0], 10'000), 20.0);
  QCOMPARE(CheckOutput(OutputNames()[2], 10'000), 20.0);
}

void DialogJobTest::YesOverwritesEveryExistingFile() {
  m_pFixture->OpenReady({.nSeconds = 20});
  AddEntries(2);
  m_pFixture->Click(1018);
  WaitForEnd();
  for (const QString& name : OutputNames()) {
    test::WriteWholeFile(m_pFixture->OutputFolder() + "/" + name.toStdString(), "old");
  }
  m_pFixture->Answers().Give(QMessageBox::Yes);
  m_pFixture->Click(1018);
  WaitForEnd();
  QVERIFY(Box(0).text.startsWith("2 of 2 "));
  for (const QString& name : OutputNames()) QCOMPARE(CheckOutput(name, 10'000), 20.0);
}

void DialogJobTest::AMissingOutputFolderIsTold() {
  m_pFixture->OpenReady({.nSeconds = 20});
  m_pFixture->SetPath(1009, m_pFixture->Folder() / "none");
  AddEntries(1);
  m_pFixture->Answers().Give(QMessageBox::Ok);
  m_pFixture->Click(1018);
  CompareBox(Box(0), "Start",
             QString::fromStdString(m_pFixture->Folder() / "none") + ": " + test::MissingReason() +
                 "\n\nCreate the folder or connect its disk, or choose another folder for the entries.",
             QMessageBox::Critical, QMessageBox::Ok);
  QVERIFY(!IsRunning());
}

void DialogJobTest::AJobClearsTheLogAndTheProgress() {
  m_pFixture->OpenReady({.nSeconds = 20});
  AddEntries(1);
  m_pFixture->Click(1018);
  WaitForEnd();
  QTRY_COMPARE(m_pFixture->Text(1021), QString("100.00%"));
  QTRY_COMPARE(m_pFixture->Log().count("Reader> Closed"), 1);
  m_pFixture->Answers().Give(QMessageBox::Yes);
  m_pFixture->Click(1018);
  WaitForEnd();
  QTRY_COMPARE(m_pFixture->Log().count("Reader> Closed"), 1);
  QCOMPARE(m_pFixture->Log().count("Ready"), 1);
  QCOMPARE(m_pFixture->Log().mid(0, 2), (QStringList{"Ready", "Processors: 2, max threads: 8"}));
}

void DialogJobTest::EscapeAndCloseBoxOnlyBeepDuringARun() {
  OpenForALongRun();
  m_pFixture->Click(1018);
  QTest::keyClick(&m_pFixture->Dialog(), Qt::Key_Escape);
  QCOMPARE(m_pFixture->Dialog().m_nBeeps, 1);
  m_pFixture->Dialog().close();
  QCOMPARE(m_pFixture->Dialog().m_nBeeps, 2);
  QVERIFY(m_pFixture->Dialog().isVisible());
  QVERIFY(IsRunning());
  m_pFixture->Click(1019);
  QTest::keyClick(&m_pFixture->Dialog(), Qt::Key_Escape);
  QCOMPARE(m_pFixture->Dialog().m_nBeeps, 2);
  QVERIFY(!m_pFixture->Dialog().isVisible());
}

void DialogJobTest::ControlsFollowTheRun() {
  OpenForALongRun();
  m_pFixture->Click(1018);
  for (const int id : {1019, 1020, 1021, 1022, 1023, 1024}) QVERIFY(m_pFixture->Control(id).isEnabled());
  for (const int id :
       {1000, 1032, 1034, 1009, 1033, 1010, 1035, 1011, 1014, 1012, 1015, 1016, 1008, 1025, 1017, 1018}) {
    QVERIFY(!m_pFixture->Control(id).isEnabled());
  }
  m_pFixture->Click(1019);
  for (const int id : {1000, 1034, 1009, 1010, 1015, 1016, 1008, 1017, 1018}) {
    QVERIFY(m_pFixture->Control(id).isEnabled());
  }
  QVERIFY(!m_pFixture->Control(1019).isEnabled());
}

void DialogJobTest::StopEndsARunWithValidFiles() {
  OpenForALongRun();
  m_pFixture->Click(1018);
  QTRY_VERIFY_WITH_TIMEOUT(m_pFixture->Control<QProgressBar>(1020).value() > 0, 120'000);
  QElapsedTimer timer;
  timer.start();
  m_pFixture->Click(1019);
  const qint64 milliseconds = timer.elapsed();
  QVERIFY(!IsRunning());
  qInfo("stopped within %lld ms", static_cast<long long>(milliseconds));
  QVERIFY(milliseconds < 2000 * (qEnvironmentVariableIsSet("CARVELLO_SLOW") ? 20 : 1));
  QCOMPARE(OutputNames().size(), 8);
  for (const QString& name : OutputNames()) {
    const double seconds = CheckOutput(name, 250'000);
    QVERIFY(seconds > 0 && seconds < 1000);
  }
  QCOMPARE(m_pFixture->List().RowCount(), 8);  // nothing asks to continue
}

void DialogJobTest::TheDialogAnswersWhileARunGoesOn() {
  OpenForALongRun();
  m_pFixture->Click(1018);
  QTRY_VERIFY_WITH_TIMEOUT(m_pFixture->Control<QProgressBar>(1020).value() > 0, 120'000);
  // The processor time of the whole process counts here, workers included; what is counted is that turns go on.
  test::CLongestTurn turn;
  const int value = m_pFixture->Control<QProgressBar>(1020).value();
  QTRY_VERIFY_WITH_TIMEOUT(turn.Turns() > 100, 120'000);
  QTRY_VERIFY_WITH_TIMEOUT(m_pFixture->Control<QProgressBar>(1020).value() > value + 5, 120'000);
  QVERIFY(m_pFixture->Control(1019).isEnabled());  // the run still goes on
  m_pFixture->Click(1019);
}

void DialogJobTest::ClosingTheDialogForGoodEndsARun() {
  OpenForALongRun();
  m_pFixture->Click(1018);
  QVERIFY(IsRunning());
  m_pFixture->CloseDialog();
  QCOMPARE(OutputNames().size(), 8);
  for (const QString& name : OutputNames()) CheckOutput(name, 250'000);
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::DialogJobTest)
#include "dialog_job_test.moc"
