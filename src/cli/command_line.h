// The program's command line: which command, with which options.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "cli/command_options.h"

namespace carvello {

struct SCommandSyntax {
  std::string strName;
  std::string strSummary;
  CCommandOptions options;
};

struct SProgramSyntax {
  std::string strName;
  std::string strSummary;
  std::string strFooter;                 // of the help
  std::function<std::string()> version;  // what --version tells
  std::vector<SCommandSyntax> commands;
};

// What every command has besides its own, and what the program has.
inline constexpr const char* kHelpNames = "-h,--help";
inline constexpr const char* kHelpMeaning = "Print this help message and exit";
inline constexpr const char* kVersionName = "--version";
inline constexpr const char* kVersionMeaning = "Display program version information and exit";

struct SParsedLine {
  enum class EKind { Command, Answer, Refusal };
  EKind kind = EKind::Command;
  std::size_t nCommand = 0;  // its place in the syntax
  std::string strText;       // the answer that --help or --version ask for, or what is wrong and what is accepted
};

// Reads the options of the command into their targets. `arguments`: the program's name first.
SParsedLine ParseCommandLine(const SProgramSyntax& syntax, const std::vector<std::string>& arguments);

}  // namespace carvello
