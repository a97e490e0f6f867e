// The bands that are drawn over a spectrum: entries, the one that is about to be added, signals that were found, and
// what the recording itself notes.
// Each kind has an outline of its own, so that none is told by its colour alone.
#pragma once

#include <QRectF>
#include <QString>
#include <optional>

#include "ui/spectrum_scene.h"

class QPainter;

namespace carvello {

// A plot's place in its widget, and what of the recording it shows.
struct SPlotMap {
  QSizeF size;
  SSpan frequencies;
  SSpan frames;

  double XOf(double hertz) const { return Carried(hertz, frequencies, {0.0, size.width()}); }
  double YOf(double frame) const { return Carried(frame, frames, {0.0, size.height()}); }
  QRectF RectOf(const SSpan& hertz, const SSpan& frame) const;
};

// With their names, over something transparent.
void PaintBands(QPainter& painter, const CSpectrumScene& scene, const SPlotMap& map);
// From top to bottom, without names.
void PaintBandColumns(QPainter& painter, const CSpectrumScene& scene, const SPlotMap& map);

// What of the bands is under a point: the pending cut, an entry, a mark or nothing; and whether by an edge, which can
// be dragged when the entry is selected.
struct SBandHit {
  enum class EKind { Nothing, Pending, Entry, Mark };
  EKind kind = EKind::Nothing;
  std::size_t nIndex = 0;
  ECutEdge edge = ECutEdge::None;
};
SBandHit HitBand(const CSpectrumScene& scene, const SPlotMap& map, const QPointF& position);

// "7.100 MHz, BW 10 kHz, 12 min 30 s": of a cut that is not on the list yet.
QString CutText(const SCut& cut, const CSpectrumScene& scene);

}  // namespace carvello
