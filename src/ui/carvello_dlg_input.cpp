// The main dialog's input recording and output folder.
#include "support/text.h"
#include "ui/carvello_dlg.h"
#include "ui/file_manager.h"
#include "ui/input_texts.h"
#include "ui/wait_cursor.h"
#include "ui_carvello_dlg.h"

namespace carvello {

void CCarvelloDlg::SelectInput() {
  const std::string path = Input();
  std::string problem;
  m_input = {};
  {
    const CWaitCursor wait;
    m_bInputValid = ReadRecordingInput(path, m_input, problem);
  }
  if (!m_bInputValid) m_input = {};
  ShowInputTexts();
  if (m_bInputValid) {
    m_settings.Write("InputFile", path);
    m_fields.ShowRecording(m_input.recording, IsUtc());
  }
  m_fields.OfferBandwidths(m_input.recording.nSampleRate);
  m_fields.Restore(m_settings, m_input.recording.nRadioCenterFreq);

  ClearLog();
  WriteReadyLines();
  for (const std::string& warning : m_input.warnings) m_ui->IDC_1022->AddLine(warning);
  if (!m_bInputValid && !path.empty()) m_ui->IDC_1022->AddLine(problem);

  m_job.ForgetRun();
  // Entries never outlive the recording that they were made for.
  m_entries.SetRecording(m_input.recording, m_input.infoTexts);
  ResetEntries();
  ShowSlips({});
}

void CCarvelloDlg::ShowInputTexts() {
  const SInputTexts texts = m_bInputValid ? InputTexts(m_input.recording, IsUtc()) : SInputTexts();
  const auto show = [](QLabel* label, const std::string& text) {
    label->setText(QString::fromStdString(Printable(text)));
  };
  show(m_ui->IDC_1001, texts.strCentre);
  show(m_ui->IDC_1002, texts.strBandwidth);
  show(m_ui->IDC_1003, texts.strSampleSize);
  show(m_ui->IDC_1004, texts.strTotalFiles);
  show(m_ui->IDC_1005, texts.strStart);
  show(m_ui->IDC_1006, texts.strFinish);
  show(m_ui->IDC_1007, texts.strTotal);
  show(m_ui->IDC_1036, texts.strSource);
}

void CCarvelloDlg::OutputFolderChanged() {
  m_bOutputChosen = true;  // also by an empty text
  m_settings.Write("OutputFolder", OutputFolder());
  UpdateControlStates();
}

void CCarvelloDlg::UtcClicked() {
  m_settings.Write("UTC", IsUtc());
  if (m_bInputValid) SelectInput();
}

void CCarvelloDlg::ExploreOutputFolder() {
  if (!OutputFolder().empty()) OpenOrTell(this, OutputFolder(), "Open Folder", "explore");
}

}  // namespace carvello
