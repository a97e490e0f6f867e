#include "recording/sample_kind.h"

#include <cmath>

namespace carvello {

namespace {

constexpr double kInt16FullScale = 32768.0;

bool IsRead(ENumber number, std::uint32_t bits) {
  if (number == ENumber::Float) return bits == 32 || bits == 64;
  return bits == 8 || bits == 16 || bits == 24 || bits == 32;
}

}  // namespace

SSampleKind MakeSampleKind(ENumber number, std::uint32_t bits, bool bigEndian) {
  if (!IsRead(number, bits)) return {};
  SSampleKind kind;
  kind.number = number;
  kind.nBits = bits;
  kind.bBigEndian = bigEndian && bits > 8;
  kind.dFullScale = number == ENumber::Float ? 1.0 : std::ldexp(1.0, static_cast<int>(bits) - 1);
  if (number == ENumber::Unsigned) kind.dZero = bits == 8 ? 127.5 : kind.dFullScale;
  return kind;
}

SSampleKind KindOfWave(const WAVEFORMATEXTENSIBLE& format, bool floatScale) {
  const std::uint16_t bits = format.Format.wBitsPerSample;
  if (format.Format.wFormatTag != kFormatTagExtensible || format.Format.nChannels != 2) return {};
  if (format.SubFormat == KSDATAFORMAT_SUBTYPE_IEEE_FLOAT) {
    SSampleKind kind = MakeSampleKind(ENumber::Float, bits);
    if (floatScale && bits == 32) kind.dFullScale = kInt16FullScale;
    return kind;
  }
  if (format.SubFormat != KSDATAFORMAT_SUBTYPE_PCM) return {};
  SSampleKind kind = MakeSampleKind(ENumber::Signed, bits);
  if (bits == 8) kind.dFullScale = kInt16FullScale;
  return kind;
}

WAVEFORMATEXTENSIBLE WaveFormatOf(const SSampleKind& kind, std::uint32_t sampleRate) {
  constexpr std::uint32_t kSpeakersFrontPair = 3;
  WAVEFORMATEXTENSIBLE format;
  format.Format.wFormatTag = kFormatTagExtensible;
  format.Format.nChannels = 2;
  format.Format.nSamplesPerSec = sampleRate;
  format.Format.nBlockAlign = static_cast<std::uint16_t>(kind.FrameBytes());
  format.Format.nAvgBytesPerSec = sampleRate * kind.FrameBytes();
  format.Format.wBitsPerSample = static_cast<std::uint16_t>(kind.nBits);
  format.Format.cbSize = sizeof(WAVEFORMATEXTENSIBLE) - sizeof(WAVEFORMATEX);
  format.wValidBitsPerSample = format.Format.wBitsPerSample;
  format.dwChannelMask = kSpeakersFrontPair;
  format.SubFormat = kind.number == ENumber::Float ? KSDATAFORMAT_SUBTYPE_IEEE_FLOAT : KSDATAFORMAT_SUBTYPE_PCM;
  return format;
}

SSampleKind GivenKind(const SSampleKind& given, const SSampleKind& taken) {
  const bool isSame =
      given.number == taken.number && given.nBits == taken.nBits && given.bBigEndian == taken.bBigEndian;
  return isSame ? taken : given;
}

std::string SampleKindName(const SSampleKind& kind) {
  std::string name = "c";
  name += kind.number == ENumber::Signed ? 'i' : kind.number == ENumber::Unsigned ? 'u' : 'f';
  name += std::to_string(kind.nBits);
  if (kind.nBits > 8) name += kind.bBigEndian ? "_be" : "_le";
  return name;
}

std::optional<SSampleKind> ParseSampleKind(std::string_view name) {
  for (const ENumber number : {ENumber::Signed, ENumber::Unsigned, ENumber::Float}) {
    for (const std::uint32_t bits : {8U, 16U, 24U, 32U, 64U}) {
      if (!IsRead(number, bits)) continue;
      for (const bool bigEndian : {false, true}) {
        const SSampleKind kind = MakeSampleKind(number, bits, bigEndian);
        const std::string full = SampleKindName(kind);
        if (name == full) return kind;
        if (!kind.bBigEndian && bits > 8 && name == full.substr(0, full.size() - 3)) return kind;
      }
    }
  }
  return std::nullopt;
}

}  // namespace carvello
