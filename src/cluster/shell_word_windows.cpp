#include <string_view>

#include "cluster/shell_word.h"

namespace carvello {

// Double quotation marks mean the same to both shells of this system, and no file name has one in it. What a name holds
// between percent signs is another matter: the older shell looks for a variable of that name in any case.
std::string ShellWord(const std::string& text) {
  if (text.starts_with('-')) return ShellWord(".\\" + text);  // it would be taken for an option
  constexpr std::string_view kPlain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_-.\\/:+";
  if (!text.empty() && text.find_first_not_of(kPlain) == std::string::npos) return text;
  return '"' + text + '"';
}

}  // namespace carvello
