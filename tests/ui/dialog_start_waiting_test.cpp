// Start and Stop with disks that do not answer: the window lives on, tells what it waits for, and gives up.
#include <QCheckBox>
#include <functional>
#include <utility>

#include "overview/left_threads.h"
#include "ui/at_event.h"
#include "ui/dead_disk.h"
#include "ui/dialog_fixture.h"
#include "ui/longest_turn.h"
#include "ui/outcome_label.h"
#include "ui/ui_test.h"

namespace carvello {

using test::CAtEvent;
using test::CDeadDisk;
using test::CDialogFixture;

class DialogStartWaitingTest : public QObject {
  Q_OBJECT

 private slots:
  void init() { m_pFixture = std::make_unique<CDialogFixture>(); }
  void cleanup();

  void TheWindowLivesOnAndNamesWhatItWaitsFor_data();
  void TheWindowLivesOnAndNamesWhatItWaitsFor();
  void StopGivesUpAndNothingBeginsLater();
  void EscapeGivesUpAndNothingElse();
  void ClosingTheWindowWaitsForNothing();
  void WhoStaysAfterAllKeepsTheRunThatWaits();
  void ARunThatBeginsBelowTheQuestionIsNotLeft();
  void TheWindowIsNotLeftBetweenTheBatchesOfAnUnattendedRun();
  void TheRunBeginsWhenTheDiskAnswers();
  void TheQuestionAboutExistingFilesComesWhenTheyAreKnown();
  void AnUnattendedRunThatIsGivenUpEnds();
  void AnUnattendedRunGivesUpByItself();
  void ARunThatADiskHoldsUpTellsItAndGoesOn();
  void StopDoesNotWaitForADeadDisk();
  void TheProgramCanBeClosedWhenStopWaits();

 private:
  void OpenReady(int entries = 2, int patience = 10);  // in milliseconds
  bool IsRunning() { return m_pFixture->Control(1019).isEnabled(); }
  QString Line() { return m_pFixture->Dialog().findChild<COutcomeLabel*>("labelOutcome")->text(); }
  std::string FileOf(int row) { return m_pFixture->OutputFolder() + "/" + m_pFixture->Row(row)[4].toStdString(); }
  bool NothingIsWritten() { return std::filesystem::is_empty(test::PathOf(m_pFixture->OutputFolder())); }
  // A run that reads its first file and then waits for the second.
  std::unique_ptr<CDeadDisk> StartOnADyingDisk();

