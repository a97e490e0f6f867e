// The main dialog's list of entries.
#include <algorithm>

#include "support/text.h"
#include "ui/add_sequence.h"
#include "ui/carvello_dlg.h"
#include "ui/english_texts.h"
#include "ui/message_boxes.h"
#include "ui/spoken_text.h"
#include "ui/wait_cursor.h"
#include "ui_carvello_dlg.h"

namespace carvello {

SEntryFields CCarvelloDlg::EntryFields() const {
  SEntryFields fields = m_fields.Read(IsUtc(), m_input.recording.tStart);
  fields.strOutputFolder = OutputFolder();
  return fields;
}

void CCarvelloDlg::AnswerProblem(const SEntryProblem& problem) {
  if (ShowMessageBox(this, problem.box) == EAnswer::Yes) {
    m_fields.ResetTime(problem.reset, m_input.recording, IsUtc());
  }
}

// False when nothing was added.
bool CCarvelloDlg::AddEntry() {
  if (RefuseBandwidth()) return false;
  const SListState state = ListState();
  const SEntryFields fields = EntryFields();
  const std::size_t before = m_entries.Size();
  if (const auto problem = m_entries.AddEntry(fields)) {
    AnswerProblem(*problem);
    ShowSlips({});
    return false;
  }
  LeaveState(state);
  m_fields.Save(m_settings);
  FinishAdding(before, fields);
  return true;
}

void CCarvelloDlg::AddSequence() {
  if (RefuseBandwidth()) return;
  CAddSequence dialog(m_input.recording.nRadioCenterFreq, m_input.recording.nSampleRate, m_fixedFont, this);
  if (dialog.exec() != QDialog::Accepted) return;
  const SListState state = ListState();
  const std::int64_t frequencyBefore = m_fields.Frequency();
  const std::size_t before = m_entries.Size();
  // The frequency field goes along where the user looks at it, and keeps the last one for the settings.
  m_entries.AddSequence(EntryFields(), dialog.Start(), dialog.End(), dialog.StepSize(),
                        [this](const SEntryProblem& problem, SEntryFields& fields) {
                          m_fields.SetFrequency(fields.nFrequency);
                          AnswerProblem(problem);
                          fields = EntryFields();  // a time that was put back on one step counts for the next
                        });
  if (m_entries.Size() > before) {
    LeaveState(state);
    m_fields.SetFrequency(m_entries[m_entries.Size() - 1].nOutputFrequency);
    m_fields.Save(m_settings);
  }
  m_fields.SetFrequency(frequencyBefore);
  FinishAdding(before, EntryFields());
}

// The entries from the index on were added just now, with times as in the fields.
void CCarvelloDlg::FinishAdding(std::size_t first, const SEntryFields& fields) {
  CAddingSlips slips;
  std::set<OutputKey> added;
  for (std::size_t i = first; i < m_entries.Size(); ++i) {
    slips.Added(fields, m_input.recording, m_entries[i]);
    added.insert(KeyOf(m_entries[i]));
  }
  for (const SDroppedEntry& dropped : m_entries.Rebuild()) slips.Dropped(dropped);
  ShowEntries();
  ShowSlips(slips);
  SelectKeys(added);
}

void CCarvelloDlg::ShowSlips(const CAddingSlips& slips) {
  ShowHint(InLanguage(slips.Hint()));
  for (const std::string& line : slips.LogLines()) m_ui->IDC_1022->AddLine(line);
}

void CCarvelloDlg::ShowHint(const QString& hint) {
  m_ui->labelHint->setText(hint);
  m_ui->labelHint->setToolTip(hint);  // there is room for a line or two
  // A reader of the screen says the name only, so it carries the text.
  m_ui->labelHint->setAccessibleName(hint.isEmpty() ? tr("Hint") : tr("Hint: %1").arg(hint));
}

void CCarvelloDlg::DeleteSelectedEntries() {
  const CWaitCursor wait;
  if (!m_ui->IDC_1008->HasSelection()) return;
  LeaveState(ListState());
  const std::vector<std::size_t> rows = m_ui->IDC_1008->SelectedRows();
  const auto current = static_cast<std::size_t>(std::max(m_ui->IDC_1008->CurrentRow(), 0));
  const auto above = std::lower_bound(rows.begin(), rows.end(), current) - rows.begin();
  m_entries.Remove(rows);
  RebuildEntryList();
  m_ui->IDC_1008->GoBefore(static_cast<int>(current) - static_cast<int>(above));
}

void CCarvelloDlg::ResetEntries() {
  m_entries.Reset();
  RebuildEntryList();
}

void CCarvelloDlg::RebuildEntryList() {
  m_entries.Rebuild();
  ShowEntries();
}

void CCarvelloDlg::ShowEntries() {
  m_ui->IDC_1008->SetRows(m_table.Rows(m_entries, IsUtc()));
  ListChanged();
  ShowStates();
  ShowCount();
  CountSums();
  ShowBands();
  UpdateControlStates();
}

void CCarvelloDlg::ShowCount() {
  ShowSpoken(*m_ui->IDC_1027,
             InLanguage(Format("Maximum entries: %d, current: %d", static_cast<int>(m_job.MaxEntries()),
                               static_cast<int>(m_entries.Size()))));
}

void CCarvelloDlg::OnePassClicked() {
  m_job.SetOnePass(m_ui->checkOnePass->isChecked());
  m_settings.Write("OnePass", m_ui->checkOnePass->isChecked());
  ShowCount();
}

}  // namespace carvello
