// An input on a disk or a network that does not answer: the window lives on, tells what it waits for, and gives up.
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QPushButton>

#include "overview/left_threads.h"
#include "ui/at_event.h"
#include "ui/dead_disk.h"
#include "ui/dialog_fixture.h"
#include "ui/job_menu.h"
#include "ui/longest_turn.h"
#include "ui/ui_test.h"

namespace carvello {

using test::CDeadDisk;
using test::CDialogFixture;

class DialogWaitingTest : public QObject {
  Q_OBJECT

 private slots:
  void init();
  void cleanup();

  void TheWindowLivesOnAndTellsWhatItWaitsFor();
  void WhatIsThereInTheEndIsShown();
  void AButtonGivesUpAndTriesAgain();
  void EscapeGivesUpAndNothingElse();
  void ALateResultOfWhatWasGivenUpIsDropped();
  void AJobWhoseRecordingIsGivenUpIsDropped();
  void AJobIsDroppedForAnotherInput();
  void AnotherInputDoesNotWaitForTheFirst();
  void APathThatIsTypedLeavesFewThreads();
  void ClosingTheWindowWaitsForNothing();
  void ARememberedInputAndFolderThatDoNotAnswerHoldNothingUp();
  void ARememberedInputThatIsSlowIsShownWhenItIsThere();
  void ChangingTheKindOfTimeWaitsToo();
  void TheEndOfTheProgramWaitsForNoDisk();

 private:
  std::string Path(const char* name) const { return m_strDead + "/" + name; }
  QPushButton& Button() { return *m_pFixture->Dialog().findChild<QPushButton*>("buttonGiveUp"); }
  QWidget& Panel() { return *Button().parentWidget(); }
  bool IsWaiting() { return Panel().isVisible() && Button().text() == "Give up"; }
  bool Tells(const std::string& path) {
    return Panel().findChild<QLabel*>()->accessibleName() == "Waiting for " + QString::fromStdString(path) + "…";
  }

  // The disk dies while the window asks whether to open the recording.
  void WaitForTheRecordingOfAJob(std::unique_ptr<CDeadDisk>& pDisk) {
    const std::string job = m_pFixture->Folder() / "job.json";
    QFile file(QString::fromStdString(job));
    QVERIFY(file.open(QIODevice::WriteOnly));
    const QString text(R"({"input": "%1/dead/rec.wav", "output": "%1/out",
                           "entries": [{"frequency": "7.1M", "bandwidth": "10k"}]})");
    file.write(text.arg(QString::fromStdString(m_pFixture->Folder().Path())).toUtf8());
    file.close();
    m_pFixture->Open();
    m_pFixture->SetPath(1000, m_pFixture->Folder() / "good.wav");
    m_pFixture->SetPatience(std::chrono::milliseconds(1));
    m_pFixture->Open();
    QTRY_COMPARE(m_pFixture->Text(1001), QString("3.500 MHz"));
    m_pFixture->Answers().Give(QMessageBox::Open);
    const test::CAtEvent asked(
        *qApp,
        [](QObject& object, const QEvent& event) {
          return event.type() == QEvent::Show && qobject_cast<QMessageBox*>(&object) != nullptr;
        },
        [this, &pDisk] { pDisk = std::make_unique<CDeadDisk>(m_strDead); });
    emit m_pFixture->Dialog().findChild<CJobMenu*>()->FilePressed(job);
    QTRY_VERIFY(pDisk != nullptr && IsWaiting() && Tells(Path("rec.wav")));
    QCOMPARE(DroppedJobs(), 0);
  }
  int DroppedJobs() { return static_cast<int>(m_pFixture->Log().filter("The job is dropped").size()); }

  std::unique_ptr<CDialogFixture> m_pFixture;
  std::string m_strDead;
};

void DialogWaitingTest::init() {
  m_pFixture = std::make_unique<CDialogFixture>();
  m_strDead = m_pFixture->Folder() / "dead";
  std::filesystem::create_directory(test::PathOf(m_strDead));
  m_pFixture->WriteInput({.nCentre = 7'100'000}, "dead/rec.wav");
  m_pFixture->WriteInput({.nCentre = 3'500'000}, "good.wav");
}

void DialogWaitingTest::cleanup() {
  QVERIFY(m_pFixture->Answers().AllUsed());
  JoinLeftThreads();
  m_pFixture.reset();
}

