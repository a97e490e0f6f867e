// CEntryList: the output entries of one recording, with every rule and text for making, checking, naming,
// de-duplicating and sorting them. The dialog and the command line only fill the fields and show the result.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

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

class CEntryList {
 public:
  // The recording that entries are made for. Clears the list.
  void SetRecording(const CRecordingSet& recording, const SInfoTexts& infoTexts);

  // Checks the fields and appends an entry at the end of the list; nothing on success. The list is not rebuilt.
  std::optional<SEntryProblem> AddEntry(const SEntryFields& fields);
  // One AddEntry per frequency from `from` to `to` (swapped when the wrong way round), both included. A step below 1
  // adds nothing. `onProblem` is told of every refused entry.
  void AddSequence(SEntryFields fields, std::int64_t from, std::int64_t to, std::int64_t step,
                   const std::function<void(const SEntryProblem&)>& onProblem);
  // Removes duplicates (the earlier stays), then sorts by frequency, ties by bandwidth, equal keys in their order.
  void Rebuild();

  void Reset();                                          // removes all
  void Remove(const std::vector<std::size_t>& indices);  // any order; indices beyond the end are ignored

  std::size_t Size() const { return m_entries.size(); }
  const OutputEntry& operator[](std::size_t index) const { return *m_entries[index]; }
  // The entries in list order; valid while the list is not changed.
  std::vector<const OutputEntry*> Pointers() const;

 private:
  void NameEntry(OutputEntry& entry, const std::string& stem, const std::string& folder) const;
  void IndexEntries();

  CRecordingSet m_recording;
  SInfoTexts m_infoTexts;
  std::vector<std::unique_ptr<OutputEntry>> m_entries;
  // The same entries. A name tells the frequency to the Hz, so only entries of one frequency can share a name.
  std::unordered_multimap<std::int64_t, const OutputEntry*> m_byFrequency;
};

}  // namespace carvello
