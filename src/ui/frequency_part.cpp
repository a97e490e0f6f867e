#include "ui/frequency_part.h"

#include <QApplication>
#include <QFontMetricsF>
#include <algorithm>
#include <cmath>

namespace carvello {

namespace {

constexpr int kMostTexts = 12;
constexpr double kTextRoom = 24.0;  // pixels from a text to the next

}  // namespace

CFrequencyPart::CFrequencyPart(CSpectrumScene& scene, QWidget* parent) : CPlotPart(scene, EAxes::Frequency, parent) {}

// A text is as wide as the numbers in view have digits, so that is tried out.
std::vector<STick> CFrequencyPart::FrequencyMarks() const {
  const QFontMetricsF metrics(font());
  for (int most = kMostTexts;; --most) {
    std::vector<STick> ticks = FrequencyTicks(Scene().Frequencies().Shown(), most);
    double widest = 0.0;
    for (const STick& tick : ticks) {
      widest = std::max(widest, metrics.horizontalAdvance(QString::fromStdString(tick.strText)));
    }
    if (most == 1 || (widest + kTextRoom) * most <= width()) return ticks;
  }
}

SDragged CFrequencyPart::DraggedTo(const QPointF& position) const {
  const QPointF held(std::clamp(position.x(), 0.0, 1.0 * width()), 0.0);
  return {SpanOf(At(m_pressed).dFrequency, At(held).dFrequency), std::nullopt};
}

void CFrequencyPart::LeftPressed(const QPointF& position) {
  m_pressed = position;
  m_bMoved = false;
  m_bDropped = false;
}

void CFrequencyPart::LeftMoved(const QPointF& position) {
  if (std::abs(position.x() - m_pressed.x()) >= QApplication::startDragDistance()) m_bMoved = true;
  if (m_bMoved && !m_bDropped && !Scene().IsEmpty()) emit Dragging(DraggedTo(position));
}

void CFrequencyPart::LeftReleased(const QPointF& position) {
  if (m_bMoved && !m_bDropped && !Scene().IsEmpty()) emit DragEnded(DraggedTo(position));
}

}  // namespace carvello
