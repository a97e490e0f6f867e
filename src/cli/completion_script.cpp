#include "cli/completion_script.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace carvello {

namespace {

struct SWord {
  std::vector<std::string> names;  // with their hyphens, such as "-h" and "--help"
  std::string description;
  bool bTakesValue = false;
};

struct SCommand {
  std::string name;
  std::string summary;
  std::vector<SWord> options;
};

// `names`: with commas between them.
SWord Word(std::string_view names, const std::string& description, bool takesValue) {
  SWord word{.names = {}, .description = description, .bTakesValue = takesValue};
  for (std::size_t begin = 0; begin < names.size();) {
    const std::size_t end = std::min(names.find(',', begin), names.size());
    word.names.emplace_back(names.substr(begin, end - begin));
    begin = end + 1;
  }
  return word;
}

std::vector<SWord> OptionsOf(const CCommandOptions& options) {
  std::vector<SWord> words = {Word(kHelpNames, kHelpMeaning, false)};
  for (const SOption& option : options.All()) {
    if (option.strNames.starts_with('-'))
      words.push_back(Word(option.strNames, option.strMeaning, option.TakesValue()));
  }
  return words;
}

std::vector<SWord> OwnOptions() {
  return {Word(kHelpNames, kHelpMeaning, false), Word(kVersionName, kVersionMeaning, false)};
}

std::vector<SCommand> CommandsOf(const SProgramSyntax& program) {
  std::vector<SCommand> commands;
  for (const SCommandSyntax& command : program.commands) {
    commands.push_back({command.strName, command.strSummary, OptionsOf(command.options)});
  }
  return commands;
}

std::string Joined(const std::vector<SWord>& options) {
  std::string names;
  for (const SWord& option : options) {
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

std::string BashScript(const SProgramSyntax& program) {
  std::string names;
  std::string cases;
  for (const SCommand& command : CommandsOf(program)) {
    names += (names.empty() ? "" : " ") + command.name;
    cases += "    " + command.name + ") words='" + Joined(command.options) + "' ;;\n";
  }
  std::string patterns = names;
  std::replace(patterns.begin(), patterns.end(), ' ', '|');
  return "# bash completion for " + program.strName +
         "\n"
         "_carvello_cli() {\n"
         "  local current=${COMP_WORDS[COMP_CWORD]} command= word words\n"
         "  for word in \"${COMP_WORDS[@]:1:COMP_CWORD-1}\"; do\n"
         "    case $word in " +
         patterns +
         ") command=$word; break ;; esac\n"
         "  done\n"
         "  case $command in\n" +
         cases + "    *) words='" + names + " " + Joined(OwnOptions()) +
         "' ;;\n"
         "  esac\n"
         "  COMPREPLY=()\n"
         "  if [[ -z $command || $current == -* ]]; then COMPREPLY=($(compgen -W \"$words\" -- \"$current\")); fi\n"
         "}\n"
         "complete -o default -F _carvello_cli " +
         program.strName + "\n";
}

std::string ZshOption(const SWord& option) {
  std::string excluded;
  std::string names;
  for (const std::string& name : option.names) {
    excluded += (excluded.empty() ? "" : " ") + name;
    names += (names.empty() ? "" : ",") + name;
  }
  const bool several = option.names.size() > 1;
  const std::string meaning = option.description.substr(0, option.description.find('\n'));
  const std::string text = Quoted("[" + meaning + "]", ":\\");
  // An option that takes a value may come again, as --entry does.
  return (option.bTakesValue ? "'*'"
          : several          ? "'(" + excluded + ")'"
                             : "") +
         (several ? "{" + names + "}" : names) + text + (option.bTakesValue ? "':value:_files'" : "");
}

std::string ZshScript(const SProgramSyntax& program) {
  std::string summaries;
  std::string cases;
  for (const SCommand& command : CommandsOf(program)) {
    summaries += "    " + Quoted(command.name + ":" + command.summary) + "\n";
    cases += "    " + command.name + ")\n      _arguments";
    for (const SWord& option : command.options) cases += " \\\n        " + ZshOption(option);
    cases += " \\\n        '*:file:_files'\n      ;;\n";
  }
  std::string own;
  for (const SWord& option : OwnOptions()) own += " \\\n    " + ZshOption(option);
  return "#compdef " + program.strName +
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
         program.strName + " ]; then _carvello_cli \"$@\"; else compdef _carvello_cli " + program.strName + "; fi\n";
}

std::string FishOption(const std::string& begin, const SWord& option) {
  std::string line = begin;
  for (const std::string& name : option.names) {
    const bool isLong = name.starts_with("--");
    line += (isLong ? " -l " : " -s ") + name.substr(isLong ? 2 : 1);
  }
  return line + (option.bTakesValue ? " -r" : "") + " -d " + Quoted(option.description, "\\") + "\n";
}

std::string FishScript(const SProgramSyntax& program) {
  const std::string begin = "complete -c " + program.strName;
  std::string script = "# fish completion for " + program.strName + "\n";
  const std::string first = begin + " -n __fish_use_subcommand";
  for (const SWord& option : OwnOptions()) script += FishOption(first, option);
  for (const SCommand& command : CommandsOf(program)) {
    script += first + " -f -a " + command.name + " -d " + Quoted(command.summary, "\\") + "\n";
    for (const SWord& option : command.options) {
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

std::string CompletionScript(const SProgramSyntax& program, EShell shell) {
  switch (shell) {
    case EShell::Bash:
      return BashScript(program);
    case EShell::Zsh:
      return ZshScript(program);
    case EShell::Fish:
      return FishScript(program);
  }
  return {};
}

}  // namespace carvello
