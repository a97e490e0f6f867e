// Runs that nobody watches: no question, every batch, and one account of what failed.
#include <QCheckBox>

#include "ui/dialog_fixture.h"
#include "ui/outcome_label.h"
#include "ui/ui_test.h"

namespace carvello {

using test::CDialogFixture;

class DialogUnattendedTest : public QObject {
  Q_OBJECT

 private slots:
  void init() { m_pFixture = std::make_unique<CDialogFixture>(); }
  void cleanup();

  void IsOffAtFirstAndRemembered();
  void RestsDuringARunOnly();
  void AllBatchesRunWithoutAQuestion();
  void ExistingFilesAreLeftOut();
  void ABatchThatExistsWhollyDoesNotEndTheRun();
  void WhatOtherFilesStandInTheWayOfFailsAndStaysOnTheList();
  void FailuresOfAllBatchesAreToldOnceAtTheEnd();
  void AFolderThatIsGoneCostsItsEntriesAlone();
  void AFolderThatGoesDuringTheRunCostsItsEntriesAlone();
  void NothingBeginsWithoutAnyFolder();
  void AnInputThatVanishesEndsTheRunWithItsName();
  void AnInputThatHasVanishedIsToldOnce();
  void StopEndsTheWholeRun();
  void TheChoiceCountsFromTheNextStartOn();
  void OtherwiseEverythingIsAsked();
  void TwoHundredEntriesWithAFailingFolderRunToTheEnd();

 private:
  QCheckBox& Box() { return *m_pFixture->Dialog().findChild<QCheckBox*>("checkUnattended"); }
  COutcomeLabel& Line() { return *m_pFixture->Dialog().findChild<COutcomeLabel*>("labelOutcome"); }
  bool IsRunning() { return m_pFixture->Control(1019).isEnabled(); }
  void OpenReady(int seconds = 20);
  void AddEntries(int count, int first = 0);
  std::string FileOf(int row) { return m_pFixture->OutputFolder() + "/" + m_pFixture->Row(row)[4].toStdString(); }
  std::size_t Written(const std::string& folder) {
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(test::PathOf(folder)))
      count += entry.is_regular_file();
    return count;
  }
  std::string MakeFolder(const char* name) {
    std::filesystem::create_directory(test::PathOf(m_pFixture->Folder() / name));
    return m_pFixture->Folder() / name;
  }

  std::unique_ptr<CDialogFixture> m_pFixture;
};

void DialogUnattendedTest::cleanup() {
  QVERIFY(m_pFixture->Answers().AllUsed());
  m_pFixture.reset();
}

void DialogUnattendedTest::OpenReady(int seconds) {
  m_pFixture->OpenReady({.nSeconds = seconds});
  m_pFixture->Choose(1014, "One file (RF64)");
  m_pFixture->Choose(1011, "10 kHz");
  Box().click();
  QVERIFY(Box().isChecked());
}

void DialogUnattendedTest::AddEntries(int count, int first) {
  for (int i = first; i < first + count; ++i) {
    m_pFixture->SetFrequency(7'100'000 + 100 * i);
    m_pFixture->Click(1015);
  }
}

void DialogUnattendedTest::IsOffAtFirstAndRemembered() {
  m_pFixture->Open();
  QVERIFY(!Box().isChecked());
  QVERIFY(Box().isEnabled());  // also before there is an input
  Box().click();
  m_pFixture->Open();
  QVERIFY(Box().isChecked());
  bool saved = false;
  QVERIFY(m_pFixture->Settings().Read("Unattended", saved) && saved);
  Box().click();
  m_pFixture->Open();
  QVERIFY(!Box().isChecked());
}

void DialogUnattendedTest::RestsDuringARunOnly() {
  OpenReady(1000);
  AddEntries(1);
  QVERIFY(Box().isEnabled());
  m_pFixture->Click(1018);
  QVERIFY(IsRunning());
  QVERIFY(!Box().isEnabled());
  m_pFixture->Click(1019);
  QVERIFY(Box().isEnabled());
}

