// "carvello-cli run": one task of a plan.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "cli/command.h"
#include "cluster/part_manifest.h"
#include "cluster/planned_recording.h"
#include "cluster/task_parts.h"
#include "cluster/work_plan.h"
#include "dsp/dsp_binding.h"

namespace carvello {

class CRunCommand : public CCommand {
 public:
  const char* Name() const override { return "run"; }
  const char* Summary() const override { return "Do one task of a plan"; }
  void AddOptions(CCommandOptions& options) override;
  EExit Run() override;

 private:
  // A part that is being made: under a name of its own, so that two that do one task write different files.
  struct SMaking {
    STaskPart part;
    std::string strTemporary;  // without its ending
    std::string strKey;
    SPartOrigin origin;
    std::string Wave() const { return strTemporary + ".wav"; }
    std::string Manifest() const { return strTemporary + ".json"; }
  };

  bool ChooseTask(const SWorkPlan& plan, std::size_t& task, std::string& error) const;
  EExit RunTask();
  EExit DoTask(const SWorkPlan& plan, std::size_t task);
  bool MakeFolders(const SWorkPlan& plan, std::size_t task, std::string& error) const;
  EExit MakeParts(const SWorkPlan& plan, const COpenRecording& recording, const DspBinding& dsp,
                  const std::vector<SMaking>& making);
  bool Complete(const SMaking& making, const SOutputResult& result, const OutputEntry& entry, std::string& error) const;
  void PrintResult(std::size_t task, std::size_t made, std::size_t kept) const;

  std::string m_strPlan;
  std::optional<std::size_t> m_task;
  bool m_bCount = false;
  bool m_bJson = false;
  bool m_bQuiet = false;
  bool m_bVerbose = false;
};

}  // namespace carvello
