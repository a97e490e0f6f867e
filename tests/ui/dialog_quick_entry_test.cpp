#include <QDropEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QUrl>
#include <fstream>

#include "ui/dialog_fixture.h"
#include "ui/meant_frequency.h"
#include "ui/ui_test.h"

namespace carvello {

namespace {

// 7.100 MHz in the middle of 96 kHz, an hour from 23:59:00 UTC on.
constexpr std::int64_t kCentre = 7'100'000;

}  // namespace

class DialogQuickEntryTest : public QObject {
  Q_OBJECT

 private slots:
  void init();
  void cleanup();
  void ATypedBandwidthBecomesAnEntry();
  void ATypedBandwidthThatIsNoneIsRefusedWithAHint_data();
  void ATypedBandwidthThatIsNoneIsRefusedWithAHint();
  void ATypedBandwidthIsRemembered();
  void HoursAndMinutesAreFoundByTyping();
  void FrequenciesInKilohertzAreRecognised();
  void KilohertzTypedAsMegahertzAreOffered();
  void TakingWhatIsMeantChangesTheEntryThatWasJustAdded();
  void TheAddedRowIsSelectedAndShown();
  void ARowThatWasThereAlreadyIsSelectedInPlaceOfTheNewOne();
  void AllRowsOfASequenceAreSelected();
  void ADoubleClickFillsTheFieldsAndReplaceReplaces();
  void EnterAndF2EditTheSelectedRow();
  void F2EditsWhatWasJustAddedFromAnyField();
  void ReplacingCanBeUndone();
  void ReplacingKeepsTheFolderOfTheEntry();
  void TimesThatWereNotTouchedStayThoseOfTheEntry();
  void SelectingAnotherRowEndsEditing();
  void ARefusedReplacementChangesNothing();
  void AFileDroppedAnywhereIsOpened();
  void AFolderDroppedAnywhereTakesTheOutputs();
  void TheFolderFieldTakesTheFolderOfAFile();
  void TheRecordingThatIsOpenKeepsItsListWhenItIsDroppedAgain();
  void AFileThatCouldNotBeReadIsReadAgainWhenItIsDroppedAgain();
  void AJobDroppedAnywhereIsOpened();
  void AQuotedPathIsOpened();

 private:
  QComboBox& Bandwidths() { return m_pFixture->Control<QComboBox>(1011); }
  void TypeBandwidth(const QString& text) {
    Bandwidths().lineEdit()->selectAll();
    QTest::keyClicks(&Bandwidths(), text);
  }
  void Add(std::int64_t frequency, const QString& bandwidth) {
    m_pFixture->SetFrequency(frequency);
    TypeBandwidth(bandwidth);
    m_pFixture->Click(1015);
  }
  QAbstractButton& Button(const char* name) { return *m_pFixture->Dialog().findChild<QAbstractButton*>(name); }
  QString Hint() { return m_pFixture->Dialog().findChild<QLabel*>("labelHint")->text(); }
  std::vector<std::size_t> Selected() { return m_pFixture->List().SelectedRows(); }
  void DoubleClick(int row) {
    CMyMFCListCtrl& list = m_pFixture->List();
    const QPoint spot = list.visualRect(list.model()->index(row, 0)).center();
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, spot);
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, spot);
  }
  static bool Drop(QWidget& target, const QString& path) {
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(path)});
    QDragEnterEvent enter({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&target, &enter);
    if (!enter.isAccepted()) return false;
    QDropEvent drop({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&target, &drop);
    return drop.isAccepted();
  }

  std::unique_ptr<test::CDialogFixture> m_pFixture;
};

void DialogQuickEntryTest::init() {
  m_pFixture = std::make_unique<test::CDialogFixture>();
  m_pFixture->OpenReady();
}

void DialogQuickEntryTest::cleanup() {
  QVERIFY(m_pFixture->Answers().AllUsed());
  m_pFixture.reset();
}

