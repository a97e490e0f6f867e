// Whatever path the user names, its disk may not answer: the window lives on, tells what it waits for, and gives up.
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFile>
#include <QFileDialog>
#include <QMimeData>
#include <QPushButton>
#include <QSettings>
#include <QStandardPaths>
#include <QToolButton>
#include <QUrl>

#include "jobs/job_file.h"
#include "overview/left_threads.h"
#include "ui/dead_disk.h"
#include "ui/dialog_fixture.h"
#include "ui/job_menu.h"
#include "ui/offer_strip.h"
#include "ui/ui_test.h"

namespace carvello {

using test::CDeadDisk;
using test::CDialogFixture;

class DialogPathsWaitingTest : public QObject {
  Q_OBJECT

 private slots:
  void init();
  void cleanup();

  void AJobFileIsWaitedFor();
  void TheRecordingOfAJobIsWaitedFor();
  void AJobThatIsThereInTheEndIsNotForARunThatHasBegun();
  void SavingIsWaitedFor();
  void ASavedJobThatIsWaitedForIsWhatTheListWas();
  void TheNewestOfTwoSavesStandsInTheFile();
  void ClosingWaitsForTheSaveItAskedFor();
  void ADropIsWaitedFor();
  void ShowingTheFolderIsWaitedFor();
  void DialogsForFilesBeginElsewhere();
  void KeptListsComeWhenTheyAreThere();

