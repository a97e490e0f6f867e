// The main dialog's jobs as files.
#include <QDir>
#include <algorithm>
#include <exception>
#include <unordered_set>
#include <utility>

#include "jobs/list_job.h"
#include "support/mutex.h"
#include "support/text.h"
#include "support/whole_file.h"
#include "ui/carvello_dlg.h"
#include "ui/message_boxes.h"
#include "ui/wait_cursor.h"
#include "ui/ways_out.h"
#include "ui_carvello_dlg.h"

namespace carvello {

// A job as it was read, or why it could not be.
struct CCarvelloDlg::SReadJob {
  SJobFile job;
  std::string strFile;
  std::string strError;
  std::uint32_t nSystemError = 0;  // 0 when the file can be read
};

// What the disk tells of the recording of a job.
struct CCarvelloDlg::SJobInput {
  std::optional<platform::FileStatus> status;
  bool bReadable = false;
};

// Of a file that jobs are saved to: where a disk did not answer, several may be on their way to it.
struct CCarvelloDlg::SSaves {
  CMutex lock;
  std::uint64_t nLast CARVELLO_GUARDED_BY(lock) = 0;  // number of the newest that was written

  // One that is older than what stands there is not written.
  bool Write(std::uint64_t number, const std::string& path, const std::string& text, std::string& error) {
    const CLockGuard guard(lock);
    if (number < nLast) return true;
    nLast = number;
    return WriteWholeFile(path, text.data(), text.size(), true, error);
  }
};

namespace {

// A path of the job file, from the present folder on as everywhere.
std::string WholePath(const std::string& path) {
  if (path.empty()) return path;
  const QString whole = QString::fromStdString(platform::AbsolutePath(path));
  return QDir::toNativeSeparators(QDir::cleanPath(whole)).toStdString();
}

// Whether an entry goes to the folder that is chosen.
bool NeedsFolder(const SJobFile& job) {
  return job.strOutput.empty() && std::any_of(job.entries.begin(), job.entries.end(),
                                              [](const SEntrySpec& spec) { return spec.strOutput.empty(); });
}

bool HasTimes(const SJobFile& job) {
  return std::any_of(job.entries.begin(), job.entries.end(),
                     [](const SEntrySpec& spec) { return spec.start || spec.end; });
}

// By its name, or by what the disk tells of it.
bool IsOneOf(const CRecordingSet& recording, const std::string& path,
             const std::optional<platform::FileStatus>& status) {
  if (IsFileOf(recording, path)) return true;
  return status && std::any_of(recording.files.begin(), recording.files.end(),
                               [&](const SRecordingFile& file) { return SFileStamp(*status) == file.stamp; });
}

}  // namespace

void CCarvelloDlg::ConnectJobFiles() {
  m_pJobMenu = new CJobMenu(m_settings, m_kept.All(), m_kept.Folder(), m_patience, this);
  m_ui->buttonJob->setMenu(m_pJobMenu);
  m_kept.SetWanted(m_pJobMenu->KeepsLists());
  connect(m_pJobMenu, &CJobMenu::OpenPressed, this, [this] {
    if (const std::string path = AskForJobToOpen(this); !path.empty()) OpenJobFile(path);
  });
  connect(m_pJobMenu, &CJobMenu::FilePressed, this, &CCarvelloDlg::OpenJobFile);
  connect(m_pJobMenu, &CJobMenu::SavePressed, this, [this] { SaveJob(m_strJobFile); });
  connect(m_pJobMenu, &CJobMenu::SaveAsPressed, this, [this] { SaveJob({}); });
  connect(m_pJobMenu, &CJobMenu::ListPressed, this, [this](const SKeptList& kept) { UseJob(kept.job, {}); });
  connect(m_pJobMenu, &CJobMenu::UndoPressed, this, &CCarvelloDlg::Undo);
  connect(m_pJobMenu, &CJobMenu::RedoPressed, this, &CCarvelloDlg::Redo);
  m_job.SetCountFrames(m_pJobMenu->CountsFrames());
  connect(m_pJobMenu, &CJobMenu::CountingChanged, this, [this] { m_job.SetCountFrames(m_pJobMenu->CountsFrames()); });
  connect(m_pJobMenu, &CJobMenu::KeepChanged, this, [this] {
    m_kept.SetWanted(m_pJobMenu->KeepsLists());
    ListChanged();
  });
}

void CCarvelloDlg::OpenJobFile(const std::string& path) {
  if (m_job.IsRunning()) return;
  m_fileWork.Run("Job", path, [this, path]() -> std::function<void()> {
    const auto pRead = std::make_shared<SReadJob>(ReadJob(path));
    return [this, pRead] { TakeJob(std::move(*pRead)); };
  });
}

CCarvelloDlg::SReadJob CCarvelloDlg::ReadJob(const std::string& path) {
  SReadJob read;
  try {
    if (!ReadJobFile(path, read.job, read.strError)) {
      read.nSystemError = platform::GetFileStatus(path) && platform::IsReadable(path) ? 0 : platform::LastError();
      return read;
    }
    read.strFile = platform::AbsolutePath(path);
    read.job.strInput = WholePath(read.job.strInput);
    read.job.strOutput = WholePath(read.job.strOutput);
    for (SEntrySpec& spec : read.job.entries) spec.strOutput = WholePath(spec.strOutput);
  } catch (const std::exception& failure) {
    read.strError = path + ": " + failure.what();
  }
  return read;
}

void CCarvelloDlg::TakeJob(SReadJob read) {
  if (!read.strError.empty()) {
    ShowMessageBox(this, {tr("Open Job").toStdString(), WithWayOut(read.strError, WayOutOfReading(read.nSystemError)),
                          EButtons::Ok, EIcon::Stop});
    return;
  }
  m_pJobMenu->NoteFile(read.strFile);
  UseJob(std::move(read.job), read.strFile);
}

// `file`: that it was read from; empty for a list that was kept.
void CCarvelloDlg::UseJob(SJobFile job, const std::string& file) {
  const auto pJob = std::make_shared<SJobFile>(std::move(job));
  const std::string input = pJob->strInput;
  if (input.empty() || (IsOneOf(m_input.recording, input, {}) && IsOpenAsIn(*pJob))) {
    ChooseJobUse(pJob, file, {});
    return;
  }
  m_fileWork.Run("Job", input, [this, pJob, file, input]() -> std::function<void()> {
    const SJobInput found{platform::GetFileStatus(input), platform::IsReadable(input)};
    return [this, pJob, file, found] { ChooseJobUse(pJob, file, found); };
  });
}

void CCarvelloDlg::ChooseJobUse(const std::shared_ptr<SJobFile>& pJob, const std::string& file,
                                const SJobInput& found) {
  const SJobFile& job = *pJob;
  // It may have begun while the disk was waited for.
  if (m_job.IsRunning()) {
    m_ui->IDC_1022->AddLine("[WARNING] The job is dropped, for a run has begun: " + file);
    return;
  }
  const bool open = IsOneOf(m_input.recording, job.strInput, found.status);
  // Another recording may have taken the place of the one that the job was made for.
  const bool asIs = IsOpenAsIn(job);
  const bool own =
      job.strInput.empty() || (open && asIs && (!job.recorded || *job.recorded == m_input.recording.tStart));
  const bool canOpen = !own && (!open || !asIs) && found.bReadable;
  EJobUse use = EJobUse::SameTimes;
  if (!m_bInputValid && !canOpen) {
    const QString text = job.strInput.empty()
                             ? tr("The job names no recording. Choose the one that it is for first.")
                             : tr("The recording of the job cannot be read:\n%1\nChoose another one first.")
                                   .arg(QString::fromStdString(Printable(job.strInput)));
    ShowMessageBox(this, {tr("Open Job").toStdString(), text.toStdString(), EButtons::Ok, EIcon::Stop});
    return;
  }
  if (!m_bInputValid) {
    use = EJobUse::OpenRecording;
  } else if (!own) {
    use = AskJobUse(this, job.strInput, canOpen, job.recorded.has_value() && HasTimes(job));
  }
  if (use == EJobUse::Nothing) return;
  WhenListMayGo(tr("Open Job"), [this, pJob, file, use, own](bool mayGo) {
    if (!mayGo) return;
    if (use == EJobUse::OpenRecording) {
      m_jobToApply = std::move(*pJob);
      m_strJobToApply = file;
      m_bJobLeft = false;
      ShowInputPath(m_jobToApply->strInput);
      SetGiven(m_jobToApply->strInput, m_jobToApply->given);
      SelectInput();
      return;
    }
    if (!own) {
      MoveJob(*pJob, m_input.recording.tStart,
              use == EJobUse::Shifted ? EMoments::AsFarFromStart : EMoments::AsTheyAre);
    }
    // A list that was kept comes back as it was.
    ApplyJob(*pJob, own ? file : std::string(), file.empty() ? EJobRules::List : EJobRules::CommandLine);
  });
}

// In the place of what is on the list. False when not all of it could be.
bool CCarvelloDlg::ApplyJob(const SJobFile& job, const std::string& file, EJobRules rules) {
  if (OutputFolder().empty() && NeedsFolder(job)) {
    ShowMessageBox(this,
                   {tr("Open Job").toStdString(), tr("The job names no output folder. Choose one first.").toStdString(),
                    EButtons::Ok, EIcon::Stop});
    return false;
  }
  const CWaitCursor wait;
  const SListState before = ListState();
  if (job.bLocalTime == IsUtc()) ShowTimesAs(!job.bLocalTime);
  m_entries.Reset();
  SEntryFields fields;
  fields.bUtc = IsUtc();
  fields.strOutputFolder = OutputFolder();
  const SRefusedEntries refused = AddJobToList(job, fields, m_input.recording, rules, m_entries);
  m_entries.Rebuild();
  if (m_entries.Size() == 0 && refused.nEntries > 0) {
    GoTo(before);
  } else {
    LeaveState(before);
    if (!before.entries.empty()) m_kept.Leave();
    if (!m_bOutputChosen && !job.strOutput.empty()) m_ui->IDC_1009->SetPath(QString::fromStdString(job.strOutput));
    m_saved = refused.nEntries == 0 && !file.empty() ? m_entries.Save() : CEntryList::Saved();
    m_bFolderChanged = true;
    ShowEntries();
    ShowSlips({});
    // Saving again must not lose what was refused.
    m_strJobFile = refused.nEntries == 0 && m_entries.Size() > 0 ? file : std::string();
  }
  if (refused.nEntries == 0) return true;
  m_ui->IDC_1022->AddLine(Format("[WARNING] %zu of %zu entries do not fit this recording. %s", refused.nEntries,
                                 job.entries.size(), refused.strFirst.c_str()));
  ShowMessageBox(this, {tr("Open Job").toStdString(),
                        tr("Entries that do not fit this recording and are left out: %1 of %2. The first of them:\n%3")
                            .arg(QString::number(refused.nEntries), QString::number(job.entries.size()),
                                 QString::fromStdString(PrintableLines(refused.strFirst)))
                            .toStdString(),
                        EButtons::Ok, EIcon::Exclamation});
  return false;
}

// The job that waits for a recording, which does not come.
void CCarvelloDlg::DropJob() {
  m_bJobLeft = false;
  const std::optional<SJobFile> job = std::exchange(m_jobToApply, std::nullopt);
  if (!job) return;
  m_ui->IDC_1022->AddLine(
      Format("[WARNING] The job is dropped, for its recording was not opened: %s", job->strInput.c_str()));
}

// Asks for a file when there is none. `then` is told whether the list is saved, when that is known.
void CCarvelloDlg::SaveJob(const std::string& path, const std::function<void(bool)>& then) {
  const std::string chosen = m_entries.Size() == 0 ? "" : path.empty() ? AskForJobToSave(this, m_strJobFile) : path;
  if (chosen.empty()) {
    then(false);
    return;
  }
  const std::string whole = platform::AbsolutePath(chosen);
  std::shared_ptr<SSaves>& pSaves = m_saves[whole];
  if (!pSaves) pSaves = std::make_shared<SSaves>();
  const SJobFile job = ListAsJob();
  const auto write = [=, pSaves = pSaves, number = ++m_nSaves, recording = m_input.recording] {
    std::string error;
    try {
      if (IsOneOf(recording, whole, platform::GetFileStatus(whole))) return SSaved{.bRecording = true};
      SSaved saved{.refused = RefusedByCommandLine(job, recording)};
      if (saved.refused.nEntries > 0) return saved;
      pSaves->Write(number, whole, JobFileText(job), error);
    } catch (const std::exception& failure) {
      error = whole + ": " + failure.what();
    }
    return SSaved{.strError = error};
  };
  const auto work = [this, whole, then, write, list = m_entries.Save(), input = m_nInputs]() -> std::function<void()> {
    const SSaved saved = write();
    return [=, this] { EndSaving(whole, saved, list, input, then); };
  };
  m_fileWork.Run("Save", whole, work, [then] { then(false); });
}

void CCarvelloDlg::EndSaving(const std::string& path, const SSaved& saved, const CEntryList::Saved& list,
                             std::uint64_t input, const std::function<void(bool)>& then) {
  std::string error = saved.bRecording ? path + ": " + tr("is a file of the recording").toStdString() : saved.strError;
  if (!error.empty()) error = WithWayOut(error, WayOutOfSaving());
  if (saved.refused.nEntries > 0) {
    error =
        tr("Entries that no output can come of: %1. The first of them:\n%2\n\nEdit or delete them, then save again.")
            .arg(QString::number(saved.refused.nEntries), QString::fromStdString(saved.refused.strFirst))
            .toStdString();
  }
  if (!error.empty()) {
    ShowMessageBox(this, {tr("Save Job").toStdString(), error, EButtons::Ok, EIcon::Stop});
    then(false);
    return;
  }
  m_pJobMenu->NoteFile(path);
  m_ui->IDC_1022->AddLine(Format("Saved %zu entries: %s", list.size(), path.c_str()));
  // Another recording may have been opened while the disk was waited for.
  if (input == m_nInputs) {
    m_strJobFile = path;
    m_saved = list;
  }
  then(true);
}

// Entries that were neither run nor saved as they are.
std::size_t CCarvelloDlg::UnsettledEntries() const {
  std::unordered_set<const OutputEntry*> saved;
  for (const auto& listed : m_saved) saved.insert(CEntryList::EntryOf(listed));
  std::size_t unsettled = 0;
  for (const OutputEntry* entry : m_entries.Pointers()) {
    if (!saved.contains(entry) && m_job.Account().StateOf(entry).strText.empty()) ++unsettled;
  }
  return unsettled;
}

void CCarvelloDlg::Settle(EClosing answer, const std::function<void(bool)>& then) {
  if (answer == EClosing::Save) {
    SaveJob(m_strJobFile, then);
  } else {
    then(answer == EClosing::Close);
  }
}

// Whether another list or none may take the place of this one, which `then` is told. A list that is kept is found
// again.
void CCarvelloDlg::WhenListMayGo(const QString& title, const std::function<void(bool)>& then) {
  const bool kept = m_kept.IsWanted() && m_strKeepProblem.empty();
  const std::size_t unsettled = kept ? 0 : UnsettledEntries();
  if (unsettled == 0) {
    then(true);
  } else {
    Settle(AskBeforeReplacing(this, unsettled, title), then);
  }
}

}  // namespace carvello
