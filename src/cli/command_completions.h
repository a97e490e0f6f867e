// "carvello-cli completions": the script with which a shell completes what is typed.
#pragma once

#include <string>

#include "cli/command.h"
#include "cli/command_line.h"

namespace carvello {

class CCompletionsCommand : public CCommand {
 public:
  // `program`: what the script is for; read by Run().
  explicit CCompletionsCommand(const SProgramSyntax& program) : m_program(program) {}
  const char* Name() const override { return "completions"; }
  const char* Summary() const override { return "Print the completions for a shell"; }
  void AddOptions(CCommandOptions& options) override;
  EExit Run() override;

 private:
  std::string m_strShell;
  const SProgramSyntax& m_program;
};

}  // namespace carvello
