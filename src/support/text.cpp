#include "support/text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <utility>

namespace carvello {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool IsSpaceAscii(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

char LowerAscii(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool IsHighSurrogate(char32_t c) {
  return c >= 0xD800 && c <= 0xDBFF;
}
bool IsLowSurrogate(char32_t c) {
  return c >= 0xDC00 && c <= 0xDFFF;
}
// The pair that stands for a character beyond the first 65,536.
char16_t HighSurrogate(char32_t code) {
  return static_cast<char16_t>(0xD800U + ((code - 0x10000U) >> 10U));
}
char16_t LowSurrogate(char32_t code) {
  return static_cast<char16_t>(0xDC00U + ((code - 0x10000U) & 0x3FFU));
}

// Takes one character off the front of `text`, which is not empty. A byte that starts no well-formed sequence is taken
// alone, so that reading falls into step again at the next whole character.
char32_t TakeUtf8(std::string_view& text) {
  const auto byte = [&text](std::size_t index) { return static_cast<std::uint8_t>(text[index]); };
  const std::uint8_t first = byte(0);
  std::size_t length = 1;
  char32_t code = first;
  char32_t smallest = 0;
  if (first >= 0xF0 && first <= 0xF4) {
    length = 4;
    code = first & 0x07U;
    smallest = 0x10000;
  } else if (first >= 0xE0 && first < 0xF0) {
    length = 3;
    code = first & 0x0FU;
    smallest = 0x800;
  } else if (first >= 0xC2 && first < 0xE0) {
    length = 2;
    code = first & 0x1FU;
    smallest = 0x80;
  } else if (first >= 0x80) {
    code = kReplacement;
  }
  bool wellFormed = length <= text.size();
  for (std::size_t index = 1; wellFormed && index < length; ++index) {
    wellFormed = (byte(index) & 0xC0U) == 0x80;
    code = (code << 6U) | (byte(index) & 0x3FU);
  }
  const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
  if (!wellFormed || code < smallest || code > 0x10FFFF || surrogate) {
    length = 1;
    code = kReplacement;
  }
  text.remove_prefix(length);
  return code;
}

void AppendUtf8(std::string& text, char32_t code) {
  const auto append = [&text](char32_t byte) { text.push_back(static_cast<char>(static_cast<std::uint8_t>(byte))); };
  if (code < 0x80) {
    append(code);
  } else if (code < 0x800) {
    append(0xC0U | (code >> 6U));
    append(0x80U | (code & 0x3FU));
  } else if (code < 0x10000) {
    append(0xE0U | (code >> 12U));
    append(0x80U | ((code >> 6U) & 0x3FU));
    append(0x80U | (code & 0x3FU));
  } else {
    append(0xF0U | (code >> 18U));
    append(0x80U | ((code >> 12U) & 0x3FU));
    append(0x80U | ((code >> 6U) & 0x3FU));
    append(0x80U | (code & 0x3FU));
  }
}

// First and last of the characters that a terminal or a text view obeys instead of showing them, or does not show at
// all: C0 and C1, the marks and overrides of the writing direction, line and paragraph separators, invisible operators,
// the byte order mark, annotation marks and tags. The joiners U+200C and U+200D, which scripts need, are not among
// them.
constexpr std::array<std::pair<char32_t, char32_t>, 11> kUnprintable = {{
    {0x00, 0x1F},
    {0x7F, 0x9F},
    {0x061C, 0x061C},
    {0x200B, 0x200B},
    {0x200E, 0x200F},
    {0x2028, 0x202E},
    {0x2060, 0x206F},
    {0xFEFF, 0xFEFF},
    {0xFFF9, 0xFFFB},
    {0x1D173, 0x1D17A},
    {0xE0000, 0xE0FFF},
}};

bool IsPrintable(char32_t code) {
  return std::none_of(kUnprintable.begin(), kUnprintable.end(),
                      [code](const auto& range) { return code >= range.first && code <= range.second; });
}

// How a character is shown that is not to be shown as it is.
std::string EscapeOf(char32_t code) {
  if (code == '\t') return "\\t";
  if (code == '\n') return "\\n";
  if (code == '\r') return "\\r";
  const auto number = static_cast<unsigned>(code);
  if (number < 0x80) return Format("\\x%02X", number);
  return Format(number < 0x10000 ? "\\u%04X" : "\\U%08X", number);
}

// Every character that `must` says so of, and every byte that is no UTF-8, as its escape; all else as it is.
template <typename Must>
std::string Escaped(std::string_view text, Must must) {
  std::string result;
  result.reserve(text.size());
  while (!text.empty()) {
    const std::string_view rest = text;
    const char32_t code = TakeUtf8(text);
    const std::size_t length = rest.size() - text.size();
    if (code == kReplacement && length == 1) {
      result += Format("\\x%02X", static_cast<unsigned>(static_cast<std::uint8_t>(rest[0])));
    } else if (must(code)) {
      result += EscapeOf(code);
    } else {
      result.append(rest.substr(0, length));
    }
  }
  return result;
}

}  // namespace

std::string FormatV(const char* format, va_list arguments) {
  va_list again;
  va_copy(again, arguments);
  const int length = std::vsnprintf(nullptr, 0, format, arguments);
  std::string text;
  if (length > 0) {
    text.resize(static_cast<std::size_t>(length));
    // The terminating zero falls on the string's own.
    std::vsnprintf(text.data(), text.size() + 1, format, again);
  }
  va_end(again);
  return text;
}

std::string Format(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  std::string text = FormatV(format, arguments);
  va_end(arguments);
  return text;
}

std::string Printable(std::string_view text) {
  return Escaped(text, [](char32_t code) { return !IsPrintable(code); });
}

std::string PrintableLines(std::string_view text) {
  return Escaped(text, [](char32_t code) { return !IsPrintable(code) && code != '\n'; });
}

std::string PrintableJson(std::string_view json) {
  std::string result;
  result.reserve(json.size());
  while (!json.empty()) {
    const std::string_view rest = json;
    const char32_t code = TakeUtf8(json);
    if (IsPrintable(code) || code == '\n') {
      result.append(rest.substr(0, rest.size() - json.size()));
    } else if (code < 0x10000) {
      result += Format("\\u%04X", static_cast<unsigned>(code));
    } else {
      result += Format("\\u%04X\\u%04X", static_cast<unsigned>(HighSurrogate(code)),
                       static_cast<unsigned>(LowSurrogate(code)));
    }
  }
  return result;
}

std::string TrimRight(std::string_view text) {
  while (!text.empty() && IsSpaceAscii(text.back())) text.remove_suffix(1);
  return std::string(text);
}

std::string Trim(std::string_view text) {
  while (!text.empty() && IsSpaceAscii(text.front())) text.remove_prefix(1);
  return TrimRight(text);
}

std::string ToLowerAscii(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) c = LowerAscii(c);
  return lower;
}

bool EqualsNoCaseAscii(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t index = 0; index < a.size(); ++index) {
    if (LowerAscii(a[index]) != LowerAscii(b[index])) return false;
  }
  return true;
}

