#include <string_view>

#include "cluster/shell_word.h"

namespace carvello {

std::string ShellWord(const std::string& text) {
  if (text.starts_with('-')) return ShellWord("./" + text);  // it would be taken for an option
  constexpr std::string_view kPlain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_-./:,+@%=";
  return !text.empty() && text.find_first_not_of(kPlain) == std::string::npos ? text : QuotedWord(text);
}

}  // namespace carvello
