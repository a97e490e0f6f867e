#include "ui/waterfall_view.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <cmath>

#include "support/text.h"

namespace carvello {

namespace {

const QSize kLeast(240, 120);

// A picture with a value: what is under the cursor.
class CAccessibleWaterfall : public QAccessibleWidget {
 public:
  explicit CAccessibleWaterfall(CWaterfallView* pView) : QAccessibleWidget(pView, QAccessible::Chart) {}

  QString text(QAccessible::Text kind) const override {
    if (kind == QAccessible::Value) return static_cast<CWaterfallView*>(object())->Reading();
    return QAccessibleWidget::text(kind);
  }
};

QAccessibleInterface* MakeAccessible(const QString& /*className*/, QObject* pObject) {
  auto* pView = qobject_cast<CWaterfallView*>(pObject);
  return pView == nullptr ? nullptr : new CAccessibleWaterfall(pView);
}

}  // namespace

CWaterfallView::CWaterfallView(CSpectrumScene& scene, QWidget* parent) : CPlotPart(scene, EAxes::Both, parent) {
  setFocusPolicy(Qt::StrongFocus);
  setMinimumSize(kLeast);
  [[maybe_unused]] static const bool installed = [] {
    QAccessible::installFactory(MakeAccessible);
    return true;
  }();
  setAttribute(Qt::WA_OpaquePaintEvent);
  const auto colour = [this] { Colour(); };
  connect(&scene, &CSpectrumScene::PictureChanged, this, colour);
  connect(&scene, &CSpectrumScene::LookChanged, this, colour);
  const auto redraw = [this] { update(); };
  connect(&scene, &CSpectrumScene::CursorChanged, this, redraw);
  connect(&scene, &CSpectrumScene::BandsChanged, this, &CWaterfallView::ForgetBands);
  connect(&scene, &CSpectrumScene::ViewChanged, this, &CWaterfallView::ForgetBands);
}

QSize CWaterfallView::Pixels() const {
  return {static_cast<int>(std::lround(width() * devicePixelRatioF())),
          static_cast<int>(std::lround(height() * devicePixelRatioF()))};
}

// Its name carries it, for many readers say nothing else; those that know values are told it as one.
void CWaterfallView::SetReading(const QString& reading) {
  m_reading = reading;
  setAccessibleName(reading.isEmpty() ? tr("Waterfall") : tr("Waterfall: %1").arg(reading));
  QAccessibleValueChangeEvent event(this, reading);
  QAccessible::updateAccessibility(&event);
}

SPlotMap CWaterfallView::Map() const {
  return {size(), Scene().Frequencies().Shown(), Scene().Frames().Shown()};
}

void CWaterfallView::Colour() {
  const SSpectrumPicture* pPicture = Scene().Picture();
  const SSpectrumPicture* pWhole = Scene().WholePicture();
  const auto colours = ColourTable(Scene().Look().palette, Scene().Look().levels);
  const auto make = [&](CWaterfallImage& image, const SSpectrumPicture* pOf) {
    if (pOf == nullptr) {
      image.Clear();
    } else {
      image.Make(CodesOf(*pOf, Scene().Look()), pOf->view.nColumns, pOf->view.nRows, colours);
    }
  };
  make(m_image, pPicture);
  make(m_whole, pWhole == pPicture ? nullptr : pWhole);
  update();
}

void CWaterfallView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const SPlotMap map = Map();
  if (!CoversAll()) {
    painter.fillRect(rect(), palette().color(QPalette::Base));
    painter.fillRect(rect(), QBrush(GridColour(palette()), Qt::DiagCrossPattern));
  }
  if (Scene().IsEmpty()) return;
  const auto paint = [&](const CWaterfallImage& image, const SSpectrumPicture* pPicture) {
    if (pPicture == nullptr) return;
    image.Paint(painter, FrequenciesOf(*pPicture, Scene().Recording()), FramesOf(*pPicture), map.frequencies,
                map.frames, map.size);
  };
  paint(m_whole, Scene().WholePicture());
  paint(m_image, Scene().Picture());
  const bool hasBands = !Scene().Bands().empty() || !Scene().Marks().empty() || !Scene().Notes().empty();
  if (hasBands || Scene().Pending()) {
    if (m_bands.isNull()) DrawBands();
    painter.drawPixmap(0, 0, m_bands);
  }
  PaintCursor(painter);
  PaintNotes(painter);
}

// Whether the newest picture leaves nothing of the view open.
bool CWaterfallView::CoversAll() const {
  const SSpectrumPicture* pPicture = Scene().Picture();
  if (pPicture == nullptr || pPicture->dKnown < 1.0) return false;
  return FrequenciesOf(*pPicture, Scene().Recording()) == Scene().Frequencies().Shown() &&
         FramesOf(*pPicture) == Scene().Frames().Shown();
}

// They change less often than what lies below them.
void CWaterfallView::DrawBands() {
  m_bands = QPixmap(size() * devicePixelRatioF());
  m_bands.setDevicePixelRatio(devicePixelRatioF());
  m_bands.fill(Qt::transparent);
  QPainter painter(&m_bands);
  painter.setFont(font());
  PaintBands(painter, Scene(), Map());
}

void CWaterfallView::ForgetBands() {
  m_bands = {};
  update();
}

