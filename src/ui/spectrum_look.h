// CSpectrumLookControls: the controls of the spectrum window that say how it looks, kept between runs.
#pragma once

#include <QObject>
#include <cstddef>

#include "support/my_settings_store.h"
#include "ui/spectrum_scene.h"

namespace Ui {
class CSpectrumWindow;
}

namespace carvello {

class CSpectrumLookControls : public QObject {
  Q_OBJECT

 public:
  // Everything must outlive it.
  CSpectrumLookControls(Ui::CSpectrumWindow& ui, CSpectrumScene& scene, CMySettingsStore& settings, QObject* pParent);

  std::size_t Transform() const;  // 0 follows the zoom
  EWindow Window() const;
  std::uint32_t Raster() const;  // Hz
  bool SnapsToCarrier() const;
  bool KeepsOverviews() const;

 signals:
  void TransformChanged();  // or the window
  void SnapChanged();
  void KeepChanged();

 private:
  void Fill();
  void Restore();
  void ToScene();
  void FromScene();

  Ui::CSpectrumWindow& m_ui;
  CSpectrumScene& m_scene;
  CMySettingsStore& m_settings;
};

}  // namespace carvello
