// Jobs as files: opening, saving, another recording's job, undoing, and closing with entries on the list.
#include <QAction>
#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFile>
#include <QFileDialog>
#include <QMimeData>
#include <QUrl>

#include "jobs/job_file.h"
#include "support/platform.h"
#include "ui/dialog_fixture.h"
#include "ui/job_menu.h"
#include "ui/ui_test.h"

namespace carvello {

using test::CDialogFixture;
using test::SShownBox;

class DialogJobsTest : public QObject {
  Q_OBJECT

 private slots:
  void init();
  void cleanup();

  void ASavedListComesBackAsItWas();
  void SavingAgainAsksForNoName();
  void AFileOfTheRecordingIsNotOverwritten();
  void OpeningReplacesTheListAndCanBeUndone();
  void PathsOfAJobCountFromThePresentFolder();
  void AJobForAnotherKindOfTimeSetsTheBox();
  void AJobOfAnotherRecordingIsShifted();
  void OrKeepsItsTimesAndWhatDoesNotFitIsTold();
  void AFileThatIsAnotherRecordingNowIsAskedAbout();
  void WhatDoesNotFitIsNotLostBySavingAgain();
  void AJobWithoutAFolderIsForTheChosenOne();
  void AJobOfAFileThatIsNoRecordingIsDropped();
  void OrOpensItsRecording();
  void OrIsLeftAlone();
  void AJobWithoutTimesAndWithoutItsRecordingIsOnlyApplied();
  void AJobOpensItsRecordingWhereNoneIsOpen();
  void AJobNamedAtTheStartIsOpened();
  void WhatIsNoJobIsToldAndChangesNothing();
  void AJobOfWhichNothingFitsLeavesTheList();
  void AJobOfWhichNothingFitsChoosesNoFolder();
  void WhatTheCommandLineRefusesIsNotSaved();
  void RecentFilesAreInTheMenu();
  void NothingCanBeOpenedDuringARun();
  void EveryChangeOfTheListIsUndoneAndRedone();
  void TheRemovalOfABatchIsUndone();
  void ClosingAsksForEntriesThatWereNeitherRunNorSaved();
  void ClosingSavesWhenThatIsTheAnswer();
  void ClosingDoesNotAskForWhatWasSavedOrRun();

 private:
  void Key(QKeyCombination keys) {
    // Behind a message box the window takes a moment to be the active one again.
    m_pFixture->Dialog().activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&m_pFixture->Dialog()));
    QTest::keyClick(&m_pFixture->Control(1015), keys.key(), keys.keyboardModifiers());
  }
  void AddEntries(int count, std::int64_t first = 7'080'000) {
    m_pFixture->Choose(1011, "10 kHz");
    for (int i = 0; i < count; ++i) {
      m_pFixture->SetFrequency(first + 5'000 * i);
      m_pFixture->Click(1015);
    }
  }
  void Save(const std::string& path) {
    m_pFixture->Answers().ChooseFile(path);
    Key(Qt::CTRL | Qt::SHIFT | Qt::Key_S);
  }
  void OpenJob(const std::string& path) { emit m_pFixture->Dialog().findChild<CJobMenu*>()->FilePressed(path); }
  std::vector<QStringList> Rows() {
    std::vector<QStringList> rows;
    for (int i = 0; i < m_pFixture->List().RowCount(); ++i) rows.push_back(m_pFixture->Row(i));
    return rows;
  }
  std::string Write(const std::string& name, const std::string& text) {
    const std::string path = m_pFixture->Folder() / name;
    QFile file(QString::fromStdString(path));
    if (!file.open(QIODevice::WriteOnly)) qFatal("no file");
    file.write(QByteArray::fromStdString(text));
    return path;
  }
  // A job for a recording of another day, of which a file can be made.
  std::string OtherJob(const std::string& input) {
    return Write("other.json", R"({"input": ")" + input + R"(", "output": "out", "recorded": "2020-10-01T12:00:00Z",
        "entries": [{"frequency": 7100000, "bandwidth": 10000, "start": "2020-10-01T12:10:00Z", "duration": 600},
                    {"frequency": 7110000, "bandwidth": 10000}]})");
  }
  SShownBox Box(std::size_t index) { return m_pFixture->Answers().Shown().at(index); }

  std::unique_ptr<CDialogFixture> m_pFixture;
  QString m_before;  // the present folder
};

