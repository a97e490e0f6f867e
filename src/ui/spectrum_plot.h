// CSpectrumPlot: the line, the waterfall, their axes and the scale of levels, laid out together.
#pragma once

#include <QImage>
#include <QLabel>
#include <QWidget>

#include "ui/level_scale.h"
#include "ui/plot_axes.h"
#include "ui/spectrum_line.h"
#include "ui/waterfall_view.h"

namespace carvello {

class CSpectrumPlot : public QWidget {
  Q_OBJECT

 public:
  // The scene must outlive it.
  CSpectrumPlot(CSpectrumScene& scene, QWidget* parent);

  CWaterfallView& Waterfall() { return *m_pWaterfall; }
  CSpectrumLine& Line() { return *m_pLine; }
  CFrequencyAxis& FrequencyAxis() { return *m_pFrequencyAxis; }

  // What is seen, with its axes and without the cursor, below a line of text.
  QImage Picture(const QString& text);

 private:
  void ShowClock();

  CSpectrumScene& m_scene;
  CSpectrumLine* m_pLine;
  CWaterfallView* m_pWaterfall;
  CFrequencyAxis* m_pFrequencyAxis;
  QLabel* m_pClock;
};

}  // namespace carvello
