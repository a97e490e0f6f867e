// CRunAccount: what became of the entries of a run, in words. A run is everything from a click on Start on, with all
// batches that follow by themselves.
#pragma once

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "engine/output_entry.h"
#include "engine/output_result.h"
#include "ui/readable_colours.h"

namespace carvello {

class CRunAccount {
 public:
  // Forgets everything.
  void Reset();
  // Another batch of the run begins; those before count on.
  void BeginBatch(const std::vector<const OutputEntry*>& batch);
  // Of the batch that runs, as often as there is something to tell. An entry of the batch without a state is one whose
  // output existed already.
  void Update(const std::vector<SEntryState>& states);
  // The batch has ended: what is not done has been stopped or has failed.
  void EndBatch(const std::vector<SEntryState>& states, bool stopped);
  // The batch has not begun, for all its outputs existed.
  void EndBatchOfExisting();
  // Entries that are in the list no more are forgotten, but go on counting.
  void Retain(const std::vector<const OutputEntry*>& entries);

  // For the list: "waiting", "45%", "done", "stopped", "failed: reason", "exists"; empty for an entry that has not
  // been part of the run.
  SToneText StateOf(const OutputEntry* entry) const;
  // "7 of 8 outputs written, 1 failed", over all batches that have ended; empty until one has.
  SToneText Outcome() const;
  // What failed in the batch that ended last, with file names and reasons, for a message box; empty when nothing did.
  std::string Failures() const;

 private:
  struct SFailure {
    std::string strFile;
    std::string strReason;
  };

  std::vector<const OutputEntry*> m_batch;
  std::map<const OutputEntry*, SEntryState> m_states;
  std::set<const OutputEntry*> m_existing;
  std::vector<SFailure> m_failures;  // of the last batch
  std::size_t m_nEntries = 0;        // over all batches that have ended
  std::size_t m_nDone = 0;
  std::size_t m_nFailed = 0;
  std::size_t m_nExisting = 0;
  bool m_bStopped = false;
};

}  // namespace carvello
