#include "overview/overview_cache.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstring>
#include <span>
#include <utility>

#include "overview/check_sum.h"
#include "support/file.h"
#include "support/platform.h"
#include "support/text.h"
#include "support/whole_file.h"

namespace carvello {

namespace {

constexpr const char* kEnding = ".overview";
constexpr const char* kPartEnding = ".part";  // of a file that is not whole yet
constexpr std::array<char, 8> kMagic = {'C', 'a', 'r', 'v', 'O', 'v', '0', '1'};
constexpr std::size_t kRowBytes = 2 * kBaseBins;
constexpr std::int64_t kRowsAtATime = 128;

static_assert(std::endian::native == std::endian::little, "the files are little-endian");

// A file: this, the key, a state for each row, the codes of each row that is known (means, then maxima), and the check
// sum of all that.
struct SHeader {
  std::array<char, 8> magic = kMagic;
  std::int64_t nFrames = 0;
  std::int64_t nRowFrames = 0;
  std::uint64_t nBins = kBaseBins;
  std::uint64_t nKeyBytes = 0;
  std::uint64_t nKnownRows = 0;
};
static_assert(sizeof(SHeader) == 48);

SHeader HeaderOf(const CBaseLevels& base, const std::string& key, const std::vector<ERowState>& states) {
  SHeader header;
  header.nFrames = base.Grid().nFrames;
  header.nRowFrames = base.Grid().nRowFrames;
  header.nKeyBytes = key.size();
  header.nKnownRows = static_cast<std::uint64_t>(
      std::count_if(states.begin(), states.end(), [](ERowState state) { return state != ERowState::Nothing; }));
  return header;
}

std::string KeyOf(const CRecordingSet& recording) {
  std::string key;
  for (const SRecordingFile& file : recording.files) {
    key += platform::AbsolutePath(file.strPath);
    key += '\0';
    key += Format("%lld %lld %lld\n", static_cast<long long>(file.stamp.nSize),
                  static_cast<long long>(file.stamp.nModified), static_cast<long long>(file.nSampleBytes));
    // A file can hold several recordings.
    for (const SSampleRun& run : file.layout.runs) {
      key += Format("%lld %lld %lld %lld\n", static_cast<long long>(run.nOffset), static_cast<long long>(run.nFrames),
                    static_cast<long long>(run.nPieceFrames), static_cast<long long>(run.nStride));
    }
  }
  const SSampleKind& kind = recording.kind;
  key += Format("%s %.17g %.17g", SampleKindName(kind).c_str(), kind.dZero, kind.dFullScale);
  return key;
}

bool EndsWith(const std::string& text, std::string_view ending) {
  return text.size() >= ending.size() && text.compare(text.size() - ending.size(), ending.size(), ending) == 0;
}

// Reads and adds up.
class CCheckedReader {
 public:
  explicit CCheckedReader(CFile& file) : m_file(file) {}

  bool Read(void* buffer, std::size_t bytes) {
    if (!m_file.ReadExactly(buffer, bytes)) return false;
    m_sum.Add(buffer, bytes);
    return true;
  }
  bool EndIsRight() {
    std::uint64_t sum = 0;
    return m_file.ReadExactly(&sum, sizeof(sum)) && sum == m_sum.Value();
  }

 private:
  CFile& m_file;
  CCheckSum m_sum;
};

// Writes and adds up.
class CCheckedWriter {
 public:
  explicit CCheckedWriter(CFile& file) : m_file(file) {}

  bool Write(const void* bytes, std::size_t count) {
    m_sum.Add(bytes, count);
    return m_file.Write(bytes, count) == count;
  }
  bool WriteEnd() {
    const std::uint64_t sum = m_sum.Value();
    return m_file.Write(&sum, sizeof(sum)) == sizeof(sum);
  }

