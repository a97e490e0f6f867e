#include "recording/info_texts.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

#include "recording/riff_bytes.h"
#include "support/platform.h"
#include "support/text.h"

namespace carvello {

namespace {

constexpr std::size_t kLongestTrailer = 65'536;
constexpr std::size_t kListHeader = 12;
constexpr std::size_t kEmptyChunk = 10;  // identifier, size, terminating zero and pad byte

// The text in the system code page, at most `longest` bytes. It is cut before it is converted, because only the UTF-8
// form shows where characters begin.
std::string ConvertedAndCut(std::string_view text, std::size_t longest) {
  std::string bytes = platform::Utf8ToSystemCodePage(text);
  while (bytes.size() > longest) {
    const std::size_t excess = bytes.size() - longest;
    text = CutUtf8(text, text.size() - std::min(excess, text.size()));
    bytes = platform::Utf8ToSystemCodePage(text);
  }
  return bytes;
}

}  // namespace

std::string BuildInfoTrailer(const SInfoTexts& texts) {
  struct Entry {
    std::string_view identifier;
    const std::string& text;
  };
  const std::array<Entry, 5> entries = {{{"IART", texts.strIART},
                                         {"ICMT", texts.strICMT},
                                         {"ICOP", texts.strICOP},
                                         {"INAM", texts.strINAM},
                                         {"IPRD", texts.strIPRD}}};

  std::string body = "INFO";
  std::size_t room = kLongestTrailer - kListHeader - entries.size() * kEmptyChunk;
  for (const Entry& entry : entries) {
    // Even sizes throughout; an even room keeps a text of odd length and its zero within it.
    std::string bytes = ConvertedAndCut(entry.text, room + 1);
    bytes.resize((bytes.size() + 2) / 2 * 2, '\0');
    room -= bytes.size() - 2;
    body += RiffChunk(entry.identifier, bytes);
  }
  return RiffChunk("LIST", body);
}

}  // namespace carvello
