// The program's two text streams. Results go to stdout, everything else to stderr.
#pragma once

#include <string_view>

namespace carvello {

// The name that begins every message on stderr.
inline constexpr const char* kProgramName = "carvello-cli";

// Writes the text as it is.
void PrintOut(std::string_view text);
void PrintErr(std::string_view text);
// A message for the user on stderr: "carvello-cli: %s" and a line break.
void PrintMessage(std::string_view text);
// Brings everything on its way out to stdout. False when some of it could not be written.
bool FlushOut();

}  // namespace carvello
