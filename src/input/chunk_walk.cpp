#include "input/chunk_walk.h"

#include <algorithm>
#include <utility>

#include "input/data_size.h"
#include "input/format_chunk.h"
#include "input/riff_layout.h"
#include "input/source_recognition.h"
#include "support/formatting.h"
#include "support/hresult.h"
#include "support/platform.h"
#include "support/text.h"

namespace carvello {

namespace {

constexpr std::uint32_t kMaxSubChunkBytes = 65'536;
constexpr std::uint32_t kMaxBodyBytes = 16u << 20;
constexpr std::int64_t kMaxBodyBytesInAll = 64 << 20;
constexpr std::size_t kMarkerBytes = 4;
constexpr std::size_t kMaxWarnings = 20;  // a file that earns more is made to
constexpr std::uint32_t kSubChunkHeaderBytes = sizeof(SChunkHeader);

std::string MarkerText(const std::string& marker) {
  return Printable(platform::SystemCodePageToUtf8(marker));
}

// "[ERROR] This" becomes "This".
std::string WithoutTag(const std::string& line) {
  const std::size_t tagEnd = line.find("] ");
  return tagEnd == std::string::npos ? line : line.substr(tagEnd + 2);
}

// Why a format is not one of a recording, for the user.
std::string FormatProblem(EFormatVerdict verdict, const WAVEFORMATEXTENSIBLE& format) {
  if (verdict != EFormatVerdict::WrongChannelCount) return WithoutTag(FormatVerdictText(verdict, format));
  return ChannelProblem(format.Format);
}

int Signed(std::uint32_t size) {
  return static_cast<int>(size);
}

}  // namespace

CChunkWalk::CChunkWalk(CFile& file, const std::string& fileName, CMyStringArray& log, SScanResult& result)
    : m_file(file), m_log(log), m_result(result) {
  m_evidence.strFileName = fileName;
}

bool CChunkWalk::Run() {
  const std::optional<platform::FileStatus> status = m_file.Status();
  if (!status) return Break(platform::LastError());
  m_result.stamp = SFileStamp(*status);
  m_evidence.tCreated = status->tCreated;
  for (std::uint32_t chunks = 0;; ++chunks) {
    if (chunks == kMaxChunks) {
      m_log.Add(Format("[ERROR] More than %u chunks, the rest of the file is ignored", kMaxChunks));
      m_strEnd = Format("more than %u chunks, and none of them holds samples", kMaxChunks);
      break;
    }
    if (!ReadNextMarker()) {
      m_log.Add("[ERROR] Failed to read next marker from the file");
      break;
    }
    Log("marker");
    const bool handled = HandleChunk();
    if (m_result.nError != 0) return false;
    if (!handled) {
      const bool samplesKnown = m_bData && (m_result.format.Format.nChannels > 0 || m_result.bBlankFormat);
      if (!samplesKnown) return false;
      m_result.warnings.push_back("damage behind the samples, " + std::exchange(m_result.strError, {}));
      break;
    }
    if (HasReachedEnd()) {
      m_log.Add("Finished");
      m_log.Add("--------");
      break;
    }
  }
  if (m_result.nError != 0) return false;
  Recognise();
  if (!m_bData) m_result.strError = m_strEnd.empty() ? "no data chunk found" : m_strEnd;
  return m_bData;
}

bool CChunkWalk::ReadNextMarker() {
  const std::int64_t left = BytesLeft();
  if (m_result.nError != 0) return false;
  if (m_nSkip > left) {
    if (m_strEnd.empty())
      m_strEnd = Format("the file ends in chunk \"%s\", before a data chunk", MarkerText(m_strMarker).c_str());
    return false;
  }
  if (!m_file.Seek(m_file.Position() + std::exchange(m_nSkip, 0))) return Break(platform::LastError());
  return ReadMarker(m_strMarker);
}

bool CChunkWalk::HandleChunk() {
  const bool header = m_strMarker == "RIFF" || m_strMarker == "RF64";
  if (!m_bHeaderSeen && !header) {
    m_log.Add("[ERROR] File does not start with RIFF or RF64");
    m_result.strError = "not a RIFF or RF64 file";
    return false;
  }
  if (header) return HandleFileHeader(m_strMarker == "RF64");
  if (m_strMarker == "WAVE") return true;
  if (m_strMarker == "ds64") return HandleDs64();
  if (m_strMarker == "fmt ") return HandleFormat();
  if (m_strMarker == "data") return HandleData();
  if (m_strMarker == "LIST") return HandleList();
  if (m_strMarker == "meta") return HandleMeta();
  if (m_strMarker == "elad") return HandleElad();
  if (m_strMarker == "note") return HandleNote();
  if (m_strMarker == "auxi") return HandleAuxi();
  if (m_strMarker == "rcvr") return HandleRcvr();
  return HandleUnknown();
}

bool CChunkWalk::HandleFileHeader(bool rf64) {
  m_result.bRF64 = rf64;
  m_bHeaderSeen = true;
  if (!ReadSize("[ERROR] Failed to read file size from the file", m_nRiffSize)) return false;
  Log(rf64 ? Format("Size = %d", Signed(m_nRiffSize))
           : Format("Size = %d (signed), %u (unsigned)", Signed(m_nRiffSize), m_nRiffSize));
  return true;
}

bool CChunkWalk::HandleDs64() {
  std::uint32_t size = 0;
  if (!ReadSize("[ERROR] Failed to read ds64 size from the file", size)) return false;
  Log(Format("Size = %d", Signed(size)));
  SDs64 sizes;
  if (!Read(&sizes, sizeof(sizes))) return Fail("[ERROR] Failed to read ds64 data from the file");
  Log(Format("RIFF size %lld", static_cast<long long>(sizes.nRiffSize)));
  Log(Format("Data size %lld", static_cast<long long>(sizes.nDataSize)));
  Log(Format("Frames    %lld", static_cast<long long>(sizes.nFrames)));
  Log(Format("Table len %d", Signed(sizes.nTableLength)));
  m_bDs64 = m_file.Position() == sizeof(SFileHeader) + sizeof(sizes);  // the first chunk, or none
  m_nRiffSize64 = sizes.nRiffSize;
  m_nDataSize64 = sizes.nDataSize;
  return true;
}

bool CChunkWalk::HandleFormat() {
  std::uint32_t size = 0;
  // Deliberately the text of ds64: one text for a header that ends before its size.
  if (!ReadSize("[ERROR] Failed to read ds64 size from the file", size)) return false;
  if (size < kSmallestFormat) {
    return Fail(Format("[ERROR] Format size %u, at least %u bytes are needed", size, kSmallestFormat));
  }
  WAVEFORMATEXTENSIBLE format;
  const std::int64_t start = m_file.Position();
  const EFormatVerdict verdict = ReadFormatChunk(m_file, size, EChannelRule::ExactlyTwo, format);
  ++m_result.statistics.nReads;
  m_result.statistics.nBytes += std::min<std::int64_t>(m_file.Position() - start, sizeof(format));
  if (verdict == EFormatVerdict::ReadFailed && m_file.ReadError() != 0) return Break(m_file.ReadError());
  if (verdict == EFormatVerdict::SkipFailed) return Break(platform::LastError());
  if (verdict == EFormatVerdict::ReadFailed) {
    return Fail("[ERROR] Failed to read wave format descriptor from the file");
  }
  if (verdict == EFormatVerdict::Blank && !m_bData) {
    Warn("[WARNING] Format of zeros, it was never filled in");
    m_result.bBlankFormat = true;
    return true;
  }
  if (!IsAccepted(verdict)) {
    Fail(FormatVerdictText(verdict, format));
    m_result.strError = Format("chunk \"%s\": %s", m_strMarker.c_str(), FormatProblem(verdict, format).c_str());
    return false;
  }
  if (m_bData) {
    // The samples are read by the format in front of them.
    Log("[WARNING] Format behind the samples, ignored");
    return true;
  }
  m_result.format = format;
  if (verdict == EFormatVerdict::Converted) {
    for (const std::string& line : ConversionTexts(format)) Log(line);
  }
  return true;
}

bool CChunkWalk::HandleData() {
  std::uint32_t size = 0;
  if (!ReadSize("[ERROR] Failed to read data size from the file", size)) return false;
  Log(Format("Size = %d", Signed(size)));
  const std::uint32_t frameBytes = FrameBytes(m_result.format.Format);
  const bool sizeInDs64 = m_result.bRF64 && m_bDs64 && IsOpenSize(size);
  const SDataSize data = sizeInDs64 ? Rf64DataSize(m_file, m_nDataSize64, frameBytes)
                                    : RiffDataSize(m_file, size, m_evidence.bElad, frameBytes);
  if (!CountRead(data)) return false;
  m_nSkip = data.nBytes;
  if (m_bData) {
    // The samples are read from the first one, so lengths must be of the first one too.
    Warn("[WARNING] Not the first data chunk, ignored");
    return true;
  }
  if (m_result.bRF64 && !m_bDs64) WarnOfSize("[WARNING] Its ds64 chunk, which tells large sizes, is missing");
  if (!m_strEnd.empty()) WarnOfSize("[WARNING] " + std::exchange(m_strEnd, {}) + ", where it goes on");
  if (!data.strWarning.empty()) WarnOfSize(data.strWarning);
  m_bData = true;
  m_bWrongSize = data.fault != ESizeFault::None;
  m_result.nDataStart = m_file.Position();
  m_result.nDataBytes = m_result.nSampleBytes = data.nBytes;
  if (m_result.bRF64 && m_bDs64 && !sizeInDs64) {
    const SDataSize in64 = Rf64DataSize(m_file, m_nDataSize64, frameBytes);
    if (!CountRead(in64)) return false;
    m_result.nSampleBytes = in64.nBytes;
    if (m_result.nSampleBytes != data.nBytes) {
      Warn(Format("[WARNING] Data size %lld, but ds64 tells %lld, which holds when the samples are read",
                  static_cast<long long>(data.nBytes), static_cast<long long>(m_result.nSampleBytes)));
    }
  }
  m_result.bCutShort = !data.strWarning.empty();
  return true;
}

bool CChunkWalk::CountRead(const SDataSize& data) {
  if (data.nReadBytes > 0) ++m_result.statistics.nReads;
  m_result.statistics.nBytes += data.nReadBytes;
  return data.nError == 0 || Break(data.nError);
}

bool CChunkWalk::HandleList() {
  std::uint32_t size = 0;
  if (!ReadSize("[ERROR] Failed to read LIST size from the file", size)) return false;
  std::string listType;
  if (!ReadMarker(listType)) return Fail("[ERROR] Failed to read LIST marker from the file");
  Log(Format("Found %s marker", MarkerText(listType).c_str()));
  return HandleSubChunks(listType, size);
}

bool CChunkWalk::HandleSubChunks(const std::string& listType, std::uint32_t listSize) {
  const std::string type = MarkerText(listType);
  std::string body;
  for (std::uint64_t consumed = kMarkerBytes; consumed < listSize;) {
    const auto skipRest = [&](std::uint64_t read) {
      m_nSkip = std::max<std::int64_t>(static_cast<std::int64_t>(listSize) - static_cast<std::int64_t>(read), 0);
    };
    if (m_nSubChunks == kMaxChunks) {
      Warn(Format("%s [ERROR] More than %u subchunks, the rest is ignored", type.c_str(), kMaxChunks));
      skipRest(consumed);
      return true;
    }
    ++m_nSubChunks;

    std::string marker;
    if (!ReadMarker(marker)) return Fail(type + " [ERROR] Failed to read subchunk marker from the file");
    std::uint32_t size = 0;
    if (!Read(&size, sizeof(size))) return Fail(type + " [ERROR] Failed to read subchunk size from the file");
    const std::uint64_t rounded = (std::uint64_t{size} + 1) & ~std::uint64_t{1};
    if (rounded > kMaxSubChunkBytes) {
      Warn(Format("%s [ERROR] Subchunk %s of %u bytes, at most %u are read, the rest of the list is ignored",
                  type.c_str(), MarkerText(marker).c_str(), size, kMaxSubChunkBytes));
      skipRest(consumed + kSubChunkHeaderBytes);
      return true;
    }
    m_nBodyBytes += static_cast<std::int64_t>(rounded);
    if (m_nBodyBytes > kMaxBodyBytesInAll) {
      Warn(Format("%s [ERROR] More than %lld bytes of metadata, the rest is ignored", type.c_str(),
                  static_cast<long long>(kMaxBodyBytesInAll)));
      skipRest(consumed + kSubChunkHeaderBytes);
      return true;
    }
    body.resize(rounded);
    if (!Read(body.data(), body.size())) return Fail(type + " [ERROR] Failed to read subchunk data from the file");

    const std::string text = ReplaceAll(platform::SystemCodePageToUtf8(body.substr(0, body.find('\0'))), "?? ", "");
    if (listType == "INFO") StoreInfoText(marker, text);
    // Deliberately the size of the whole list: it is the one that the texts must fit.
    Log(Format("%s Found %s marker, size = %d, text = '%s'", type.c_str(), MarkerText(marker).c_str(), Signed(listSize),
               Printable(text).c_str()));
    consumed += rounded + kSubChunkHeaderBytes;
  }
  return true;
}

bool CChunkWalk::HandleMeta() {
  std::uint32_t size = 0;
  if (!ReadSize("[ERROR] Failed to read subchunk size from the file", size)) return false;
  Log(Format("Size = %d", Signed(size)));
  Log("Ignored");
  if (auto body = ReadBody(size, "[ERROR] Failed to read meta buffer from the file"))
    m_evidence.strMeta = std::move(*body);
  return true;
}

bool CChunkWalk::HandleElad() {
  m_evidence.bElad = true;
  std::uint32_t size = 0;
  if (!ReadSize("[ERROR] Failed to read subchunk size from the file", size)) return false;
  ReadBody(size, "[ERROR] Failed to read ELAD buffer from the file");
  return true;
}

bool CChunkWalk::HandleNote() {
  std::uint32_t size = 0;
  if (!ReadSize("[ERROR] Failed to read subchunk size from the file", size)) return false;
  Log(Format("Size = %d", Signed(size)));
  Log("Ignored");
  m_nSkip = size;
  return true;
}

bool CChunkWalk::HandleAuxi() {
  std::uint32_t size = 0;
  if (!ReadSize("[ERROR] Failed to read Auxi size from the file", size)) return false;
  if (size == 0) return true;
  if (auto body = ReadBody(size, "[ERROR] Failed to read Auxi buffer from the file"))
    m_evidence.strAuxi = std::move(*body);
  return true;
}

bool CChunkWalk::HandleRcvr() {
  std::uint32_t size = 0;
  if (!ReadSize("[ERROR] Failed to read rcvr size from the file", size)) return false;
  if (size == 0) return true;
  if (auto body = ReadBody(size, "[ERROR] Failed to read rcvr buffer from the file"))
    m_evidence.strRcvr = std::move(*body);
  return true;
}

bool CChunkWalk::HandleUnknown() {
  m_result.bKiwi = m_result.bKiwi || m_strMarker == "kiwi";
  std::uint32_t size = 0;
  if (!ReadSize("[ERROR] Failed to read subchunk size from the file", size)) return false;
  Log(Format("[WARNING] Unexpected subchunk, size %d", Signed(size)));
  Log(Format("[WARNING] File position %lld, size %u", static_cast<long long>(m_file.Position()), m_nRiffSize));
  m_nSkip = size;
  return true;
}

bool CChunkWalk::Read(void* buffer, std::size_t bytes) {
  const std::size_t done = m_file.Read(buffer, bytes);
  ++m_result.statistics.nReads;
  m_result.statistics.nBytes += static_cast<std::int64_t>(done);
  if (done < bytes && m_file.ReadError() != 0) Break(m_file.ReadError());
  return done == bytes;
}

bool CChunkWalk::ReadMarker(std::string& marker) {
  marker.resize(kMarkerBytes);
  return Read(marker.data(), marker.size());
}

bool CChunkWalk::ReadSize(const char* failure, std::uint32_t& size) {
  return Read(&size, sizeof(size)) || Fail(failure);
}

std::optional<std::string> CChunkWalk::ReadBody(std::uint32_t size, const char* failure) {
  m_nSkip = size;
  if (size > BytesLeft()) {
    Log(failure);
    if (m_result.nError == 0) Tell(Format("its %u bytes reach past the file's end, ignored", size));
    return std::nullopt;
  }
  if (size > kMaxBodyBytes || m_nBodyBytes + size > kMaxBodyBytesInAll) {
    Warn(Format("[ERROR] Size %u, at most %u bytes and %lld in all are read, ignored", size, kMaxBodyBytes,
                static_cast<long long>(kMaxBodyBytesInAll)));
    return std::nullopt;
  }
  std::string body(size, '\0');
  const std::int64_t start = m_file.Position();
  if (!Read(body.data(), body.size())) {
    Log(failure);
    m_nSkip = size - (m_file.Position() - start);
    return std::nullopt;
  }
  m_nBodyBytes += size;
  m_nSkip = 0;
  return body;
}

std::int64_t CChunkWalk::BytesLeft() {
  const std::int64_t length = m_file.Length();
  if (length < 0) Break(platform::LastError());
  return std::max<std::int64_t>(length - m_file.Position(), 0);
}

bool CChunkWalk::HasReachedEnd() {
  // The sizes count from behind themselves, so the walk ends up to 8 bytes early. Deliberate: no chunk with a body fits
  // there, and files of recorders that count otherwise end here as well.
  const std::int64_t position = m_file.Position() + m_nSkip;
  const bool in64 = m_nRiffSize64 >= 1 && position >= m_nRiffSize64;
  const bool in32 = m_nRiffSize != 0 && m_nRiffSize != kSizeInDs64 && position >= m_nRiffSize;
  if (!in64 && !in32) return false;
  // Sizes of a recording that nobody finished end it where its samples begin, or anywhere: then the file's end counts.
  const long long size = in64 ? m_nRiffSize64 : m_nRiffSize;
  if (!m_bData && BytesLeft() > m_nSkip) {
    if (m_strEnd.empty()) m_strEnd = Format("the RIFF size, %lld, ends the file before a data chunk", size);
    return false;
  }
  return !m_bWrongSize || BytesLeft() <= m_nSkip;
}

void CChunkWalk::Log(const std::string& text) {
  m_log.Add(MarkerText(m_strMarker) + " " + text);
}

bool CChunkWalk::Fail(const std::string& text) {
  Log(text);
  if (m_result.nError == 0) {
    m_result.strError = Format("chunk \"%s\": %s", MarkerText(m_strMarker).c_str(), WithoutTag(text).c_str());
  }
  return false;
}

void CChunkWalk::Warn(const std::string& text) {
  Log(text);
  Tell(WithoutTag(text));
}

void CChunkWalk::WarnOfSize(const std::string& text) {
  Warn(text);
  m_result.sizeFaults.push_back(WithoutTag(text));
}

void CChunkWalk::Tell(const std::string& text) {
  if (m_result.warnings.size() == kMaxWarnings) return;
  m_result.warnings.push_back(Format("chunk \"%s\": %s", MarkerText(m_strMarker).c_str(), text.c_str()));
}

bool CChunkWalk::Break(std::uint32_t code) {
  if (m_result.nError != 0) return false;
  m_result.nError = code;
  m_result.strError =
      Format("cannot be read at byte %lld%s: %s", static_cast<long long>(m_file.Position()),
             m_strMarker.empty() ? "" : Format(", chunk \"%s\"", MarkerText(m_strMarker).c_str()).c_str(),
             SystemErrorText(code).c_str());
  m_log.Add("[ERROR] " + m_result.strError);
  return false;
}

void CChunkWalk::Recognise() {
  try {
    RecogniseSource(m_evidence, m_result);
  } catch (const CHResultError& error) {
    // A date that cannot be: the samples can be read, but when they were recorded stays unknown.
    m_result.source = {};
    m_result.strError = error.what();
    m_log.Add("[ERROR] " + m_result.strError);
  }
}

void CChunkWalk::StoreInfoText(const std::string& marker, const std::string& text) {
  SInfoTexts& texts = m_result.infoTexts;
  if (marker == "IPRD") texts.strIPRD = text;
  if (marker == "IART") texts.strIART = text;
  if (marker == "ICMT") texts.strICMT = text;
  if (marker == "ICOP") texts.strICOP = text;
  if (marker == "INAM") texts.strINAM = text;
}

}  // namespace carvello
