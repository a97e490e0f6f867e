// CKeptLists: the lists of entries that the dialog keeps by itself, so that none is lost with the window, by a crash or
// by another input. Each is a job file of its own in one folder; its name tells which recording it is of, when it was
// begun and by which window. Files are written in the background, one after the other, under another name first:
// whatever ends the program, a file holds a whole list. As long as a window lives it holds a file locked, which tells
// others that its lists are at work: they leave them alone.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "input/recording_set.h"
#include "jobs/job_file.h"

namespace carvello {

struct SKeptList {
  std::string strPath;
  std::int64_t tBegun = 0;  // milliseconds since 1970 UTC
  SJobFile job;
};

class CKeptLists {
 public:
  // An empty folder: nothing is kept. It and those above need not exist yet. `problem` is called from any thread with
  // why a list could not be kept.
  CKeptLists(std::string folder, std::function<void(const std::string&)> problem);
  ~CKeptLists();
  CKeptLists(const CKeptLists&) = delete;
  CKeptLists& operator=(const CKeptLists&) = delete;

  const std::string& Folder() const { return m_strFolder; }

  void SetWanted(bool wanted) { m_bWanted = wanted; }
  bool IsWanted() const { return m_bWanted; }

  // What the list of the recording is now, without labels. An empty one is not kept.
  void Keep(const CRecordingSet& recording, SJobFile job);
  // The list is left as it is; the next one is another. What was kept of it stays.
  void Leave();

  // What follows takes as long as the disk; it is done on any thread, which may outlive this object.
  // The list of the recording that was kept last, unless it was set aside or another window is at work on it.
  std::function<std::optional<SKeptList>()> Find(const CRecordingSet& recording) const;
  // All, the newest first, also those that others are at work on.
  std::function<std::vector<SKeptList>()> All() const;

  void SetAside(const SKeptList& kept);
  // It is the list now. What was kept of it goes when the list is kept anew; when it is not, it is set aside.
  void TakenBack(const SKeptList& kept);
  void Forget(const SKeptList& kept);
  // Until everything is written.
  void Wait() const;

 private:
  struct SWork;

  std::string m_strFolder;
  std::string m_strOwner;
  bool m_bWanted = true;
  bool m_bUsed = false;
  std::shared_ptr<SWork> m_pWork;  // a worker may outlive this object
  std::optional<SKeptList> m_present;
  std::optional<SKeptList> m_left;  // a worker may not have come to it
};

}  // namespace carvello
