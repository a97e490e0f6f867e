// The main dialog's spectrum window, and undoing what was done to the list of entries.
#include <QShortcut>
#include <algorithm>
#include <utility>

#include "support/platform.h"
#include "support/text.h"
#include "ui/carvello_dlg.h"
#include "ui/message_boxes.h"
#include "ui/overview_source.h"
#include "ui_carvello_dlg.h"

namespace carvello {

namespace {

// For the caches of the user at work.
std::string OverviewFolder() {
  const std::string folder = platform::UserCacheFolder();
  return folder.empty() ? folder : platform::JoinPath(platform::JoinPath(folder, "Carvello"), "overviews");
}

}  // namespace

CSpectrumWindow::SourceMaker CCarvelloDlg::SpectrumSource() const {
  return [](const CRecordingSet& recording, bool keep, std::function<void()> changed) {
    return OpenOverview(recording, keep ? OverviewFolder() : std::string(), std::move(changed));
  };
}

void CCarvelloDlg::ConnectSpectrum() {
  connect(m_ui->buttonSpectrum, &QAbstractButton::clicked, this, &CCarvelloDlg::OpenSpectrum);
  connect(new QShortcut(Qt::Key_F6, this), &QShortcut::activated, m_ui->buttonSpectrum, &QAbstractButton::click);
  connect(m_ui->IDC_1008, &CMyMFCListCtrl::itemSelectionChanged, this, &CCarvelloDlg::ShowBands);
  connect(&m_job, &CJobRunner::RunningChanged, this, [this] {
    if (m_pSpectrum != nullptr) m_pSpectrum->SetJob(m_job.IsRunning());
  });
}

void CCarvelloDlg::OpenSpectrum() {
  if (m_pSpectrum == nullptr) {
    m_pSpectrum = std::make_unique<CSpectrumWindow>(SpectrumSource(), m_settings, this);
    CSpectrumWindow* pWindow = m_pSpectrum.get();
    connect(pWindow, &CSpectrumWindow::CutChosen, this, &CCarvelloDlg::ChooseCut);
    connect(pWindow, &CSpectrumWindow::CutDropped, this, &CCarvelloDlg::DropCut);
    connect(pWindow, &CSpectrumWindow::AddPressed, this, &CCarvelloDlg::AddCut);
    connect(pWindow, &CSpectrumWindow::CutsWanted, this, &CCarvelloDlg::AddCuts);
    connect(pWindow, &CSpectrumWindow::EntryChanged, this, &CCarvelloDlg::ChangeEntry);
    connect(pWindow, &CSpectrumWindow::EntriesSelected, m_ui->IDC_1008, &CMyMFCListCtrl::SelectRows);
    connect(pWindow, &CSpectrumWindow::DeletePressed, m_ui->IDC_1025, &QAbstractButton::click);
    connect(pWindow, &CSpectrumWindow::UndoPressed, this, &CCarvelloDlg::Undo);
    connect(pWindow, &CSpectrumWindow::RedoPressed, this, &CCarvelloDlg::Redo);
    connect(pWindow, &CSpectrumWindow::BackPressed, this, [this] {
      raise();
      activateWindow();
    });
    m_pSpectrum->SetJob(m_job.IsRunning());
    ShowInSpectrum();
  }
  m_pSpectrum->show();
  m_pSpectrum->raise();
  m_pSpectrum->activateWindow();
}

// The recording that is selected now.
void CCarvelloDlg::ShowInSpectrum() {
  m_chosen.reset();
  if (m_pSpectrum == nullptr) return;
  m_pSpectrum->SetRecording(m_bInputValid ? &m_input.recording : nullptr, IsUtc());
  ShowBands();
  UpdateControlStates();
}

void CCarvelloDlg::ShowBands() {
  if (m_pSpectrum == nullptr) return;
  std::vector<SBand> bands;
  for (const OutputEntry* pEntry : m_entries.Pointers()) {
    bands.push_back({EntryCut(*pEntry), QString::fromStdString(pEntry->strTitle), false});
  }
  for (const std::size_t row : m_ui->IDC_1008->SelectedRows()) {
    if (row < bands.size()) bands[row].bSelected = true;
  }
  m_pSpectrum->SetBands(std::move(bands));
}

void CCarvelloDlg::ChooseCut(const SCut& cut) {
  if (m_job.IsRunning()) return;
  LeaveState(ListState());
  if (!m_chosen) m_beforeChoice = m_fields.State();
  m_chosen = cut;
  m_fields.ShowCut(cut, IsUtc());
}

// The fields are as they were before anything was chosen.
void CCarvelloDlg::DropCut() {
  if (m_job.IsRunning() || !m_chosen) return;
  LeaveState(ListState());
  m_chosen.reset();
  m_fields.SetState(m_beforeChoice);
}

// What the window shows counts, also when the fields were changed since.
void CCarvelloDlg::AddCut(const SCut& cut) {
  if (m_job.IsRunning() || !m_ui->IDC_1015->isEnabled()) return;
  m_fields.ShowCut(cut, IsUtc());
  if (!AddEntry()) return;
  m_chosen.reset();
  m_pSpectrum->SetPending(std::nullopt);
}

void CCarvelloDlg::AddCuts(const std::vector<SCut>& cuts) {
  if (m_job.IsRunning() || !m_ui->IDC_1015->isEnabled()) return;
  const SListState state = ListState();
  const std::size_t before = m_entries.Size();
  SEntryFields fields = EntryFields();
  for (const SCut& cut : cuts) {
    fields = FieldsOf(cut, EntryFields());
    if (const auto problem = m_entries.AddEntry(fields)) {
      ShowMessageBox(this, problem->box);
      break;
    }
  }
  if (m_entries.Size() == before) return;
  LeaveState(state);
  FinishAdding(before, fields);
}

// In the place of the entry comes another one, which is what the entry was in everything else.
void CCarvelloDlg::ChangeEntry(std::size_t entry, const SCut& cut) {
  if (m_job.IsRunning() || entry >= m_entries.Size()) return;
  SEntryFields fields = FieldsOf(cut, EntryFields());
  fields.nFileSizeMB = m_entries[entry].nFileSizeMB;
  fields.format = m_entries[entry].format;
  fields.b32Bit = m_entries[entry].nBitsPerSample == 32;
  if (const auto problem = ReplaceEntry(entry, fields)) {
    ShowMessageBox(this, problem->box);
    ShowBands();
  }
}

// In the place of the entry comes one of these fields, in the same folder. Nothing is changed when they are refused.
std::optional<SEntryProblem> CCarvelloDlg::ReplaceEntry(std::size_t entry, SEntryFields fields) {
  const SListState state = ListState();
  fields.strOutputFolder = platform::FolderOf(m_entries[entry].strFileName);
  m_entries.Remove({entry});
  const std::size_t last = m_entries.Size();
  if (const auto problem = m_entries.AddEntry(fields)) {
    m_entries.PutBack(state.entries);
    return problem;
  }
  LeaveState(state);
  FinishAdding(last, fields);
  return std::nullopt;
}

SCut CCarvelloDlg::EntryCut(const OutputEntry& entry) const {
  const CRecordingSet& recording = m_input.recording;
  const std::int64_t rate = std::max<std::int64_t>(recording.nSampleRate, 1);
  SCut cut;
  cut.nFrequency = entry.nOutputFrequency;
  cut.nBandwidth = entry.nOutputSampleRate;
  // The times that its samples have: those that lists show can differ.
  const std::int64_t start = recording.tStart + entry.nStartSample / rate;
  if (entry.nStartSample > 0) cut.tStart = start;
  if (entry.nTotalSamples > 0) cut.tEnd = start + entry.nTotalSamples / rate;
  return cut;
}

SEntryFields CCarvelloDlg::FieldsOf(const SCut& cut, SEntryFields fields) const {
  fields.nFrequency = cut.nFrequency;
  fields.nBandwidth = cut.nBandwidth;
  fields.startMode = cut.tStart ? EStartMode::At : EStartMode::Beginning;
  fields.tPickedStart = cut.tStart.value_or(m_input.recording.tStart);
  fields.endMode = cut.tEnd ? EEndMode::At : EEndMode::Finish;
  fields.tPickedEnd = cut.tEnd.value_or(m_input.recording.tEnd);
  return fields;
}

CCarvelloDlg::SListState CCarvelloDlg::ListState() const {
  return {m_entries.Save(), m_fields.State(), m_chosen, m_beforeChoice, m_bShownUtc};
}

void CCarvelloDlg::LeaveState(SListState state) {
  m_history.Leave(std::move(state));
}

void CCarvelloDlg::GoTo(const std::optional<SListState>& state) {
  if (!state) {
    Beep();
    return;
  }
  if (state->bUtc != IsUtc()) ShowTimesAs(state->bUtc);
  m_entries.PutBack(state->entries);
  m_fields.SetState(state->fields);
  m_chosen = state->chosen;
  m_beforeChoice = state->beforeChoice;
  ShowEntries();
  ShowSlips({});
  if (m_pSpectrum != nullptr) m_pSpectrum->SetPending(m_chosen);
}

void CCarvelloDlg::Undo() {
  if (!m_job.IsRunning() && m_bInputValid) GoTo(m_history.Undo(ListState()));
}

void CCarvelloDlg::Redo() {
  if (!m_job.IsRunning() && m_bInputValid) GoTo(m_history.Redo(ListState()));
}

}  // namespace carvello
