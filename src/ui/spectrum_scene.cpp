#include "ui/spectrum_scene.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "spectrum/level_code.h"
#include "support/text.h"
#include "ui/axis_ticks.h"
#include "ui/english_texts.h"

namespace carvello {

namespace {

// The closest look: a few bins of the longest transform, and one transform of the shortest.
constexpr double kLongestTransform = 1'048'576.0;
constexpr double kLeastBins = 8.0;
constexpr double kLeastFrames = 1024.0;

std::size_t Index(double part, int count) {
  return static_cast<std::size_t>(std::clamp(static_cast<int>(part * count), 0, count - 1));
}

}  // namespace

void CSpectrumScene::SetRecording(const SShownRecording& recording) {
  m_recording = recording;
  const auto centre = static_cast<double>(recording.nCentre);
  const double rate = recording.nSampleRate;
  m_frequencies = CViewSpan({centre - rate / 2.0, centre + rate / 2.0}, rate / kLongestTransform * kLeastBins);
  m_frames = CViewSpan({0.0, static_cast<double>(recording.nFrames)}, kLeastFrames);
  m_pPicture.reset();
  m_pWhole.reset();
  m_cursor.reset();
  m_bands.clear();
  m_notes.clear();
  m_pending.reset();
  m_dragged.reset();
  m_marks.clear();
  m_chosenMark.reset();
  emit RecordingChanged();
  emit ViewChanged();
  emit PictureChanged();
  emit CursorChanged();
  emit BandsChanged();
}

void CSpectrumScene::SetUtc(bool utc) {
  m_recording.bUtc = utc;
  m_bands.clear();
  m_pending.reset();
  m_dragged.reset();
  emit RecordingChanged();
  emit ViewChanged();
  emit CursorChanged();
  emit BandsChanged();
}

SSpan CSpectrumScene::Seconds() const {
  const double rate = std::max<double>(m_recording.nSampleRate, 1.0);
  return {m_frames.Shown().dFrom / rate, m_frames.Shown().dTo / rate};
}

void CSpectrumScene::ShowAll(EAxes axes) {
  bool changed = false;
  if (axes != EAxes::Time) changed = m_frequencies.ShowAll();
  if (axes != EAxes::Frequency) changed = m_frames.ShowAll() || changed;
  if (changed) emit ViewChanged();
}

void CSpectrumScene::Show(const SSpan& frequencies, const SSpan& frames) {
  const bool changed = m_frequencies.Show(frequencies);
  if (m_frames.Show(frames) || changed) emit ViewChanged();
}

void CSpectrumScene::Zoom(EAxes axes, double factor, const SCursor& at) {
  bool changed = false;
  if (axes != EAxes::Time) changed = m_frequencies.Zoom(factor, at.dFrequency);
  if (axes != EAxes::Frequency) changed = m_frames.Zoom(factor, at.dFrame) || changed;
  if (changed) emit ViewChanged();
}

void CSpectrumScene::Pan(double hertz, double frames) {
  const bool changed = m_frequencies.Pan(hertz);
  if (m_frames.Pan(frames) || changed) emit ViewChanged();
}

void CSpectrumScene::SetPicture(std::shared_ptr<const SSpectrumPicture> pPicture) {
  if (pPicture == m_pPicture) return;
  m_pPicture = std::move(pPicture);
  if (m_pPicture != nullptr && FrequenciesOf(*m_pPicture, m_recording) == m_frequencies.Whole() &&
      FramesOf(*m_pPicture) == m_frames.Whole()) {
    m_pWhole = m_pPicture;
  }
  SetLevelsFromPicture();
  emit PictureChanged();
}

void CSpectrumScene::SetLook(const SSpectrumLook& look) {
  if (look == m_look) return;
  m_look = look;
  m_look.levels = HeldLevels(look.levels, m_look.levels);
  SetLevelsFromPicture();
  emit LookChanged();
}

// Only ever by a good step, so that nothing flickers while a picture is being refined.
void CSpectrumScene::SetLevelsFromPicture() {
  if (!m_look.bAutomatic || m_pPicture == nullptr) return;
  const auto levels = AutomaticLevels(CodesOf(*m_pPicture, m_look));
  if (!levels || !IsWorthAChange(m_look.levels, *levels)) return;
  m_look.levels = *levels;
  emit LookChanged();
}

void CSpectrumScene::SetCursor(std::optional<SCursor> cursor) {
  m_cursor = cursor;
  emit CursorChanged();
}

std::optional<double> CSpectrumScene::LevelAt(const SCursor& cursor) const {
  for (const SSpectrumPicture* pPicture : {m_pPicture.get(), m_pWhole.get()}) {
    if (pPicture == nullptr) continue;
    const SSpan frequencies = FrequenciesOf(*pPicture, m_recording);
    const SSpan frames = FramesOf(*pPicture);
    if (!frequencies.Holds(cursor.dFrequency) || !frames.Holds(cursor.dFrame)) continue;
    const std::size_t column = Index(Carried(cursor.dFrequency, frequencies, {0.0, 1.0}), pPicture->view.nColumns);
    const std::size_t row = Index(Carried(cursor.dFrame, frames, {0.0, 1.0}), pPicture->view.nRows);
    const std::uint8_t code =
        CodesOf(*pPicture, m_look)[row * static_cast<std::size_t>(pPicture->view.nColumns) + column];
    if (code != kUnknownLevel) return CodeLevel(code);
  }
  return std::nullopt;
}

double CSpectrumScene::HertzAPixel() const {
  return m_frequencies.Shown().Length() / (m_pPicture == nullptr ? 1000 : std::max(m_pPicture->view.nColumns, 1));
}

double CSpectrumScene::SecondsAPixel() const {
  return Seconds().Length() / (m_pPicture == nullptr ? 500 : std::max(m_pPicture->view.nRows, 1));
}

QString CSpectrumScene::Reading() const {
  if (!m_cursor || IsEmpty()) return {};
  const std::optional<double> level = LevelAt(*m_cursor);
  const std::string text =
      FrequencyReading(m_cursor->dFrequency, HertzAPixel()) + ", " +
      TimeReading(m_cursor->dFrame / m_recording.nSampleRate, m_recording.tStart, m_recording.bUtc, SecondsAPixel()) +
      ", " + (level ? Format("%.1f dBFS", *level) : "level not known yet");
  const SNote* const pNote = NoteAtCursor();
  return pNote == nullptr ? InLanguage(text) : QStringLiteral("%1 - %2").arg(InLanguage(text), pNote->strText);
}

// The smallest of those that lie over each other there.
const SNote* CSpectrumScene::NoteAtCursor() const {
  const SNote* pFound = nullptr;
  double least = std::numeric_limits<double>::infinity();
  for (const SNote& note : m_notes) {
    const bool inside = m_cursor->dFrequency >= note.frequencies.dFrom &&
                        m_cursor->dFrequency <= note.frequencies.dTo && m_cursor->dFrame >= note.frames.dFrom &&
                        m_cursor->dFrame <= note.frames.dTo;
    const double size = note.frequencies.Length() * note.frames.Length();
    if (!inside || note.strText.isEmpty() || size >= least) continue;
    least = size;
    pFound = &note;
  }
  return pFound;
}

void CSpectrumScene::SetRules(const SCutRules& rules) {
  m_rules = rules;
}

void CSpectrumScene::SetBands(std::vector<SBand> bands) {
  m_bands = std::move(bands);
  emit BandsChanged();
}

void CSpectrumScene::SetNotes(std::vector<SNote> notes) {
  m_notes = std::move(notes);
  emit BandsChanged();
}

void CSpectrumScene::SetBandCut(std::size_t band, const SCut& cut) {
  if (band >= m_bands.size()) return;
  m_bands[band].cut = cut;
  emit BandsChanged();
}

std::optional<std::size_t> CSpectrumScene::SelectedBand() const {
  std::optional<std::size_t> selected;
  for (std::size_t i = 0; i < m_bands.size(); ++i) {
    if (!m_bands[i].bSelected) continue;
    if (selected) return std::nullopt;
    selected = i;
  }
  return selected;
}

void CSpectrumScene::SetPending(const std::optional<SCut>& cut) {
  if (cut == m_pending) return;
  m_pending = cut;
  emit BandsChanged();
}

void CSpectrumScene::SetDragged(const std::optional<SDragged>& dragged) {
  m_dragged = dragged;
  emit BandsChanged();
}

void CSpectrumScene::SetMarks(std::vector<SFoundSignal> marks) {
  m_marks = std::move(marks);
  m_chosenMark.reset();
  emit BandsChanged();
}

void CSpectrumScene::ChooseMark(std::optional<std::size_t> mark) {
  if (mark == m_chosenMark) return;
  m_chosenMark = mark;
  emit BandsChanged();
}

void CSpectrumScene::SetPanning(bool panning) {
  if (panning == m_bPanning) return;
  m_bPanning = panning;
  emit PanningChanged();
}

SSpan FrequenciesOf(const SSpectrumPicture& picture, const SShownRecording& recording) {
  const auto centre = static_cast<double>(recording.nCentre);
  return {centre + picture.view.dLowFrequency, centre + picture.view.dHighFrequency};
}

SSpan FramesOf(const SSpectrumPicture& picture) {
  return {picture.view.dFirstFrame, picture.view.dFirstFrame + picture.view.dFrames};
}

const std::vector<std::uint8_t>& CodesOf(const SSpectrumPicture& picture, const SSpectrumLook& look) {
  return look.bPeak ? picture.maximum : picture.mean;
}

}  // namespace carvello
