#include "ui/plot_part.h"

#include <QMouseEvent>
#include <QWheelEvent>
#include <cmath>

namespace carvello {

namespace {

constexpr double kNotch = 120.0;  // of a wheel
constexpr double kZoomANotch = 0.8;

QColor Mixed(const QColor& a, const QColor& b, double part) {
  const auto mix = [part](float x, float y) { return static_cast<float>(x + (y - x) * part); };
  return QColor::fromRgbF(mix(a.redF(), b.redF()), mix(a.greenF(), b.greenF()), mix(a.blueF(), b.blueF()));
}

}  // namespace

CPlotPart::CPlotPart(CSpectrumScene& scene, EAxes axes, QWidget* parent)
    : QWidget(parent), m_scene(scene), m_axes(axes) {
  setMouseTracking(true);
  const auto redraw = [this] { update(); };
  connect(&scene, &CSpectrumScene::RecordingChanged, this, redraw);
  connect(&scene, &CSpectrumScene::ViewChanged, this, redraw);
  connect(&scene, &CSpectrumScene::PanningChanged, this, [this] { ShowPointer(); });
}

double CPlotPart::XOf(double hertz) const {
  return Carried(hertz, m_scene.Frequencies().Shown(), {0.0, static_cast<double>(width())});
}

double CPlotPart::YOf(double frame) const {
  return Carried(frame, m_scene.Frames().Shown(), {0.0, static_cast<double>(height())});
}

SCursor CPlotPart::At(const QPointF& position) const {
  const SSpan& frequencies = m_scene.Frequencies().Shown();
  const SSpan& frames = m_scene.Frames().Shown();
  SCursor at{frequencies.Middle(), frames.Middle()};
  if (m_axes != EAxes::Time) at.dFrequency = Carried(position.x(), {0.0, static_cast<double>(width())}, frequencies);
  if (m_axes != EAxes::Frequency) at.dFrame = Carried(position.y(), {0.0, static_cast<double>(height())}, frames);
  return at;
}

void CPlotPart::LeftPressed(const QPointF& /*position*/) {}
void CPlotPart::LeftMoved(const QPointF& /*position*/) {}
void CPlotPart::LeftReleased(const QPointF& /*position*/) {}
void CPlotPart::Hovered(const QPointF& /*position*/) {}

void CPlotPart::ShowPointer() {
  if (m_held == EHeld::Pan) {
    setCursor(Qt::ClosedHandCursor);
  } else if (m_scene.IsPanning()) {
    setCursor(Qt::OpenHandCursor);
  } else {
    unsetCursor();
  }
}

void CPlotPart::wheelEvent(QWheelEvent* event) {
  // Some systems turn the wheel sideways while Shift is held.
  const double notches = (event->angleDelta().y() + event->angleDelta().x()) / kNotch;
  EAxes axes = m_axes;
  if (m_axes == EAxes::Both && event->modifiers().testFlag(Qt::ControlModifier)) axes = EAxes::Time;
  if (m_axes == EAxes::Both && event->modifiers().testFlag(Qt::ShiftModifier)) axes = EAxes::Frequency;
  m_scene.Zoom(axes, std::pow(kZoomANotch, notches), At(event->position()));
  event->accept();
}

void CPlotPart::mousePressEvent(QMouseEvent* event) {
  setFocus(Qt::MouseFocusReason);
  if (m_held != EHeld::Nothing) return;
  m_last = event->position();
  if (event->button() == Qt::MiddleButton || (event->button() == Qt::LeftButton && m_scene.IsPanning())) {
    m_held = EHeld::Pan;
  } else if (event->button() == Qt::LeftButton) {
    m_held = EHeld::Left;
    LeftPressed(event->position());
  }
  ShowPointer();
}

void CPlotPart::mouseMoveEvent(QMouseEvent* event) {
  if (m_held == EHeld::Pan) {
    const SCursor before = At(m_last);
    const SCursor now = At(event->position());
    m_last = event->position();
    m_scene.Pan(before.dFrequency - now.dFrequency, before.dFrame - now.dFrame);
  } else if (m_held == EHeld::Left) {
    LeftMoved(event->position());
  } else {
    Hovered(event->position());
  }
  if (m_scene.IsEmpty()) return;
  SCursor cursor = At(event->position());
  // An axis tells one of the two; the other stays where it was.
  if (m_scene.Cursor() && m_axes == EAxes::Frequency) cursor.dFrame = m_scene.Cursor()->dFrame;
  if (m_scene.Cursor() && m_axes == EAxes::Time) cursor.dFrequency = m_scene.Cursor()->dFrequency;
  m_scene.SetCursor(cursor);
}

void CPlotPart::mouseReleaseEvent(QMouseEvent* event) {
  const bool ends = m_held == EHeld::Pan ? event->button() != Qt::RightButton : event->button() == Qt::LeftButton;
  if (!ends || m_held == EHeld::Nothing) return;
  const EHeld held = m_held;
  m_held = EHeld::Nothing;
  if (held == EHeld::Left) LeftReleased(event->position());
  ShowPointer();
}

void CPlotPart::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && m_axes != EAxes::Both) {
    m_scene.ShowAll(m_axes);
  } else {
    mousePressEvent(event);
  }
}

QColor GridColour(const QPalette& palette) {
  return Mixed(palette.color(QPalette::Base), palette.color(QPalette::Text), 0.16);
}

QColor AxisTextColour(const QPalette& palette) {
  return Mixed(palette.color(QPalette::Window), palette.color(QPalette::WindowText), 0.85);
}

}  // namespace carvello
