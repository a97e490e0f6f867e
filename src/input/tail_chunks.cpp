#include "input/tail_chunks.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string>
#include <string_view>

#include "input/riff_layout.h"
#include "support/platform.h"

namespace carvello {

namespace {

constexpr std::int64_t kMostTail = 256 << 10;
constexpr std::int64_t kHeaderBytes = sizeof(SChunkHeader);

// Of chunks that programs write behind, before or between samples.
constexpr std::array<std::string_view, 28> kKnown = {
    "LIST", "id3 ", "ID3 ", "auxi", "rcvr", "meta", "elad", "note", "kiwi", "data", "fmt ", "fact", "JUNK", "junk",
    "PAD ", "FLLR", "bext", "iXML", "axml", "chna", "_PMX", "cue ", "PEAK", "smpl", "inst", "r64m", "cart", "DISP"};

SChunkHeader HeaderIn(std::string_view bytes, std::size_t place) {
  SChunkHeader header;
  std::memcpy(&header, bytes.data() + place, sizeof(header));
  return header;
}

bool IsKnown(const SChunkHeader& header) {
  const std::string_view id(header.id.data(), header.id.size());
  return std::find(kKnown.begin(), kKnown.end(), id) != kKnown.end();
}

// Whether chunks follow each other from there to the end, with or without the bytes that make odd sizes even.
bool FillsTheRest(std::string_view bytes, std::size_t place) {
  while (place + sizeof(SChunkHeader) <= bytes.size()) {
    const SChunkHeader header = HeaderIn(bytes, place);
    const std::size_t left = bytes.size() - place - sizeof(SChunkHeader);
    if (!IsKnown(header) || header.nSize > left) return false;
    place += sizeof(SChunkHeader) + header.nSize;
    const bool isOdd = header.nSize % 2 != 0;
    const bool goesOn = place + sizeof(SChunkHeader) <= bytes.size() && IsKnown(HeaderIn(bytes, place));
    if (isOdd && !goesOn && place < bytes.size()) ++place;
  }
  return place == bytes.size();
}

}  // namespace

std::optional<bool> IsKnownChunkAt(CFile& file, std::int64_t position, std::int64_t length) {
  if (position < 0 || length - position < kHeaderBytes) return false;
  SChunkHeader header;
  if (!file.Seek(position) || !file.ReadExactly(&header, sizeof(header))) return std::nullopt;
  return IsKnown(header) && header.nSize <= length - position - kHeaderBytes;
}

STailChunks FindTailChunks(CFile& file, std::int64_t begin, std::int64_t length) {
  STailChunks tail;
  tail.nBegin = length;
  const std::int64_t from = std::max(begin, length - kMostTail);
  if (length - from < kHeaderBytes) return tail;
  std::string bytes(static_cast<std::size_t>(length - from), '\0');
  if (!file.Seek(from) || !file.ReadExactly(bytes.data(), bytes.size())) {
    tail.nError = file.ReadError() != 0 ? file.ReadError() : platform::LastError();
    return tail;
  }
  tail.nReadBytes = length - from;
  for (std::size_t place = 0; place + kHeaderBytes <= bytes.size(); ++place) {
    if (!IsKnown(HeaderIn(bytes, place)) || !FillsTheRest(bytes, place)) continue;
    tail.nBegin = from + static_cast<std::int64_t>(place);
    break;
  }
  return tail;
}

}  // namespace carvello
