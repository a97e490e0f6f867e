#include "ui/job_runner.h"

#include "ui/message_boxes.h"
#include "ui/wait_cursor.h"

namespace carvello {

namespace {

// How long the end of a job may go unnoticed. The reader ends after its last message, so no event tells.
constexpr int kEndIntervalMilliseconds = 50;
// Timer 101 of the dialog: from the end of a batch to the question about the next.
constexpr int kBatchDelayMilliseconds = 100;

}  // namespace

CJobRunner::CJobRunner(const DspBinding& dsp, IMessageTarget& target, CEntryList& entries, unsigned processors,
                       QWidget* pWindow)
    : m_entries(entries), m_pWindow(pWindow), m_job(dsp, target, *this, processors) {
  m_endTimer.setInterval(kEndIntervalMilliseconds);
  connect(&m_endTimer, &QTimer::timeout, this, &CJobRunner::LookForEnd);
  m_batchTimer.setSingleShot(true);
  m_batchTimer.setInterval(kBatchDelayMilliseconds);
  connect(&m_batchTimer, &QTimer::timeout, this, &CJobRunner::AskForNextBatch);
}

void CJobRunner::Start(const CRecordingSet& recording) {
  if (m_job.IsRunning()) return;
  m_batchTimer.stop();
  if (m_job.Start(m_entries, recording) == EStartResult::Started) m_endTimer.start();
  emit RunningChanged();
}

void CJobRunner::Stop() {
  const CWaitCursor wait;
  m_endTimer.stop();
  m_job.Stop();
  emit RunningChanged();
}

EAnswer CJobRunner::Ask(EJobQuestion /*question*/, const SMessageBox& box) {
  return ShowMessageBox(m_pWindow, box);
}

void CJobRunner::JobStarting() {
  emit Starting();
  emit RunningChanged();
}

void CJobRunner::LookForEnd() {
  if (!m_job.OnIdle()) return;
  m_endTimer.stop();
  emit RunningChanged();
  if (m_job.MoreThanOneBatch(m_entries)) m_batchTimer.start();
}

void CJobRunner::AskForNextBatch() {
  if (!m_job.ContinueBatch(m_entries)) return;
  emit EntriesRemoved();
  emit NextBatch();
}

}  // namespace carvello
