// CKnownStrip: how well each row of the waterfall is known, beside it: full where every sample was looked at, dotted
// where some were, empty where the row shows its neighbours or nothing.
#pragma once

#include <QWidget>

#include "ui/spectrum_scene.h"

namespace carvello {

class CKnownStrip : public QWidget {
  Q_OBJECT

 public:
  // The scene must outlive it.
  CKnownStrip(CSpectrumScene& scene, QWidget* parent);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  CSpectrumScene& m_scene;
};

}  // namespace carvello
