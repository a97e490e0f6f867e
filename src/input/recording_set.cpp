#include "input/recording_set.h"

#include <utility>

#include "input/lookup_cache.h"
#include "input/numbered_set.h"
#include "support/text.h"

namespace carvello {

namespace {

constexpr std::int64_t kMillion = 1'000'000;

}  // namespace

void CRecordingSet::AddFile(SRecordingFile file) {
  nTotalMillions += file.nDataBytes / kMillion;
  nTotalRemainder += file.nDataBytes % kMillion;
  nTotalMillions += nTotalRemainder / kMillion;
  nTotalRemainder %= kMillion;
  files.push_back(std::move(file));
}

bool AnalyseRecordingSet(const std::string& selectedFile, CRecordingSet& set, CMyStringArray& log) {
  set = {};
  const SFileFacts selected = LookupMetadata(selectedFile);
  if (!selected.bRecording) {
    log.Add(Format("[ERROR] %s: %s", selectedFile.c_str(), selected.strError.c_str()));
    return false;
  }
  if (!selected.strXml.empty()) return DescribeNumberedSet(selectedFile, selected, set, log);
  log.Add(Format("[ERROR] %s: no XML metadata that says where and when it was recorded", selectedFile.c_str()));
  return false;
}

}  // namespace carvello