void DialogJobsTest::init() {
  m_pFixture = std::make_unique<CDialogFixture>();
  m_before = QDir::currentPath();
  QVERIFY(QDir::setCurrent(QString::fromStdString(m_pFixture->Folder().Path())));
}

void DialogJobsTest::cleanup() {
  QVERIFY(QDir::setCurrent(m_before));
  QVERIFY(m_pFixture->Answers().AllUsed());
  m_pFixture.reset();
}

void DialogJobsTest::ASavedListComesBackAsItWas() {
  m_pFixture->OpenReady();
  m_pFixture->Choose(1011, "10 kHz");
  AddEntries(2);
  m_pFixture->Choose(1014, "One file (RF64)");
  m_pFixture->Click(1013);
  m_pFixture->Click(1086);
  m_pFixture->Pick(1105, 1103, QDateTime(QDate(2020, 11, 2), QTime(0, 10)));
  AddEntries(2, 7'090'000);
  const auto rows = Rows();
  QCOMPARE(rows.size(), std::size_t{4});
  const std::string path = m_pFixture->Folder() / "evening.json";
  Save(path);
  SJobFile job;
  std::string error;
  QVERIFY2(ReadJobFile(path, job, error), error.c_str());
  QCOMPARE(job.entries.size(), std::size_t{4});
  QCOMPARE(job.strInput, m_pFixture->Folder() / "rec.wav");
  QCOMPARE(job.strOutput, m_pFixture->OutputFolder());
  QVERIFY(job.entries[3].b32Bit);
  m_pFixture->Click(1017);
  QCOMPARE(m_pFixture->List().RowCount(), 0);
  OpenJob(path);
  QCOMPARE(Rows(), rows);
}

void DialogJobsTest::SavingAgainAsksForNoName() {
  m_pFixture->OpenReady();
  AddEntries(1);
  const std::string path = m_pFixture->Folder() / "evening.json";
  Save(path);
  AddEntries(2);
  Key(Qt::CTRL | Qt::Key_S);
  SJobFile job;
  std::string error;
  QVERIFY2(ReadJobFile(path, job, error), error.c_str());
  QCOMPARE(job.entries.size(), std::size_t{2});
}

void DialogJobsTest::AFileOfTheRecordingIsNotOverwritten() {
  m_pFixture->OpenReady();
  AddEntries(1);
  const std::string path = m_pFixture->Folder() / "rec.wav";
  const auto size = QFile(QString::fromStdString(path)).size();
  m_pFixture->Answers().Do([path](QDialog& dialog) {  // asks itself whether to replace it
    qobject_cast<QFileDialog*>(&dialog)->setOption(QFileDialog::DontConfirmOverwrite);
    test::TypePath(dialog, path);
  });
  m_pFixture->Answers().Give(QMessageBox::Ok);
  Key(Qt::CTRL | Qt::Key_S);
  QVERIFY(Box(0).text.startsWith(QString::fromStdString(path + ": is a file of the recording\n\n")));
  QCOMPARE(QFile(QString::fromStdString(path)).size(), size);
}

void DialogJobsTest::OpeningReplacesTheListAndCanBeUndone() {
  m_pFixture->OpenReady();
  AddEntries(3);
  const auto before = Rows();
  const std::string path = Write("job.json", R"({"entries": [{"frequency": "7.1M", "bandwidth": "10k"}]})");
  m_pFixture->Answers().ChooseFile(path);
  Key(Qt::CTRL | Qt::Key_O);
  QCOMPARE(m_pFixture->List().RowCount(), 1);
  QCOMPARE(m_pFixture->Row(0)[0], QString("7.100.000"));
  Key(Qt::CTRL | Qt::Key_Z);
  QCOMPARE(Rows(), before);
  Key(Qt::CTRL | Qt::Key_Y);
  QCOMPARE(m_pFixture->List().RowCount(), 1);
}

