#include "ui/level_scale.h"

#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "ui/axis_ticks.h"
#include "ui/plot_part.h"

namespace carvello {

namespace {

constexpr double kBarLeft = 9.0;
constexpr double kBarWidth = 16.0;
constexpr double kTick = 4.0;
constexpr double kReach = 8.0;    // pixels from a handle that still take hold of it
constexpr double kNotch = 120.0;  // of a wheel
constexpr double kStep = 2.0;     // dB a notch
constexpr double kMargin = 6.0;   // above and below the bar, for the handles

}  // namespace

CLevelScale::CLevelScale(CSpectrumScene& scene, QWidget* parent) : QWidget(parent), m_scene(scene) {
  setMouseTracking(true);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
  connect(&scene, &CSpectrumScene::LookChanged, this, [this] { update(); });
}

QSize CLevelScale::sizeHint() const {
  const int text = fontMetrics().horizontalAdvance(QString::fromUtf8("−150"));
  return {static_cast<int>(kBarLeft + kBarWidth + kTick) + 4 + text, 200};
}

double CLevelScale::YOf(double level) const {
  return Carried(level, {kLowestShown, kHighestShown}, {height() - kMargin, kMargin + fontMetrics().height()});
}

double CLevelScale::LevelAt(double y) const {
  return Carried(y, {height() - kMargin, kMargin + fontMetrics().height()}, {kLowestShown, kHighestShown});
}

void CLevelScale::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const SLevels& levels = m_scene.Look().levels;
  const auto& colours = PaletteColours(m_scene.Look().palette);
  const QRectF bar(QPointF(kBarLeft, std::floor(YOf(kHighestShown))),
                   QPointF(kBarLeft + kBarWidth, std::ceil(YOf(kLowestShown))));
  const double step = 1.0 / devicePixelRatioF();
  for (double y = bar.top(); y < bar.bottom(); y += step) {
    const double part = (LevelAt(y) - levels.dLow) / (levels.dHigh - levels.dLow);
    const SColour& colour = colours[static_cast<std::size_t>(std::clamp(std::lround(part * 255.0), 0L, 255L))];
    painter.fillRect(QRectF(bar.left(), y, bar.width(), step), QColor(colour.red, colour.green, colour.blue));
  }
  painter.setPen(QPen(GridColour(palette()), 1.0));
  painter.drawRect(bar.adjusted(-0.5, -0.5, 0.5, 0.5));

  painter.setPen(AxisTextColour(palette()));
  const QFontMetricsF metrics(font());
  const double left = bar.right() + 1.0;
  painter.drawText(QRectF(kBarLeft, 0.0, width() - kBarLeft, metrics.height()), Qt::AlignLeft, tr("dBFS"));
  const int most = std::max(1, static_cast<int>(bar.height() / (2.0 * metrics.height())));
  for (const STick& tick : LevelTicks({kLowestShown, kHighestShown}, most)) {
    if (tick.strText.empty()) continue;
    const double y = std::floor(YOf(tick.dAt)) + 0.5;
    painter.drawLine(QPointF(left, y), QPointF(left + kTick, y));
    painter.drawText(QRectF(left + kTick + 3.0, y - metrics.height() / 2.0, width(), metrics.height()), Qt::AlignLeft,
                     QString::fromStdString(tick.strText));
  }
  painter.setRenderHint(QPainter::Antialiasing);
  PaintHandle(painter, levels.dLow);
  PaintHandle(painter, levels.dHigh);
}

void CLevelScale::PaintHandle(QPainter& painter, double level) const {
  const double y = YOf(level);
  painter.setPen(QPen(palette().color(QPalette::Window), 1.0));
  painter.setBrush(palette().color(QPalette::WindowText));
  painter.drawPolygon(QPolygonF({QPointF(kBarLeft + 2.0, y), QPointF(0.5, y - 5.0), QPointF(0.5, y + 5.0)}));
  painter.setPen(QPen(palette().color(QPalette::WindowText), 1.0));
  painter.drawLine(QPointF(kBarLeft, y), QPointF(kBarLeft + kBarWidth, y));
}

CLevelScale::EHeld CLevelScale::HeldAt(double y) const {
  const double low = YOf(m_scene.Look().levels.dLow);
  const double high = YOf(m_scene.Look().levels.dHigh);
  if (std::min(std::abs(y - low), std::abs(y - high)) <= kReach) {
    return std::abs(y - low) < std::abs(y - high) ? EHeld::Low : EHeld::High;
  }
  return y > high && y < low ? EHeld::Both : EHeld::Nothing;
}

void CLevelScale::Set(const SLevels& levels) {
  SSpectrumLook look = m_scene.Look();
  look.bAutomatic = false;
  look.levels = {std::round(levels.dLow), std::round(levels.dHigh)};
  m_scene.SetLook(look);
}

void CLevelScale::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  m_held = HeldAt(event->position().y());
  m_before = m_scene.Look().levels;
  m_dPressed = event->position().y();
}

void CLevelScale::mouseMoveEvent(QMouseEvent* event) {
  const double y = event->position().y();
  if (m_held == EHeld::Nothing) {
    const EHeld at = HeldAt(y);
    setCursor(at == EHeld::Nothing ? Qt::ArrowCursor : at == EHeld::Both ? Qt::OpenHandCursor : Qt::SizeVerCursor);
    return;
  }
  const double by = LevelAt(y) - LevelAt(m_dPressed);
  SLevels levels = m_before;
  if (m_held != EHeld::High) levels.dLow += by;
  if (m_held != EHeld::Low) levels.dHigh += by;
  Set(levels);
}

void CLevelScale::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) m_held = EHeld::Nothing;
}

void CLevelScale::mouseDoubleClickEvent(QMouseEvent* /*event*/) {
  SSpectrumLook look = m_scene.Look();
  look.bAutomatic = true;
  m_scene.SetLook(look);
}

// Alone it makes all brighter or darker, with Ctrl it changes the contrast.
void CLevelScale::wheelEvent(QWheelEvent* event) {
  const double by = kStep * (event->angleDelta().y() + event->angleDelta().x()) / kNotch;
  SLevels levels = m_scene.Look().levels;
  levels.dLow += by;
  levels.dHigh += event->modifiers().testFlag(Qt::ControlModifier) ? -by : by;
  Set(levels);
  event->accept();
}

}  // namespace carvello
