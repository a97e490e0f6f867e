#include "input/lookup_cache.h"

#include <atomic>
#include <mutex>
#include <optional>
#include <unordered_map>
#include <utility>

#include "input/file_stamp.h"
#include "input/format_chunk.h"
#include "input/wave_file_reader.h"
#include "support/formatting.h"
#include "support/platform.h"
#include "support/text.h"

namespace carvello {

namespace {

constexpr std::size_t kBuckets = 99'991;

std::atomic<LookupTrace> s_pTrace = nullptr;
std::atomic<std::uint64_t> s_nHits = 0;
std::atomic<std::uint64_t> s_nWalks = 0;

void Trace(const std::string& line) {
  if (const LookupTrace trace = s_pTrace) trace(line);
}

template <class Value>
class CLookupMap {
 public:
  CLookupMap() = default;
  ~CLookupMap() { Trace("Reset cache"); }
  CLookupMap(const CLookupMap&) = delete;
  CLookupMap& operator=(const CLookupMap&) = delete;

  std::optional<Value> Find(const std::string& fileName, const SFileStamp& stamp) {
    std::optional<Value> found;
    {
      const std::lock_guard lock(m_lock);
      if (const auto* entry = Entry(fileName, stamp)) found = entry->second;
    }
    if (found) ++s_nHits;
    Trace(Format("Lookup status %s, filename %s", found ? "OK" : "FAIL", fileName.c_str()));
    return found;
  }

  bool Has(const std::string& fileName, const SFileStamp& stamp) {
    const std::lock_guard lock(m_lock);
    return Entry(fileName, stamp) != nullptr;
  }

  void Store(const std::string& fileName, const SFileStamp& stamp, const Value& value) {
    const std::lock_guard lock(m_lock);
    if (m_entries.empty()) m_entries.rehash(kBuckets);
    m_entries.insert_or_assign(fileName, std::pair(stamp, value));
  }

 private:
  using Stored = std::pair<SFileStamp, Value>;

  // With the lock held; nullptr for a file not stored, or changed since.
  const Stored* Entry(const std::string& fileName, const SFileStamp& stamp) const {
    const auto entry = m_entries.find(fileName);
    return entry != m_entries.end() && entry->second.first == stamp ? &entry->second : nullptr;
  }

  std::mutex m_lock;
  std::unordered_map<std::string, Stored> m_entries;
};

CLookupMap<SFileFacts>& MetadataMap() {
  static CLookupMap<SFileFacts> map;
  return map;
}

CLookupMap<std::int64_t>& DataSizeMap() {
  static CLookupMap<std::int64_t> map;
  return map;
}

struct SWalked {
  SFileFacts facts;
  std::int64_t nDataBytes = 0;
};

SWalked Walk(const std::string& fileName, const SFileStamp& stamp) {
  ++s_nWalks;
  CWaveFileReader reader;
  SScanResult scan;
  const bool found = reader.ScanChunks(fileName, scan);
  SWalked walked;
  SFileFacts& facts = walked.facts;
  facts.strError = scan.strError;
  if (found && FrameBytes(scan.format.Format) == 0) facts.strError = "no format chunk found";
  if (found && scan.nDataBytes == 0) facts.strError = "the data chunk is empty";
  facts.bRecording = found && FrameBytes(scan.format.Format) > 0 && scan.nDataBytes > 0;
  facts.strXml = std::move(scan.strXml);
  facts.source = scan.source;
  facts.format = scan.format;
  facts.bRF64 = scan.bRF64;
  facts.bCutShort = scan.bCutShort;
  facts.nFileSize = stamp.nSize;
  facts.stamp = stamp;
  facts.nSampleBytes = facts.bRecording ? scan.nDataBytes : 0;
  walked.nDataBytes = facts.nSampleBytes;
  return walked;
}

SWalked WalkAndStore(const std::string& fileName, const SFileStamp& stamp) {
  SWalked walked = Walk(fileName, stamp);
  MetadataMap().Store(fileName, stamp, walked.facts);
  DataSizeMap().Store(fileName, stamp, walked.nDataBytes);
  return walked;
}

}  // namespace

std::string FileHindrance(const std::string& fileName, const std::optional<platform::FileStatus>& status) {
  if (!status) return SystemErrorText();
  if (status->bDirectory) return "this is a folder, a recording file is needed";
  if (!status->bRegular) return "this is a pipe, socket or device, a recording file is needed";
  if (status->nSize == 0) return "the file is empty";
  return platform::IsReadable(fileName) ? std::string() : SystemErrorText();
}

SFileFacts LookupMetadata(const std::string& fileName) {
  const std::optional<platform::FileStatus> status = platform::GetFileStatus(fileName);
  SFileFacts unknown;
  unknown.strError = FileHindrance(fileName, status);
  if (!unknown.strError.empty()) return unknown;
  const SFileStamp stamp(*status);
  std::optional<SFileFacts> facts = MetadataMap().Find(fileName, stamp);
  return facts ? std::move(*facts) : WalkAndStore(fileName, stamp).facts;
}

std::int64_t LookupDataSize(const std::string& fileName) {
  const std::optional<platform::FileStatus> status = platform::GetFileStatus(fileName);
  if (!FileHindrance(fileName, status).empty()) return 0;
  const SFileStamp stamp(*status);
  const std::optional<std::int64_t> dataBytes = DataSizeMap().Find(fileName, stamp);
  return dataBytes ? *dataBytes : WalkAndStore(fileName, stamp).nDataBytes;
}

bool IsMetadataKnown(const std::string& fileName) {
  const std::optional<platform::FileStatus> status = platform::GetFileStatus(fileName);
  return status && MetadataMap().Has(fileName, SFileStamp(*status));
}

SLookupStatistics LookupCacheStatistics() {
  return {s_nHits, s_nWalks};
}

void SetLookupTrace(LookupTrace trace) {
  s_pTrace = trace;
}

}  // namespace carvello
