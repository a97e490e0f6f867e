// "carvello-cli completions": the script with which a shell completes what is typed.
#pragma once

#include <string>

#include "cli/command.h"

namespace carvello {

class CCompletionsCommand : public CCommand {
 public:
  const char* Name() const override { return "completions"; }
  const char* Summary() const override { return "Print the completions for a shell"; }
  void AddOptions(CLI::App& app) override;
  EExit Run() override;

 private:
  std::string m_strShell;
  const CLI::App* m_pProgram = nullptr;
};

}  // namespace carvello
