// "carvello-cli plan": spreads the work of cutting many recordings over many machines.
#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "cli/command.h"
#include "cli/cut_request.h"
#include "cli/given_options.h"
#include "cluster/planned_recording.h"
#include "cluster/recording_search.h"
#include "cluster/work_plan.h"
#include "dsp/dsp_binding.h"

namespace carvello {

class CPlanCommand : public CCommand {
 public:
  const char* Name() const override { return "plan"; }
  const char* Summary() const override { return "Split cutting over many machines: write the tasks"; }
  void AddOptions(CCommandOptions& options) override;
  EExit Run() override;

 private:
  // What all recordings together come to.
  struct SSums {
    std::set<std::string> outputs;  // by the keys of their names
    std::vector<bool> held;         // entries of the job that any recording holds
    double dNanoseconds = 0.0;      // of processor time for each frame, of the dearest recording
    std::uint32_t nBytesPerFrame = 0;
    double dOutputBytes = 0.0;
    std::size_t nOutputs = 0;
    std::size_t nRecordings = 0;    // looked at; the plan has those that hold any of the entries
    std::set<std::string> endings;  // of their names
    std::vector<SLeftOutFile> leftOut;
    std::vector<std::string> existing;  // files of outputs
    std::vector<std::string> warnings;
  };

  bool ReadOptions(SWorkPlan& plan, std::vector<std::string>& inputs, std::string& error);
  EExit CheckMeans(const SWorkPlan& plan, const DspBinding& dsp) const;
  EExit AddRecordings(const std::vector<SFoundFile>& files, SWorkPlan& plan, SSums& sums) const;
  EExit AddRecording(const COpenRecording& recording, const std::string& input, std::uint32_t part, SWorkPlan& plan,
                     SSums& sums) const;
  EExit PrintLeftOut(const SSums& sums) const;
  void PrintResult(const SWorkPlan& plan, const SSums& sums) const;

  SCutOptions m_options;
  SGivenOptions m_given;
  std::vector<std::string> m_inputs;
  std::string m_strList;
  std::string m_strPlan;
  std::string m_strParts;
  std::string m_strShard;
  bool m_bAbsolute = false;
  bool m_bSbatch = false;
  std::uint32_t m_nShard = 0;  // seconds
};

}  // namespace carvello
