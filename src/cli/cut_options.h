// The options by which "cut" and "plan" are told what to cut, and how.
#pragma once

#include "cli/cut_request.h"

namespace CLI {
class App;
}

namespace carvello {

void AddEntryOptions(CLI::App& app, SCutOptions& options);

// For the end of the command's help.
extern const char* const kEntryHelp;
extern const char* const kJobFileHelp;

}  // namespace carvello
