#include "ui/band_marks.h"

#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "support/formatting.h"
#include "ui/axis_ticks.h"
#include "ui/english_texts.h"

namespace carvello {

namespace {

constexpr double kReach = 5.0;   // pixels from an edge that still take hold of it
constexpr double kHandle = 6.0;  // pixels
constexpr double kBeyond = 8.0;  // pixels that an outline may lie out of view, so that it does not show
constexpr double kNarrow = 2.5;  // pixels; a narrower band is a line
constexpr int kMostFilled = 60;  // bands; of more, only the sides are drawn
constexpr int kMostNames = 60;
constexpr std::size_t kMostNotes = 1000;
const QColor kHalo(0, 0, 0, 170);
const QColor kNarrowLine(255, 255, 255, 200);
const QColor kNameGround(0, 0, 0, 190);

struct SStyle {
  Qt::PenStyle line;
  double dWidth;
  Qt::BrushStyle pattern;
  int nFill;  // opacity
};

constexpr SStyle kEntry{Qt::SolidLine, 1.0, Qt::BDiagPattern, 60};
constexpr SStyle kSelected{Qt::SolidLine, 2.0, Qt::BDiagPattern, 120};
constexpr SStyle kPending{Qt::DashLine, 2.0, Qt::SolidPattern, 50};
constexpr SStyle kNote{Qt::DashDotLine, 1.5, Qt::NoBrush, 0};
constexpr SStyle kMark{Qt::DotLine, 1.0, Qt::NoBrush, 0};
constexpr SStyle kChosenMark{Qt::DotLine, 2.0, Qt::Dense7Pattern, 110};

QRectF Held(const QRectF& rect, const SPlotMap& map) {
  return rect.intersected(QRectF(QPointF(), map.size).adjusted(-kBeyond, -kBeyond, kBeyond, kBeyond));
}

// Rectangles that replace what is there: far quicker than a pen or blending, and a list can have a thousand bands. The
// toolkit shares the blending of each between threads, which costs more than it saves.
void PaintSides(QPainter& painter, const QRectF& rect, double width, const QColor& colour) {
  painter.setCompositionMode(QPainter::CompositionMode_Source);
  const QRectF whole = rect.adjusted(-width / 2.0, -width / 2.0, width / 2.0, width / 2.0);
  painter.fillRect(QRectF(whole.left(), whole.top(), width, whole.height()), colour);
  painter.fillRect(QRectF(whole.right() - width, whole.top(), width, whole.height()), colour);
  painter.fillRect(QRectF(whole.left() + width, whole.top(), whole.width() - 2.0 * width, width), colour);
  painter.fillRect(QRectF(whole.left() + width, whole.bottom() - width, whole.width() - 2.0 * width, width), colour);
  painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
}

// White on black, which is seen on every palette.
void PaintBand(QPainter& painter, const QRectF& rect, const SStyle& style, bool filled = true) {
  if (rect.width() < kNarrow && style.line == Qt::SolidLine) {
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(QRectF(rect.left(), rect.top(), std::max(rect.width(), 1.0), rect.height()), kNarrowLine);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    return;
  }
  if (filled && style.pattern != Qt::NoBrush) {
    painter.fillRect(rect, QBrush(QColor(255, 255, 255, style.nFill), style.pattern));
  }
  PaintSides(painter, rect, style.dWidth + 2.0, kHalo);
  if (style.line == Qt::SolidLine) {
    PaintSides(painter, rect, style.dWidth, Qt::white);
  } else {
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(Qt::white, style.dWidth, style.line, Qt::FlatCap, Qt::MiterJoin));
    painter.drawRect(rect);
  }
}

void PaintHandles(QPainter& painter, const QRectF& rect) {
  painter.setPen(QPen(Qt::black, 1.0));
  painter.setBrush(Qt::white);
  const QPointF middle = rect.center();
  for (const QPointF& at : {QPointF(rect.left(), middle.y()), QPointF(rect.right(), middle.y()),
                            QPointF(middle.x(), rect.top()), QPointF(middle.x(), rect.bottom())}) {
    painter.drawRect(QRectF(at.x() - kHandle / 2.0, at.y() - kHandle / 2.0, kHandle, kHandle));
  }
  painter.setBrush(Qt::NoBrush);
}

// Names stand at the top of their bands, those of notes slanted at the bottom; one that would lie over another is left
// out.
class CNames {
 public:
  CNames(QPainter& painter, const SPlotMap& map) : m_painter(painter), m_map(map), m_metrics(painter.font()) {}

