// What the fuzz targets share: how they judge.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "recording/wave_format.h"
#include "support/text.h"

namespace carvello::fuzz {

// A finding when it does not hold.
inline void Require(bool condition) {
  if (!condition) std::abort();
}

inline std::string_view Text(const std::uint8_t* bytes, std::size_t count) {
  return {reinterpret_cast<const char*>(bytes), count};
}

// UTF-8 without anything that a terminal obeys, looked for in the bytes; line breaks only where they may be.
inline void RequirePrintable(std::string_view text, bool lineBreaks = false) {
  const auto byte = [text](std::size_t index) {
    return index < text.size() ? static_cast<std::uint8_t>(text[index]) : std::uint8_t{0};
  };
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::uint8_t first = byte(i);
    const std::uint8_t second = byte(i + 1);
    const std::uint8_t third = byte(i + 2);
    Require((first >= 0x20 && first != 0x7F) || (lineBreaks && first == '\n'));
    Require(first != 0xC2 || second >= 0xA0);  // C1
    Require(first != 0xD8 || second != 0x9C);  // U+061C
    Require(first != 0xE2 || second != 0x80 || ((third < 0x8E || third > 0x8F) && (third < 0xA8 || third > 0xAE)));
    Require(first != 0xE2 || second != 0x81 || third < 0xA6 || third > 0xA9);  // isolates
  }
  Require(Utf16ToUtf8(Utf8ToUtf16(text)) == text);  // no byte that is no UTF-8
}

// 16-bit I/Q at 1000 frames/s.
inline WAVEFORMATEXTENSIBLE PlainFormat() {
  WAVEFORMATEXTENSIBLE format;
  format.Format.nChannels = 2;
  format.Format.nSamplesPerSec = 1000;
  format.Format.nAvgBytesPerSec = 4000;
  format.Format.wBitsPerSample = 16;
  return format;
}

}  // namespace carvello::fuzz

// What libFuzzer calls with every input.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count);