void DialogJobsTest::PathsOfAJobCountFromThePresentFolder() {
  m_pFixture->Open();
  m_pFixture->WriteInput();
  std::filesystem::create_directory(m_pFixture->Folder() / "elsewhere");
  OpenJob(Write("elsewhere/job.json", R"({"input": "rec.wav", "output": "out", "entries": [
      {"frequency": "7.1M", "bandwidth": "10k"}, {"frequency": "7.2M", "bandwidth": "10k", "output": "out/.."}]})"));
  QCOMPARE(m_pFixture->Control<CMyMFCEditBrowseCtrl>(1000).Path(),
           QString::fromStdString(m_pFixture->Folder() / "rec.wav"));
  QCOMPARE(m_pFixture->Control<CMyMFCEditBrowseCtrl>(1009).Path(), QString::fromStdString(m_pFixture->OutputFolder()));
  QCOMPARE(m_pFixture->List().RowCount(), 2);
  Save(m_pFixture->Folder() / "again.json");
  SJobFile job;
  std::string error;
  QVERIFY2(ReadJobFile(m_pFixture->Folder() / "again.json", job, error), error.c_str());
  QCOMPARE(job.entries[0].strOutput, std::string());
  QCOMPARE(job.entries[1].strOutput, platform::FolderOf(m_pFixture->Folder() / "x"));
}

void DialogJobsTest::AJobForAnotherKindOfTimeSetsTheBox() {
  m_pFixture->OpenReady();
  AddEntries(1);
  const auto before = Rows();
  OpenJob(Write("job.json", R"({"local_time": true, "entries": [{"frequency": "7.1M", "bandwidth": "10k"}]})"));
  QVERIFY(!m_pFixture->Control<QAbstractButton>(1034).isChecked());
  QVERIFY(!m_pFixture->Row(0)[4].contains("z, f="));
  QVERIFY(!m_pFixture->Text(1005).endsWith('z'));
  Key(Qt::CTRL | Qt::Key_Z);
  QVERIFY(m_pFixture->Control<QAbstractButton>(1034).isChecked());
  QCOMPARE(Rows(), before);
  QVERIFY(m_pFixture->Text(1005).endsWith('z'));
}

void DialogJobsTest::AJobOfAnotherRecordingIsShifted() {
  m_pFixture->OpenReady();
  m_pFixture->Answers().Give(QMessageBox::Yes);
  OpenJob(OtherJob("nowhere.wav"));
  QVERIFY(Box(0).text.contains("nowhere.wav"));
  QVERIFY(!(Box(0).buttons & QMessageBox::Open));  // it is not there
  QCOMPARE(m_pFixture->List().RowCount(), 2);
  QVERIFY(m_pFixture->Row(0)[4].startsWith("2020-11-02 0009z, "));
  QVERIFY(m_pFixture->Row(1)[4].startsWith("2020-11-01 2359z, "));
}

void DialogJobsTest::OrKeepsItsTimesAndWhatDoesNotFitIsTold() {
  m_pFixture->OpenReady();
  m_pFixture->Answers().Give(QMessageBox::No);
  m_pFixture->Answers().Give(QMessageBox::Ok);
  OpenJob(OtherJob("nowhere.wav"));
  QVERIFY2(Box(1).text.contains("1 of 2"), qPrintable(Box(1).text));
  QVERIFY(Box(1).text.contains("other.json: entry 1: Start Time"));
  QCOMPARE(m_pFixture->List().RowCount(), 1);
  QVERIFY(m_pFixture->Log().filter("1 of 2 entries do not fit this recording").size() == 1);
}

