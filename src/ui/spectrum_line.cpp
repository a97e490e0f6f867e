#include "ui/spectrum_line.h"

#include <QEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "ui/axis_ticks.h"
#include "ui/readable_colours.h"

namespace carvello {

namespace {

constexpr double kLevelStep = 10.0;  // dB that the top is rounded to
constexpr int kLeastHeight = 80;

// The theme's own accent, where it can be told from the background.
QColor LineColour(const QPalette& palette) {
  const QColor accent = palette.color(QPalette::Active, QPalette::Highlight);
  return ContrastOf(accent, palette.color(QPalette::Base)) >= 3.0 ? accent : palette.color(QPalette::Text);
}

}  // namespace

CSpectrumLine::CSpectrumLine(CSpectrumScene& scene, QWidget* parent) : CFrequencyPart(scene, parent) {
  setMinimumHeight(kLeastHeight);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
  setAttribute(Qt::WA_OpaquePaintEvent);
  const auto renew = [this] { Renew(); };
  connect(&scene, &CSpectrumScene::PictureChanged, this, renew);
  connect(&scene, &CSpectrumScene::LookChanged, this, renew);
  connect(&scene, &CSpectrumScene::ViewChanged, this, renew);
  const auto redraw = [this] { update(); };
  connect(&scene, &CSpectrumScene::CursorChanged, this, redraw);
  connect(&scene, &CSpectrumScene::BandsChanged, this, redraw);
  Renew();
}

void CSpectrumLine::Renew() {
  const SSpectrumLook& look = Scene().Look();
  SSpan levels{look.levels.dLow, look.levels.dHigh};
  if (look.bAutomatic && Scene().Picture() != nullptr) {
    for (const float level : Scene().Picture()->peak) {
      if (std::isfinite(level)) levels.dTo = std::max<double>(levels.dTo, level);
    }
    levels.dTo = std::ceil((levels.dTo + 1.0) / kLevelStep) * kLevelStep;
  }
  m_drawn = {};
  update();
  if (levels == m_levels) return;
  m_levels = levels;
  emit LevelsChanged();
}

double CSpectrumLine::YOfLevel(double level) const {
  return Carried(level, m_levels, {static_cast<double>(height()), 0.0});
}

void CSpectrumLine::paintEvent(QPaintEvent* /*event*/) {
  const QSize pixels = size() * devicePixelRatioF();
  if (m_drawn.size() != pixels) {
    m_drawn = QPixmap(pixels);
    m_drawn.setDevicePixelRatio(devicePixelRatioF());
    m_drawn.fill(palette().color(QPalette::Base));
    QPainter painter(&m_drawn);
    painter.setFont(font());
    PaintGrid(painter);
    PaintLines(painter);
    PaintLegend(painter);
  }
  QPainter painter(this);
  painter.drawPixmap(0, 0, m_drawn);
  if (Scene().IsEmpty()) return;
  painter.setPen(palette().color(QPalette::Text));
  PaintBandColumns(painter, Scene(), {size(), Scene().Frequencies().Shown(), Scene().Frames().Shown()});
  if (!Scene().Cursor()) return;
  const double x = std::floor(XOf(Scene().Cursor()->dFrequency)) + 0.5;
  painter.setPen(QPen(palette().color(QPalette::Text), 1.0, Qt::DotLine));
  painter.drawLine(QPointF(x, 0.0), QPointF(x, height()));
}

void CSpectrumLine::PaintGrid(QPainter& painter) const {
  painter.setPen(QPen(GridColour(palette()), 1.0));
  const int levels = std::max(1, height() / (2 * fontMetrics().height()));
  for (const STick& tick : LevelTicks(m_levels, levels)) {
    if (tick.strText.empty()) continue;
    const double y = std::floor(YOfLevel(tick.dAt)) + 0.5;
    painter.drawLine(QPointF(0.0, y), QPointF(width(), y));
  }
  if (Scene().IsEmpty()) return;
  for (const STick& tick : FrequencyMarks()) {
    if (tick.strText.empty()) continue;
    const double x = std::floor(XOf(tick.dAt)) + 0.5;
    painter.drawLine(QPointF(x, 0.0), QPointF(x, height()));
  }
}

QPolygonF CSpectrumLine::Line(const std::vector<float>& levels) const {
  QPolygonF line;
  const SSpan picture = FrequenciesOf(*Scene().Picture(), Scene().Recording());
  const double column = picture.Length() / static_cast<double>(std::max<std::size_t>(levels.size(), 1));
  for (std::size_t i = 0; i < levels.size(); ++i) {
    if (!std::isfinite(levels[i])) continue;
    const double x = XOf(picture.dFrom + (static_cast<double>(i) + 0.5) * column);
    if (x < -column || x > width() + column) continue;
    line << QPointF(x, std::clamp(YOfLevel(levels[i]), -2.0, height() + 2.0));
  }
  return line;
}

void CSpectrumLine::PaintLines(QPainter& painter) const {
  if (Scene().Picture() == nullptr) return;
  painter.setRenderHint(QPainter::Antialiasing);
  const QColor colour = LineColour(palette());
  const QPolygonF average = Line(Scene().Picture()->average);
  if (average.size() > 1) {
    QPolygonF area = average;
    area << QPointF(average.last().x(), height()) << QPointF(average.first().x(), height());
    QColor fill = colour;
    fill.setAlpha(60);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawPolygon(area);
    painter.setBrush(Qt::NoBrush);
  }
  QColor peak = palette().color(QPalette::Text);
  peak.setAlpha(150);
  painter.setPen(QPen(peak, 1.0));
  painter.drawPolyline(Line(Scene().Picture()->peak));
  painter.setPen(QPen(colour, 1.4));
  painter.drawPolyline(average);
}

void CSpectrumLine::PaintLegend(QPainter& painter) const {
  if (Scene().Picture() == nullptr) return;
  const QFontMetricsF metrics(font());
  const double line = metrics.height();
  const double sample = 1.6 * line;
  const double wide = std::max(metrics.horizontalAdvance(tr("Average")), metrics.horizontalAdvance(tr("Peak")));
  QRectF place(width() - wide - sample - 26.0, 6.0, wide + sample + 20.0, 2.0 * line + 8.0);
  QColor ground = palette().color(QPalette::Base);
  ground.setAlpha(210);
  painter.setPen(Qt::NoPen);
  painter.setBrush(ground);
  painter.drawRoundedRect(place, 4.0, 4.0);
  const auto row = [&](double y, const QString& name, const QColor& colour, bool filled, double thick) {
    const QRectF mark(place.left() + 6.0, y + 0.2 * line, sample, 0.6 * line);
    const double middle = mark.center().y();
    if (filled) {
      QColor fill = colour;
      fill.setAlpha(60);
      painter.fillRect(QRectF(mark.left(), middle, mark.width(), mark.bottom() - middle), fill);
    }
    painter.setPen(QPen(colour, thick));
    painter.drawLine(QPointF(mark.left(), middle), QPointF(mark.right(), middle));
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(QRectF(mark.right() + 6.0, y, wide + 4.0, line), Qt::AlignVCenter | Qt::AlignLeft, name);
  };
  QColor peak = palette().color(QPalette::Text);
  peak.setAlpha(150);
  row(place.top() + 4.0, tr("Peak"), peak, false, 1.0);
  row(place.top() + 4.0 + line, tr("Average"), LineColour(palette()), true, 1.4);
}

void CSpectrumLine::changeEvent(QEvent* event) {
  CFrequencyPart::changeEvent(event);
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) Renew();
}

}  // namespace carvello
