#include "input/lookup_cache.h"

#include <atomic>
#include <optional>
#include <unordered_map>
#include <utility>

#include "input/file_stamp.h"
#include "input/format_chunk.h"
#include "input/source_recognition.h"
#include "input/wave_file_reader.h"
#include "support/file.h"
#include "support/formatting.h"
#include "support/mutex.h"
#include "support/platform.h"
#include "support/text.h"

namespace carvello {

namespace {

constexpr std::size_t kBuckets = 99'991;

constexpr std::size_t kUsualXmlBytes = 65'536;
constexpr std::size_t kMaxLargeXmlBytes = 64U << 20U;

std::atomic<LookupTrace> s_pTrace = nullptr;
std::atomic<std::uint64_t> s_nHits = 0;
std::atomic<std::uint64_t> s_nWalks = 0;
std::atomic<std::size_t> s_nLargeXmlBytes = 0;  // of texts above the usual size, kept or once kept

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
      const CLockGuard lock(m_lock);
      if (const auto* entry = Entry(fileName, stamp)) found = entry->second;
    }
    if (found) ++s_nHits;
    Trace(Format("Lookup status %s, filename %s", found ? "OK" : "FAIL", fileName.c_str()));
    return found;
  }

  void Clear() {
    const CLockGuard lock(m_lock);
    m_entries.clear();
  }

  bool Has(const std::string& fileName, const SFileStamp& stamp) {
    const CLockGuard lock(m_lock);
    return Entry(fileName, stamp) != nullptr;
  }

  void Store(const std::string& fileName, const SFileStamp& stamp, const Value& value) {
    const CLockGuard lock(m_lock);
    if (m_entries.empty()) m_entries.rehash(kBuckets);
    m_entries.insert_or_assign(fileName, std::pair(stamp, value));
  }

 private:
  using Stored = std::pair<SFileStamp, Value>;

  // nullptr for a file not stored, or changed since.
  const Stored* Entry(const std::string& fileName, const SFileStamp& stamp) const CARVELLO_NEEDS(m_lock) {
    const auto entry = m_entries.find(fileName);
    return entry != m_entries.end() && entry->second.first == stamp ? &entry->second : nullptr;
  }

  CMutex m_lock;
  std::unordered_map<std::string, Stored> m_entries CARVELLO_GUARDED_BY(m_lock);
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

SWalked Walk(const std::string& fileName) {
  ++s_nWalks;
  CWaveFileReader reader;
  SScanResult scan;
  const bool found = reader.ScanChunks(fileName, scan);
  SWalked walked;
  SFileFacts& facts = walked.facts;
  facts.strError = scan.strError;
  facts.nError = scan.nError;
  facts.warnings = std::move(scan.warnings);
  if (found && FrameBytes(scan.format.Format) == 0) {
    facts.strError = scan.bBlankFormat ? "its format holds zeros, it was never filled in" : "no format chunk found";
  }
  if (found && scan.nDataBytes == 0) facts.strError = "the data chunk is empty";
  facts.bRecording = found && FrameBytes(scan.format.Format) > 0 && scan.nDataBytes > 0;
  facts.strXml = std::move(scan.strXml);
  facts.source = scan.source;
  facts.format = scan.format;
  facts.bRF64 = scan.bRF64;
  facts.bCutShort = scan.bCutShort;
  facts.nFileSize = scan.stamp.nSize;
  facts.stamp = scan.stamp;
  facts.nSampleBytes = facts.bRecording ? scan.nSampleBytes : 0;
  walked.nDataBytes = facts.bRecording ? scan.nDataBytes : 0;
  const bool described = !facts.strXml.empty() || (facts.bRecording && facts.source.strSourceName != kSourceUnknown &&
                                                   !facts.source.strSourceName.empty());
  if (!described && facts.nError == 0) facts.foreign = ReadForeignFile(fileName, scan);
  if (facts.foreign && facts.foreign->nError != 0) {
    facts.nError = facts.foreign->nError;
    facts.strError = "cannot be read: " + SystemErrorText(facts.nError);
    facts.bRecording = false;
    facts.foreign.reset();
  }
  if (described && facts.strXml.empty()) {
    const std::string contradiction = NameContradiction(fileName, facts.source);
    if (!contradiction.empty()) facts.warnings.push_back(contradiction);
  }
  return walked;
}

SWalked WalkAndStore(const std::string& fileName, const SFileStamp& stamp) {
  SWalked walked = Walk(fileName);
  // A file that could not be read may be in order the next time.
  if (walked.facts.nError != 0) return walked;
  // Metadata takes a few kilobytes. Files that are made to fill the memory are walked again each time.
  const std::size_t bytes = walked.facts.strXml.size();
  if (bytes > kUsualXmlBytes && (s_nLargeXmlBytes += bytes) > kMaxLargeXmlBytes) return walked;
  MetadataMap().Store(fileName, stamp, walked.facts);
  DataSizeMap().Store(fileName, stamp, walked.nDataBytes);
  return walked;
}

}  // namespace

SFileLook LookAtFile(const std::string& fileName) {
  SFileLook look{platform::GetFileStatus(fileName), {}, 0};
  if (!look.status) {
    look.nError = platform::LastError();
    look.strHindrance = SystemErrorText(look.nError);
  } else if (look.status->bDirectory) {
    look.strHindrance = "this is a folder, a recording file is needed";
  } else if (!look.status->bRegular) {
    look.strHindrance = "this is a pipe, socket or device, a recording file is needed";
  } else if (look.status->nSize == 0) {
    look.strHindrance = "the file is empty";
  } else if (!CFile().Open(fileName, platform::EOpenMode::ReadShared)) {
    look.nError = platform::LastError();
    look.strHindrance = "cannot be opened: " + SystemErrorText(look.nError);
  }
  return look;
}

SFileFacts LookupMetadata(const std::string& fileName) {
  const SFileLook look = LookAtFile(fileName);
  SFileFacts unknown;
  unknown.strError = look.strHindrance;
  unknown.nError = look.nError;
  if (!unknown.strError.empty()) return unknown;
  const SFileStamp stamp(*look.status);
  std::optional<SFileFacts> facts = MetadataMap().Find(fileName, stamp);
  return facts ? std::move(*facts) : WalkAndStore(fileName, stamp).facts;
}

std::int64_t LookupDataSize(const std::string& fileName, std::uint32_t* error) {
  const SFileLook look = LookAtFile(fileName);
  if (error != nullptr) *error = look.nError;
  if (!look.strHindrance.empty()) return 0;
  const SFileStamp stamp(*look.status);
  if (const std::optional<std::int64_t> dataBytes = DataSizeMap().Find(fileName, stamp)) return *dataBytes;
  const SWalked walked = WalkAndStore(fileName, stamp);
  if (error != nullptr) *error = walked.facts.nError;
  return walked.nDataBytes;
}

bool IsMetadataKnown(const std::string& fileName) {
  const std::optional<platform::FileStatus> status = platform::GetFileStatus(fileName);
  return status && MetadataMap().Has(fileName, SFileStamp(*status));
}

void ForgetLookups() {
  MetadataMap().Clear();
  DataSizeMap().Clear();
}

SLookupStatistics LookupCacheStatistics() {
  return {s_nHits, s_nWalks};
}

void SetLookupTrace(LookupTrace trace) {
  s_pTrace = trace;
}

}  // namespace carvello