void DialogWaitingTest::TheWindowLivesOnAndTellsWhatItWaitsFor() {
  m_pFixture->Open();
  m_pFixture->SetPath(1000, m_pFixture->Folder() / "good.wav");
  m_pFixture->SetPath(1009, m_pFixture->OutputFolder());
  m_pFixture->Choose(1011, "10 kHz");
  m_pFixture->Click(1015);
  QVERIFY(!Panel().isVisible());
  m_pFixture->SetPatience(std::chrono::milliseconds(1));
  m_pFixture->Open();
  QTRY_COMPARE(m_pFixture->Text(1001), QString("3.500 MHz"));
  QTRY_VERIFY(m_pFixture->Control(1015).isEnabled());
  m_pFixture->Choose(1011, "10 kHz");
  m_pFixture->Click(1015);
  QCOMPARE(m_pFixture->List().RowCount(), 1);

  const CDeadDisk dead(m_strDead);
  m_pFixture->SetPath(1000, Path("rec.wav"));
  QVERIFY(IsWaiting());
  QVERIFY(Tells(Path("rec.wav")));
  QVERIFY(Button().isEnabled());
  QCOMPARE(m_pFixture->Text(1001), QString("-"));
  QCOMPARE(m_pFixture->List().RowCount(), 0);
  for (const int id : {1010, 1015, 1018, 1019, 1034}) QVERIFY(!m_pFixture->Control(id).isEnabled());
  for (const int id : {1000, 1022, 1023, 1024}) QVERIFY(m_pFixture->Control(id).isEnabled());
  test::CLongestTurn turn;
  QTRY_VERIFY(turn.Turns() > 100);
  QTRY_COMPARE(dead.Waiting(), 1);
  QVERIFY(IsWaiting());
  QVERIFY2(turn.Milliseconds() < 1000, qPrintable(QString::number(turn.Milliseconds())));
  QCOMPARE(dead.OnWindowThread(), 0);
}

void DialogWaitingTest::WhatIsThereInTheEndIsShown() {
  m_pFixture->SetPatience(std::chrono::milliseconds(1));
  m_pFixture->Open();
  CDeadDisk disk(m_strDead);
  m_pFixture->SetPath(1000, Path("rec.wav"));
  QVERIFY(IsWaiting());
  disk.Revive();
  QTRY_COMPARE(m_pFixture->Text(1001), QString("7.100 MHz"));
  QVERIFY(!Panel().isVisible());
  QCOMPARE(m_pFixture->Log(), (QStringList{"Ready", "Processors: 2, max threads: 8"}));
  std::string saved;
  QVERIFY(m_pFixture->Settings().Read("InputFile", saved));
  QCOMPARE(saved, Path("rec.wav"));
}

void DialogWaitingTest::AButtonGivesUpAndTriesAgain() {
  m_pFixture->SetPatience(std::chrono::milliseconds(1));
  m_pFixture->Open();
  CDeadDisk disk(m_strDead);
  m_pFixture->SetPath(1000, Path("rec.wav"));
  QTest::mouseClick(&Button(), Qt::LeftButton);
  QVERIFY(!IsWaiting());
  QVERIFY(Panel().isVisible());
  QCOMPARE(Panel().findChild<QLabel*>()->accessibleName(), QString::fromStdString("No answer from " + Path("rec.wav")));
  QCOMPARE(m_pFixture->Log().last(), QString::fromStdString("[WARNING] " + Path("rec.wav") + ": no answer, given up"));
  QCOMPARE(Button().text(), QString("Try again"));
  disk.Revive();
  QTest::mouseClick(&Button(), Qt::LeftButton);
  QTRY_COMPARE(m_pFixture->Text(1001), QString("7.100 MHz"));
  QVERIFY(!Panel().isVisible());
}

void DialogWaitingTest::EscapeGivesUpAndNothingElse() {
  m_pFixture->SetPatience(std::chrono::milliseconds(1));
  m_pFixture->Open();
  const CDeadDisk dead(m_strDead);
  m_pFixture->SetPath(1000, Path("rec.wav"));
  QTest::keyClick(&m_pFixture->Control(1000), Qt::Key_Escape);
  QVERIFY(m_pFixture->Dialog().isVisible());
  QVERIFY(!IsWaiting());
  QTest::keyClick(&m_pFixture->Control(1000), Qt::Key_Escape);  // nothing is waited for now
  QVERIFY(!m_pFixture->Dialog().isVisible());
  QCOMPARE(dead.OnWindowThread(), 0);
}

