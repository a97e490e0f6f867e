// The axes of the spectrum window: megahertz, the time of day, and decibels.
#pragma once

#include "ui/frequency_part.h"
#include "ui/spectrum_line.h"

namespace carvello {

class CFrequencyAxis : public CFrequencyPart {
  Q_OBJECT

 public:
  CFrequencyAxis(CSpectrumScene& scene, QWidget* parent);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return {0, sizeHint().height()}; }

 protected:
  void paintEvent(QPaintEvent* event) override;
};

// A drag along it pans.
class CTimeAxis : public CPlotPart {
  Q_OBJECT

 public:
  CTimeAxis(CSpectrumScene& scene, QWidget* parent);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return {sizeHint().width(), 0}; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void LeftPressed(const QPointF& position) override;
  void LeftMoved(const QPointF& position) override;

 private:
  QPointF m_last;
};

// The levels of the line that it stands beside. The line must outlive it.
class CLevelAxis : public QWidget {
  Q_OBJECT

 public:
  CLevelAxis(const CSpectrumLine& line, QWidget* parent);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  const CSpectrumLine& m_line;
};

}  // namespace carvello
