#include "recording/written_file.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <string_view>

#include "support/platform.h"

namespace carvello {

namespace {

constexpr std::int64_t kChunkHead = 8;
constexpr std::uint32_t kSizeIn64Bits = 0xFFFFFFFF;
constexpr int kMostChunks = 64;  // before the samples, and behind them; the program writes four

// Reads numbers and names at places of the file, and remembers what went wrong.
class CPlaces {
 public:
  explicit CPlaces(CFile& file) : m_file(file), m_nLength(file.Length()) {}

  std::int64_t Length() const { return m_nLength; }
  bool Failed() const { return m_bFailed; }
  // False where the file ends before.
  template <typename Value>
  bool Get(std::int64_t position, Value& value) {
    if (position < 0 || position + static_cast<std::int64_t>(sizeof(Value)) > m_nLength) return false;
    const bool read = m_file.Seek(position) && m_file.ReadExactly(&value, sizeof(Value));
    m_bFailed = m_bFailed || !read;
    return read;
  }

 private:
  CFile& m_file;
  std::int64_t m_nLength;
  bool m_bFailed = false;
};

struct SChunkHead {
  std::array<char, 4> id{};
  std::uint32_t nSize = 0;

  std::string_view Id() const { return {id.data(), id.size()}; }
};
static_assert(sizeof(SChunkHead) == kChunkHead);

struct SSizes {
  std::int64_t nRiff = 0;
  std::int64_t nData = 0;
};

// Whether the chunks behind the samples, the last of them the texts, end where the file does.
bool EndsWithTrailer(CPlaces& places, std::int64_t position) {
  SChunkHead head;
  for (int i = 0; i < kMostChunks && places.Get(position, head); ++i) {
    position += kChunkHead + head.nSize;
    if (head.Id() == "LIST") return position == places.Length();
  }
  return false;
}

EWrittenState Inspect(CPlaces& places, SWrittenFile& found) {
  SChunkHead riff;
  std::array<char, 4> form{};
  if (places.Length() == 0) return EWrittenState::Unfinished;
  if (!places.Get(0, riff)) return EWrittenState::Foreign;
  const bool rf64 = riff.Id() == "RF64";
  if (!rf64 && riff.Id() != "RIFF") return EWrittenState::Foreign;
  if (!places.Get(kChunkHead, form)) return EWrittenState::Unfinished;
  if (std::string_view(form.data(), form.size()) != "WAVE") return EWrittenState::Foreign;

  SSizes sizes{.nRiff = riff.nSize, .nData = 0};
  std::int64_t position = kChunkHead + 4;
  SChunkHead head;
  bool described = false;
  for (int i = 0; i < kMostChunks && places.Get(position, head); ++i) {
    const std::int64_t body = position + kChunkHead;
    if (head.Id() == "ds64" && rf64) places.Get(body, sizes);
    if (head.Id() == "fmt ") places.Get(body, found.format);
    described = described || head.Id() == "auxi";
    if (head.Id() != "data") {
      position = body + head.nSize;
      continue;
    }
    if (!described) return EWrittenState::Foreign;
    if (!rf64 || head.nSize != kSizeIn64Bits) sizes.nData = head.nSize;
    const std::int64_t room = places.Length() - body;
    const bool fits = sizes.nData >= 0 && sizes.nData <= room;
    found.nDataBytes = std::clamp<std::int64_t>(sizes.nData, 0, room);
    const bool finished =
        fits && sizes.nRiff == places.Length() - kChunkHead && EndsWithTrailer(places, body + sizes.nData);
    return finished ? EWrittenState::Finished : EWrittenState::Unfinished;
  }
  return EWrittenState::Unfinished;
}

}  // namespace

SWrittenFile InspectWrittenFile(CFile& file) {
  SWrittenFile found;
  CPlaces places(file);
  if (places.Length() < 0) return found;
  const EWrittenState state = Inspect(places, found);
  found.state = places.Failed() ? EWrittenState::Unreadable : state;
  return found;
}

SWrittenFile InspectWrittenFile(const std::string& path) {
  CFile file;
  return file.Open(path, platform::EOpenMode::ReadShared) ? InspectWrittenFile(file) : SWrittenFile();
}

}  // namespace carvello
