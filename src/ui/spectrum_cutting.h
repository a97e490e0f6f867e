// CSpectrumCutting: from drags, clicks and keys in the spectrum to what is to be cut. It changes what the scene shows
// of it at once; the list of entries is its user's.
#pragma once

#include <QObject>
#include <functional>
#include <optional>
#include <vector>

#include "ui/plot_keys.h"
#include "ui/posted_calls.h"
#include "ui/spectrum_plot.h"

namespace carvello {

class CSpectrumCutting : public QObject {
  Q_OBJECT

 public:
  // The scene and the plot must outlive it.
  CSpectrumCutting(CSpectrumScene& scene, CSpectrumPlot& plot, QObject* pParent);

  // Where carriers are found; null when there is no recording.
  void SetSource(ISpectrumSource* pSource);
  void SetRaster(std::uint32_t raster);
  void SetCarrier(bool snaps) { m_bCarrier = snaps; }
  // Whether entries can be made and changed at all.
  void SetAllowed(bool allowed);
  bool IsAllowed() const { return m_bAllowed; }

  void Add();
  void Drop();
  // False when the key means nothing here.
  bool Do(const SPlotKey& key);

 signals:
  void CutChosen(const carvello::SCut& cut);
  void CutDropped();
  void AddPressed(const carvello::SCut& cut);
  void DeletePressed();
  void EntryChanged(std::size_t entry, const carvello::SCut& cut);
  void EntriesSelected(const std::vector<std::size_t>& entries);
  void MarkClicked(std::size_t mark);

 private:
  void Drag(const SDragged& dragged);
  void EndDrag(const SDragged& dragged);
  void Choose(const SCut& cut);
  void DragEdge(std::optional<std::size_t> entry, ECutEdge edge, double place);
  void EndEdge(std::optional<std::size_t> entry);
  void Click(const SBandHit& hit, bool adds);
  void MoveCursor(const SPlotKey& key);
  void ChooseByKeys(const SPlotKey& key);
  void ToCarrier();
  void MoveEdge(ECutEdge edge, int steps);
  void SelectNext(int by);
  void ShowCursor(const SCursor& cursor);
  void Find(double frequency, double reach, const SSpan& frames, std::function<void(std::optional<double>)> then);
  SCursor CursorOrMiddle() const;
  bool EndMouseDrag();

  CSpectrumScene& m_scene;
  CSpectrumPlot& m_plot;
  CPostedCalls m_calls;
  ISpectrumSource* m_pSource = nullptr;
  bool m_bCarrier = false;
  bool m_bAllowed = true;
  int m_nSearch = 0;  // for a carrier; an older one's answer counts no more
  std::optional<SCut> m_beforeDrag;
  bool m_bDragging = false;
  std::optional<SCut> m_edgeOf;     // as it was when its edge was taken hold of
  std::optional<SCursor> m_anchor;  // where choosing by keys began
  bool m_bAnchoredTime = false;     // and it has gone along the time, too
};

}  // namespace carvello
