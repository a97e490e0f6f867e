// "carvello-cli join": the outputs of a plan, of the parts that its tasks have written.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "cli/command.h"
#include "cli/cut_report.h"
#include "cluster/part_source.h"
#include "cluster/planned_recording.h"
#include "cluster/work_plan.h"

namespace carvello {

class CJoinCommand : public CCommand {
 public:
  const char* Name() const override { return "join"; }
  const char* Summary() const override { return "Make the outputs of a plan whose tasks are done"; }
  void AddOptions(CCommandOptions& options) override;
  EExit Run() override;

 private:
  // The parts of each entry of a recording, in order.
  using Parts = std::vector<std::vector<SReadyPart>>;

  std::vector<std::size_t> FindParts(const SWorkPlan& plan, std::size_t number, const COpenRecording& recording,
                                     Parts& parts, std::vector<std::string>& problems) const;
  std::string GapIn(const COpenRecording& recording, const Parts& parts) const;
  EExit TellMissing(const std::vector<std::size_t>& missing, const std::vector<std::string>& problems) const;
  // An entry of a recording that is to be made, by its place in the list.
  struct SWanted {
    std::size_t nEntry = 0;
    bool bReplace = false;  // what stands there
  };

  EExit Settle(const COpenRecording& recording, bool looks, SCutReport& report, std::vector<SWanted>& wanted,
               std::vector<std::string>& existing) const;
  void Join(const SWorkPlan& plan, const COpenRecording& recording, Parts parts, const std::vector<SWanted>& wanted,
            SCutReport& report) const;
  EExit PrintReport(const SCutReport& report) const;
  bool RemoveParts(const SWorkPlan& plan) const;

  std::string m_strPlan;
  bool m_bOverwrite = false;
  bool m_bSkipExisting = false;
  bool m_bRemoveParts = false;
  bool m_bJson = false;
  bool m_bQuiet = false;
};

}  // namespace carvello
