#include "ui/plot_axes.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

#include "support/platform.h"
#include "ui/axis_ticks.h"

namespace carvello {

namespace {

constexpr double kLongTick = 6.0;
constexpr double kShortTick = 3.0;
constexpr double kGap = 3.0;  // between a tick and its text

double OnPixel(double at) {
  return std::floor(at) + 0.5;
}

QString TextOf(const STick& tick) {
  return QString::fromStdString(tick.strText);
}

}  // namespace

CFrequencyAxis::CFrequencyAxis(CSpectrumScene& scene, QWidget* parent) : CFrequencyPart(scene, parent) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize CFrequencyAxis::sizeHint() const {
  return {200, static_cast<int>(kLongTick + kGap) + fontMetrics().height() + 3};
}

void CFrequencyAxis::paintEvent(QPaintEvent* /*event*/) {
  if (Scene().IsEmpty()) return;
  QPainter painter(this);
  painter.setPen(AxisTextColour(palette()));
  const QFontMetricsF metrics(font());
  const std::vector<STick> ticks = FrequencyMarks();
  const double bottom = height();
  const QString unit = tr("MHz");
  const double unitWidth = metrics.horizontalAdvance(unit);
  painter.drawText(QRectF(width() - unitWidth, 0.0, unitWidth, metrics.height()), Qt::AlignLeft, unit);
  for (const STick& tick : ticks) {
    const double x = OnPixel(XOf(tick.dAt));
    painter.drawLine(QPointF(x, bottom - (tick.strText.empty() ? kShortTick : kLongTick)), QPointF(x, bottom));
    if (tick.strText.empty()) continue;
    const double half = metrics.horizontalAdvance(TextOf(tick)) / 2.0;
    if (x + half > width() - unitWidth - 6.0 || x - half < 0.0) continue;
    painter.drawText(QRectF(x - half - 1.0, 0.0, 2.0 * half + 2.0, metrics.height()), Qt::AlignHCenter, TextOf(tick));
  }
}

CTimeAxis::CTimeAxis(CSpectrumScene& scene, QWidget* parent) : CPlotPart(scene, EAxes::Time, parent) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
}

QSize CTimeAxis::sizeHint() const {
  std::tm fields{};
  platform::UtcTime(0, fields);
  const int date = fontMetrics().horizontalAdvance(QString::fromStdString(platform::ShortDate(fields)));
  const int time = fontMetrics().horizontalAdvance(QStringLiteral("00:00:00.000"));
  return {std::max(date, time) + static_cast<int>(kLongTick + kGap) + 4, 100};
}

void CTimeAxis::paintEvent(QPaintEvent* /*event*/) {
  if (Scene().IsEmpty()) return;
  QPainter painter(this);
  painter.setPen(AxisTextColour(palette()));
  const QFontMetricsF metrics(font());
  const double rate = Scene().Recording().nSampleRate;
  const int most = std::max(1, static_cast<int>(height() / (3.0 * metrics.height())));
  const double right = width();
  for (const STick& tick : TimeTicks(Scene().Seconds(), Scene().Recording().tStart, Scene().Recording().bUtc, most)) {
    const double y = OnPixel(YOf(tick.dAt * rate));
    painter.drawLine(QPointF(right - (tick.strText.empty() ? kShortTick : kLongTick), y), QPointF(right, y));
    if (tick.strText.empty()) continue;
    // The first and the last text stay whole.
    const double top = std::clamp(y - metrics.height() / 2.0, 0.0, std::max(0.0, height() - metrics.height()));
    painter.drawText(QRectF(0.0, top, right - kLongTick - kGap, metrics.height()), Qt::AlignRight, TextOf(tick));
  }
}

void CTimeAxis::LeftPressed(const QPointF& position) {
  m_last = position;
}

void CTimeAxis::LeftMoved(const QPointF& position) {
  const double before = At(m_last).dFrame;
  m_last = position;
  Scene().Pan(0.0, before - At(position).dFrame);
}

CLevelAxis::CLevelAxis(const CSpectrumLine& line, QWidget* parent) : QWidget(parent), m_line(line) {
  connect(&line, &CSpectrumLine::LevelsChanged, this, [this] { update(); });
}

void CLevelAxis::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setPen(AxisTextColour(palette()));
  const QFontMetricsF metrics(font());
  const double right = width();
  const int most = std::max(1, static_cast<int>(height() / (2.0 * metrics.height())));
  for (const STick& tick : LevelTicks(m_line.Levels(), most)) {
    const double y = OnPixel(Carried(tick.dAt, m_line.Levels(), {static_cast<double>(height()), 0.0}));
    painter.drawLine(QPointF(right - (tick.strText.empty() ? kShortTick : kLongTick), y), QPointF(right, y));
    const double top = y - metrics.height() / 2.0;
    if (tick.strText.empty() || top < metrics.height() || top + metrics.height() > height()) continue;
    painter.drawText(QRectF(0.0, top, right - kLongTick - kGap, metrics.height()), Qt::AlignRight, TextOf(tick));
  }
  painter.drawText(QRectF(0.0, 0.0, right - kLongTick - kGap, metrics.height()), Qt::AlignRight, tr("dBFS"));
}

}  // namespace carvello
