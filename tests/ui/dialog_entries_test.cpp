#include <QApplication>
#include <QDateEdit>
#include <QDateTime>
#include <QTimeEdit>
#include <cstdlib>
#include <ctime>

#include "ui/dialog_fixture.h"
#include "ui/ui_test.h"

namespace carvello {

using test::CDialogFixture;
using test::SShownBox;

namespace {
// Buttons of the Add Sequence dialog.
constexpr int kOk = 1;
constexpr int kCancel = 2;
}  // namespace

class DialogEntriesTest : public QObject {
  Q_OBJECT

 private slots:
  void initTestCase();
  void init() { m_pFixture = std::make_unique<CDialogFixture>(); }
  void cleanup();

  void ShowsSixColumns();
  void ShowsEachEntryInItsColumns();
  void ShowsLocalTimesAndNamesWithoutUtc();
  void ColumnsAreAsWideAsTheirContents();
  void EqualEntriesAreOneRow();
  void EntriesThatDifferInSampleOrFileSizeOnlyAreOneRow();
  void SortsByFrequencyThenBandwidth();
  void AddsMoreThanTheMaximum();
  void CountsTheEntries();
  void MnemonicsAddWhatIsTypedBetweenThem();
  void AStartAtTheRecordingsEndIsOutOfRange();
  void AStartBeforeTheRecordingIsOutOfRange();
  void AnsweringNoLeavesTheStartAsItIs();
  void AnEndAtTheRecordingsEndIsAccepted();
  void AnEndBehindTheRecordingIsOutOfRange();
  void AnsweringNoLeavesTheEndAsItIs();
  void AnEndBeforeTheRecordingIsOutOfRange();
  void AnEndBeforeTheStartIsNotRefused();
  void ADurationOfZeroIsRefused();
  void ADurationUpToTheRecordingsEndIsRefused();
  void ADurationIsShownFromTheRecordingsStart();
  void PickersWorkInLocalTimeWithoutUtc();
  void NoBandwidthMakesAnEntryOfNone();
  void DeleteRemovesTheSelectedRows();
  void TheDeleteKeyDoesWhatTheButtonDoes();
  void ResetRemovesAllRows();
  void ASequenceAddsEveryStepWithBothEnds();
  void ASequenceLeavesTheFieldAndSavesTheLastFrequency();
  void ACancelledSequenceAddsNothing();
  void ASequenceMeetsExistingEntriesOnce();
  void ASequenceAddsFrequenciesOutsideTheBandToo();
  void ARefusedSequenceAsksOncePerFrequency();
  void ATimePutBackCountsForTheRestOfASequence();
  void AGoodEntryIsAddedWithoutAHint();
  void ABandPartlyOutsideIsAddedWithAHint();
  void ABandWhollyOutsideIsAddedWithAHint();
  void NoBandwidthIsAddedWithAHint();
  void AnEndBeforeTheStartIsAddedWithAHint();
  void AnEndAtTheStartIsAddedWithAHintThatItRunsOn();
  void ADuplicateIsDroppedWithAHintOfWhatIsNotTakenOver();
  void ASequenceHintsHowManyLieOutside();
  void ALongSequenceIsToldInTwentyLines();
  void TheHintGoesWithTheNextAddThatHasNone();
  void TheHintGoesWithANewInput();
  void AHintMovesNothingAndCanBeReadAloud();

 private:
  void Add(std::int64_t frequency, const QString& bandwidth);
  void StartAt(const QDateTime& time);
  void FinishAt(const QDateTime& time);
  // Adds an entry that is not taken: a box says why, and is answered.
  void AddRefused(QMessageBox::StandardButton answer, const QString& caption, const QString& text);
  void CompareBox(const QString& caption, const QString& text, QMessageBox::StandardButtons buttons);
  QString Hint() { return m_pFixture->Dialog().findChild<QLabel*>("labelHint")->text(); }
  // Fills the Add Sequence dialog and closes it with a button.
  void Sequence(std::int64_t start, std::int64_t end, const QString& step, int button);
  QDateTime Utc(int hour, int minute, int second, int day = 1) {
    return QDateTime(QDate(2020, 11, day), QTime(hour, minute, second), Qt::UTC);
  }

