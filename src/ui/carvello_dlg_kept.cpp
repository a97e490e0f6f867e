// What the main dialog keeps of its list of entries and offers again, and moving the list to another folder.
#include <QDateTime>
#include <QDir>
#include <QLocale>
#include <QStandardPaths>
#include <utility>

#include "support/text.h"
#include "ui/carvello_dlg.h"
#include "ui_carvello_dlg.h"

namespace carvello {

std::string CCarvelloDlg::KeptListsFolder() {
  const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
  if (data.isEmpty()) return {};
  return QDir::toNativeSeparators(data + QStringLiteral("/Carvello/lists")).toStdString();
}

// From any thread; each problem once.
std::function<void(const std::string&)> CCarvelloDlg::TellKeepProblem() {
  return [this, post = m_calls.MakePoster()](const std::string& problem) {
    post([this, problem] {
      if (std::exchange(m_strKeepProblem, problem) == problem) return;
      m_ui->IDC_1022->AddLine("[WARNING] The list is not kept: " + problem);
    });
  };
}

void CCarvelloDlg::ConnectKept() {
  m_bShownUtc = IsUtc();
  connect(m_ui->stripList, &COfferStrip::Taken, this, &CCarvelloDlg::PutListBack);
  connect(m_ui->stripList, &COfferStrip::Dismissed, this, [this] {
    if (m_offered) m_kept.SetAside(*std::exchange(m_offered, std::nullopt));
  });
  connect(m_ui->stripFolder, &COfferStrip::Taken, this, &CCarvelloDlg::MoveToFolder);
  connect(m_ui->stripFolder, &COfferStrip::Dismissed, this, [this] { m_bFolderChanged = false; });
  connect(&m_job, &CJobRunner::RemovingEntries, this, [this] { m_stateOfBatch = ListState(); });
  connect(&m_job, &CJobRunner::EntriesRemoved, this, [this] { LeaveState(std::exchange(m_stateOfBatch, {})); });
}

// What is open is about to be replaced, perhaps by nothing for a while, or by itself.
void CCarvelloDlg::LeaveInput() {
  if (!m_bInputValid) return;
  m_recordingLeft = m_input.recording;
  m_stateLeft = ListState();
  m_kept.Leave();
}

// The input is selected, and the list is empty. What was done to the list before can be undone when it is the recording
// that was left.
void CCarvelloDlg::ArriveAtInput() {
  m_bShownUtc = IsUtc();
  LookForKept();
  if (!m_bInputValid) {
    if (!m_inputWork.IsWaiting()) DropJob();
    return;
  }
  if (!IsSameRecording(m_recordingLeft, m_input.recording)) {
    m_history.Clear();
    m_strJobFile.clear();
  } else if (!m_stateLeft.entries.empty()) {
    LeaveState(std::move(m_stateLeft));
  }
  m_recordingLeft = {};
  m_stateLeft = {};
  if (m_bJobLeft) DropJob();
  if (std::optional<SJobFile> job = std::exchange(m_jobToApply, std::nullopt)) UseJob(std::move(*job), m_strJobToApply);
}

// The offer comes when the disk has answered.
void CCarvelloDlg::LookForKept() {
  m_keptWork.GiveUp();
  m_offered.reset();
  ShowOffers();
  if (!m_bInputValid) return;
  m_keptWork.Run("Kept", m_kept.Folder(), [this, find = m_kept.Find(m_input.recording)]() -> std::function<void()> {
    const auto pFound = std::make_shared<std::optional<SKeptList>>(find());
    return [this, pFound] {
      m_offered = std::move(*pFound);
      ShowOffers();
    };
  });
}

void CCarvelloDlg::ListChanged() {
  if (m_bInputValid) {
    m_kept.Keep(m_input.recording, ListAsJob());
  }
  if (m_entries.Size() == 0) m_strJobFile.clear();
  ShowOffers();
}

void CCarvelloDlg::ShowOffers() {
  if (m_offered && m_entries.Size() == 0) {
    const QString time = QLocale().toString(QDateTime::fromMSecsSinceEpoch(m_offered->tBegun), QLocale::ShortFormat);
    m_ui->stripList->Offer(
        tr("The list of %1 can be put back. Entries: %2").arg(time, QString::number(m_offered->job.entries.size())),
        tr("Put Bac&k"));
  } else {
    m_ui->stripList->Clear();
  }
  if (m_entries.Size() == 0) m_bFolderChanged = false;
  const std::size_t elsewhere =
      m_bFolderChanged && !OutputFolder().empty() ? m_entries.CountOutside(OutputFolder()) : 0;
  if (elsewhere > 0) {
    m_ui->stripFolder->Offer(
        tr("Entries that keep the folder they were added with: %1").arg(static_cast<qulonglong>(elsewhere)),
        tr("&Move to This Folder"));
  } else {
    m_ui->stripFolder->Clear();
  }
}

// With the kind of time that is chosen now.
void CCarvelloDlg::PutListBack() {
  if (m_job.IsRunning() || !m_offered || !m_bInputValid) return;
  const SKeptList kept = *std::exchange(m_offered, std::nullopt);
  SJobFile job = kept.job;
  job.bLocalTime = !IsUtc();
  if (ApplyJob(job, {}, EJobRules::List)) {
    m_kept.TakenBack(kept);
  } else {
    m_kept.SetAside(kept);
  }
  m_ui->IDC_1008->setFocus();
}

void CCarvelloDlg::MoveToFolder() {
  if (m_job.IsRunning()) return;
  LeaveState(ListState());
  m_entries.MoveTo(OutputFolder());
  m_bFolderChanged = false;
  ShowEntries();
  m_ui->IDC_1008->setFocus();
}

// Without a new selection of the input, which would empty the list.
void CCarvelloDlg::ShowTimesAs(bool utc) {
  m_ui->IDC_1034->setChecked(utc);
  m_settings.Write("UTC", utc);
  m_bShownUtc = utc;
  const std::int64_t frequency = m_fields.Frequency();
  ShowInputTexts();
  ShowParts();
  m_fields.ShowRecording(m_input.recording, utc);
  m_fields.SetFrequency(frequency);
  ShowInSpectrum();
}

}  // namespace carvello