void DialogWaitingTest::ALateResultOfWhatWasGivenUpIsDropped() {
  m_pFixture->SetPatience(std::chrono::milliseconds(1));
  m_pFixture->Open();
  CDeadDisk disk(m_strDead);
  m_pFixture->SetPath(1000, Path("rec.wav"));
  QTRY_COMPARE(disk.Waiting(), 1);
  QTest::mouseClick(&Button(), Qt::LeftButton);
  const QStringList log = m_pFixture->Log();
  disk.Revive();
  JoinLeftThreads();
  QCoreApplication::processEvents();
  QCOMPARE(m_pFixture->Text(1001), QString("-"));
  QCOMPARE(m_pFixture->Log(), log);
}

void DialogWaitingTest::AJobWhoseRecordingIsGivenUpIsDropped() {
  std::unique_ptr<CDeadDisk> pDisk;
  WaitForTheRecordingOfAJob(pDisk);
  QTest::mouseClick(&Button(), Qt::LeftButton);
  QCOMPARE(DroppedJobs(), 1);
  pDisk->Revive();
  QTest::mouseClick(&Button(), Qt::LeftButton);  // try again
  QTRY_COMPARE(m_pFixture->Text(1001), QString("7.100 MHz"));
  QCOMPARE(m_pFixture->List().RowCount(), 0);
}

void DialogWaitingTest::AJobIsDroppedForAnotherInput() {
  std::unique_ptr<CDeadDisk> pDisk;
  WaitForTheRecordingOfAJob(pDisk);
  m_pFixture->SetPath(1000, m_pFixture->Folder() / "good.wav");
  QTRY_COMPARE(m_pFixture->Text(1001), QString("3.500 MHz"));
  QCOMPARE(DroppedJobs(), 1);
  pDisk->Revive();
  m_pFixture->SetPath(1000, Path("rec.wav"));
  QTRY_COMPARE(m_pFixture->Text(1001), QString("7.100 MHz"));
  QCOMPARE(m_pFixture->List().RowCount(), 0);
}

void DialogWaitingTest::AnotherInputDoesNotWaitForTheFirst() {
  m_pFixture->SetPatience(std::chrono::milliseconds(1));
  m_pFixture->Open();
  CDeadDisk disk(m_strDead);
  m_pFixture->SetPath(1000, Path("rec.wav"));
  QTRY_COMPARE(disk.Waiting(), 1);
  m_pFixture->SetPath(1000, m_pFixture->Folder() / "good.wav");
  QTRY_COMPARE(m_pFixture->Text(1001), QString("3.500 MHz"));
  QVERIFY(!Panel().isVisible());
  QCOMPARE(disk.Waiting(), 1);
  disk.Revive();
  JoinLeftThreads();
  QCoreApplication::processEvents();
  QCOMPARE(m_pFixture->Text(1001), QString("3.500 MHz"));
}

void DialogWaitingTest::APathThatIsTypedLeavesFewThreads() {
  m_pFixture->SetPatience(std::chrono::milliseconds(1));
  m_pFixture->Open();
  const CDeadDisk dead(m_strDead);
  m_pFixture->SetPath(1000, m_strDead + "/");
  QTRY_COMPARE(dead.Waiting(), 1);
  const std::string name = "a name of more than a few letters.wav";
  for (std::size_t i = 1; i <= name.size(); ++i) m_pFixture->SetPath(1000, m_strDead + "/" + name.substr(0, i));
  QVERIFY(Tells(Path(name.c_str())));
  QCOMPARE(dead.Waiting(), 1);
  QTRY_COMPARE(dead.Waiting(), 2);  // for what was typed in the end
  QCOMPARE(dead.OnWindowThread(), 0);
}

void DialogWaitingTest::ClosingTheWindowWaitsForNothing() {
  m_pFixture->SetPatience(std::chrono::milliseconds(1));
  m_pFixture->Open();
  const CDeadDisk dead(m_strDead);
  m_pFixture->SetPath(1000, Path("rec.wav"));
  QTRY_COMPARE(dead.Waiting(), 1);
  m_pFixture->Dialog().close();
  QVERIFY(!m_pFixture->Dialog().isVisible());
  QCOMPARE(m_pFixture->Dialog().m_nBeeps, 0);
  m_pFixture->CloseDialog();
  QCOMPARE(dead.Waiting(), 1);  // the thread is left to itself
  QCOMPARE(dead.OnWindowThread(), 0);
}

