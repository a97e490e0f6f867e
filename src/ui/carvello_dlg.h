// CCarvelloDlg: the one window of the tool. It connects its parts: the input and what is known of it, the fields of a
// new entry, the list of entries, the job, the log.
#pragma once

#include <QDialog>
#include <QElapsedTimer>
#include <QTimer>
#include <functional>
#include <memory>

#include "dsp/dsp_binding.h"
#include "engine/entry_list.h"
#include "engine/recording_input.h"
#include "support/my_settings_store.h"
#include "support/platform.h"
#include "ui/adding_slips.h"
#include "ui/job_runner.h"
#include "ui/output_fields.h"
#include "ui/posted_messages.h"
#include "ui/progress_rate.h"
#include "ui/taskbar_progress.h"

namespace Ui {
class CCarvelloDlg;
}

namespace carvello {

class CCarvelloDlg : public QDialog {
  Q_OBJECT

 public:
  // The library must outlive the dialog. `input` is selected at once; when it is empty, the remembered one.
  explicit CCarvelloDlg(const DspBinding& dsp, const std::string& input = {},
                        unsigned processors = platform::ProcessorCount());
  ~CCarvelloDlg() override;

  // A command of the system menu. That menu has no entry for the About box; another program can still send its command.
  void OnSystemCommand(unsigned command);

  void accept() override {}  // Enter, the default OK command: the dialog stays
  void reject() override;    // Escape or the close box

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  bool nativeEvent(const QByteArray& eventType, void* message, qintptr* result) override;
  virtual void Beep();

 private:
  void PrepareControls();
  void ConnectControls();
  void RestorePaths(const std::string& input);

  // carvello_dlg_input.cpp: the input and output paths
  void SelectInput();
  void ShowInputTexts();
  void OutputFolderChanged();
  void UtcClicked();
  void ExploreOutputFolder();

  // carvello_dlg_entries.cpp: the list of entries
  SEntryFields EntryFields() const;
  void AnswerProblem(const SEntryProblem& problem);
  void AddEntry();
  void AddSequence();
  void FinishAdding(std::size_t first);
  void ShowSlips(const CAddingSlips& slips);
  void DeleteSelectedEntries();
  void ResetEntries();
  void RebuildEntryList();
  void ShowEntries();

  // carvello_dlg_job.cpp: the job, the log and the progress
  void Start();
  void JobStarting(bool continues);
  void JobStarted();
  void ShowAccount();
  void ShowStates();
  void ClearLog();
  void WriteReadyLines();
  void ShowProgress(std::uint64_t total, std::uint64_t done);
  void ViewLogAsText();

  void UpdateControlStates();
  bool IsUtc() const;
  std::string Input() const;
  std::string OutputFolder() const;

  std::unique_ptr<Ui::CCarvelloDlg> m_ui;
  CMySettingsStore m_settings;
  COutputFields m_fields;
  SRecordingInput m_input;
  CEntryList m_entries;
  CPostedMessages m_messages;
  CJobRunner m_job;
  CTaskbarUpdates m_taskbar;
  QElapsedTimer m_clock;
  CProgressRate m_rate;
  QFont m_fixedFont;
  bool m_bInputValid = false;
  bool m_bOutputChosen = false;
};

}  // namespace carvello
