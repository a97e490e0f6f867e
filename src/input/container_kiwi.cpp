#include "input/container_kiwi.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "input/riff_layout.h"
#include "support/text.h"

namespace carvello {

namespace {

static_assert(std::endian::native == std::endian::little, "file structures are read as they stand");

#pragma pack(push, 1)
struct SKiwiBody {
  std::uint8_t nFixAge = 0;  // seconds; see kNoFix
  std::uint8_t nZero = 0;
  std::uint32_t nGpsSeconds = 0;  // of the week
  std::uint32_t nGpsNanoseconds = 0;
};
#pragma pack(pop)
static_assert(sizeof(SKiwiBody) == 10);

constexpr std::uint8_t kNoFix = 255;
constexpr std::int64_t kWeek = 604'800;
constexpr std::int64_t kNanoseconds = 1'000'000'000;
constexpr std::int64_t kFirstChunk = 12;  // behind "RIFF", its size and "WAVE"
constexpr std::size_t kMostRuns = 1'000'000;
constexpr std::int64_t kLeastBytesPerChunk = 256;
// A name tells when the file was made, by the clock of the computer that wrote it.
constexpr std::int64_t kMostApart = 10;

// Seconds by which GPS time is ahead of UTC from a moment on.
struct SLeap {
  std::int64_t nFrom;
  std::int64_t nSeconds;
};
constexpr std::array kLeaps = {
    SLeap{1'483'228'800, 18},  // 2017-01-01
    SLeap{1'435'708'800, 17},  // 2015-07-01
    SLeap{1'341'100'800, 16},  // 2012-07-01
};
constexpr std::int64_t kGpsEpoch = 315'964'800;  // 1980-01-06

std::int64_t LeapAt(std::int64_t seconds) {
  for (const SLeap& leap : kLeaps) {
    if (seconds >= leap.nFrom) return leap.nSeconds;
  }
  return 15;
}

// The heads of chunks lie so close to each other that a stretch with many of them is read at once.
class CHeadReader {
 public:
  explicit CHeadReader(CFile& file) : m_file(file) {}

  template <class Head>
  bool Read(std::int64_t position, Head& head) {
    constexpr auto kBytes = static_cast<std::int64_t>(sizeof(Head));
    if (position < m_nBegin || position + kBytes > m_nBegin + m_nBytes) {
      if (!m_file.Seek(position)) return false;
      m_bytes.resize(kStretch);
      m_nBegin = position;
      m_nBytes = static_cast<std::int64_t>(m_file.Read(m_bytes.data(), m_bytes.size()));
      if (m_nBytes < kBytes) return false;
    }
    std::memcpy(&head, m_bytes.data() + (position - m_nBegin), sizeof(Head));
    return true;
  }

 private:
  static constexpr std::size_t kStretch = 262'144;

  CFile& m_file;
  std::vector<std::uint8_t> m_bytes;
  std::int64_t m_nBegin = 0;
  std::int64_t m_nBytes = 0;
};

// Where the next block begins, from a position on: the head of its "kiwi" chunk, whose size never changes. -1 when
// there is none before `end`, or when the file cannot be read.
std::int64_t NextBlock(CFile& file, std::int64_t position, std::int64_t end) {
  constexpr std::string_view kHead("kiwi\x0a\0\0\0", sizeof(SChunkHeader));
  constexpr std::size_t kStretch = 262'144;
  std::string bytes;
  while (position + static_cast<std::int64_t>(kHead.size()) <= end) {
    bytes.resize(static_cast<std::size_t>(std::min<std::int64_t>(kStretch, end - position)));
    if (!file.Seek(position) || file.Read(bytes.data(), bytes.size()) != bytes.size()) return -1;
    const std::size_t found = bytes.find(kHead);
    if (found != std::string::npos) return position + static_cast<std::int64_t>(found);
    // A head may begin at the end of what was read.
    position += static_cast<std::int64_t>(bytes.size() - (kHead.size() - 1));
  }
  return -1;
}

// Pieces of one size at one distance become one run.
void AddPiece(SSampleLayout& layout, std::int64_t offset, std::int64_t frames) {
  if (layout.runs.empty()) {
    layout.runs.push_back({offset, frames, frames, 0});
    return;
  }
  SSampleRun& run = layout.runs.back();
  const std::int64_t pieces = (run.nFrames + run.nPieceFrames - 1) / run.nPieceFrames;
  const std::int64_t stride = run.nStride != 0 ? run.nStride : offset - run.nOffset;
  const bool isWhole = run.nFrames % run.nPieceFrames == 0;
  if (isWhole && frames <= run.nPieceFrames && offset == run.nOffset + pieces * stride) {
    run.nStride = stride;
    run.nFrames += frames;
  } else {
    layout.runs.push_back({offset, frames, frames, 0});
  }
}

}  // namespace

std::optional<SExactTime> KiwiStart(std::int64_t nameSeconds, const SGpsTime& gps) {
  if (gps.nSeconds >= kWeek || gps.nNanoseconds >= kNanoseconds) return std::nullopt;
  const std::int64_t gpsName = nameSeconds - kGpsEpoch + LeapAt(nameSeconds);
  std::int64_t apart = (std::int64_t{gps.nSeconds} - gpsName % kWeek) % kWeek;
  if (apart > kWeek / 2) apart -= kWeek;
  if (apart < -kWeek / 2) apart += kWeek;
  if (std::abs(apart) > kMostApart) return std::nullopt;
  return SExactTime{nameSeconds + apart, gps.nNanoseconds};
}

bool ReadKiwi(CFile& file, std::uint32_t frameBytes, SForeignFile& found) {
  if (frameBytes == 0) return false;
  CHeadReader heads(file);
  SSampleLayout layout;
  std::optional<SKiwiBody> stamp;
  bool isKiwi = false;
  bool wasCut = false;
  std::uint32_t usualBytes = 0;
  std::int64_t wrongSizes = 0;
  std::int64_t firstWrong = 0;
  const std::int64_t length = file.Length();
  // Two chunks belong to a block of some 2,000 bytes. What claims many more is made to hold the reader.
  std::int64_t chunksLeft = kMaxChunks + length / kLeastBytesPerChunk;
  for (std::int64_t position = kFirstChunk; position + static_cast<std::int64_t>(sizeof(SChunkHeader)) <= length;) {
    if (--chunksLeft < 0) return false;
    SChunkHeader chunk;
    if (!heads.Read(position, chunk)) return false;
    position += static_cast<std::int64_t>(sizeof(chunk));
    const std::int64_t left = length - position;
    if (IsChunk(chunk.id, "kiwi") && chunk.nSize == sizeof(SKiwiBody) && left >= chunk.nSize) {
      isKiwi = true;
      SKiwiBody body;
      if (layout.runs.empty()) {
        if (!heads.Read(position, body)) return false;
        stamp = body;
      }
    } else if (IsChunk(chunk.id, "data")) {
      // The first chunk of samples tells whether the file is one of these.
      if (!isKiwi) return false;
      std::int64_t bytes = std::min<std::int64_t>(chunk.nSize, left);
      // All blocks but the last are of one size. Of one that is not, or behind which no other begins, the size may be
      // wrong, and heads of blocks must not be taken for samples.
      SChunkHeader next;
      const bool isLast = position + bytes + static_cast<std::int64_t>(sizeof(next)) > length;
      if (!isLast && !heads.Read(position + bytes, next)) return false;
      const bool hasNext = !isLast && IsChunk(next.id, "kiwi");
      if (chunk.nSize != usualBytes || !hasNext) {
        const std::int64_t block = NextBlock(file, position, hasNext || isLast ? position + bytes : length);
        if (file.FirstError() != 0) return false;
        if (block >= 0) {
          if (wrongSizes++ == 0) firstWrong = position;
          bytes = block - position;
          chunk.nSize = static_cast<std::uint32_t>(bytes);
        }
      }
      usualBytes = chunk.nSize;
      wasCut = wasCut || bytes < chunk.nSize;
      const std::int64_t frames = bytes / frameBytes;
      if (frames > 0) AddPiece(layout, position, frames);
      if (layout.runs.size() > kMostRuns) return false;
    }
    position += chunk.nSize;
  }
  if (layout.runs.empty()) return false;
  if (wrongSizes > 0) {
    found.warnings.push_back(Format(
        "blocks of samples that tell a wrong size: %lld, the first at byte %lld; they are read up to the next block",
        static_cast<long long>(wrongSizes), static_cast<long long>(firstWrong)));
  }
  if (wasCut) found.warnings.emplace_back("it ends within a block of samples, read up to its end");
  found.strSource = "KiwiSDR";
  found.strContainer = "kiwi";
  found.layout = layout;
  const bool hasTime = stamp && stamp->nFixAge != kNoFix && (stamp->nGpsSeconds != 0 || stamp->nGpsNanoseconds != 0);
  if (hasTime) found.gpsStart = SGpsTime{stamp->nGpsSeconds, stamp->nGpsNanoseconds};
  return true;
}

}  // namespace carvello
