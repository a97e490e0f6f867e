// Opening files and folders with the desktop's own program, and what to tell the user when that fails.
#pragma once

#include <string>

#include "support/platform.h"

namespace carvello {

// True when the desktop took the path, on behalf of the window `parent`. `verb`: "open", or "explore" for a folder. On
// false `errorText` is the text of the message box that tells why; showing it, with a caption of the caller's and the
// error icon, is the caller's.
bool ShellOpen(platform::WindowId parent, const std::string& path, const std::string& verb, std::string& errorText);

// That text, for a path and the system's reason.
std::string ShellOpenErrorText(const std::string& path, const std::string& reason);

}  // namespace carvello
