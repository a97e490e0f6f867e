#include "ui/spectrum_cutting.h"

#include <algorithm>
#include <utility>

namespace carvello {

namespace {

constexpr double kStep = 8.0;   // pixels that a key moves the cursor by
constexpr double kPage = 0.75;  // of the view that is panned by
constexpr double kZoom = 0.8;
constexpr double kCarrierReach = 24.0;  // pixels

}  // namespace

CSpectrumCutting::CSpectrumCutting(CSpectrumScene& scene, CSpectrumPlot& plot, QObject* pParent)
    : QObject(pParent), m_scene(scene), m_plot(plot) {
  CWaterfallView& waterfall = plot.Waterfall();
  connect(&waterfall, &CWaterfallView::Dragging, this, &CSpectrumCutting::Drag);
  connect(&waterfall, &CWaterfallView::DragEnded, this, &CSpectrumCutting::EndDrag);
  connect(&waterfall, &CWaterfallView::EdgeDragging, this, &CSpectrumCutting::DragEdge);
  connect(&waterfall, &CWaterfallView::EdgeDragEnded, this,
          [this](std::optional<std::size_t> entry, ECutEdge edge, double place) {
            DragEdge(entry, edge, place);
            EndEdge(entry);
          });
  connect(&waterfall, &CWaterfallView::Clicked, this, &CSpectrumCutting::Click);
  for (CFrequencyPart* pPart :
       {static_cast<CFrequencyPart*>(&plot.Line()), static_cast<CFrequencyPart*>(&plot.FrequencyAxis())}) {
    connect(pPart, &CFrequencyPart::Dragging, this, &CSpectrumCutting::Drag);
    connect(pPart, &CFrequencyPart::DragEnded, this, &CSpectrumCutting::EndDrag);
  }
}

void CSpectrumCutting::SetSource(ISpectrumSource* pSource) {
  m_pSource = pSource;
  ++m_nSearch;
  m_bDragging = false;
  m_anchor.reset();
  m_edgeOf.reset();
}

void CSpectrumCutting::SetRaster(std::uint32_t raster) {
  SCutRules rules = m_scene.Rules();
  rules.nRaster = raster;
  m_scene.SetRules(rules);
}

void CSpectrumCutting::SetAllowed(bool allowed) {
  if (!allowed) EndMouseDrag();
  m_bAllowed = allowed;
}

void CSpectrumCutting::Drag(const SDragged& dragged) {
  if (!m_bAllowed) return;
  if (!std::exchange(m_bDragging, true)) m_beforeDrag = m_scene.Pending();
  ++m_nSearch;
  m_scene.SetDragged(dragged);
  m_scene.SetPending(CutOf(dragged, m_scene.Rules()));
}

void CSpectrumCutting::EndDrag(const SDragged& dragged) {
  if (!m_bAllowed) return;
  Drag(dragged);
  m_bDragging = false;
  m_anchor.reset();
  m_scene.SetDragged(std::nullopt);
  if (!m_bCarrier) {
    Choose(CutOf(dragged, m_scene.Rules()));
    return;
  }
  Find(dragged.frequency.Middle(), dragged.frequency.Length() / 2.0, dragged.frames.value_or(m_scene.Frames().Whole()),
       [this, dragged](std::optional<double> carrier) { Choose(CutOf(dragged, m_scene.Rules(), carrier)); });
}

// Drops the drag that is going on, if any.
bool CSpectrumCutting::EndMouseDrag() {
  if (!m_bDragging && !m_edgeOf) return false;
  m_plot.Waterfall().DropDrag();
  m_plot.Line().DropDrag();
  m_plot.FrequencyAxis().DropDrag();
  m_edgeOf.reset();
  m_scene.SetDragged(std::nullopt);
  if (std::exchange(m_bDragging, false)) m_scene.SetPending(m_beforeDrag);
  return true;
}

void CSpectrumCutting::Choose(const SCut& cut) {
  m_scene.SetPending(cut);
  emit CutChosen(cut);
}

void CSpectrumCutting::Add() {
  if (m_bAllowed && m_scene.Pending()) emit AddPressed(*m_scene.Pending());
}

void CSpectrumCutting::Drop() {
  ++m_nSearch;
  m_anchor.reset();
  const std::optional<SCut> edited = m_edgeOf;
  const std::optional<std::size_t> band = m_scene.SelectedBand();
  const bool ofEntry = edited && !m_bDragging && band;
  if (EndMouseDrag()) {
    if (ofEntry) m_scene.SetBandCut(*band, *edited);
    return;
  }
  if (m_scene.Pending()) {
    m_scene.SetPending(std::nullopt);
    emit CutDropped();
  } else {
    emit EntriesSelected({});
  }
}

void CSpectrumCutting::DragEdge(std::optional<std::size_t> entry, ECutEdge edge, double place) {
  if (!m_bAllowed) return;
  if (!entry && !m_scene.Pending()) return;
  if (entry && *entry >= m_scene.Bands().size()) return;
  if (!m_edgeOf) {
    m_edgeOf = entry ? m_scene.Bands()[*entry].cut : *m_scene.Pending();
    if (!entry) m_beforeDrag = m_edgeOf;
    m_bDragging = !entry;
  }
  const SCut cut = WithEdgeAt(*m_edgeOf, edge, place, m_scene.Rules());
  if (entry) {
    m_scene.SetBandCut(*entry, cut);
  } else {
    m_scene.SetPending(cut);
  }
}

void CSpectrumCutting::EndEdge(std::optional<std::size_t> entry) {
  const std::optional<SCut> before = std::exchange(m_edgeOf, std::nullopt);
  m_bDragging = false;
  if (!m_bAllowed || !before) return;
  const SCut now = entry ? m_scene.Bands()[*entry].cut : m_scene.Pending().value_or(*before);
  if (now == *before) return;
  if (entry) {
    emit EntryChanged(*entry, now);
  } else {
    emit CutChosen(now);
  }
}

void CSpectrumCutting::Click(const SBandHit& hit, bool adds) {
  m_anchor.reset();
  if (hit.kind == SBandHit::EKind::Pending) return;
  if (hit.kind == SBandHit::EKind::Mark) {
    emit MarkClicked(hit.nIndex);
    return;
  }
  std::vector<std::size_t> selected;
  for (std::size_t i = 0; i < m_scene.Bands().size(); ++i) {
    const bool isHit = hit.kind == SBandHit::EKind::Entry && hit.nIndex == i;
    const bool was = adds && m_scene.Bands()[i].bSelected;
    if (isHit != was) selected.push_back(i);
  }
  emit EntriesSelected(selected);
}

bool CSpectrumCutting::Do(const SPlotKey& key) {
  if (key.action == EPlotAction::None) return false;
  if (m_scene.IsEmpty()) return true;
  if (key.action != EPlotAction::Choose) m_anchor.reset();
  const SSpan& frequencies = m_scene.Frequencies().Shown();
  const SSpan& frames = m_scene.Frames().Shown();
  switch (key.action) {
    case EPlotAction::None:
      break;
    case EPlotAction::MoveCursor:
      MoveCursor(key);
      break;
    case EPlotAction::Choose:
      ChooseByKeys(key);
      break;
    case EPlotAction::Zoom:
      m_scene.Zoom(key.axes, key.nX > 0 ? kZoom : 1.0 / kZoom, CursorOrMiddle());
      break;
    case EPlotAction::ShowAll:
      m_scene.ShowAll(key.axes);
      break;
    case EPlotAction::Pan:
      m_scene.Pan(key.nX * kPage * frequencies.Length(), key.nY * kPage * frames.Length());
      break;
    case EPlotAction::Carrier:
      ToCarrier();
      break;
    case EPlotAction::Add:
      Add();
      break;
    case EPlotAction::Drop:
      Drop();
      break;
    case EPlotAction::Delete:
      if (m_bAllowed) emit DeletePressed();
      break;
    case EPlotAction::NextBand:
      SelectNext(key.nX);
      break;
    case EPlotAction::MoveLow:
      MoveEdge(ECutEdge::Low, key.nX);
      break;
    case EPlotAction::MoveHigh:
      MoveEdge(ECutEdge::High, key.nX);
      break;
    case EPlotAction::MoveStart:
      MoveEdge(ECutEdge::Start, key.nY);
      break;
    case EPlotAction::MoveEnd:
      MoveEdge(ECutEdge::End, key.nY);
      break;
  }
  return true;
}

// The cursor, where it is in view.
SCursor CSpectrumCutting::CursorOrMiddle() const {
  const SSpan& frequencies = m_scene.Frequencies().Shown();
  const SSpan& frames = m_scene.Frames().Shown();
  const std::optional<SCursor>& cursor = m_scene.Cursor();
  if (cursor && frequencies.Holds(cursor->dFrequency) && frames.Holds(cursor->dFrame)) return *cursor;
  return {frequencies.Middle(), frames.Middle()};
}

void CSpectrumCutting::MoveCursor(const SPlotKey& key) {
  const double step = key.bFine ? 1.0 : kStep;
  SCursor cursor = CursorOrMiddle();
  cursor.dFrequency += key.nX * step * m_scene.Frequencies().Shown().Length() / m_plot.Waterfall().width();
  cursor.dFrame += key.nY * step * m_scene.Frames().Shown().Length() / m_plot.Waterfall().height();
  ShowCursor(cursor);
}

// The view goes along where the cursor leaves it.
void CSpectrumCutting::ShowCursor(const SCursor& cursor) {
  const auto held = [](double at, const SSpan& whole) { return std::clamp(at, whole.dFrom, whole.dTo); };
  const auto beyond = [](double at, const SSpan& shown) {
    return at < shown.dFrom ? at - shown.dFrom : at > shown.dTo ? at - shown.dTo : 0.0;
  };
  const SCursor shown{held(cursor.dFrequency, m_scene.Frequencies().Whole()),
                      held(cursor.dFrame, m_scene.Frames().Whole())};
  m_scene.Pan(beyond(shown.dFrequency, m_scene.Frequencies().Shown()), beyond(shown.dFrame, m_scene.Frames().Shown()));
  m_scene.SetCursor(shown);
}

void CSpectrumCutting::ChooseByKeys(const SPlotKey& key) {
  if (!m_bAllowed) return;
  if (!m_anchor) {
    m_anchor = CursorOrMiddle();
    m_bAnchoredTime = false;
  }
  if (key.nY != 0) m_bAnchoredTime = true;
  MoveCursor(key);
  const SCursor& cursor = *m_scene.Cursor();
  SDragged dragged{SpanOf(m_anchor->dFrequency, cursor.dFrequency), std::nullopt};
  if (m_bAnchoredTime) dragged.frames = SpanOf(m_anchor->dFrame, cursor.dFrame);
  Choose(CutOf(dragged, m_scene.Rules()));
}

void CSpectrumCutting::Find(double frequency, double reach, const SSpan& frames,
                            std::function<void(std::optional<double>)> then) {
  if (m_pSource == nullptr) return;
  const int search = ++m_nSearch;
  const auto centre = static_cast<double>(m_scene.Recording().nCentre);
  m_pSource->FindCarrier(
      frequency - centre, reach, frames.dFrom, frames.Length(),
      [this, search, centre, post = m_calls.MakePoster(), then = std::move(then)](std::optional<double> found) {
        post([this, search, centre, then, found] {
          if (search != m_nSearch) return;
          then(found ? std::optional(*found + centre) : std::nullopt);
        });
      });
}

void CSpectrumCutting::ToCarrier() {
  const SCursor cursor = CursorOrMiddle();
  const double reach = kCarrierReach * m_scene.Frequencies().Shown().Length() / m_plot.Waterfall().width();
  Find(cursor.dFrequency, reach, m_scene.Frames().Shown(), [this, cursor](std::optional<double> carrier) {
    if (carrier) ShowCursor({*carrier, cursor.dFrame});
  });
}

// Of what is about to be added, else of the selected entry.
void CSpectrumCutting::MoveEdge(ECutEdge edge, int steps) {
  if (!m_bAllowed) return;
  if (m_scene.Pending()) {
    const SCut cut = WithEdgeMoved(*m_scene.Pending(), edge, steps, m_scene.Rules());
    if (cut != *m_scene.Pending()) Choose(cut);
  } else if (const auto band = m_scene.SelectedBand()) {
    const SCut cut = WithEdgeMoved(m_scene.Bands()[*band].cut, edge, steps, m_scene.Rules());
    if (cut != m_scene.Bands()[*band].cut) emit EntryChanged(*band, cut);
  }
}

void CSpectrumCutting::SelectNext(int by) {
  const std::size_t count = m_scene.Bands().size();
  if (count == 0) return;
  const auto selected = m_scene.SelectedBand();
  const std::size_t next = selected ? (*selected + (by > 0 ? 1 : count - 1)) % count : (by > 0 ? 0 : count - 1);
  emit EntriesSelected({next});
}

}  // namespace carvello
