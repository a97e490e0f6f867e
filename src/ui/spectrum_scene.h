// CSpectrumScene: what the parts of the spectrum window show together: which frequencies and times are in view, the
// picture of them, its colours, the cursor, and the bands that are cut or could be.
#pragma once

#include <QObject>
#include <QString>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "overview/spectrum_view.h"
#include "ui/cut_shape.h"
#include "ui/level_range.h"
#include "ui/spectrum_source.h"
#include "ui/view_span.h"

namespace carvello {

// What is known of the recording in view.
struct SShownRecording {
  std::int64_t nFrames = 0;  // 0 when there is none
  std::uint32_t nSampleRate = 0;
  std::int64_t nCentre = 0;  // Hz
  std::int64_t tStart = 0;   // seconds since 1970 UTC
  std::int64_t tEnd = 0;
  bool bUtc = true;
};

// A band that is on the list of entries.
struct SBand {
  SCut cut;
  QString strName;
  bool bSelected = false;
};

// What somebody noted of a stretch, as the recording tells it.
struct SNote {
  SSpan frequencies;  // Hz
  SSpan frames;
  QString strText;
};

struct SSpectrumLook {
  EPalette palette = EPalette::Viridis;
  bool bPeak = false;  // the maxima instead of the means
  bool bAutomatic = true;
  SLevels levels;
  bool operator==(const SSpectrumLook&) const = default;
};

struct SCursor {
  double dFrequency = 0.0;  // Hz
  double dFrame = 0.0;
};

class CSpectrumScene : public QObject {
  Q_OBJECT

 public:
  using QObject::QObject;

  // Shows all of it, without a picture, a cursor, or bands.
  void SetRecording(const SShownRecording& recording);
  // The same recording, without its bands.
  void SetUtc(bool utc);
  const SShownRecording& Recording() const { return m_recording; }
  bool IsEmpty() const { return m_recording.nFrames == 0; }

  const CViewSpan& Frequencies() const { return m_frequencies; }  // Hz
  const CViewSpan& Frames() const { return m_frames; }
  SSpan Seconds() const;  // those in view, from the start of the recording on
  void ShowAll(EAxes axes);
  void Show(const SSpan& frequencies, const SSpan& frames);
  void Zoom(EAxes axes, double factor, const SCursor& at);
  void Pan(double hertz, double frames);

  void SetPicture(std::shared_ptr<const SSpectrumPicture> pPicture);
  const SSpectrumPicture* Picture() const { return m_pPicture.get(); }
  // The last picture of the whole recording: stands in where the newest one does not reach.
  const SSpectrumPicture* WholePicture() const { return m_pWhole.get(); }

  const SSpectrumLook& Look() const { return m_look; }
  void SetLook(const SSpectrumLook& look);

  const std::optional<SCursor>& Cursor() const { return m_cursor; }
  void SetCursor(std::optional<SCursor> cursor);
  // dBFS; nothing where nothing is known.
  std::optional<double> LevelAt(const SCursor& cursor) const;
  // Hertz, and seconds, that stand for a pixel of a picture in view.
  double HertzAPixel() const;
  double SecondsAPixel() const;
  // "7.100 MHz, 2026-01-01 00:03:12z, -73.2 dBFS", and what is noted there
  QString Reading() const;

  const SCutRules& Rules() const { return m_rules; }
  void SetRules(const SCutRules& rules);
  const std::vector<SBand>& Bands() const { return m_bands; }
  void SetBands(std::vector<SBand> bands);
  void SetBandCut(std::size_t band, const SCut& cut);  // until the bands are set anew
  std::optional<std::size_t> SelectedBand() const;     // when there is just one
  const std::vector<SNote>& Notes() const { return m_notes; }
  void SetNotes(std::vector<SNote> notes);
  const std::optional<SCut>& Pending() const { return m_pending; }
  void SetPending(const std::optional<SCut>& cut);
  const std::optional<SDragged>& Dragged() const { return m_dragged; }
  void SetDragged(const std::optional<SDragged>& dragged);
  const std::vector<SFoundSignal>& Marks() const { return m_marks; }
  std::optional<std::size_t> ChosenMark() const { return m_chosenMark; }
  void SetMarks(std::vector<SFoundSignal> marks);
  void ChooseMark(std::optional<std::size_t> mark);

  bool IsPanning() const { return m_bPanning; }
  void SetPanning(bool panning);  // the space bar is held down

 signals:
  void RecordingChanged();
  void ViewChanged();
  void PictureChanged();
  void LookChanged();
  void CursorChanged();
  void BandsChanged();  // entries, the pending cut or the marks
  void PanningChanged();

 private:
  void SetLevelsFromPicture();
  const SNote* NoteAtCursor() const;

  SShownRecording m_recording;
  CViewSpan m_frequencies;
  CViewSpan m_frames;
  std::shared_ptr<const SSpectrumPicture> m_pPicture;
  std::shared_ptr<const SSpectrumPicture> m_pWhole;
  SSpectrumLook m_look;
  std::optional<SCursor> m_cursor;
  SCutRules m_rules;
  std::vector<SBand> m_bands;
  std::vector<SNote> m_notes;
  std::optional<SCut> m_pending;
  std::optional<SDragged> m_dragged;
  std::vector<SFoundSignal> m_marks;
  std::optional<std::size_t> m_chosenMark;
  bool m_bPanning = false;
};

// Where a picture lies, in Hz and frames.
SSpan FrequenciesOf(const SSpectrumPicture& picture, const SShownRecording& recording);
SSpan FramesOf(const SSpectrumPicture& picture);
// The codes of the cells that the look asks for.
const std::vector<std::uint8_t>& CodesOf(const SSpectrumPicture& picture, const SSpectrumLook& look);

}  // namespace carvello
