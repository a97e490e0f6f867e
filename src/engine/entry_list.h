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
  EOutputFormat format = EOutputFormat::Wave;
  bool b32Bit = false;
  EStartMode startMode = EStartMode::Beginning;
  std::int64_t tPickedStart = 0;  // seconds since 1970 UTC, in start mode At
  EEndMode endMode = EEndMode::Finish;
  std::uint32_t nDurationSeconds = 0;  // in end mode After
  std::int64_t tPickedEnd = 0;         // seconds since 1970 UTC, in end mode At
  bool bUtc = true;                    // times in file names as UTC
  std::string strOutputFolder;         // a relative one counts from the present folder
  int nNameNumber = 0;                 // among outputs of the same name, when it is free; 0 for the lowest
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
  struct SListed;

 public:
  // What was on the list at some time. Entries are never changed, so those that are on the list again are the same
  // ones.
  using Saved = std::vector<std::shared_ptr<const SListed>>;

  // The recording that entries are made for. Clears the list.
  void SetRecording(const CRecordingSet& recording, const SInfoTexts& infoTexts);

  // Checks the fields and appends an entry at the end of the list; nothing on success. The list is not rebuilt.
  std::optional<SEntryProblem> AddEntry(const SEntryFields& fields);
  // One AddEntry per frequency from `from` to `to` (swapped when the wrong way round), both included. A step below 1
  // adds nothing. `onProblem` is told of every refused entry and may change the fields for those that follow.
  void AddSequence(SEntryFields fields, std::int64_t from, std::int64_t to, std::int64_t step,
                   const std::function<void(const SEntryProblem&, SEntryFields&)>& onProblem);
  static const OutputEntry* EntryOf(const std::shared_ptr<const SListed>& listed) { return &listed->entry; }
  Saved Save() const { return {m_entries.begin(), m_entries.end()}; }
  // Of the same recording, rebuilt.
  void PutBack(const Saved& saved);
  // Takes entries that were made from those of another list, in their order, in the place of its own.
  void Take(std::vector<OutputEntry> entries);
  // Puts new entries in the place of those that have their outputs made elsewhere, the same but for the folder.
  void MoveTo(const std::string& folder);
  // How many entries have their outputs made elsewhere.
  std::size_t CountOutside(const std::string& folder) const;
  // Removes duplicates (the earlier stays), then sorts by frequency, ties by bandwidth, equal keys in their order.
  // Returns what was removed.
  std::vector<SDroppedEntry> Rebuild();

  void Reset();                                          // removes all
  void Remove(const std::vector<std::size_t>& indices);  // any order; indices beyond the end are ignored

  std::size_t Size() const { return m_entries.size(); }
  const OutputEntry& operator[](std::size_t index) const { return m_entries[index]->entry; }
  // Among outputs of the same name; 1 for a name without a number.
  int NameNumber(std::size_t index) const { return m_entries[index]->nNumber; }
  // The entries in list order; valid while the list is not changed.
  std::vector<const OutputEntry*> Pointers() const;

 private:
  struct SListed {
    OutputEntry entry;
    std::string strStem;  // what its name begins with, folder included
    int nNumber = 1;      // among those with the same
  };

  static bool IsIn(const SListed& listed, const std::string& whole);
  void NameEntry(SListed& listed, const std::string& name, const std::string& folder, int wanted);
  void Drop(const std::vector<bool>& dropped);  // one flag for each entry

  // What entries are made from.
  struct SInput {
    std::int64_t tStart = 0;
    std::int64_t tEnd = 0;
    std::int64_t nFrequency = 0;
    std::uint32_t nSampleRate = 0;
    std::uint32_t nStartNanoseconds = 0;  // behind tStart
  };
  SInput m_input;
  CSharedText m_inputName;
  CSharedMetadata m_metadata;
  CSharedText m_info[4];
  std::vector<std::shared_ptr<const SListed>> m_entries;
  CEntryNames m_names;
  bool m_bRebuilt = true;  // nothing was added since
};

}  // namespace carvello
