// CJobControl: starts and stops jobs. A job is one pass over the input that writes at most MaxEntries() entries. Used
// on one thread, the one that owns the entry list; the workers report through the message target.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "dsp/dsp_binding.h"
#include "engine/block_listener.h"
#include "engine/entry_list.h"
#include "engine/job_options.h"
#include "engine/job_plan.h"
#include "engine/message_box.h"
#include "engine/message_target.h"
#include "engine/output_result.h"
#include "engine/progress_span.h"
#include "input/recording_set.h"

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

// Entries that one pass takes: the usual number, and at most, whatever the machine.
inline constexpr unsigned kEntriesPerProcessor = 4;
inline constexpr unsigned kMostEntriesOfAPass = 1'000;

class CJobControl {
 public:
  CJobControl(const DspBinding& dsp, IMessageTarget& target, IJobQuestions& questions,
              unsigned processors = platform::ProcessorCount());
  ~CJobControl();  // stops a running job
  CJobControl(const CJobControl&) = delete;
  CJobControl& operator=(const CJobControl&) = delete;

  unsigned Processors() const { return m_nProcessors; }
  // Of one job; the usual number, four a processor, unless told otherwise.
  unsigned MaxEntries() const { return m_nMaxEntries; }
  unsigned UsualEntries() const { return kEntriesPerProcessor * m_nProcessors; }
  // Both numbers, for the log.
  std::string LimitsText() const;
  void SetMaxEntries(unsigned entries) { m_nMaxEntries = std::clamp(entries, 1U, kMostEntriesOfAPass); }

  // Starts a job over the first entries of the list, but not those that failed in a batch that this one continues. What
  // stands in the way is put to the user; nothing is created then. The list and the recording must stay unchanged until
  // the job has ended.
  // Without consent to overwrite, what an earlier job has finished is left out and what it has not finished is done
  // again.
  EStartResult Start(const CEntryList& entries, const CRecordingSet& recording, const SJobOptions& options = {});
  // The same in steps, for an owner that cannot wait for disks. The result is Started when the next step may follow:
  // the plan looks at the disks, the user is asked about what it found, the plan chooses, the job begins. What the plan
  // does may be done on any thread, and be left to itself there; the others belong to this object's thread.
  EStartResult Plan(const CEntryList& entries, const CRecordingSet& recording, const SJobOptions& options,
                    std::shared_ptr<CJobPlan>& pPlan);
  EStartResult AskAbout(const CJobPlan& plan, bool& overwrite);
  EStartResult Begin(const CJobPlan& plan);  // OutputUnwritable: nothing is left to do, see EntryStates
  // How long Begin waits until reading has begun, and StopSoon until it has ended; for as long as it takes unless told.
  void SetPatience(std::chrono::milliseconds patience) { m_patience = patience; }
  // Who hears of every block that the jobs from the next Start on read; nobody: nullptr.
  void SetListener(std::shared_ptr<IBlockListener> listener) { m_pListener = std::move(listener); }
  // Ends a running job; every file is finished and closed on return.
  void Stop();
  // The same without waiting longer than the patience. On false the job ends as soon as it can; see OnIdle.
  bool StopSoon();
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
  // What changes as long as the running job gets on, and, while it does not, the file or folder that it waits for as
  // far as that can be told.
  std::uint64_t Steps() const;
  std::string Place(const CRecordingSet& recording) const;
  // What the running job or the last one reads of the recording that it was started with.
  SProgressSpan Span(const CRecordingSet& recording) const { return SpanOf(m_jobEntries, recording); }
  std::int64_t InputBytesRead() const { return m_nInputBytesRead; }  // of the last job

 private:
  EStartResult WithMemory(const std::function<EStartResult()>& step);
  EStartResult Refuse(EStartResult result, const std::string& reason);
  void LeaveOut(const OutputEntry& entry, const std::string& reason);
  bool WaitUntil(const std::function<bool()>& condition) const;
  bool BeginJob();
  void PostJob(const CJobPlan& plan);
  void FinishJob() noexcept;
  void Log(const std::string& text);

  const DspBinding& m_dsp;
  IMessageTarget& m_target;
  IJobQuestions& m_questions;
  unsigned m_nProcessors;
  unsigned m_nMaxEntries;
  bool m_bJobRunning = false;
  bool m_bReaderConfigured = false;
  std::unique_ptr<CBackgroundThreadReader> m_pReader;
  std::shared_ptr<IBlockListener> m_pListener;
  std::chrono::milliseconds m_patience = std::chrono::hours(24 * 365);
  std::uint64_t m_nStart = 0;                    // the last request by which the job begins
  std::vector<const OutputEntry*> m_planned;     // of the plan made last
  std::vector<SEntryState> m_leftOut;            // failed before the job began
  std::vector<const OutputEntry*> m_jobEntries;  // of the running job or the last one
  std::set<const OutputEntry*> m_failed;         // in the earlier batches that the next Start goes on from
  bool m_bContinues = false;                     // the next Start goes on
  std::vector<SOutputResult> m_results;
  std::int64_t m_nInputBytesRead = 0;
};

}  // namespace carvello
