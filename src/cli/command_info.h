// "carvello-cli info": what a recording is.
#pragma once

#include <string>

#include "cli/command.h"
#include "cli/given_options.h"

namespace carvello {

class CInfoCommand : public CCommand {
 public:
  const char* Name() const override { return "info"; }
  const char* Summary() const override { return "Describe a recording"; }
  void AddOptions(CCommandOptions& options) override;
  EExit Run() override;

 private:
  std::string m_strInput;
  SGivenOptions m_given;
  bool m_bVerify = false;
  bool m_bJson = false;
};

}  // namespace carvello
