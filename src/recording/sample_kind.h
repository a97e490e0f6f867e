// SSampleKind: what the samples of a recording are, whatever file they lie in.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "recording/wave_format.h"

namespace carvello {

enum class ENumber { Signed, Unsigned, Float };

// Pairs of I and Q. A value v stands for (v - dZero) / dFullScale.
struct SSampleKind {
  ENumber number = ENumber::Signed;
  std::uint32_t nBits = 0;  // of one value: 8, 16, 24 or 32, of floats 32 or 64; 0 for a kind that nobody told
  bool bBigEndian = false;
  double dZero = 0.0;  // of unsigned values: what stands for no signal
  double dFullScale = 1.0;

  bool IsKnown() const { return nBits != 0; }
  std::uint32_t FrameBytes() const { return 2 * (nBits / 8); }
  bool operator==(const SSampleKind&) const = default;
};

// Of these numbers with the full scale that goes without saying: 2^(n-1) of integers, 1 of floats. The middle of
// unsigned values is as far from both ends for 8 bits (127.5), and 2^(n-1) for more. Unknown for numbers of no such
// size.
SSampleKind MakeSampleKind(ENumber number, std::uint32_t bits, bool bigEndian = false);

// As a wave format describes them: integers of more than 8 bits, and floats at full scale 1. Values of 8 bits are
// signed and stand at 16-bit full scale, deliberately. Unknown when the format has not two channels, or numbers that
// nothing reads. `floatScale`: 32-bit floats stand at 16-bit full scale.
SSampleKind KindOfWave(const WAVEFORMATEXTENSIBLE& format, bool floatScale = false);

// What the samples are when somebody says that they are `given`: where that is what they were taken for, middle and
// full scale, which names do not tell, stay as they were.
SSampleKind GivenKind(const SSampleKind& given, const SSampleKind& taken);

// The wave format that comes closest: what descriptions tell of a recording of this kind. One second has so many
// frames.
WAVEFORMATEXTENSIBLE WaveFormatOf(const SSampleKind& kind, std::uint32_t sampleRate);

// "ci16_le", "cu8", "cf32_be". The middle and the full scale are not in the name.
std::string SampleKindName(const SSampleKind& kind);
// The kind of such a name; numbers of more than 8 bits may leave the byte order out and are little-endian then. Nothing
// for any other text, or a kind that nothing reads.
std::optional<SSampleKind> ParseSampleKind(std::string_view name);

}  // namespace carvello
