// CCutJob: works a list of entries off, batch after batch, and collects what became of each.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

#include "cli/cut_report.h"
#include "cli/exit_codes.h"
#include "cli/message_queue.h"
#include "cli/progress_display.h"
#include "cli/scripted_answers.h"
#include "engine/entry_list.h"
#include "engine/job_control.h"
#include "input/recording_set.h"

namespace carvello {

class CCutJob {
 public:
  struct SSettings {
    EAnswer overwrite = EAnswer::Cancel;  // what becomes of outputs that exist
    SJobOptions options;
    bool bVerbose = false;  // log lines on stderr
    CProgressDisplay::EMode progress = CProgressDisplay::EMode::None;
  };

  CCutJob(const DspBinding& dsp, const CRecordingSet& recording, const SSettings& settings);

  // Returns when every batch is done, one cannot start, or the user stopped it. Processed entries are removed from the
  // list. The outputs of `report` with the names of the entries get their results; its times and bytes are set.
  EExit Run(CEntryList& entries, SCutReport& report);

 private:
  // Runs one batch that has been started.
  void RunBatch();
  void StopJob();
  void Handle(const SMessage& message);
  void Collect(SCutReport& report);
  static void TellTheRest(SCutReport& report, EOutputState state, const std::string& reason);

  const CRecordingSet& m_recording;
  SJobOptions m_options;
  bool m_bVerbose;
  CMessageQueue m_queue;
  CScriptedAnswers m_answers;
  CJobControl m_job;
  CProgressDisplay m_progress;
  std::uint32_t m_nLogMessage;
  std::uint32_t m_nProgressMessage;
  bool m_bStopped = false;
};

}  // namespace carvello
