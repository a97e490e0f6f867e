// The main dialog's list of entries.
#include "support/formatting.h"
#include "support/text.h"
#include "ui/add_sequence.h"
#include "ui/carvello_dlg.h"
#include "ui/input_texts.h"
#include "ui/message_boxes.h"
#include "ui/wait_cursor.h"
#include "ui_carvello_dlg.h"

namespace carvello {

bool CCarvelloDlg::AddEntry() {
  SEntryFields fields = m_fields.Read(IsUtc(), m_input.recording.tStart);
  fields.strOutputFolder = OutputFolder();
  if (const auto problem = m_entries.AddEntry(fields)) {
    if (ShowMessageBox(this, problem->box) == EAnswer::Yes) {
      m_fields.ResetTime(problem->reset, m_input.recording, IsUtc());
    }
    return false;
  }
  m_fields.Save(m_settings);
  return true;
}

void CCarvelloDlg::AddSequence() {
  CAddSequence dialog(m_input.recording.nRadioCenterFreq, m_input.recording.nSampleRate, m_fixedFont, this);
  if (dialog.exec() != QDialog::Accepted || dialog.StepSize() <= 0) return;
  const std::int64_t frequencyBefore = m_fields.Frequency();
  // Each step goes through the frequency field, so that a time that was put back on one step counts for the next.
  for (std::int64_t frequency = dialog.Start(); frequency <= dialog.End(); frequency += dialog.StepSize()) {
    m_fields.SetFrequency(frequency);
    AddEntry();
  }
  m_fields.SetFrequency(frequencyBefore);
  RebuildEntryList();
}

void CCarvelloDlg::DeleteSelectedEntries() {
  const CWaitCursor wait;
  m_entries.Remove(m_ui->IDC_1008->SelectedRows());
  RebuildEntryList();
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
  std::vector<QStringList> rows;
  for (const OutputEntry* entry : m_entries.Pointers()) {
    QStringList row;
    for (const std::string& text :
         {GroupDigits(entry->nOutputFrequency), FormatFrequency(entry->nOutputSampleRate),
          DateTimeText(entry->tStart, IsUtc()), DateTimeText(entry->tEnd, IsUtc()), entry->strDisplayName}) {
      row << QString::fromStdString(text);
    }
    rows.push_back(row << QString());
  }
  m_ui->IDC_1008->SetRows(rows);
  m_ui->IDC_1027->setText(QString::fromStdString(Format(
      "Maximum entries: %d, current: %d", static_cast<int>(m_job.MaxEntries()), static_cast<int>(m_entries.Size()))));
  UpdateControlStates();
}

}  // namespace carvello
