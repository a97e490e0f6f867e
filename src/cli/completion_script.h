// Scripts with which shells complete the program's commands, options and the values that an option takes by name.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace CLI {
class App;
}

namespace carvello {

enum class EShell { Bash, Zsh, Fish };

// "bash", "zsh" or "fish".
std::optional<EShell> ShellByName(std::string_view name);

// For the program that `app` describes, with its commands one level below. What is no option is completed as a file.
std::string CompletionScript(const CLI::App& app, EShell shell);

}  // namespace carvello
