// "carvello-cli synth": a recording to try things on.
#pragma once

#include "cli/command.h"
#include "cli/synth_settings.h"

namespace carvello {

class CSynthCommand : public CCommand {
 public:
  const char* Name() const override { return "synth"; }
  const char* Summary() const override { return "Make a test recording"; }
  void AddOptions(CCommandOptions& options) override;
  EExit Run() override;

 private:
  SSynthOptions m_options;
  bool m_bOverwrite = false;
  bool m_bQuiet = false;
};

}  // namespace carvello
