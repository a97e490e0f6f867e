#include "cli/cut_plan.h"

#include <algorithm>
#include <limits>
#include <optional>

#include "engine/entry_checks.h"
#include "engine/output_rate.h"
#include "support/formatting.h"
#include "support/text.h"

namespace carvello {
namespace {

// The fields of the entry list but for the frequency. False when an entry like this cannot be asked of the list.
bool MakeFields(const SEntrySpec& spec, const CRecordingSet& recording, SEntryFields& fields, std::string& error) {
  if (const auto fault = BandwidthFault(*spec.bandwidth, recording)) {
    error = FaultText(*fault);
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

std::optional<SEntryProblem> AddToList(const SEntrySpec& spec, SEntryFields fields, CEntryList& list) {
  if (!spec.range) {
    fields.nFrequency = *spec.frequency;
    return list.AddEntry(fields);
  }
  std::optional<SEntryProblem> first;
  list.AddSequence(fields, spec.range->nFrom, spec.range->nTo, spec.range->nStep,
                   [&](const SEntryProblem& problem, SEntryFields&) {
                     if (!first) first = problem;
                   });
  return first;
}

void WarnOutsideBand(const OutputEntry& entry, SPlanNotes& notes) {
  if (BandPlace(entry) == EBandPlace::Inside) return;
  notes.outsideBand.push_back(entry.strTitle + ": " + OutsideBandText(entry));
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
  const std::int64_t left = FramesOf(recording) - entry.nStartSample;
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
    // The list adds these, for the user to see in the dialog; a script would never see them.
    auto fault = EndFault(fields, recording);
    if (!fault) fault = StartFault(fields, recording);
    if (fault) {
      error = spec.strLabel + ": " + FaultText(*fault);
      return false;
    }
  }
  notes.nDuplicates = list.Rebuild().size();
  for (const OutputEntry* entry : list.Pointers()) {
    WarnOutsideBand(*entry, notes);
    WarnOtherRate(*entry, notes);
    WarnShorter(*entry, recording, notes);
  }
  WarnFileBoundary(list, recording, notes);
  return true;
}

}  // namespace carvello
