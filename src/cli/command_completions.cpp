#include "cli/command_completions.h"

#include "cli/completion_script.h"
#include "cli/console.h"
#include "cli/help_texts.h"

namespace carvello {

void CCompletionsCommand::AddOptions(CCommandOptions& options) {
  options.Add("SHELL", &m_strShell, "bash, zsh or fish").Required();
  options.SetFooter(std::string("Examples:\n"
                                "  source <(carvello-cli completions bash)\n"
                                "  carvello-cli completions zsh > ~/.zfunc/_carvello-cli    # a folder of $fpath\n"
                                "  carvello-cli completions fish > ~/.config/fish/completions/carvello-cli.fish\n\n") +
                    kExitCodesHelp);
}

EExit CCompletionsCommand::Run() {
  const std::optional<EShell> shell = ShellByName(m_strShell);
  if (!shell) {
    PrintMessage("completions: \"" + m_strShell + "\" is no shell that is known. Accepted: bash, zsh, fish");
    return EExit::Usage;
  }
  PrintOut(CompletionScript(m_program, *shell));
  return EExit::Ok;
}

}  // namespace carvello
