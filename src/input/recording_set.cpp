#include "input/recording_set.h"

#include <optional>
#include <utility>

#include "input/chained_set.h"
#include "input/lookup_cache.h"
#include "input/member_memory.h"
#include "input/numbered_set.h"
#include "support/text.h"

namespace carvello {

namespace {

constexpr std::int64_t kMillion = 1'000'000;

// What tells which set the file belongs to: its own facts, or those of the member that it was described like.
SFileFacts FactsForSet(const std::string& selectedFile) {
  if (!IsMetadataKnown(selectedFile)) {
    if (const std::optional<std::string> read = FileReadFor(selectedFile)) {
      SFileFacts facts = LookupMetadata(*read);
      if (!facts.strXml.empty()) return facts;
    }
  }
  return LookupMetadata(selectedFile);
}

}  // namespace

std::int64_t CRecordingSet::FileBytes() const {
  std::int64_t bytes = 0;
  for (const SRecordingFile& file : files) bytes += file.stamp.nSize;
  return bytes;
}

void CRecordingSet::AddFile(SRecordingFile file) {
  nTotalMillions += file.nDataBytes / kMillion;
  nTotalRemainder += file.nDataBytes % kMillion;
  nTotalMillions += nTotalRemainder / kMillion;
  nTotalRemainder %= kMillion;
  files.push_back(std::move(file));
}

bool AnalyseRecordingSet(const std::string& selectedFile, CRecordingSet& set, CMyStringArray& log) {
  set = {};
  const SFileFacts selected = FactsForSet(selectedFile);
  set.bReadFailed = selected.nError != 0;
  if (!selected.bRecording) {
    log.Add(Format("[ERROR] %s: %s", selectedFile.c_str(), selected.strError.c_str()));
    return false;
  }
  return selected.strXml.empty() ? DescribeChainedSet(selectedFile, selected, set, log)
                                 : DescribeNumberedSet(selectedFile, selected, set, log);
}

}  // namespace carvello