void DialogUnattendedTest::AllBatchesRunWithoutAQuestion() {
  OpenReady();
  AddEntries(21);
  m_pFixture->Click(1018);
  QTRY_COMPARE_WITH_TIMEOUT(Line().text(), QString("21 of 21 outputs written"), 300'000);
  QTest::qWait(200);
  QVERIFY(m_pFixture->Answers().Shown().empty());
  QCOMPARE(Written(m_pFixture->OutputFolder()), std::size_t{21});
  QCOMPARE(m_pFixture->List().RowCount(), 5);  // the last batch
}

void DialogUnattendedTest::ExistingFilesAreLeftOut() {
  OpenReady();
  AddEntries(3);
  m_pFixture->Click(1018);
  QTRY_COMPARE_WITH_TIMEOUT(Line().text(), QString("3 of 3 outputs written"), 300'000);
  for (const int row : {0, 2}) std::filesystem::remove(test::PathOf(FileOf(row)));
  const std::string written = test::ReadWholeFile(FileOf(1));
  m_pFixture->Click(1018);
  QTRY_COMPARE_WITH_TIMEOUT(Line().text(), QString("2 of 3 outputs written, 1 existed"), 300'000);
  QVERIFY(m_pFixture->Answers().Shown().empty());
  QVERIFY(test::ReadWholeFile(FileOf(1)) == written);
}

void DialogUnattendedTest::ABatchThatExistsWhollyDoesNotEndTheRun() {
  OpenReady();
  AddEntries(16);
  m_pFixture->Click(1018);
  QTRY_COMPARE_WITH_TIMEOUT(Line().text(), QString("16 of 16 outputs written"), 300'000);
  m_pFixture->Click(1017);
  AddEntries(17);
  m_pFixture->Click(1018);
  QTRY_COMPARE_WITH_TIMEOUT(Line().text(), QString("1 of 17 outputs written, 16 existed"), 300'000);
  QVERIFY(m_pFixture->Answers().Shown().empty());
  QCOMPARE(m_pFixture->List().RowCount(), 1);
  QCOMPARE(m_pFixture->Row(0)[5], QString("done"));
}

void DialogUnattendedTest::WhatOtherFilesStandInTheWayOfFailsAndStaysOnTheList() {
  OpenReady();
  AddEntries(17);
  const QString first = m_pFixture->Row(0)[4];
  std::vector<std::string> others;
  for (int row = 0; row < 8; ++row) others.push_back(FileOf(row));  // all of a batch
  others.push_back(FileOf(12));                                     // and one of the next
  for (const std::string& other : others) test::WriteWholeFile(other, "the user's own");
  m_pFixture->Answers().Give(QMessageBox::Ok);
  m_pFixture->Click(1018);
  QTRY_COMPARE_WITH_TIMEOUT(m_pFixture->Answers().Shown().size(), std::size_t{1}, 300'000);
  QCOMPARE(Line().text(), QString("8 of 17 outputs written, 9 failed"));
  const QString text = m_pFixture->Answers().Shown()[0].text;
  QVERIFY2(text.startsWith("9 of 17 outputs failed:\n\n" + first + ": ") && text.contains("exists and is no recording"),
           qPrintable(text));
  QCOMPARE(m_pFixture->List().RowCount(), 10);  // and what the last batch has written
  QCOMPARE(m_pFixture->Row(0)[4], first);
  QVERIFY(m_pFixture->Row(0)[5].startsWith("failed: "));
  for (const std::string& other : others) QCOMPARE(test::ReadWholeFile(other), std::string("the user's own"));
}

void DialogUnattendedTest::FailuresOfAllBatchesAreToldOnceAtTheEnd() {
  OpenReady();
  const std::string bad = MakeFolder("bad");
  m_pFixture->SetPath(1009, bad);
  AddEntries(1);
  m_pFixture->SetPath(1009, m_pFixture->OutputFolder());
  AddEntries(15, 1);
  m_pFixture->SetPath(1009, bad);
  AddEntries(1, 16);
  const QString first = m_pFixture->Row(0)[4];
  const QString last = m_pFixture->Row(16)[4];
  std::filesystem::remove(test::PathOf(bad));
  m_pFixture->Answers().Give(QMessageBox::Ok);
  m_pFixture->Click(1018);
  QTRY_COMPARE_WITH_TIMEOUT(m_pFixture->Answers().Shown().size(), std::size_t{1}, 300'000);
  const test::SShownBox& box = m_pFixture->Answers().Shown().front();
  QCOMPARE(box.caption, QString("Carvello"));
  QVERIFY2(box.text.startsWith("2 of 17 outputs failed:\n\n" + first + ": ") && box.text.contains("\n\n" + last + ": "),
           qPrintable(box.text));
  QCOMPARE(Line().text(), QString("15 of 17 outputs written, 2 failed"));
  // What failed is on the list still, with its reason.
  QCOMPARE(m_pFixture->Row(0)[4], first);
  QVERIFY(m_pFixture->Row(0)[5].startsWith("failed: "));
}

void DialogUnattendedTest::AFolderThatIsGoneCostsItsEntriesAlone() {
  OpenReady();
  const std::string gone = MakeFolder("gone");
  m_pFixture->SetPath(1009, gone);
  AddEntries(2);
  m_pFixture->SetPath(1009, m_pFixture->OutputFolder());
  AddEntries(2, 2);
  std::filesystem::remove(test::PathOf(gone));
  m_pFixture->Answers().Give(QMessageBox::Ok);
  m_pFixture->Click(1018);
  QTRY_COMPARE_WITH_TIMEOUT(Line().text(), QString("2 of 4 outputs written, 2 failed"), 300'000);
  QTRY_COMPARE(m_pFixture->Answers().Shown().size(), std::size_t{1});
  const QString reason = QString::fromStdString(gone) + ": " + test::MissingReason();
  QVERIFY2(m_pFixture->Answers().Shown()[0].text.contains(reason), qPrintable(m_pFixture->Answers().Shown()[0].text));
  QCOMPARE(m_pFixture->Row(0)[5], "failed: " + reason);
  QCOMPARE(m_pFixture->Row(2)[5], QString("done"));
  QVERIFY(m_pFixture->Log().filter("[ERROR]").join('\n').contains(reason));
}

void DialogUnattendedTest::AFolderThatGoesDuringTheRunCostsItsEntriesAlone() {
  OpenReady();
  const std::string gone = MakeFolder("gone");
  AddEntries(8);
  m_pFixture->SetPath(1009, gone);
  AddEntries(8, 8);
  m_pFixture->SetPath(1009, m_pFixture->OutputFolder());
  AddEntries(8, 16);
  m_pFixture->Click(1018);
  std::filesystem::remove(test::PathOf(gone));  // before its batch begins
  m_pFixture->Answers().Give(QMessageBox::Ok);
  QTRY_COMPARE_WITH_TIMEOUT(Line().text(), QString("16 of 24 outputs written, 8 failed"), 300'000);
  QTRY_COMPARE(m_pFixture->Answers().Shown().size(), std::size_t{1});
  QCOMPARE(Written(m_pFixture->OutputFolder()), std::size_t{16});
}

void DialogUnattendedTest::NothingBeginsWithoutAnyFolder() {
  OpenReady();
  AddEntries(9);
  std::filesystem::remove(test::PathOf(m_pFixture->OutputFolder()));
  m_pFixture->Answers().Give(QMessageBox::Ok);
  m_pFixture->Click(1018);
  QTRY_COMPARE_WITH_TIMEOUT(Line().text(), QString("0 of 9 outputs written, 9 failed"), 300'000);
  QTRY_COMPARE(m_pFixture->Answers().Shown().size(), std::size_t{1});
  QVERIFY(m_pFixture->Control(1018).isEnabled());
}

void DialogUnattendedTest::AnInputThatVanishesEndsTheRunWithItsName() {
  OpenReady();
  AddEntries(17);
  m_pFixture->Click(1018);
  QVERIFY(IsRunning());
  std::filesystem::remove(test::PathOf(m_pFixture->Folder() / "rec.wav"));
  m_pFixture->Answers().Give(QMessageBox::Ok);
  QTRY_COMPARE_WITH_TIMEOUT(m_pFixture->Answers().Shown().size(), std::size_t{1}, 300'000);
  const QString text = m_pFixture->Answers().Shown()[0].text;
  QVERIFY2(text.contains("The run could not go on: ") && text.contains("rec.wav"), qPrintable(text));
  QVERIFY2(text.endsWith("\n\nOutputs not begun: 9\n\nThe recording is gone since it was chosen. Connect its disk or "
                         "put it back, then start again."),
           qPrintable(text));
  QCOMPARE(Line().text(), QString("8 of 17 outputs written, 9 not begun"));
  QVERIFY(m_pFixture->Log().filter("[ERROR]").join('\n').contains("rec.wav"));
}

void DialogUnattendedTest::AnInputThatHasVanishedIsToldOnce() {
  OpenReady();
  AddEntries(9);
  std::filesystem::remove(test::PathOf(m_pFixture->Folder() / "rec.wav"));
  m_pFixture->Answers().Give(QMessageBox::Ok);
  m_pFixture->Click(1018);
  QTRY_COMPARE(m_pFixture->Answers().Shown().size(), std::size_t{1});
  QVERIFY(m_pFixture->Answers().Shown()[0].text.contains("rec.wav"));
  QVERIFY(!IsRunning());
  QCOMPARE(m_pFixture->List().RowCount(), 9);
}

void DialogUnattendedTest::StopEndsTheWholeRun() {
  OpenReady(1000);
  AddEntries(17);
  m_pFixture->Click(1018);
  QVERIFY(IsRunning());
  m_pFixture->Click(1019);
  QTest::qWait(300);
  QVERIFY(!IsRunning());
  QCOMPARE(Line().text(), QString("Stopped: 0 of 17 outputs complete, 9 not begun"));
  QCOMPARE(m_pFixture->List().RowCount(), 17);
  QVERIFY(m_pFixture->Answers().Shown().empty());
}

void DialogUnattendedTest::TheChoiceCountsFromTheNextStartOn() {
  OpenReady();
  Box().click();
  AddEntries(1);
  m_pFixture->Click(1018);
  QTRY_COMPARE_WITH_TIMEOUT(Line().text(), QString("1 of 1 outputs written"), 300'000);
  m_pFixture->Answers().Give(QMessageBox::Cancel);
  m_pFixture->Click(1018);
  QCOMPARE(m_pFixture->Answers().Shown().size(), std::size_t{1});
  Box().click();
  m_pFixture->Click(1018);
  QTRY_COMPARE(Line().text(), QString("0 of 1 outputs written, 1 existed"));
  QCOMPARE(m_pFixture->Answers().Shown().size(), std::size_t{1});
}

void DialogUnattendedTest::OtherwiseEverythingIsAsked() {
  OpenReady();
  Box().click();
  AddEntries(2);
  std::filesystem::remove(test::PathOf(m_pFixture->OutputFolder()));
  m_pFixture->Answers().Give(QMessageBox::Ok);
  m_pFixture->Click(1018);
  QCOMPARE(m_pFixture->Answers().Shown().size(), std::size_t{1});
  QCOMPARE(m_pFixture->Answers().Shown()[0].caption, QString("Start"));
  QCOMPARE(Line().text(), QString());
}

void DialogUnattendedTest::TwoHundredEntriesWithAFailingFolderRunToTheEnd() {
  OpenReady(2);
  const std::string bad = MakeFolder("bad");
  AddEntries(100);
  m_pFixture->SetPath(1009, bad);
  AddEntries(1, 100);
  const QString failing = m_pFixture->Row(100)[4];
  m_pFixture->SetPath(1009, m_pFixture->OutputFolder());
  AddEntries(104, 101);
  std::filesystem::remove(test::PathOf(bad));
  m_pFixture->Answers().Give(QMessageBox::Ok);
  m_pFixture->Click(1018);
  QTRY_COMPARE_WITH_TIMEOUT(m_pFixture->Answers().Shown().size(), std::size_t{1}, 600'000);
  QCOMPARE(Line().text(), QString("204 of 205 outputs written, 1 failed"));
  QVERIFY2(m_pFixture->Answers().Shown()[0].text.startsWith("1 of 205 outputs failed:\n\n" + failing + ": "),
           qPrintable(m_pFixture->Answers().Shown()[0].text));
  QCOMPARE(Written(m_pFixture->OutputFolder()), std::size_t{204});
  QTest::qWait(200);
  QCOMPARE(m_pFixture->Answers().Shown().size(), std::size_t{1});
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::DialogUnattendedTest)
#include "dialog_unattended_test.moc"
