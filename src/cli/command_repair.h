// "carvello-cli repair": recordings whose recorder could not end them get the right sizes.
#pragma once

#include <string>
#include <vector>

#include "cli/command.h"
#include "cli/repair_report.h"
#include "input/file_repair.h"

namespace carvello {

class CRepairCommand : public CCommand {
 public:
  const char* Name() const override { return "repair"; }
  const char* Summary() const override { return "Set wrong sizes of recordings right"; }
  void AddOptions(CCommandOptions& options) override;
  EExit Run() override;

 private:
  SRepairReport Repair(const std::string& file, const SGivenFacts& given) const;
  bool IsAsked() const { return m_bDryRun || m_bInPlace || !m_strFolder.empty(); }

  std::vector<std::string> m_files;
  std::string m_strFolder;
  bool m_bInPlace = false;
  bool m_bDryRun = false;
  bool m_bJson = false;
  std::string m_strRate;
  std::string m_strSampleType;
};

}  // namespace carvello
