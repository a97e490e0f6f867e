#include "cluster/shell_word.h"

namespace carvello {

std::string QuotedWord(const std::string& text) {
  std::string quoted = "'";
  for (const char c : text) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return quoted + "'";
}

}  // namespace carvello