  void Paint(const QRectF& band, const QString& name, bool atBottom = false) {
    if (name.isEmpty() || band.right() < 0.0 || band.left() > m_map.size.width()) return;
    if (band.bottom() < 0.0 || band.top() > m_map.size.height()) return;
    QRectF place(0.0, 0.0, m_metrics.horizontalAdvance(name) + 10.0, m_metrics.height() + 4.0);
    place.moveTopLeft({band.left() + 3.0, std::max(band.top(), 0.0) + 3.0});
    if (atBottom) place.moveBottom(std::min(band.bottom(), m_map.size.height()) - 3.0);
    place.moveRight(std::min(place.right(), m_map.size.width() - 2.0));
    place.moveLeft(std::max(place.left(), 2.0));
    place.moveBottom(std::min(place.bottom(), m_map.size.height() - 2.0));
    for (const QRectF& taken : m_taken) {
      if (taken.intersects(place)) return;
    }
    m_taken.push_back(place);
    m_painter.setPen(Qt::NoPen);
    m_painter.setBrush(kNameGround);
    m_painter.drawRoundedRect(place, 3.0, 3.0);
    m_painter.setBrush(Qt::NoBrush);
    m_painter.setPen(Qt::white);
    QFont font = m_painter.font();
    font.setItalic(atBottom);
    m_painter.setFont(font);
    m_painter.drawText(place, Qt::AlignCenter, name);
    font.setItalic(false);
    m_painter.setFont(font);
  }

 private:
  QPainter& m_painter;
  const SPlotMap& m_map;
  QFontMetricsF m_metrics;
  std::vector<QRectF> m_taken;
};

QRectF RectOf(const SCut& cut, const CSpectrumScene& scene, const SPlotMap& map) {
  return map.RectOf(FrequenciesOf(cut), FramesOf(cut, scene.Rules()));
}

QRectF RectOf(const SFoundSignal& signal, const CSpectrumScene& scene, const SPlotMap& map) {
  const auto frame = [&](double moment) {
    return (moment - static_cast<double>(scene.Recording().tStart)) * scene.Recording().nSampleRate;
  };
  return map.RectOf({signal.dFrequency - signal.dBandwidth / 2.0, signal.dFrequency + signal.dBandwidth / 2.0},
                    {frame(signal.dStart), frame(signal.dEnd)});
}

QRectF RectOf(const SNote& note, const SPlotMap& map) {
  return map.RectOf(note.frequencies, note.frames);
}

// A file can hold more of them than anybody could tell apart.
std::vector<const SNote*> NotesInView(const CSpectrumScene& scene, const SPlotMap& map) {
  std::vector<const SNote*> notes;
  const QRectF view = QRectF(QPointF(), map.size).adjusted(-kBeyond, -kBeyond, kBeyond, kBeyond);
  for (const SNote& note : scene.Notes()) {
    const QRectF rect = RectOf(note, map);
    if (rect.right() < view.left() || rect.left() > view.right()) continue;
    if (rect.bottom() < view.top() || rect.top() > view.bottom()) continue;
    notes.push_back(&note);
    if (notes.size() == kMostNotes) break;
  }
  return notes;
}

struct SPlacedBand {
  const SBand* pBand;
  QRectF rect;
};

// The bands in view; of those that would be drawn over each other to the pixel, one.
std::vector<SPlacedBand> Placed(const CSpectrumScene& scene, const SPlotMap& map) {
  std::vector<SPlacedBand> placed;
  const QRectF view = QRectF(QPointF(), map.size).adjusted(-kBeyond, -kBeyond, kBeyond, kBeyond);
  for (const SBand& band : scene.Bands()) {
    const QRectF rect = RectOf(band.cut, scene, map);
    if (rect.right() < view.left() || rect.left() > view.right()) continue;
    if (rect.bottom() < view.top() || rect.top() > view.bottom()) continue;
    const bool same = !placed.empty() && !band.bSelected && !placed.back().pBand->bSelected &&
                      placed.back().rect.toRect() == rect.toRect();
    if (!same) placed.push_back({&band, rect});
  }
  return placed;
}

bool Near(const QRectF& rect, const QPointF& position) {
  return rect.adjusted(-kReach, -kReach, kReach, kReach).contains(position);
}

ECutEdge EdgeNear(const QRectF& rect, const QPointF& position) {
  if (!Near(rect, position)) return ECutEdge::None;
  // The sides come first: a band is usually narrow and long.
  const double left = std::abs(position.x() - rect.left());
  const double right = std::abs(position.x() - rect.right());
  if (std::min(left, right) <= kReach) return left < right ? ECutEdge::Low : ECutEdge::High;
  if (std::abs(position.y() - rect.top()) <= kReach) return ECutEdge::Start;
  if (std::abs(position.y() - rect.bottom()) <= kReach) return ECutEdge::End;
  return ECutEdge::None;
}

}  // namespace

QRectF SPlotMap::RectOf(const SSpan& hertz, const SSpan& frame) const {
  return {QPointF(XOf(hertz.dFrom), YOf(frame.dFrom)), QPointF(XOf(hertz.dTo), YOf(frame.dTo))};
}

