#include "ui/waterfall_image.h"

#include <QPainter>
#include <algorithm>

#include "spectrum/level_code.h"

namespace carvello {

void CWaterfallImage::Make(const std::vector<std::uint8_t>& codes, int columns, int rows,
                           const std::array<std::uint32_t, 256>& colours) {
  // Opaque pictures are drawn much faster.
  const bool whole = std::find(codes.begin(), codes.end(), kUnknownLevel) == codes.end();
  const QImage::Format format = whole ? QImage::Format_RGB32 : QImage::Format_ARGB32_Premultiplied;
  if (m_image.size() != QSize(columns, rows) || m_image.format() != format) m_image = QImage(columns, rows, format);
  const std::uint8_t* pCode = codes.data();
  for (int row = 0; row < rows; ++row) {
    auto* pPixel = reinterpret_cast<QRgb*>(m_image.scanLine(row));
    for (int column = 0; column < columns; ++column) *pPixel++ = colours[*pCode++];
  }
}

void CWaterfallImage::Paint(QPainter& painter, const SSpan& frequencies, const SSpan& frames,
                            const SSpan& shownFrequencies, const SSpan& shownFrames, const QSizeF& size) const {
  if (m_image.isNull()) return;
  // Only what is in view: a picture that is zoomed into would be drawn far larger than any screen.
  const SSpan hertz{std::max(frequencies.dFrom, shownFrequencies.dFrom),
                    std::min(frequencies.dTo, shownFrequencies.dTo)};
  const SSpan time{std::max(frames.dFrom, shownFrames.dFrom), std::min(frames.dTo, shownFrames.dTo)};
  if (hertz.Length() <= 0.0 || time.Length() <= 0.0) return;
  const auto rect = [&](const SSpan& ofHertz, const SSpan& ofTime, const QSizeF& whole) {
    const SSpan x{0.0, whole.width()}, y{0.0, whole.height()};
    return QRectF(QPointF(Carried(hertz.dFrom, ofHertz, x), Carried(time.dFrom, ofTime, y)),
                  QPointF(Carried(hertz.dTo, ofHertz, x), Carried(time.dTo, ofTime, y)));
  };
  painter.drawImage(rect(shownFrequencies, shownFrames, size), m_image, rect(frequencies, frames, m_image.size()));
}

}  // namespace carvello