void DialogJobsTest::AFileThatIsAnotherRecordingNowIsAskedAbout() {
  m_pFixture->OpenReady();
  m_pFixture->Answers().Give(QMessageBox::Yes);
  OpenJob(OtherJob("rec.wav"));
  QVERIFY(!(Box(0).buttons & QMessageBox::Open));  // it is open
  QCOMPARE(m_pFixture->List().RowCount(), 2);
  QVERIFY(m_pFixture->Row(0)[4].startsWith("2020-11-02 0009z, "));
  // And when the job opens it first.
  m_pFixture->SetPath(1000, m_pFixture->Folder() / "none.wav");
  m_pFixture->Answers().Give(QMessageBox::Yes);
  OpenJob(OtherJob("rec.wav"));
  QCOMPARE(m_pFixture->List().RowCount(), 2);
  QVERIFY(m_pFixture->Row(0)[4].startsWith("2020-11-02 0009z, "));
}

void DialogJobsTest::WhatDoesNotFitIsNotLostBySavingAgain() {
  m_pFixture->OpenReady();
  const std::string path = Write("job.json", R"({"entries": [{"frequency": "7.1M", "bandwidth": "10k"},
      {"frequency": "7.1M", "bandwidth": "10k", "start": 99999}]})");
  m_pFixture->Answers().Give(QMessageBox::Ok);
  OpenJob(path);
  QCOMPARE(m_pFixture->List().RowCount(), 1);
  m_pFixture->Answers().Do([](QDialog& dialog) { dialog.reject(); });  // asked for a name
  Key(Qt::CTRL | Qt::Key_S);
  SJobFile job;
  std::string error;
  QVERIFY2(ReadJobFile(path, job, error), error.c_str());
  QCOMPARE(job.entries.size(), std::size_t{2});
}

void DialogJobsTest::AJobWithoutAFolderIsForTheChosenOne() {
  m_pFixture->Open();
  m_pFixture->SetPath(1000, m_pFixture->WriteInput());
  const std::string path = Write("job.json", R"({"entries": [{"frequency": "7.1M", "bandwidth": "10k"}]})");
  m_pFixture->Answers().Give(QMessageBox::Ok);
  OpenJob(path);
  QVERIFY2(Box(0).text.contains("no output folder"), qPrintable(Box(0).text));
  QCOMPARE(m_pFixture->List().RowCount(), 0);
  QVERIFY(!m_pFixture->Control(1018).isEnabled());
  OpenJob(Write("own.json", R"({"entries": [{"frequency": "7.1M", "bandwidth": "10k", "output": "out"}]})"));
  QCOMPARE(m_pFixture->List().RowCount(), 1);
  Save(m_pFixture->Folder() / "again.json");
  SJobFile job;
  std::string error;
  QVERIFY2(ReadJobFile(m_pFixture->Folder() / "again.json", job, error), error.c_str());
  QCOMPARE(job.strOutput, std::string());  // not the folder that the program was started in
  QCOMPARE(job.entries[0].strOutput, m_pFixture->OutputFolder());
  m_pFixture->SetPath(1009, m_pFixture->OutputFolder());
  OpenJob(path);
  QCOMPARE(m_pFixture->List().RowCount(), 1);
}

