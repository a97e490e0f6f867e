#include <QApplication>
#include <QMouseEvent>
#include <QTimeEdit>
#include <cmath>

#include "ui/spectrum_fixture.h"
#include "ui/ui_test.h"

namespace carvello {

using test::CSpectrumSuite;

class SpectrumCutTest : public CSpectrumSuite {
  Q_OBJECT

 private slots:
  void ADragFillsTheFields();
  void ADragAlongTheFrequenciesIsForTheWholeRecording();
  void ADragOverTheFrequencyAxisOrTheLineIsForTheWholeRecording();
  void ADragIsShownWhileItGoesOn();
  void EnterAddsIt();
  void TheAddButtonAddsIt();
  void AddingNeedsAnOutputFolder();
  void EscapeDropsItAndPutsTheFieldsBack();
  void EscapeEndsADragThatGoesOn();
  void TheRulesAreTheListsOwn();
  void WhatIsShownCountsAlsoWhenTheFieldsWereChanged();
  void ShiftArrowsChooseFromTheCursorOn();
  void EdgesOfTheChosenBandAreDragged();
  void KeysMoveTheEdgesOfTheChosenBand();
  void SnapsToTheRaster();
  void SnapsToTheCarrier();
  void WithoutACarrierTheMiddleOfTheDragStays();
  void CGoesToTheCarrierUnderTheCursor();
  void UndoTakesBackOneStepAfterTheOther();
  void NothingIsChosenInARun();

