#include "jobs/list_job.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "jobs/spec_entries.h"
#include "support/formatting.h"
#include "support/platform.h"
#include "support/text.h"

namespace carvello {
namespace {

SMoment At(std::int64_t seconds) {
  return {false, seconds};
}

// By the samples that the entry covers: the times that lists show can differ.
SEntrySpec SpecOf(const OutputEntry& entry, const CRecordingSet& recording) {
  SEntrySpec spec;
  spec.frequency = entry.nOutputFrequency;
  spec.bandwidth = entry.nOutputSampleRate;
  spec.nFileSizeMB = entry.nFileSizeMB;
  spec.format = entry.format;
  spec.b32Bit = entry.nBitsPerSample == 32;
  if (entry.tStart != recording.tStart) spec.start = At(entry.tStart);
  if (entry.nTotalSamples == 0) return spec;
  const std::int64_t rate = std::max<std::int64_t>(recording.nSampleRate, 1);
  const std::int64_t seconds = entry.nTotalSamples / rate;
  if (entry.tEnd - entry.tStart == seconds) {
    spec.end = At(entry.tEnd);
  } else {
    spec.duration = static_cast<std::uint32_t>(std::clamp<std::int64_t>(seconds, 0, UINT32_MAX));
  }
  return spec;
}

// As the entries of the list have it.
std::string OutputFolder(const std::string& folder) {
  return platform::FolderOf(platform::JoinPath(platform::AbsolutePath(folder), "name"));
}

std::optional<std::int64_t> Moved(std::optional<std::int64_t> seconds, std::int64_t by) {
  std::int64_t sum = 0;
  if (!seconds || __builtin_add_overflow(*seconds, by, &sum)) return std::nullopt;
  return sum;
}

}  // namespace

SJobFile JobOfList(const CEntryList& list, const CRecordingSet& recording, const std::string& input,
                   const std::string& output, bool utc) {
  SJobFile job;
  job.strInput = platform::AbsolutePath(input);
  if (!output.empty()) job.strOutput = OutputFolder(output);
  job.bLocalTime = !utc;
  job.recorded = recording.tStart;
  job.entries.reserve(list.Size());
  for (std::size_t i = 0; i < list.Size(); ++i) {
    SEntrySpec spec = SpecOf(list[i], recording);
    std::string folder = platform::FolderOf(list[i].strFileName);
    if (folder != job.strOutput) spec.strOutput = std::move(folder);
    if (const int number = list.NameNumber(i); number != 1) spec.nNameNumber = number;
    job.entries.push_back(std::move(spec));
  }
  return job;
}

void MoveJob(SJobFile& job, std::int64_t start, EMoments moments) {
  if (!job.recorded) return;
  std::int64_t distance = 0;
  if (__builtin_sub_overflow(start, *job.recorded, &distance)) return;
  for (SEntrySpec& spec : job.entries) {
    for (std::optional<SMoment>* pMoment : {&spec.start, &spec.end}) {
      if (!*pMoment || (*pMoment)->bFromStart == (moments == EMoments::AsFarFromStart)) continue;
      const std::optional<std::int64_t> moved = moments == EMoments::AsFarFromStart
                                                    ? Moved((*pMoment)->nSeconds, distance)
                                                    : (*pMoment)->Resolve(*job.recorded);
      if (moved) *pMoment = At(*moved);
    }
  }
  job.recorded = start;
}

namespace {

// Why it was not added.
std::optional<std::string> AddByList(const SEntrySpec& spec, SEntryFields fields, const CRecordingSet& recording,
                                     CEntryList& list) {
  if (*spec.bandwidth < 0 || *spec.bandwidth > std::numeric_limits<std::uint32_t>::max()) {
    return Format("no output has a bandwidth of %lld Hz", static_cast<long long>(*spec.bandwidth));
  }
  std::string error;
  if (!FillFields(spec, recording, fields, error)) return error;
  const auto problem = AddToList(spec, fields, list);
  if (!problem) return std::nullopt;
  return problem->box.strCaption + ": " + problem->box.strText;
}

std::string LabelOf(const SEntrySpec& spec) {
  if (!spec.strLabel.empty() || !spec.frequency || !spec.bandwidth) return spec.strLabel;
  return Format("%s, BW %lld Hz", FormatFrequency64(*spec.frequency).c_str(), static_cast<long long>(*spec.bandwidth));
}

}  // namespace

SRefusedEntries AddJobToList(const SJobFile& job, const SEntryFields& fields, const CRecordingSet& recording,
                             EJobRules rules, CEntryList& list) {
  SRefusedEntries refused;
  for (const SEntrySpec& spec : job.entries) {
    SEntryFields own = fields;
    if (!job.strOutput.empty()) own.strOutputFolder = job.strOutput;
    const auto add = rules == EJobRules::List ? AddByList : AddByCommandLine;
    const std::optional<std::string> reason = add(spec, own, recording, list);
    if (reason && refused.nEntries++ == 0) refused.strFirst = LabelOf(spec) + ": " + *reason;
  }
  return refused;
}

SRefusedEntries RefusedByCommandLine(const SJobFile& job, const CRecordingSet& recording) {
  CEntryList list;
  list.SetRecording(recording, SInfoTexts());
  return AddJobToList(job, SEntryFields(), recording, EJobRules::CommandLine, list);
}

}  // namespace carvello
