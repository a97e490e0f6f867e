// "carvello-cli scan": a list of what is on the air.
#pragma once

#include <string>

#include "cli/command.h"
#include "cli/given_options.h"
#include "cli/time_span.h"
#include "overview/recording_scan.h"

namespace carvello {

class CScanCommand : public CCommand {
 public:
  const char* Name() const override { return "scan"; }
  const char* Summary() const override { return "List the signals in a recording"; }
  void AddOptions(CCommandOptions& options) override;
  EExit Run() override;

 private:
  bool ReadOptions(SScanRequest& request, std::string& error) const;
  // Whether the job file may be written; the code of what stands in the way otherwise, which has been printed.
  EExit CheckJobFile(const CRecordingSet& recording) const;

  std::string m_strInput;
  STimeSpanOptions m_time;
  SGivenOptions m_given;
  std::string m_strAbove = "10";
  std::string m_strMinWidth;
  std::string m_strRaster;
  std::string m_strJobFile;
  bool m_bCentre = false;
  bool m_bJson = false;
  bool m_bOverwrite = false;
  bool m_bQuiet = false;
};

}  // namespace carvello
