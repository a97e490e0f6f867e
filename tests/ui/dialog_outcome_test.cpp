// How the window tells the way a run ended: the line of outcome, the message box, the states in the list, the log.
#include <QRegularExpression>
#include <QScrollBar>
#include <QWheelEvent>

#include "ui/dialog_fixture.h"
#include "ui/outcome_label.h"
#include "ui/themes.h"
#include "ui/ui_test.h"

namespace carvello {

using test::CDialogFixture;
using test::SShownBox;

class DialogOutcomeTest : public QObject {
  Q_OBJECT

 private slots:
  void init() { m_pFixture = std::make_unique<CDialogFixture>(); }
  void cleanup();

  void AGoodJobSaysSo();
  void AFailedOutputIsNamedInTheBoxTheListAndTheLine();
  void AFailedReadOfALaterFileIsTheReasonOfWhatStillNeededIt_data();
  void AFailedReadOfALaterFileIsTheReasonOfWhatStillNeededIt();
  void WhenNothingIsWrittenThatIsSaid();
  void AStoppedJobTellsHowManyAreComplete();
  void AStoppedJobNamesWhatHadFailed();
  void ExistingOutputsThatAreLeftOutAreCounted();
  void AllExistingOutputsAreCounted();
  void WhatFailedStaysWhenTheUserContinues();
  void WhatTheUserDoesNotContinueWithIsCounted();
  void AnotherStartRunsWhatFailedInEarlierBatches();
  void StatesStayWithTheirRowsUntilTheInputChanges();
  void TheOutcomeHasItsPlaceFromTheBeginning();
  void TheOutcomeIsReadableInEveryTheme_data();
  void TheOutcomeIsReadableInEveryTheme();
  void TheOutcomeCanBeHeard();
  void SpeedAndTimeLeftAreShownDuringARunOnly();
  void TheListCanBeReadAndScrolledDuringARun_data();
  void TheListCanBeReadAndScrolledDuringARun();
  void TheStateIsInViewDuringARun();

 private:
  void OpenReady();
  void OpenForALongRun(int entries = 8);
  // Entries at 7.1 MHz and above, 1 kHz apart.
  void AddEntries(int count, const QString& bandwidth = "10 kHz");
  std::string FileOf(int row) { return m_pFixture->OutputFolder() + "/" + m_pFixture->Row(row)[4].toStdString(); }
  // A folder in the place of the output: it exists, and cannot be overwritten by a file.
  void LetFail(int row) { std::filesystem::create_directory(test::PathOf(FileOf(row))); }
  void Run();
  bool IsRunning() { return m_pFixture->Control(1019).isEnabled(); }
  COutcomeLabel& Line() { return *m_pFixture->Dialog().findChild<COutcomeLabel*>("labelOutcome"); }
  QLabel& Rate() { return *m_pFixture->Dialog().findChild<QLabel*>("labelRate"); }
  QString State(int row) { return m_pFixture->Row(row)[5]; }
  const SShownBox& Box(std::size_t index) { return m_pFixture->Answers().Shown().at(index); }
  void CheckFailureBox(const SShownBox& box);

