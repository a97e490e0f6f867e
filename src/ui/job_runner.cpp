#include "ui/job_runner.h"

#include <utility>

#include "support/version.h"
#include "ui/message_boxes.h"
#include "ui/wait_cursor.h"

namespace carvello {

namespace {

// How long the end of a job may go unnoticed. The reader ends after its last message, so no event tells.
constexpr int kEndIntervalMilliseconds = 50;
// Every so many looks for the end, the states of the entries are told.
constexpr int kLooksPerUpdate = 5;
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
  const EStartResult result = m_job.Start(m_entries, recording);
  m_bContinues = false;
  if (result == EStartResult::Started || result == EStartResult::AllFilesExist) {
    m_account.BeginBatch(m_job.Batch(m_entries));
  }
  if (result == EStartResult::Started) {
    m_endTimer.start();
    emit Started();
  } else if (result == EStartResult::AllFilesExist) {
    m_account.EndBatchOfExisting();
  }
  emit RunningChanged();
  emit AccountChanged();
}

void CJobRunner::Stop() {
  m_endTimer.stop();
  {
    const CWaitCursor wait;
    m_job.Stop();
  }
  EndBatch(true);
}

void CJobRunner::ForgetRun() {
  m_account.Reset();
  emit AccountChanged();
}

EAnswer CJobRunner::Ask(EJobQuestion /*question*/, const SMessageBox& box) {
  return ShowMessageBox(m_pWindow, box);
}

void CJobRunner::JobStarting() {
  if (!m_bContinues) m_account.Reset();
  emit Starting(m_bContinues);
  emit RunningChanged();
}

void CJobRunner::LookForEnd() {
  if (m_job.OnIdle()) {
    m_endTimer.stop();
    EndBatch(false);
    if (m_job.MoreThanOneBatch(m_entries)) m_batchTimer.start();
  } else if (++m_nLooks % kLooksPerUpdate == 0) {
    m_account.Update(m_job.EntryStates());
    emit AccountChanged();
  }
}

// Whatever failed is told before anything else is asked.
void CJobRunner::EndBatch(bool stopped) {
  m_account.EndBatch(m_job.EntryStates(), stopped);
  emit RunningChanged();
  emit AccountChanged();
  const std::string failures = m_account.Failures();
  if (!failures.empty()) {
    ShowMessageBox(m_pWindow, {VersionValue("ProductName"), failures, EButtons::Ok, EIcon::Stop});
  }
}

void CJobRunner::AskForNextBatch() {
  if (!m_job.ContinueBatch(m_entries)) return;
  m_bContinues = true;
  emit EntriesRemoved();
  emit NextBatch();
}

}  // namespace carvello
