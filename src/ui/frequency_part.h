// CFrequencyPart: a part of the plot along the frequencies alone. A drag over it chooses frequencies of the whole
// recording.
#pragma once

#include <vector>

#include "ui/axis_ticks.h"
#include "ui/plot_part.h"

namespace carvello {

class CFrequencyPart : public CPlotPart {
  Q_OBJECT

 public:
  CFrequencyPart(CSpectrumScene& scene, QWidget* parent);

  // The drag that is going on counts for nothing.
  void DropDrag() { m_bDropped = true; }

 signals:
  void Dragging(const carvello::SDragged& dragged);
  void DragEnded(const carvello::SDragged& dragged);

 protected:
  // Those of the frequencies in view, with as many texts as have room beside each other.
  std::vector<STick> FrequencyMarks() const;

  void LeftPressed(const QPointF& position) override;
  void LeftMoved(const QPointF& position) override;
  void LeftReleased(const QPointF& position) override;

 private:
  SDragged DraggedTo(const QPointF& position) const;

  QPointF m_pressed;
  bool m_bMoved = false;
  bool m_bDropped = false;
};

}  // namespace carvello