void CWaterfallView::PaintCursor(QPainter& painter) const {
  if (!Scene().Cursor()) return;
  const double x = std::floor(XOf(Scene().Cursor()->dFrequency)) + 0.5;
  const double y = std::floor(YOf(Scene().Cursor()->dFrame)) + 0.5;
  for (const QPen& pen : {QPen(QColor(0, 0, 0, 130), 1.0), QPen(QColor(255, 255, 255, 200), 1.0, Qt::DotLine)}) {
    painter.setPen(pen);
    painter.drawLine(QPointF(x, 0.0), QPointF(x, height()));
    painter.drawLine(QPointF(0.0, y), QPointF(width(), y));
  }
}

// What is hatched is told in words as well.
void CWaterfallView::PaintNotes(QPainter& painter) const {
  const SSpectrumPicture* pPicture = Scene().Picture();
  const double known = pPicture == nullptr ? 0.0 : pPicture->dKnown;
  if (known >= 1.0) return;
  const QString text = known <= 0.0 ? tr("Reading the recording…")
                                    : tr("Hatched: not read yet. %1 % known").arg(std::floor(known * 100.0));
  QRectF place = painter.fontMetrics().boundingRect(text);
  place = QRectF(0.0, 0.0, place.width() + 16.0, place.height() + 8.0);
  place.moveBottomLeft(QPointF(8.0, height() - 8.0));
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(0, 0, 0, 190));
  painter.drawRoundedRect(place, 4.0, 4.0);
  painter.setPen(Qt::white);
  painter.drawText(place, Qt::AlignCenter, text);
}

void CWaterfallView::resizeEvent(QResizeEvent* event) {
  CPlotPart::resizeEvent(event);
  ForgetBands();
  emit Resized();
}

void CWaterfallView::changeEvent(QEvent* event) {
  CPlotPart::changeEvent(event);
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) ForgetBands();
}

void CWaterfallView::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Space && event->modifiers() == Qt::NoModifier) {
    Scene().SetPanning(true);
    return;
  }
  event->ignore();
  emit KeyPressed(event);
}

void CWaterfallView::keyReleaseEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Space && !event->isAutoRepeat()) {
    Scene().SetPanning(false);
    return;
  }
  CPlotPart::keyReleaseEvent(event);
}

void CWaterfallView::focusOutEvent(QFocusEvent* event) {
  Scene().SetPanning(false);
  CPlotPart::focusOutEvent(event);
}

void CWaterfallView::LeftPressed(const QPointF& position) {
  m_pressed = position;
  m_bMoved = false;
  m_bDropped = false;
  m_hit = HitBand(Scene(), Map(), position);
}

SDragged CWaterfallView::DraggedTo(const QPointF& position) const {
  const SCursor from = At(m_pressed);
  const SCursor to =
      At(QPointF(std::clamp(position.x(), 0.0, 1.0 * width()), std::clamp(position.y(), 0.0, 1.0 * height())));
  SDragged dragged{SpanOf(from.dFrequency, to.dFrequency), std::nullopt};
  if (std::abs(position.y() - m_pressed.y()) >= QApplication::startDragDistance()) {
    dragged.frames = SpanOf(from.dFrame, to.dFrame);
  }
  return dragged;
}

double CWaterfallView::PlaceOf(const QPointF& position) const {
  const SCursor at = At(position);
  return m_hit.edge == ECutEdge::Low || m_hit.edge == ECutEdge::High ? at.dFrequency : at.dFrame;
}

void CWaterfallView::LeftMoved(const QPointF& position) {
  if ((position - m_pressed).manhattanLength() >= QApplication::startDragDistance()) m_bMoved = true;
  if (!m_bMoved || m_bDropped || Scene().IsEmpty()) return;
  if (m_hit.edge == ECutEdge::None) {
    emit Dragging(DraggedTo(position));
  } else {
    const bool entry = m_hit.kind == SBandHit::EKind::Entry;
    emit EdgeDragging(entry ? std::optional(m_hit.nIndex) : std::nullopt, m_hit.edge, PlaceOf(position));
  }
}

void CWaterfallView::LeftReleased(const QPointF& position) {
  if (m_bDropped || Scene().IsEmpty()) return;
  if (!m_bMoved) {
    emit Clicked(m_hit, QApplication::keyboardModifiers().testFlag(Qt::ControlModifier));
  } else if (m_hit.edge == ECutEdge::None) {
    emit DragEnded(DraggedTo(position));
  } else {
    const bool entry = m_hit.kind == SBandHit::EKind::Entry;
    emit EdgeDragEnded(entry ? std::optional(m_hit.nIndex) : std::nullopt, m_hit.edge, PlaceOf(position));
  }
}

void CWaterfallView::Hovered(const QPointF& position) {
  if (Scene().IsPanning()) return;
  const SBandHit hit = HitBand(Scene(), Map(), position);
  if (hit.edge == ECutEdge::Low || hit.edge == ECutEdge::High) {
    setCursor(Qt::SizeHorCursor);
  } else if (hit.edge == ECutEdge::Start || hit.edge == ECutEdge::End) {
    setCursor(Qt::SizeVerCursor);
  } else {
    unsetCursor();
  }
}

}  // namespace carvello
