#include "support/shell_open.h"

#include "support/formatting.h"
#include "support/text.h"

namespace carvello {

std::string ShellOpenErrorText(const std::string& path, const std::string& reason) {
  return Format("Error processing \"%s\" -\n \n%s", path.c_str(), reason.c_str());
}

bool ShellOpen(platform::WindowId parent, const std::string& path, const std::string& verb, std::string& errorText) {
  if (platform::OpenWithDesktop(parent, path, verb)) return true;
  errorText = ShellOpenErrorText(path, SystemErrorText());
  return false;
}

}  // namespace carvello
