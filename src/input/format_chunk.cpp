#include "input/format_chunk.h"

#include <algorithm>
#include <bit>

#include "support/text.h"

namespace carvello {

namespace {

static_assert(std::endian::native == std::endian::little, "file structures are read as they stand");

constexpr std::uint16_t kExtensibleExtra = sizeof(WAVEFORMATEXTENSIBLE) - sizeof(WAVEFORMATEX);
constexpr std::uint32_t kSpeakerFrontCentre = 4;
constexpr std::uint32_t kSpeakersFrontPair = 3;

EFormatVerdict Normalise(EChannelRule rule, WAVEFORMATEXTENSIBLE& format) {
  WAVEFORMATEX& plain = format.Format;
  if (plain.wFormatTag == kFormatTagExtensible) {
    const bool known =
        format.SubFormat == KSDATAFORMAT_SUBTYPE_PCM || format.SubFormat == KSDATAFORMAT_SUBTYPE_IEEE_FLOAT;
    return known ? EFormatVerdict::Kept : EFormatVerdict::Unsupported;
  }
  if (plain.wFormatTag != kFormatTagPcm && plain.wFormatTag != kFormatTagFloat) return EFormatVerdict::Unsupported;

  const bool accepted = plain.nChannels == 2 || (plain.nChannels == 1 && rule == EChannelRule::OneOrTwo);
  if (!accepted) return EFormatVerdict::WrongChannelCount;
  format.SubFormat = plain.wFormatTag == kFormatTagFloat ? KSDATAFORMAT_SUBTYPE_IEEE_FLOAT : KSDATAFORMAT_SUBTYPE_PCM;
  format.dwChannelMask = plain.nChannels == 1 ? kSpeakerFrontCentre : kSpeakersFrontPair;
  format.wValidBitsPerSample = plain.wBitsPerSample;
  plain.wFormatTag = kFormatTagExtensible;
  plain.cbSize = kExtensibleExtra;
  return EFormatVerdict::Converted;
}

bool IsBlank(const WAVEFORMATEX& format) {
  return format.wFormatTag == 0 && format.nChannels == 0 && format.nSamplesPerSec == 0 && format.wBitsPerSample == 0;
}

}  // namespace

EFormatVerdict ReadFormatChunk(CFile& file, std::uint32_t size, EChannelRule rule, WAVEFORMATEXTENSIBLE& format) {
  format = {};
  const std::uint32_t taken = std::min<std::uint32_t>(size, sizeof(format));
  if (!file.ReadExactly(&format, taken)) return EFormatVerdict::ReadFailed;
  if (size > taken && !file.Seek(file.Position() + (size - taken))) return EFormatVerdict::SkipFailed;
  if (IsBlank(format.Format)) return EFormatVerdict::Blank;
  const EFormatVerdict verdict = Normalise(rule, format);
  return IsAccepted(verdict) && FrameBytes(format.Format) == 0 ? EFormatVerdict::NoFrame : verdict;
}

std::string FormatVerdictText(EFormatVerdict verdict, const WAVEFORMATEXTENSIBLE& format) {
  switch (verdict) {
    case EFormatVerdict::ReadFailed:
      return "[ERROR] Failed to copy wave format descriptor from the file";
    case EFormatVerdict::SkipFailed:
      return "[ERROR] Failed to skip over any padding at the end of the format in the format chunk!";
    case EFormatVerdict::WrongChannelCount:
      return "[WARNING] WAVEFORMATEX structure is valid for representing wave formats with only 1 or 2 channels!";
    case EFormatVerdict::Blank:
    case EFormatVerdict::Unsupported:
      return "[WARNING] Not a format that we can handle...Exiting";
    case EFormatVerdict::NoFrame:
      return Format("[ERROR] Format with %u channels and %u bits per sample, at least one byte per frame is needed",
                    static_cast<unsigned>(format.Format.nChannels),
                    static_cast<unsigned>(format.Format.wBitsPerSample));
    case EFormatVerdict::Kept:
    case EFormatVerdict::Converted:
      break;
  }
  return {};
}

std::string ChannelProblem(const WAVEFORMATEX& format) {
  return Format("%u channel%s, a recording needs two, I and Q", static_cast<unsigned>(format.nChannels),
                format.nChannels == 1 ? "" : "s");
}

std::array<std::string, 2> ConversionTexts(const WAVEFORMATEXTENSIBLE& format) {
  return {
      Format("cbSize (Format.cbSize): %d", static_cast<int>(format.Format.cbSize)),
      Format("Valid bits per sample (Samples.wValidBitsPerSample): %d", static_cast<int>(format.wValidBitsPerSample))};
}

}  // namespace carvello
