// "carvello-cli cut": narrow-band recordings out of a wide-band one.
#pragma once

#include <string>

#include "cli/command.h"
#include "cli/cut_report.h"
#include "cli/cut_request.h"
#include "dsp/dsp_binding.h"
#include "engine/entry_list.h"
#include "engine/output_files.h"
#include "input/recording_set.h"

namespace carvello {

class CCutCommand : public CCommand {
 public:
  const char* Name() const override { return "cut"; }
  const char* Summary() const override { return "Cut narrow-band recordings out of a wide-band one"; }
  void AddOptions(CLI::App& app) override;
  EExit Run() override;

 private:
  EExit Cut(const SCutRequest& request, const CRecordingSet& recording, const DspBinding& dsp, CEntryList& entries);
  // Decides what becomes of outputs that exist. Entries to be left out are taken from the list and marked in the
  // report; what an earlier job has not finished stays in it. False when nobody decided; they are listed on stderr
  // then.
  bool SettleExisting(const CRecordingSet& recording, COutputFolders& folders, CEntryList& entries,
                      SCutReport& report) const;
  EExit RunJob(const CRecordingSet& recording, const DspBinding& dsp, CEntryList& entries, SCutReport& report) const;
  void PrintReport(const SCutReport& report) const;
  static void PrintFailures(const SCutReport& report);

  SCutOptions m_options;
};

}  // namespace carvello
