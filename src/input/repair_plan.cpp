#include <algorithm>
#include <cstring>
#include <limits>
#include <optional>
#include <string_view>

#include "input/container_sigmf.h"
#include "input/data_size.h"
#include "input/file_repair.h"
#include "input/foreign_file.h"
#include "input/format_chunk.h"
#include "input/lookup_cache.h"
#include "input/riff_layout.h"
#include "input/tail_chunks.h"
#include "input/wave_file_reader.h"
#include "support/formatting.h"
#include "support/platform.h"
#include "support/text.h"

namespace carvello {

namespace {

constexpr std::int64_t kLargestHead = 64 << 20;
constexpr std::size_t kFirstChunk = 12;
constexpr std::size_t kHeader = sizeof(SChunkHeader);
constexpr std::uint32_t kDs64Bytes = sizeof(SDs64);
constexpr std::uint32_t kFormatBytes = 16;
// Where larger sizes count than 32 bits can tell.
constexpr std::int64_t kLargest32 = kSizeInDs64 - 1;

std::uint32_t Number32(const std::string& bytes, std::size_t place) {
  std::uint32_t number = 0;
  std::memcpy(&number, bytes.data() + place, sizeof(number));
  return number;
}

void Put(std::string& bytes, std::size_t place, std::string_view text) {
  std::memcpy(bytes.data() + place, text.data(), text.size());
}

void Put32(std::string& bytes, std::size_t place, std::uint32_t number) {
  std::memcpy(bytes.data() + place, &number, sizeof(number));
}

void Put16(std::string& bytes, std::size_t place, std::uint32_t number) {
  const auto small = static_cast<std::uint16_t>(number);
  std::memcpy(bytes.data() + place, &small, sizeof(small));
}

std::string SizeText(std::uint32_t size) {
  return IsOpenSize(size) && size != 0 ? Format("%u (0x%X)", size, size) : std::to_string(size);
}

// What stands where in the head.
struct SHeadPlaces {
  bool bRF64 = false;
  bool bDs64 = false;                 // the first chunk
  std::uint32_t nRoom = 0;            // bytes of a first chunk that was kept for ds64; 0 when there is none
  std::optional<std::size_t> format;  // its header
  bool bElad = false;
};

class CRepairPlanner {
 public:
  CRepairPlanner(const std::string& path, const SGivenFacts& given, SRepairPlan& plan)
      : m_strPath(path), m_given(given), m_plan(plan) {}

  void Run();

 private:
  void Refuse(const std::string& problem) {
    m_plan.state = ERepairState::Refused;
    m_plan.strProblem = problem;
  }
  void LookAtOther();
  // False when the file cannot be read, or its head is none.
  bool ReadHead();
  bool FindPlaces();
  // Each false for a file whose right numbers nobody can know.
  bool CheckFormat();
  bool CheckDataSize();
  void CheckEnd();
  bool IsPaddedTail();
  void CheckRiffSize();
  void WriteSizes();
  void WriteRiff();
  void WriteRf64();
  void Change(const std::string& text) { m_plan.changes.push_back(text); }
  std::uint32_t DataClaim() const { return Number32(m_plan.strHead, m_plan.strHead.size() - sizeof(std::uint32_t)); }
  std::int64_t DataEnd() const { return static_cast<std::int64_t>(m_plan.strHead.size()) + m_nDataBytes; }