void DialogJobsTest::AJobOfAFileThatIsNoRecordingIsDropped() {
  m_pFixture->Open();
  Write("other.wav", "no recording");
  OpenJob(OtherJob("other.wav"));
  QCOMPARE(m_pFixture->Log().filter("The job is dropped").size(), 1);
  m_pFixture->SetPath(1000, m_pFixture->WriteInput());
  m_pFixture->SetPath(1000, m_pFixture->WriteInput({.tStart = 1'601'553'600}, "other.wav"));
  QCOMPARE(m_pFixture->List().RowCount(), 0);
}

void DialogJobsTest::OrOpensItsRecording() {
  m_pFixture->OpenReady();
  AddEntries(2);
  const std::string other = m_pFixture->WriteInput({.tStart = 1'601'553'600}, "other.wav");  // 2020-10-01 12:00:00
  m_pFixture->Answers().Give(QMessageBox::Open);
  OpenJob(OtherJob("other.wav"));
  QCOMPARE(m_pFixture->Control<CMyMFCEditBrowseCtrl>(1000).Path(), QString::fromStdString(other));
  QCOMPARE(m_pFixture->List().RowCount(), 2);
  QVERIFY(m_pFixture->Row(0)[4].startsWith("2020-10-01 1210z, "));
}

void DialogJobsTest::OrIsLeftAlone() {
  m_pFixture->OpenReady();
  AddEntries(1);
  const auto before = Rows();
  m_pFixture->Answers().Give(QMessageBox::Cancel);
  OpenJob(OtherJob("nowhere.wav"));
  QCOMPARE(Rows(), before);
}

void DialogJobsTest::AJobWithoutTimesAndWithoutItsRecordingIsOnlyApplied() {
  m_pFixture->OpenReady();
  m_pFixture->Answers().Give(QMessageBox::Yes);
  OpenJob(Write("job.json", R"({"input": "nowhere.wav", "entries": [{"frequency": "7.1M", "bandwidth": "10k"}]})"));
  QCOMPARE(Box(0).buttons, QMessageBox::Yes | QMessageBox::Cancel);
  QCOMPARE(m_pFixture->List().RowCount(), 1);
}

void DialogJobsTest::AJobOpensItsRecordingWhereNoneIsOpen() {
  m_pFixture->Open();
  m_pFixture->Answers().Give(QMessageBox::Ok);
  OpenJob(OtherJob("other.wav"));
  QVERIFY(Box(0).text.contains("cannot be read"));
  m_pFixture->Answers().Give(QMessageBox::Ok);
  OpenJob(Write("none.json", R"({"entries": [{"frequency": "7.1M", "bandwidth": "10k"}]})"));
  QVERIFY(Box(1).text.contains("names no recording"));
  m_pFixture->WriteInput({.tStart = 1'601'553'600}, "other.wav");
  OpenJob(OtherJob("other.wav"));
  QCOMPARE(m_pFixture->List().RowCount(), 2);
}

void DialogJobsTest::AJobNamedAtTheStartIsOpened() {
  m_pFixture->WriteInput({.tStart = 1'601'553'600}, "other.wav");
  m_pFixture->Open(OtherJob("other.wav"));
  QTRY_COMPARE(m_pFixture->List().RowCount(), 2);
  QVERIFY(m_pFixture->Control<QLineEdit>(1000).text().endsWith("other.wav"));
}

void DialogJobsTest::WhatIsNoJobIsToldAndChangesNothing() {
  m_pFixture->OpenReady();
  AddEntries(1);
  for (const std::string& path : {Write("a.json", "{"), Write("b.json", R"({"entries": [{"frequency": 1}]})"),
                                  m_pFixture->Folder() / "none.json", m_pFixture->OutputFolder()}) {
    m_pFixture->Answers().Give(QMessageBox::Ok);
    OpenJob(path);
    const SShownBox& box = m_pFixture->Answers().Shown().back();
    QVERIFY2(box.text.contains(QString::fromStdString(path)), qPrintable(box.text));
    QCOMPARE(m_pFixture->List().RowCount(), 1);
  }
}

void DialogJobsTest::AJobOfWhichNothingFitsChoosesNoFolder() {
  m_pFixture->Open();
  m_pFixture->SetPath(1000, m_pFixture->WriteInput());
  m_pFixture->Answers().Give(QMessageBox::Ok);
  OpenJob(Write("a.json", R"({"output": "out", "entries": [{"frequency": 1, "bandwidth": 10, "start": 99999}]})"));
  QVERIFY(m_pFixture->Control<CMyMFCEditBrowseCtrl>(1009).Path().isEmpty());
  QVERIFY(!m_pFixture->Control(1015).isEnabled());
}

void DialogJobsTest::WhatTheCommandLineRefusesIsNotSaved() {
  m_pFixture->OpenReady();
  AddEntries(1);
  m_pFixture->Control<QComboBox>(1011).setCurrentIndex(-1);
  m_pFixture->SetFrequency(7'110'000);
  m_pFixture->Click(1015);
  QCOMPARE(m_pFixture->List().RowCount(), 2);
  const std::string path = m_pFixture->Folder() / "evening.json";
  m_pFixture->Answers().Give(QMessageBox::Ok);
  Save(path);
  QVERIFY2(Box(0).text.startsWith("Entries that no output can come of: 1. The first of them:\n7.110 MHz, BW 0 Hz: ") &&
               Box(0).text.endsWith("Edit or delete them, then save again."),
           qPrintable(Box(0).text));
  QVERIFY(!QFile::exists(QString::fromStdString(path)));
  // Nor does such a job open.
  m_pFixture->Answers().Give(QMessageBox::Ok);
  OpenJob(Write("zero.json", R"({"entries": [{"frequency": "7.1M", "bandwidth": 0}]})"));
  QVERIFY2(Box(1).text.contains("The bandwidth 0 is out of range."), qPrintable(Box(1).text));
  QCOMPARE(m_pFixture->List().RowCount(), 2);
  m_pFixture->List().SelectRows({1});
  m_pFixture->Click(1025);
  Save(path);
  QVERIFY(QFile::exists(QString::fromStdString(path)));
}

void DialogJobsTest::AJobOfWhichNothingFitsLeavesTheList() {
  m_pFixture->OpenReady();
  AddEntries(1);
  const auto before = Rows();
  m_pFixture->Answers().Give(QMessageBox::Ok);
  OpenJob(Write("a.json", R"({"local_time": true, "entries": [{"frequency": 1, "bandwidth": 10, "start": 99999}]})"));
  QCOMPARE(Rows(), before);
  QVERIFY(m_pFixture->Control<QAbstractButton>(1034).isChecked());
}

void DialogJobsTest::RecentFilesAreInTheMenu() {
  m_pFixture->OpenReady();
  for (const char* name : {"a & b.json", "c.json"}) {
    OpenJob(Write(name, R"({"entries": [{"frequency": "7.1M", "bandwidth": "10k"}]})"));
  }
  m_pFixture->Click(1017);
  m_pFixture->Open();
  QMenu* pRecent = m_pFixture->Dialog().findChild<CJobMenu*>()->actions()[1]->menu();
  QVERIFY(pRecent != nullptr);
  emit pRecent->aboutToShow();
  QCOMPARE(pRecent->actions().size(), 2);
  QVERIFY(pRecent->actions()[0]->text().endsWith("c.json"));
  QVERIFY(pRecent->actions()[1]->text().endsWith("a && b.json"));
  pRecent->actions()[1]->trigger();
  QCOMPARE(m_pFixture->List().RowCount(), 1);
}

void DialogJobsTest::NothingCanBeOpenedDuringARun() {
  m_pFixture->OpenReady({.nSampleRate = 2'000'000});
  AddEntries(1);
  m_pFixture->Click(1018);
  QVERIFY(m_pFixture->Control(1019).isEnabled());
  QVERIFY(!m_pFixture->Dialog().findChild<QWidget*>("buttonJob")->isEnabled());
  OpenJob(Write("job.json", R"({"entries": []})"));
  Key(Qt::CTRL | Qt::Key_Z);
  QCOMPARE(m_pFixture->List().RowCount(), 1);
  m_pFixture->Click(1019);
  QVERIFY(m_pFixture->Dialog().findChild<QWidget*>("buttonJob")->isEnabled());
}

void DialogJobsTest::EveryChangeOfTheListIsUndoneAndRedone() {
  m_pFixture->OpenReady();
  std::vector<std::vector<QStringList>> states = {Rows()};
  AddEntries(1);
  states.push_back(Rows());
  AddEntries(1, 7'090'000);
  states.push_back(Rows());
  m_pFixture->List().SelectRows({0});
  m_pFixture->Click(1025);
  states.push_back(Rows());
  OpenJob(Write("job.json", R"({"entries": [{"frequency": "7.1M", "bandwidth": "10k"}]})"));
  states.push_back(Rows());
  m_pFixture->Click(1034);  // another kind of time
  states.push_back(Rows());
  AddEntries(1);
  states.push_back(Rows());
  m_pFixture->Click(1017);
  states.push_back(Rows());
  for (std::size_t i = states.size() - 1; i > 0; --i) {
    QCOMPARE(Rows(), states[i]);
    Key(Qt::CTRL | Qt::Key_Z);
  }
  QCOMPARE(Rows(), states[0]);
  QVERIFY(m_pFixture->Control<QAbstractButton>(1034).isChecked());
  for (std::size_t i = 1; i < states.size(); ++i) {
    Key(i % 2 == 0 ? Qt::CTRL | Qt::Key_Y : Qt::CTRL | Qt::SHIFT | Qt::Key_Z);
    QCOMPARE(Rows(), states[i]);
  }
  QVERIFY(!m_pFixture->Control<QAbstractButton>(1034).isChecked());
}

void DialogJobsTest::TheRemovalOfABatchIsUndone() {
  m_pFixture->OpenReady({.nSeconds = 5});
  AddEntries(9);  // one more than a batch
  const auto rows = Rows();
  m_pFixture->Answers().Give(QMessageBox::Yes);  // more entries than a job takes
  m_pFixture->Answers().Give(QMessageBox::Yes);  // go on with the rest
  m_pFixture->Click(1018);
  QTRY_COMPARE(m_pFixture->List().RowCount(), 1);
  QTRY_VERIFY(m_pFixture->Row(0)[5] == "done");
  QTRY_VERIFY(m_pFixture->Control(1018).isEnabled());
  Key(Qt::CTRL | Qt::Key_Z);
  QCOMPARE(m_pFixture->List().RowCount(), 9);
  for (int i = 0; i < 9; ++i) QCOMPARE(m_pFixture->Row(i)[4], rows[static_cast<std::size_t>(i)][4]);
  Key(Qt::CTRL | Qt::Key_Y);
  QCOMPARE(m_pFixture->List().RowCount(), 1);
}

void DialogJobsTest::ClosingAsksForEntriesThatWereNeitherRunNorSaved() {
  m_pFixture->OpenReady();
  AddEntries(3);
  m_pFixture->Answers().Give(QMessageBox::Cancel);
  QTest::keyClick(&m_pFixture->Dialog(), Qt::Key_Escape);
  QVERIFY(m_pFixture->Dialog().isVisible());
  QCOMPARE(Box(0).text, QString("Entries that were neither run nor saved: 3"));
  m_pFixture->Answers().Give(QMessageBox::Discard);
  QVERIFY(m_pFixture->Dialog().close());
  QVERIFY(!m_pFixture->Dialog().isVisible());
}

void DialogJobsTest::ClosingSavesWhenThatIsTheAnswer() {
  m_pFixture->OpenReady();
  AddEntries(1);
  m_pFixture->Answers().Give(QMessageBox::Save);
  m_pFixture->Answers().Do([](QDialog& dialog) { dialog.reject(); });
  m_pFixture->Dialog().close();
  QVERIFY(m_pFixture->Dialog().isVisible());  // there is no file
  const std::string path = m_pFixture->Folder() / "evening.json";
  m_pFixture->Answers().Give(QMessageBox::Save);
  m_pFixture->Answers().ChooseFile(path);
  m_pFixture->Dialog().close();
  QVERIFY(!m_pFixture->Dialog().isVisible());
  QVERIFY(QFile::exists(QString::fromStdString(path)));
}

void DialogJobsTest::ClosingDoesNotAskForWhatWasSavedOrRun() {
  m_pFixture->OpenReady({.nSeconds = 20});
  AddEntries(1);
  m_pFixture->Click(1018);
  QTRY_VERIFY(!m_pFixture->Control(1019).isEnabled());
  AddEntries(1, 7'090'000);
  Save(m_pFixture->Folder() / "evening.json");
  QVERIFY(m_pFixture->Dialog().close());
  QVERIFY(!m_pFixture->Dialog().isVisible());
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::DialogJobsTest)
#include "dialog_jobs_test.moc"
