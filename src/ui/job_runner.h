// CJobRunner: runs jobs over the entries of the dialog, batch by batch, and puts their questions to the user.
#pragma once

#include <QObject>
#include <QTimer>

#include "dsp/dsp_binding.h"
#include "engine/entry_list.h"
#include "engine/job_control.h"
#include "engine/message_target.h"
#include "input/recording_set.h"
#include "ui/run_account.h"

class QWidget;

namespace carvello {

class CJobRunner : public QObject, private IJobQuestions {
  Q_OBJECT

 public:
  // Everything must outlive this object. Message boxes belong to the window.
  CJobRunner(const DspBinding& dsp, IMessageTarget& target, CEntryList& entries, unsigned processors, QWidget* pWindow);

  unsigned Processors() const { return m_job.Processors(); }
  unsigned MaxEntries() const { return m_job.MaxEntries(); }
  bool IsRunning() const { return m_job.IsRunning(); }

  void Start(const CRecordingSet& recording);
  void Stop();  // the files are finished on return

  // What became of the entries of this run, or of the last one.
  const CRunAccount& Account() const { return m_account; }
  // To be called when entries have left the list.
  void RetainEntries() { m_account.Retain(m_entries.Pointers()); }
  void ForgetRun();
  // What the job reads of the recording that it was started with.
  SProgressSpan Span(const CRecordingSet& recording) const { return m_job.Span(recording); }

 signals:
  void Starting(bool continues);  // the questions are answered; a batch of a new run begins, or the next of this one
  void Started();
  void AccountChanged();
  void RunningChanged();  // IsRunning() may have changed
  void EntriesRemoved();  // those of the batch just processed
  void NextBatch();       // Start is to be called again, after what is happening now

 private:
  EAnswer Ask(EJobQuestion question, const SMessageBox& box) override;
  void JobStarting() override;
  void LookForEnd();
  void EndBatch(bool stopped);
  void AskForNextBatch();

  CEntryList& m_entries;
  QWidget* m_pWindow;
  CJobControl m_job;
  CRunAccount m_account;
  bool m_bContinues = false;  // the next Start is that of the next batch
  int m_nLooks = 0;           // for the end of the job
  QTimer m_endTimer;
  QTimer m_batchTimer;
};

}  // namespace carvello