  std::unique_ptr<CDialogFixture> m_pFixture;
};

void DialogEntriesTest::initTestCase() {
  test::SetTimeZone("XXX-3");  // three hours ahead of UTC
}

void DialogEntriesTest::cleanup() {
  QVERIFY(m_pFixture->Answers().AllUsed());
  m_pFixture.reset();
}

void DialogEntriesTest::Add(std::int64_t frequency, const QString& bandwidth) {
  m_pFixture->SetFrequency(frequency);
  m_pFixture->Choose(1011, bandwidth);
  m_pFixture->Click(1015);
}

void DialogEntriesTest::StartAt(const QDateTime& time) {
  m_pFixture->Click(1086);
  m_pFixture->Pick(1105, 1103, time);
}

void DialogEntriesTest::FinishAt(const QDateTime& time) {
  m_pFixture->Click(1087);
  m_pFixture->Pick(1106, 1104, time);
}

void DialogEntriesTest::AddRefused(QMessageBox::StandardButton answer, const QString& caption, const QString& text) {
  m_pFixture->Answers().Give(answer);
  Add(7'100'000, "10 kHz");
  CompareBox(caption, text, answer == QMessageBox::Ok ? QMessageBox::Ok : QMessageBox::Yes | QMessageBox::No);
  QCOMPARE(m_pFixture->List().RowCount(), 0);
}

void DialogEntriesTest::CompareBox(const QString& caption, const QString& text, QMessageBox::StandardButtons buttons) {
  QVERIFY(!m_pFixture->Answers().Shown().empty());
  const SShownBox& box = m_pFixture->Answers().Shown().back();
  QCOMPARE(box.caption, caption);
  QCOMPARE(box.text, text);
  QCOMPARE(box.icon, QMessageBox::Critical);
  QCOMPARE(box.buttons, buttons);
}

void DialogEntriesTest::Sequence(std::int64_t start, std::int64_t end, const QString& step, int button) {
  m_pFixture->Answers().Do([=](QDialog& dialog) {
    dialog.findChild<CMyMFCMaskedEdit*>("IDC_1010")->SetFrequency(start);
    dialog.findChild<CMyMFCMaskedEdit*>("IDC_1011")->SetFrequency(end);
    dialog.findChild<QComboBox*>("IDC_1012")->setCurrentText(step);
    QTest::mouseClick(dialog.findChild<QAbstractButton*>(QString("IDC_%1").arg(button)), Qt::LeftButton);
  });
  m_pFixture->Click(1016);
}

void DialogEntriesTest::ShowsSixColumns() {
  m_pFixture->Open();
  QStringList titles;
  for (int column = 0; column < m_pFixture->List().ColumnCount(); ++column) titles << m_pFixture->List().Title(column);
  QCOMPARE(titles, (QStringList{"Centre", "Bw", "Start", "Finish", "Filename", ""}));
}

void DialogEntriesTest::ShowsEachEntryInItsColumns() {
  m_pFixture->OpenReady();
  Add(7'100'000, "10 kHz");
  QCOMPARE(m_pFixture->Row(0), (QStringList{"7.100.000", "10 kHz", test::DateText(2020, 11, 1) + " 23:59:00z",
                                            test::DateText(2020, 11, 2) + " 00:59:00z",
                                            "2020-11-01 2359z, f=7.100 MHz, bw=10 kHz.wav", ""}));
}

void DialogEntriesTest::ShowsLocalTimesAndNamesWithoutUtc() {
  m_pFixture->OpenReady();
  m_pFixture->Click(1034);
  Add(7'100'000, "10 kHz");
  QCOMPARE(m_pFixture->Row(0),
           (QStringList{"7.100.000", "10 kHz", test::DateText(2020, 11, 2) + " " + test::TimeText(2, 59, 0),
                        test::DateText(2020, 11, 2) + " " + test::TimeText(3, 59, 0),
                        "2020-11-02 0259, f=7.100 MHz, bw=10 kHz.wav", ""}));
}

void DialogEntriesTest::ColumnsAreAsWideAsTheirContents() {
  m_pFixture->OpenReady();
  Add(7'100'000, "10 kHz");
  const QFontMetrics metrics(m_pFixture->List().font());
  for (int column = 0; column < 5; ++column) {
    QVERIFY(m_pFixture->List().columnWidth(column) >= metrics.horizontalAdvance(m_pFixture->Row(0)[column]) + 10);
  }
}

void DialogEntriesTest::EqualEntriesAreOneRow() {
  m_pFixture->OpenReady();
  Add(7'100'000, "10 kHz");
  Add(7'100'000, "10 kHz");
  QCOMPARE(m_pFixture->List().RowCount(), 1);
  QCOMPARE(m_pFixture->Text(1027), QString("Maximum entries: 8, current: 1"));
}

void DialogEntriesTest::EntriesThatDifferInSampleOrFileSizeOnlyAreOneRow() {
  m_pFixture->OpenReady();
  Add(7'100'000, "10 kHz");
  m_pFixture->Click(1013);
  Add(7'100'000, "10 kHz");
  m_pFixture->Choose(1014, "One file (RF64)");
  Add(7'100'000, "10 kHz");
  QCOMPARE(m_pFixture->List().RowCount(), 1);
}

void DialogEntriesTest::SortsByFrequencyThenBandwidth() {
  m_pFixture->OpenReady();
  Add(7'100'000, "20 kHz");
  Add(3'500'000, "20 kHz");
  Add(7'100'000, "10 kHz");
  QCOMPARE(m_pFixture->Row(0).mid(0, 2), (QStringList{"3.500.000", "20 kHz"}));
  QCOMPARE(m_pFixture->Row(1).mid(0, 2), (QStringList{"7.100.000", "10 kHz"}));
  QCOMPARE(m_pFixture->Row(2).mid(0, 2), (QStringList{"7.100.000", "20 kHz"}));
}

void DialogEntriesTest::AddsMoreThanTheMaximum() {
  m_pFixture->OpenReady();
  for (int i = 0; i < 10; ++i) Add(7'100'000 + i, "10 kHz");
  QCOMPARE(m_pFixture->List().RowCount(), 10);
  QCOMPARE(m_pFixture->Text(1027), QString("Maximum entries: 8, current: 10"));
}

void DialogEntriesTest::MnemonicsAddWhatIsTypedBetweenThem() {
  m_pFixture->OpenReady();
  for (const char* typed : {"7.1", "7.15"}) {
    QTest::keyClick(&m_pFixture->Dialog(), Qt::Key_C, Qt::AltModifier);
    QTest::keyClicks(&m_pFixture->Control(1010), typed);
    QTest::keyClick(&m_pFixture->Dialog(), Qt::Key_A, Qt::AltModifier);
  }
  QCOMPARE(m_pFixture->List().RowCount(), 2);
  QCOMPARE(m_pFixture->Row(0)[0], QString("7.100.000"));
  QCOMPARE(m_pFixture->Row(1)[0], QString("7.150.000"));
}

void DialogEntriesTest::CountsTheEntries() {
  m_pFixture->Open();
  QCOMPARE(m_pFixture->Text(1027), QString("Maximum entries: 8"));
  m_pFixture->OpenReady();
  QCOMPARE(m_pFixture->Text(1027), QString("Maximum entries: 8, current: 0"));
  Add(7'100'000, "10 kHz");
  QCOMPARE(m_pFixture->Text(1027), QString("Maximum entries: 8, current: 1"));
}

void DialogEntriesTest::AStartAtTheRecordingsEndIsOutOfRange() {
  m_pFixture->OpenReady();
  StartAt(Utc(0, 59, 0, 2));
  AddRefused(QMessageBox::Yes, "Start Time", "The start time is out of range. Reset the start time?");
  // Put back, and good for the next try.
  QCOMPARE(m_pFixture->Control<QDateEdit>(1105).date(), QDate(2020, 11, 1));
  QCOMPARE(m_pFixture->Control<QTimeEdit>(1103).time(), QTime(23, 59, 0));
  Add(7'100'000, "10 kHz");
  QCOMPARE(m_pFixture->List().RowCount(), 1);
}

void DialogEntriesTest::AStartBeforeTheRecordingIsOutOfRange() {
  m_pFixture->OpenReady();
  StartAt(Utc(23, 58, 59));
  AddRefused(QMessageBox::Yes, "Start Time", "The start time is out of range. Reset the start time?");
}

void DialogEntriesTest::AnsweringNoLeavesTheStartAsItIs() {
  m_pFixture->OpenReady();
  StartAt(Utc(23, 58, 59));
  AddRefused(QMessageBox::No, "Start Time", "The start time is out of range. Reset the start time?");
  QCOMPARE(m_pFixture->Control<QTimeEdit>(1103).time(), QTime(23, 58, 59));
}

void DialogEntriesTest::AnEndAtTheRecordingsEndIsAccepted() {
  m_pFixture->OpenReady();
  FinishAt(Utc(0, 59, 0, 2));
  Add(7'100'000, "10 kHz");
  QCOMPARE(m_pFixture->Row(0)[3], test::DateText(2020, 11, 2) + " 00:59:00z");
}

void DialogEntriesTest::AnEndBehindTheRecordingIsOutOfRange() {
  m_pFixture->OpenReady();
  FinishAt(Utc(0, 59, 1, 2));
  AddRefused(QMessageBox::Yes, "End Time", "The end time is out of range. Reset the end time?");
  QCOMPARE(m_pFixture->Control<QTimeEdit>(1104).time(), QTime(0, 59, 0));
}

void DialogEntriesTest::AnsweringNoLeavesTheEndAsItIs() {
  m_pFixture->OpenReady();
  FinishAt(Utc(0, 59, 1, 2));
  AddRefused(QMessageBox::No, "End Time", "The end time is out of range. Reset the end time?");
  QCOMPARE(m_pFixture->Control<QTimeEdit>(1104).time(), QTime(0, 59, 1));
}

void DialogEntriesTest::AnEndBeforeTheRecordingIsOutOfRange() {
  m_pFixture->OpenReady();
  FinishAt(Utc(23, 58, 59));
  AddRefused(QMessageBox::Yes, "End Time", "The end time is out of range. Reset the end time?");
}

void DialogEntriesTest::AnEndBeforeTheStartIsNotRefused() {
  m_pFixture->OpenReady();
  StartAt(Utc(0, 30, 0, 2));
  FinishAt(Utc(0, 10, 0, 2));
  Add(7'100'000, "10 kHz");
  QCOMPARE(m_pFixture->List().RowCount(), 1);
}

void DialogEntriesTest::ADurationOfZeroIsRefused() {
  m_pFixture->OpenReady();
  m_pFixture->Click(1084);
  AddRefused(QMessageBox::Ok, "End", "End duration cannot be zero.");
}

void DialogEntriesTest::ADurationUpToTheRecordingsEndIsRefused() {
  m_pFixture->OpenReady();
  m_pFixture->Click(1084);
  m_pFixture->Choose(1028, "1");  // all of it
  AddRefused(QMessageBox::Ok, "End Time",
             "The start time + end duration is past the end of file, change the duration.");
  m_pFixture->Choose(1028, "0");
  m_pFixture->Choose(1029, "59");
  Add(7'100'000, "10 kHz");
  QCOMPARE(m_pFixture->List().RowCount(), 1);
}

void DialogEntriesTest::ADurationIsShownFromTheRecordingsStart() {
  m_pFixture->OpenReady();
  StartAt(Utc(0, 9, 0, 2));  // ten minutes into the recording
  m_pFixture->Click(1084);
  m_pFixture->Choose(1029, "30");
  Add(7'100'000, "10 kHz");
  QCOMPARE(m_pFixture->Row(0)[2], test::DateText(2020, 11, 2) + " 00:09:00z");
  QCOMPARE(m_pFixture->Row(0)[3], test::DateText(2020, 11, 2) + " 00:29:00z");
}

void DialogEntriesTest::PickersWorkInLocalTimeWithoutUtc() {
  m_pFixture->OpenReady();
  m_pFixture->Click(1034);
  StartAt(Utc(3, 9, 0, 2));  // local time
  Add(7'100'000, "10 kHz");
  QCOMPARE(m_pFixture->Row(0)[2], test::DateText(2020, 11, 2) + " " + test::TimeText(3, 9, 0));
  QCOMPARE(m_pFixture->Row(0)[4], QString("2020-11-02 0309, f=7.100 MHz, bw=10 kHz.wav"));
}

void DialogEntriesTest::NoBandwidthMakesAnEntryOfNone() {
  m_pFixture->OpenReady();  // 96 kHz: no bandwidth of 1 MHz to select
  QCOMPARE(m_pFixture->Control<QComboBox>(1011).currentIndex(), -1);
  m_pFixture->Click(1015);
  QCOMPARE(m_pFixture->Row(0)[1], QString("0 Hz"));
}

void DialogEntriesTest::DeleteRemovesTheSelectedRows() {
  m_pFixture->OpenReady();
  for (const char* bandwidth : {"10 kHz", "20 kHz", "30 kHz", "40 kHz"}) Add(7'100'000, bandwidth);
  m_pFixture->List().SelectRows({0, 2});
  m_pFixture->Click(1025);
  QCOMPARE(m_pFixture->List().RowCount(), 2);
  QCOMPARE(m_pFixture->Row(0)[1], QString("20 kHz"));
  QCOMPARE(m_pFixture->Row(1)[1], QString("40 kHz"));
  QVERIFY(!m_pFixture->Control(1025).isEnabled());
  QCOMPARE(m_pFixture->Text(1027), QString("Maximum entries: 8, current: 2"));
}

void DialogEntriesTest::TheDeleteKeyDoesWhatTheButtonDoes() {
  m_pFixture->OpenReady();
  Add(7'100'000, "10 kHz");
  Add(7'100'000, "20 kHz");
  m_pFixture->List().clearSelection();
  QTest::keyClick(&m_pFixture->List(), Qt::Key_Delete);
  QCOMPARE(m_pFixture->List().RowCount(), 2);
  m_pFixture->List().SelectRows({1});
  QTest::keyClick(&m_pFixture->List(), Qt::Key_Delete);
  QCOMPARE(m_pFixture->List().RowCount(), 1);
  QCOMPARE(m_pFixture->Row(0)[1], QString("10 kHz"));
}

void DialogEntriesTest::ResetRemovesAllRows() {
  m_pFixture->OpenReady();
  Add(7'100'000, "10 kHz");
  Add(7'100'000, "20 kHz");
  m_pFixture->Click(1017);
  QCOMPARE(m_pFixture->List().RowCount(), 0);
  QVERIFY(!m_pFixture->Control(1017).isEnabled());
  QVERIFY(!m_pFixture->Control(1018).isEnabled());
}

void DialogEntriesTest::ASequenceAddsEveryStepWithBothEnds() {
  m_pFixture->OpenReady();
  m_pFixture->Choose(1011, "10 kHz");
  Sequence(900'000, 920'000, "10 kHz", kOk);
  QCOMPARE(m_pFixture->List().RowCount(), 3);
  QCOMPARE(m_pFixture->Row(0)[0], QString("900.000"));
  QCOMPARE(m_pFixture->Row(1)[0], QString("910.000"));
  QCOMPARE(m_pFixture->Row(2)[0], QString("920.000"));
}

void DialogEntriesTest::ASequenceLeavesTheFieldAndSavesTheLastFrequency() {
  m_pFixture->OpenReady();
  m_pFixture->SetFrequency(7'111'000);
  m_pFixture->Choose(1011, "10 kHz");
  Sequence(920'000, 900'000, "10 kHz", kOk);
  QCOMPARE(m_pFixture->Control<CMyMFCMaskedEdit>(1010).Frequency(), std::int64_t{7'111'000});
  std::int64_t saved = 0;
  QVERIFY(m_pFixture->Settings().Read("CentreFreq", saved));
  QCOMPARE(saved, std::int64_t{920'000});
}

void DialogEntriesTest::ACancelledSequenceAddsNothing() {
  m_pFixture->OpenReady();
  Sequence(900'000, 920'000, "10 kHz", kCancel);
  QCOMPARE(m_pFixture->List().RowCount(), 0);
}

void DialogEntriesTest::ASequenceMeetsExistingEntriesOnce() {
  m_pFixture->OpenReady();
  Add(910'000, "10 kHz");
  Sequence(900'000, 920'000, "10 kHz", kOk);
  QCOMPARE(m_pFixture->List().RowCount(), 3);
}

void DialogEntriesTest::ASequenceAddsFrequenciesOutsideTheBandToo() {
  m_pFixture->OpenReady();  // 7.1 MHz, 96 kHz wide
  m_pFixture->Choose(1011, "10 kHz");
  Sequence(7'000'000, 7'200'000, "100 kHz", kOk);
  QCOMPARE(m_pFixture->List().RowCount(), 3);
}

void DialogEntriesTest::ARefusedSequenceAsksOncePerFrequency() {
  m_pFixture->OpenReady();
  m_pFixture->Choose(1011, "10 kHz");
  StartAt(Utc(23, 58, 59));
  for (int i = 0; i < 3; ++i) m_pFixture->Answers().Give(QMessageBox::No);
  Sequence(900'000, 920'000, "10 kHz", kOk);
  QCOMPARE(m_pFixture->Answers().Shown().size(), std::size_t{3});
  QCOMPARE(m_pFixture->List().RowCount(), 0);
}

void DialogEntriesTest::ATimePutBackCountsForTheRestOfASequence() {
  m_pFixture->OpenReady();
  m_pFixture->Choose(1011, "10 kHz");
  StartAt(Utc(23, 58, 59));
  m_pFixture->Answers().Give(QMessageBox::Yes);
  Sequence(900'000, 920'000, "10 kHz", kOk);
  QCOMPARE(m_pFixture->Answers().Shown().size(), std::size_t{1});
  QCOMPARE(m_pFixture->List().RowCount(), 2);  // the refused step is not tried again
}

void DialogEntriesTest::AGoodEntryIsAddedWithoutAHint() {
  m_pFixture->OpenReady();  // 7.1 MHz, 96 kHz wide, one hour
  Add(7'143'000, "10 kHz");
  QCOMPARE(Hint(), QString());
  QCOMPARE(m_pFixture->Log().size(), 2);
}

void DialogEntriesTest::ABandPartlyOutsideIsAddedWithAHint() {
  m_pFixture->OpenReady();
  Add(7'143'001, "10 kHz");
  QCOMPARE(m_pFixture->List().RowCount(), 1);
  QCOMPARE(Hint(), QString("Partly outside 7.052 MHz to 7.148 MHz"));
  QCOMPARE(m_pFixture->Log().back(),
           QString("[WARNING] 7.143001 MHz, BW 10 kHz: partly outside 7.052 MHz to 7.148 MHz"));
}

void DialogEntriesTest::ABandWhollyOutsideIsAddedWithAHint() {
  m_pFixture->OpenReady();
  Add(9'000'000, "10 kHz");
  QCOMPARE(m_pFixture->List().RowCount(), 1);
  QCOMPARE(Hint(), QString("Wholly outside 7.052 MHz to 7.148 MHz"));
}

void DialogEntriesTest::NoBandwidthIsAddedWithAHint() {
  m_pFixture->OpenReady();
  m_pFixture->SetFrequency(7'100'000);
  m_pFixture->Click(1015);
  QCOMPARE(m_pFixture->Row(0)[1], QString("0 Hz"));
  QCOMPARE(Hint(), QString("The bandwidth 0 is out of range."));
  QCOMPARE(m_pFixture->Log().back(), QString("[WARNING] 7.100 MHz, BW 0 Hz: The bandwidth 0 is out of range."));
}

void DialogEntriesTest::AnEndBeforeTheStartIsAddedWithAHint() {
  m_pFixture->OpenReady();
  StartAt(Utc(0, 30, 0, 2));
  FinishAt(Utc(0, 10, 0, 2));
  Add(7'100'000, "10 kHz");
  QCOMPARE(m_pFixture->List().RowCount(), 1);
  QCOMPARE(Hint(), QString("The end time is before the start time."));
}

void DialogEntriesTest::AnEndAtTheStartIsAddedWithAHintThatItRunsOn() {
  m_pFixture->OpenReady();
  FinishAt(Utc(23, 59, 0));
  Add(7'100'000, "10 kHz");
  QCOMPARE(m_pFixture->List().RowCount(), 1);
  QCOMPARE(Hint(), QString("The end time is the start time: it runs to the end."));
}

void DialogEntriesTest::ADuplicateIsDroppedWithAHintOfWhatIsNotTakenOver() {
  m_pFixture->OpenReady();
  Add(7'100'000, "10 kHz");
  Add(7'100'000, "10 kHz");
  QCOMPARE(Hint(), QString("In the list already"));
  m_pFixture->Click(1013);
  m_pFixture->SetPath(1009, m_pFixture->Folder() / "elsewhere");
  Add(7'100'000, "10 kHz");
  QCOMPARE(Hint(), QString("In the list already; not taken over: folder, sample size"));
  QCOMPARE(m_pFixture->List().RowCount(), 1);
  QCOMPARE(m_pFixture->Log().back(),
           QString("[WARNING] 7.100 MHz, BW 10 kHz: in the list already; not taken over: folder, sample size"));
}

void DialogEntriesTest::ASequenceHintsHowManyLieOutside() {
  m_pFixture->OpenReady();
  Add(7'100'000, "10 kHz");
  Sequence(7'000'000, 7'200'000, "50 kHz", kOk);
  QCOMPARE(m_pFixture->List().RowCount(), 5);
  QCOMPARE(Hint(), QString("2 of 5: wholly outside 7.052 MHz to 7.148 MHz; see the log"));
  QCOMPARE(m_pFixture->Log().size(), 2 + 5);
}

void DialogEntriesTest::ALongSequenceIsToldInTwentyLines() {
  m_pFixture->OpenReady();
  m_pFixture->Choose(1011, "10 kHz");
  Sequence(1'000'000, 1'049'000, "1 kHz", kOk);
  QCOMPARE(m_pFixture->List().RowCount(), 50);
  QCOMPARE(m_pFixture->Log().size(), 2 + 21);
  QCOMPARE(m_pFixture->Log().back(), QString("[WARNING] ... and 30 more"));
}

void DialogEntriesTest::TheHintGoesWithTheNextAddThatHasNone() {
  m_pFixture->OpenReady();
  Add(9'000'000, "10 kHz");
  QVERIFY(!Hint().isEmpty());
  Add(7'100'000, "10 kHz");
  QCOMPARE(Hint(), QString());
}

void DialogEntriesTest::TheHintGoesWithANewInput() {
  m_pFixture->OpenReady();
  Add(9'000'000, "10 kHz");
  QVERIFY(!Hint().isEmpty());
  m_pFixture->SetPath(1000, m_pFixture->WriteInput({}, "other.wav"));
  QCOMPARE(Hint(), QString());
}

void DialogEntriesTest::AHintMovesNothingAndCanBeReadAloud() {
  m_pFixture->OpenReady();
  Add(7'100'000, "10 kHz");
  QApplication::processEvents();
  const QRect before = m_pFixture->List().geometry();
  Add(9'000'000, "10 kHz");
  QApplication::processEvents();
  QCOMPARE(m_pFixture->List().geometry(), before);
  const auto* hint = m_pFixture->Dialog().findChild<QLabel*>("labelHint");
  QVERIFY(hint->isVisible());
  QCOMPARE(hint->accessibleName(), "Hint: " + hint->text());
  QCOMPARE(hint->toolTip(), hint->text());
  const QRect button = m_pFixture->Control(1015).geometry();
  QVERIFY(hint->geometry().left() > button.right());
  QVERIFY(std::abs(hint->geometry().center().y() - button.center().y()) <= 1);
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::DialogEntriesTest)
#include "dialog_entries_test.moc"
