// Scripts with which shells complete the program's commands, options and the values that an option takes by name.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "cli/command_line.h"

namespace carvello {

enum class EShell { Bash, Zsh, Fish };

// "bash", "zsh" or "fish".
std::optional<EShell> ShellByName(std::string_view name);

// For the program with its commands. What is no option is completed as a file.
std::string CompletionScript(const SProgramSyntax& program, EShell shell);

}  // namespace carvello