std::string_view CutUtf8(std::string_view text, std::size_t bytes) {
  if (text.size() <= bytes) return text;
  while (bytes > 0 && (static_cast<std::uint8_t>(text[bytes]) & 0xC0U) == 0x80) --bytes;
  return text.substr(0, bytes);
}

std::string ReplaceAll(std::string_view text, std::string_view what, std::string_view with) {
  if (what.empty()) return std::string(text);
  std::string result;
  for (;;) {
    const std::size_t found = text.find(what);
    result.append(text.substr(0, found));
    if (found == std::string_view::npos) return result;
    result.append(with);
    text.remove_prefix(found + what.size());
  }
}

std::u16string Utf8ToUtf16(std::string_view text) {
  std::u16string result;
  result.reserve(text.size());
  while (!text.empty()) {
    const char32_t code = TakeUtf8(text);
    if (code < 0x10000) {
      result.push_back(static_cast<char16_t>(code));
    } else {
      result.push_back(HighSurrogate(code));
      result.push_back(LowSurrogate(code));
    }
  }
  return result;
}

std::string Utf16ToUtf8(std::u16string_view text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t index = 0; index < text.size(); ++index) {
    char32_t code = text[index];
    if (IsHighSurrogate(code) && index + 1 < text.size() && IsLowSurrogate(text[index + 1])) {
      ++index;
      code = 0x10000U + ((code - 0xD800U) << 10U) + (text[index] - 0xDC00U);
    } else if (IsHighSurrogate(code) || IsLowSurrogate(code)) {
      code = kReplacement;
    }
    AppendUtf8(result, code);
  }
  return result;
}

bool IsUtf8(std::string_view text) {
  while (!text.empty()) {
    const std::string_view before = text;
    // The replacement character may stand there itself, in its three bytes.
    if (TakeUtf8(text) == kReplacement && before.size() - text.size() == 1) return false;
  }
  return true;
}

std::string Windows1252ToUtf8(std::string_view bytes) {
  // What stands at 0x80 to 0x9F; the rest is as in Latin-1.
  constexpr char16_t kUpper[] = {0x20AC, 0xFFFD, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
                                 0x2039, 0x0152, 0xFFFD, 0x017D, 0xFFFD, 0xFFFD, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
                                 0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0xFFFD, 0x017E, 0x0178};
  std::string text;
  text.reserve(bytes.size());
  for (const char c : bytes) {
    const auto code = static_cast<std::uint8_t>(c);
    AppendUtf8(text, code >= 0x80 && code < 0xA0 ? kUpper[code - 0x80U] : char32_t{code});
  }
  return text;
}

std::u16string Utf16FromLittleEndian(std::string_view bytes) {
  std::u16string result;
  result.reserve(bytes.size() / 2);
  for (std::size_t index = 0; index + 1 < bytes.size(); index += 2) {
    const unsigned low = static_cast<std::uint8_t>(bytes[index]);
    const unsigned high = static_cast<std::uint8_t>(bytes[index + 1]);
    const auto character = static_cast<char16_t>(low | (high << 8U));
    if (character == 0) break;
    result.push_back(character);
  }
  return result;
}

std::string Utf16ToLittleEndian(std::u16string_view text) {
  std::string bytes;
  bytes.reserve(text.size() * 2);
  for (const char16_t character : text) {
    bytes.push_back(static_cast<char>(static_cast<std::uint8_t>(character & 0xFFU)));
    bytes.push_back(static_cast<char>(static_cast<std::uint8_t>(character >> 8U)));
  }
  return bytes;
}

}  // namespace carvello
