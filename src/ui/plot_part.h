// CPlotPart: a part of the spectrum window that lies along its axes: the waterfall, the line above it, and the axes
// themselves. All of them zoom by the wheel, pan by the middle button or with the space bar held, show all by a double
// click where that is wanted, and move the cursor.
#pragma once

#include <QPointF>
#include <QWidget>

#include "ui/spectrum_scene.h"

namespace carvello {

class CPlotPart : public QWidget {
  Q_OBJECT

 public:
  // The scene must outlive the part.
  CPlotPart(CSpectrumScene& scene, EAxes axes, QWidget* parent);

 protected:
  CSpectrumScene& Scene() const { return m_scene; }
  double XOf(double hertz) const;
  double YOf(double frame) const;
  // Where the axes of this part tell nothing, the middle of the view.
  SCursor At(const QPointF& position) const;

  // The left button, where it does not pan. `LeftMoved` only while it is held.
  virtual void LeftPressed(const QPointF& position);
  virtual void LeftMoved(const QPointF& position);
  virtual void LeftReleased(const QPointF& position);
  virtual void Hovered(const QPointF& position);
  // The pointer shown while nothing is being panned.
  virtual void ShowPointer();

  void wheelEvent(QWheelEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;

 private:
  enum class EHeld { Nothing, Left, Pan };

  CSpectrumScene& m_scene;
  EAxes m_axes;
  EHeld m_held = EHeld::Nothing;
  QPointF m_last;
};

// Colours of the parts, by the theme: of marks and grids, and of what is drawn large.
QColor GridColour(const QPalette& palette);
QColor AxisTextColour(const QPalette& palette);

}  // namespace carvello
