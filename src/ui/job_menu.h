// CJobMenu: what can be done with the list of entries as a whole: opening and saving it as a job file, the files that
// were used last, the lists that were kept by themselves, undo and redo. Its keys work in all of the window.
#pragma once

#include <QMenu>
#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "support/my_settings_store.h"
#include "ui/kept_lists.h"
#include "ui/patient_work.h"

namespace carvello {

class CJobMenu : public QMenu {
  Q_OBJECT

 public:
  using KeptLists = std::function<std::vector<SKeptList>()>;

  // The settings must outlive the window, which the menu belongs to. `lists` is asked when they are to be shown, on
  // another thread, in `folder`; the menu waits for them no longer than the patience, and shows them when they are
  // there.
  CJobMenu(CMySettingsStore& settings, KeptLists lists, const std::string& folder, std::chrono::milliseconds patience,
           QWidget* pWindow);

  // What can be chosen: nothing during a job; without entries nothing can be saved, without an input nothing corrected.
  void SetAllowed(bool idle, bool hasRows, bool hasInput);
  bool KeepsLists() const { return m_pKeep->isChecked(); }
  // Whether RF64 files tell their samples in frames.
  bool CountsFrames() const { return m_pFrames->isChecked(); }
  // The file comes first among those that were used last.
  void NoteFile(const std::string& path);

 signals:
  void OpenPressed();
  void FilePressed(const std::string& path);
  void SavePressed();
  void SaveAsPressed();
  void ListPressed(const SKeptList& kept);
  void UndoPressed();
  void RedoPressed();
  void FactsPressed();
  void AboutPressed();
  void KeepChanged();
  void CountingChanged();

 private:
  std::vector<std::string> RecentFiles() const;
  void ShowRecent();
  void LookForLists();
  void ShowLists(const std::vector<SKeptList>& lists);

  CMySettingsStore& m_settings;
  KeptLists m_lists;
  std::string m_strFolder;
  CPatientWork m_work;
  std::vector<QAction*> m_idle;  // not during a job
  std::vector<QAction*> m_save;
  QMenu* m_pRecent;
  QMenu* m_pLists;
  QAction* m_pFacts;
  QAction* m_pKeep;
  QAction* m_pFrames;
};

}  // namespace carvello
