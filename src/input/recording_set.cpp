#include "input/recording_set.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "input/chained_set.h"
#include "input/container_sigmf.h"
#include "input/foreign_set.h"
#include "input/format_chunk.h"
#include "input/lookup_cache.h"
#include "input/member_memory.h"
#include "input/numbered_set.h"
#include "input/recording_names.h"
#include "input/sigmf_files.h"
#include "input/source_recognition.h"
#include "recording/sigmf_writer.h"
#include "support/formatting.h"
#include "support/platform.h"
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

// Programs that write local time; all others write UTC, or what counts as such.
bool WritesLocalTime(const CRecordingSet& set) {
  return set.strSourceName == kSourceSpectraVue234 || set.strSourceName == kSourceWinradio;
}

void ShiftTimes(std::int64_t seconds, CRecordingSet& set) {
  set.tStart += seconds;
  set.tEnd += seconds;
  for (SRecordingFile& file : set.files) {
    if (file.tStart != 0) file.tStart = static_cast<std::uint32_t>(file.tStart + seconds);
  }
}

std::int64_t Milliseconds(std::int64_t seconds, std::uint32_t rest) {
  return seconds * 1000 + rest;
}

void SetEnd(std::int64_t milliseconds, CRecordingSet& set) {
  set.tEnd = milliseconds / 1000;
  set.nEndMilliseconds = static_cast<std::uint32_t>(milliseconds % 1000);
}

// What is given goes before what the files told.
bool TakeGiven(const SGivenFacts& given, CRecordingSet& set, CMyStringArray& log) {
  const std::string& name = set.files.front().strPath;
  if (given.kind) {
    const std::uint32_t frameBytes = FrameBytes(set.format.Format);
    if (given.kind->FrameBytes() != frameBytes) {
      log.Add(Format("[ERROR] %s: its frames have %u bytes, those of %s have %u", name.c_str(), frameBytes,
                     SampleKindName(*given.kind).c_str(), given.kind->FrameBytes()));
      return false;
    }
    set.kind = GivenKind(*given.kind, set.kind);
    set.bFloat = set.kind.number == ENumber::Float;
  }
  if (given.nCentre) set.nRadioCenterFreq = *given.nCentre;
  if (given.zone && !given.start && set.strMetadata.empty() && set.strSourceName != kSourceUnknown) {
    ShiftTimes(MovedToZone(set.tStart, {WritesLocalTime(set), 0}, *given.zone) - set.tStart, set);
  }
  if (given.start) {
    ShiftTimes(given.start->nSeconds - set.tStart, set);
    SetEnd(
        Milliseconds(set.tEnd, set.nEndMilliseconds) + given.start->nNanoseconds / 1'000'000 - set.nStartMilliseconds,
        set);
    set.nStartNanoseconds = given.start->nNanoseconds;
    set.nStartMilliseconds = given.start->nNanoseconds / 1'000'000;
  }
  if (given.nSampleRate) {
    set.nSampleRate = set.nBandwidth = *given.nSampleRate;
    set.nBytesPerSecond = WholeBytesPerSecond(set.format.Format, set.nSampleRate);
    const std::int64_t frames = set.TotalBytes() / FrameBytes(set.format.Format);
    set.dDuration = static_cast<double>(frames) / set.nSampleRate;
    SetEnd(Milliseconds(set.tStart, set.nStartMilliseconds) + static_cast<std::int64_t>(set.dDuration * 1000.0), set);
  }
  return true;
}

// Nothing but its format is known of the file; what stands beside it may tell more.
void TellOfMeta(const std::string& path, CMyStringArray& log) {
  const std::string meta = SigMfMetaPath(path);
  if (!platform::GetFileStatus(meta)) return;
  log.Add(Format("[WARNING] %s: %s beside it may tell its frequency and time; select that one", path.c_str(),
                 platform::NameOf(meta).c_str()));
}

}  // namespace

bool IsSameRecording(const CRecordingSet& a, const CRecordingSet& b) {
  const auto same = [](const SRecordingFile& x, const SRecordingFile& y) {
    return x.strPath == y.strPath && x.stamp == y.stamp && x.nSampleBytes == y.nSampleBytes && x.layout == y.layout;
  };
  return a.tStart == b.tStart && a.tEnd == b.tEnd && a.nSampleRate == b.nSampleRate &&
         a.nRadioCenterFreq == b.nRadioCenterFreq && a.kind == b.kind &&
         std::equal(a.files.begin(), a.files.end(), b.files.begin(), b.files.end(), same);
}

std::vector<std::string> CRecordingSet::AllFiles() const {
  std::vector<std::string> all;
  for (const SRecordingFile& file : files) {
    all.push_back(file.strPath);
    for (const SDescribingFile& describing : file.describedBy) all.push_back(describing.strPath);
  }
  return all;
}

bool IsFileOf(const CRecordingSet& set, const std::string& path) {
  const auto same = [&path](const std::string& own) {
    return !own.empty() && platform::FileNamesEqual(platform::AbsolutePath(own), path);
  };
  const std::vector<std::string> files = set.AllFiles();
  return same(set.strSelected) || std::any_of(files.begin(), files.end(), same);
}

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

bool AnalyseRecordingSet(const std::string& selectedFile, CRecordingSet& set, CMyStringArray& log,
                         const SGivenFacts& given) {
  set = {};
  set.strSelected = selectedFile;
  // A dataset without its meta file is what the user says of it.
  const bool isSigMf = IsSigMfName(selectedFile) && !(given.kind && IsLoneSigMfData(selectedFile));
  if (isSigMf) return DescribeSigMf(selectedFile, given, set, log);
  if (given.nPart > 1) {
    log.Add(Format("[ERROR] %s: there is no part %u, the recording has one", selectedFile.c_str(), given.nPart));
    return false;
  }
  SFileFacts selected = FactsForSet(selectedFile);
  set.bReadFailed = selected.nError != 0;
  // Samples and nothing else, if the user says so.
  if (!selected.bRecording && !selected.foreign && given.kind && selected.nError == 0 && selected.nFileSize > 0) {
    selected.foreign = ReadForeignFile(selectedFile, {}, true);
    if (selected.foreign && selected.foreign->nError != 0) {
      set.bReadFailed = true;
      log.Add(Format("[ERROR] %s: cannot be read: %s", selectedFile.c_str(),
                     SystemErrorText(selected.foreign->nError).c_str()));
      return false;
    }
  }
  if (selected.foreign) return DescribeForeignSet(selectedFile, selected, given, set, log);
  if (!selected.bRecording) {
    const char* const kind = selected.nError == 0 ? UnreadKind(platform::NameOf(selectedFile)) : nullptr;
    const std::string reason = kind == nullptr ? selected.strError : Format("it holds %s, which are not read", kind);
    log.Add(Format("[ERROR] %s: %s", selectedFile.c_str(), reason.c_str()));
    return false;
  }
  const bool described = selected.strXml.empty() ? DescribeChainedSet(selectedFile, selected, given, set, log)
                                                 : DescribeNumberedSet(selectedFile, selected, set, log);
  if (described && set.strSourceName == kSourceUnknown) TellOfMeta(selectedFile, log);
  return described && (given.IsEmpty() || TakeGiven(given, set, log));
}

}  // namespace carvello