void DialogQuickEntryTest::ATypedBandwidthBecomesAnEntry() {
  Add(kCentre, "12.5k");
  QCOMPARE(m_pFixture->Row(0)[1], QString("12.500 kHz"));
  QCOMPARE(m_pFixture->Row(0)[4], QString("2020-11-01 2359z, f=7.100 MHz, bw=12.500 kHz.wav"));
  Add(kCentre, "10 kHz");
  QCOMPARE(m_pFixture->Row(0)[1], QString("10 kHz"));
  QCOMPARE(Bandwidths().currentText(), QString("10 kHz"));
  QCOMPARE(Hint(), QString());
}

void DialogQuickEntryTest::ATypedBandwidthThatIsNoneIsRefusedWithAHint_data() {
  QTest::addColumn<QString>("typed");
  QTest::addColumn<QString>("hint");
  QTest::newRow("no number") << "12q"
                             << "\"12q\" is no bandwidth";
  QTest::newRow("wider than the recording") << "97k"
                                            << "A bandwidth of 97 kHz cannot be cut: 10 Hz to 96 kHz";
  QTest::newRow("too narrow") << "9 Hz"
                              << "A bandwidth of 9 Hz cannot be cut";
  QTest::newRow("nothing") << "0"
                           << "A bandwidth of 0 Hz cannot be cut: 10 Hz to 96 kHz";
}

void DialogQuickEntryTest::ATypedBandwidthThatIsNoneIsRefusedWithAHint() {
  QFETCH(QString, typed);
  QFETCH(QString, hint);
  Add(kCentre, typed);
  QCOMPARE(m_pFixture->List().RowCount(), 0);
  QVERIFY2(Hint().startsWith(hint), qPrintable(Hint()));
  QVERIFY(Bandwidths().lineEdit()->hasFocus());
  QTest::keyClicks(&Bandwidths(), "10k");  // over what was typed before
  m_pFixture->Click(1015);
  QCOMPARE(m_pFixture->Row(0)[1], QString("10 kHz"));
  QCOMPARE(Hint(), QString());
}

