// What the keys do in the spectrum.
#pragma once

#include <Qt>

#include "ui/view_span.h"

namespace carvello {

enum class EPlotAction {
  None,
  MoveCursor,  // by nX, nY steps
  Choose,      // from where the cursor was to nX, nY steps on
  Zoom,        // closer for nX > 0
  ShowAll,
  Pan,      // by nX, nY pages
  Carrier,  // the cursor goes to the carrier next to it
  Add,
  Drop,
  Delete,
  NextBand,  // the next for nX > 0
  MoveLow,   // edges, by nX or nY
  MoveHigh,
  MoveStart,
  MoveEnd,
};

struct SPlotKey {
  EPlotAction action = EPlotAction::None;
  int nX = 0;
  int nY = 0;
  bool bFine = false;  // the smallest step
  EAxes axes = EAxes::Both;
};

// A key with its modifiers; no action when it has none here. Keys of the number pad count as the others.
SPlotKey PlotKeyOf(int key, Qt::KeyboardModifiers modifiers);

}  // namespace carvello
