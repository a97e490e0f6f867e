// What is built into the program: the help text, the icons and the translations.
#pragma once

#include <QIcon>
#include <optional>
#include <string>

namespace carvello {

// Before a resource is asked for by its path.
void UseResources();

// A resource by its type and number, for example "RTF" and 135. Nothing when there is none.
std::optional<std::string> LoadResource(const char* type, int number);

// The program's icon, in all its sizes.
QIcon ProgramIcon();

}  // namespace carvello
