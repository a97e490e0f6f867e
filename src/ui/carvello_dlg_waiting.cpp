// The main dialog while it waits for a disk or the network: it tells what for, lives on, and can give it up.
#include "jobs/fact_texts.h"
#include "support/platform.h"
#include "support/text.h"
#include "support/version.h"
#include "ui/carvello_dlg.h"
#include "ui/message_boxes.h"
#include "ui_carvello_dlg.h"

namespace carvello {

void CCarvelloDlg::ConnectWaiting() {
  m_pWaitPanel = new CWaitPanel(m_ui->inputFactsLayout, m_ui->inputGroup);
  setTabOrder(m_ui->IDC_1032, m_pWaitPanel->Button());
  connect(m_pWaitPanel, &CWaitPanel::GiveUpPressed, this, &CCarvelloDlg::GiveUpShownWaiting);
  connect(m_pWaitPanel, &CWaitPanel::TryAgainPressed, this, &CCarvelloDlg::TryInputAgain);
  connect(&m_inputWork, &CPatientWork::WaitingChanged, this, &CCarvelloDlg::InputWaitingChanged);
  connect(&m_fileWork, &CPatientWork::WaitingChanged, this, &CCarvelloDlg::ShowWaiting);
  connect(&m_repairWork, &CPatientWork::WaitingChanged, this, &CCarvelloDlg::ShowWaiting);
  connect(&m_folderWork, &CPatientWork::WaitingChanged, this, [this] {
    const QString place = QString::fromStdString(Printable(m_folderWork.Place()));
    m_ui->IDC_1009->setPlaceholderText(m_folderWork.IsWaiting() ? tr("Waiting for %1…").arg(place) : QString());
  });
}

void CCarvelloDlg::RestorePaths(const std::string& input) {
  // A given input is selected even when it cannot be read, so that the log tells why.
  if (!input.empty()) {
    // Remembered with its folder: the next start may be from another one.
    m_ui->IDC_1000->SetPath(QString::fromStdString(platform::AbsolutePath(input)));
  } else if (std::string path; m_settings.Read("InputFile", path) && !path.empty()) {
    m_inputWork.Run("Input", path, [this, path]() -> std::function<void()> {
      if (platform::IsReadable(path)) {
        return [this, path] {
          std::string facts;
          m_settings.Read("InputFacts", facts);
          SetGiven(path, ParseFactsLine(facts));
          m_ui->IDC_1000->SetPath(QString::fromStdString(path));
        };
      }
      return TellOfRights(path);
    });
  }
  if (std::string folder; m_settings.Read("OutputFolder", folder) && !folder.empty()) {
    m_folderWork.Run("Output", folder, [this, folder]() -> std::function<void()> {
      if (platform::IsReadable(folder))
        return [this, folder] { m_ui->IDC_1009->SetPath(QString::fromStdString(folder)); };
      return TellOfRights(folder);
    });
  }
}

// What is gone is forgotten quietly. What is there and may not be read is named.
std::function<void()> CCarvelloDlg::TellOfRights(const std::string& path) {
  const std::string hint = RightsHint(path);
  if (hint.empty()) return [] {};
  return [this, line = "[WARNING] " + path + hint] { m_ui->IDC_1022->AddLine(line); };
}

// Until the input is there, there is none.
void CCarvelloDlg::InputWaitingChanged() {
  if (m_inputWork.IsWaiting()) ShowInput({}, {});
  ShowWaiting();
}

void CCarvelloDlg::ShowWaiting() {
  for (const CPatientWork* pWork : {&m_inputWork, &m_fileWork, &m_repairWork}) {
    if (!pWork->IsWaiting()) continue;
    m_pWaitPanel->ShowWaiting(pWork->Place());
    return;
  }
  m_pWaitPanel->hide();
}

// False when nothing was waited for.
bool CCarvelloDlg::GiveUpWaiting() {
  if (m_job.IsPreparing()) {
    m_job.Stop();
    return true;
  }
  return GiveUpShownWaiting();
}

bool CCarvelloDlg::GiveUpShownWaiting() {
  const bool input = m_inputWork.IsWaiting();
  CPatientWork& work = input ? m_inputWork : m_fileWork.IsWaiting() ? m_fileWork : m_repairWork;
  if (!work.IsWaiting()) return false;
  work.GiveUp();
  m_ui->IDC_1022->AddLine(Format("[WARNING] %s: no answer, given up", work.Place().c_str()));
  if (input) {
    m_pWaitPanel->ShowGivenUp(work.Place());
    DropJob();
  }
  return true;
}

// Whether the user wants the program to end though a job cannot.
bool CCarvelloDlg::MayLeaveJob() {
  if (!m_job.IsStopping()) return false;
  const SMessageBox box{
      VersionValue("ProductName"),
      tr("No answer from %1, so the run cannot be stopped. It ends by itself when the disk is connected again. Close "
         "the program all the same? The files of the run are left as they are, unfinished.")
          .arg(QString::fromStdString(Printable(m_job.Place())))
          .toStdString(),
      EButtons::YesNo, EIcon::Stop};
  return ShowMessageBox(this, box) == EAnswer::Yes;
}

void CCarvelloDlg::TryInputAgain() {
  m_pWaitPanel->hide();
  if (const std::string place = m_inputWork.Place(); place != Input()) {
    m_ui->IDC_1000->SetPath(QString::fromStdString(place));
  } else {
    SelectInput();
  }
}

}  // namespace carvello
