// CCarvelloDlg: the one window of the tool. It connects its parts: the input and what is known of it, the fields of a
// new entry, the list of entries, the job, the log.
#pragma once

#include <QDialog>
#include <QElapsedTimer>
#include <QPointer>
#include <QTimer>
#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "dsp/dsp_binding.h"
#include "engine/entry_list.h"
#include "engine/recording_input.h"
#include "input/file_repair.h"
#include "jobs/list_job.h"
#include "support/my_settings_store.h"
#include "support/platform.h"
#include "ui/adding_slips.h"
#include "ui/announcer.h"
#include "ui/change_history.h"
#include "ui/entry_table.h"
#include "ui/job_menu.h"
#include "ui/job_questions.h"
#include "ui/job_runner.h"
#include "ui/keep_awake.h"
#include "ui/kept_lists.h"
#include "ui/list_sums.h"
#include "ui/output_fields.h"
#include "ui/patient_work.h"
#include "ui/posted_calls.h"
#include "ui/posted_messages.h"
#include "ui/progress_rate.h"
#include "ui/spectrum_window.h"
#include "ui/target_room.h"
#include "ui/taskbar_progress.h"
#include "ui/wait_panel.h"
#include "ui/window_place.h"

class QMenu;

namespace Ui {
class CCarvelloDlg;
}

namespace carvello {

// An input as it was read, or why it could not be.
struct SReadInput {
  bool bValid = false;
  SRecordingInput input;
  std::string strProblem;
  SGivenFacts given;                // as it was read with
  std::vector<EFact> missing;       // what must be given before it can be read
  SGivenFacts known;                // what is known then
  std::vector<SRepairPlan> broken;  // files of it that can be repaired
};

class CCarvelloDlg : public QDialog {
  Q_OBJECT

 public:
  // The library must outlive the dialog. `input` is selected at once; when it is empty, the remembered one. Of a job
  // file the job is opened.
  // `patience`: how long the window may stand still for a disk before it tells that it waits.
  explicit CCarvelloDlg(const DspBinding& dsp, const std::string& input = {},
                        unsigned processors = platform::ProcessorCount(),
                        std::chrono::milliseconds patience = CPatientWork::kPatience);
  ~CCarvelloDlg() override;

  // A command of the system menu. That menu has no entry for the About box; another program can still send its command.
  void OnSystemCommand(unsigned command);

  // A job was told to stop, and a disk that does not answer keeps it from it: the end of this object would wait for it.
  bool IsHeldUp() const { return m_job.IsStopping(); }

  void accept() override {}  // Enter, the default OK command: the dialog stays
  void reject() override;    // Escape or the close box

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  bool nativeEvent(const QByteArray& eventType, void* message, qintptr* result) override;
  virtual void Beep();
  // What the spectrum window takes its pictures from.
  virtual CSpectrumWindow::SourceMaker SpectrumSource() const;

 private:
  // What Ctrl+Z goes back to.
  struct SListState {
    CEntryList::Saved entries;
    SFieldState fields;
    std::optional<SCut> chosen;  // in the spectrum window
    SFieldState beforeChoice;
    bool bUtc = true;
  };

  void PrepareControls();
  void ShareWidth();
  void ConnectControls();

  // carvello_dlg_input.cpp: the input and output paths
  void InputPathChanged();
  void ShowInputPath(const std::string& path);
  void SelectInput();
  void ShowInput(const std::string& path, SReadInput read);
  void ShowInputTexts();
  void OutputFolderChanged();
  void UtcClicked();
  void ExploreOutputFolder();
  void ShowAbout();

  // carvello_dlg_facts.cpp: the part that is open, and what the user says of the recording
  void ConnectFacts();
  SGivenFacts GivenFor(const std::string& path) const;
  void SetGiven(const std::string& path, const SGivenFacts& given);
  void ChoosePart(std::uint32_t part);
  void ShowParts();
  void ShowMissing(const std::string& path, const SReadInput& read);
  void AskFacts();
  SJobFile ListAsJob() const;
  bool IsOpenAsIn(const SJobFile& job) const;

  // carvello_dlg_repair.cpp: recordings whose sizes are wrong
  static std::vector<SRepairPlan> BrokenFiles(const std::string& path, const SReadInput& read);
  void ShowBroken(std::vector<SRepairPlan> broken);
  void AskRepair();
  void Repair(const std::vector<SRepairPlan>& plans, const std::string& path, const std::string& folder);
  void EndRepair(const std::string& path, const std::vector<SRepairResult>& results);

