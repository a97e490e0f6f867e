// COutputFields: the controls of the main dialog that describe a new entry, from the frequency to the finish time.
#pragma once

#include <QDateTime>
#include <cstdint>

#include "engine/entry_list.h"
#include "input/recording_set.h"
#include "support/my_settings_store.h"
#include "ui/cut_shape.h"
#include "ui/my_date_time.h"

namespace Ui {
class CCarvelloDlg;
}

namespace carvello {

// What the fields show of an entry's band and times.
struct SFieldState {
  std::int64_t nFrequency = 0;
  std::uint32_t nBandwidth = 0;
  int nStartMode = 0;
  int nEndMode = 0;
  QDateTime start;  // as the pickers show them
  QDateTime finish;
  bool operator==(const SFieldState&) const = default;
};

class COutputFields {
 public:
  // The controls must outlive this object.
  explicit COutputFields(Ui::CCarvelloDlg& ui);

  // Times, durations and frequency of a new recording.
  void ShowRecording(const CRecordingSet& recording, bool utc);
  void OfferBandwidths(std::uint32_t sampleRate);
  void SetFrequency(std::int64_t frequency);
  std::int64_t Frequency() const;
  int StartMode() const;
  int EndMode() const;

  // What was saved when an entry was last added; where nothing was, the choices stay and the frequency is the given.
  void Restore(const CMySettingsStore& settings, std::int64_t frequency);
  void Save(CMySettingsStore& settings) const;

  // `recordingStart` as CMyDateTime::Get needs it. The output folder is left empty.
  SEntryFields Read(bool utc, std::int64_t recordingStart) const;
  // Band and times of what was chosen in the spectrum.
  void ShowCut(const SCut& cut, bool utc);
  // How the entry's samples are stored.
  void ShowStorage(const OutputEntry& entry);
  // Whether a bandwidth was typed that is none, or none for this recording.
  bool RefusesBandwidth() const;
  SFieldState State() const;
  void SetState(const SFieldState& state);
  // Puts the pickers back that a refused entry wants put back.
  void ResetTime(SEntryProblem::EReset reset, const CRecordingSet& recording, bool utc);

 private:
  void SetModes(int start, int end);

  Ui::CCarvelloDlg& m_ui;
  CMyDateTime m_start;
  CMyDateTime m_finish;
  std::uint32_t m_nSampleRate = 0;
};

}  // namespace carvello
