#include "cli/cut_job.h"

#include <system_error>
#include <thread>

#include "cli/console.h"
#include "cli/stop_requests.h"
#include "support/platform.h"
#include "support/system_time.h"
#include "support/text.h"

namespace carvello {
namespace {

constexpr std::chrono::milliseconds kIdleInterval(50);

EExit ExitOf(EStartResult result) {
  switch (result) {
    case EStartResult::Started:
    case EStartResult::AllFilesExist:
      return EExit::Ok;
    case EStartResult::Declined:
      return EExit::OutputsExist;
    case EStartResult::OutputIsInput:
      return EExit::Usage;
    case EStartResult::OutputUnwritable:
    case EStartResult::NoThread:
      return EExit::OutputFailed;
    case EStartResult::LibraryMissing:
    case EStartResult::InputUnsupported:
      break;
  }
  return EExit::InputUnreadable;
}

// While files are being finished nothing else happens; this tells an impatient user so, once.
class CPatienceNotice {
 public:
  CPatienceNotice() : m_nRequests(StopRequests()) {
    try {
      m_thread = std::jthread([this](const std::stop_token& stop) { Watch(stop); });
    } catch (const std::system_error&) {
      // Without a thread to spare the user is not told; the files are finished all the same.
    }
  }

 private:
  void Watch(const std::stop_token& stop) const {
    while (!stop.stop_requested()) {
      if (StopRequests() > m_nRequests) {
        PrintMessage("still finishing the files, so that they are valid");
        return;
      }
      std::this_thread::sleep_for(kIdleInterval);
    }
  }

  int m_nRequests;
  std::jthread m_thread;
};

}  // namespace

CCutJob::CCutJob(const DspBinding& dsp, const CRecordingSet& recording, const SSettings& settings)
    : m_recording(recording),
      m_options(settings.options),
      m_bVerbose(settings.bVerbose),
      m_answers(settings.overwrite),
      m_job(dsp, m_queue, m_answers),
      m_progress(settings.progress),
      m_nLogMessage(RegisterMessage(kLogMessageName)),
      m_nProgressMessage(RegisterMessage(kProgressMessageName)) {
  m_job.SetMaxEntries(kMostEntriesOfAPass);
}

EExit CCutJob::Run(CEntryList& entries, SCutReport& report) {
  const auto begun = std::chrono::steady_clock::now();
  const std::int64_t cpuBegun = platform::ProcessCpuMilliseconds();
  const std::size_t batches = (entries.Size() + m_job.MaxEntries() - 1) / m_job.MaxEntries();

  std::size_t batchesDone = 0;
  EStartResult started = EStartResult::Started;
  for (std::size_t batch = 1;; ++batch) {
    m_bStopped = StopRequests() > 0;
    if (m_bStopped) break;
    started = m_job.Start(entries, m_recording, m_options);
    if (started != EStartResult::Started) break;
    m_progress.BeginBatch(batches > 1 ? Format("Batch %zu/%zu", batch, batches) : "", m_job.Span(m_recording));
    RunBatch();
    Collect(report);
    ++batchesDone;
    if (m_bStopped || !m_job.MoreThanOneBatch(entries) || !m_job.ContinueBatch(entries)) break;
  }

  report.dElapsedSeconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begun).count();
  report.dCpuSeconds = static_cast<double>(platform::ProcessCpuMilliseconds() - cpuBegun) / 1000.0;
  if (m_bStopped) {
    TellTheRest(report, EOutputState::Stopped, "stopped");
    return EExit::Stopped;
  }
  if (started != EStartResult::Started) {
    PrintMessageLines(m_answers.Reason());
    TellTheRest(report, EOutputState::Failed, "not begun");
    // What stands in the way of a later batch comes after outputs were written.
    const EExit exit = batchesDone == 0 ? ExitOf(started) : EExit::OutputFailed;
    // Outputs that came to be since the entries were chosen are not this job's.
    return exit == EExit::Ok && !report.AllOk() ? EExit::OutputFailed : exit;
  }
  return report.AllOk() ? EExit::Ok : EExit::OutputFailed;
}

void CCutJob::RunBatch() {
  while (true) {
    for (const SMessage& message : m_queue.Take(kIdleInterval)) Handle(message);
    if (StopRequests() > 0) {
      StopJob();
      break;
    }
    if (m_job.OnIdle()) break;
  }
  // What was posted between the last look and the end.
  for (const SMessage& message : m_queue.Take(std::chrono::milliseconds(0))) Handle(message);
  m_progress.EndBatch(!m_bStopped);
}

void CCutJob::StopJob() {
  m_bStopped = true;
  m_progress.PrintLine(std::string(kProgramName) + ": stopping, finishing the files");
  const CPatienceNotice notice;
  m_job.Stop();
}

void CCutJob::Handle(const SMessage& message) {
  if (message.nMessage == m_nProgressMessage) {
    // A stopped job ends with full progress too, which would tell the user that all was read.
    if (!m_bStopped) m_progress.Update(message.nTotal, message.nDone);
  } else if (message.nMessage == m_nLogMessage && m_bVerbose) {
    const std::string worker = message.strWorker.empty() ? "" : message.strWorker + "> ";
    m_progress.PrintLine(FormatLocal("%H:%M:%S", CurrentTime()) + "> " + worker + message.strText);
  }
}

// Of the entries whose batch was never begun.
void CCutJob::TellTheRest(SCutReport& report, EOutputState state, const std::string& reason) {
  for (SCutOutput& output : report.outputs) {
    if (output.bSkipped || output.result.state != EOutputState::Waiting) continue;
    output.result.state = state;
    output.result.strError = reason;
  }
}

void CCutJob::Collect(SCutReport& report) {
  // By name: what stands on disk by now may have been left out of the job.
  for (const SOutputResult& result : m_job.Results()) {
    const auto sameName = [&](const SCutOutput& output) { return output.result.strFileName == result.strFileName; };
    const auto output = std::find_if(report.outputs.begin(), report.outputs.end(), sameName);
    if (output == report.outputs.end()) continue;
    output->result = result;
    output->bProcessed = true;
  }
  report.nInputBytes += m_job.InputBytesRead();
}

}  // namespace carvello
