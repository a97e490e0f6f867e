#include "recording/riff_file_writer.h"

#include <array>
#include <bit>
#include <cstddef>

#include "recording/riff_bytes.h"
#include "recording/written_file.h"
#include "support/text.h"

namespace carvello {

namespace {

constexpr std::int64_t kRiffSizeOffset = 4;
constexpr std::int64_t kDs64BodyOffset = 20;
constexpr std::int64_t kSizeField = 4;
constexpr std::int64_t kRiffHead = 8;                // identifier and size, not counted in a RIFF size
constexpr std::uint32_t kSizeIn64Bits = 0xFFFFFFFF;  // "see the ds64 chunk"
constexpr std::int64_t kPatchSeconds = 16;

std::string Ds64Body(std::uint64_t riffSize, std::uint64_t dataSize, std::uint64_t sampleCount) {
  std::string body;
  AppendLittleEndian(body, riffSize);
  AppendLittleEndian(body, dataSize);
  AppendLittleEndian(body, sampleCount);
  AppendLittleEndian(body, std::uint32_t{0});  // length of the table of further sizes
  return body;
}

std::string FormatBody(const WAVEFORMATEX& format) {
  static_assert(std::endian::native == std::endian::little, "WAVEFORMATEX goes into files as it stands in memory");
  const auto bytes = std::bit_cast<std::array<char, sizeof(WAVEFORMATEX)>>(format);
  return {bytes.data(), bytes.size()};
}

// UTF-16 with its terminating zero character.
std::string XmlBody(std::string_view xml) {
  return Utf16ToLittleEndian(Utf8ToUtf16(xml)) + std::string(2, '\0');
}

}  // namespace

std::int64_t CRiffFileWriter::Open(const std::string& path, const WAVEFORMATEX& format, std::string_view xml,
                                   const SInfoTexts& texts, bool rf64, const SSignalFacts& signal) {
  m_bSignalDescription = false;
  m_bRF64 = rf64;
  m_nBytesPerValue = format.wBitsPerSample / 8U;
  m_nPatchTick = 0;
  m_texts = texts;
  m_signal = signal;

  const std::uint32_t unknownSize = rf64 ? kSizeIn64Bits : 0;
  std::string header = rf64 ? "RF64" : "RIFF";
  AppendLittleEndian(header, unknownSize);
  header += "WAVE";
  if (rf64) header += RiffChunk("ds64", Ds64Body(0, 0, 0));
  header += RiffChunk("fmt ", FormatBody(format));
  header += RiffChunk("auxi", XmlBody(xml));
  header += "data";
  AppendLittleEndian(header, unknownSize);
  return Create(path, header, format.nBlockAlign).value_or(0);
}

std::string CRiffFileWriter::Tail() const {
  return (m_bSignalDescription ? BuildMetaChunk(m_signal) : "") + BuildInfoTrailer(m_texts);
}

// WAV sizes follow every block; the body of an RF64 file's "ds64" only every 16 seconds. The difference is deliberate:
// WAV files are the many short ones, whose whole last block has to survive a kill.
bool CRiffFileWriter::AreSizesDue(std::int64_t now) {
  const std::int64_t tick = now / kPatchSeconds * kPatchSeconds;
  if (m_bRF64 && tick == m_nPatchTick) return false;
  m_nPatchTick = tick;
  return true;
}

bool CRiffFileWriter::PatchSizes(std::int64_t fileSize) {
  const auto riffSize = static_cast<std::uint64_t>(fileSize - kRiffHead);
  const auto dataSize = static_cast<std::uint64_t>(DataBytes());
  if (m_bRF64) {
    // The count is that of single I and Q values, twice the frames, unless frames are asked for: deliberate, programs
    // that know these files expect it so.
    const std::uint32_t counted = Policy().bCountFrames ? BytesPerFrame() : m_nBytesPerValue;
    const std::uint64_t sampleCount = counted == 0 ? 0 : dataSize / counted;
    return Patch(kDs64BodyOffset, Ds64Body(riffSize, dataSize, sampleCount));
  }
  // The low 32 bits: a WAV file has no room for more, and the split size keeps its sizes within them.
  std::string riffField;
  AppendLittleEndian(riffField, static_cast<std::uint32_t>(riffSize));
  std::string dataField;
  AppendLittleEndian(dataField, static_cast<std::uint32_t>(dataSize));
  return Patch(kRiffSizeOffset, riffField) && Patch(DataOffset() - kSizeField, dataField);
}

bool CRiffFileWriter::IsWhole(CFile& named, bool& readable) const {
  const SWrittenFile file = InspectWrittenFile(named);
  readable = file.state != EWrittenState::Unreadable;
  return file.state == EWrittenState::Finished && file.nDataBytes == DataBytes();
}

}  // namespace carvello
