#include "input/wave_file_reader.h"

#include <algorithm>

#include "input/chunk_walk.h"
#include "input/data_size.h"
#include "input/format_chunk.h"
#include "input/riff_layout.h"
#include "support/formatting.h"
#include "support/platform.h"
#include "support/text.h"

namespace carvello {

namespace {

constexpr std::uint32_t kSmallestRiffSize = 45;
const char* const kNoRF64 = "Not a valid WAVE RF64 file";

std::string ChunkName(const ChunkId& id) {
  return Printable(std::string(id.data(), std::find(id.begin(), id.end(), '\0')));
}

std::string TooManyChunks() {
  return Format("[ERROR] More than %u chunks and none of them holds samples", kMaxChunks);
}

}  // namespace

bool CWaveFileReader::Open(const std::string& fileName) {
  m_strFileName.clear();
  ZeroCounters();
  const bool opened = m_file.Open(fileName, platform::EOpenMode::ReadShared);
  m_nError = opened ? 0 : platform::LastError();
  const std::string status = platform::RuntimeErrorText(m_nError).value_or("<unknown>");
  m_log.Add(
      carvello::Format("Opening %s, Handle = %08X, Status = %s", fileName.c_str(), m_file.LogId(), status.c_str()));
  if (opened) m_strFileName = fileName;
  return opened;
}

void CWaveFileReader::Close() {
  if (!IsOpen()) return;
  m_file.Close();
  m_log.Add(carvello::Format("Closing %s", m_strFileName.c_str()));
  m_strFileName.clear();
  ZeroCounters();
}

bool CWaveFileReader::ParseWave(WAVEFORMATEXTENSIBLE& format, std::int64_t& dataSize) {
  format = {};
  dataSize = 0;
  SFileHeader header;
  if (!m_file.ReadExactly(&header, sizeof(header))) return Fail("Not a valid WAVE file");
  if (IsChunk(header.riff, "RF64")) return Seek(0) ? ParseRF64(format, dataSize) : Fail(kNoRF64);

  if (!IsChunk(header.riff, "RIFF")) m_log.Add("[WARNING] RIFF signature: Not Found");
  if (!IsChunk(header.wave, "WAVE")) m_log.Add("[WARNING] WAVE signature: Not Found");
  if (!IsChunk(header.first.id, "fmt ")) m_log.Add("[WARNING] fmt  signature: Not Found");
  if (header.nRiffSize < kSmallestRiffSize) {
    m_log.Add(carvello::Format("[WARNING] File size: %d (Minimum WAV file size supported is %d)",
                               static_cast<int>(header.nRiffSize), static_cast<int>(kSmallestRiffSize)));
  }
  if (header.first.nSize < kSmallestFormat) {
    m_log.Add(carvello::Format("[WARNING] Format size: %d (Smaller than size of PCMWAVEFORMAT %d)",
                               static_cast<int>(header.first.nSize), static_cast<int>(kSmallestFormat)));
  }
  bool elad = false;
  std::uint32_t formatSize = header.first.nSize;
  // Whatever it is called, the first chunk can be the format. Where it is not, as room that was kept for larger sizes,
  // another one is.
  if (!IsChunk(header.first.id, "fmt ") && !HoldsFormat(formatSize) && !FindChunk("fmt ", formatSize, elad)) {
    if (ErrorCode() != 0 || !Seek(sizeof(header))) return Fail("[ERROR] Failed to read header!");
    formatSize = header.first.nSize;
  }
  if (!IsAccepted(ReadFormat(formatSize, format))) return false;

  std::uint32_t claimed = 0;
  if (!FindData(claimed, elad)) return false;
  const SDataSize data = RiffDataSize(m_file, claimed, elad, FrameBytes(format.Format));
  if (!TakeDataSize(data)) return false;
  dataSize = data.nBytes;
  return BeginData(format, dataSize, dataSize - dataSize % FrameBytes(format.Format));
}

bool CWaveFileReader::HoldsFormat(std::uint32_t size) {
  const std::int64_t begin = m_file.Position();
  WAVEFORMATEXTENSIBLE format;
  const bool accepted = IsAccepted(ReadFormatChunk(m_file, size, EChannelRule::OneOrTwo, format));
  // Where the format is, or behind what is none.
  return Seek(accepted ? begin : begin + size) && accepted;
}

bool CWaveFileReader::FindChunk(const char* name, std::uint32_t& size, bool& elad) {
  for (std::uint32_t chunks = 0; chunks < kMaxChunks; ++chunks) {
    SChunkHeader chunk;
    if (!m_file.ReadExactly(&chunk, sizeof(chunk)) || IsChunk(chunk.id, "data")) return false;
    size = chunk.nSize;
    if (IsChunk(chunk.id, name)) return true;
    if (IsChunk(chunk.id, "elad")) elad = true;
    if (!Seek(m_file.Position() + chunk.nSize)) return false;
  }
  return false;
}

bool CWaveFileReader::FindData(std::uint32_t& size, bool& elad) {
  for (std::uint32_t chunks = 0; chunks < kMaxChunks; ++chunks) {
    SChunkHeader chunk;
    if (!m_file.ReadExactly(&chunk, sizeof(chunk))) return Fail("[ERROR] Failed to read header!");
    if (IsChunk(chunk.id, "data")) {
      size = chunk.nSize;
      return true;
    }
    if (IsChunk(chunk.id, "elad")) elad = true;
    if (!Seek(m_file.Position() + chunk.nSize)) return Fail("[ERROR] Invalid data chunk!...Exiting");
  }
  return Fail(TooManyChunks());
}

bool CWaveFileReader::ParseRF64(WAVEFORMATEXTENSIBLE& format, std::int64_t& dataSize) {
  format = {};
  dataSize = 0;
  SFileHeader header;
  if (!m_file.ReadExactly(&header, sizeof(header))) return Fail(kNoRF64);
  // A wrong signature does not end the parse, deliberately: ds64 and the chunks behind it decide.
  if (!IsChunk(header.riff, "RF64") || header.nRiffSize != kSizeInDs64 || !IsChunk(header.wave, "WAVE") ||
      !IsChunk(header.first.id, "ds64")) {
    m_log.Add(kNoRF64);
  }
  m_log.Add("WAVE RF64 signature: Found");
  SDs64 sizes;
  const bool hasDs64 = IsChunk(header.first.id, "ds64");
  if (hasDs64 && !m_file.ReadExactly(&sizes, sizeof(sizes))) {
    return Fail("[ERROR] Failed to read ds64 chunk from the file");
  }
  // Without ds64 the chunk that stands in its place is one like any other.
  if (!hasDs64 && !Seek(sizeof(header) - sizeof(SChunkHeader))) return Fail(kNoRF64);

  bool elad = false;
  for (std::uint32_t chunks = 0; chunks < kMaxChunks; ++chunks) {
    SChunkHeader chunk;
    if (!m_file.ReadExactly(&chunk, sizeof(chunk))) return Fail("[ERROR] Failed to read next chunk from the file");
    const std::string found =
        carvello::Format("%s chunk found, size %d", ChunkName(chunk.id).c_str(), static_cast<int>(chunk.nSize));
    m_log.Add(found);
    if (IsChunk(chunk.id, "data")) {
      if (FrameBytes(format.Format) == 0) return Fail("[ERROR] No format before the data chunk");
      // The size in ds64 holds; the chunk's own is ignored whatever it says.
      const std::uint32_t frameBytes = FrameBytes(format.Format);
      const SDataSize data = hasDs64 ? Rf64DataSize(m_file, sizes.nDataSize, frameBytes)
                                     : RiffDataSize(m_file, chunk.nSize, elad, frameBytes);
      if (!TakeDataSize(data)) return false;
      m_log.Add(carvello::Format("Total data bytes: %lld", static_cast<long long>(data.nBytes)));
      dataSize = data.nBytes;
      return BeginData(format, dataSize, dataSize);
    }
    if (IsChunk(chunk.id, "fmt ")) {
      const EFormatVerdict verdict = ReadFormat(chunk.nSize, format);
      if (!IsAccepted(verdict)) return false;
      if (verdict == EFormatVerdict::Converted) {
        for (const std::string& line : ConversionTexts(format)) m_log.Add(line);
      }
    } else {
      elad = elad || IsChunk(chunk.id, "elad");
      m_log.Add(found + ", ignored");
      // Behind a failed seek the chunk's body would be taken for further chunks.
      if (!Seek(m_file.Position() + chunk.nSize)) return Fail("[ERROR] Failed to skip the chunk");
    }
  }
  return Fail(TooManyChunks());
}

EFormatVerdict CWaveFileReader::ReadFormat(std::uint32_t size, WAVEFORMATEXTENSIBLE& format) {
  const EFormatVerdict verdict = ReadFormatChunk(m_file, size, EChannelRule::OneOrTwo, format);
  if (verdict == EFormatVerdict::SkipFailed) m_nError = platform::LastError();
  if (!IsAccepted(verdict)) Fail(FormatVerdictText(verdict, format));
  return verdict;
}

bool CWaveFileReader::TakeDataSize(const SDataSize& data) {
  m_nError = data.nError;
  if (m_nError != 0) return Fail("[ERROR] Failed to get the file's length");
  if (!data.strWarning.empty()) m_log.Add(data.strWarning);
  return true;
}

bool CWaveFileReader::BeginData(const WAVEFORMATEXTENSIBLE& format, std::int64_t dataSize, std::int64_t total) {
  if (dataSize == 0) return Fail("[ERROR] Invalid data bytes size!");
  m_format = format;
  m_nDataBytesTotal = total;
  m_nDataStart = m_file.Position();
  return true;
}

bool CWaveFileReader::ScanChunks(const std::string& fileName, SScanResult& result) {
  result = {};
  if (!Open(fileName)) {
    result.nError = m_nError;
    result.strError = "cannot be opened: " + SystemErrorText(result.nError);
    return false;
  }
  m_log.Add(carvello::Format("Opened %s", fileName.c_str()));
  m_log.Add("------");
  const bool found = CChunkWalk(m_file, fileName, m_log, result).Run();
  Close();
  return found;
}

std::size_t CWaveFileReader::ReadAt(std::int64_t position, void* buffer, std::size_t bytes) {
  return m_file.Position() == position || Seek(position) ? m_file.Read(buffer, bytes) : 0;
}

bool CWaveFileReader::Seek(std::int64_t position) {
  if (m_file.Seek(position)) return true;
  m_nError = platform::LastError();
  return false;
}

bool CWaveFileReader::Fail(const std::string& line) {
  m_log.Add(line);
  if (ErrorCode() != 0) m_log.Add("[ERROR] " + SystemErrorText(ErrorCode()));
  return false;
}

void CWaveFileReader::ZeroCounters() {
  m_nDataBytesTotal = 0;
  m_nDataStart = 0;
}

bool ReadInfoTexts(const std::string& fileName, SInfoTexts& texts, std::string* problem) {
  CWaveFileReader reader;
  SScanResult result;
  reader.ScanChunks(fileName, result);
  texts = result.infoTexts;
  if (problem != nullptr && result.nError != 0) *problem = result.strError;
  return !texts.IsEmpty();
}

}  // namespace carvello
