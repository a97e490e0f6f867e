// The main dialog's job, log and progress.
#include "support/text.h"
#include "ui/carvello_dlg.h"
#include "ui/english_texts.h"
#include "ui/file_manager.h"
#include "ui/log_file.h"
#include "ui/message_boxes.h"
#include "ui/spoken_text.h"
#include "ui_carvello_dlg.h"

namespace carvello {

namespace {
constexpr int kProgressRange = 1000;
}

void CCarvelloDlg::Start() {
  if (!m_job.IsRunning()) m_job.SetListener(m_pSpectrum == nullptr ? nullptr : m_pSpectrum->Listener());
  m_job.Start(m_input.recording);
}

void CCarvelloDlg::JobStarting(bool continues) {
  m_ui->IDC_1020->setValue(0);
  m_pAnnouncer->BeginProgress();
  m_taskbar.Begin();
  // What went wrong in a batch is not swept away by the next one.
  if (continues) {
    m_ui->IDC_1022->ClearButErrors();
  } else {
    ClearLog();
  }
  ShowAccount();
}

void CCarvelloDlg::JobStarted() {
  m_rate.Begin(m_job.Span(m_input.recording), m_clock.elapsed());
  m_ui->IDC_1008->ShowLastColumn();
}

void CCarvelloDlg::ShowAccount() {
  const SToneText outcome = m_job.IsRunning() ? WaitingText() : m_job.Account().Outcome();
  if (m_ui->labelOutcome->SetText(outcome)) m_pAnnouncer->AnnounceOutcome(m_ui->labelOutcome->text());
  const std::string rate = m_job.IsRunning() ? m_rate.Text(m_clock.elapsed()) : std::string();
  ShowSpoken(*m_ui->labelRate, InLanguage(rate));
  ShowStates();
}

// Nothing while a job simply runs.
SToneText CCarvelloDlg::WaitingText() const {
  const QString place = QString::fromStdString(Printable(m_job.Place()));
  if (m_job.IsStopping()) return {tr("Stopping, waiting for %1…").arg(place).toStdString(), ETone::Caution};
  const CJobRunner::EHalt halt = m_job.Halt();
  if (!m_job.IsPreparing() && halt == CJobRunner::EHalt::None) return {};
  if (halt == CJobRunner::EHalt::Silent) {
    return {tr("No answer from %1. Connect its disk, and the run goes on; Stop ends it.").arg(place).toStdString(),
            ETone::Bad};
  }
  return {tr("Waiting for %1…").arg(place).toStdString(), ETone::Caution};
}

void CCarvelloDlg::ShowStates() {
  for (std::size_t i = 0; i < m_entries.Size(); ++i) {
    m_ui->IDC_1008->SetLastCell(static_cast<int>(i), m_job.Account().StateOf(&m_entries[i]));
  }
}

void CCarvelloDlg::ClearLog() {
  m_ui->IDC_1022->Clear();
}

void CCarvelloDlg::WriteReadyLines() {
  m_ui->IDC_1022->AddLine("Ready");
  m_ui->IDC_1022->AddLine(m_job.LimitsText());
}

void CCarvelloDlg::ShowProgress(std::uint64_t total, std::uint64_t done) {
  if (total == 0) return;
  const double part = static_cast<double>(done) / static_cast<double>(total);
  const int position = static_cast<int>(part * kProgressRange);
  m_ui->IDC_1020->setValue(position);
  ShowSpoken(*m_ui->IDC_1021, QString::fromStdString(Format("%.2f%%", part * 100.0)));
  m_pAnnouncer->AnnounceProgress(part);
  m_ui->IDC_1021->show();
  m_rate.Update(part, m_clock.elapsed());
  m_taskbar.Update(static_cast<std::uint64_t>(position), done, total);
}

void CCarvelloDlg::ViewLogAsText() {
  std::string error;
  if (!WriteTextFile(LogFilePath(), m_ui->IDC_1022->Lines(), error)) {
    ShowMessageBox(this,
                   {"Open File", Format("%s: %s", LogFilePath().c_str(), error.c_str()), EButtons::Ok, EIcon::Stop});
    return;
  }
  OpenOrTell(this, LogFilePath(), "Open File", "open", m_fileWork);
}

}  // namespace carvello
