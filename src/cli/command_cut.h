// "carvello-cli cut": narrow-band recordings out of a wide-band one.
#pragma once

#include <string>

#include "cli/command.h"
#include "cli/cut_report.h"
#include "cli/cut_request.h"
#include "cli/given_options.h"
#include "cli/output_checks.h"
#include "dsp/dsp_binding.h"
#include "engine/entry_list.h"
#include "engine/output_files.h"
#include "input/recording_set.h"

namespace carvello {

class CCutCommand : public CCommand {
 public:
  const char* Name() const override { return "cut"; }
  const char* Summary() const override { return "Cut narrow-band recordings out of a wide-band one"; }
  void AddOptions(CCommandOptions& options) override;
  EExit Run() override;

 private:
  EExit Cut(const SCutRequest& request, const CRecordingSet& recording, const DspBinding& dsp, CEntryList& entries);
  EExit RunJob(EEngineSetting engine, const CRecordingSet& recording, const DspBinding& dsp, CEntryList& entries,
               SCutReport& report) const;
  SRefusal CheckCollection(const std::string& path, const CRecordingSet& recording) const;
  // The exit code that the command ends with: `result`, unless that was good and writing fails.
  EExit WriteCollection(const std::string& path, const CRecordingSet& recording, const SCutReport& report,
                        EExit result) const;
  void PrintReport(const SCutReport& report) const;
  static void PrintFailures(const SCutReport& report);

  SCutOptions m_options;
  SGivenOptions m_given;
};

}  // namespace carvello
