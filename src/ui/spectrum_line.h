// CSpectrumLine: the average and the peak level of each frequency, over the times in view.
#pragma once

#include <QPixmap>

#include "ui/band_marks.h"
#include "ui/frequency_part.h"

namespace carvello {

class CSpectrumLine : public CFrequencyPart {
  Q_OBJECT

 public:
  CSpectrumLine(CSpectrumScene& scene, QWidget* parent);

  // From the bottom to the top: those of the colours, and with automatic levels all peaks.
  SSpan Levels() const { return m_levels; }

 signals:
  void LevelsChanged();  // what Levels() gives

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void Renew();
  double YOfLevel(double level) const;
  void PaintGrid(QPainter& painter) const;
  void PaintLines(QPainter& painter) const;
  QPolygonF Line(const std::vector<float>& levels) const;
  void PaintLegend(QPainter& painter) const;

  SSpan m_levels;
  QPixmap m_drawn;  // grid and lines; null when they are to be drawn anew
};

}  // namespace carvello
