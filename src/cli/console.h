// The program's two text streams. Results go to stdout, everything else to stderr.
#pragma once

#include <string_view>

namespace carvello {

// The name that begins every message on stderr.
inline constexpr const char* kProgramName = "carvello-cli";

// Nothing that a terminal would obey leaves here, whoever wrote the text: all but PrintTerminalControl put it through
// Printable or, where it may have line breaks of the program's own, through PrintableLines (support/text.h).

// Lines with their breaks.
void PrintOut(std::string_view text);
// One line; its break is added.
void PrintOutLine(std::string_view text);
void PrintErrLine(std::string_view text);
// A message for the user on stderr: "carvello-cli: %s" and a line break, as one line or with breaks of the program's
// own.
void PrintMessage(std::string_view text);
void PrintMessageLines(std::string_view text);
// The same without taking any memory, for a message of the program's own.
void PrintPlainMessage(const char* text) noexcept;
// What draws on stderr's terminal: the program's own characters only, as they are.
void PrintTerminalControl(std::string_view text);
// Brings everything on its way out to stdout. False when some of it could not be written.
bool FlushOut();

}  // namespace carvello
