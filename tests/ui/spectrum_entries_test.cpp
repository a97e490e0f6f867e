#include <cmath>

#include "support/sparse_file.h"
#include "support/temp_folder.h"
#include "ui/spectrum_fixture.h"
#include "ui/ui_test.h"

namespace carvello {

using test::CSpectrumSuite;

class SpectrumEntriesTest : public CSpectrumSuite {
  Q_OBJECT

 private slots:
  void EntriesAreDrawnAsBands();
  void WhatTheRecordingNotesIsDrawnAndTold();
  void AClickOnABandSelectsItsRow();
  void CtrlClickSelectsSeveral();
  void ARowThatIsSelectedSelectsItsBand();
  void NGoesFromBandToBand();
  void DeleteRemovesTheSelectedOnes();
  void DraggingAnEdgeChangesTheEntry();
  void KeysChangeTheSelectedEntry();
  void AChangedEntryKeepsWhatElseItWas();
  void AChangeThatTheListRefusesChangesNothing();
  void UndoAndRedoGoThroughTheList();
  void UndoInTheListItself();
  void UndoOfADeletionKeepsTheStates();
  void AnotherInputForgetsWhatCouldBeUndone();

 private:
  // Two entries: 7.080 MHz for two minutes, and 7.120 MHz for all of it.
  void AddTwo();
};

void SpectrumEntriesTest::AddTwo() {
  m_pFixture->Drag(7'076'000.0, 200.0, 7'084'000.0, 320.0);
  m_pFixture->Key(Qt::Key_Return);
  m_pFixture->Drag(7'116'000.0, 300.0, 7'124'000.0, 300.0);
  m_pFixture->Key(Qt::Key_Return);
  QCOMPARE(m_pFixture->List().RowCount(), 2);
}

void SpectrumEntriesTest::EntriesAreDrawnAsBands() {
  const QImage before = m_pFixture->Waterfall().grab().toImage();
  AddTwo();
  m_pFixture->Scene().SetCursor(std::nullopt);
  const QImage after = m_pFixture->Waterfall().grab().toImage();
  const SSpan band = FrequenciesOf(m_pFixture->Scene().Bands()[0].cut);
  const double ratio = m_pFixture->Waterfall().devicePixelRatioF();
  const auto differs = [&](double frequency, double second) {
    const QPoint at = m_pFixture->Spot(frequency, second) * ratio;
    return before.copy(at.x() - 2, at.y(), 5, 1) != after.copy(at.x() - 2, at.y(), 5, 1);
  };
  QVERIFY(differs(band.dFrom, 260.0) && differs(band.dTo, 260.0));
  QVERIFY(!differs(band.dFrom, 100.0));  // before its start
  QVERIFY(!differs(7'100'000.0, 260.0));
}

void SpectrumEntriesTest::WhatTheRecordingNotesIsDrawnAndTold() {
  const std::string data = m_pFixture->Folder() / "noted.sigmf-data";
  test::WriteWholeFile(data, std::string());
  test::ExtendFile(data, 2ULL * 96'000 * 600);
  const std::string meta = m_pFixture->Folder() / "noted.sigmf-meta";
  const std::string begin = R"({"global": {"core:version": "1.2.5", "core:datatype": "ci8", "core:sample_rate": 96000},
    "captures": [{"core:sample_start": 0, "core:frequency": 7100000, "core:datetime": "2026-11-21T12:00:00Z"}],
    "annotations": [)";
  // From second 200 to 300; and one of all frequencies, without a label.
  test::WriteWholeFile(meta, begin + R"(
    {"core:sample_start": 19200000, "core:sample_count": 9600000, "core:label": "beacon",
     "core:freq_lower_edge": 7080000, "core:freq_upper_edge": 7090000},
    {"core:sample_start": 48000000, "core:sample_count": 960000, "core:comment": "storm"}]})");
  m_pFixture->SetPath(1000, meta);
  auto& scene = m_pFixture->Scene();
  QCOMPARE(scene.Notes().size(), 2U);
  QVERIFY(scene.Bands().empty());
  QCOMPARE(scene.Notes()[0].strText, QString("beacon"));
  QCOMPARE(scene.Notes()[0].frequencies.dFrom, 7'080'000.0);
  QCOMPARE(scene.Notes()[0].frames.dTo, 28'800'000.0);
  QCOMPARE(scene.Notes()[1].frequencies.Length(), 96'000.0);
  QCOMPARE(scene.Notes()[1].strText, QString("storm"));
  scene.SetCursor(SCursor{7'085'000.0, 24'000'000.0});
  QVERIFY2(scene.Reading().endsWith(" - beacon"), qPrintable(scene.Reading()));
  scene.SetCursor(SCursor{7'095'000.0, 24'000'000.0});
  QVERIFY(!scene.Reading().contains("beacon"));
  // Drawn: with and without them the picture differs at the edges, and nowhere else.
  scene.SetCursor(std::nullopt);
  m_pFixture->Settle();
  const QImage with = m_pFixture->Waterfall().grab().toImage();
  const std::vector<SNote> notes = scene.Notes();
  scene.SetNotes({});
  const QImage without = m_pFixture->Waterfall().grab().toImage();
  const double ratio = m_pFixture->Waterfall().devicePixelRatioF();
  const auto differs = [&](double frequency, double second) {
    const QPoint at = m_pFixture->Spot(frequency, second) * ratio;
    return with.copy(at.x() - 2, at.y() - 8, 5, 17) != without.copy(at.x() - 2, at.y() - 8, 5, 17);
  };
  QVERIFY(differs(7'080'000.0, 240.0) && differs(7'090'000.0, 240.0));
  QVERIFY(!differs(7'080'000.0, 100.0));
  // It is no entry: nothing is selected, and none is added.
  scene.SetNotes(notes);
  QTest::mouseClick(&m_pFixture->Waterfall(), Qt::LeftButton, {}, m_pFixture->Spot(7'085'000.0, 240.0));
  QVERIFY(m_pFixture->List().SelectedRows().empty());
  QCOMPARE(m_pFixture->List().RowCount(), 0);
  // Another recording has none.
  m_pFixture->SetPath(1000, m_pFixture->WriteInput({}, "other.wav"));
  QVERIFY(scene.Notes().empty());
}

void SpectrumEntriesTest::AClickOnABandSelectsItsRow() {
  AddTwo();
  QTest::mouseClick(&m_pFixture->Waterfall(), Qt::LeftButton, {}, m_pFixture->Spot(7'120'000.0, 500.0));
  QCOMPARE(m_pFixture->List().SelectedRows(), std::vector<std::size_t>{1});
  QTest::mouseClick(&m_pFixture->Waterfall(), Qt::LeftButton, {}, m_pFixture->Spot(7'080'000.0, 260.0));
  QCOMPARE(m_pFixture->List().SelectedRows(), std::vector<std::size_t>{0});
  QTest::mouseClick(&m_pFixture->Waterfall(), Qt::LeftButton, {}, m_pFixture->Spot(7'080'000.0, 500.0));
  QVERIFY(m_pFixture->List().SelectedRows().empty());
}

void SpectrumEntriesTest::CtrlClickSelectsSeveral() {
  AddTwo();
  QTest::mouseClick(&m_pFixture->Waterfall(), Qt::LeftButton, {}, m_pFixture->Spot(7'120'000.0, 500.0));
  QTest::mouseClick(&m_pFixture->Waterfall(), Qt::LeftButton, Qt::ControlModifier,
                    m_pFixture->Spot(7'080'000.0, 260.0));
  QCOMPARE(m_pFixture->List().SelectedRows(), (std::vector<std::size_t>{0, 1}));
}

void SpectrumEntriesTest::ARowThatIsSelectedSelectsItsBand() {
  AddTwo();
  m_pFixture->List().SelectRows({1});
  QVERIFY(!m_pFixture->Scene().Bands()[0].bSelected && m_pFixture->Scene().Bands()[1].bSelected);
  QCOMPARE(m_pFixture->Scene().SelectedBand().value_or(9), std::size_t{1});
}

void SpectrumEntriesTest::NGoesFromBandToBand() {
  AddTwo();
  m_pFixture->List().SelectRows({});
  for (const std::size_t expected : {0U, 1U, 0U}) {
    m_pFixture->Key(Qt::Key_N);
    QCOMPARE(m_pFixture->List().SelectedRows(), std::vector<std::size_t>{expected});
  }
  m_pFixture->Key(Qt::Key_N, Qt::ShiftModifier);
  QCOMPARE(m_pFixture->List().SelectedRows(), std::vector<std::size_t>{1});
  m_pFixture->Key(Qt::Key_Escape);
  QVERIFY(m_pFixture->List().SelectedRows().empty());
}

void SpectrumEntriesTest::DeleteRemovesTheSelectedOnes() {
  AddTwo();
  m_pFixture->List().SelectRows({0});
  m_pFixture->Key(Qt::Key_Delete);
  QCOMPARE(m_pFixture->List().RowCount(), 1);
  QCOMPARE(m_pFixture->Scene().Bands().size(), std::size_t{1});
  QVERIFY(FrequenciesOf(m_pFixture->Scene().Bands()[0].cut).Holds(7'120'000.0));
}

void SpectrumEntriesTest::DraggingAnEdgeChangesTheEntry() {
  AddTwo();
  m_pFixture->List().SelectRows({0});
  const SCut before = m_pFixture->Scene().Bands()[0].cut;
  const double high = FrequenciesOf(before).dTo;
  m_pFixture->Drag(high, 260.0, high + 6'000.0, 260.0);
  QCOMPARE(m_pFixture->List().RowCount(), 2);
  const SCut after = m_pFixture->Scene().Bands()[0].cut;
  QVERIFY(after.nBandwidth >= before.nBandwidth + 5'000);
  QVERIFY(std::abs(FrequenciesOf(after).dFrom - FrequenciesOf(before).dFrom) <= 1.0);
  QCOMPARE(after.tStart, before.tStart);
  QCOMPARE(m_pFixture->List().SelectedRows(), std::vector<std::size_t>{0});
  QVERIFY(!m_pFixture->Scene().Pending());
  const double end = static_cast<double>(*after.tEnd - test::kRecordingStart);
  m_pFixture->Drag(FrequenciesOf(after).Middle(), end, FrequenciesOf(after).Middle(), 420.0);
  QVERIFY(std::abs(*m_pFixture->Scene().Bands()[0].cut.tEnd - test::kRecordingStart - 420) <= 1);
}

void SpectrumEntriesTest::KeysChangeTheSelectedEntry() {
  AddTwo();
  m_pFixture->List().SelectRows({0});
  const SCut before = m_pFixture->Scene().Bands()[0].cut;
  m_pFixture->Key(Qt::Key_Down, Qt::AltModifier);
  m_pFixture->Key(Qt::Key_Down, Qt::AltModifier);
  QCOMPARE(*m_pFixture->Scene().Bands()[0].cut.tEnd, *before.tEnd + 2);
  QCOMPARE(m_pFixture->List().SelectedRows(), std::vector<std::size_t>{0});
  m_pFixture->Key(Qt::Key_Right, Qt::AltModifier);
  QCOMPARE(m_pFixture->Scene().Bands()[0].cut.nBandwidth, before.nBandwidth + 1'000);
}

void SpectrumEntriesTest::AChangedEntryKeepsWhatElseItWas() {
  m_pFixture->Click(1013);
  m_pFixture->Choose(1014, "1 GB");
  AddTwo();
  m_pFixture->Click(1012);
  m_pFixture->Choose(1014, "100 MB");
  m_pFixture->List().SelectRows({0});
  m_pFixture->Key(Qt::Key_Down, Qt::AltModifier);
  // The same output with these choices is the same entry, and its differences are what the hint tells.
  const SCut cut = m_pFixture->Scene().Bands()[0].cut;
  emit m_pFixture->Window().AddPressed(cut);
  QCOMPARE(m_pFixture->List().RowCount(), 2);
  const QString hint = m_pFixture->Dialog().findChild<QLabel*>("labelHint")->text();
  QVERIFY2(hint.contains("sample size, file size"), qPrintable(hint));
}

void SpectrumEntriesTest::AChangeThatTheListRefusesChangesNothing() {
  AddTwo();
  const QStringList before = m_pFixture->Row(0);
  m_pFixture->Answers().Give(QMessageBox::No);
  SCut cut = m_pFixture->Scene().Bands()[0].cut;
  cut.tStart = test::kRecordingStart + 10'000;
  emit m_pFixture->Window().EntryChanged(0, cut);
  QCOMPARE(m_pFixture->Answers().Shown().size(), std::size_t{1});
  QCOMPARE(m_pFixture->Answers().Shown()[0].text, QString("The start time is out of range. Reset the start time?"));
  QCOMPARE(m_pFixture->Row(0), before);
  QCOMPARE(m_pFixture->List().RowCount(), 2);
}

void SpectrumEntriesTest::UndoAndRedoGoThroughTheList() {
  AddTwo();
  const QStringList first = m_pFixture->Row(0);
  m_pFixture->List().SelectRows({0});
  m_pFixture->Key(Qt::Key_Down, Qt::AltModifier);
  const QStringList changed = m_pFixture->Row(0);
  QVERIFY(changed != first);
  m_pFixture->List().SelectRows({0, 1});
  m_pFixture->Key(Qt::Key_Delete);
  QCOMPARE(m_pFixture->List().RowCount(), 0);
  m_pFixture->Key(Qt::Key_Z, Qt::ControlModifier);
  QCOMPARE(m_pFixture->List().RowCount(), 2);
  QCOMPARE(m_pFixture->Row(0), changed);
  m_pFixture->Key(Qt::Key_Z, Qt::ControlModifier);
  QCOMPARE(m_pFixture->Row(0), first);
  m_pFixture->Key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
  QCOMPARE(m_pFixture->Row(0), changed);
  m_pFixture->Key(Qt::Key_Y, Qt::ControlModifier);
  QCOMPARE(m_pFixture->List().RowCount(), 0);
}

void SpectrumEntriesTest::UndoInTheListItself() {
  AddTwo();
  m_pFixture->Click(1017);  // Reset
  QCOMPARE(m_pFixture->List().RowCount(), 0);
  m_pFixture->Dialog().activateWindow();
  QVERIFY(QTest::qWaitForWindowActive(&m_pFixture->Dialog()));
  m_pFixture->List().setFocus();
  QTest::keyClick(&m_pFixture->List(), Qt::Key_Z, Qt::ControlModifier);
  QCOMPARE(m_pFixture->List().RowCount(), 2);
  QTest::keyClick(&m_pFixture->List(), Qt::Key_Y, Qt::ControlModifier);
  QCOMPARE(m_pFixture->List().RowCount(), 0);
}

void SpectrumEntriesTest::UndoOfADeletionKeepsTheStates() {
  AddTwo();
  m_pFixture->Click(1018);
  QTRY_VERIFY_WITH_TIMEOUT(m_pFixture->Row(0).last() == "done" && m_pFixture->Row(1).last() == "done", 120'000);
  m_pFixture->List().SelectRows({1});
  m_pFixture->Key(Qt::Key_Delete);
  m_pFixture->Key(Qt::Key_Z, Qt::ControlModifier);
  QCOMPARE(m_pFixture->List().RowCount(), 2);
  QCOMPARE(m_pFixture->Row(0).last(), QString("done"));
}

void SpectrumEntriesTest::AnotherInputForgetsWhatCouldBeUndone() {
  AddTwo();
  m_pFixture->SetPath(1000, m_pFixture->WriteInput({.nSeconds = 60}, "other.wav"));
  m_pFixture->Settle();
  m_pFixture->Key(Qt::Key_Z, Qt::ControlModifier);
  QCOMPARE(m_pFixture->List().RowCount(), 0);
  QCOMPARE(m_pFixture->Dialog().m_nBeeps, 1);
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::SpectrumEntriesTest)
#include "spectrum_entries_test.moc"
