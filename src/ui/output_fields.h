// COutputFields: the controls of the main dialog that describe a new entry, from the frequency to the finish time.
#pragma once

#include <cstdint>

#include "engine/entry_list.h"
#include "input/recording_set.h"
#include "support/my_settings_store.h"
#include "ui/my_date_time.h"

namespace Ui {
class CCarvelloDlg;
}

namespace carvello {

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
  // Puts the pickers back that a refused entry wants put back.
  void ResetTime(SEntryProblem::EReset reset, const CRecordingSet& recording, bool utc);

 private:
  Ui::CCarvelloDlg& m_ui;
  CMyDateTime m_start;
  CMyDateTime m_finish;
};

}  // namespace carvello