  std::unique_ptr<CDialogFixture> m_pFixture;
};

void DialogStartWaitingTest::cleanup() {
  QVERIFY(m_pFixture->Answers().AllUsed());
  JoinLeftThreads();
  m_pFixture.reset();
}

void DialogStartWaitingTest::OpenReady(int entries, int patience) {
  m_pFixture->WriteInput({.nSeconds = 20});
  m_pFixture->Settings().Write("InputFile", m_pFixture->Folder() / "rec.wav");
  m_pFixture->Settings().Write("OutputFolder", m_pFixture->OutputFolder());
  m_pFixture->SetPatience(std::chrono::milliseconds(patience));
  m_pFixture->Open();
  QTRY_VERIFY(m_pFixture->Control(1015).isEnabled());
  m_pFixture->Choose(1014, "One file (RF64)");
  m_pFixture->Choose(1011, "10 kHz");
  for (int i = 0; i < entries; ++i) {
    m_pFixture->SetFrequency(7'100'000 + 1000 * i);
    m_pFixture->Click(1015);
  }
  QCOMPARE(m_pFixture->List().RowCount(), entries);
}

void DialogStartWaitingTest::TheWindowLivesOnAndNamesWhatItWaitsFor_data() {
  QTest::addColumn<QString>("dead");
  QTest::newRow("output folder") << "out";
  QTest::newRow("input") << "rec.wav";
}

void DialogStartWaitingTest::TheWindowLivesOnAndNamesWhatItWaitsFor() {
  QFETCH(QString, dead);
  OpenReady();
  const std::string place = m_pFixture->Folder() / dead.toStdString();
  const CDeadDisk disk(place);
  m_pFixture->Click(1018);
  QTRY_COMPARE(disk.Waiting(), 1);
  QTRY_VERIFY2(Line().startsWith("Waiting for " + QString::fromStdString(place)) && Line().endsWith("…"),
               qPrintable(Line()));
  QVERIFY(IsRunning());
  for (const int id : {1000, 1009, 1015, 1017, 1018}) QVERIFY(!m_pFixture->Control(id).isEnabled());
  test::CLongestTurn turn;
  QTRY_VERIFY(turn.Turns() > 100);
  QVERIFY2(turn.Milliseconds() < 1000, qPrintable(QString::number(turn.Milliseconds())));
  QCOMPARE(disk.OnWindowThread(), 0);
  QVERIFY(m_pFixture->Answers().Shown().empty());
  m_pFixture->Click(1019);
}

void DialogStartWaitingTest::StopGivesUpAndNothingBeginsLater() {
  OpenReady();
  CDeadDisk disk(m_pFixture->OutputFolder());
  m_pFixture->Click(1018);
  QTRY_COMPARE(disk.Waiting(), 1);
  m_pFixture->Click(1019);
  QVERIFY(!IsRunning());
  QCOMPARE(Line(), QString());
  QVERIFY(m_pFixture->Control(1018).isEnabled());
  disk.Revive();
  JoinLeftThreads();
  QTest::qWait(100);
  QVERIFY(!IsRunning());
  QVERIFY(NothingIsWritten());
  // And the next Start is as good as ever.
  m_pFixture->Click(1018);
  QTRY_COMPARE_WITH_TIMEOUT(Line(), QString("2 of 2 outputs written"), 300'000);
}

void DialogStartWaitingTest::EscapeGivesUpAndNothingElse() {
  OpenReady();
  const CDeadDisk disk(m_pFixture->OutputFolder());
  m_pFixture->Click(1018);
  QTRY_VERIFY(IsRunning());
  QTest::keyClick(&m_pFixture->Dialog(), Qt::Key_Escape);
  QVERIFY(!IsRunning());
  QVERIFY(m_pFixture->Dialog().isVisible());
  QCOMPARE(m_pFixture->Dialog().m_nBeeps, 0);
}

void DialogStartWaitingTest::ClosingTheWindowWaitsForNothing() {
  OpenReady();
  const CDeadDisk disk(m_pFixture->OutputFolder());
  m_pFixture->Click(1018);
  QTRY_COMPARE(disk.Waiting(), 1);
  m_pFixture->Answers().Give(QMessageBox::Discard);  // its entry was never run
  m_pFixture->Dialog().close();
  QVERIFY(!m_pFixture->Dialog().isVisible());
  m_pFixture->CloseDialog();
  QCOMPARE(disk.Waiting(), 1);
  QCOMPARE(disk.OnWindowThread(), 0);
}

void DialogStartWaitingTest::WhoStaysAfterAllKeepsTheRunThatWaits() {
  OpenReady();
  CDeadDisk disk(m_pFixture->OutputFolder());
  m_pFixture->Click(1018);
  QTRY_COMPARE(disk.Waiting(), 1);
  m_pFixture->Answers().Give(QMessageBox::Cancel);
  m_pFixture->Dialog().close();
  QVERIFY(m_pFixture->Dialog().isVisible());
  QVERIFY(IsRunning());
  disk.Revive();
  QTRY_COMPARE_WITH_TIMEOUT(Line(), QString("2 of 2 outputs written"), 300'000);
}

void DialogStartWaitingTest::ARunThatBeginsBelowTheQuestionIsNotLeft() {
  OpenReady(2, 2000);
  CDeadDisk disk(m_pFixture->OutputFolder());
  m_pFixture->Click(1018);
  QTRY_COMPARE(disk.Waiting(), 1);
  const CAtEvent shown(
      *qApp,
      [](QObject& object, const QEvent& event) {
        return event.type() == QEvent::Show && qobject_cast<QMessageBox*>(&object) != nullptr;
      },
      [&disk] {
        disk.Revive();
        JoinLeftThreads();
        QCoreApplication::sendPostedEvents();
      });
  m_pFixture->Answers().Give(QMessageBox::Discard);
  m_pFixture->Dialog().close();
  QVERIFY(m_pFixture->Dialog().isVisible());
  QCOMPARE(m_pFixture->Dialog().m_nBeeps, 1);
  QTRY_COMPARE_WITH_TIMEOUT(Line(), QString("2 of 2 outputs written"), 300'000);
}

void DialogStartWaitingTest::TheWindowIsNotLeftBetweenTheBatchesOfAnUnattendedRun() {
  OpenReady(9, 60'000);
  m_pFixture->Dialog().findChild<QCheckBox*>("checkUnattended")->click();
  m_pFixture->Click(1018);
  QWidget& stop = m_pFixture->Control(1019);
  QVERIFY(stop.isEnabled());
  const CAtEvent ended(
      stop,
      [&stop](QObject&, const QEvent& event) { return event.type() == QEvent::EnabledChange && !stop.isEnabled(); },
      [this] { m_pFixture->Dialog().close(); });
  QTRY_COMPARE_WITH_TIMEOUT(Line(), QString("9 of 9 outputs written"), 300'000);
  QVERIFY(m_pFixture->Dialog().isVisible());
  QCOMPARE(m_pFixture->Dialog().m_nBeeps, 1);
  QVERIFY(m_pFixture->Answers().Shown().empty());
}

void DialogStartWaitingTest::TheRunBeginsWhenTheDiskAnswers() {
  OpenReady();
  CDeadDisk disk(m_pFixture->OutputFolder());
  m_pFixture->Click(1018);
  QTRY_COMPARE(disk.Waiting(), 1);
  disk.Revive();
  QTRY_COMPARE_WITH_TIMEOUT(Line(), QString("2 of 2 outputs written"), 300'000);
  QVERIFY(!IsRunning());
  QCOMPARE(m_pFixture->Log().mid(0, 2), (QStringList{"Ready", "Processors: 2, max threads: 8"}));
}

void DialogStartWaitingTest::TheQuestionAboutExistingFilesComesWhenTheyAreKnown() {
  OpenReady();
  test::WriteWholeFile(FileOf(1), "old");
  CDeadDisk disk(m_pFixture->OutputFolder());
  m_pFixture->Answers().Give(QMessageBox::No);
  m_pFixture->Click(1018);
  QTRY_COMPARE(disk.Waiting(), 1);
  QVERIFY(m_pFixture->Answers().Shown().empty());
  disk.Revive();
  QTRY_COMPARE(m_pFixture->Answers().Shown().size(), std::size_t{1});
  QCOMPARE(m_pFixture->Answers().Shown()[0].text,
           QString("1 of 2 file(s) already exist, do you want to overwrite them?"));
  QTRY_COMPARE_WITH_TIMEOUT(Line(), QString("1 of 2 outputs written, 1 existed"), 300'000);
}

void DialogStartWaitingTest::AnUnattendedRunThatIsGivenUpEnds() {
  OpenReady(9);
  m_pFixture->Dialog().findChild<QCheckBox*>("checkUnattended")->click();
  const CDeadDisk disk(m_pFixture->OutputFolder());
  m_pFixture->Click(1018);
  QTRY_COMPARE(disk.Waiting(), 1);
  QVERIFY(!m_pFixture->Dialog().findChild<QCheckBox*>("checkUnattended")->isEnabled());
  m_pFixture->Click(1019);
  QTest::qWait(100);
  QVERIFY(!IsRunning());
  QCOMPARE(m_pFixture->List().RowCount(), 9);
  QVERIFY(m_pFixture->Answers().Shown().empty());
}

void DialogStartWaitingTest::AnUnattendedRunGivesUpByItself() {
  OpenReady(9, 1);
  m_pFixture->Dialog().findChild<QCheckBox*>("checkUnattended")->click();
  const CDeadDisk disk(m_pFixture->OutputFolder());
  m_pFixture->Answers().Give(QMessageBox::Ok);
  m_pFixture->Click(1018);
  QTRY_COMPARE_WITH_TIMEOUT(m_pFixture->Answers().Shown().size(), std::size_t{1}, 120'000);
  const QString text = m_pFixture->Answers().Shown()[0].text;
  QVERIFY2(text.startsWith("The run could not go on: " + QString::fromStdString(m_pFixture->OutputFolder())) &&
               text.contains(": no answer"),
           qPrintable(text));
  QVERIFY2(text.endsWith("\n\nConnect the disk or choose another folder, then start again; what exists is left out."),
           qPrintable(text));
  QVERIFY(!IsRunning());
  QCOMPARE(m_pFixture->List().RowCount(), 9);
  QCOMPARE(disk.OnWindowThread(), 0);
}

std::unique_ptr<CDeadDisk> DialogStartWaitingTest::StartOnADyingDisk() {
  m_pFixture->SetPatience(std::chrono::milliseconds(1));
  m_pFixture->Open();
  const std::string first = m_pFixture->WriteInput({.nSeconds = 20}, "set 000.wav");
  m_pFixture->WriteInput({.tStart = test::kRecordingStart + 20, .nSeconds = 20, .strFirstFile = "set 000.wav"},
                         "set 001.wav");
  m_pFixture->SetPath(1000, first);
  if (!QTest::qWaitFor([this] { return m_pFixture->Text(1004) == "2 "; })) qFatal("no set");
  m_pFixture->SetPath(1009, m_pFixture->OutputFolder());
  m_pFixture->Choose(1014, "One file (RF64)");
  m_pFixture->Choose(1011, "10 kHz");
  m_pFixture->Click(1015);
  auto pDisk = std::make_unique<CDeadDisk>(m_pFixture->Folder() / "set 001.wav");
  m_pFixture->Click(1018);
  // Its preparation may look at the file too, by name alone.
  if (!QTest::qWaitFor([&] { return pDisk->Waiting() == 1; })) qFatal("nothing waits");
  return pDisk;
}

void DialogStartWaitingTest::ARunThatADiskHoldsUpTellsItAndGoesOn() {
  const auto pDisk = StartOnADyingDisk();
  const QString place = QString::fromStdString(m_pFixture->Folder() / "set 001.wav");
  QTRY_COMPARE(Line(), "Waiting for " + place + "…");
  // Hours later in the morning.
  QTRY_COMPARE_WITH_TIMEOUT(
      Line(), "No answer from " + place + ". Connect its disk, and the run goes on; Stop ends it.", 60'000);
  QTRY_COMPARE(m_pFixture->Log().filter("[ERROR] " + place + ": no answer, the run waits for it").size(), 1);
  QVERIFY(IsRunning());
  QVERIFY(m_pFixture->Answers().Shown().empty());
  pDisk->Revive();
  QTRY_COMPARE_WITH_TIMEOUT(Line(), QString("1 of 1 outputs written"), 300'000);
}

void DialogStartWaitingTest::StopDoesNotWaitForADeadDisk() {
  const auto pDisk = StartOnADyingDisk();
  QTRY_VERIFY(m_pFixture->Log().join('\n').contains("Opening [1]"));
  m_pFixture->Click(1019);
  QTRY_COMPARE(Line(), QString::fromStdString("Stopping, waiting for " + (m_pFixture->Folder() / "set 001.wav") + "…"));
  QVERIFY(IsRunning());
  test::CLongestTurn turn;
  QTRY_VERIFY(turn.Turns() > 100);
  m_pFixture->Click(1019);  // changes nothing
  QVERIFY(IsRunning());
  pDisk->Revive();
  QTRY_COMPARE_WITH_TIMEOUT(Line(), QString("Stopped: 0 of 1 outputs complete"), 300'000);
  QVERIFY(!IsRunning());
  QVERIFY(!NothingIsWritten());
}

void DialogStartWaitingTest::TheProgramCanBeClosedWhenStopWaits() {
  const auto pDisk = StartOnADyingDisk();
  QTRY_VERIFY(m_pFixture->Log().join('\n').contains("Opening [1]"));
  m_pFixture->Dialog().close();  // a run that goes on is not left
  QCOMPARE(m_pFixture->Dialog().m_nBeeps, 1);
  m_pFixture->Click(1019);
  QVERIFY(m_pFixture->Dialog().IsHeldUp());
  m_pFixture->Answers().Give(QMessageBox::No);
  m_pFixture->Dialog().close();
  QVERIFY(m_pFixture->Dialog().isVisible());
  m_pFixture->Answers().Give(QMessageBox::Yes);
  m_pFixture->Dialog().close();
  QVERIFY(!m_pFixture->Dialog().isVisible());
  QVERIFY(m_pFixture->Dialog().IsHeldUp());
  pDisk->Revive();
  m_pFixture->CloseDialog();
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::DialogStartWaitingTest)
#include "dialog_start_waiting_test.moc"
