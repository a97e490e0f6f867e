#include "ui/known_strip.h"

#include <QPainter>

#include "ui/plot_part.h"

namespace carvello {

namespace {

constexpr int kWidth = 4;

}  // namespace

CKnownStrip::CKnownStrip(CSpectrumScene& scene, QWidget* parent) : QWidget(parent), m_scene(scene) {
  setFixedWidth(kWidth);
  const auto redraw = [this] { update(); };
  connect(&scene, &CSpectrumScene::PictureChanged, this, redraw);
  connect(&scene, &CSpectrumScene::ViewChanged, this, redraw);
}

void CKnownStrip::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().color(QPalette::Base));
  const SSpectrumPicture* pPicture = m_scene.Picture();
  if (pPicture == nullptr || pPicture->rows.empty()) return;
  const QColor colour = AxisTextColour(palette());
  const SSpan frames = FramesOf(*pPicture);
  const double rows = static_cast<double>(pPicture->rows.size());
  const auto yOf = [&](std::size_t row) {
    const double frame = frames.dFrom + static_cast<double>(row) / rows * frames.Length();
    return Carried(frame, m_scene.Frames().Shown(), {0.0, static_cast<double>(height())});
  };
  for (std::size_t first = 0; first < pPicture->rows.size();) {
    std::size_t end = first;
    while (end < pPicture->rows.size() && pPicture->rows[end] == pPicture->rows[first]) ++end;
    const QRectF part(QPointF(0.0, yOf(first)), QPointF(width(), yOf(end)));
    if (pPicture->rows[first] == ERowKnown::Every) painter.fillRect(part, colour);
    if (pPicture->rows[first] == ERowKnown::Stretches) painter.fillRect(part, QBrush(colour, Qt::Dense5Pattern));
    first = end;
  }
}

}  // namespace carvello
