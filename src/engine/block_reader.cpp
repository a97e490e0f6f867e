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

bool CBlockReader::GrowRaw(std::int64_t bytes) {
  if (bytes <= m_nRawCapacity) return true;
  m_pRaw.reset(AllocInt16Pairs((bytes + 3) / 4));
  m_nRawCapacity = m_pRaw ? bytes : 0;
  return m_pRaw != nullptr;
}

std::uint32_t CBlockReader::ReadBlock(CWaveFileReader& file, SComplex* destination) {
  const std::int64_t bytesPerFrame = file.BytesPerFrame();
  const std::int64_t wanted = std::min(kBlockFrames * bytesPerFrame, file.DataBytesTotal() - file.DataBytesRead());
  if (wanted <= 0) return 0;
  if (!GrowRaw(wanted)) throw std::bad_alloc();

  const auto bytes = static_cast<std::int32_t>(file.ReadData(m_pRaw.get(), static_cast<std::size_t>(wanted)));
  if (bytes == 0) return 0;

  const WAVEFORMATEXTENSIBLE& format = file.Format();
  auto* values = &destination->re;
  if (IsFloat(format) && format.Format.wBitsPerSample == 32) {
    CopyFloat(reinterpret_cast<const float*>(m_pRaw.get()), values, bytes / 4);
    if (!file.FloatScale()) MulConstInPlace(kFloatToFullScale, values, bytes / 4);
  } else if (IsPcm(format)) {
    ConvertPcm(format.Format.wBitsPerSample, m_pRaw.get(), values, bytes);
  }
  return static_cast<std::uint32_t>(bytes / bytesPerFrame);
}

}  // namespace carvello
