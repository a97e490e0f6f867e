#include "recording/riff_file_writer.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <utility>

#include "recording/riff_bytes.h"
#include "recording/written_file.h"
#include "support/formatting.h"
#include "support/platform.h"
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

// Why a file that must not replace anything could not be created.
std::string WhyTaken(const std::string& path) {
  if (!platform::GetFileStatus(path)) return "A link that leads nowhere stands under this name";
  if (platform::IsReadable(path)) return "The file exists already";
  const std::string reason = SystemErrorText();
  return "The file exists already and cannot be read: " + reason;
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
  m_bDataLost = false;
  m_strPath = path;
  m_nBytesPerValue = format.wBitsPerSample / 8U;
  m_nBytesPerFrame = std::max<std::uint32_t>(format.nBlockAlign, 1);
  m_nDataBytes = 0;
  m_nToldBytes = 0;
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

  const auto mode = m_policy.bReplace ? platform::EOpenMode::Replace : platform::EOpenMode::CreateNew;
  if (!m_file.Open(path, mode)) {
    const std::uint32_t code = platform::LastError();
    Fails(platform::MeansExisting(code) ? WhyTaken(path) : SystemErrorText(code));
    m_nErrorCode = code;
    return 0;
  }
  if (!WriteAll(header)) {
    Fails();
    RemoveUnlessReplaced();
    return 0;
  }
  m_bHasOpened = true;
  m_nDataOffset = m_file.Position();
  return m_nDataOffset;
}

bool CRiffFileWriter::Write(const void* block, std::uint32_t bytes, std::int64_t now) {
  const std::size_t taken = m_file.Write(block, bytes);
  m_nDataBytes += static_cast<std::int64_t>(taken);
  bool written = taken == bytes || Fails();
  // WAV sizes follow every block; the body of an RF64 file's "ds64" only every 16 seconds. The difference is
  // deliberate: WAV files are the many short ones, whose whole last block has to survive a kill.
  const std::int64_t tick = now / kPatchSeconds * kPatchSeconds;
  if (written && (!m_bRF64 || tick != m_nPatchTick)) {
    m_nPatchTick = tick;
    written = BringSizesUpToDate(DataEnd());
  }
  if (!written) {
    KeepWholeFrames();
    m_file.Close();
  }
  return written;
}

bool CRiffFileWriter::Finish(CFile* keep) {
  if (!IsOpen()) return true;
  if (!WriteEnd()) {
    KeepWholeFrames();
    m_file.Close();
    return false;
  }
  const bool same = StandsUnderItsName();
  if (same && keep != nullptr) {
    *keep = std::move(m_file);
    return true;
  }
  const bool closed = m_file.Close() || !same || Fails();
  return same && closed;
}

bool CRiffFileWriter::WriteEnd() {
  const std::string tail = (m_bSignalDescription ? BuildMetaChunk(m_signal) : "") + BuildInfoTrailer(m_texts);
  if (!WriteAll(tail)) return Fails();
  if (!BringSizesUpToDate(DataEnd() + static_cast<std::int64_t>(tail.size()))) return false;
  return !m_policy.bSync || (m_file.Sync() && platform::SyncFolder(platform::FolderOf(m_strPath))) || Fails();
}

// The samples, and the trailer when it is there, have to stand on the medium before sizes tell of them.
bool CRiffFileWriter::BringSizesUpToDate(std::int64_t fileSize) {
  if (m_policy.bSync && !m_file.SyncData()) {
    m_bDataLost = true;
    return Fails();
  }
  return PatchSizes(fileSize) || Fails();
}

// Leaves the position at the file's end.
bool CRiffFileWriter::PatchSizes(std::int64_t fileSize) {
  const auto riffSize = static_cast<std::uint64_t>(fileSize - kRiffHead);
  const auto dataSize = static_cast<std::uint64_t>(m_nDataBytes);
  bool patched = false;
  if (m_bRF64) {
    // The count is that of single I and Q values, twice the frames: deliberate, readers of these files expect it so.
    const std::uint64_t sampleCount = m_nBytesPerValue == 0 ? 0 : dataSize / m_nBytesPerValue;
    patched = Patch(kDs64BodyOffset, Ds64Body(riffSize, dataSize, sampleCount));
  } else {
    // The low 32 bits: a WAV file has no room for more, and the split size keeps its sizes within them.
    std::string riffField;
    AppendLittleEndian(riffField, static_cast<std::uint32_t>(riffSize));
    std::string dataField;
    AppendLittleEndian(dataField, static_cast<std::uint32_t>(dataSize));
    patched = Patch(kRiffSizeOffset, riffField) && Patch(m_nDataOffset - kSizeField, dataField);
  }
  if (patched) m_nToldBytes = m_nDataBytes;
  return patched && m_file.Seek(fileSize);
}

// What whoever opens the file by its name will find. A file that was renamed, replaced or written to by others in the
// meantime is not the output that was asked for.
bool CRiffFileWriter::StandsUnderItsName() {
  CFile named;
  if (!named.Open(m_strPath, platform::EOpenMode::ReadShared)) return Fails();
  const auto written = m_file.Status();
  const auto found = named.Status();
  if (!written || !found) return Fails();
  if (written->nVolume != found->nVolume || written->nFileNumber != found->nFileNumber) {
    return Fails("another file stands under its name now");
  }
  const SWrittenFile file = InspectWrittenFile(named);
  if (file.state == EWrittenState::Unreadable) return Fails();
  const bool whole = file.state == EWrittenState::Finished && file.nDataBytes == m_nDataBytes;
  return whole || Fails("the file does not hold what was written to it");
}

// After a failure: leaves a file that ends with its last whole frame and says so. The sizes come first, for the end of
// a file may only be cut off when no size points behind it. Where even that fails the sizes of before hold, and the
// samples that they tell of stand.
void CRiffFileWriter::KeepWholeFrames() {
  // What the system could not bring to the medium is as good as not written, whatever it says when asked again.
  if (m_bDataLost) m_nDataBytes = m_nToldBytes;
  m_nDataBytes -= m_nDataBytes % m_nBytesPerFrame;
  const bool safe = m_bDataLost || !m_policy.bSync || m_file.SyncData();
  if (safe && PatchSizes(DataEnd())) {
    m_file.Truncate(DataEnd());
    if (m_policy.bSync) m_file.Sync();
  } else {
    m_nDataBytes = m_nToldBytes;
  }
}

// A stump without a header is of use to nobody, and would stand in the way of the next attempt. What the name leads to
// by way of a link, and what is no ordinary file, is not ours to remove.
void CRiffFileWriter::RemoveUnlessReplaced() {
  const auto ours = m_file.Status();
  const auto named = platform::GetNameStatus(m_strPath);
  m_file.Close();
  const bool same =
      ours && named && ours->bRegular && ours->nVolume == named->nVolume && ours->nFileNumber == named->nFileNumber;
  if (same) platform::RemoveFile(m_strPath);
}

bool CRiffFileWriter::Fails() {
  m_nErrorCode = platform::LastError();
  m_strError = SystemErrorText(m_nErrorCode);
  return false;
}

bool CRiffFileWriter::Fails(const std::string& reason) {
  m_nErrorCode = 0;
  m_strError = reason;
  return false;
}

}  // namespace carvello
