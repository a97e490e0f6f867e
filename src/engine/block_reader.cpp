#include "engine/block_reader.h"

#include <algorithm>
#include <new>
#include <string>

#include "support/text.h"

namespace carvello {

namespace {

bool IsPcm(const WAVEFORMATEXTENSIBLE& format) {
  return format.SubFormat == KSDATAFORMAT_SUBTYPE_PCM;
}
bool IsFloat(const WAVEFORMATEXTENSIBLE& format) {
  return format.SubFormat == KSDATAFORMAT_SUBTYPE_IEEE_FLOAT;
}

// Samples of every size end at 16-bit full scale, 32768.
constexpr float kFloatToFullScale = 32768.0f;
constexpr float kInt24ToFullScale = 256.0f;
constexpr float kInt32ToFullScale = 65536.0f;

// Bytes that are read and converted at a time: enough for a device, and few enough to be still in the processor's
// cache when they are converted.
constexpr std::int64_t kRawBytes = 524'288;

void ConvertPcm(std::uint16_t bits, const void* raw, float* values, std::int32_t bytes) {
  switch (bits) {
    case 8:
      Int8ToFloat(static_cast<const std::int8_t*>(raw), values, bytes);
      break;  // signed, deliberately
    case 16:
      Int16ToFloat(static_cast<const std::int16_t*>(raw), values, bytes / 2);
      break;
    case 24:
      Int24ToFloat(static_cast<const std::uint8_t*>(raw), values, bytes / 3);
      DivConstInPlace(kInt24ToFullScale, values, bytes / 3);
      break;
    case 32:
      Int32ToFloat(static_cast<const std::int32_t*>(raw), values, bytes / 4);
      DivConstInPlace(kInt32ToFullScale, values, bytes / 4);
      break;
    default:
      break;
  }
}

}  // namespace

bool CanConvert(const WAVEFORMATEXTENSIBLE& format) {
  const std::uint16_t bits = format.Format.wBitsPerSample;
  if (format.Format.wFormatTag != kFormatTagExtensible || format.Format.nChannels != 2) return false;
  if (IsFloat(format)) return bits == 32;
  return IsPcm(format) && (bits == 8 || bits == 16 || bits == 24 || bits == 32);
}

std::string UnsupportedFormatText(const WAVEFORMATEXTENSIBLE& format) {
  const char* kind = "";
  if (IsFloat(format)) kind = " float";
  if (IsPcm(format)) kind = " PCM";
  return Format(
      "%u-bit%s samples in %u channels cannot be read; accepted are 2 channels of 8, 16, 24 or 32-bit PCM or "
      "32-bit float",
      static_cast<unsigned>(format.Format.wBitsPerSample), kind, static_cast<unsigned>(format.Format.nChannels));
}

void CBlockReader::Convert(const CWaveFileReader& file, float* values, std::int32_t bytes) const {
  const WAVEFORMATEXTENSIBLE& format = file.Format();
  if (IsFloat(format) && format.Format.wBitsPerSample == 32) {
    CopyFloat(reinterpret_cast<const float*>(m_pRaw.get()), values, bytes / 4);
    if (!file.FloatScale()) MulConstInPlace(kFloatToFullScale, values, bytes / 4);
  } else if (IsPcm(format)) {
    ConvertPcm(format.Format.wBitsPerSample, m_pRaw.get(), values, bytes);
  }
}

std::uint32_t CBlockReader::ReadBlock(CWaveFileReader& file, SComplex* destination) {
  if (!m_pRaw) m_pRaw.reset(AllocInt16Pairs(kRawBytes / 4));
  if (!m_pRaw) throw std::bad_alloc();
  const std::int64_t bytesPerFrame = file.BytesPerFrame();
  std::uint32_t frames = 0;
  while (frames < kBlockFrames) {
    const std::int64_t wanted =
        std::min({(kBlockFrames - frames) * bytesPerFrame, file.DataBytesTotal() - file.DataBytesRead(),
                  kRawBytes / bytesPerFrame * bytesPerFrame});
    if (wanted <= 0) break;
    const auto bytes = static_cast<std::int64_t>(file.ReadData(m_pRaw.get(), static_cast<std::size_t>(wanted)));
    if (bytes > 0) Convert(file, &destination[frames].re, static_cast<std::int32_t>(bytes));
    frames += static_cast<std::uint32_t>(bytes / bytesPerFrame);
    if (bytes < wanted) break;
  }
  return frames;
}

}  // namespace carvello