  const std::string& m_strPath;
  const SGivenFacts& m_given;
  SRepairPlan& m_plan;
  CFile m_file;
  SScanResult m_scan;
  SHeadPlaces m_places;
  SDs64 m_ds64;
  std::uint32_t m_nFrameBytes = 0;
  std::int64_t m_nLength = 0;
  std::int64_t m_nDataBytes = 0;  // the right ones
  bool m_bWrongSize = false;      // of the samples
  bool m_bWrongRiffSize = false;
  std::string m_strRight;  // the head as it becomes
};

void CRepairPlanner::Run() {
  const SFileLook look = LookAtFile(m_strPath);
  if (!look.strHindrance.empty()) return Refuse(look.strHindrance);
  m_plan.stamp = SFileStamp(*look.status);
  if (!m_file.Open(m_strPath, platform::EOpenMode::ReadShared)) return Refuse("cannot be opened: " + SystemErrorText());
  CWaveFileReader reader;
  const bool hasData = reader.ScanChunks(m_strPath, m_scan);
  if (m_scan.nError != 0) return Refuse(m_scan.strError);
  m_plan.stamp = m_scan.stamp;
  m_nLength = m_scan.stamp.nSize;
  if (!hasData) return LookAtOther();
  if (!ReadHead() || !CheckFormat() || !CheckDataSize()) return;
  CheckEnd();
  CheckRiffSize();
  if (m_bWrongSize || m_bWrongRiffSize || (m_places.bRF64 && !m_places.bDs64)) WriteSizes();
  m_plan.strRightHead = m_strRight;
  m_plan.state = m_plan.strRightHead == m_plan.strHead ? ERepairState::Sound : ERepairState::Broken;
  if (m_plan.state == ERepairState::Broken && m_plan.faults.empty()) {
    m_plan.faults.emplace_back("another sample rate is given than the one that it tells");
  }
}

// Of files that are no RIFF file those are fine whose kind has no sizes.
void CRepairPlanner::LookAtOther() {
  if (!IsSigMfName(m_strPath)) {
    const std::optional<SForeignFile> other = ReadForeignFile(m_strPath, m_scan);
    if (!other) return Refuse(m_scan.strError);
    if (other->nError != 0) return Refuse("cannot be read: " + SystemErrorText(other->nError));
  }
  m_plan.state = ERepairState::Sound;
  m_plan.strProblem = "a file of its kind tells no sizes that could be wrong";
}

bool CRepairPlanner::ReadHead() {
  if (m_scan.nDataStart > kLargestHead) {
    Refuse("there is too much in front of its samples");
    return false;
  }
  m_plan.strHead.resize(static_cast<std::size_t>(m_scan.nDataStart));
  if (!m_file.Seek(0) || !m_file.ReadExactly(m_plan.strHead.data(), m_plan.strHead.size())) {
    Refuse("cannot be read: " + SystemErrorText(m_file.ReadError()));
    return false;
  }
  m_strRight = m_plan.strHead;
  if (FindPlaces()) return true;
  Refuse("its chunks do not follow each other from its beginning");
  return false;
}

bool CRepairPlanner::FindPlaces() {
  const std::string& head = m_plan.strHead;
  m_places.bRF64 = head.starts_with("RF64");
  if (head.size() < kFirstChunk + kHeader || head.compare(8, 4, "WAVE") != 0) return false;
  std::size_t place = kFirstChunk;
  while (place + kHeader < head.size()) {
    const std::string id = head.substr(place, 4);
    std::uint32_t size = Number32(head, place + 4);
    const bool isFirst = place == kFirstChunk;
    if (size > head.size() - place - kHeader) return false;
    if (isFirst && id == "ds64" && size >= kDs64Bytes) {
      m_places.bDs64 = m_places.bRF64;
      std::memcpy(&m_ds64, head.data() + place + kHeader, sizeof(m_ds64));
      if (m_places.bRF64) size = kDs64Bytes;  // as it is read
    }
    const bool isRoom = id == "JUNK" || id == "junk" || (id == "ds64" && !m_places.bRF64);
    if (isFirst && isRoom) m_places.nRoom = size;
    if (id == "fmt ") m_places.format = place;
    if (id == "elad") m_places.bElad = true;
    place += kHeader + size;
  }
  return place + kHeader == head.size() && head.compare(place, 4, "data") == 0 && m_places.format;
}

bool CRepairPlanner::CheckFormat() {
  const std::size_t body = *m_places.format + kHeader;
  if (Number32(m_plan.strHead, *m_places.format + 4) < kFormatBytes) {
    Refuse("its fmt chunk is too short to be one");
    return false;
  }
  std::uint32_t rate = m_scan.format.Format.nSamplesPerSec;
  m_nFrameBytes = FrameBytes(m_scan.format.Format);
  if (m_scan.bBlankFormat) {
    m_plan.faults.emplace_back("the format holds zeros, it was never filled in");
    if (!m_given.kind || !m_given.nSampleRate) {
      Refuse("its format was never filled in, and nobody but you can know it");
      m_plan.bNeedsKind = !m_given.kind;
      m_plan.bNeedsRate = !m_given.nSampleRate;
      return false;
    }
    const SSampleKind& kind = *m_given.kind;
    const bool isPlain = kind.nBits == 8 ? kind.number == ENumber::Unsigned : kind.number != ENumber::Unsigned;
    if (kind.bBigEndian || !isPlain) {
      Refuse("a WAV file cannot hold samples of the type " + SampleKindName(kind));
      return false;
    }
    m_nFrameBytes = kind.FrameBytes();
    Put16(m_strRight, body, kind.number == ENumber::Float ? kFormatTagFloat : kFormatTagPcm);
    Put16(m_strRight, body + 2, 2);
    Put16(m_strRight, body + 12, m_nFrameBytes);
    Put16(m_strRight, body + 14, kind.nBits);
    Change("the format becomes that of " + SampleKindName(kind));
  } else if (rate == 0) {
    m_plan.faults.emplace_back("the sample rate is 0");
    if (!m_given.nSampleRate) {
      Refuse("its sample rate is 0, and nobody but you can know it");
      m_plan.bNeedsRate = true;
      return false;
    }
  }
  if (!m_given.nSampleRate || *m_given.nSampleRate == rate) return true;
  const std::uint64_t bytes = std::uint64_t{*m_given.nSampleRate} * m_nFrameBytes;
  Put32(m_strRight, body + 4, *m_given.nSampleRate);
  Put32(m_strRight, body + 8,
        static_cast<std::uint32_t>(std::min<std::uint64_t>(bytes, std::numeric_limits<std::uint32_t>::max())));
  Change(Format("the sample rate becomes %u instead of %u", *m_given.nSampleRate, rate));
  return true;
}

bool CRepairPlanner::CheckDataSize() {
  if (!m_file.Seek(m_scan.nDataStart)) {
    Refuse("cannot be read: " + SystemErrorText());
    return false;
  }
  const std::uint32_t claim = DataClaim();
  const SDataSize data = m_places.bDs64 ? Rf64DataSize(m_file, m_ds64.nDataSize, m_nFrameBytes)
                                        : RiffDataSize(m_file, claim, false, m_nFrameBytes);
  if (data.nError != 0) {
    Refuse("cannot be read: " + SystemErrorText(data.nError));
    return false;
  }
  if (m_places.bDs64 && !IsOpenSize(claim) && claim != data.nBytes) {
    Refuse(Format("its data chunk tells %u bytes and ds64 %lld: nobody can know which is right", claim,
                  static_cast<long long>(m_ds64.nDataSize)));
    return false;
  }
  m_nDataBytes = data.nBytes;
  m_bWrongSize = data.fault != ESizeFault::None;
  m_plan.faults.insert(m_plan.faults.end(), m_scan.sizeFaults.begin(), m_scan.sizeFaults.end());
  if (m_bWrongSize || !m_places.bElad || data.nBytes >= m_nLength - m_scan.nDataStart - 1) return true;
  // Recorders of this kind leave any size behind, and their files are read to the end.
  const std::optional<bool> behind = IsKnownChunkAt(m_file, m_scan.nDataStart + data.nBytes, m_nLength);
  if (!behind || *behind) return true;
  m_nDataBytes = FindTailChunks(m_file, m_scan.nDataStart, m_nLength).nBegin - m_scan.nDataStart;
  m_bWrongSize = true;
  m_plan.faults.push_back(Format("data size %s, but it is an ELAD recording, which goes on for %lld bytes",
                                 SizeText(claim).c_str(), static_cast<long long>(m_nDataBytes)));
  return true;
}

// Half a frame at the file's end belongs to nothing. In front of chunks it must stay counted, or they are not found.
void CRepairPlanner::CheckEnd() {
  const std::int64_t behind = m_nLength - DataEnd();
  bool hasTail = behind >= static_cast<std::int64_t>(kHeader);
  // Behind a size that was wrong only chunks count.
  if (hasTail && m_bWrongSize) hasTail = IsKnownChunkAt(m_file, DataEnd(), m_nLength).value_or(true) || IsPaddedTail();
  if (m_bWrongSize && !hasTail && m_nFrameBytes > 0) m_nDataBytes -= m_nDataBytes % m_nFrameBytes;
  m_plan.nEnd = hasTail ? m_nLength : DataEnd();
}

// Whether a byte that makes an odd size even stands between samples and chunks.
bool CRepairPlanner::IsPaddedTail() {
  return m_nDataBytes % 2 != 0 && IsKnownChunkAt(m_file, DataEnd() + 1, m_nLength).value_or(true);
}

void CRepairPlanner::CheckRiffSize() {
  const std::uint32_t riff = Number32(m_plan.strHead, 4);
  const std::int64_t told = m_places.bDs64 ? m_ds64.nRiffSize : riff;
  // Many count the 8 bytes in front of it, too.
  const bool canBe = told >= DataEnd() - 8 && told <= m_nLength;
  m_bWrongRiffSize = !canBe;
  if (canBe || m_bWrongSize || !m_scan.sizeFaults.empty()) return;
  m_plan.faults.push_back(Format("the size of the file, %lld, is not that of what it holds, %lld",
                                 static_cast<long long>(told), static_cast<long long>(m_plan.nEnd - 8)));
}

void CRepairPlanner::WriteSizes() {
  const bool isLarge = m_plan.nEnd - 8 > kLargest32;
  if (m_places.bDs64 || isLarge) return WriteRf64();
  WriteRiff();
}

void CRepairPlanner::WriteRiff() {
  const auto riff = static_cast<std::uint32_t>(m_plan.nEnd - 8);
  const auto data = static_cast<std::uint32_t>(m_nDataBytes);
  if (m_places.bRF64) {
    Put(m_strRight, 0, "RIFF");
    Change("RF64 becomes RIFF, as its sizes need no more");
  }
  if (const std::uint32_t old = Number32(m_strRight, 4); old != riff) {
    Change(Format("the size of the file becomes %u instead of %s", riff, SizeText(old).c_str()));
  }
  if (const std::uint32_t old = DataClaim(); old != data) {
    Change(Format("the data size becomes %u instead of %s", data, SizeText(old).c_str()));
  }
  Put32(m_strRight, 4, riff);
  Put32(m_strRight, m_strRight.size() - 4, data);
}

void CRepairPlanner::WriteRf64() {
  constexpr std::size_t kBody = kFirstChunk + kHeader;
  std::int64_t grown = 0;
  if (!m_places.bDs64) {
    // The room holds ds64 alone, or ds64 and the header of what is left of it.
    const bool fits = m_places.nRoom == kDs64Bytes || m_places.nRoom >= kDs64Bytes + kHeader;
    if (fits) {
      const std::uint32_t left = m_places.nRoom - kDs64Bytes;
      if (left > 0) {
        Put(m_strRight, kBody + kDs64Bytes, "JUNK");
        Put32(m_strRight, kBody + kDs64Bytes + 4, left - static_cast<std::uint32_t>(kHeader));
      }
    } else {
      m_strRight.insert(kFirstChunk, std::string(kHeader + kDs64Bytes, '\0'));
      grown = kHeader + kDs64Bytes;
      m_plan.strOnlyAsNewFile =
          "its sizes need the head of an RF64 file, which is 36 bytes longer, and nothing in it can give way";
    }
    Put(m_strRight, kFirstChunk, "ds64");
    Put32(m_strRight, kFirstChunk + 4, kDs64Bytes);
    Change(m_places.bRF64 ? "it gets the ds64 chunk that is missing"
                          : "RIFF becomes RF64 with a ds64 chunk, as its sizes need more than 32 bits");
  }
  const bool keeps = m_places.bDs64 && m_ds64.nDataSize == m_nDataBytes;
  SDs64 right = m_places.bDs64 ? m_ds64 : SDs64{};
  right.nRiffSize = m_plan.nEnd - 8 + grown;
  right.nDataSize = m_nDataBytes;
  if (!keeps) right.nFrames = m_nFrameBytes == 0 ? 0 : m_nDataBytes / m_nFrameBytes;
  if (m_ds64.nRiffSize != right.nRiffSize || !m_places.bDs64) {
    Change(Format("the size of the file in ds64 becomes %lld", static_cast<long long>(right.nRiffSize)));
  }
  if (!keeps) Change(Format("the data size in ds64 becomes %lld", static_cast<long long>(m_nDataBytes)));
  std::memcpy(m_strRight.data() + kBody, &right, sizeof(right));
  Put(m_strRight, 0, "RF64");
  Put32(m_strRight, 4, kSizeInDs64);
  Put32(m_strRight, m_strRight.size() - 4, kSizeInDs64);
}

}  // namespace

SRepairPlan PlanRepair(const std::string& path, const SGivenFacts& given) {
  SRepairPlan plan;
  plan.strPath = platform::LinkedPath(path);
  CRepairPlanner(plan.strPath, given, plan).Run();
  return plan;
}

}  // namespace carvello
