// The fixed parts of RIFF and RF64 files as they stand on disk, little-endian, and the limits kept while reading them.
// RF64 as published in EBU Tech 3306.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace carvello {

using ChunkId = std::array<char, 4>;

inline bool IsChunk(const ChunkId& id, std::string_view name) {
  return std::string_view(id.data(), id.size()) == name;
}

#pragma pack(push, 1)
struct SChunkHeader {
  ChunkId id{};
  std::uint32_t nSize = 0;
};

struct SFileHeader {
  ChunkId riff{};
  std::uint32_t nRiffSize = 0;
  ChunkId wave{};
  SChunkHeader first;
};

// The body of a ds64 chunk without its table of further sizes: the recordings that this program reads carry none.
struct SDs64 {
  std::int64_t nRiffSize = 0;
  std::int64_t nDataSize = 0;
  std::int64_t nFrames = 0;
  std::uint32_t nTableLength = 0;
};
#pragma pack(pop)

static_assert(sizeof(SFileHeader) == 20);
static_assert(sizeof(SDs64) == 28);

inline constexpr std::uint32_t kSizeInDs64 = 0xFFFFFFFF;
inline constexpr std::uint32_t kSmallestFormat = 16;  // bytes of a "fmt " body that has all fields of plain PCM
// No recorder writes more than a handful. A file that claims more is damaged, and would hold the reader for hours.
inline constexpr std::uint32_t kMaxChunks = 65'536;

}  // namespace carvello
