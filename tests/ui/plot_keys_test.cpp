#include "ui/plot_keys.h"

#include "ui/ui_test.h"

namespace carvello {

class PlotKeysTest : public QObject {
  Q_OBJECT

 private slots:
  void ArrowsMoveTheCursor();
  void ArrowsWithShiftChoose();
  void ArrowsWithAltMoveEdges();
  void KeysOfOtherPartsMeanNothingHere();
};

void PlotKeysTest::ArrowsMoveTheCursor() {
  const SPlotKey left = PlotKeyOf(Qt::Key_Left, Qt::KeypadModifier);
  QVERIFY(left.action == EPlotAction::MoveCursor && left.nX == -1 && left.nY == 0 && !left.bFine);
  const SPlotKey down = PlotKeyOf(Qt::Key_Down, Qt::ControlModifier);
  QVERIFY(down.action == EPlotAction::MoveCursor && down.nX == 0 && down.nY == 1 && down.bFine);
}

void PlotKeysTest::ArrowsWithShiftChoose() {
  const SPlotKey right = PlotKeyOf(Qt::Key_Right, Qt::ShiftModifier);
  QVERIFY(right.action == EPlotAction::Choose && right.nX == 1 && !right.bFine);
  const SPlotKey fine = PlotKeyOf(Qt::Key_Up, Qt::ShiftModifier | Qt::ControlModifier);
  QVERIFY(fine.action == EPlotAction::Choose && fine.nY == -1 && fine.bFine);
}

void PlotKeysTest::ArrowsWithAltMoveEdges() {
  QVERIFY(PlotKeyOf(Qt::Key_Right, Qt::AltModifier).action == EPlotAction::MoveHigh);
  QVERIFY(PlotKeyOf(Qt::Key_Left, Qt::AltModifier | Qt::ShiftModifier).action == EPlotAction::MoveLow);
  QVERIFY(PlotKeyOf(Qt::Key_Down, Qt::AltModifier).action == EPlotAction::MoveEnd);
  QVERIFY(PlotKeyOf(Qt::Key_Up, Qt::AltModifier | Qt::ShiftModifier).action == EPlotAction::MoveStart);
}

void PlotKeysTest::KeysOfOtherPartsMeanNothingHere() {
  for (const int key : {Qt::Key_Tab, Qt::Key_F6, Qt::Key_A, Qt::Key_Space}) {
    QVERIFY(PlotKeyOf(key, Qt::NoModifier).action == EPlotAction::None);
  }
  QVERIFY(PlotKeyOf(Qt::Key_C, Qt::ControlModifier).action == EPlotAction::None);  // copies
  QVERIFY(PlotKeyOf(Qt::Key_I, Qt::AltModifier).action == EPlotAction::None);      // a mnemonic
  QVERIFY(PlotKeyOf(Qt::Key_Delete, Qt::ShiftModifier).action == EPlotAction::None);
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::PlotKeysTest)
#include "plot_keys_test.moc"
