// The "fmt " chunk of an input file: reading it and bringing every accepted format into the extensible form.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <string>

#include "recording/wave_format.h"
#include "support/file.h"

namespace carvello {

enum class EFormatVerdict {
  Kept,       // was extensible already
  Converted,  // plain PCM or float, now extensible
  ReadFailed,
  SkipFailed,
  WrongChannelCount,
  Unsupported,
  Blank,    // all zeros
  NoFrame,  // so few channels or bits that a frame has no bytes
};

// Channels that a plain PCM or float format may have. An extensible format is not asked.
enum class EChannelRule {
  OneOrTwo,
  ExactlyTwo,  // an input recording is an I/Q pair
};

inline bool IsAccepted(EFormatVerdict verdict) {
  return verdict == EFormatVerdict::Kept || verdict == EFormatVerdict::Converted;
}

// Reads the chunk body of `size` bytes at the file's position, at most 40 of them, and stands behind the body then.
// A body that is shorter leaves the remaining fields 0.
EFormatVerdict ReadFormatChunk(CFile& file, std::uint32_t size, EChannelRule rule, WAVEFORMATEXTENSIBLE& format);

// The log line for a verdict that is no acceptance.
std::string FormatVerdictText(EFormatVerdict verdict, const WAVEFORMATEXTENSIBLE& format);
// That the format is not one of I and Q, for the user.
std::string ChannelProblem(const WAVEFORMATEX& format);
// The log lines for a converted format.
std::array<std::string, 2> ConversionTexts(const WAVEFORMATEXTENSIBLE& format);

// Bytes of one frame over all channels, by bits and channels and not by nBlockAlign, which some programs leave wrong.
inline std::uint32_t FrameBytes(const WAVEFORMATEX& format) {
  return static_cast<std::uint32_t>(format.wBitsPerSample) * format.nChannels / 8;
}

// Bytes of the samples of one second, by bits and channels too.
inline double BytesPerSecond(const WAVEFORMATEX& format) {
  return format.wBitsPerSample / 8.0 * format.nChannels * format.nSamplesPerSec;
}
// The same at another rate, as the 32-bit number of descriptions.
inline std::uint32_t WholeBytesPerSecond(const WAVEFORMATEX& format, std::uint32_t rate) {
  constexpr std::uint64_t kMost = std::numeric_limits<std::uint32_t>::max();
  return static_cast<std::uint32_t>(std::min(std::uint64_t{rate} * FrameBytes(format), kMost));
}

inline bool IsFloat(const WAVEFORMATEXTENSIBLE& format) {
  return format.SubFormat == KSDATAFORMAT_SUBTYPE_IEEE_FLOAT;
}

}  // namespace carvello
