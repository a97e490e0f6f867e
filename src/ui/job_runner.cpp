#include "ui/job_runner.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "support/version.h"
#include "ui/message_boxes.h"
#include "ui/wait_cursor.h"
#include "ui/ways_out.h"

namespace carvello {

namespace {

// How long the end of a job may go unnoticed. The reader ends after its last message, so no event tells.
constexpr int kEndIntervalMilliseconds = 50;
// Every so many looks for the end, the states of the entries are told.
constexpr int kLooksPerUpdate = 5;
// Timer 101 of the dialog: from the end of a batch to the question about the next.
constexpr int kBatchDelayMilliseconds = 100;
// So many times as long as a window stands still, ten minutes with the usual patience, an unattended run waits for a
// disk before it ends: nobody is there to give it up, and in the morning the reason should stand there.
constexpr int kNightPatience = 6'000;
// And so many times a job that does not get on is taken for a slow one.
constexpr int kHaltPatience = 50;

}  // namespace

CJobRunner::CJobRunner(const DspBinding& dsp, IMessageTarget& target, CEntryList& entries, unsigned processors,
                       QWidget* pWindow, std::chrono::milliseconds patience)
    : m_target(target),
      m_entries(entries),
      m_pWindow(pWindow),
      m_job(dsp, target, *this, processors),
      m_work(patience),
      m_patience(patience) {
  m_job.SetPatience(patience);
  connect(&m_work, &CPatientWork::WaitingChanged, this, [this] {
    if (IsPreparing()) {
      m_placeTimer.start();
      if (m_bRunUnattended) m_nightTimer.start();
    } else {
      m_placeTimer.stop();
      m_nightTimer.stop();
    }
    emit RunningChanged();
    emit AccountChanged();
  });
  m_placeTimer.setInterval(kEndIntervalMilliseconds * kLooksPerUpdate);
  connect(&m_placeTimer, &QTimer::timeout, this, &CJobRunner::AccountChanged);
  m_nightTimer.setSingleShot(true);
  // Timers count no more than some weeks.
  m_nightTimer.setInterval(std::min<std::chrono::milliseconds>(patience * kNightPatience, std::chrono::hours(24)));
  connect(&m_nightTimer, &QTimer::timeout, this, &CJobRunner::GiveUpBatch);
  m_endTimer.setInterval(kEndIntervalMilliseconds);
  connect(&m_endTimer, &QTimer::timeout, this, &CJobRunner::LookForEnd);
  m_batchTimer.setSingleShot(true);
  connect(&m_batchTimer, &QTimer::timeout, this, &CJobRunner::AskForNextBatch);
}

// The question about the next batch tells numbers, and removes entries, by the maximum that the last one had.
void CJobRunner::SetOnePass(bool onePass) {
  if (m_batchTimer.isActive()) EndRun(true);
  m_job.SetMaxEntries(onePass ? kMostEntriesOfAPass : m_job.UsualEntries());
}

void CJobRunner::Start(const CRecordingSet& recording) {
  if (IsRunning()) return;
  m_batchTimer.stop();
  if (!m_bContinues) {
    m_bRunUnattended = m_bUnattended;
    m_strObstacle.clear();
    m_strWayOut.clear();
  }
  m_recording = recording;
  const SJobOptions options{.bCountFrames = m_bCountFrames, .bLeaveOutUnwritable = m_bRunUnattended};
  const EStartResult result = m_job.Plan(m_entries, recording, options, m_pPlan);
  if (result != EStartResult::Started) {
    EndStart(result);
    return;
  }
  m_work.Run("Start", {}, [this, pPlan = m_pPlan]() -> std::function<void()> {
    pPlan->Look();
    return [this] { Looked(); };
  });
}

void CJobRunner::Looked() {
  bool overwrite = false;
  const EStartResult result = m_job.AskAbout(*m_pPlan, overwrite);
  if (result != EStartResult::Started) {
    EndStart(result);
    return;
  }
  m_work.Run("Start", {}, [this, overwrite, pPlan = m_pPlan]() -> std::function<void()> {
    pPlan->Choose(overwrite);
    return [this] { EndStart(m_job.Begin(*m_pPlan)); };
  });
}

void CJobRunner::EndStart(EStartResult result) {
  const bool continues = std::exchange(m_bContinues, false);
  m_pPlan.reset();
  const bool allLeftOut = result == EStartResult::OutputUnwritable && m_bRunUnattended;
  if (result == EStartResult::Started || result == EStartResult::AllFilesExist || allLeftOut) {
    BeginBatch();
  }
  if (result == EStartResult::Started) {
    m_stepTimer.start();
    m_endTimer.start();
    emit Started();
    emit RunningChanged();
    emit AccountChanged();
    return;
  }
  const bool batchEnded = result == EStartResult::AllFilesExist || allLeftOut;
  if (result == EStartResult::AllFilesExist) m_account.EndBatchOfExisting(m_entries.Pointers());
  if (allLeftOut) m_account.EndBatch(m_job.EntryStates(), false, m_entries.Pointers());
  // What is told at the end of an unattended run is told of this one.
  if (m_bRunUnattended && !continues && !batchEnded) ResetAccount();
  emit RunningChanged();
  emit AccountChanged();
  if (m_bRunUnattended) GoOnOrEnd(batchEnded && m_job.MoreThanOneBatch(m_entries));
}

// What became of an entry is known as long as the account, also when it leaves the list and comes back.
void CJobRunner::BeginBatch() {
  const std::vector<const OutputEntry*> batch = m_job.Batch(m_entries);
  const std::unordered_set<const OutputEntry*> wanted(batch.begin(), batch.end());
  for (auto& listed : m_entries.Save()) {
    if (wanted.contains(CEntryList::EntryOf(listed))) m_counted.push_back(std::move(listed));
  }
  m_account.BeginBatch(batch);
}

void CJobRunner::ResetAccount() {
  m_account.Reset();
  m_counted.clear();
}

void CJobRunner::Stop() {
  if (IsPreparing()) {
    GiveUpPreparing();
    EndRun(true);
    return;
  }
  {
    const CWaitCursor wait;
    m_bStopping = !m_job.StopSoon();
  }
  if (m_bStopping) {
    emit AccountChanged();
    return;
  }
  m_endTimer.stop();
  EndBatch(true);
  EndRun(true);
}

// True when a batch of the run had begun before.
bool CJobRunner::GiveUpPreparing() {
  m_work.GiveUp();
  m_pPlan.reset();
  return std::exchange(m_bContinues, false);
}

void CJobRunner::GiveUpBatch() {
  m_strObstacle = Place() + ": no answer";
  m_strWayOut = WayOutOfNoAnswer();
  m_target.PostTexts(RegisterMessage(kLogMessageName), {}, "[ERROR] " + m_strObstacle);
  if (!GiveUpPreparing()) ForgetRun();
  EndRun(false);
}

void CJobRunner::ForgetRun() {
  ResetAccount();
  emit AccountChanged();
}

// What is answered unasked is what loses nothing.
EAnswer CJobRunner::Ask(EJobQuestion question, const SMessageBox& box) {
  if (!m_bRunUnattended) {
    SMessageBox shown = box;
    if (question == EJobQuestion::CannotStart) shown.strText = WithWayOut(box.strText, WayOut());
    return ShowMessageBox(m_pWindow, shown);
  }
  switch (question) {
    case EJobQuestion::TooManyEntries:
    case EJobQuestion::ContinueBatch:
      return EAnswer::Yes;
    case EJobQuestion::OverwriteFiles:
      return EAnswer::No;
    case EJobQuestion::AllFilesExist:
      break;
    case EJobQuestion::CannotStart:
      m_strObstacle = box.strText;
      m_strWayOut = WayOut();
      m_target.PostTexts(RegisterMessage(kLogMessageName), {}, "[ERROR] " + box.strText);
      break;
  }
  return EAnswer::Ok;
}

std::string CJobRunner::WayOut() const {
  if (!m_pPlan || !m_pPlan->Obstacle()) return {};
  return WayOutOfStart(m_pPlan->Obstacle()->result, m_pPlan->Obstacle()->nError);
}

void CJobRunner::JobStarting() {
  if (!m_bContinues) ResetAccount();
  emit Starting(m_bContinues);
  emit RunningChanged();
}

void CJobRunner::LookForEnd() {
  if (m_job.OnIdle()) {
    m_endTimer.stop();
    const bool stopped = std::exchange(m_bStopping, false);
    EndBatch(stopped);
    if (stopped) {
      EndRun(true);
    } else {
      GoOnOrEnd(m_job.MoreThanOneBatch(m_entries));
    }
  } else if (++m_nLooks % kLooksPerUpdate == 0) {
    m_account.Update(m_job.EntryStates());
    LookForHalt();
    emit AccountChanged();
  }
}

// A run that waits for a disk is not ended for that: it may come back before anybody does.
void CJobRunner::LookForHalt() {
  const std::uint64_t steps = m_job.Steps();
  if (std::exchange(m_nSteps, steps) != steps) m_stepTimer.start();
  const std::chrono::milliseconds waited(m_stepTimer.elapsed());
  const EHalt halt = waited >= m_patience * kNightPatience  ? EHalt::Silent
                     : waited >= m_patience * kHaltPatience ? EHalt::Waiting
                                                            : EHalt::None;
  if (std::exchange(m_halt, halt) == halt || halt != EHalt::Silent || m_bStopping) return;
  m_target.PostTexts(RegisterMessage(kLogMessageName), {}, "[ERROR] " + Place() + ": no answer, the run waits for it");
  if (m_bRunUnattended) emit UnattendedRunHalted();
}

std::string CJobRunner::Place() const {
  if (m_pPlan) return m_pPlan->Place();
  return m_job.IsRunning() ? m_job.Place(m_recording) : std::string();
}

// Whatever failed is told before anything else is asked, or at the end of a run that asks nothing.
void CJobRunner::EndBatch(bool stopped) {
  m_halt = EHalt::None;
  m_account.EndBatch(m_job.EntryStates(), stopped, m_entries.Pointers());
  emit RunningChanged();
  emit AccountChanged();
  const std::string failures = m_account.Failures();
  if (!m_bRunUnattended && !failures.empty()) {
    TellFailures(failures, WayOutOfFailures());
  }
}

void CJobRunner::TellFailures(const std::string& failures, const std::string& wayOut) {
  ShowMessageBox(m_pWindow, {VersionValue("ProductName"), WithWayOut(failures, wayOut), EButtons::Ok, EIcon::Stop});
}

void CJobRunner::GoOnOrEnd(bool goesOn) {
  if (goesOn) {
    m_batchTimer.start(m_bRunUnattended ? 0 : kBatchDelayMilliseconds);
  } else {
    EndRun(false);
  }
}

void CJobRunner::EndRun(bool byUser) {
  m_batchTimer.stop();
  if (!std::exchange(m_bRunUnattended, false)) return;
  emit RunningChanged();
  const std::string failures = m_account.RunFailures(m_strObstacle);
  if (!byUser) emit UnattendedRunEnded();
  const bool anyFailed = !m_account.RunFailures({}).empty();
  if (!failures.empty())
    TellFailures(WithWayOut(failures, m_strWayOut), anyFailed ? WayOutOfFailures() : std::string());
}

void CJobRunner::AskForNextBatch() {
  emit RemovingEntries();
  if (!m_job.ContinueBatch(m_entries)) {
    GoOnOrEnd(false);
    return;
  }
  m_bContinues = true;
  emit EntriesRemoved();
  emit NextBatch();
}

}  // namespace carvello
