// CEntryList: the output entries of one recording, with every rule and text for making, checking, naming,
// de-duplicating and sorting them. The dialog and the command line only fill the fields and show the result.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "engine/entry_names.h"
#include "engine/message_box.h"
#include "engine/output_entry.h"
#include "input/recording_set.h"
#include "recording/info_texts.h"

namespace carvello {

enum class EStartMode { Beginning = 0, At = 1 };
enum class EEndMode { Finish = 0, After = 1, At = 2 };

// What the user chose for a new entry.
struct SEntryFields {
  std::int64_t nFrequency = 0;      // Hz
  std::uint32_t nBandwidth = 0;     // Hz; 0 when nothing is selected
  std::uint32_t nFileSizeMB = 100;  // 100, 1000 or 0 (one RF64 file)
  bool b32Bit = false;
  EStartMode startMode = EStartMode::Beginning;
  std::int64_t tPickedStart = 0;  // seconds since 1970 UTC, in start mode At
  EEndMode endMode = EEndMode::Finish;
  std::uint32_t nDurationSeconds = 0;  // in end mode After
  std::int64_t tPickedEnd = 0;         // seconds since 1970 UTC, in end mode At
  bool bUtc = true;                    // times in file names as UTC
  std::string strOutputFolder;
};

// Why an entry was refused. On the answer Yes, `reset` tells which picked time the user wants put back.
struct SEntryProblem {
  enum class EReset { None, StartToRecordingStart, EndToRecordingEnd };
  SMessageBox box;
  EReset reset = EReset::None;
};

// An entry that the list did not keep, since an earlier one is the same output.
struct SDroppedEntry {
  std::string strTitle;
  std::string strNotTakenOver;  // in what else it differed: "folder, file size"; empty when in nothing
};

class CEntryList {
 public:
  // The recording that entries are made for. Clears the list.
  void SetRecording(const CRecordingSet& recording, const SInfoTexts& infoTexts);

  // Checks the fields and appends an entry at the end of the list; nothing on success. The list is not rebuilt.
  std::optional<SEntryProblem> AddEntry(const SEntryFields& fields);
  // One AddEntry per frequency from `from` to `to` (swapped when the wrong way round), both included. A step below 1
  // adds nothing. `onProblem` is told of every refused entry and may change the fields for those that follow.
  void AddSequence(SEntryFields fields, std::int64_t from, std::int64_t to, std::int64_t step,
                   const std::function<void(const SEntryProblem&, SEntryFields&)>& onProblem);
  // Removes duplicates (the earlier stays), then sorts by frequency, ties by bandwidth, equal keys in their order.
  // Returns what was removed.
  std::vector<SDroppedEntry> Rebuild();

  void Reset();                                          // removes all
  void Remove(const std::vector<std::size_t>& indices);  // any order; indices beyond the end are ignored

  std::size_t Size() const { return m_entries.size(); }
  const OutputEntry& operator[](std::size_t index) const { return m_entries[index]->entry; }
  // The entries in list order; valid while the list is not changed.
  std::vector<const OutputEntry*> Pointers() const;

 private:
  struct SListed {
    OutputEntry entry;
    std::string strStem;  // what its name begins with, folder included
  };

  void NameEntry(SListed& listed, const std::string& name, const std::string& folder);
  void Drop(const std::vector<bool>& dropped);  // one flag for each entry

  // What entries are made from.
  struct SInput {
    std::int64_t tStart = 0;
    std::int64_t tEnd = 0;
    std::int64_t nFrequency = 0;
    std::uint32_t nSampleRate = 0;
  };
  SInput m_input;
  CSharedMetadata m_metadata;
  CSharedText m_info[4];
  std::vector<std::unique_ptr<SListed>> m_entries;
  CEntryNames m_names;
  bool m_bRebuilt = true;  // nothing was added since
};

}  // namespace carvello
