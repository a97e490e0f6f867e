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

void CCarvelloDlg::AddEntry() {
  const std::size_t before = m_entries.Size();
  if (const auto problem = m_entries.AddEntry(EntryFields())) {
    AnswerProblem(*problem);
    ShowSlips({});
    return;
  }
  m_fields.Save(m_settings);
  FinishAdding(before);
}

void CCarvelloDlg::AddSequence() {
  CAddSequence dialog(m_input.recording.nRadioCenterFreq, m_input.recording.nSampleRate, m_fixedFont, this);
  if (dialog.exec() != QDialog::Accepted) return;
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
    m_fields.SetFrequency(m_entries[m_entries.Size() - 1].nOutputFrequency);
    m_fields.Save(m_settings);
  }
  m_fields.SetFrequency(frequencyBefore);
  FinishAdding(before);
}

// The entries from the index on were added just now.
void CCarvelloDlg::FinishAdding(std::size_t first) {
  CAddingSlips slips;
  const SEntryFields fields = EntryFields();
  for (std::size_t i = first; i < m_entries.Size(); ++i) slips.Added(fields, m_input.recording, m_entries[i]);
  for (const SDroppedEntry& dropped : m_entries.Rebuild()) slips.Dropped(dropped);
  ShowEntries();
  ShowSlips(slips);
}

void CCarvelloDlg::ShowSlips(const CAddingSlips& slips) {
  const QString hint = QString::fromStdString(slips.Hint());
  m_ui->labelHint->setText(hint);
  m_ui->labelHint->setToolTip(hint);  // there is room for a line or two
  // A reader of the screen says the name only, so it carries the text.
  m_ui->labelHint->setAccessibleName(hint.isEmpty() ? tr("Hint") : tr("Hint: %1").arg(hint));
  for (const std::string& line : slips.LogLines()) m_ui->IDC_1022->AddLine(line);
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
  m_job.RetainEntries();
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
  ShowStates();
  m_ui->IDC_1027->setText(QString::fromStdString(Format(
      "Maximum entries: %d, current: %d", static_cast<int>(m_job.MaxEntries()), static_cast<int>(m_entries.Size()))));
  UpdateControlStates();
}

}  // namespace carvello