  std::unique_ptr<CDialogFixture> m_pFixture;
};

void DialogOutcomeTest::cleanup() {
  QVERIFY(m_pFixture->Answers().AllUsed());
  m_pFixture.reset();
}

void DialogOutcomeTest::OpenReady() {
  m_pFixture->OpenReady({.nSeconds = 20});
  m_pFixture->Choose(1014, "One file (RF64)");
}

// Long enough that it cannot end while a test looks at it.
void DialogOutcomeTest::OpenForALongRun(int entries) {
  m_pFixture->OpenReady({.nSampleRate = 1'000'000, .nSeconds = 1000});
  m_pFixture->Choose(1014, "One file (RF64)");
  AddEntries(entries, "250 kHz");
}

void DialogOutcomeTest::AddEntries(int count, const QString& bandwidth) {
  m_pFixture->Choose(1011, bandwidth);
  for (int i = 0; i < count; ++i) {
    m_pFixture->SetFrequency(7'100'000 + 1000 * i);
    m_pFixture->Click(1015);
  }
}

void DialogOutcomeTest::Run() {
  m_pFixture->Click(1018);
  QTRY_VERIFY_WITH_TIMEOUT(!IsRunning(), 300'000);
}

void DialogOutcomeTest::CheckFailureBox(const SShownBox& box) {
  QCOMPARE(box.caption, QString("Carvello"));
  QCOMPARE(box.icon, QMessageBox::Critical);
  QCOMPARE(box.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
}

void DialogOutcomeTest::AGoodJobSaysSo() {
  OpenReady();
  AddEntries(2);
  QCOMPARE(Line().text(), QString());
  Run();
  QCOMPARE(Line().text(), QString("2 of 2 outputs written"));
  QVERIFY(Line().isVisible());
  QCOMPARE(State(0), QString("done"));
  QCOMPARE(State(1), QString("done"));
}

void DialogOutcomeTest::AFailedOutputIsNamedInTheBoxTheListAndTheLine() {
  OpenReady();
  AddEntries(3);
  LetFail(1);
  m_pFixture->Answers().Give(QMessageBox::Yes);  // overwrite
  m_pFixture->Answers().Give(QMessageBox::Ok);
  Run();
  QTRY_COMPARE(m_pFixture->Answers().Shown().size(), std::size_t{2});
  QCOMPARE(Line().text(), QString("2 of 3 outputs written, 1 failed"));
  CheckFailureBox(Box(1));
  QVERIFY2(Box(1).text.startsWith("1 of 3 outputs failed:\n\n" + m_pFixture->Row(1)[4] + ": "),
           qPrintable(Box(1).text));
  const QString reason = Box(1).text.section(".wav: ", 1).section("\n\n", 0, 0);
  QVERIFY(Box(1).text.endsWith("\n\nWhat failed stays on the list: put the cause right, and press Start again."));
  QVERIFY(!reason.isEmpty());
  QCOMPARE(State(0), QString("done"));
  QCOMPARE(State(1), "failed: " + reason);
  QCOMPARE(State(2), QString("done"));
  const QModelIndex cell = m_pFixture->List().model()->index(1, 5);
  QCOMPARE(cell.data(Qt::ToolTipRole).toString(), "failed: " + reason);
  QCOMPARE(cell.data(Qt::AccessibleTextRole).toString(), "failed: " + reason);
}

void DialogOutcomeTest::AFailedReadOfALaterFileIsTheReasonOfWhatStillNeededIt_data() {
  QTest::addColumn<bool>("gone");
  QTest::newRow("gone") << true;
  QTest::newRow("shorter than it was") << false;
}

void DialogOutcomeTest::AFailedReadOfALaterFileIsTheReasonOfWhatStillNeededIt() {
  QFETCH(bool, gone);
  m_pFixture->Open();
  const std::string first = m_pFixture->WriteInput({.nSeconds = 20}, "set 000.wav");
  const std::string second = m_pFixture->WriteInput(
      {.tStart = test::kRecordingStart + 20, .nSeconds = 20, .strFirstFile = "set 000.wav"}, "set 001.wav");
  m_pFixture->SetPath(1000, first);
  m_pFixture->SetPath(1009, m_pFixture->OutputFolder());
  QCOMPARE(m_pFixture->Text(1004), QString("2 "));
  m_pFixture->Choose(1014, "One file (RF64)");
  AddEntries(1);
  // Another one that ends within the first file.
  m_pFixture->SetFrequency(7'110'000);
  m_pFixture->Click(1087);
  m_pFixture->Pick(1106, 1104, QDateTime::fromSecsSinceEpoch(test::kRecordingStart + 10, Qt::UTC));
  m_pFixture->Click(1015);
  QCOMPARE(m_pFixture->List().RowCount(), 2);

  if (gone) {
    std::filesystem::remove(test::PathOf(second));
  } else {
    std::filesystem::resize_file(test::PathOf(second), 1'000'000);
  }
  m_pFixture->Answers().Give(QMessageBox::Ok);
  Run();
  QCOMPARE(Line().text(), QString("1 of 2 outputs written, 1 failed"));
  CheckFailureBox(Box(0));
  QVERIFY2(Box(0).text.startsWith("1 of 2 outputs failed:\n\n" + m_pFixture->Row(0)[4] + ": ") &&
               Box(0).text.contains("set 001.wav"),
           qPrintable(Box(0).text));
  QVERIFY2(State(0).startsWith("failed: ") && State(0).contains("set 001.wav"), qPrintable(State(0)));
  QCOMPARE(State(1), QString("done"));
  QVERIFY(m_pFixture->Log().filter("[ERROR]").join('\n').contains("set 001.wav"));
}

void DialogOutcomeTest::WhenNothingIsWrittenThatIsSaid() {
  OpenReady();
  AddEntries(2);
  LetFail(0);
  LetFail(1);
  m_pFixture->Answers().Give(QMessageBox::Yes);
  m_pFixture->Answers().Give(QMessageBox::Ok);
  Run();
  QCOMPARE(Line().text(), QString("0 of 2 outputs written, 2 failed"));
}

void DialogOutcomeTest::AStoppedJobTellsHowManyAreComplete() {
  OpenForALongRun();
  m_pFixture->Click(1018);
  QVERIFY(IsRunning());
  QCOMPARE(Line().text(), QString());
  m_pFixture->Click(1019);
  QCOMPARE(Line().text(), QString("Stopped: 0 of 8 outputs complete"));
  for (int row = 0; row < 8; ++row) QCOMPARE(State(row), QString("stopped"));
}

void DialogOutcomeTest::AStoppedJobNamesWhatHadFailed() {
  OpenForALongRun(3);
  LetFail(2);
  m_pFixture->Answers().Give(QMessageBox::Yes);
  m_pFixture->Click(1018);
  QVERIFY(IsRunning());
  m_pFixture->Answers().Give(QMessageBox::Ok);
  m_pFixture->Click(1019);
  QCOMPARE(Line().text(), QString("Stopped: 0 of 3 outputs complete, 1 failed"));
  CheckFailureBox(Box(1));
  QVERIFY(Box(1).text.contains(m_pFixture->Row(2)[4]));
  QCOMPARE(State(0), QString("stopped"));
  QVERIFY(State(2).startsWith("failed: "));
}

void DialogOutcomeTest::ExistingOutputsThatAreLeftOutAreCounted() {
  OpenReady();
  AddEntries(3);
  Run();
  std::filesystem::remove(test::PathOf(FileOf(0)));
  std::filesystem::remove(test::PathOf(FileOf(2)));
  m_pFixture->Answers().Give(QMessageBox::No);
  Run();
  QCOMPARE(Line().text(), QString("2 of 3 outputs written, 1 existed"));
  QCOMPARE(State(0), QString("done"));
  QCOMPARE(State(1), QString("exists"));
  QCOMPARE(State(2), QString("done"));
}

void DialogOutcomeTest::AllExistingOutputsAreCounted() {
  OpenReady();
  AddEntries(2);
  Run();
  m_pFixture->Answers().Give(QMessageBox::No);
  m_pFixture->Answers().Give(QMessageBox::Ok);
  m_pFixture->Click(1018);
  QCOMPARE(Line().text(), QString("0 of 2 outputs written, 2 existed"));
  QCOMPARE(State(1), QString("exists"));
}

void DialogOutcomeTest::WhatFailedStaysWhenTheUserContinues() {
  OpenReady();
  AddEntries(10);
  LetFail(2);
  const QString failing = m_pFixture->Row(2)[4];
  for (const auto answer : {QMessageBox::Yes, QMessageBox::Yes, QMessageBox::Ok, QMessageBox::Yes}) {
    m_pFixture->Answers().Give(answer);  // too many, overwrite, what failed, continue
  }
  m_pFixture->Click(1018);
  QTRY_COMPARE_WITH_TIMEOUT(m_pFixture->Answers().Shown().size(), std::size_t{4}, 300'000);
  CheckFailureBox(Box(2));
  QCOMPARE(Box(3).caption, QString("Continue"));
  QCOMPARE(Box(3).text, QString("10 of 8 entries have been processed. Remove from list and continue?"));
  QTRY_COMPARE(m_pFixture->List().RowCount(), 3);
  // The second batch follows by itself, and the line tells of the whole run.
  QTRY_COMPARE_WITH_TIMEOUT(Line().text(), QString("9 of 10 outputs written, 1 failed"), 300'000);
  QCOMPARE(m_pFixture->Answers().Shown().size(), std::size_t{4});  // nor was it run again
  QCOMPARE(m_pFixture->List().RowCount(), 3);
  QCOMPARE(m_pFixture->Row(0)[4], failing);
  QVERIFY(State(0).startsWith("failed: "));
  QCOMPARE(State(1), QString("done"));
  QCOMPARE(State(2), QString("done"));
  // Of the log of the first batch, what tells of the failure is still there, ahead of that of the second.
  const QStringList log = m_pFixture->Log();
  const auto error = log.indexOf(QRegularExpression(".*Error.*" + QRegularExpression::escape(failing) + ".*",
                                                    QRegularExpression::CaseInsensitiveOption));
  QVERIFY2(error >= 0, qPrintable(log.join('\n')));
  QVERIFY(error < log.indexOf("Ready"));
  QCOMPARE(log.count("Ready"), 1);
}

void DialogOutcomeTest::WhatTheUserDoesNotContinueWithIsCounted() {
  OpenReady();
  AddEntries(21);
  for (const auto answer : {QMessageBox::Yes, QMessageBox::Yes, QMessageBox::Yes, QMessageBox::No}) {
    m_pFixture->Answers().Give(answer);  // too many, continue, still too many, enough
  }
  m_pFixture->Click(1018);
  QTRY_COMPARE_WITH_TIMEOUT(m_pFixture->Answers().Shown().size(), std::size_t{4}, 300'000);
  QTRY_COMPARE(Line().text(), QString("16 of 21 outputs written, 5 not begun"));
  QCOMPARE(m_pFixture->List().RowCount(), 13);
  QCOMPARE(State(7), QString("done"));
  QCOMPARE(State(8), QString());
}

void DialogOutcomeTest::AnotherStartRunsWhatFailedInEarlierBatches() {
  OpenReady();
  AddEntries(9);
  LetFail(0);
  const std::string failing = FileOf(0);
  for (const auto answer : {QMessageBox::Yes, QMessageBox::Yes, QMessageBox::Ok, QMessageBox::Yes}) {
    m_pFixture->Answers().Give(answer);
  }
  m_pFixture->Click(1018);
  QTRY_COMPARE_WITH_TIMEOUT(m_pFixture->List().RowCount(), 2, 300'000);
  QTRY_COMPARE_WITH_TIMEOUT(Line().text(), QString("8 of 9 outputs written, 1 failed"), 300'000);
  std::filesystem::remove(test::PathOf(failing));
  m_pFixture->Answers().Give(QMessageBox::No);  // the last one exists by now
  Run();
  QCOMPARE(Line().text(), QString("1 of 2 outputs written, 1 existed"));
  QCOMPARE(State(0), QString("done"));
  QVERIFY(!m_pFixture->Log().join('\n').contains("Error"));
}

void DialogOutcomeTest::StatesStayWithTheirRowsUntilTheInputChanges() {
  OpenReady();
  AddEntries(2);
  LetFail(1);
  m_pFixture->Answers().Give(QMessageBox::Yes);
  m_pFixture->Answers().Give(QMessageBox::Ok);
  Run();
  const QString failed = State(1);
  // A new row comes to stand before them.
  m_pFixture->SetFrequency(7'090'000);
  m_pFixture->Click(1015);
  QCOMPARE(State(0), QString());
  QCOMPARE(State(1), QString("done"));
  QCOMPARE(State(2), failed);
  // What is removed and added again has not been run.
  m_pFixture->List().SelectRows({1});
  m_pFixture->Click(1025);
  m_pFixture->SetFrequency(7'100'000);
  m_pFixture->Click(1015);
  QCOMPARE(State(1), QString());
  QCOMPARE(State(2), failed);
  QCOMPARE(Line().text(), QString("1 of 2 outputs written, 1 failed"));

  m_pFixture->SetPath(1000, m_pFixture->WriteInput({}, "other.wav"));
  QCOMPARE(Line().text(), QString());
}

void DialogOutcomeTest::TheOutcomeHasItsPlaceFromTheBeginning() {
  OpenReady();
  AddEntries(1);
  QCoreApplication::processEvents();
  QVERIFY(Line().isVisible());
  const QRect list = m_pFixture->List().geometry();
  const QRect bar = m_pFixture->Control(1020).geometry();
  Run();
  QCoreApplication::processEvents();
  QVERIFY(!Line().text().isEmpty());
  QVERIFY(Line().width() >= Line().sizeHint().width() && Line().height() >= Line().sizeHint().height());
  QCOMPARE(m_pFixture->List().geometry(), list);
  QCOMPARE(m_pFixture->Control(1020).geometry(), bar);
}

void DialogOutcomeTest::TheOutcomeIsReadableInEveryTheme_data() {
  QTest::addColumn<QPalette>("palette");
  for (const auto& [name, palette] : test::Themes()) QTest::newRow(name) << palette;
}

void DialogOutcomeTest::TheOutcomeIsReadableInEveryTheme() {
  QFETCH(QPalette, palette);
  m_pFixture->Open();
  const QPalette before = QApplication::palette();
  Line().SetText({"of before the change", ETone::Bad});
  QApplication::setPalette(palette);
  QCoreApplication::processEvents();
  for (const ETone tone : {ETone::Bad, ETone::Good, ETone::Caution, ETone::Plain}) {
    const QColor window = m_pFixture->Dialog().palette().color(QPalette::Window);
    QVERIFY(ContrastOf(Line().palette().color(QPalette::WindowText), window) >= 4.5);
    Line().SetText({"7 of 8 outputs written", tone});
    QVERIFY(ContrastOf(Line().palette().color(QPalette::WindowText), window) >= 4.5);
    QVERIFY(test::BestContrast(Line().grab().toImage()) >= 4.5);
  }
  QApplication::setPalette(before);
}

void DialogOutcomeTest::TheOutcomeCanBeHeard() {
  OpenReady();
  AddEntries(1);
  QVERIFY(!Line().accessibleName().isEmpty());
  QVERIFY(!Rate().accessibleName().isEmpty());
  Run();
  QVERIFY(Line().accessibleName().contains("1 of 1 outputs written"));
}

void DialogOutcomeTest::SpeedAndTimeLeftAreShownDuringARunOnly() {
  OpenForALongRun();
  QCOMPARE(Rate().text(), QString());
  m_pFixture->Click(1018);
  QCOMPARE(Rate().text(), QString());  // not known yet
  const QRegularExpression pattern("^\\d+\\.\\d MB/s, (\\d+:)?\\d+:\\d\\d left$");
  QTRY_VERIFY_WITH_TIMEOUT(pattern.match(Rate().text()).hasMatch(), 120'000);
  QTRY_VERIFY(Rate().isVisible() && Rate().width() >= Rate().sizeHint().width());  // once the layout has settled
  m_pFixture->Click(1019);
  QCOMPARE(Rate().text(), QString());
  QTest::qWait(400);
  QCOMPARE(Rate().text(), QString());
}

void DialogOutcomeTest::TheListCanBeReadAndScrolledDuringARun_data() {
  TheOutcomeIsReadableInEveryTheme_data();
}

void DialogOutcomeTest::TheListCanBeReadAndScrolledDuringARun() {
  QFETCH(QPalette, palette);
  const QPalette before = QApplication::palette();
  QApplication::setPalette(palette);
  OpenForALongRun(60);
  CMyMFCListCtrl& list = m_pFixture->List();
  list.clearSelection();
  list.scrollToTop();
  m_pFixture->Answers().Give(QMessageBox::Yes);
  m_pFixture->Click(1018);
  QVERIFY(IsRunning());
  QScrollBar* pBar = list.verticalScrollBar();
  QVERIFY(pBar->maximum() > 0);
  list.horizontalScrollBar()->setValue(0);
  QCoreApplication::processEvents();
  for (const int row : {0, 1}) {
    const QRect cell = list.visualRect(list.model()->index(row, 0));
    QVERIFY(test::BestContrast(list.viewport()->grab(cell).toImage()) >= 4.5);
  }

  const QPointF middle = list.viewport()->rect().center();
  QWheelEvent wheel(middle, list.viewport()->mapToGlobal(middle), {}, {0, -240}, Qt::NoButton, Qt::NoModifier,
                    Qt::NoScrollPhase, false);
  QCoreApplication::sendEvent(list.viewport(), &wheel);
  QVERIFY(pBar->value() > 0);
  QTest::keyClick(&m_pFixture->Control(1019), Qt::Key_End);
  QCOMPARE(pBar->value(), pBar->maximum());
  QTest::keyClick(&m_pFixture->Control(1019), Qt::Key_PageUp);
  QVERIFY(pBar->value() < pBar->maximum());

  QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, {20, 20});
  QTest::keyClick(&list, Qt::Key_Delete);
  QVERIFY(!list.HasSelection());
  QCOMPARE(list.RowCount(), 60);
  const int value = pBar->value();
  QTest::qWait(600);  // states are told meanwhile
  QCOMPARE(pBar->value(), value);
  QVERIFY(IsRunning());
  m_pFixture->Click(1019);
  QApplication::setPalette(before);
}

void DialogOutcomeTest::TheStateIsInViewDuringARun() {
  OpenForALongRun();
  m_pFixture->Click(1018);
  QTRY_VERIFY(!State(0).isEmpty());
  CMyMFCListCtrl& list = m_pFixture->List();
  const QRect cell = list.visualRect(list.model()->index(0, 5));
  QVERIFY(cell.width() >= list.fontMetrics().horizontalAdvance(State(0)));
  QVERIFY(list.viewport()->rect().contains(cell.topRight()) && cell.left() < list.viewport()->width());
  m_pFixture->Click(1019);
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::DialogOutcomeTest)
#include "dialog_outcome_test.moc"
