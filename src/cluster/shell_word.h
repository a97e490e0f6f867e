// A text as one word for a shell. shell_word_posix.cpp and shell_word_windows.cpp tell what people here type into.
#pragma once

#include <string>

namespace carvello {

// In quotation marks, whatever is in it: for scripts, which a POSIX shell runs.
std::string QuotedWord(const std::string& text);
// A file's name, for lines that people copy into the shell of this system: in quotation marks but for what no shell
// takes for anything else, and not taken for an option by the program.
std::string ShellWord(const std::string& text);

}  // namespace carvello