  // carvello_dlg_waiting.cpp: waiting for disks
  void ConnectWaiting();
  void RestorePaths(const std::string& input);
  std::function<void()> TellOfRights(const std::string& path);
  void InputWaitingChanged();
  void ShowWaiting();
  bool GiveUpWaiting();
  bool GiveUpShownWaiting();
  bool MayLeaveJob();
  void TryInputAgain();

  // carvello_dlg_unattended.cpp: runs that nobody watches
  void ConnectUnattended();
  void TellEndOfRun();

  // carvello_dlg_entries.cpp: the list of entries
  SEntryFields EntryFields() const;
  void AnswerProblem(const SEntryProblem& problem);
  bool AddEntry();
  void AddSequence();
  void FinishAdding(std::size_t first, const SEntryFields& fields);
  void ShowSlips(const CAddingSlips& slips);
  void ShowHint(const QString& hint);
  void DeleteSelectedEntries();
  void ResetEntries();
  void RebuildEntryList();
  void ShowEntries();
  void ShowCount();
  void OnePassClicked();

  // carvello_dlg_list.cpp: the list at work, and quick entry
  void ConnectList();
  void AddColumnActions(QMenu& menu);
  void ShowColumn(CEntryTable::EExtra column, bool show);
  void ShowListMenu(const QPoint& spot);
  void CountSums();
  void ShowSums();
  std::vector<SRoomWanted> RoomWanted() const;
  void SelectKeys(const std::set<OutputKey>& keys);
  void EditEntry(int row);
  void LookAtEdited();
  void ReplaceEdited();
  bool RefuseBandwidth();
  void OfferMeantFrequency();
  void TakeMeantFrequency();

  // carvello_dlg_drops.cpp: what is dropped on the window
  void ConnectDrops();
  bool TakeDropped(const QString& path, bool onFolder, bool dropped);
  void OpenDropped(const std::string& path, bool onFolder);
  static bool NamesJob(const std::string& path);
  void TakeDroppedFolder(const std::string& path);
  void TakeDroppedInput(const std::string& path, const SFileStamp& stamp);

  // carvello_dlg_job.cpp: the job, the log and the progress
  void Start();
  void JobStarting(bool continues);
  void JobStarted();
  void ShowAccount();
  SToneText WaitingText() const;
  void ShowStates();
  void ClearLog();
  void WriteReadyLines();
  void ShowProgress(std::uint64_t total, std::uint64_t done);
  void ViewLogAsText();

  // carvello_dlg_spectrum.cpp: the spectrum window, and undoing
  void ConnectSpectrum();
  void OpenSpectrum();
  void ShowInSpectrum();
  void ShowBands();
  void ChooseCut(const SCut& cut);
  void DropCut();
  void AddCut(const SCut& cut);
  void AddCuts(const std::vector<SCut>& cuts);
  void ChangeEntry(std::size_t entry, const SCut& cut);
  std::optional<SEntryProblem> ReplaceEntry(std::size_t entry, SEntryFields fields);
  SCut EntryCut(const OutputEntry& entry) const;
  SEntryFields FieldsOf(const SCut& cut, SEntryFields fields) const;
  SListState ListState() const;
  void LeaveState(SListState state);
  void GoTo(const std::optional<SListState>& state);
  void Undo();
  void Redo();

  // carvello_dlg_kept.cpp: what is kept of the list and offered again, and moving it to another folder
  static std::string KeptListsFolder();
  std::function<void(const std::string&)> TellKeepProblem();
  void ConnectKept();
  void LeaveInput();
  void ArriveAtInput();
  void LookForKept();
  void ListChanged();
  void ShowOffers();
  void PutListBack();
  void MoveToFolder();
  void ShowTimesAs(bool utc);