void DialogQuickEntryTest::ATypedBandwidthIsRemembered() {
  Add(kCentre, "12.5k");
  m_pFixture->Open(m_pFixture->WriteInput());
  QCOMPARE(Bandwidths().currentText(), QString("12.5 kHz"));
  // Not where it cannot be cut.
  m_pFixture->Open(m_pFixture->WriteInput({.nSampleRate = 12'000}, "narrow.wav"));
  QCOMPARE(Bandwidths().currentText(), QString());
}

void DialogQuickEntryTest::HoursAndMinutesAreFoundByTyping() {
  m_pFixture->Click(1084);
  auto& minutes = m_pFixture->Control<QComboBox>(1029);
  QTest::keyClicks(&minutes, "5");
  QCOMPARE(minutes.currentText(), QString("5"));
  QTest::keyClicks(&minutes, "9");
  QCOMPARE(minutes.currentText(), QString("59"));
}

void DialogQuickEntryTest::FrequenciesInKilohertzAreRecognised() {
  constexpr std::int64_t kRate = 96'000;
  QCOMPARE(MeantFrequency(7'100'000'000, kCentre, kRate), std::optional<std::int64_t>(7'100'000));
  QCOMPARE(MeantFrequency(7'100, kCentre, kRate), std::optional<std::int64_t>(7'100'000));
  QCOMPARE(MeantFrequency(7'100'500'000, kCentre, kRate), std::optional<std::int64_t>(7'100'500));
  QCOMPARE(MeantFrequency(7'100'000, kCentre, kRate), std::nullopt);      // recorded
  QCOMPARE(MeantFrequency(7'200'000'000, kCentre, kRate), std::nullopt);  // outside, too
  QCOMPARE(MeantFrequency(7'100'000'500, kCentre, kRate), std::nullopt);
  QCOMPARE(MeantFrequency(0, 0, kRate), std::nullopt);
  QCOMPARE(MeantFrequency(99'999'999'999, kCentre, kRate), std::nullopt);
}

void DialogQuickEntryTest::KilohertzTypedAsMegahertzAreOffered() {
  auto& field = m_pFixture->Control<CMyMFCMaskedEdit>(1010);
  QVERIFY(!Button("buttonMeant").isVisible());
  field.setFocus();
  field.selectAll();
  QTest::keyClicks(&field, "7110");
  QCOMPARE(field.Frequency(), std::int64_t{7'110'000'000});
  QVERIFY(Button("buttonMeant").isVisible());
  QCOMPARE(Button("buttonMeant").text(), QString("&Is it 7.110 MHz?"));
  QCOMPARE(Button("buttonMeant").accessibleName(), QString("7110.000 MHz is outside the recording: is it 7.110 MHz?"));
  QTest::keyClick(&m_pFixture->Dialog(), Qt::Key_I, Qt::AltModifier);
  QCOMPARE(field.Frequency(), std::int64_t{7'110'000});
  QVERIFY(!Button("buttonMeant").isVisible());
  QVERIFY(field.hasFocus());
  QCOMPARE(m_pFixture->List().RowCount(), 0);
}

void DialogQuickEntryTest::TakingWhatIsMeantChangesTheEntryThatWasJustAdded() {
  Add(7'110'000'000, "10k");
  QVERIFY(Hint().startsWith("Wholly outside"));
  QTest::mouseClick(&Button("buttonMeant"), Qt::LeftButton);
  QCOMPARE(m_pFixture->List().RowCount(), 1);
  QCOMPARE(m_pFixture->Row(0)[0], QString("7.110.000"));
  QCOMPARE(Hint(), QString());
}

void DialogQuickEntryTest::TheAddedRowIsSelectedAndShown() {
  m_pFixture->List().setFixedHeight(80);
  for (int i = 0; i < 20; ++i) Add(kCentre + 1000 * i, "10k");
  Add(kCentre - 1000, "10k");
  QCOMPARE(Selected(), std::vector<std::size_t>{0});
  Add(kCentre + 30'000, "10k");
  QCOMPARE(Selected(), std::vector<std::size_t>{21});
  CMyMFCListCtrl& list = m_pFixture->List();
  QVERIFY(list.viewport()->rect().contains(list.visualRect(list.model()->index(21, 0)).center()));
  QCOMPARE(list.CurrentRow(), 21);
  QTest::keyClick(&list, Qt::Key_Up);
  QCOMPARE(Selected(), std::vector<std::size_t>{20});
}

void DialogQuickEntryTest::ARowThatWasThereAlreadyIsSelectedInPlaceOfTheNewOne() {
  Add(kCentre, "10k");
  Add(kCentre + 5'000, "10k");
  Add(kCentre, "10k");
  QCOMPARE(m_pFixture->List().RowCount(), 2);
  QCOMPARE(Selected(), std::vector<std::size_t>{0});
}

void DialogQuickEntryTest::AllRowsOfASequenceAreSelected() {
  Add(kCentre, "20k");
  TypeBandwidth("10k");
  m_pFixture->Answers().Do([](QDialog& dialog) {
    dialog.findChild<CMyMFCMaskedEdit*>("IDC_1010")->SetFrequency(7'090'000);
    dialog.findChild<CMyMFCMaskedEdit*>("IDC_1011")->SetFrequency(7'110'000);
    QTest::keyClicks(dialog.findChild<QComboBox*>("IDC_1012"), "10");  // 10 kHz, not 100
    QTest::mouseClick(dialog.findChild<QAbstractButton*>("IDC_1"), Qt::LeftButton);
  });
  m_pFixture->Click(1016);
  QCOMPARE(m_pFixture->List().RowCount(), 4);
  QCOMPARE(Selected(), (std::vector<std::size_t>{0, 1, 3}));
}

void DialogQuickEntryTest::ADoubleClickFillsTheFieldsAndReplaceReplaces() {
  m_pFixture->Click(1013);  // 32 bit
  m_pFixture->Choose(1014, "1 GB");
  Add(7'105'000, "12.5k");
  m_pFixture->Click(1012);
  m_pFixture->Choose(1014, "100 MB");
  Add(7'080'000, "10k");
  QVERIFY(!Button("buttonReplace").isEnabled());
  DoubleClick(1);
  QCOMPARE(m_pFixture->Control<CMyMFCMaskedEdit>(1010).Frequency(), std::int64_t{7'105'000});
  QCOMPARE(Bandwidths().currentText(), QString("12.5 kHz"));
  QCOMPARE(m_pFixture->Control<QComboBox>(1014).currentText(), QString("1 GB"));
  QVERIFY(m_pFixture->Control<QAbstractButton>(1013).isChecked());
  QVERIFY(m_pFixture->Control<QAbstractButton>(1085).isChecked());
  QVERIFY(m_pFixture->Control(1010).hasFocus());
  QVERIFY(Button("buttonReplace").isEnabled());
  m_pFixture->SetFrequency(7'070'000);
  QTest::mouseClick(&Button("buttonReplace"), Qt::LeftButton);
  QCOMPARE(m_pFixture->List().RowCount(), 2);
  QCOMPARE(m_pFixture->Row(0)[0], QString("7.070.000"));  // in its new place
  QCOMPARE(m_pFixture->Row(0)[1], QString("12.500 kHz"));
  QCOMPARE(m_pFixture->Row(1)[0], QString("7.080.000"));
  QCOMPARE(Selected(), std::vector<std::size_t>{0});
  QVERIFY(!Button("buttonReplace").isEnabled());
}

void DialogQuickEntryTest::EnterAndF2EditTheSelectedRow() {
  Add(7'105'000, "10k");
  Add(7'080'000, "10k");
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_F2}) {
    m_pFixture->List().SelectRows({1});
    m_pFixture->SetFrequency(kCentre);
    QTest::keyClick(&m_pFixture->List(), key);
    QCOMPARE(m_pFixture->Control<CMyMFCMaskedEdit>(1010).Frequency(), std::int64_t{7'105'000});
    QVERIFY(Button("buttonReplace").isEnabled());
    m_pFixture->List().SelectRows({0});
  }
  QVERIFY(m_pFixture->Dialog().isVisible());
}

void DialogQuickEntryTest::F2EditsWhatWasJustAddedFromAnyField() {
  Add(7'105'000, "10k");
  for (const int id : {1009, 1010, 1011, 1014, 1015}) {
    m_pFixture->SetFrequency(kCentre);
    QVERIFY(!Button("buttonReplace").isEnabled());
    m_pFixture->Control(id).setFocus();
    QTest::keyClick(&m_pFixture->Control(id), Qt::Key_F2);
    QCOMPARE(m_pFixture->Control<CMyMFCMaskedEdit>(1010).Frequency(), std::int64_t{7'105'000});
    QVERIFY(Button("buttonReplace").isEnabled());
    m_pFixture->List().clearSelection();
    QTest::keyClick(&m_pFixture->Control(id), Qt::Key_F2);  // nothing is selected
    QVERIFY(!Button("buttonReplace").isEnabled());
    m_pFixture->List().SelectRows({0});
  }
}

void DialogQuickEntryTest::ReplacingCanBeUndone() {
  Add(7'105'000, "10k");
  DoubleClick(0);
  m_pFixture->SetFrequency(7'070'000);
  QTest::mouseClick(&Button("buttonReplace"), Qt::LeftButton);
  QCOMPARE(m_pFixture->Row(0)[0], QString("7.070.000"));
  m_pFixture->List().setFocus();
  QTest::keySequence(&m_pFixture->List(), QKeySequence::Undo);
  QTRY_COMPARE(m_pFixture->Row(0)[0], QString("7.105.000"));
  QCOMPARE(m_pFixture->List().RowCount(), 1);
}

void DialogQuickEntryTest::ReplacingKeepsTheFolderOfTheEntry() {
  Add(7'105'000, "10k");
  const QString folder = QString::fromStdString(m_pFixture->OutputFolder());
  m_pFixture->SetPath(1009, m_pFixture->Folder().Path());
  m_pFixture->List().SelectRows({0});
  DoubleClick(0);
  m_pFixture->SetFrequency(7'070'000);
  QTest::mouseClick(&Button("buttonReplace"), Qt::LeftButton);
  const QString tip = m_pFixture->List().model()->index(0, 0).data(Qt::ToolTipRole).toString();
  QVERIFY2(tip.contains("Folder: " + folder + "\n"), qPrintable(tip));
}

void DialogQuickEntryTest::TimesThatWereNotTouchedStayThoseOfTheEntry() {
  m_pFixture->Click(1084);
  m_pFixture->Choose(1029, "30");
  Add(7'105'000, "10k");
  m_pFixture->Click(1083);
  DoubleClick(0);
  // A duration is told by the moment at which it ends.
  QVERIFY(m_pFixture->Control<QAbstractButton>(1087).isChecked());
  Add(7'105'000, "10k");
  QCOMPARE(m_pFixture->List().RowCount(), 1);  // the same samples
  DoubleClick(0);
  TypeBandwidth("11k");
  QTest::mouseClick(&Button("buttonReplace"), Qt::LeftButton);
  QCOMPARE(m_pFixture->List().RowCount(), 1);
  QCOMPARE(m_pFixture->Row(0)[1], QString("11 kHz"));
  QCOMPARE(m_pFixture->Row(0)[3], test::DateText(2020, 11, 2) + " 00:29:00z");
}

void DialogQuickEntryTest::SelectingAnotherRowEndsEditing() {
  Add(7'105'000, "10k");
  Add(7'080'000, "10k");
  DoubleClick(1);
  QVERIFY(Button("buttonReplace").isEnabled());
  m_pFixture->List().SelectRows({0});
  QVERIFY(!Button("buttonReplace").isEnabled());
  DoubleClick(1);
  m_pFixture->Click(1025);
  QVERIFY(!Button("buttonReplace").isEnabled());
  DoubleClick(0);
  m_pFixture->Click(1017);
  QVERIFY(!Button("buttonReplace").isEnabled());
}

void DialogQuickEntryTest::ARefusedReplacementChangesNothing() {
  Add(7'105'000, "10k");
  Add(7'080'000, "10k");
  DoubleClick(1);
  m_pFixture->Click(1084);  // after 0 h 0 m
  m_pFixture->Answers().Give(QMessageBox::Ok);
  QTest::mouseClick(&Button("buttonReplace"), Qt::LeftButton);
  QCOMPARE(m_pFixture->Answers().Shown().back().text, QString("End duration cannot be zero."));
  QCOMPARE(m_pFixture->List().RowCount(), 2);
  QCOMPARE(m_pFixture->Row(1)[0], QString("7.105.000"));
  QVERIFY(Button("buttonReplace").isEnabled());  // to be tried again
}

void DialogQuickEntryTest::AFileDroppedAnywhereIsOpened() {
  const QString other = QString::fromStdString(m_pFixture->WriteInput({.nCentre = 3'500'000}, "other.wav"));
  const QString first = QString::fromStdString(m_pFixture->WriteInput());
  for (QWidget* pTarget : {static_cast<QWidget*>(&m_pFixture->Dialog()), &m_pFixture->Control(1010),
                           &m_pFixture->Control(1000), static_cast<QWidget*>(Bandwidths().lineEdit())}) {
    QVERIFY(Drop(*pTarget, other));
    QTRY_COMPARE(m_pFixture->Text(1001), QString("3.500 MHz"));
    QVERIFY(Drop(*pTarget, first));
    QTRY_COMPARE(m_pFixture->Text(1001), QString("7.100 MHz"));
  }
  QMimeData text;
  text.setText("7.09 MHz");
  QDragEnterEvent enter({5, 5}, Qt::CopyAction, &text, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(&m_pFixture->Control(1010), &enter);
  QDropEvent drop({5, 5}, Qt::CopyAction, &text, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(&m_pFixture->Control(1010), &drop);
  QCOMPARE(m_pFixture->Control<CMyMFCMaskedEdit>(1010).Frequency(), std::int64_t{7'090'000});
}

void DialogQuickEntryTest::AFolderDroppedAnywhereTakesTheOutputs() {
  const QString folder = QString::fromStdString(m_pFixture->Folder().Path());
  QVERIFY(Drop(m_pFixture->Dialog(), folder));
  QTRY_COMPARE(QDir(m_pFixture->Control<CMyMFCEditBrowseCtrl>(1009).Path()), QDir(folder));
  QCOMPARE(m_pFixture->Text(1001), QString("7.100 MHz"));
}

void DialogQuickEntryTest::TheFolderFieldTakesTheFolderOfAFile() {
  m_pFixture->SetPath(1009, "");
  QVERIFY(Drop(m_pFixture->Control(1009), QString::fromStdString(m_pFixture->Folder() / "rec.wav")));
  QTRY_COMPARE(m_pFixture->Control<CMyMFCEditBrowseCtrl>(1009).Path(),
               QString::fromStdString(m_pFixture->Folder().Path()));
  const QString folder = QString::fromStdString(m_pFixture->OutputFolder());
  QVERIFY(Drop(m_pFixture->Control(1009), folder));
  QTRY_COMPARE(m_pFixture->Control<CMyMFCEditBrowseCtrl>(1009).Path(), folder);
  QCOMPARE(m_pFixture->Text(1001), QString("7.100 MHz"));
}

void DialogQuickEntryTest::TheRecordingThatIsOpenKeepsItsListWhenItIsDroppedAgain() {
  Add(kCentre, "10k");
  const std::string path = m_pFixture->Folder() / "rec.wav";
  QVERIFY(Drop(m_pFixture->Dialog(), QString::fromStdString(path)));
  QTRY_COMPARE(m_pFixture->Log().last(), QString::fromStdString("Open already: " + path));
  QCOMPARE(m_pFixture->List().RowCount(), 1);
  // Another recording has taken its place.
  m_pFixture->WriteInput({.nCentre = 3'500'000, .nSeconds = 5});
  QVERIFY(Drop(m_pFixture->Dialog(), QString::fromStdString(path)));
  QTRY_COMPARE(m_pFixture->Text(1001), QString("3.500 MHz"));
  QCOMPARE(m_pFixture->List().RowCount(), 0);
}

void DialogQuickEntryTest::AFileThatCouldNotBeReadIsReadAgainWhenItIsDroppedAgain() {
  const QString path = QString::fromStdString(m_pFixture->Folder() / "later.wav");
  m_pFixture->SetPath(1000, path.toStdString());
  QCOMPARE(m_pFixture->Text(1001), QString("-"));
  m_pFixture->WriteInput({}, "later.wav");
  QVERIFY(Drop(m_pFixture->Dialog(), path));
  QTRY_COMPARE(m_pFixture->Text(1001), QString("7.100 MHz"));
}

void DialogQuickEntryTest::AJobDroppedAnywhereIsOpened() {
  const std::string path = m_pFixture->Folder() / "two.JSON";
  std::ofstream(test::PathOf(path)) << R"({"entries": [{"frequency": 7090000, "bandwidth": 10000},
                                                       {"frequency": 7110000, "bandwidth": 10000}]})";
  QVERIFY(Drop(m_pFixture->Control(1000), QString::fromStdString(path)));
  QTRY_COMPARE(m_pFixture->List().RowCount(), 2);
  QCOMPARE(m_pFixture->Text(1001), QString("7.100 MHz"));
}

void DialogQuickEntryTest::AQuotedPathIsOpened() {
  const std::string path = m_pFixture->WriteInput({.nCentre = 3'500'000}, "it's two words.wav");
  const std::string url = QUrl::fromLocalFile(QString::fromStdString(path)).toEncoded().toStdString();
  for (const std::string& typed : {"\"" + path + "\"", "'" + path + "' ", url}) {
    m_pFixture->SetPath(1000, "");
    QCOMPARE(m_pFixture->Text(1001), QString("-"));
    m_pFixture->SetPath(1000, typed);
    QCOMPARE(m_pFixture->Text(1001), QString("3.500 MHz"));
  }
  std::string saved;
  QVERIFY(m_pFixture->Settings().Read("InputFile", saved));
  QCOMPARE(saved, path);
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::DialogQuickEntryTest)
#include "dialog_quick_entry_test.moc"