 private:
  SCut Chosen() { return m_pFixture->Scene().Pending().value_or(SCut{}); }
  QString Time(int id) { return m_pFixture->Control<QTimeEdit>(id).time().toString("HH:mm:ss"); }
  bool IsChecked(int id) { return m_pFixture->Control<QAbstractButton>(id).isChecked(); }
  QString Bandwidth() { return m_pFixture->Control<QComboBox>(1011).currentText(); }
};

// The recording starts at 23:59:00 UTC.
void SpectrumCutTest::ADragFillsTheFields() {
  m_pFixture->LookAt(7'090'000.0, 120.0, 9'600.0, 120.0);
  m_pFixture->Drag(7'088'000.0, 90.5, 7'093'300.0, 149.5);
  const SCut cut = Chosen();
  QVERIFY2(std::abs(cut.nFrequency - 7'090'650) <= 10, qPrintable(QString::number(cut.nFrequency)));
  QCOMPARE(cut.nBandwidth, 6'000U);
  QCOMPARE(m_pFixture->Control<CMyMFCMaskedEdit>(1010).Frequency(), cut.nFrequency);
  QCOMPARE(Bandwidth(), QString("6 kHz"));
  QVERIFY(IsChecked(1086) && IsChecked(1087));
  QCOMPARE(Time(1103), QString("00:00:30"));
  QCOMPARE(Time(1104), QString("00:01:30"));
  QVERIFY2(m_pFixture->TextOf("labelCut").contains("BW 6 kHz, 1 min 00 s"), qPrintable(m_pFixture->TextOf("labelCut")));
  QCOMPARE(m_pFixture->List().RowCount(), 0);
}

void SpectrumCutTest::ADragAlongTheFrequenciesIsForTheWholeRecording() {
  m_pFixture->Drag(7'075'000.0, 300.0, 7'085'000.0, 300.0);
  QVERIFY(Chosen().nBandwidth == 10'000U || Chosen().nBandwidth == 11'000U);  // by a pixel
  QVERIFY(!Chosen().tStart && !Chosen().tEnd);
  QVERIFY(IsChecked(1085) && IsChecked(1083));
  QVERIFY(m_pFixture->TextOf("labelCut").endsWith("whole recording"));
}

void SpectrumCutTest::ADragOverTheFrequencyAxisOrTheLineIsForTheWholeRecording() {
  for (const char* part : {"frequencyAxis", "spectrumLine"}) {
    m_pFixture->Key(Qt::Key_Escape);
    QVERIFY(!m_pFixture->Scene().Pending());
    QWidget& widget = m_pFixture->Part(part);
    m_pFixture->Drag(widget, {m_pFixture->Spot(7'075'000.0, 0.0).x(), 5}, {m_pFixture->Spot(7'084'500.0, 0.0).x(), 15});
    QVERIFY(m_pFixture->Scene().Pending());
    QVERIFY(!Chosen().tStart && !Chosen().tEnd);
    QVERIFY(std::abs(Chosen().nFrequency - 7'079'750) < 150);
  }
}

void SpectrumCutTest::ADragIsShownWhileItGoesOn() {
  QWidget& waterfall = m_pFixture->Waterfall();
  const QPoint from = m_pFixture->Spot(7'075'000.0, 100.0);
  const QPoint to = m_pFixture->Spot(7'085'000.0, 200.0);
  QTest::mousePress(&waterfall, Qt::LeftButton, {}, from);
  QMouseEvent move(QEvent::MouseMove, to, waterfall.mapToGlobal(to), Qt::NoButton, Qt::LeftButton, {});
  QApplication::sendEvent(&waterfall, &move);
  QVERIFY(m_pFixture->Scene().Dragged() && m_pFixture->Scene().Pending());
  QVERIFY(IsChecked(1085));  // the fields wait for the end
  QTest::mouseRelease(&waterfall, Qt::LeftButton, {}, to);
  QVERIFY(!m_pFixture->Scene().Dragged());
  QVERIFY(IsChecked(1086));
}

void SpectrumCutTest::EnterAddsIt() {
  m_pFixture->Drag(7'075'000.0, 100.0, 7'085'000.0, 200.0);
  const SCut cut = Chosen();
  m_pFixture->Key(Qt::Key_Return);
  QCOMPARE(m_pFixture->List().RowCount(), 1);
  QVERIFY(!m_pFixture->Scene().Pending());
  QCOMPARE(m_pFixture->Scene().Bands().size(), std::size_t{1});
  QCOMPARE(m_pFixture->Scene().Bands()[0].cut, cut);
  m_pFixture->Key(Qt::Key_Return);  // there is nothing more
  QCOMPARE(m_pFixture->List().RowCount(), 1);
}

void SpectrumCutTest::TheAddButtonAddsIt() {
  QVERIFY(!m_pFixture->Part("buttonAdd").isEnabled() && !m_pFixture->Part("buttonDrop").isEnabled());
  m_pFixture->Drag(7'075'000.0, 100.0, 7'085'000.0, 200.0);
  QVERIFY(m_pFixture->Part("buttonAdd").isEnabled());
  m_pFixture->Press("buttonAdd");
  QCOMPARE(m_pFixture->List().RowCount(), 1);
  m_pFixture->Drag(7'075'000.0, 300.0, 7'085'000.0, 400.0);
  m_pFixture->Press("buttonDrop");
  QVERIFY(!m_pFixture->Scene().Pending());
  QCOMPARE(m_pFixture->List().RowCount(), 1);
}

void SpectrumCutTest::AddingNeedsAnOutputFolder() {
  test::ForgetSettings();
  m_pFixture->Open(m_pFixture->WriteInput());
  QTest::mouseClick(m_pFixture->Dialog().findChild<QAbstractButton*>("buttonSpectrum"), Qt::LeftButton);
  QVERIFY(QTest::qWaitForWindowActive(&m_pFixture->Window()));
  m_pFixture->Settle();
  m_pFixture->Drag(7'075'000.0, 100.0, 7'085'000.0, 200.0);
  QVERIFY(m_pFixture->Scene().Pending());
  QVERIFY(!m_pFixture->Part("buttonAdd").isEnabled());
  QVERIFY(m_pFixture->TextOf("labelCut").endsWith("Choose an output folder to add it"));
  m_pFixture->Key(Qt::Key_Return);
  QCOMPARE(m_pFixture->List().RowCount(), 0);
  m_pFixture->SetPath(1009, m_pFixture->OutputFolder());
  QVERIFY(m_pFixture->Part("buttonAdd").isEnabled());
}

void SpectrumCutTest::EscapeDropsItAndPutsTheFieldsBack() {
  m_pFixture->SetFrequency(7'123'456);
  m_pFixture->Choose(1011, "2 kHz");
  m_pFixture->Drag(7'075'000.0, 100.0, 7'085'000.0, 200.0);
  m_pFixture->Drag(7'065'000.0, 100.0, 7'075'000.0, 200.0);
  m_pFixture->Key(Qt::Key_Escape);
  QVERIFY(!m_pFixture->Scene().Pending());
  QCOMPARE(m_pFixture->Control<CMyMFCMaskedEdit>(1010).Frequency(), 7'123'456);
  QCOMPARE(Bandwidth(), QString("2 kHz"));
  QVERIFY(IsChecked(1085) && IsChecked(1083));
  QVERIFY(m_pFixture->Window().isVisible());
}

void SpectrumCutTest::EscapeEndsADragThatGoesOn() {
  QWidget& waterfall = m_pFixture->Waterfall();
  const QPoint from = m_pFixture->Spot(7'075'000.0, 100.0);
  const QPoint to = m_pFixture->Spot(7'085'000.0, 200.0);
  QTest::mousePress(&waterfall, Qt::LeftButton, {}, from);
  QMouseEvent move(QEvent::MouseMove, to, waterfall.mapToGlobal(to), Qt::NoButton, Qt::LeftButton, {});
  QApplication::sendEvent(&waterfall, &move);
  m_pFixture->Key(Qt::Key_Escape);
  QVERIFY(!m_pFixture->Scene().Pending() && !m_pFixture->Scene().Dragged());
  QTest::mouseRelease(&waterfall, Qt::LeftButton, {}, to);
  QVERIFY(!m_pFixture->Scene().Pending());
  QVERIFY(IsChecked(1085));
}

// The same entry again is told by the dialog's own hint.
void SpectrumCutTest::TheRulesAreTheListsOwn() {
  m_pFixture->Drag(7'075'000.0, 300.0, 7'085'000.0, 300.0);
  const SCut cut = Chosen();
  m_pFixture->Key(Qt::Key_Return);
  emit m_pFixture->Window().AddPressed(cut);
  QCOMPARE(m_pFixture->List().RowCount(), 1);
  QVERIFY(m_pFixture->Dialog().findChild<QLabel*>("labelHint")->text().contains("n the list already"));
}

void SpectrumCutTest::WhatIsShownCountsAlsoWhenTheFieldsWereChanged() {
  m_pFixture->Drag(7'075'000.0, 300.0, 7'085'000.0, 300.0);
  const SCut cut = Chosen();
  m_pFixture->SetFrequency(7'111'000);
  m_pFixture->Key(Qt::Key_Return);
  QCOMPARE(m_pFixture->Scene().Bands().at(0).cut, cut);
}

void SpectrumCutTest::ShiftArrowsChooseFromTheCursorOn() {
  m_pFixture->LookAt(7'080'000.0, 300.0, 9'600.0, 120.0);
  for (int i = 0; i < 10; ++i) m_pFixture->Key(Qt::Key_Right, Qt::ShiftModifier);
  QVERIFY(m_pFixture->Scene().Pending());
  QVERIFY(!Chosen().tStart && !Chosen().tEnd);  // along the frequencies only
  QVERIFY(Chosen().nFrequency > 7'080'000);
  for (int i = 0; i < 10; ++i) m_pFixture->Key(Qt::Key_Down, Qt::ShiftModifier);
  QVERIFY(Chosen().tStart && Chosen().tEnd);
  QCOMPARE(*Chosen().tStart, test::kRecordingStart + 300);
  QVERIFY(IsChecked(1086) && IsChecked(1087));
  m_pFixture->Key(Qt::Key_Enter, Qt::KeypadModifier);
  QCOMPARE(m_pFixture->List().RowCount(), 1);
}

void SpectrumCutTest::EdgesOfTheChosenBandAreDragged() {
  m_pFixture->LookAt(7'080'000.0, 300.0, 40'000.0, 300.0);
  m_pFixture->Drag(7'075'100.0, 250.0, 7'084'900.0, 350.0);
  const SCut before = Chosen();
  const SSpan frequencies = FrequenciesOf(before);
  m_pFixture->Drag(frequencies.dTo, 300.0, frequencies.dTo + 5'000.0, 300.0);
  QVERIFY(Chosen().nBandwidth > before.nBandwidth);
  QVERIFY(std::abs(FrequenciesOf(Chosen()).dFrom - frequencies.dFrom) <= 1.0);
  m_pFixture->Drag(7'080'000.0, static_cast<double>(*before.tEnd - test::kRecordingStart), 7'080'000.0, 400.0);
  QVERIFY(std::abs(*Chosen().tEnd - test::kRecordingStart - 400) <= 1);
  QCOMPARE(Chosen().tStart, before.tStart);
  QCOMPARE(m_pFixture->Control<QTimeEdit>(1104).time().minute(), 5);
}

void SpectrumCutTest::KeysMoveTheEdgesOfTheChosenBand() {
  m_pFixture->LookAt(7'080'000.0, 300.0, 40'000.0, 300.0);
  m_pFixture->Drag(7'075'100.0, 250.0, 7'084'900.0, 350.0);
  const SCut before = Chosen();
  m_pFixture->Key(Qt::Key_Right, Qt::AltModifier);
  QCOMPARE(Chosen().nBandwidth, before.nBandwidth + 1'000);
  m_pFixture->Key(Qt::Key_Left, Qt::AltModifier | Qt::ShiftModifier);
  QCOMPARE(Chosen().nBandwidth, before.nBandwidth + 2'000);
  m_pFixture->Key(Qt::Key_Left, Qt::AltModifier);
  QCOMPARE(Chosen().nBandwidth, before.nBandwidth + 1'000);
  m_pFixture->Key(Qt::Key_Down, Qt::AltModifier);
  QCOMPARE(*Chosen().tEnd, *before.tEnd + 1);
  m_pFixture->Key(Qt::Key_Up, Qt::AltModifier | Qt::ShiftModifier);
  QCOMPARE(*Chosen().tStart, *before.tStart - 1);
}

void SpectrumCutTest::SnapsToTheRaster() {
  m_pFixture->ChooseIn("comboRaster", "9 kHz");
  m_pFixture->LookAt(7'080'000.0, 300.0, 40'000.0, 300.0);
  m_pFixture->Drag(7'077'000.0, 300.0, 7'083'000.0, 300.0);
  QCOMPARE(Chosen().nFrequency % 9'000, 0);
  QVERIFY(FrequenciesOf(Chosen()).dFrom <= 7'077'050.0 && FrequenciesOf(Chosen()).dTo >= 7'082'950.0);
}

void SpectrumCutTest::SnapsToTheCarrier() {
  m_pFixture->Fake().carrier = -20'000.0 + 123.0;
  m_pFixture->SetChecked("checkCarrier", true);
  m_pFixture->Drag(7'076'000.0, 300.0, 7'083'000.0, 300.0);
  m_pFixture->Settle();
  QCOMPARE(Chosen().nFrequency, 7'080'123);
  QCOMPARE(m_pFixture->Control<CMyMFCMaskedEdit>(1010).Frequency(), 7'080'123);
}

void SpectrumCutTest::WithoutACarrierTheMiddleOfTheDragStays() {
  m_pFixture->SetChecked("checkCarrier", true);
  m_pFixture->Drag(7'076'000.0, 300.0, 7'084'000.0, 300.0);
  m_pFixture->Settle();
  QVERIFY(std::abs(Chosen().nFrequency - 7'080'000) < 150);
  QVERIFY(IsChecked(1085));
}

void SpectrumCutTest::CGoesToTheCarrierUnderTheCursor() {
  m_pFixture->Fake().carrier = -19'990.0;
  m_pFixture->LookAt(7'080'000.0, 300.0, 1'000.0, 60.0);
  m_pFixture->Key(Qt::Key_Right);
  m_pFixture->Key(Qt::Key_C);
  m_pFixture->Settle();
  QCOMPARE(m_pFixture->Scene().Cursor()->dFrequency, 7'080'010.0);
}

void SpectrumCutTest::UndoTakesBackOneStepAfterTheOther() {
  m_pFixture->SetFrequency(7'123'456);
  m_pFixture->Drag(7'075'000.0, 100.0, 7'085'000.0, 200.0);
  const SCut first = Chosen();
  m_pFixture->Drag(7'065'000.0, 100.0, 7'075'000.0, 200.0);
  const SCut second = Chosen();
  m_pFixture->Key(Qt::Key_Return);
  m_pFixture->Key(Qt::Key_Z, Qt::ControlModifier);
  QCOMPARE(m_pFixture->List().RowCount(), 0);
  QCOMPARE(Chosen(), second);
  m_pFixture->Key(Qt::Key_Z, Qt::ControlModifier);
  QCOMPARE(Chosen(), first);
  QCOMPARE(m_pFixture->Control<CMyMFCMaskedEdit>(1010).Frequency(), first.nFrequency);
  m_pFixture->Key(Qt::Key_Z, Qt::ControlModifier);
  QVERIFY(!m_pFixture->Scene().Pending());
  QCOMPARE(m_pFixture->Control<CMyMFCMaskedEdit>(1010).Frequency(), 7'123'456);
  QCOMPARE(m_pFixture->Dialog().m_nBeeps, 0);
  m_pFixture->Key(Qt::Key_Z, Qt::ControlModifier);
  QCOMPARE(m_pFixture->Dialog().m_nBeeps, 1);
  for (int i = 0; i < 3; ++i) m_pFixture->Key(Qt::Key_Y, Qt::ControlModifier);
  QCOMPARE(m_pFixture->List().RowCount(), 1);
  QVERIFY(!m_pFixture->Scene().Pending());
}

void SpectrumCutTest::NothingIsChosenInARun() {
  m_pFixture->Window().SetAllowed(false, false);
  m_pFixture->Drag(7'075'000.0, 100.0, 7'085'000.0, 200.0);
  m_pFixture->Key(Qt::Key_Right, Qt::ShiftModifier);
  QVERIFY(!m_pFixture->Scene().Pending());
  m_pFixture->Key(Qt::Key_Plus);  // but looked at
  QVERIFY(!m_pFixture->Scene().Frames().ShowsAll());
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::SpectrumCutTest)
#include "spectrum_cut_test.moc"
