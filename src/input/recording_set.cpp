#include "input/recording_set.h"

#include <utility>

#include "input/chained_set.h"
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
  return selected.strXml.empty() ? DescribeChainedSet(selectedFile, selected, set, log)
                                 : DescribeNumberedSet(selectedFile, selected, set, log);
}

}  // namespace carvello
