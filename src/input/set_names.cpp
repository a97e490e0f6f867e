#include "input/set_names.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "support/text.h"

namespace carvello {

namespace {

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// "SDRSharp_20230415_7050000Hz.wav" becomes "sdrsharp_0_0hz.wav".
std::string Pattern(const std::string& name) {
  std::string pattern;
  for (const char c : ToLowerAscii(name)) {
    if (!IsDigit(c)) {
      pattern += c;
    } else if (pattern.empty() || pattern.back() != '0') {
      pattern += '0';
    }
  }
  return ReplaceAll(pattern, "-^0.", ".");
}

}  // namespace

bool AreNamesOfOneSet(const std::string& a, const std::string& b) {
  return Pattern(a) == Pattern(b);
}

bool IsNamedLikeARecording(const std::string& name) {
  constexpr std::array<std::string_view, 3> kEndings = {".wav", ".ddc", ".rf64"};
  const std::string lower = ToLowerAscii(name);
  return std::any_of(kEndings.begin(), kEndings.end(), [&](std::string_view end) { return lower.ends_with(end); });
}

}  // namespace carvello
