#include "input/tar_walk.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

#include "support/formatting.h"
#include "support/text.h"

namespace carvello {

namespace {

constexpr std::int64_t kBlock = 512;
constexpr std::size_t kMostEntries = 100'000;
constexpr std::int64_t kLargestExtension = 1 << 20;  // names and sizes that do not fit a head

using Head = std::array<char, kBlock>;

std::string_view Field(const Head& head, std::size_t offset, std::size_t size) {
  const std::string_view field(head.data() + offset, size);
  return field.substr(0, field.find('\0'));
}

// Octal digits, or the bytes of the number where the first bit is set. Nothing for what is none, or beyond 63 bits.
std::optional<std::int64_t> Number(const Head& head, std::size_t offset, std::size_t size) {
  if ((static_cast<unsigned char>(head[offset]) & 0x80) != 0) {
    std::int64_t value = static_cast<unsigned char>(head[offset]) & 0x7F;
    for (std::size_t i = 1; i < size; ++i) {
      if (value >> 55 != 0) return std::nullopt;
      value = value << 8 | static_cast<unsigned char>(head[offset + i]);
    }
    return value;
  }
  std::string_view digits = Field(head, offset, size);
  while (!digits.empty() && digits.front() == ' ') digits.remove_prefix(1);
  std::int64_t value = 0;
  for (const char c : digits) {
    if (c == ' ') break;
    if (c < '0' || c > '7' || value >> 59 != 0) return std::nullopt;
    value = value * 8 + (c - '0');
  }
  return value;
}

// The sum of all bytes with blanks in the place of the sum.
bool IsSumRight(const Head& head) {
  constexpr std::size_t kSum = 148;
  constexpr std::size_t kSumSize = 8;
  std::int64_t sum = 0;
  for (std::size_t i = 0; i < head.size(); ++i) {
    sum += i >= kSum && i < kSum + kSumSize ? ' ' : static_cast<unsigned char>(head[i]);
  }
  return Number(head, kSum, kSumSize) == sum;
}

// What stands before a file's head because it does not fit in there.
struct SExtension {
  std::optional<std::string> name;
  std::optional<std::int64_t> size;
  bool bSparse = false;
};

// Lines "25 path=folder/name\n", each beginning with its length.
void ReadPax(std::string_view text, SExtension& extension) {
  while (!text.empty()) {
    std::size_t length = 0;
    std::size_t digits = 0;
    while (digits < text.size() && digits < 9 && text[digits] >= '0' && text[digits] <= '9') {
      length = length * 10 + static_cast<std::size_t>(text[digits++] - '0');
    }
    if (digits == 0 || length <= digits + 1 || length > text.size()) return;
    std::string_view line = text.substr(digits + 1, length - digits - 2);
    text.remove_prefix(length);
    if (line.starts_with("path=") && !extension.bSparse) extension.name = std::string(line.substr(5));
    if (line.starts_with("GNU.sparse.")) extension.bSparse = true;
    if (line.starts_with("GNU.sparse.name=")) extension.name = std::string(line.substr(16));
    if (!line.starts_with("size=")) continue;
    line.remove_prefix(5);
    std::int64_t size = 0;
    bool right = !line.empty() && line.size() <= 18;
    for (const char c : line) {
      right = right && c >= '0' && c <= '9';
      if (right) size = size * 10 + (c - '0');
    }
    if (right) extension.size = size;
  }
}

std::string NameOfHead(const Head& head) {
  const std::string_view name = Field(head, 0, 100);
  const bool isPosix = Field(head, 257, 5) == "ustar" && head[262] == '\0';
  const std::string_view prefix = isPosix ? Field(head, 345, 155) : std::string_view();
  return prefix.empty() ? std::string(name) : std::string(prefix) + "/" + std::string(name);
}

// Of an old file of holes whose map does not fit its head: where the map's further blocks end.
std::int64_t BehindSparseMap(CFile& file, const Head& head, std::int64_t body) {
  constexpr std::size_t kMoreInHead = 482;
  constexpr std::size_t kMoreInBlock = 504;
  bool more = head[kMoreInHead] != '\0';
  Head block;
  while (more && file.Seek(body) && file.ReadExactly(block.data(), block.size())) {
    body += kBlock;
    more = block[kMoreInBlock] != '\0';
  }
  return body;
}

}  // namespace

bool WalkTar(CFile& file, std::vector<STarEntry>& entries, std::string& error) {
  entries.clear();
  const std::int64_t length = file.Length();
  SExtension extension;
  SExtension forAll;
  for (std::int64_t position = 0; position + kBlock <= length;) {
    Head head;
    if (!file.Seek(position) || !file.ReadExactly(head.data(), head.size())) break;
    if (std::all_of(head.begin(), head.end(), [](char c) { return c == '\0'; })) break;  // behind the last file
    const auto told = Number(head, 124, 12);
    if (!IsSumRight(head) || !told || *told < 0) {
      error = position == 0 ? "no tar archive. Accepted: an archive that is not compressed"
                            : Format("the archive is damaged at byte %lld", static_cast<long long>(position));
      return false;
    }
    const char type = head[156];
    std::int64_t body = position + kBlock;
    std::int64_t size = *told;
    if (type == 'x' || type == 'g' || type == 'L') {
      std::string text(
          static_cast<std::size_t>(std::min({size, kLargestExtension, std::max<std::int64_t>(length - body, 0)})),
          '\0');
      if (!file.Seek(body) || !file.ReadExactly(text.data(), text.size())) break;
      if (type == 'L') extension.name = text.substr(0, text.find('\0'));
      if (type == 'x') ReadPax(text, extension);
      if (type == 'g') ReadPax(text, forAll);
    } else {
      if (forAll.size) size = *forAll.size;
      if (extension.size) size = *extension.size;
      const bool isOldSparse = type == 'S';
      if (isOldSparse) body = BehindSparseMap(file, head, body);
      if (type == '0' || type == '\0' || type == '7' || isOldSparse) {
        if (entries.size() == kMostEntries) {
          error = "more than 100,000 files in the archive";
          return false;
        }
        const std::int64_t there = std::clamp<std::int64_t>(length - body, 0, size);
        entries.push_back({extension.name ? *extension.name
                           : forAll.name  ? *forAll.name
                                          : NameOfHead(head),
                           body, there, size - there, extension.bSparse || isOldSparse});
      }
      extension = {};
    }
    if (size > length - body) break;
    position = body + (size + kBlock - 1) / kBlock * kBlock;
  }
  if (file.FirstError() != 0) {
    error = SystemErrorText(file.FirstError());
    return false;
  }
  if (!entries.empty()) return true;
  error = length == 0 ? "the file is empty" : "the archive holds no files";
  return false;
}

}  // namespace carvello
