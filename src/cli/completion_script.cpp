#include "cli/completion_script.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace carvello {

namespace {

struct SOption {
  std::vector<std::string> names;  // with their hyphens, such as "-h" and "--help"
  std::string description;
  bool bTakesValue = false;
};

struct SCommand {
  std::string name;
  std::string summary;
  std::vector<SOption> options;
};

std::vector<SOption> OptionsOf(const CLI::App& app) {
  std::vector<SOption> options;
  for (const CLI::Option* option : app.get_options()) {
    SOption found{
        .names = {}, .description = option->get_description(), .bTakesValue = option->get_items_expected_max() > 0};
    for (const std::string& name : option->get_snames()) found.names.push_back("-" + name);
    for (const std::string& name : option->get_lnames()) found.names.push_back("--" + name);
    if (!found.names.empty()) options.push_back(std::move(found));
  }
  return options;
}

std::vector<SCommand> CommandsOf(const CLI::App& app) {
  std::vector<SCommand> commands;
  for (const CLI::App* command : app.get_subcommands(nullptr)) {
    commands.push_back({command->get_name(), command->get_description(), OptionsOf(*command)});
  }
  return commands;
}

std::string Joined(const std::vector<SOption>& options) {
  std::string names;
  for (const SOption& option : options) {
    for (const std::string& name : option.names) names += (names.empty() ? "" : " ") + name;
  }
  return names;
}

// The first line of a description, as the text of one word in single quotes. `special`: what the shell's own language
// of completions makes something of, which a backslash takes as it stands.
std::string Quoted(const std::string& description, std::string_view special = {}) {
  std::string text = "'";
  for (const char c : description.substr(0, description.find('\n'))) {
    if (special.find(c) != std::string_view::npos) text += '\\';
    text += c == '\'' ? std::string("'\\''") : std::string(1, c);
  }
  return text + "'";
}

std::string BashScript(const CLI::App& app) {
  const std::string& program = app.get_name();
  std::string names;
  std::string cases;
  for (const SCommand& command : CommandsOf(app)) {
    names += (names.empty() ? "" : " ") + command.name;
    cases += "    " + command.name + ") words='" + Joined(command.options) + "' ;;\n";
  }
  std::string patterns = names;
  std::replace(patterns.begin(), patterns.end(), ' ', '|');
  return "# bash completion for " + program +
         "\n"
         "_carvello_cli() {\n"
         "  local current=${COMP_WORDS[COMP_CWORD]} command= word words\n"
         "  for word in \"${COMP_WORDS[@]:1:COMP_CWORD-1}\"; do\n"
         "    case $word in " +
         patterns +
         ") command=$word; break ;; esac\n"
         "  done\n"
         "  case $command in\n" +
         cases + "    *) words='" + names + " " + Joined(OptionsOf(app)) +
         "' ;;\n"
         "  esac\n"
         "  COMPREPLY=()\n"
         "  if [[ -z $command || $current == -* ]]; then COMPREPLY=($(compgen -W \"$words\" -- \"$current\")); fi\n"
         "}\n"
         "complete -o default -F _carvello_cli " +
         program + "\n";
}

std::string ZshOption(const SOption& option) {
  std::string excluded;
  std::string names;
  for (const std::string& name : option.names) {
    excluded += (excluded.empty() ? "" : " ") + name;
    names += (names.empty() ? "" : ",") + name;
  }
  const bool several = option.names.size() > 1;
  const std::string text = Quoted("[" + option.description.substr(0, option.description.find('\n')) + "]", ":\\");
  // An option that takes a value may come again, as --entry does.
  return (option.bTakesValue ? "'*'"
          : several          ? "'(" + excluded + ")'"
                             : "") +
         (several ? "{" + names + "}" : names) + text + (option.bTakesValue ? "':value:_files'" : "");
}

std::string ZshScript(const CLI::App& app) {
  std::string summaries;
  std::string cases;
  for (const SCommand& command : CommandsOf(app)) {
    summaries += "    " + Quoted(command.name + ":" + command.summary) + "\n";
    cases += "    " + command.name + ")\n      _arguments";
    for (const SOption& option : command.options) cases += " \\\n        " + ZshOption(option);
    cases += " \\\n        '*:file:_files'\n      ;;\n";
  }
  std::string own;
  for (const SOption& option : OptionsOf(app)) own += " \\\n    " + ZshOption(option);
  return "#compdef " + app.get_name() +
         "\n"
         "_carvello_cli() {\n"
         "  local context state state_descr line\n"
         "  typeset -A opt_args\n"
         "  local -a commands=(\n" +
         summaries +
         "  )\n"
         "  _arguments -C" +
         own +
         " \\\n"
         "    '1:command:->command' '*::argument:->argument'\n"
         "  case $state in\n"
         "    command) _describe command commands ;;\n"
         "    argument)\n"
         "  case ${line[1]} in\n" +
         cases +
         "  esac\n"
         "  ;;\n"
         "  esac\n"
         "}\n"
         "if [ \"$funcstack[1]\" = _" +
         app.get_name() + " ]; then _carvello_cli \"$@\"; else compdef _carvello_cli " + app.get_name() + "; fi\n";
}

std::string FishOption(const std::string& begin, const SOption& option) {
  std::string line = begin;
  for (const std::string& name : option.names) {
    const bool isLong = name.starts_with("--");
    line += (isLong ? " -l " : " -s ") + name.substr(isLong ? 2 : 1);
  }
  return line + (option.bTakesValue ? " -r" : "") + " -d " + Quoted(option.description, "\\") + "\n";
}

std::string FishScript(const CLI::App& app) {
  const std::string begin = "complete -c " + app.get_name();
  std::string script = "# fish completion for " + app.get_name() + "\n";
  const std::string first = begin + " -n __fish_use_subcommand";
  for (const SOption& option : OptionsOf(app)) script += FishOption(first, option);
  for (const SCommand& command : CommandsOf(app)) {
    script += first + " -f -a " + command.name + " -d " + Quoted(command.summary, "\\") + "\n";
    for (const SOption& option : command.options) {
      script += FishOption(begin + " -n '__fish_seen_subcommand_from " + command.name + "'", option);
    }
  }
  return script;
}

constexpr std::array<std::pair<std::string_view, EShell>, 3> kShells = {
    {{"bash", EShell::Bash}, {"zsh", EShell::Zsh}, {"fish", EShell::Fish}}};

}  // namespace

std::optional<EShell> ShellByName(std::string_view name) {
  for (const auto& [known, shell] : kShells) {
    if (known == name) return shell;
  }
  return std::nullopt;
}

std::string CompletionScript(const CLI::App& app, EShell shell) {
  switch (shell) {
    case EShell::Bash:
      return BashScript(app);
    case EShell::Zsh:
      return ZshScript(app);
    case EShell::Fish:
      return FishScript(app);
  }
  return {};
}

}  // namespace carvello
