#include "cli/console.h"

#include <cstdio>
#include <string>

namespace carvello {

void PrintOut(std::string_view text) {
  static_cast<void>(std::fwrite(text.data(), 1, text.size(), stdout));
}

void PrintErr(std::string_view text) {
  static_cast<void>(std::fwrite(text.data(), 1, text.size(), stderr));
  static_cast<void>(std::fflush(stderr));
}

void PrintMessage(std::string_view text) {
  PrintErr(std::string(kProgramName) + ": " + std::string(text) + "\n");
}

bool FlushOut() {
  return std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
}

}  // namespace carvello
