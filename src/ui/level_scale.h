// CLevelScale: the levels with their colours. Its two handles, the bar between them, and the wheel change which levels
// the colours stand for; a double click leaves that to the noise floor again.
#pragma once

#include <QWidget>

#include "ui/spectrum_scene.h"

namespace carvello {

class CLevelScale : public QWidget {
  Q_OBJECT

 public:
  // The scene must outlive it.
  CLevelScale(CSpectrumScene& scene, QWidget* parent);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return {sizeHint().width(), 60}; }
  // Where a level stands.
  double YOf(double level) const;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  enum class EHeld { Nothing, Low, High, Both };

  double LevelAt(double y) const;
  EHeld HeldAt(double y) const;
  void Set(const SLevels& levels);
  void PaintHandle(QPainter& painter, double level) const;

  CSpectrumScene& m_scene;
  EHeld m_held = EHeld::Nothing;
  SLevels m_before;
  double m_dPressed = 0.0;
};

}  // namespace carvello
