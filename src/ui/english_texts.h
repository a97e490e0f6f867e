// Texts that the engine and the rules of the window make in English, in the language of the window. The log and files
// keep them as they are: translated is only what a message box, a hint or a cell shows.
#pragma once

#include <QString>
#include <string>

namespace carvello {

// The text in the window's language, as far as its table knows it: as a whole, or the lines of it, or what follows the
// name of a file. What it does not know stays as it is.
QString InLanguage(const std::string& english);

}  // namespace carvello