 private:
  std::string Path(const char* name) const { return m_strDead + "/" + name; }
  QPushButton& Button() { return *m_pFixture->Dialog().findChild<QPushButton*>("buttonGiveUp"); }
  QWidget& Panel() { return *Button().parentWidget(); }
  bool Tells(const std::string& path) {
    return Panel().isVisible() && Button().text() == "Give up" &&
           Panel().findChild<QLabel*>()->accessibleName() == "Waiting for " + QString::fromStdString(path) + "…";
  }
  void GiveUp(const std::string& path) {
    QTest::mouseClick(&Button(), Qt::LeftButton);
    QVERIFY(!Panel().isVisible());
    QCOMPARE(m_pFixture->Log().last(), QString::fromStdString("[WARNING] " + path + ": no answer, given up"));
  }
  void WriteJob(const std::string& path, const char* input) {
    QFile file(QString::fromStdString(path));
    if (!file.open(QIODevice::WriteOnly)) qFatal("no file");
    const QString text(R"({"input": "%1", "entries": [{"frequency": "7.1M", "bandwidth": "10k"}]})");
    file.write(text.arg(QString::fromStdString(m_pFixture->Folder() / input)).toUtf8());
  }
  void OpenReady(int entries) {
    m_pFixture->OpenReady();
    m_pFixture->SetPatience(std::chrono::milliseconds(1));
    m_pFixture->Open();
    QTRY_COMPARE(m_pFixture->Text(1001), QString("7.100 MHz"));
    QTRY_VERIFY(m_pFixture->Control(1015).isEnabled());
    AddEntries(entries);
  }
  void AddEntries(int count, std::int64_t first = 7'080'000) {
    m_pFixture->Choose(1011, "10 kHz");
    const int before = m_pFixture->List().RowCount();
    for (int i = 0; i < count; ++i) {
      m_pFixture->SetFrequency(first + 5'000 * i);
      m_pFixture->Click(1015);
    }
    QCOMPARE(m_pFixture->List().RowCount(), before + count);
  }
  CJobMenu& Menu() { return *m_pFixture->Dialog().findChild<CJobMenu*>(); }
  // A list that was saved on the disk that is to die.
  void OpenSaved(int entries) {
    OpenReady(entries);
    m_pFixture->Answers().ChooseFile(Path("job.json"));
    emit Menu().SaveAsPressed();
    QTRY_COMPARE(m_pFixture->Log().filter(QString("Saved %1 entries: ").arg(entries)).size(), 1);
  }
  static std::size_t EntriesOf(const std::string& path) {
    SJobFile job;
    std::string error;
    return ReadJobFile(path, job, error) ? job.entries.size() : 0;
  }
  static bool Drop(QWidget& target, const std::string& path) {
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QString::fromStdString(path))});
    QDragEnterEvent enter({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&target, &enter);
    QDropEvent drop({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&target, &drop);
    return enter.isAccepted() && drop.isAccepted();
  }

  std::unique_ptr<CDialogFixture> m_pFixture;
  std::string m_strDead;
};

void DialogPathsWaitingTest::init() {
  QDir(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + "/Carvello").removeRecursively();
  m_pFixture = std::make_unique<CDialogFixture>();
  m_strDead = m_pFixture->Folder() / "dead";
  std::filesystem::create_directory(test::PathOf(m_strDead));
}

void DialogPathsWaitingTest::cleanup() {
  QVERIFY(m_pFixture->Answers().AllUsed());
  JoinLeftThreads();
  m_pFixture.reset();
  JoinLeftThreads();
}

void DialogPathsWaitingTest::AJobFileIsWaitedFor() {
  OpenReady(0);
  WriteJob(Path("job.json"), "rec.wav");
  CDeadDisk disk(m_strDead);
  emit Menu().FilePressed(Path("job.json"));
  QVERIFY(Tells(Path("job.json")));
  GiveUp(Path("job.json"));
  emit Menu().FilePressed(Path("job.json"));
  QVERIFY(Tells(Path("job.json")));
  QTest::keyClick(&m_pFixture->Dialog(), Qt::Key_Escape);
  QVERIFY(!Panel().isVisible());
  QVERIFY(m_pFixture->Dialog().isVisible());
  emit Menu().FilePressed(Path("job.json"));
  QCOMPARE(disk.OnWindowThread(), 0);
  disk.Revive();
  QTRY_COMPARE(m_pFixture->List().RowCount(), 1);
  QVERIFY(!Panel().isVisible());
}

void DialogPathsWaitingTest::TheRecordingOfAJobIsWaitedFor() {
  OpenReady(0);
  const std::string job = m_pFixture->Folder() / "job.json";
  WriteJob(job, "dead/other.wav");
  CDeadDisk disk(m_strDead);
  emit Menu().FilePressed(job);
  QTRY_VERIFY(Tells(Path("other.wav")));
  GiveUp(Path("other.wav"));
  emit Menu().FilePressed(job);
  QTRY_VERIFY(Tells(Path("other.wav")));
  QCOMPARE(disk.OnWindowThread(), 0);
  m_pFixture->Answers().Give(QMessageBox::Yes);  // apply it to this one
  disk.Revive();
  QTRY_COMPARE(m_pFixture->List().RowCount(), 1);
}

void DialogPathsWaitingTest::AJobThatIsThereInTheEndIsNotForARunThatHasBegun() {
  m_pFixture->WriteInput({.nSeconds = 3000});
  m_pFixture->SetPatience(std::chrono::milliseconds(1));
  m_pFixture->Open();
  m_pFixture->SetPath(1000, m_pFixture->Folder() / "rec.wav");
  m_pFixture->SetPath(1009, m_pFixture->OutputFolder());
  QTRY_COMPARE(m_pFixture->Text(1001), QString("7.100 MHz"));
  AddEntries(2);
  WriteJob(Path("job.json"), "rec.wav");
  CDeadDisk disk(m_strDead);
  emit Menu().FilePressed(Path("job.json"));
  QVERIFY(Tells(Path("job.json")));
  m_pFixture->Click(1018);
  QTRY_VERIFY(m_pFixture->Control(1019).isEnabled());
  disk.Revive();
  QTRY_COMPARE(m_pFixture->Log().filter("The job is dropped, for a run has begun").size(), 1);
  QCOMPARE(m_pFixture->List().RowCount(), 2);
  m_pFixture->Click(1019);
  QTRY_VERIFY(!m_pFixture->Control(1019).isEnabled());
}

void DialogPathsWaitingTest::SavingIsWaitedFor() {
  OpenSaved(2);
  AddEntries(1, 7'120'000);
  const CDeadDisk disk(m_strDead);
  emit Menu().SavePressed();
  QVERIFY(Tells(Path("job.json")));
  GiveUp(Path("job.json"));
  QCOMPARE(disk.OnWindowThread(), 0);
  m_pFixture->Answers().Give(QMessageBox::Cancel);
  m_pFixture->Dialog().close();  // what was given up is not saved
  QVERIFY(m_pFixture->Dialog().isVisible());
}

void DialogPathsWaitingTest::ASavedJobThatIsWaitedForIsWhatTheListWas() {
  OpenSaved(1);
  AddEntries(1, 7'120'000);
  CDeadDisk disk(m_strDead);
  emit Menu().SavePressed();
  AddEntries(1, 7'130'000);
  disk.Revive();
  QTRY_COMPARE(m_pFixture->Log().filter("Saved 2 entries: ").size(), 1);
  QCOMPARE(EntriesOf(Path("job.json")), std::size_t{2});
  m_pFixture->Answers().Give(QMessageBox::Cancel);
  m_pFixture->Dialog().close();
  QCOMPARE(m_pFixture->Answers().Shown().back().text, QString("Entries that were neither run nor saved: 1"));
}

void DialogPathsWaitingTest::TheNewestOfTwoSavesStandsInTheFile() {
  OpenSaved(1);
  AddEntries(1, 7'120'000);
  CDeadDisk disk(m_strDead);
  emit Menu().SavePressed();
  QTRY_COMPARE(disk.Waiting(), 1);
  AddEntries(1, 7'130'000);
  emit Menu().SavePressed();
  QTRY_COMPARE(disk.Waiting(), 2);
  disk.Revive();
  JoinLeftThreads();
  QTRY_COMPARE(m_pFixture->Log().filter("Saved 3 entries: ").size(), 1);
  QCOMPARE(m_pFixture->Log().filter("Saved 2 entries: ").size(), 0);
  QCOMPARE(EntriesOf(Path("job.json")), std::size_t{3});
}

void DialogPathsWaitingTest::ClosingWaitsForTheSaveItAskedFor() {
  OpenSaved(2);
  AddEntries(1, 7'120'000);
  CDeadDisk disk(m_strDead);
  m_pFixture->Answers().Give(QMessageBox::Save);
  m_pFixture->Dialog().close();
  QVERIFY(m_pFixture->Dialog().isVisible());
  QVERIFY(Tells(Path("job.json")));
  QCOMPARE(disk.OnWindowThread(), 0);
  disk.Revive();
  QTRY_VERIFY(!m_pFixture->Dialog().isVisible());
  QCOMPARE(EntriesOf(Path("job.json")), std::size_t{3});
}

void DialogPathsWaitingTest::ADropIsWaitedFor() {
  OpenReady(0);
  m_pFixture->WriteInput({.nCentre = 3'500'000}, "dead/other.wav");
  CDeadDisk disk(m_strDead);
  QVERIFY(Drop(m_pFixture->Dialog(), Path("other.wav")));
  QTRY_VERIFY(Tells(Path("other.wav")));
  GiveUp(Path("other.wav"));
  QVERIFY(Drop(m_pFixture->Control(1009), m_strDead));
  QTRY_VERIFY(Tells(m_strDead));
  GiveUp(m_strDead);
  QCOMPARE(m_pFixture->Text(1001), QString("7.100 MHz"));
  QVERIFY(Drop(m_pFixture->Dialog(), Path("other.wav")));
  QTRY_VERIFY(Tells(Path("other.wav")));
  QCOMPARE(disk.OnWindowThread(), 0);
  disk.Revive();
  QTRY_COMPARE(m_pFixture->Text(1001), QString("3.500 MHz"));
}

void DialogPathsWaitingTest::ShowingTheFolderIsWaitedFor() {
  OpenReady(0);
  m_pFixture->SetPath(1009, m_strDead);
  m_pFixture->SetPath(1000, m_pFixture->WriteInput({.nCentre = 3'500'000}, "dead/rec.wav"));
  QTRY_COMPARE(m_pFixture->Text(1001), QString("3.500 MHz"));
  const CDeadDisk disk(m_strDead);
  m_pFixture->Click(1033);
  QVERIFY(Tells(m_strDead));
  GiveUp(m_strDead);
  m_pFixture->Click(1032);  // there is no file manager
  QTRY_VERIFY(Tells(m_strDead));
  QCOMPARE(disk.OnWindowThread(), 0);
  GiveUp(m_strDead);
}

void DialogPathsWaitingTest::DialogsForFilesBeginElsewhere() {
  OpenReady(1);
  QSettings().setValue("JobFolder", QString::fromStdString(m_strDead));
  const CDeadDisk disk(m_strDead);
  int nBegun = 0;
  const auto look = [&nBegun](QDialog& dialog) {
    nBegun += static_cast<QFileDialog&>(dialog).directory() == QDir::home();
    dialog.reject();
  };
  m_pFixture->Answers().Do(look);
  emit Menu().OpenPressed();
  m_pFixture->Answers().Do(look);
  emit Menu().SaveAsPressed();
  m_pFixture->SetPath(1009, m_strDead);
  m_pFixture->Answers().Do(look);
  QTest::mouseClick(m_pFixture->Control<CMyMFCEditBrowseCtrl>(1009).BrowseButton(), Qt::LeftButton);
  QCOMPARE(nBegun, 3);
  QCOMPARE(disk.OnWindowThread(), 0);
}

void DialogPathsWaitingTest::KeptListsComeWhenTheyAreThere() {
  OpenReady(2);
  m_pFixture->CloseDialog();
  JoinLeftThreads();
  const std::string lists =
      (QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + "/Carvello/lists").toStdString();
  CDeadDisk disk(lists);
  m_pFixture->Open();
  QTRY_COMPARE(m_pFixture->Text(1001), QString("7.100 MHz"));
  auto& strip = *m_pFixture->Dialog().findChild<COfferStrip*>("stripList");
  QTRY_COMPARE(disk.Waiting(), 1);
  QVERIFY(!strip.IsOffering());
  QMenu* pMenu = Menu().actions()[2]->menu();
  emit pMenu->aboutToShow();
  QCOMPARE(pMenu->actions().size(), 1);
  QCOMPARE(pMenu->actions()[0]->text(), QString::fromStdString("Waiting for " + lists + "…"));
  QVERIFY(!pMenu->actions()[0]->isEnabled());
  QCOMPARE(disk.OnWindowThread(), 0);
  disk.Revive();
  QTRY_VERIFY(strip.IsOffering());
  QTRY_VERIFY(pMenu->actions()[0]->text().endsWith("entries: 2"));
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::DialogPathsWaitingTest)
#include "dialog_paths_waiting_test.moc"
