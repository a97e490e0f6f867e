#include "input/container_sdriq.h"

#include <array>
#include <bit>
#include <cstddef>

namespace carvello {

namespace {

static_assert(std::endian::native == std::endian::little, "file structures are read as they stand");

#pragma pack(push, 1)
struct SSdriqHead {
  std::uint32_t nSampleRate = 0;
  std::int64_t nCentre = 0;
  std::int64_t nStart = 0;  // since 1970 UTC, see kMostSeconds
  std::uint32_t nBits = 0;
  // Not in files of versions before 4.2.1, whose samples begin here.
  std::uint32_t nZero = 0;
  std::uint32_t nCrc = 0;  // of what stands in front of it
};
#pragma pack(pop)
static_assert(sizeof(SSdriqHead) == 32);

constexpr std::int64_t kOldHead = 24;
// Versions from 6.16.2 on count milliseconds, those before it seconds. Nothing was recorded behind the year 5000.
constexpr std::int64_t kMostSeconds = 100'000'000'000;
constexpr std::int64_t kMostMilliseconds = 253'402'300'799'999;  // the year 9999
constexpr std::int64_t kMostCentre = 1'000'000'000'000;          // Hz
constexpr double k24BitFullScale = 8'388'608.0;

// As zlib reckons it.
std::uint32_t Crc32(const void* bytes, std::size_t count) {
  const auto* const values = static_cast<const std::uint8_t*>(bytes);
  std::uint32_t crc = 0xFFFF'FFFFU;
  for (std::size_t i = 0; i < count; ++i) {
    crc ^= values[i];
    for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1U) ^ ((crc & 1U) != 0 ? 0xEDB8'8320U : 0U);
  }
  return ~crc;
}

SExactTime StartOf(std::int64_t start) {
  if (start <= kMostSeconds) return {start, 0};
  return {start / 1000, static_cast<std::uint32_t>(start % 1000 * 1'000'000)};
}

}  // namespace

bool ReadSdriq(CFile& file, SForeignFile& found) {
  SSdriqHead head;
  const std::int64_t length = file.Length();
  if (length <= kOldHead || !file.Seek(0)) return false;
  const auto headBytes = static_cast<std::size_t>(length < 32 ? kOldHead : 32);
  if (!file.ReadExactly(&head, headBytes)) return false;

  const bool sizeTold = head.nBits == 16 || head.nBits == 24;
  const bool checked = headBytes == sizeof(head) && head.nCrc == Crc32(&head, offsetof(SSdriqHead, nCrc));
  // Only heads with a check sum count milliseconds; one whose sum is wrong was damaged then.
  const bool isOld = !checked && head.nStart <= kMostSeconds;
  if (isOld) {
    found.warnings.emplace_back("its head has no right check sum, read as SDRangel before version 4.2.1 wrote it");
  } else if (!checked) {
    found.warnings.emplace_back("the check sum of its head is wrong: rate, centre frequency and start may be too");
  }
  found.strSource = "SDRangel";
  found.strContainer = "sdriq";
  found.nDataOffset = isOld ? kOldHead : static_cast<std::int64_t>(sizeof(head));
  found.nDataBytes = length - found.nDataOffset;
  if (!sizeTold && !isOld) found.warnings.emplace_back("the sample size in its head is neither 16 nor 24, 16 taken");
  found.kind = MakeSampleKind(ENumber::Signed, 16);
  if (head.nBits == 24) {
    found.kind = MakeSampleKind(ENumber::Signed, 32);
    found.kind->dFullScale = k24BitFullScale;
  }
  // Copies: nothing in the head stands where references may lead.
  if (head.nSampleRate > 0) found.nSampleRate = std::uint32_t{head.nSampleRate};
  const std::int64_t centre = head.nCentre;
  if (centre >= 0 && centre <= kMostCentre) found.nCentre = centre;
  if (head.nStart > 0 && head.nStart <= kMostMilliseconds) found.start = StartOf(head.nStart);
  return found.nDataBytes > 0;
}

}  // namespace carvello
