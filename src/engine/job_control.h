// CJobControl: starts and stops jobs. A job is one pass over the input that writes at most MaxEntries() entries. Used
// on one thread, the one that owns the entry list; the workers report through the message target.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "dsp/dsp_binding.h"
#include "engine/entry_list.h"
#include "engine/message_box.h"
#include "engine/message_target.h"
#include "engine/output_files.h"
#include "engine/output_result.h"
#include "engine/progress_span.h"
#include "input/recording_set.h"
#include "recording/write_policy.h"

namespace carvello {

class CBackgroundThreadReader;

enum class EJobQuestion {
  TooManyEntries,  // Yes, No
  OverwriteFiles,  // Yes, No (leave out the existing), Cancel
  AllFilesExist,   // notice
  ContinueBatch,   // Yes, No
  CannotStart,     // notice: the job cannot start at all
};

class IJobQuestions {
 public:
  virtual ~IJobQuestions() = default;
  virtual EAnswer Ask(EJobQuestion question, const SMessageBox& box) = 0;
  // The questions are answered and a job begins: the moment to clear the log and the progress shown.
  virtual void JobStarting() {}
};

enum class EStartResult {
  Started,
  Declined,          // the user answered No or Cancel
  AllFilesExist,     // nothing was left to do
  LibraryMissing,    // the downconverter library is not complete
  InputUnsupported,  // nothing converts the input's sample size
  OutputIsInput,     // an output would replace a file of the input
  OutputUnwritable,  // the output folder is missing or cannot be written to, or an old part cannot be removed
  NoThread,          // the system gives no thread or no memory
};

struct SJobOptions {
  bool bSync = true;  // outputs stand on the medium, safe from a power cut, before they count as written
};

// Why no job can read this recording, as a text that names the file and what is accepted; nothing when one can.
std::optional<std::string> InputProblem(const CRecordingSet& recording);

class CJobControl {
 public:
  CJobControl(const DspBinding& dsp, IMessageTarget& target, IJobQuestions& questions,
              unsigned processors = platform::ProcessorCount());
  ~CJobControl();  // stops a running job
  CJobControl(const CJobControl&) = delete;
  CJobControl& operator=(const CJobControl&) = delete;

  unsigned Processors() const { return m_nProcessors; }
  unsigned MaxEntries() const { return 4 * m_nProcessors; }

  // Starts a job over the first entries of the list, but not those that failed in a batch that this one continues. What
  // stands in the way is put to the user; nothing is created then. The list and the recording must stay unchanged until
  // the job has ended.
  // Without consent to overwrite, what an earlier job has finished is left out and what it has not finished is done
  // again.
  EStartResult Start(const CEntryList& entries, const CRecordingSet& recording, const SJobOptions& options = {});
  // Ends a running job; every file is finished and closed on return.
  void Stop();
  bool IsRunning() const { return m_bJobRunning; }

  // To be called whenever the owner has nothing else to do. True once, when the job has just ended on its own; all
  // files are closed then.
  bool OnIdle();
  // The entries that the job just started processes, or the next one will: the first of the list, without those that
  // failed in an earlier batch.
  std::vector<const OutputEntry*> Batch(const CEntryList& entries) const;
  // Whether the list holds more entries than the batch just processed.
  bool MoreThanOneBatch(const CEntryList& entries) const;
  // Asks whether to go on; on Yes the processed entries are removed from the list, but for those that failed, the list
  // is rebuilt, and true is returned: the owner then calls Start again, which leaves the failed ones alone.
  bool ContinueBatch(CEntryList& entries);

  // Of the last job, in the order of its entries; valid when no job is running.
  const std::vector<SOutputResult>& Results() const { return m_results; }
  // Of the running job or the last one, in the order of its entries. May be called at any moment.
  std::vector<SEntryState> EntryStates() const;
  // What the running job or the last one reads of the recording that it was started with.
  SProgressSpan Span(const CRecordingSet& recording) const { return SpanOf(m_jobEntries, recording); }
  std::int64_t InputBytesRead() const { return m_nInputBytesRead; }  // of the last job

 private:
  struct SObstacle {
    EStartResult result;
    std::string strText;
  };

  // What is to be written, and how.
  struct SChosen {
    std::vector<const OutputEntry*> entries;
    std::vector<SWritePolicy> policies;  // of each
    std::vector<std::string> notes;      // for the log: what became of files that exist
  };

  EStartResult StartJob(const CEntryList& entries, const CRecordingSet& recording, const SJobOptions& options);
  std::optional<SObstacle> FindObstacle(const std::vector<const OutputEntry*>& entries, const CRecordingSet& recording,
                                        COutputFolders& folders) const;
  static SChosen Choose(const std::vector<const OutputEntry*>& entries, const CRecordingSet& recording,
                        COutputFolders& folders, bool overwrite, const SJobOptions& options);
  bool BeginJob();
  void PostJob(const SChosen& chosen, const CRecordingSet& recording);
  void FinishJob() noexcept;
  void Log(const std::string& text);

  const DspBinding& m_dsp;
  IMessageTarget& m_target;
  IJobQuestions& m_questions;
  unsigned m_nProcessors;
  bool m_bJobRunning = false;
  bool m_bReaderConfigured = false;
  std::unique_ptr<CBackgroundThreadReader> m_pReader;
  std::vector<const OutputEntry*> m_jobEntries;  // of the running job or the last one
  std::set<const OutputEntry*> m_failed;         // in the earlier batches that the next Start goes on from
  bool m_bContinues = false;                     // the next Start goes on
  std::vector<SOutputResult> m_results;
  std::int64_t m_nInputBytesRead = 0;
};

}  // namespace carvello
