#include <set>

#include "ui/control_states.h"
#include "ui/dialog_fixture.h"
#include "ui/ui_test.h"

namespace carvello {

using test::CDialogFixture;

// The rules are tested as a table elsewhere; here, that the dialog follows them as the user goes along.
class DialogStatesTest : public QObject {
  Q_OBJECT

 private slots:
  void init() { m_pFixture = std::make_unique<CDialogFixture>(); }
  void cleanup() { m_pFixture.reset(); }

  void FollowsTheUserFromStartToARowSelected();
  void FollowsTheModesOfStartAndEnd();
  void AnEmptiedOutputFolderCountsAsChosen();
  void LabelsFollowTheirFields();
  void ADisabledControlTakesNoClick();

 private:
  // Every control that is enabled is so by the rules, and the other way round.
  void CompareAll(const SDialogState& state);

  std::unique_ptr<CDialogFixture> m_pFixture;
};

void DialogStatesTest::CompareAll(const SDialogState& state) {
  int compared = 0;
  for (const QWidget* control : m_pFixture->Dialog().findChildren<QWidget*>()) {
    if (!control->objectName().startsWith("IDC_") || control->objectName() == "IDC_1026") continue;
    const int id = control->objectName().section('_', 1, 1).toInt();
    QVERIFY2(control->isEnabled() == IsControlEnabled(id, state), qPrintable(control->objectName()));
    ++compared;
  }
  QCOMPARE(m_pFixture->Dialog().findChild<QWidget*>("checkOnePass")->isEnabled(), IsControlEnabled(1027, state));
  QCOMPARE(compared, 45);  // the table, and two browse buttons
}

void DialogStatesTest::FollowsTheUserFromStartToARowSelected() {
  SDialogState state;
  m_pFixture->Open();
  CompareAll(state);
  m_pFixture->SetPath(1000, m_pFixture->WriteInput());
  state.bInputValid = true;
  CompareAll(state);
  m_pFixture->SetPath(1009, m_pFixture->OutputFolder());
  state.bOutputChosen = true;
  CompareAll(state);
  m_pFixture->Click(1015);
  state.bHasRows = true;
  state.bRowSelected = true;  // the one that was added
  CompareAll(state);
  m_pFixture->List().clearSelection();
  state.bRowSelected = false;
  CompareAll(state);
  QTest::mouseClick(m_pFixture->List().viewport(), Qt::LeftButton, {},
                    m_pFixture->List().visualRect(m_pFixture->List().model()->index(0, 0)).center());
  state.bRowSelected = true;
  CompareAll(state);
  m_pFixture->Click(1025);
  state.bRowSelected = false;
  state.bHasRows = false;
  CompareAll(state);
}

void DialogStatesTest::FollowsTheModesOfStartAndEnd() {
  m_pFixture->OpenReady();
  SDialogState state;
  state.bInputValid = true;
  state.bOutputChosen = true;
  CompareAll(state);
  const std::vector<std::pair<int, int>> starts = {{1086, 1}, {1085, 0}};
  const std::vector<std::pair<int, int>> ends = {{1084, 1}, {1087, 2}, {1083, 0}};
  for (const auto& [startId, startMode] : starts) {
    m_pFixture->Click(startId);
    state.nStartMode = startMode;
    for (const auto& [endId, endMode] : ends) {
      m_pFixture->Click(endId);
      state.nEndMode = endMode;
      CompareAll(state);
    }
  }
}

void DialogStatesTest::AnEmptiedOutputFolderCountsAsChosen() {
  m_pFixture->OpenReady();
  m_pFixture->SetPath(1009, "");
  SDialogState state;
  state.bInputValid = true;
  state.bOutputChosen = true;
  CompareAll(state);
}

void DialogStatesTest::LabelsFollowTheirFields() {
  m_pFixture->Open();
  const auto enabled = [this](const char* name) { return m_pFixture->Dialog().findChild<QLabel*>(name)->isEnabled(); };
  QVERIFY(!enabled("label_1001"));
  QVERIFY(!enabled("label_1010"));
  m_pFixture->OpenReady();
  QVERIFY(enabled("label_1001"));
  QVERIFY(enabled("label_1010"));
  QVERIFY(!enabled("label_1028"));
  m_pFixture->Click(1084);
  QVERIFY(enabled("label_1028"));
}

void DialogStatesTest::ADisabledControlTakesNoClick() {
  m_pFixture->Open();
  m_pFixture->Click(1034);
  QVERIFY(m_pFixture->Control<QAbstractButton>(1034).isChecked());
  bool saved = false;
  QVERIFY(!m_pFixture->Settings().Read("UTC", saved));
  m_pFixture->Click(1015);
  QCOMPARE(m_pFixture->List().RowCount(), 0);
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::DialogStatesTest)
#include "dialog_states_test.moc"