  // carvello_dlg_files.cpp: jobs as files
  void ConnectJobFiles();
  struct SReadJob;
  struct SJobInput;
  struct SSaves;
  struct SSaved {
    bool bRecording = false;  // the file is one of the recording
    SRefusedEntries refused{};
    std::string strError{};
  };
  void OpenJobFile(const std::string& path);
  static SReadJob ReadJob(const std::string& path);
  void TakeJob(SReadJob read);
  void UseJob(SJobFile job, const std::string& file);
  void ChooseJobUse(const std::shared_ptr<SJobFile>& pJob, const std::string& file, const SJobInput& found);
  bool ApplyJob(const SJobFile& job, const std::string& file, EJobRules rules);
  void DropJob();
  void SaveJob(
      const std::string& path, const std::function<void(bool)>& then = [](bool) {});
  void EndSaving(const std::string& path, const SSaved& saved, const CEntryList::Saved& list, std::uint64_t input,
                 const std::function<void(bool)>& then);
  std::size_t UnsettledEntries() const;
  void Settle(EClosing answer, const std::function<void(bool)>& then);
  void WhenListMayGo(const QString& title, const std::function<void(bool)>& then);
  void Close();

  void UpdateControlStates();
  void KeepFocus(bool running, QWidget* pFocus);
  bool IsUtc() const;
  std::string Input() const;
  std::string OutputFolder() const;

  std::unique_ptr<Ui::CCarvelloDlg> m_ui;
  const std::chrono::milliseconds m_patience;
  CMySettingsStore m_settings;
  COutputFields m_fields;
  SRecordingInput m_input;
  std::string m_strGivenFor;     // the input that the user has said something of
  SGivenFacts m_given;           // what
  SGivenFacts m_givenShown;      // of what is shown
  std::vector<EFact> m_missing;  // of what is shown, and cannot be read
  SGivenFacts m_known;           // of the same
  std::vector<SRepairPlan> m_broken;
  CEntryList m_entries;
  CPostedMessages m_messages;
  CJobRunner m_job;
  CTaskbarUpdates m_taskbar;
  CWindowPlace m_place;
  CAnnouncer* m_pAnnouncer;
  QElapsedTimer m_clock;
  CProgressRate m_rate;
  QFont m_fixedFont;
  CChangeHistory<SListState> m_history;
  std::optional<SCut> m_chosen;  // in the spectrum window, and in the fields
  SFieldState m_beforeChoice;    // what the fields were then
  CPostedCalls m_calls;
  CKeptLists m_kept;
  std::optional<SKeptList> m_offered;  // a list of this recording that can be put back
  std::string m_strKeepProblem;        // told already
  // What the list was of while an input is being selected, and the list itself.
  CRecordingSet m_recordingLeft;
  SListState m_stateLeft;
  SListState m_stateOfBatch;                               // before the user is asked whether it goes
  bool m_bShownUtc = true;                                 // how times are shown, which the box may be ahead of
  CJobMenu* m_pJobMenu = nullptr;                          // belongs to the window
  std::string m_strJobFile;                                // that the list was read from or saved to last
  CEntryList::Saved m_saved;                               // what it holds
  std::optional<SJobFile> m_jobToApply;                    // when its recording is there
  std::string m_strJobToApply;                             // its file
  std::map<std::string, std::shared_ptr<SSaves>> m_saves;  // of each file that was saved to
  std::uint64_t m_nSaves = 0;
  bool m_bJobLeft = false;        // another recording was selected instead
  bool m_bFolderChanged = false;  // since it was last offered to move the entries
  CEntryTable m_table{m_settings};
  CTargetRoom m_room{[this] { return RoomWanted(); }};
  std::vector<SRoom> m_rooms;  // as the disks have answered for the list as it is
  SListSums m_sums;
  const OutputEntry* m_pEdited = nullptr;  // on the list
  SCut m_editedCut;
  SFieldState m_editedTimes;  // the fields as they were filled from it
  std::optional<std::int64_t> m_meant;
  bool m_bInputValid = false;
  std::uint64_t m_nInputs = 0;  // shown so far
  std::string m_strInputShown;  // as it was selected
  bool m_bOutputChosen = false;
  bool m_bWasRunning = false;
  QPointer<QWidget> m_pFocusBefore;              // what had the keyboard when the run began
  QPointer<QWidget> m_pFocusDuring;              // where the toolkit moved it
  std::unique_ptr<CSpectrumWindow> m_pSpectrum;  // made when it is opened first
  std::unique_ptr<CStayAwake> m_pAwake;          // while a job runs
  CWaitPanel* m_pWaitPanel = nullptr;
  CPatientWork m_inputWork;
  CPatientWork m_folderWork;
  CPatientWork m_fileWork;  // on any other path that the user names
  CPatientWork m_keptWork;
  CPatientWork m_repairWork;
};

}  // namespace carvello
