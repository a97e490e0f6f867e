#include "ui/output_fields.h"

#include "engine/entry_checks.h"
#include "engine/offered_bandwidths.h"
#include "ui/output_choices.h"
#include "ui_carvello_dlg.h"

namespace carvello {

COutputFields::COutputFields(Ui::CCarvelloDlg& ui)
    : m_ui(ui), m_start(ui.IDC_1105, ui.IDC_1103), m_finish(ui.IDC_1106, ui.IDC_1104) {
  FillList(*m_ui.IDC_1014, FileSizeChoices(), ESelect::First);
  SetFrequency(0);
}

void COutputFields::ShowRecording(const CRecordingSet& recording, bool utc) {
  m_start.SetRange(recording.tStart, recording.tEnd, utc);
  m_finish.SetRange(recording.tStart, recording.tEnd, utc);
  m_start.Set(recording.tStart, utc);
  m_finish.Set(recording.tEnd, utc);
  FillList(*m_ui.IDC_1028, HourChoices(recording), ESelect::First);
  FillList(*m_ui.IDC_1029, MinuteChoices(recording), ESelect::First);
  SetFrequency(recording.nRadioCenterFreq);
}

void COutputFields::OfferBandwidths(std::uint32_t sampleRate) {
  m_nSampleRate = sampleRate;
  FillList(*m_ui.IDC_1011, BandwidthChoices(sampleRate), ESelect::Nothing);
  SelectByValue(*m_ui.IDC_1011, kUsualBandwidth);
}

void COutputFields::SetFrequency(std::int64_t frequency) {
  m_ui.IDC_1010->SetFrequency(frequency);
}

std::int64_t COutputFields::Frequency() const {
  return m_ui.IDC_1010->Frequency();
}

int COutputFields::StartMode() const {
  return m_ui.IDC_1086->isChecked() ? 1 : 0;
}

int COutputFields::EndMode() const {
  if (m_ui.IDC_1087->isChecked()) return 2;
  return m_ui.IDC_1084->isChecked() ? 1 : 0;
}

void COutputFields::Restore(const CMySettingsStore& settings, std::int64_t frequency) {
  std::uint32_t bandwidth = m_ui.IDC_1011->Bandwidth();
  bool typed = false;
  std::uint32_t fileSize = SelectedValue(*m_ui.IDC_1014);
  std::uint32_t sampleSize = m_ui.IDC_1013->isChecked() ? 1 : 0;
  settings.Read("Bandwidth", bandwidth);
  settings.Read("BandwidthTyped", typed);
  settings.Read("Format", fileSize);
  settings.Read("SampleSize", sampleSize);
  settings.Read("CentreFreq", frequency);
  // What was chosen and is not offered leaves the selection; what was typed is typed again where it can be cut.
  SelectByValue(*m_ui.IDC_1011, bandwidth);
  if (typed && bandwidth > 0 && bandwidth <= m_nSampleRate) m_ui.IDC_1011->SetBandwidth(bandwidth);
  SelectByValue(*m_ui.IDC_1014, fileSize);
  (sampleSize == 1 ? m_ui.IDC_1013 : m_ui.IDC_1012)->setChecked(true);
  SetFrequency(frequency);
}

void COutputFields::Save(CMySettingsStore& settings) const {
  settings.Write("Bandwidth", m_ui.IDC_1011->Bandwidth());
  // Said only where it is news: offered bandwidths are the rule.
  bool wasTyped = false;
  settings.Read("BandwidthTyped", wasTyped);
  if (wasTyped != m_ui.IDC_1011->IsTyped()) settings.Write("BandwidthTyped", !wasTyped);
  settings.Write("Format", SelectedValue(*m_ui.IDC_1014));
  settings.Write("SampleSize", m_ui.IDC_1013->isChecked() ? 1 : 0);
  settings.Write("CentreFreq", Frequency());
}

SEntryFields COutputFields::Read(bool utc, std::int64_t recordingStart) const {
  SEntryFields fields;
  fields.nFrequency = Frequency();
  fields.nBandwidth = m_ui.IDC_1011->Bandwidth();
  fields.nFileSizeMB = SelectedValue(*m_ui.IDC_1014);
  if (fields.nFileSizeMB == kSigMfChoice) {
    fields.nFileSizeMB = 0;
    fields.format = EOutputFormat::SigMf;
  }
  fields.b32Bit = m_ui.IDC_1013->isChecked();
  fields.startMode = static_cast<EStartMode>(StartMode());
  fields.tPickedStart = m_start.Get(utc, recordingStart);
  fields.endMode = static_cast<EEndMode>(EndMode());
  fields.nDurationSeconds = (SelectedValue(*m_ui.IDC_1028) * 60 + SelectedValue(*m_ui.IDC_1029)) * 60;
  fields.tPickedEnd = m_finish.Get(utc, recordingStart);
  fields.bUtc = utc;
  return fields;
}

void COutputFields::SetModes(int start, int end) {
  (start == 1 ? m_ui.IDC_1086 : m_ui.IDC_1085)->setChecked(true);
  (end == 2 ? m_ui.IDC_1087 : end == 1 ? m_ui.IDC_1084 : m_ui.IDC_1083)->setChecked(true);
}

void COutputFields::ShowCut(const SCut& cut, bool utc) {
  SetFrequency(cut.nFrequency);
  m_ui.IDC_1011->SetBandwidth(cut.nBandwidth);
  SetModes(cut.tStart ? 1 : 0, cut.tEnd ? 2 : 0);
  if (cut.tStart) m_start.Set(*cut.tStart, utc);
  if (cut.tEnd) m_finish.Set(*cut.tEnd, utc);
}

void COutputFields::ShowStorage(const OutputEntry& entry) {
  SelectByValue(*m_ui.IDC_1014, FileSizeChoice(entry));
  (entry.nBitsPerSample == 32 ? m_ui.IDC_1013 : m_ui.IDC_1012)->setChecked(true);
}

bool COutputFields::RefusesBandwidth() const {
  const CBandwidthBox& box = *m_ui.IDC_1011;
  return box.IsUnreadable() ||
         (box.IsTyped() && (box.Bandwidth() < kSmallestBandwidth || box.Bandwidth() > m_nSampleRate));
}

SFieldState COutputFields::State() const {
  return {Frequency(), m_ui.IDC_1011->Bandwidth(), StartMode(), EndMode(), m_start.Shown(), m_finish.Shown()};
}

void COutputFields::SetState(const SFieldState& state) {
  SetFrequency(state.nFrequency);
  m_ui.IDC_1011->SetBandwidth(state.nBandwidth);
  SetModes(state.nStartMode, state.nEndMode);
  m_start.Show(state.start);
  m_finish.Show(state.finish);
}

void COutputFields::ResetTime(SEntryProblem::EReset reset, const CRecordingSet& recording, bool utc) {
  if (reset == SEntryProblem::EReset::StartToRecordingStart) m_start.Set(recording.tStart, utc);
  if (reset == SEntryProblem::EReset::EndToRecordingEnd) m_finish.Set(recording.tEnd, utc);
}

}  // namespace carvello
