#include "engine/block_reader.h"

#include <algorithm>
#include <bit>
#include <new>
#include <string>

#include "support/text.h"

namespace carvello {

namespace {

// Samples of every kind end at 16-bit full scale.
constexpr double kFullScale = 32768.0;

// Bytes that are read and converted at a time: enough for a device, and few enough to be still in the processor's
// cache when they are converted.
constexpr std::int64_t kRawBytes = 524'288;

void SignedToFloat(std::uint32_t bits, const void* raw, float* values, std::int32_t count) {
  if (bits == 8) Int8ToFloat(static_cast<const std::int8_t*>(raw), values, count);
  if (bits == 16) Int16ToFloat(static_cast<const std::int16_t*>(raw), values, count);
  if (bits == 24) Int24ToFloat(static_cast<const std::uint8_t*>(raw), values, count);
  if (bits == 32) Int32ToFloat(static_cast<const std::int32_t*>(raw), values, count);
}

void UnsignedToFloat(const SSampleKind& kind, const void* raw, float* values, std::int32_t count) {
  const auto zero = static_cast<float>(kind.dZero);
  if (kind.nBits == 8) Uint8ToFloat(static_cast<const std::uint8_t*>(raw), values, count, zero);
  if (kind.nBits == 16) Uint16ToFloat(static_cast<const std::uint16_t*>(raw), values, count);
  if (kind.nBits == 24) Uint24ToFloat(static_cast<const std::uint8_t*>(raw), values, count);
  if (kind.nBits == 32) Uint32ToFloat(static_cast<const std::uint32_t*>(raw), values, count);
}

// Above any level that a recording holds, and far below where the sums of filters leave the range of floats.
constexpr float kLargestValue = 0x1p100f;

// How large a value is, by its bits: what is no number is larger than any.
std::int32_t Magnitude(float value) {
  return std::bit_cast<std::int32_t>(value) & 0x7FFF'FFFF;
}

bool IsUsable(const SComplex& sample) {
  return std::max(Magnitude(sample.re), Magnitude(sample.im)) <= Magnitude(kLargestValue);
}

// Zeros in the place of samples that are no numbers: a single one would spread over all that filters make of it. Gives
// their count.
std::int64_t SilenceUnusable(SComplex* samples, std::int64_t count) {
  constexpr std::int64_t kLook = 256;  // first a look at so many, without a branch
  std::int64_t silenced = 0;
  for (std::int64_t first = 0; first < count; first += kLook) {
    const std::int64_t end = std::min(first + kLook, count);
    std::int32_t largest = 0;
    for (std::int64_t i = first; i < end; ++i) {
      largest = std::max({largest, Magnitude(samples[i].re), Magnitude(samples[i].im)});
    }
    if (largest <= Magnitude(kLargestValue)) continue;
    for (std::int64_t i = first; i < end; ++i) {
      if (IsUsable(samples[i])) continue;
      samples[i] = {};
      ++silenced;
    }
  }
  return silenced;
}

}  // namespace

std::string UnsupportedFormatText(const WAVEFORMATEXTENSIBLE& format) {
  const char* kind = "";
  if (format.SubFormat == KSDATAFORMAT_SUBTYPE_IEEE_FLOAT) kind = " float";
  if (format.SubFormat == KSDATAFORMAT_SUBTYPE_PCM) kind = " PCM";
  return Format(
      "%u-bit%s samples in %u channels cannot be read; accepted are 2 channels of 8, 16, 24 or 32-bit PCM or "
      "32 or 64-bit float",
      static_cast<unsigned>(format.Format.wBitsPerSample), kind, static_cast<unsigned>(format.Format.nChannels));
}

void CBlockReader::Convert(const SSampleKind& kind, SComplex* samples, std::int32_t frames) {
  float* const values = &samples->re;
  void* const raw = m_pRaw.get();
  const std::int32_t count = 2 * frames;
  const double factor = kFullScale / kind.dFullScale;
  if (kind.bBigEndian) SwapBytes(raw, kind.nBits / 8, count);
  if (kind.number == ENumber::Float && kind.nBits == 64) {
    DoubleToFloat(static_cast<const double*>(raw), values, count, factor);
  } else {
    if (kind.number == ENumber::Signed) SignedToFloat(kind.nBits, raw, values, count);
    if (kind.number == ENumber::Unsigned) UnsignedToFloat(kind, raw, values, count);
    if (kind.number == ENumber::Float) CopyFloat(static_cast<const float*>(raw), values, count);
    MulConstInPlace(static_cast<float>(factor), values, count);
  }
  if (kind.number == ENumber::Float) m_nSilenced += SilenceUnusable(samples, frames);
}

std::uint32_t CBlockReader::ReadBlock(CSampleFile& file, SComplex* destination, std::uint32_t frames) {
  if (!m_pRaw) m_pRaw.reset(AllocInt16Pairs(kRawBytes / 4));
  if (!m_pRaw) throw std::bad_alloc();
  std::uint32_t done = 0;
  while (done < frames) {
    const CSampleFile::SAhead ahead = file.Ahead();
    if (ahead.nFrames == 0) break;
    const std::int64_t least = std::min<std::int64_t>(frames - done, ahead.nFrames);
    if (ahead.bSilence) {
      std::fill_n(destination + done, least, SComplex{});
      file.Pass(least);
      done += static_cast<std::uint32_t>(least);
      continue;
    }
    const std::int64_t wanted = std::min<std::int64_t>(least, kRawBytes / file.FrameBytes());
    const std::int64_t read = file.Read(m_pRaw.get(), wanted);
    if (read > 0) Convert(file.Kind(), destination + done, static_cast<std::int32_t>(read));
    done += static_cast<std::uint32_t>(read);
    if (read < wanted) break;
  }
  return done;
}

}  // namespace carvello
