// CWaterfallView: levels over frequency and time as colours, the bands over them, and the cursor. Rectangles are
// dragged here, and bands clicked and their edges dragged. What is not known yet is hatched.
#pragma once

#include <QPixmap>

#include "ui/band_marks.h"
#include "ui/plot_part.h"
#include "ui/waterfall_image.h"

namespace carvello {

class CWaterfallView : public CPlotPart {
  Q_OBJECT

 public:
  CWaterfallView(CSpectrumScene& scene, QWidget* parent);

  // Pixels of the screen, for pictures as sharp as it is.
  QSize Pixels() const;
  // What is under the cursor, for readers of the screen.
  void SetReading(const QString& reading);
  const QString& Reading() const { return m_reading; }
  // The drag that is going on counts for nothing.
  void DropDrag() { m_bDropped = true; }

 signals:
  void Resized();
  void Dragging(const carvello::SDragged& dragged);
  void DragEnded(const carvello::SDragged& dragged);
  // Of the pending cut when there is no entry. The place is in Hz or frames.
  void EdgeDragging(std::optional<std::size_t> entry, carvello::ECutEdge edge, double place);
  void EdgeDragEnded(std::optional<std::size_t> entry, carvello::ECutEdge edge, double place);
  void Clicked(const carvello::SBandHit& hit, bool adds);
  void KeyPressed(QKeyEvent* event);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void changeEvent(QEvent* event) override;
  void LeftPressed(const QPointF& position) override;
  void LeftMoved(const QPointF& position) override;
  void LeftReleased(const QPointF& position) override;
  void Hovered(const QPointF& position) override;

 private:
  SPlotMap Map() const;
  void Colour();
  bool CoversAll() const;
  void DrawBands();
  void ForgetBands();
  void PaintCursor(QPainter& painter) const;
  void PaintNotes(QPainter& painter) const;
  SDragged DraggedTo(const QPointF& position) const;
  double PlaceOf(const QPointF& position) const;

  QString m_reading;
  CWaterfallImage m_image;
  CWaterfallImage m_whole;
  QPixmap m_bands;  // null when they are to be drawn anew
  QPointF m_pressed;
  SBandHit m_hit;  // where the button was pressed
  bool m_bMoved = false;
  bool m_bDropped = false;
};

}  // namespace carvello
