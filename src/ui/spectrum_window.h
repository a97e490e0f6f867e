// CSpectrumWindow: shows what is on the air in a recording, to look at and to cut from. It takes its pictures from a
// source that never waits, and leaves the list of entries to its user: it tells what the user wants, and is told what
// is on the list.
#pragma once

#include <QTimer>
#include <QWidget>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "input/recording_set.h"
#include "support/my_settings_store.h"
#include "ui/posted_calls.h"
#include "ui/signal_list.h"
#include "ui/spectrum_cutting.h"
#include "ui/spectrum_look.h"
#include "ui/spectrum_plot.h"
#include "ui/spectrum_scene.h"
#include "ui/window_place.h"

namespace Ui {
class CSpectrumWindow;
}

namespace carvello {

class CSpectrumWindow : public QWidget {
  Q_OBJECT

 public:
  // Opens a recording: `keep` tells whether its overview is kept on disk, `changed` is called on any thread when there
  // is something new.
  using SourceMaker = std::function<std::unique_ptr<ISpectrumSource>(const CRecordingSet& recording, bool keep,
                                                                     std::function<void()> changed)>;

  // The settings must outlive the window.
  CSpectrumWindow(SourceMaker makeSource, CMySettingsStore& settings, QWidget* parent);
  ~CSpectrumWindow() override;

  void SetRecording(const CRecordingSet* pRecording, bool utc);  // null when there is none
  void SetBands(std::vector<SBand> bands);
  void SetPending(const std::optional<SCut>& cut);
  // Whether entries can be changed now, and whether one can be added as well.
  void SetAllowed(bool changes, bool adds);
  // A job reads the recording, or does so no more.
  void SetJob(bool runs);
  // What takes the blocks that a job reads; null where nothing does.
  std::shared_ptr<IBlockListener> Listener() const;

  CSpectrumScene& Scene() { return m_scene; }

 signals:
  void CutChosen(const carvello::SCut& cut);
  void CutDropped();
  void AddPressed(const carvello::SCut& cut);
  void CutsWanted(const std::vector<carvello::SCut>& cuts);
  void EntriesSelected(const std::vector<std::size_t>& entries);
  void EntryChanged(std::size_t entry, const carvello::SCut& cut);
  void DeletePressed();
  void UndoPressed();
  void RedoPressed();
  void BackPressed();  // to the dialog

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void ConnectControls();
  void OpenSource();
  void UpdatePause();
  void RequestPicture();
  void TakeNews();
  void TakePicture();
  void ShowReading();
  void ShowView();
  void ShowProgress();
  void ShowCut();
  QString PictureTitle() const;
  void SavePicture();
  void CopyPicture();

  std::unique_ptr<Ui::CSpectrumWindow> m_ui;
  SourceMaker m_makeSource;
  CSpectrumScene m_scene;
  CSpectrumPlot* m_pPlot;
  CSpectrumLookControls m_look;
  CSpectrumCutting m_cutting;
  CSignalList m_signals;
  CWindowPlace m_place;
  CPostedCalls m_calls;
  std::unique_ptr<CRecordingSet> m_pRecording;  // null when there is none
  std::unique_ptr<ISpectrumSource> m_pSource;   // null until the window is shown with a recording
  QTimer m_request;
  QTimer m_rest;         // after a picture, in which everything else has its turn
  bool m_bNews = false;  // came during the rest
  bool m_bJob = false;
  bool m_bAdds = false;
};

}  // namespace carvello