 private:
  CFile& m_file;
  CCheckSum m_sum;
};

}  // namespace

COverviewCache::COverviewCache(std::string folder, std::int64_t mostBytes, const CRecordingSet& recording)
    : m_strFolder(std::move(folder)), m_nMostBytes(mostBytes) {
  if (m_strFolder.empty()) return;
  m_strKey = KeyOf(recording);
  CCheckSum name;
  name.Add(m_strKey.data(), m_strKey.size());
  m_strPath =
      platform::JoinPath(m_strFolder, Format("%016llx%s", static_cast<unsigned long long>(name.Value()), kEnding));
}

bool COverviewCache::Load(CBaseLevels& base) const {
  CFile file;
  if (m_strPath.empty() || !file.Open(m_strPath, platform::EOpenMode::ReadShared)) return false;
  CCheckedReader reader(file);
  SHeader header;
  if (!reader.Read(&header, sizeof(header))) return false;
  // Nothing that it says of its sizes is taken for granted: they are what this recording's must be.
  const SCellGrid& grid = base.Grid();
  const auto rows = static_cast<std::size_t>(base.Rows());
  if (header.magic != kMagic || header.nFrames != grid.nFrames || header.nRowFrames != grid.nRowFrames ||
      header.nBins != kBaseBins || header.nKeyBytes != m_strKey.size() || header.nKnownRows > rows) {
    return false;
  }
  const std::uint64_t bytes = sizeof(SHeader) + m_strKey.size() + rows + header.nKnownRows * kRowBytes + 8;
  if (file.Length() != static_cast<std::int64_t>(bytes)) return false;
  std::string key(m_strKey.size(), '\0');
  std::vector<std::uint8_t> states(rows);
  if (!reader.Read(key.data(), key.size()) || key != m_strKey || !reader.Read(states.data(), rows)) return false;

  std::vector<std::uint8_t> codes(kRowsAtATime * kRowBytes);
  std::uint64_t left = header.nKnownRows;
  std::size_t place = codes.size();
  std::size_t end = place;
  for (std::size_t row = 0; row < rows; ++row) {
    if (states[row] == 0) continue;
    if (states[row] > static_cast<std::uint8_t>(ERowState::Whole)) return false;
    if (place == end) {
      place = 0;
      end = static_cast<std::size_t>(std::min<std::uint64_t>(left, kRowsAtATime)) * kRowBytes;
      if (end == 0 || !reader.Read(codes.data(), end)) return false;
    }
    const std::span<const std::uint8_t> found(&codes[place], kRowBytes);
    base.Restore(static_cast<std::int64_t>(row), static_cast<ERowState>(states[row]), found.first(kBaseBins),
                 found.last(kBaseBins));
    place += kRowBytes;
    --left;
  }
  return left == 0 && reader.EndIsRight();
}

bool COverviewCache::Write(const CBaseLevels& base, const std::string& path) const {
  CFile file;
  // What a kill left under the name goes; what another program is writing stays.
  if (!file.Open(path, platform::EOpenMode::CreateNew) &&
      (!platform::RemoveUnusedFile(path) || !file.Open(path, platform::EOpenMode::CreateNew))) {
    return false;
  }
  CCheckedWriter writer(file);
  // A row that gets further while this goes on is written with the state that it had, which is less than is known.
  const std::vector<ERowState> states = base.States();
  const SHeader header = HeaderOf(base, m_strKey, states);
  bool good = writer.Write(&header, sizeof(header)) && writer.Write(m_strKey.data(), m_strKey.size()) &&
              writer.Write(states.data(), states.size());
  std::vector<std::uint8_t> codes;
  SCodeRow row;
  for (std::size_t i = 0; good && i < states.size(); ++i) {
    if (states[i] != ERowState::Nothing) {
      base.Copy(static_cast<std::int64_t>(i), row);
      codes.insert(codes.end(), row.mean.begin(), row.mean.end());
      codes.insert(codes.end(), row.maximum.begin(), row.maximum.end());
    }
    if (codes.size() >= kRowsAtATime * kRowBytes || i + 1 == states.size()) {
      good = writer.Write(codes.data(), codes.size());
      codes.clear();
    }
  }
  good = good && writer.WriteEnd();
  good = file.Close() && good;
  if (!good) platform::RemoveFile(path);
  return good;
}

bool COverviewCache::Save(const CBaseLevels& base) const {
  if (m_strPath.empty() || !CreateFolders(m_strFolder)) return false;
  const std::string part = m_strPath + kPartEnding;
  if (!Write(base, part)) return false;
  if (!platform::RenameFile(part, m_strPath, true)) {
    platform::RemoveFile(part);
    return false;
  }
  MakeRoom();
  return true;
}

void COverviewCache::MakeRoom() const {
  struct SKept {
    std::int64_t nModified;
    std::int64_t nSize;
    std::string strPath;
  };
  const auto names = platform::ListFolder(m_strFolder);
  if (!names) return;
  std::vector<SKept> kept;
  std::int64_t bytes = 0;
  for (const std::string& name : *names) {
    const std::string path = platform::JoinPath(m_strFolder, name);
    if (EndsWith(name, kPartEnding)) platform::RemoveUnusedFile(path);
    if (!EndsWith(name, kEnding)) continue;
    const auto status = platform::GetFileStatus(path);
    if (!status || !status->bRegular) continue;
    bytes += status->nSize;
    if (path != m_strPath) kept.push_back({status->nModified, status->nSize, path});
  }
  std::sort(kept.begin(), kept.end(), [](const auto& a, const auto& b) { return a.nModified < b.nModified; });
  for (const SKept& file : kept) {
    if (bytes <= m_nMostBytes) return;
    if (platform::RemoveFile(file.strPath)) bytes -= file.nSize;
  }
}

}  // namespace carvello
