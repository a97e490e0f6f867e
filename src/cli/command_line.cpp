#include "cli/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <limits>
#include <sstream>

#include "support/text.h"

namespace carvello {
namespace {

constexpr std::size_t kHelpColumn = 26;

bool HasHyphens(const SOption& option) {
  return option.strNames.starts_with('-');
}

CLI::Option* AddTo(CLI::App& app, const SOption& option, bool* target) {
  return app.add_flag(option.strNames, *target, option.strMeaning);
}

CLI::Option* AddTo(CLI::App& app, const SOption& option, std::vector<std::string>* target) {
  return app.add_option(option.strNames, *target, option.strMeaning)->allow_extra_args(!HasHyphens(option));
}

// The library takes "010" for 8 and "0x10" for 16, which lists of numbers of equal length are full of.
std::string AsDecimal(const std::string& text) {
  if (text.empty() || text.find_first_not_of("0123456789") != std::string::npos) {
    throw CLI::ValidationError(text + " is not a whole number");
  }
  return text.substr(std::min(text.find_first_not_of('0'), text.size() - 1));
}

CLI::Option* AddTo(CLI::App& app, const SOption& option, std::uint32_t* target) {
  return app.add_option(option.strNames, *target, option.strMeaning)
      ->check(CLI::Range(1U, std::numeric_limits<std::uint32_t>::max()))
      ->transform(AsDecimal);
}

CLI::Option* AddTo(CLI::App& app, const SOption& option, std::optional<std::size_t>* target) {
  return app.add_option(option.strNames, *target, option.strMeaning)->transform(AsDecimal);
}

CLI::Option* AddTo(CLI::App& app, const SOption& option, std::string* target) {
  return app.add_option(option.strNames, *target, option.strMeaning);
}

void AddOption(CLI::App& app, const SOption& option) {
  CLI::Option& added = *std::visit([&](auto* target) { return AddTo(app, option, target); }, option.target);
  if (option.TakesValue()) added.type_name(option.strValue);
  if (!option.strGroup.empty()) added.group(option.strGroup);
  if (option.bRequired) added.required();
  if (option.bShowsDefault) added.capture_default_str();
}

void AddCommand(CLI::App& app, const SCommandSyntax& command) {
  CLI::App& place = *app.add_subcommand(command.strName, command.strSummary);
  place.group("Commands");
  place.set_help_flag(kHelpNames, kHelpMeaning);
  place.footer(command.options.Footer());
  for (const SOption& option : command.options.All()) AddOption(place, option);
  for (const SOption& option : command.options.All()) {
    if (!option.strExcludes.empty()) place.get_option(option.strNames)->excludes(place.get_option(option.strExcludes));
  }
}

// The names of the options or, for the program itself, of the commands.
std::string Accepted(const CLI::App& app) {
  std::string names;
  const auto add = [&names](const std::string& name) { names += (names.empty() ? "" : ", ") + name; };
  for (const CLI::App* command : app.get_subcommands(nullptr)) add(command->get_name());
  for (const CLI::Option* option : app.get_options()) add(option->get_name(false, true));
  return names;
}

SParsedLine Refusal(const CLI::App& app, const CLI::App* command, const std::string& problem) {
  const CLI::App& place = command == nullptr ? app : *command;
  const std::string name = command == nullptr ? "" : command->get_name() + ": ";
  return {SParsedLine::EKind::Refusal, 0,
          name + Printable(problem) + "\nAccepted: " + Accepted(place) + "\nMore: " + app.get_name() +
              (command == nullptr ? "" : " " + command->get_name()) + " --help"};
}

}  // namespace

SParsedLine ParseCommandLine(const SProgramSyntax& syntax, const std::vector<std::string>& arguments) {
  CLI::App app(syntax.strSummary, syntax.strName);
  app.allow_windows_style_options(false);  // a path may begin with "/"
  app.get_formatter()->column_width(kHelpColumn);
  app.get_formatter()->label("SUBCOMMAND", "COMMAND");
  app.set_help_flag(kHelpNames, kHelpMeaning);
  app.set_version_flag(kVersionName, syntax.version, kVersionMeaning);
  app.require_subcommand(0, 1);
  app.footer(syntax.strFooter);
  for (const SCommandSyntax& command : syntax.commands) AddCommand(app, command);

  const auto chosen = [&app]() -> const CLI::App* {
    return app.get_subcommands().empty() ? nullptr : app.get_subcommands().front();
  };
  try {
    // From the last to the first, as the parser takes them off the end.
    app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend() - 1));
  } catch (const CLI::Success& answer) {  // --help, --version
    std::ostringstream text;
    app.exit(answer, text, text);
    return {SParsedLine::EKind::Answer, 0, text.str()};
  } catch (const CLI::ParseError& problem) {
    return Refusal(app, chosen(), problem.what());
  }
  if (chosen() == nullptr) return Refusal(app, nullptr, "no command given");
  std::size_t number = 0;
  while (syntax.commands[number].strName != chosen()->get_name()) ++number;
  return {SParsedLine::EKind::Command, number, {}};
}

}  // namespace carvello
