// A text as one word for a POSIX shell.
#pragma once

#include <string>

namespace carvello {

// In quotation marks, whatever is in it.
std::string QuotedWord(const std::string& text);
// The same, but for what no shell takes for anything else: for lines that people copy.
std::string ShellWord(const std::string& text);

}  // namespace carvello
