#include <QSpinBox>
#include <QTreeWidget>

#include "engine/offered_bandwidths.h"
#include "ui/spectrum_fixture.h"
#include "ui/ui_test.h"

namespace carvello {

using test::CSpectrumFixture;
using test::CSpectrumSuite;

class SpectrumSignalsTest : public CSpectrumSuite {
  Q_OBJECT

 private slots:
  void LooksForSignalsInWhatIsInView();
  void ShowsWhatWasFound();
  void ASelectedSignalBecomesAnEntry();
  void AnEntryHoldsASignalThatARasterMoved();
  void AllBecomeEntriesAndOneUndoTakesThemBack();
  void EnterInTheListTakesASignal();
  void AClickOnAMarkSelectsItsRow();
  void ASearchCanBeStopped();
  void WhatIsOutOfViewIsLeftOut();
  void NothingFoundIsTold();
  void AProblemIsTold();
  void AnotherRecordingForgetsThem();

 private:
  void Find() {
    m_pFixture->Press("buttonFind");
    m_pFixture->Settle();
  }
  QTreeWidget& List() { return m_pFixture->Part<QTreeWidget>("listSignals"); }
};

namespace {

std::vector<SFoundSignal> Two() {
  const double start = test::kRecordingStart;
  return {{7'080'000.0, 8'000.0, -50.0, 30.0, start + 100.0, start + 400.0, 8'000.0},
          {7'115'000.0, 4'000.0, -70.0, 20.0, start, start + 600.0, 4'000.0}};
}

}  // namespace

void SpectrumSignalsTest::LooksForSignalsInWhatIsInView() {
  m_pFixture->Part<QSpinBox>("spinAbove").setValue(15);
  m_pFixture->ChooseIn("comboRaster", "5 kHz");
  m_pFixture->LookAt(7'090'000.0, 300.0, 50'000.0, 200.0);
  Find();
  QCOMPARE(m_pFixture->Fake().searches.size(), std::size_t{1});
  const SSignalSearch& search = m_pFixture->Fake().searches[0];
  QCOMPARE(search.dFirstFrame, 200.0 * CSpectrumFixture::kRate);
  QCOMPARE(search.dFrames, 200.0 * CSpectrumFixture::kRate);
  QCOMPARE(search.dAbove, 15.0);
  QCOMPARE(search.dRaster, 5'000.0);
}

void SpectrumSignalsTest::ShowsWhatWasFound() {
  m_pFixture->Fake().found = Two();
  const QImage before = m_pFixture->Waterfall().grab().toImage();
  Find();
  QCOMPARE(List().topLevelItemCount(), 2);
  QCOMPARE(List().topLevelItem(0)->text(0), QString("7.0800"));
  QCOMPARE(List().topLevelItem(0)->text(1), QString("8 kHz"));
  QCOMPARE(List().topLevelItem(0)->text(2), QString("30.0"));
  QCOMPARE(m_pFixture->TextOf("labelSignals"), QString("2 signals found"));
  QCOMPARE(m_pFixture->Scene().Marks().size(), std::size_t{2});
  QVERIFY(before != m_pFixture->Waterfall().grab().toImage());
  QCOMPARE(m_pFixture->List().RowCount(), 0);
}

void SpectrumSignalsTest::ASelectedSignalBecomesAnEntry() {
  m_pFixture->Fake().found = Two();
  Find();
  QVERIFY(!m_pFixture->Part("buttonTake").isEnabled());
  List().topLevelItem(1)->setSelected(true);
  QCOMPARE(m_pFixture->Scene().ChosenMark().value_or(9), std::size_t{1});
  m_pFixture->Press("buttonTake");
  QCOMPARE(m_pFixture->List().RowCount(), 1);
  const SCut cut = m_pFixture->Scene().Bands().at(0).cut;
  QCOMPARE(cut, (SCut{7'115'000, 5'000, {}, {}}));  // a tenth wider than 4 kHz at least
}

void SpectrumSignalsTest::AnEntryHoldsASignalThatARasterMoved() {
  m_pFixture->Fake().found = Two();
  m_pFixture->Fake().found[1].dHolding = 8'200.0;
  Find();
  List().topLevelItem(1)->setSelected(true);
  m_pFixture->Press("buttonTake");
  QCOMPARE(m_pFixture->Scene().Bands().at(0).cut.nFrequency, 7'115'000);
  QCOMPARE(m_pFixture->Scene().Bands().at(0).cut.nBandwidth, BandwidthForSignal(8'200.0, CSpectrumFixture::kRate));
}

void SpectrumSignalsTest::AllBecomeEntriesAndOneUndoTakesThemBack() {
  m_pFixture->Fake().found = Two();
  Find();
  m_pFixture->Press("buttonTakeAll");
  QCOMPARE(m_pFixture->List().RowCount(), 2);
  m_pFixture->Key(Qt::Key_Z, Qt::ControlModifier);
  QCOMPARE(m_pFixture->List().RowCount(), 0);
}

void SpectrumSignalsTest::EnterInTheListTakesASignal() {
  m_pFixture->Fake().found = Two();
  Find();
  List().setFocus();
  List().setCurrentItem(List().topLevelItem(0));
  QTest::keyClick(&List(), Qt::Key_Return);
  QCOMPARE(m_pFixture->List().RowCount(), 1);
  QCOMPARE(m_pFixture->Scene().Bands().at(0).cut.nFrequency, 7'080'000);
}

void SpectrumSignalsTest::AClickOnAMarkSelectsItsRow() {
  m_pFixture->Fake().found = Two();
  Find();
  QTest::mouseClick(&m_pFixture->Waterfall(), Qt::LeftButton, {}, m_pFixture->Spot(7'080'000.0, 250.0));
  QVERIFY(List().topLevelItem(0)->isSelected() && !List().topLevelItem(1)->isSelected());
  QVERIFY(m_pFixture->List().SelectedRows().empty());
}

void SpectrumSignalsTest::ASearchCanBeStopped() {
  m_pFixture->Fake().bHoldSearch = true;
  m_pFixture->Fake().found = Two();
  Find();
  QCOMPARE(m_pFixture->TextOf("labelSignals"), QString("Looking… 50 %"));
  const QString stop = m_pFixture->Part<QAbstractButton>("buttonFind").text();
  QVERIFY(stop.contains("Stop"));
  for (const QAbstractButton* pOther : m_pFixture->Window().findChildren<QAbstractButton*>()) {
    if (pOther->objectName() == "buttonFind" || QKeySequence::mnemonic(pOther->text()).isEmpty()) continue;
    QVERIFY2(QKeySequence::mnemonic(pOther->text()) != QKeySequence::mnemonic(stop), qPrintable(pOther->text()));
  }
  Find();
  QCOMPARE(m_pFixture->Fake().nEndedSearches, 1);
  QCOMPARE(m_pFixture->TextOf("labelSignals"), QString("Stopped"));
  QVERIFY(m_pFixture->Scene().Marks().empty());
  m_pFixture->Fake().bHoldSearch = false;
  Find();
  QCOMPARE(List().topLevelItemCount(), 2);
}

void SpectrumSignalsTest::WhatIsOutOfViewIsLeftOut() {
  m_pFixture->Fake().found = Two();
  m_pFixture->LookAt(7'080'000.0, 300.0, 20'000.0, 600.0);
  Find();
  QCOMPARE(List().topLevelItemCount(), 1);
  QCOMPARE(m_pFixture->TextOf("labelSignals"), QString("1 signal found"));
}

void SpectrumSignalsTest::NothingFoundIsTold() {
  Find();
  QCOMPARE(m_pFixture->TextOf("labelSignals"), QString("Nothing stands out of the noise"));
  QVERIFY(!m_pFixture->Part("buttonTakeAll").isEnabled());
}

void SpectrumSignalsTest::AProblemIsTold() {
  m_pFixture->Fake().strSearchProblem = "rec.wav: cannot be read";
  Find();
  QCOMPARE(m_pFixture->TextOf("labelSignals"), QString("rec.wav: cannot be read"));
}

void SpectrumSignalsTest::AnotherRecordingForgetsThem() {
  m_pFixture->Fake().found = Two();
  Find();
  m_pFixture->SetPath(1000, m_pFixture->WriteInput({.nSeconds = 60}, "other.wav"));
  QCOMPARE(List().topLevelItemCount(), 0);
  QVERIFY(m_pFixture->Scene().Marks().empty());
  QCOMPARE(m_pFixture->TextOf("labelSignals"), QString());
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::SpectrumSignalsTest)
#include "spectrum_signals_test.moc"
