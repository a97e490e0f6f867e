// The options by which "cut" and "plan" are told what to cut, and how.
#pragma once

#include "cli/command_options.h"
#include "cli/cut_request.h"

namespace carvello {

void AddEntryOptions(CCommandOptions& options, SCutOptions& values);

// For the end of the command's help.
extern const char* const kEntryHelp;
extern const char* const kJobFileHelp;

}  // namespace carvello
