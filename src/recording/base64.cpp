#include "recording/base64.h"

#include <cstddef>
#include <string_view>

namespace carvello {

std::string CBase64::Encode(std::span<const std::uint8_t> bytes) {
  constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t start = 0; start < bytes.size(); start += 3) {
    const std::size_t count = bytes.size() - start;
    const auto byte = [&](std::size_t index) { return index < count ? std::uint32_t{bytes[start + index]} : 0U; };
    const std::uint32_t group = byte(0) << 16U | byte(1) << 8U | byte(2);
    text.push_back(kAlphabet[group >> 18U]);
    text.push_back(kAlphabet[group >> 12U & 0x3FU]);
    text.push_back(count > 1 ? kAlphabet[group >> 6U & 0x3FU] : '=');
    text.push_back(count > 2 ? kAlphabet[group & 0x3FU] : '=');
  }
  return text;
}

}  // namespace carvello
