// CJobRunner: runs jobs over the entries of the dialog, batch by batch, and puts their questions to the user.
#pragma once

#include <QObject>
#include <QTimer>

#include "dsp/dsp_binding.h"
#include "engine/entry_list.h"
#include "engine/job_control.h"
#include "engine/message_target.h"
#include "input/recording_set.h"

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

 signals:
  void Starting();        // the questions are answered
  void RunningChanged();  // IsRunning() may have changed
  void EntriesRemoved();  // those of the batch just processed
  void NextBatch();       // Start is to be called again, after what is happening now

 private:
  EAnswer Ask(EJobQuestion question, const SMessageBox& box) override;
  void JobStarting() override;
  void LookForEnd();
  void AskForNextBatch();

  CEntryList& m_entries;
  QWidget* m_pWindow;
  CJobControl m_job;
  QTimer m_endTimer;
  QTimer m_batchTimer;
};

}  // namespace carvello