void DialogWaitingTest::ARememberedInputAndFolderThatDoNotAnswerHoldNothingUp() {
  m_pFixture->Settings().Write("InputFile", Path("rec.wav"));
  m_pFixture->Settings().Write("OutputFolder", m_strDead);
  m_pFixture->SetPatience(std::chrono::milliseconds(1));
  const CDeadDisk dead(m_strDead);
  m_pFixture->Open();
  QVERIFY(IsWaiting());
  QVERIFY(Tells(Path("rec.wav")));
  QCOMPARE(m_pFixture->Control<QLineEdit>(1009).placeholderText(),
           QString::fromStdString("Waiting for " + m_strDead + "…"));
  QTest::mouseClick(&Button(), Qt::LeftButton);
  QVERIFY(m_pFixture->Control<QLineEdit>(1000).text().isEmpty());
  m_pFixture->SetPath(1000, m_pFixture->Folder() / "good.wav");
  QTRY_COMPARE(m_pFixture->Text(1001), QString("3.500 MHz"));
  m_pFixture->SetPath(1009, m_pFixture->OutputFolder());
  QVERIFY(m_pFixture->Control<QLineEdit>(1009).placeholderText().isEmpty());
  QVERIFY(m_pFixture->Control(1015).isEnabled());
  QCOMPARE(dead.OnWindowThread(), 0);
}

void DialogWaitingTest::ARememberedInputThatIsSlowIsShownWhenItIsThere() {
  m_pFixture->Settings().Write("InputFile", Path("rec.wav"));
  m_pFixture->Settings().Write("OutputFolder", m_strDead);
  m_pFixture->SetPatience(std::chrono::milliseconds(1));
  CDeadDisk disk(m_strDead);
  m_pFixture->Open();
  QVERIFY(IsWaiting());
  disk.Revive();
  QTRY_COMPARE(m_pFixture->Text(1001), QString("7.100 MHz"));
  QTRY_COMPARE(m_pFixture->Control<QLineEdit>(1009).text(), QString::fromStdString(m_strDead));
  QCOMPARE(m_pFixture->Control<QLineEdit>(1000).text(), QString::fromStdString(Path("rec.wav")));
}

void DialogWaitingTest::ChangingTheKindOfTimeWaitsToo() {
  m_pFixture->SetPatience(std::chrono::milliseconds(1));
  m_pFixture->Open();
  m_pFixture->SetPath(1000, Path("rec.wav"));
  QTRY_COMPARE(m_pFixture->Text(1001), QString("7.100 MHz"));
  CDeadDisk disk(m_strDead);
  m_pFixture->Click(1034);
  QVERIFY(IsWaiting());
  disk.Revive();
  QTRY_COMPARE(m_pFixture->Text(1001), QString("7.100 MHz"));
  QCOMPARE(disk.OnWindowThread(), 0);
}

// In a process of its own: main() of the program ends in the same way.
void DialogWaitingTest::TheEndOfTheProgramWaitsForNoDisk() {
  QProcess process;
  process.start(QCoreApplication::applicationFilePath(), {"--leave", QString::fromStdString(m_strDead)});
  QVERIFY(process.waitForFinished(120'000));
  QCOMPARE(process.exitStatus(), QProcess::NormalExit);
  QCOMPARE(process.exitCode(), 7);
}

// A program that ends with the code 7 while a disk that it reads is dead, and has saved what the user wanted.
int LeaveADeadDisk(const char* folder) {
  const CDeadDisk dead(folder);
  std::atomic<bool> saved = false;
  StartLeftThread("Dead", [folder] { platform::IsReadable(folder); });
  StartLeftThread(
      "Save",
      [&saved] {
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        saved = true;
      },
      ELeft::Writes);
  const bool ended = JoinLeftThreadsFor(std::chrono::milliseconds(1));
  platform::EndProcess(!ended && saved ? 7 : 1);
}

}  // namespace carvello

int main(int argc, char** argv) {
  if (argc == 3 && std::string(argv[1]) == "--leave") return carvello::LeaveADeadDisk(argv[2]);
  return carvello::test::RunUiTest(argc, argv, [] { return std::make_unique<carvello::DialogWaitingTest>(); });
}
#include "dialog_waiting_test.moc"
