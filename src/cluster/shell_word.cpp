#include "cluster/shell_word.h"

#include <string_view>

namespace carvello {

std::string QuotedWord(const std::string& text) {
  std::string quoted = "'";
  for (const char c : text) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return quoted + "'";
}

std::string ShellWord(const std::string& text) {
  constexpr std::string_view kPlain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_-./:,+@%=";
  return !text.empty() && text.find_first_not_of(kPlain) == std::string::npos ? text : QuotedWord(text);
}

}  // namespace carvello
