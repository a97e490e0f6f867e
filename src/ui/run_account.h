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

// An output that failed, and why.
struct SFailure {
  std::string strFile;
  std::string strReason;
};

// Entries are told apart by where they are: those of the batches must live as long as this object, or until Reset.
class CRunAccount {
 public:
  // Forgets everything.
  void Reset();
  // Another batch of the run begins; those before count on.
  void BeginBatch(const std::vector<const OutputEntry*>& batch);
  // Of the batch that runs, as often as there is something to tell. An entry of the batch without a state is one whose
  // output existed already.
  void Update(const std::vector<SEntryState>& states);
  // The batch has ended: what is not done has been stopped or has failed. `listed`: the entries in the list, of which
  // those of batches that have not begun count as such.
  void EndBatch(const std::vector<SEntryState>& states, bool stopped, const std::vector<const OutputEntry*>& listed);
  // The batch has not begun, for all its outputs existed.
  void EndBatchOfExisting(const std::vector<const OutputEntry*>& listed);

  // For the list: "waiting", "45%", "done", "stopped", "failed: reason", "exists"; empty for an entry that has not
  // been part of the run.
  SToneText StateOf(const OutputEntry* entry) const;
  // "7 of 8 outputs written, 1 failed", over all batches that have ended, with what of the list has not begun; empty
  // until one has ended.
  SToneText Outcome() const;
  // What failed in the batch that ended last, with file names and reasons, for a message box; empty when nothing did.
  std::string Failures() const;
  // The same of all batches that have ended, and with what kept the next from beginning.
  std::string RunFailures(const std::string& obstacle) const;

 private:
  void CountNotBegun(const std::vector<const OutputEntry*>& listed);

  std::vector<const OutputEntry*> m_batch;
  std::map<const OutputEntry*, SEntryState> m_states;
  std::set<const OutputEntry*> m_existing;
  std::vector<SFailure> m_failures;  // of all batches; those of the last stand at the end
  std::size_t m_nBatchFailures = 0;  // of the last
  std::size_t m_nEntries = 0;        // over all batches that have ended
  std::size_t m_nDone = 0;
  std::size_t m_nFailed = 0;
  std::size_t m_nExisting = 0;
  std::size_t m_nNotBegun = 0;
  bool m_bStopped = false;
};

}  // namespace carvello
