// What is kept of the list of entries and offered again, and moving the list to another folder.
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QPushButton>
#include <QStandardPaths>
#include <QToolButton>

#include "jobs/job_file.h"
#include "overview/left_threads.h"
#include "ui/dialog_fixture.h"
#include "ui/job_menu.h"
#include "ui/offer_strip.h"
#include "ui/ui_test.h"

namespace carvello {

using test::CDialogFixture;

class DialogKeptTest : public QObject {
  Q_OBJECT

 private slots:
  void init() {
    QDir(Folder()).removeRecursively();
    m_pFixture = std::make_unique<CDialogFixture>();
  }
  void cleanup();

  void NothingIsOfferedAtFirst();
  void AListIsOfferedAgainWithItsRecordingOnly();
  void ItIsOfferedWhenTheUtcBoxEmptiesTheList();
  void UndoBringsBackWhatTheUtcBoxEmptied();
  void TheOfferRestsWhileThereAreEntries();
  void ADismissedListStaysInTheMenuOnly();
  void AListThatIsPutBackInPartStaysInTheMenu();
  void AnOpenedJobLeavesTheListBeforeToTheMenu();
  void WithoutKeptListsAnOpenedJobAsksForTheListBefore();
  void WithoutKeptListsAnotherInputAsksForTheListBefore();
  void WithoutKeptListsTheListCanBeSavedBeforeAnotherInput();
  void AnEmptiedListIsNotOffered();
  void ListsAreNotKeptForWhoDoesNotWantIt();
  void ADamagedFolderOnlyWarns();
  void AnotherOutputFolderOffersToMoveTheEntries();
  void MovingIsUndone();
  void MovingChangesWhatBecameOfTheMovedOnly();
  void TheOfferToMoveCanBeDismissedByKeyboard();
  void TheWholeIsReachedByKeyboard();

