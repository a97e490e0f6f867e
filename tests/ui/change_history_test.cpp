#include "ui/change_history.h"

#include "ui/ui_test.h"

namespace carvello {

class ChangeHistoryTest : public QObject {
  Q_OBJECT

 private slots:
  void GoesBackAndForth();
  void AChangeForgetsWhatWasUndone();
  void ForgetsTheOldestOfVeryMany();
};

void ChangeHistoryTest::GoesBackAndForth() {
  CChangeHistory<int> history;
  QVERIFY(!history.Undo(0));
  history.Leave(1);
  history.Leave(2);
  QCOMPARE(history.Undo(3).value_or(-1), 2);
  QCOMPARE(history.Undo(2).value_or(-1), 1);
  QVERIFY(!history.Undo(1));
  QCOMPARE(history.Redo(1).value_or(-1), 2);
  QCOMPARE(history.Redo(2).value_or(-1), 3);
  QVERIFY(!history.Redo(3));
  history.Clear();
  QVERIFY(!history.Undo(3));
}

void ChangeHistoryTest::AChangeForgetsWhatWasUndone() {
  CChangeHistory<int> history;
  history.Leave(1);
  QCOMPARE(history.Undo(2).value_or(-1), 1);
  history.Leave(1);
  QVERIFY(!history.Redo(7));
  QCOMPARE(history.Undo(7).value_or(-1), 1);
}

void ChangeHistoryTest::ForgetsTheOldestOfVeryMany() {
  CChangeHistory<int> history;
  for (int i = 0; i < 600; ++i) history.Leave(i);
  int last = 600;
  int steps = 0;
  while (const auto state = history.Undo(last)) {
    QCOMPARE(*state, last - 1);
    last = *state;
    ++steps;
  }
  QCOMPARE(steps, 500);
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::ChangeHistoryTest)
#include "change_history_test.moc"
