#include "cli/cut_plan.h"

#include <algorithm>
#include <limits>
#include <optional>

#include "cli/readable.h"
#include "engine/output_rate.h"
#include "support/formatting.h"
#include "support/text.h"

namespace carvello {
namespace {

constexpr std::int64_t kSmallestBandwidth = 10;  // Hz

std::string AcceptedBandwidth(const CRecordingSet& recording) {
  return Format("Accepted: whole Hz from %lld to the input's sample rate, %u",
                static_cast<long long>(kSmallestBandwidth), recording.nSampleRate);
}

std::string AcceptedTimes(const CRecordingSet& recording) {
  const std::string from = FormatIsoTime(recording.tStart);
  const std::string to = FormatIsoTime(recording.tEnd);
  return Format(
      "Accepted: a start from %s (+0) to before %s (+%lld), an end after the start and not after %s, a "
      "duration that is not 0 and ends before %s",
      from.c_str(), to.c_str(), static_cast<long long>(recording.tEnd - recording.tStart), to.c_str(), to.c_str());
}

// The fields of the entry list but for the frequency. False when an entry like this cannot be asked of the list.
bool MakeFields(const SEntrySpec& spec, const CRecordingSet& recording, SEntryFields& fields, std::string& error) {
  if (*spec.bandwidth < kSmallestBandwidth || *spec.bandwidth > recording.nSampleRate) {
    error = Format("The bandwidth %lld is out of range.\n%s", static_cast<long long>(*spec.bandwidth),
                   AcceptedBandwidth(recording).c_str());
    return false;
  }
  fields.nBandwidth = static_cast<std::uint32_t>(*spec.bandwidth);
  fields.nFileSizeMB = spec.nFileSizeMB;
  fields.b32Bit = spec.b32Bit;

  std::optional<std::int64_t> start = recording.tStart;
  std::optional<std::int64_t> end = recording.tEnd;
  if (spec.start) {
    fields.startMode = EStartMode::At;
    start = spec.start->Resolve(recording.tStart);
  }
  if (spec.end) {
    fields.endMode = EEndMode::At;
    end = spec.end->Resolve(recording.tStart);
  }
  if (!start || !end) {
    error =
        Format("%s is out of range.\n%s", start ? "The end time" : "The start time", AcceptedTimes(recording).c_str());
    return false;
  }
  fields.tPickedStart = *start;
  fields.tPickedEnd = *end;
  if (spec.duration) {
    fields.endMode = EEndMode::After;
    fields.nDurationSeconds = *spec.duration;
  }
  return true;
}

// The entry list lets an end stand before its start, for the user to see in the dialog; a script would never see it.
bool EndsBeforeItStarts(const SEntryFields& fields) {
  return fields.endMode == EEndMode::At && fields.tPickedEnd <= fields.tPickedStart;
}

std::int64_t BytesOfFrame(const CRecordingSet& recording) {
  const std::uint32_t told = recording.format.Format.wBitsPerSample;
  const std::uint32_t bits = told > 0 ? told : recording.nBitsPerSample;
  return std::max<std::int64_t>(bits / 8 * 2LL, 1);
}

// Files that are chained by time may leave gaps, so the recording's end can lie behind its last sample.
std::string StartBehindSamples(const SEntryFields& fields, const CRecordingSet& recording) {
  const std::int64_t frames = recording.TotalBytes() / BytesOfFrame(recording);
  const std::int64_t rate = std::max<std::int64_t>(recording.nSampleRate, 1);
  const std::int64_t seconds = (frames + rate - 1) / rate;
  if (fields.startMode != EStartMode::At || fields.tPickedStart - recording.tStart < seconds) return {};
  return Format(
      "Start Time: The start time lies behind the last sample: the times of the files leave gaps, but their samples "
      "follow each other as one stream.\nAccepted: a start before +%lld",
      static_cast<long long>(seconds));
}

std::optional<SEntryProblem> AddToList(const SEntrySpec& spec, SEntryFields fields, CEntryList& list) {
  if (!spec.range) {
    fields.nFrequency = *spec.frequency;
    return list.AddEntry(fields);
  }
  std::optional<SEntryProblem> first;
  list.AddSequence(fields, spec.range->nFrom, spec.range->nTo, spec.range->nStep, [&](const SEntryProblem& problem) {
    if (!first) first = problem;
  });
  return first;
}

// What an entry takes from outside the recorded band is noise and aliases at best.
void WarnOutsideBand(const OutputEntry& entry, const CRecordingSet& recording, SPlanNotes& notes) {
  const std::int64_t half = recording.nSampleRate / 2;
  const std::int64_t lowest = recording.nRadioCenterFreq - half;
  const std::int64_t highest = recording.nRadioCenterFreq + half;
  const std::int64_t entryHalf = entry.nOutputSampleRate / 2;
  if (entry.nOutputFrequency - entryHalf >= lowest && entry.nOutputFrequency + entryHalf <= highest) return;
  const bool wholly = entry.nOutputFrequency + entryHalf <= lowest || entry.nOutputFrequency - entryHalf >= highest;
  notes.outsideBand.push_back(Format("%s: %s outside %s to %s", entry.strTitle.c_str(), wholly ? "wholly" : "partly",
                                     FormatFrequency64(lowest).c_str(), FormatFrequency64(highest).c_str()));
}

// Above 1 MHz the downconverter decimates by whole numbers only.
void WarnOtherRate(const OutputEntry& entry, SPlanNotes& notes) {
  const std::uint32_t rate = TrueOutputRate(entry.nInputSampleRate, entry.nOutputSampleRate);
  if (rate == entry.nOutputSampleRate) return;
  notes.surprises.push_back(
      Format("%s: above 1 MHz only whole fractions of the input's rate can be had, the sample rate "
             "will be %s",
             entry.strTitle.c_str(), FormatFrequency(rate).c_str()));
}

void WarnShorter(const OutputEntry& entry, const CRecordingSet& recording, SPlanNotes& notes) {
  const std::int64_t left = recording.TotalBytes() / BytesOfFrame(recording) - entry.nStartSample;
  if (entry.nTotalSamples <= left) return;
  notes.surprises.push_back(Format("%s: the samples of the recording end %.1f seconds before the entry does",
                                   entry.strTitle.c_str(),
                                   static_cast<double>(entry.nTotalSamples - left) / recording.nSampleRate));
}

// A job that begins exactly where a later file begins starts late by the length of the files before it.
void WarnFileBoundary(const CEntryList& list, const CRecordingSet& recording, SPlanNotes& notes) {
  std::int64_t first = std::numeric_limits<std::int64_t>::max();
  for (const OutputEntry* entry : list.Pointers()) first = std::min(first, entry->nStartSample);
  const std::int64_t frameBytes = BytesOfFrame(recording);
  std::int64_t boundary = 0;
  for (const SRecordingFile& file : recording.files) {
    if (boundary > 0 && boundary == first) {
      notes.surprises.push_back(
          Format("the first start lies exactly where %s begins; the entries will begin %lld "
                 "frames late, start a second earlier or later",
                 file.strPath.c_str(), static_cast<long long>(boundary)));
    }
    boundary += file.nDataBytes / frameBytes;
  }
}

}  // namespace

bool BuildEntryList(const SCutRequest& request, bool bUtc, const CRecordingSet& recording, CEntryList& list,
                    SPlanNotes& notes, std::string& error) {
  for (const SEntrySpec& spec : request.entries) {
    SEntryFields fields;
    fields.bUtc = bUtc;
    fields.strOutputFolder = request.strOutput;
    if (!MakeFields(spec, recording, fields, error)) {
      error.insert(0, spec.strLabel + ": ");
      return false;
    }
    const std::optional<SEntryProblem> problem = AddToList(spec, fields, list);
    if (problem) {
      error = Format("%s: %s: %s\n%s", spec.strLabel.c_str(), problem->box.strCaption.c_str(),
                     problem->box.strText.c_str(), AcceptedTimes(recording).c_str());
      return false;
    }
    if (EndsBeforeItStarts(fields)) {
      error = Format("%s: End Time: The end time is before the start time.\n%s", spec.strLabel.c_str(),
                     AcceptedTimes(recording).c_str());
      return false;
    }
    const std::string behind = StartBehindSamples(fields, recording);
    if (!behind.empty()) {
      error = spec.strLabel + ": " + behind;
      return false;
    }
  }
  const std::size_t asked = list.Size();
  list.Rebuild();
  notes.nDuplicates = asked - list.Size();
  for (const OutputEntry* entry : list.Pointers()) {
    WarnOutsideBand(*entry, recording, notes);
    WarnOtherRate(*entry, notes);
    WarnShorter(*entry, recording, notes);
  }
  WarnFileBoundary(list, recording, notes);
  return true;
}

}  // namespace carvello