 private:
  static QString Folder() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + "/Carvello/lists";
  }
  void AddEntries(int count) {
    m_pFixture->Choose(1011, "10 kHz");
    for (int i = 0; i < count; ++i) {
      m_pFixture->SetFrequency(7'080'000 + 5'000 * i);
      m_pFixture->Click(1015);
    }
  }
  COfferStrip& Strip(const char* name) { return *m_pFixture->Dialog().findChild<COfferStrip*>(name); }
  static QString Text(COfferStrip& strip) { return strip.findChild<QLabel*>()->text(); }
  static void Take(COfferStrip& strip) { QTest::mouseClick(strip.findChild<QPushButton*>(), Qt::LeftButton); }
  static void Dismiss(COfferStrip& strip) { QTest::mouseClick(strip.findChild<QToolButton*>(), Qt::LeftButton); }
  QStringList Files() {
    QStringList files;
    for (int i = 0; i < m_pFixture->List().RowCount(); ++i) files << m_pFixture->Row(i)[4];
    return files;
  }
  QMenu* EarlierLists() {
    QMenu* pMenu = m_pFixture->Dialog().findChild<CJobMenu*>()->actions()[2]->menu();
    emit pMenu->aboutToShow();
    return pMenu;
  }

  QAction* Keep() {
    for (QAction* pAction : m_pFixture->Dialog().findChild<CJobMenu*>()->actions()) {
      if (pAction->text() == "&Keep Lists by Themselves") return pAction;
    }
    return nullptr;
  }

  void OpenJob() {
    const std::string path = m_pFixture->Folder() / "job.json";
    QFile file(QString::fromStdString(path));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(R"({"entries": [{"frequency": "7.1M", "bandwidth": "10k"}]})");
    file.close();
    emit m_pFixture->Dialog().findChild<CJobMenu*>()->FilePressed(path);
  }

  std::unique_ptr<CDialogFixture> m_pFixture;
};

void DialogKeptTest::cleanup() {
  QVERIFY(m_pFixture->Answers().AllUsed());
  m_pFixture.reset();
  JoinLeftThreads();
}

void DialogKeptTest::NothingIsOfferedAtFirst() {
  m_pFixture->OpenReady();
  QVERIFY(!Strip("stripList").IsOffering());
  QVERIFY(!Strip("stripFolder").IsOffering());
}

void DialogKeptTest::AListIsOfferedAgainWithItsRecordingOnly() {
  m_pFixture->OpenReady();
  AddEntries(3);
  const QStringList files = Files();
  m_pFixture->CloseDialog();  // and the program is gone without a word
  JoinLeftThreads();
  m_pFixture->Open();
  QVERIFY(Strip("stripList").IsOffering());
  QVERIFY2(Text(Strip("stripList")).contains("Entries: 3"), qPrintable(Text(Strip("stripList"))));
  QCOMPARE(m_pFixture->List().RowCount(), 0);
  m_pFixture->SetPath(1000, m_pFixture->WriteInput({}, "other.wav"));
  QVERIFY(!Strip("stripList").IsOffering());
  m_pFixture->SetPath(1000, m_pFixture->Folder() / "rec.wav");
  QVERIFY(Strip("stripList").IsOffering());
  Take(Strip("stripList"));
  QCOMPARE(Files(), files);
  QVERIFY(!Strip("stripList").IsOffering());
  m_pFixture->CloseDialog();
  JoinLeftThreads();
  m_pFixture->Open();
  QVERIFY(Strip("stripList").IsOffering());
  QCOMPARE(EarlierLists()->actions().size(), 1);  // no second one
}

void DialogKeptTest::ItIsOfferedWhenTheUtcBoxEmptiesTheList() {
  m_pFixture->OpenReady();
  AddEntries(3);
  m_pFixture->Click(1034);
  QCOMPARE(m_pFixture->List().RowCount(), 0);
  QVERIFY(Strip("stripList").IsOffering());
  Take(Strip("stripList"));
  QCOMPARE(m_pFixture->List().RowCount(), 3);
  QVERIFY(!Files()[0].contains("z, f="));  // with the time that is chosen now
  QVERIFY(!m_pFixture->Control<QAbstractButton>(1034).isChecked());
}

void DialogKeptTest::UndoBringsBackWhatTheUtcBoxEmptied() {
  m_pFixture->OpenReady();
  AddEntries(3);
  const QStringList files = Files();
  m_pFixture->Click(1034);
  QTest::keyClick(&m_pFixture->List(), Qt::Key_Z, Qt::ControlModifier);
  QCOMPARE(Files(), files);
  QVERIFY(m_pFixture->Control<QAbstractButton>(1034).isChecked());
  bool utc = false;
  QVERIFY(m_pFixture->Settings().Read("UTC", utc) && utc);
  m_pFixture->SetPath(1000, m_pFixture->WriteInput({.nCentre = 7'200'000}, "other.wav"));
  QTest::keyClick(&m_pFixture->List(), Qt::Key_Z, Qt::ControlModifier);
  QCOMPARE(m_pFixture->List().RowCount(), 0);  // entries never come to another recording
}

void DialogKeptTest::TheOfferRestsWhileThereAreEntries() {
  m_pFixture->OpenReady();
  AddEntries(3);
  m_pFixture->Click(1034);
  AddEntries(1);
  QVERIFY(!Strip("stripList").IsOffering());
  m_pFixture->Click(1017);
  QVERIFY(Strip("stripList").IsOffering());
  QVERIFY(Text(Strip("stripList")).contains("Entries: 3"));
}

void DialogKeptTest::ADismissedListStaysInTheMenuOnly() {
  m_pFixture->OpenReady();
  AddEntries(3);
  m_pFixture->Click(1034);
  Dismiss(Strip("stripList"));
  QVERIFY(!Strip("stripList").IsOffering());
  m_pFixture->CloseDialog();
  JoinLeftThreads();
  m_pFixture->Open();
  QVERIFY(!Strip("stripList").IsOffering());
  QCOMPARE(EarlierLists()->actions().size(), 1);
  EarlierLists()->actions()[0]->trigger();
  QCOMPARE(m_pFixture->List().RowCount(), 3);
}

void DialogKeptTest::AListThatIsPutBackInPartStaysInTheMenu() {
  m_pFixture->OpenReady();
  AddEntries(1);
  m_pFixture->Click(1086);
  m_pFixture->Pick(1105, 1103, QDateTime(QDate(2020, 11, 2), QTime(0, 10)));
  AddEntries(1);
  QCOMPARE(m_pFixture->List().RowCount(), 2);
  m_pFixture->CloseDialog();
  JoinLeftThreads();
  m_pFixture->WriteInput({.nSeconds = 60});  // which has ended by then
  m_pFixture->Open();
  m_pFixture->Answers().Give(QMessageBox::Ok);
  Take(Strip("stripList"));
  QCOMPARE(m_pFixture->List().RowCount(), 1);
  JoinLeftThreads();
  QCOMPARE(EarlierLists()->actions().size(), 2);
  m_pFixture->WriteInput({});
  m_pFixture->Open();
  EarlierLists()->actions()[1]->trigger();
  QCOMPARE(m_pFixture->List().RowCount(), 2);
}

void DialogKeptTest::AnOpenedJobLeavesTheListBeforeToTheMenu() {
  m_pFixture->OpenReady();
  AddEntries(3);
  const QStringList files = Files();
  OpenJob();
  QCOMPARE(m_pFixture->List().RowCount(), 1);
  JoinLeftThreads();
  QCOMPARE(EarlierLists()->actions().size(), 2);
  EarlierLists()->actions()[1]->trigger();
  QCOMPARE(Files(), files);
}

void DialogKeptTest::WithoutKeptListsAnOpenedJobAsksForTheListBefore() {
  m_pFixture->OpenReady();
  Keep()->trigger();
  OpenJob();  // nothing would be lost
  QCOMPARE(m_pFixture->List().RowCount(), 1);
  m_pFixture->Click(1017);
  AddEntries(3);
  m_pFixture->Answers().Give(QMessageBox::Cancel);
  OpenJob();
  QCOMPARE(m_pFixture->List().RowCount(), 3);
  QCOMPARE(m_pFixture->Answers().Shown()[0].text, QString("Entries that were neither run nor saved: 3"));
  m_pFixture->Answers().Give(QMessageBox::Discard);
  OpenJob();
  QCOMPARE(m_pFixture->List().RowCount(), 1);
}

void DialogKeptTest::WithoutKeptListsAnotherInputAsksForTheListBefore() {
  m_pFixture->OpenReady();
  Keep()->trigger();
  const std::string path = m_pFixture->Folder() / "rec.wav";
  AddEntries(3);
  m_pFixture->Answers().Give(QMessageBox::Cancel);
  m_pFixture->SetPath(1000, path + "x");  // a key too many
  QCOMPARE(m_pFixture->Answers().Shown()[0].text, QString("Entries that were neither run nor saved: 3"));
  QCOMPARE(m_pFixture->Control<QLineEdit>(1000).text(), QString::fromStdString(path));
  QCOMPARE(m_pFixture->List().RowCount(), 3);
  QCOMPARE(m_pFixture->Text(1001), QString("7.100 MHz"));
  m_pFixture->Answers().Give(QMessageBox::Discard);
  m_pFixture->SetPath(1000, m_pFixture->WriteInput({.nCentre = 3'500'000}, "other.wav"));
  QCOMPARE(m_pFixture->List().RowCount(), 0);
  QCOMPARE(m_pFixture->Text(1001), QString("3.500 MHz"));
  m_pFixture->SetPath(1000, path);  // nothing would be lost
  QCOMPARE(m_pFixture->Answers().Shown().size(), std::size_t{2});
  // Nor is anything asked where lists are kept.
  Keep()->trigger();
  AddEntries(3);
  m_pFixture->SetPath(1000, m_pFixture->Folder() / "other.wav");
  QCOMPARE(m_pFixture->Text(1001), QString("3.500 MHz"));
  QCOMPARE(m_pFixture->Answers().Shown().size(), std::size_t{2});
}

void DialogKeptTest::WithoutKeptListsTheListCanBeSavedBeforeAnotherInput() {
  m_pFixture->OpenReady();
  Keep()->trigger();
  AddEntries(3);
  const std::string other = m_pFixture->WriteInput({.nCentre = 3'500'000}, "other.wav");
  const std::string job = m_pFixture->Folder() / "saved.json";
  m_pFixture->Answers().Give(QMessageBox::Save);
  m_pFixture->Answers().Do([](QDialog& dialog) { dialog.reject(); });  // there is no file
  m_pFixture->SetPath(1000, other);
  QCOMPARE(m_pFixture->List().RowCount(), 3);
  m_pFixture->Answers().Give(QMessageBox::Save);
  m_pFixture->Answers().ChooseFile(job);
  m_pFixture->SetPath(1000, other);
  QCOMPARE(m_pFixture->Text(1001), QString("3.500 MHz"));
  SJobFile saved;
  std::string error;
  QVERIFY2(ReadJobFile(job, saved, error), error.c_str());
  QCOMPARE(saved.entries.size(), std::size_t{3});
  QCOMPARE(saved.strInput, m_pFixture->Folder() / "rec.wav");
}

void DialogKeptTest::AnEmptiedListIsNotOffered() {
  m_pFixture->OpenReady();
  AddEntries(3);
  m_pFixture->Click(1017);
  m_pFixture->CloseDialog();
  JoinLeftThreads();
  m_pFixture->Open();
  QVERIFY(!Strip("stripList").IsOffering());
}

void DialogKeptTest::ListsAreNotKeptForWhoDoesNotWantIt() {
  m_pFixture->OpenReady();
  QAction* pKeep = Keep();
  QVERIFY(pKeep->isChecked());
  pKeep->trigger();
  AddEntries(3);
  m_pFixture->Click(1034);
  QVERIFY(!Strip("stripList").IsOffering());
  m_pFixture->CloseDialog();
  JoinLeftThreads();
  m_pFixture->Open();
  QVERIFY(!Strip("stripList").IsOffering());
  QVERIFY(!Keep()->isChecked());
}

void DialogKeptTest::ADamagedFolderOnlyWarns() {
  QVERIFY(QDir().mkpath(QFileInfo(Folder()).path()));
  QFile file(Folder());
  QVERIFY(file.open(QIODevice::WriteOnly));
  m_pFixture->OpenReady();
  AddEntries(3);
  JoinLeftThreads();
  QTRY_COMPARE(m_pFixture->Log().filter("The list is not kept: ").size(), 1);
  m_pFixture->Click(1017);
  AddEntries(1);
  JoinLeftThreads();
  QCoreApplication::processEvents();
  QCOMPARE(m_pFixture->Log().filter("The list is not kept: ").size(), 1);
  QVERIFY(file.remove());
}

void DialogKeptTest::AnotherOutputFolderOffersToMoveTheEntries() {
  m_pFixture->OpenReady();
  AddEntries(3);
  m_pFixture->SetPath(1009, m_pFixture->Folder().Path());
  QVERIFY(Strip("stripFolder").IsOffering());
  QCOMPARE(Text(Strip("stripFolder")), QString("Entries that keep the folder they were added with: 3"));
  m_pFixture->SetPath(1009, m_pFixture->OutputFolder());
  QVERIFY(!Strip("stripFolder").IsOffering());  // it is theirs
  m_pFixture->SetPath(1009, m_pFixture->Folder().Path());
  m_pFixture->Click(1017);
  QVERIFY(!Strip("stripFolder").IsOffering());
}

void DialogKeptTest::MovingIsUndone() {
  m_pFixture->OpenReady({.nSeconds = 20});
  AddEntries(1);
  const std::string folder = m_pFixture->Folder() / "new";
  std::filesystem::create_directory(folder);
  m_pFixture->SetPath(1009, folder);
  Take(Strip("stripFolder"));
  QVERIFY(!Strip("stripFolder").IsOffering());
  const auto run = [this] {
    m_pFixture->Click(1018);
    QTRY_VERIFY(!m_pFixture->Control(1019).isEnabled());
  };
  run();
  QVERIFY(!std::filesystem::is_empty(folder));
  QVERIFY(std::filesystem::is_empty(m_pFixture->OutputFolder()));
  QTest::keyClick(&m_pFixture->List(), Qt::Key_Z, Qt::ControlModifier);
  run();
  QVERIFY(!std::filesystem::is_empty(m_pFixture->OutputFolder()));
}

void DialogKeptTest::MovingChangesWhatBecameOfTheMovedOnly() {
  m_pFixture->OpenReady({.nSeconds = 20});
  AddEntries(1);
  const std::string folder = m_pFixture->Folder() / "new";
  std::filesystem::create_directory(folder);
  m_pFixture->SetPath(1009, folder);
  m_pFixture->SetFrequency(7'120'000);
  m_pFixture->Click(1015);
  m_pFixture->Click(1018);
  QTRY_COMPARE_WITH_TIMEOUT(m_pFixture->Row(1)[5], QString("done"), 300'000);
  QTRY_VERIFY(!m_pFixture->Control(1019).isEnabled());
  QCOMPARE(m_pFixture->Row(0)[5], QString("done"));
  m_pFixture->SetPath(1009, m_pFixture->OutputFolder());
  m_pFixture->SetPath(1009, folder);
  Take(Strip("stripFolder"));
  QCOMPARE(m_pFixture->Row(0)[5], QString());  // nothing stands there
  QCOMPARE(m_pFixture->Row(1)[5], QString("done"));
  QTest::keyClick(&m_pFixture->List(), Qt::Key_Z, Qt::ControlModifier);
  QCOMPARE(m_pFixture->Row(0)[5], QString("done"));
  QCOMPARE(m_pFixture->Row(1)[5], QString("done"));
  m_pFixture->List().SelectRows({0});
  m_pFixture->Click(1025);
  QTest::keyClick(&m_pFixture->List(), Qt::Key_Z, Qt::ControlModifier);
  QCOMPARE(m_pFixture->Row(0)[5], QString("done"));
}

void DialogKeptTest::TheOfferToMoveCanBeDismissedByKeyboard() {
  m_pFixture->OpenReady();
  AddEntries(3);
  m_pFixture->SetPath(1009, m_pFixture->Folder().Path());
  QTest::keyClick(Strip("stripFolder").findChild<QPushButton*>(), Qt::Key_Escape);
  QVERIFY(!Strip("stripFolder").IsOffering());
  QVERIFY(m_pFixture->Dialog().isVisible());  // Escape was the strip's
  AddEntries(1);
  QVERIFY(!Strip("stripFolder").IsOffering());
  m_pFixture->SetPath(1009, m_pFixture->OutputFolder() + "/..");
  QVERIFY(Strip("stripFolder").IsOffering());
}

void DialogKeptTest::TheWholeIsReachedByKeyboard() {
  m_pFixture->OpenReady();
  AddEntries(3);
  m_pFixture->Click(1034);
  QTest::keyClick(&m_pFixture->Control(1016), Qt::Key_K, Qt::AltModifier);
  QCOMPARE(m_pFixture->List().RowCount(), 3);
  m_pFixture->SetPath(1009, m_pFixture->Folder().Path());
  QTest::keyClick(&m_pFixture->Control(1016), Qt::Key_M, Qt::AltModifier);
  QVERIFY(!Strip("stripFolder").IsOffering());
  // By Tab from the buttons above to the offer.
  m_pFixture->SetPath(1009, m_pFixture->OutputFolder());
  QVERIFY(Strip("stripFolder").IsOffering());
  m_pFixture->Dialog().findChild<QWidget*>("checkOnePass")->setFocus();
  QStringList reached;
  for (int i = 0; i < 6; ++i) {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    reached << QApplication::focusWidget()->accessibleDescription();
  }
  QCOMPARE(reached.filter("Entries that keep the folder").size(), 2);
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::DialogKeptTest)
#include "dialog_kept_test.moc"
