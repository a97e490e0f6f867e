// The main dialog's runs that nobody watches, and what the desktop is told of runs.
#include "ui/carvello_dlg.h"
#include "ui/notification.h"
#include "ui_carvello_dlg.h"

namespace carvello {

void CCarvelloDlg::ConnectUnattended() {
  bool unattended = false;
  m_settings.Read("Unattended", unattended);
  m_ui->checkUnattended->setChecked(unattended);
  m_job.SetUnattended(unattended);
  connect(m_ui->checkUnattended, &QAbstractButton::clicked, this, [this](bool checked) {
    m_job.SetUnattended(checked);
    m_settings.Write("Unattended", checked);
  });
  connect(&m_job, &CJobRunner::UnattendedRunEnded, this, &CCarvelloDlg::TellEndOfRun);
  connect(&m_job, &CJobRunner::UnattendedRunHalted, this,
          [this] { Notify(this, tr("The run waits for a disk"), QString::fromStdString(WaitingText().strText)); });
  // Also between the batches of a run that nobody watches: a system that has waited long for its user sleeps at once.
  connect(&m_job, &CJobRunner::RunningChanged, this, [this] {
    if (m_job.IsBusy() == (m_pAwake != nullptr)) return;
    m_pAwake = m_job.IsBusy() ? StayAwake(tr("Recordings are being cut")) : nullptr;
  });
}

void CCarvelloDlg::TellEndOfRun() {
  const QString outcome = QString::fromStdString(m_job.Account().Outcome().strText);
  Notify(this, tr("The run has ended"), outcome.isEmpty() ? tr("Nothing was written") : outcome);
}

}  // namespace carvello
