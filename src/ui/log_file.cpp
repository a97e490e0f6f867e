#include "ui/log_file.h"

#include "support/file.h"
#include "support/formatting.h"
#include "support/platform.h"
#include "support/version.h"

namespace carvello {

const std::string& LogFilePath() {
  static const std::string path = platform::JoinPath(platform::TempFolder(), VersionValue("ProductName") + " tmp.txt");
  return path;
}

bool WriteTextFile(const std::string& path, const std::vector<std::string>& lines, std::string& error) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  CFile file;
  if (file.Open(path, platform::EOpenMode::Replace) && file.Write(text.data(), text.size()) == text.size() &&
      file.Close()) {
    return true;
  }
  error = SystemErrorText();
  return false;
}

}  // namespace carvello
