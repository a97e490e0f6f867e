#include "ui/control_states.h"

#include <set>

#include "ui/ui_test.h"

namespace carvello {

namespace {

using Ids = std::set<int>;

const Ids kAll = {1000, 1001, 1002, 1003, 1004, 1005, 1006, 1007, 1008, 1009, 1010, 1011, 1012, 1013, 1014,
                  1015, 1016, 1017, 1018, 1019, 1020, 1021, 1022, 1023, 1024, 1025, 1027, 1028, 1029, 1032,
                  1033, 1034, 1035, 1036, 1083, 1084, 1085, 1086, 1087, 1103, 1104, 1105, 1106};

const Ids kAlways = {1000, 1022, 1023, 1024};
const Ids kWithInput = {1001, 1002, 1003, 1004, 1005, 1006, 1007, 1036, 1034, 1032, 1009};
const Ids kWithFolder = {1033};
const Ids kReady = {1010, 1035, 1011, 1014, 1012, 1013, 1085, 1086, 1083,
                    1084, 1087, 1015, 1016, 1027, 1008, 1020, 1021};
const Ids kStartPickers = {1105, 1103};
const Ids kDuration = {1028, 1029};
const Ids kFinishPickers = {1106, 1104};
const Ids kDelete = {1025};
const Ids kWithRows = {1017, 1018};
const Ids kRunning = {1019, 1020, 1021, 1022, 1023, 1024};

Ids Union(std::initializer_list<Ids> sets) {
  Ids all;
  for (const Ids& ids : sets) all.insert(ids.begin(), ids.end());
  return all;
}

SDialogState Ready(int startMode = 0, int endMode = 0) {
  SDialogState state;
  state.bInputValid = true;
  state.bOutputChosen = true;
  state.nStartMode = startMode;
  state.nEndMode = endMode;
  return state;
}

}  // namespace

}  // namespace carvello

Q_DECLARE_METATYPE(carvello::SDialogState)
Q_DECLARE_METATYPE(std::set<int>)

namespace carvello {

class ControlStatesTest : public QObject {
  Q_OBJECT

 private slots:
  void EnablesExactly_data();
  void EnablesExactly();
};

void ControlStatesTest::EnablesExactly_data() {
  QTest::addColumn<SDialogState>("state");
  QTest::addColumn<Ids>("enabled");
  const Ids ready = Union({kAlways, kWithInput, kWithFolder, kReady});

  QTest::newRow("no input") << SDialogState() << kAlways;
  SDialogState state;
  state.bOutputChosen = true;
  QTest::newRow("no input, folder chosen") << state << Union({kAlways, kWithFolder});
  state.nStartMode = 1;
  state.nEndMode = 1;
  QTest::newRow("no input, folder chosen, times chosen") << state << Union({kAlways, kWithFolder});
  state = {};
  state.bInputValid = true;
  QTest::newRow("input, no folder") << state << Union({kAlways, kWithInput});
  QTest::newRow("ready") << Ready() << ready;
  QTest::newRow("start at a time") << Ready(1, 0) << Union({ready, kStartPickers});
  QTest::newRow("a duration") << Ready(0, 1) << Union({ready, kDuration});
  QTest::newRow("finish at a time") << Ready(0, 2) << Union({ready, kFinishPickers});
  QTest::newRow("start at a time for a duration") << Ready(1, 1) << Union({ready, kStartPickers, kDuration});
  QTest::newRow("from time to time") << Ready(1, 2) << Union({ready, kStartPickers, kFinishPickers});
  state = Ready();
  state.bHasRows = true;
  QTest::newRow("rows") << state << Union({ready, kWithRows});
  state.bRowSelected = true;
  QTest::newRow("a selected row") << state << Union({ready, kWithRows, kDelete});
  state.bRunning = true;
  QTest::newRow("running") << state << kRunning;
  state.nStartMode = 1;
  state.nEndMode = 2;
  QTest::newRow("running with times chosen") << state << kRunning;
}

void ControlStatesTest::EnablesExactly() {
  QFETCH(SDialogState, state);
  QFETCH(Ids, enabled);
  for (const int id : kAll) {
    QVERIFY2(IsControlEnabled(id, state) == enabled.contains(id), qPrintable(QString("IDC_%1").arg(id)));
  }
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::ControlStatesTest)
#include "control_states_test.moc"
