// CJobRunner: runs jobs over the entries of the dialog, batch by batch, and puts their questions to the user, or, in an
// unattended run, answers them itself and tells at the end what went wrong.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <chrono>
#include <memory>
#include <string>
#include <utility>

#include "dsp/dsp_binding.h"
#include "engine/block_listener.h"
#include "engine/entry_list.h"
#include "engine/job_control.h"
#include "engine/message_target.h"
#include "input/recording_set.h"
#include "ui/patient_work.h"
#include "ui/run_account.h"

class QWidget;

namespace carvello {

class CJobRunner : public QObject, private IJobQuestions {
  Q_OBJECT

 public:
  // Everything must outlive this object. Message boxes belong to the window. `patience`: how long the window may stand
  // still for a disk.
  CJobRunner(const DspBinding& dsp, IMessageTarget& target, CEntryList& entries, unsigned processors, QWidget* pWindow,
             std::chrono::milliseconds patience);

  unsigned Processors() const { return m_job.Processors(); }
  unsigned MaxEntries() const { return m_job.MaxEntries(); }
  std::string LimitsText() const { return m_job.LimitsText(); }
  // Not while a job runs: whether one takes as many entries as there can be in a pass, or the usual number.
  void SetOnePass(bool onePass);
  // From the next start on: RF64 files tell their samples in frames.
  void SetCountFrames(bool countFrames) { m_bCountFrames = countFrames; }
  // Of runs from the next on. Such a run goes through all batches without a question: what exists is left out, what
  // cannot be written fails alone, and one box at the end tells of everything that failed.
  void SetUnattended(bool unattended) { m_bUnattended = unattended; }
  // A job runs, or is being prepared; see IsPreparing.
  bool IsRunning() const { return m_job.IsRunning() || IsPreparing(); }
  // The next job waits for disks before it can begin. Stop gives it up.
  bool IsPreparing() const { return m_work.IsWaiting(); }
  // The job has been told to stop and waits for disks.
  bool IsStopping() const { return m_bStopping; }
  // A job runs, or a batch of an unattended run is about to follow.
  bool IsBusy() const { return IsRunning() || m_bRunUnattended; }
  // The job has not got on for a while. Silent: for so long that it should be told aloud; it goes on by itself when the
  // disk answers again.
  enum class EHalt { None, Waiting, Silent };
  EHalt Halt() const { return m_halt; }
  // The path that is waited for while a job is being prepared or does not get on; empty where that is not known.
  std::string Place() const;

  // Not while a job runs: who hears the blocks that the next ones read; null for nobody.
  void SetListener(std::shared_ptr<IBlockListener> listener) { m_job.SetListener(std::move(listener)); }
  void Start(const CRecordingSet& recording);
  void Stop();  // the files are finished on return, unless a disk does not answer: see IsStopping

  // What became of the entries of this run, or of the last one.
  const CRunAccount& Account() const { return m_account; }
  void ForgetRun();
  // What the job reads of the recording that it was started with.
  SProgressSpan Span(const CRecordingSet& recording) const { return m_job.Span(recording); }

 signals:
  void Starting(bool continues);  // the questions are answered; a batch of a new run begins, or the next of this one
  void Started();
  void AccountChanged();
  void RunningChanged();       // IsRunning() or IsBusy() may have changed
  void RemovingEntries();      // the user will be asked about those of the batch just processed
  void EntriesRemoved();       // those of the batch just processed
  void NextBatch();            // Start is to be called again, after what is happening now
  void UnattendedRunEnded();   // by itself; a box that tells of failures may follow
  void UnattendedRunHalted();  // Halt() has become Silent

 private:
  EAnswer Ask(EJobQuestion question, const SMessageBox& box) override;
  void JobStarting() override;
  void Looked();
  void EndStart(EStartResult result);
  void BeginBatch();
  void ResetAccount();
  void LookForEnd();
  void LookForHalt();
  void EndBatch(bool stopped);
  void GoOnOrEnd(bool goesOn);
  void EndRun(bool byUser);
  bool GiveUpPreparing();
  void GiveUpBatch();
  std::string WayOut() const;
  void TellFailures(const std::string& failures, const std::string& wayOut);
  void AskForNextBatch();

  IMessageTarget& m_target;
  CEntryList& m_entries;
  QWidget* m_pWindow;
  CJobControl m_job;
  CRunAccount m_account;
  CEntryList::Saved m_counted;  // what it tells of
  CPatientWork m_work;
  std::shared_ptr<CJobPlan> m_pPlan;  // of the job that is being prepared
  bool m_bCountFrames = false;
  bool m_bUnattended = false;
  bool m_bRunUnattended = false;  // an unattended run goes on
  std::string m_strObstacle;      // why it could not go on
  std::string m_strWayOut;        // of that
  bool m_bContinues = false;      // the next Start is that of the next batch
  bool m_bStopping = false;
  int m_nLooks = 0;           // for the end of the job
  CRecordingSet m_recording;  // of the job
  std::chrono::milliseconds m_patience;
  EHalt m_halt = EHalt::None;
  std::uint64_t m_nSteps = 0;  // of the job, when they were looked at last
  QElapsedTimer m_stepTimer;   // since they changed
  QTimer m_placeTimer;         // while a job is being prepared
  QTimer m_nightTimer;         // while one of an unattended run is
  QTimer m_endTimer;
  QTimer m_batchTimer;
};

}  // namespace carvello
