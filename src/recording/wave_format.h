// The one sample-format descriptor inside the program: the Windows wave-format layout, little-endian.
#pragma once

#include <array>
#include <cstdint>

namespace carvello {

inline constexpr std::uint16_t kFormatTagPcm = 1;
inline constexpr std::uint16_t kFormatTagFloat = 3;
inline constexpr std::uint16_t kFormatTagExtensible = 0xFFFE;

using SubFormatGuid = std::array<std::uint8_t, 16>;
// 00000001-0000-0010-8000-00AA00389B71 and 00000003-0000-0010-8000-00AA00389B71, in file byte order.
inline constexpr SubFormatGuid KSDATAFORMAT_SUBTYPE_PCM = {0x01, 0, 0,    0,    0,    0,    0x10, 0,
                                                           0x80, 0, 0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71};
inline constexpr SubFormatGuid KSDATAFORMAT_SUBTYPE_IEEE_FLOAT = {0x03, 0, 0,    0,    0,    0,    0x10, 0,
                                                                  0x80, 0, 0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71};

#pragma pack(push, 1)
// 18 bytes, as written into a "fmt " chunk.
struct WAVEFORMATEX {
  std::uint16_t wFormatTag = 0;
  std::uint16_t nChannels = 0;
  std::uint32_t nSamplesPerSec = 0;  // frames per second
  std::uint32_t nAvgBytesPerSec = 0;
  std::uint16_t nBlockAlign = 0;  // bytes per frame
  std::uint16_t wBitsPerSample = 0;
  std::uint16_t cbSize = 0;  // bytes that follow these 18
};

// 40 bytes. Every accepted input format is normalised into this form.
struct WAVEFORMATEXTENSIBLE {
  WAVEFORMATEX Format;
  std::uint16_t wValidBitsPerSample = 0;
  std::uint32_t dwChannelMask = 0;
  SubFormatGuid SubFormat{};
};
#pragma pack(pop)

static_assert(sizeof(WAVEFORMATEX) == 18);
static_assert(sizeof(WAVEFORMATEXTENSIBLE) == 40);

}  // namespace carvello