void PaintBands(QPainter& painter, const CSpectrumScene& scene, const SPlotMap& map) {
  painter.save();
  painter.setClipRect(QRectF(QPointF(), map.size));
  const std::vector<const SNote*> notes = NotesInView(scene, map);
  for (const SNote* pNote : notes) PaintBand(painter, Held(RectOf(*pNote, map), map), kNote);
  for (std::size_t i = 0; i < scene.Marks().size(); ++i) {
    PaintBand(painter, Held(RectOf(scene.Marks()[i], scene, map), map), scene.ChosenMark() == i ? kChosenMark : kMark);
  }
  const std::vector<SPlacedBand> placed = Placed(scene, map);
  const bool filled = placed.size() <= kMostFilled;
  for (const bool selected : {false, true}) {
    for (const SPlacedBand& band : placed) {
      if (band.pBand->bSelected != selected) continue;
      PaintBand(painter, Held(band.rect, map), selected ? kSelected : kEntry, filled || selected);
      if (selected) PaintHandles(painter, Held(band.rect, map));
    }
  }
  CNames names(painter, map);
  if (scene.Pending()) {
    const QRectF rect = RectOf(*scene.Pending(), scene, map);
    PaintBand(painter, Held(rect, map), kPending);
    if (!scene.Dragged()) PaintHandles(painter, Held(rect, map));
    names.Paint(rect, CutText(*scene.Pending(), scene));
  }
  int named = 0;
  for (const bool selected : {true, false}) {
    for (const SPlacedBand& band : placed) {
      if (band.pBand->bSelected == selected && named++ < kMostNames) names.Paint(band.rect, band.pBand->strName);
    }
  }
  for (const SNote* pNote : notes) names.Paint(RectOf(*pNote, map), pNote->strText, true);
  if (scene.Dragged()) {
    const SSpan frames = scene.Dragged()->frames.value_or(scene.Frames().Whole());
    painter.setPen(QPen(Qt::white, 0.0, Qt::DotLine));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(Held(map.RectOf(scene.Dragged()->frequency, frames), map));
  }
  painter.restore();
}

void PaintBandColumns(QPainter& painter, const CSpectrumScene& scene, const SPlotMap& map) {
  const QColor text = painter.pen().color();
  const auto column = [&](const QRectF& band, double width, bool filled, Qt::BrushStyle pattern) {
    const QRectF rect = Held(QRectF(QPointF(band.left(), 0.0), QPointF(band.right(), map.size.height())), map);
    QColor colour = text;
    colour.setAlpha(70);
    if (filled && rect.width() >= kNarrow) painter.fillRect(rect, QBrush(colour, pattern));
    colour.setAlpha(255);
    painter.fillRect(QRectF(rect.left() - width / 2.0, rect.top(), width, rect.height()), colour);
    painter.fillRect(QRectF(rect.right() - width / 2.0, rect.top(), width, rect.height()), colour);
  };
  const std::vector<SPlacedBand> placed = Placed(scene, map);
  for (const SPlacedBand& band : placed) {
    column(band.rect, band.pBand->bSelected ? 2.0 : 1.0, placed.size() <= kMostFilled, kEntry.pattern);
  }
  if (scene.Pending()) column(RectOf(*scene.Pending(), scene, map), 1.0, true, Qt::Dense6Pattern);
}

SBandHit HitBand(const CSpectrumScene& scene, const SPlotMap& map, const QPointF& position) {
  using EKind = SBandHit::EKind;
  if (scene.Pending()) {
    const QRectF rect = RectOf(*scene.Pending(), scene, map);
    if (Near(rect, position)) return {EKind::Pending, 0, EdgeNear(rect, position)};
  }
  if (const auto selected = scene.SelectedBand()) {
    const ECutEdge edge = EdgeNear(RectOf(scene.Bands()[*selected].cut, scene, map), position);
    if (edge != ECutEdge::None) return {EKind::Entry, *selected, edge};
  }
  // Of bands that lie over each other, the smallest: the others have room beside it.
  SBandHit hit;
  double least = std::numeric_limits<double>::infinity();
  const auto consider = [&](const QRectF& rect, EKind kind, std::size_t index) {
    const double size = rect.width() * rect.height();
    // A band may be narrower than a pixel.
    if (!rect.adjusted(-2.0, -2.0, 2.0, 2.0).contains(position) || size >= least) return;
    least = size;
    hit = {kind, index, ECutEdge::None};
  };
  for (std::size_t i = 0; i < scene.Bands().size(); ++i) {
    consider(RectOf(scene.Bands()[i].cut, scene, map), EKind::Entry, i);
  }
  if (hit.kind != EKind::Nothing) return hit;
  for (std::size_t i = 0; i < scene.Marks().size(); ++i) consider(RectOf(scene.Marks()[i], scene, map), EKind::Mark, i);
  return hit;
}

QString CutText(const SCut& cut, const CSpectrumScene& scene) {
  std::string text = FormatFrequency64(cut.nFrequency) + ", BW " + FormatFrequency(cut.nBandwidth);
  if (cut.tStart || cut.tEnd) {
    text += ", " + LengthText(FramesOf(cut, scene.Rules()).Length() / std::max<double>(scene.Rules().nSampleRate, 1.0));
  } else {
    text += ", whole recording";
  }
  return InLanguage(text);
}

}  // namespace carvello
