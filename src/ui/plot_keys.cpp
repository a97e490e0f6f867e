#include "ui/plot_keys.h"

namespace carvello {

namespace {

struct SDirection {
  int nX;
  int nY;
};

SDirection DirectionOf(int key) {
  switch (key) {
    case Qt::Key_Left:
      return {-1, 0};
    case Qt::Key_Right:
      return {1, 0};
    case Qt::Key_Up:
      return {0, -1};
    case Qt::Key_Down:
      return {0, 1};
    default:
      return {0, 0};
  }
}

// With Alt the arrows move the edges behind which there is more: the upper frequency and the end; with Shift as well
// the lower frequency and the start.
SPlotKey ArrowKey(const SDirection& direction, Qt::KeyboardModifiers modifiers) {
  const bool shift = modifiers.testFlag(Qt::ShiftModifier);
  SPlotKey key{EPlotAction::MoveCursor, direction.nX, direction.nY};
  if (modifiers.testFlag(Qt::AltModifier)) {
    const bool frequency = direction.nX != 0;
    key.action = frequency ? (shift ? EPlotAction::MoveLow : EPlotAction::MoveHigh)
                           : (shift ? EPlotAction::MoveStart : EPlotAction::MoveEnd);
    return key;
  }
  if (shift) key.action = EPlotAction::Choose;
  key.bFine = modifiers.testFlag(Qt::ControlModifier);
  return key;
}

// As with the wheel: Ctrl for the time alone, Shift for the frequencies.
EAxes AxesOf(Qt::KeyboardModifiers modifiers) {
  if (modifiers.testFlag(Qt::ControlModifier)) return EAxes::Time;
  return modifiers.testFlag(Qt::ShiftModifier) ? EAxes::Frequency : EAxes::Both;
}

}  // namespace

SPlotKey PlotKeyOf(int key, Qt::KeyboardModifiers modifiers) {
  modifiers.setFlag(Qt::KeypadModifier, false);
  const SDirection direction = DirectionOf(key);
  if (direction.nX != 0 || direction.nY != 0) return ArrowKey(direction, modifiers);
  if (modifiers.testFlag(Qt::AltModifier)) return {};
  const bool shift = modifiers.testFlag(Qt::ShiftModifier);
  const EAxes axes = AxesOf(modifiers);
  // On many keyboards plus and minus need Shift, or are made by it from another key.
  const EAxes signAxes = axes == EAxes::Time ? axes : EAxes::Both;
  switch (key) {
    case Qt::Key_Plus:
    case Qt::Key_Equal:
      return {EPlotAction::Zoom, 1, 0, false, signAxes};
    case Qt::Key_Minus:
    case Qt::Key_Underscore:
      return {EPlotAction::Zoom, -1, 0, false, signAxes};
    case Qt::Key_I:
      return {EPlotAction::Zoom, 1, 0, false, axes};
    case Qt::Key_O:
      return {EPlotAction::Zoom, -1, 0, false, axes};
    case Qt::Key_Home:
      return {EPlotAction::ShowAll, 0, 0, false, axes};
    case Qt::Key_PageUp:
      return {EPlotAction::Pan, shift ? -1 : 0, shift ? 0 : -1};
    case Qt::Key_PageDown:
      return {EPlotAction::Pan, shift ? 1 : 0, shift ? 0 : 1};
    case Qt::Key_N:
      return {EPlotAction::NextBand, shift ? -1 : 1, 0};
    default:
      break;
  }
  if (modifiers != Qt::NoModifier) return {};
  switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return {EPlotAction::Add};
    case Qt::Key_Escape:
      return {EPlotAction::Drop};
    case Qt::Key_Delete:
      return {EPlotAction::Delete};
    case Qt::Key_C:
      return {EPlotAction::Carrier};
    default:
      return {};
  }
}

}  // namespace carvello
