// CWaterfallImage: a picture of levels in colours, drawn where it lies in the view.
#pragma once

#include <QImage>
#include <array>
#include <cstdint>
#include <vector>

#include "ui/view_span.h"

class QPainter;

namespace carvello {

class CWaterfallImage {
 public:
  // Level codes, row by row, and the colour of each code.
  void Make(const std::vector<std::uint8_t>& codes, int columns, int rows,
            const std::array<std::uint32_t, 256>& colours);
  void Clear() { m_image = {}; }
  bool IsEmpty() const { return m_image.isNull(); }

  // `frequencies` and `frames`: where the picture lies; the others: what the area of this size shows.
  void Paint(QPainter& painter, const SSpan& frequencies, const SSpan& frames, const SSpan& shownFrequencies,
             const SSpan& shownFrames, const QSizeF& size) const;

 private:
  QImage m_image;
};

}  // namespace carvello
