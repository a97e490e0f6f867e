#include "cli/cut_plan.h"

#include <optional>

#include "engine/entry_checks.h"
#include "engine/input_frames.h"
#include "engine/output_rate.h"
#include "jobs/spec_entries.h"
#include "support/formatting.h"
#include "support/text.h"

namespace carvello {
namespace {

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

void WarnShorter(const OutputEntry& entry, const CInputFrames& input, SPlanNotes& notes) {
  const std::int64_t left = input.Total() - entry.nStartSample;
  if (entry.nTotalSamples <= left) return;
  notes.surprises.push_back(Format("%s: the samples of the recording end %.1f seconds before the entry does",
                                   entry.strTitle.c_str(),
                                   static_cast<double>(entry.nTotalSamples - left) / entry.nInputSampleRate));
}

// A job that begins exactly where a later file begins starts late by the length of the files before it.
void WarnFileBoundary(const CEntryList& list, const CInputFrames& input, const CRecordingSet& recording,
                      SPlanNotes& notes) {
  const std::int64_t first = FirstFrame(list.Pointers());
  const int file = input.FileBegunBy(first);
  if (file < 0) return;
  notes.surprises.push_back(Format(
      "the first start lies exactly where %s begins; the entries will begin %lld frames late, start a second earlier "
      "or "
      "later",
      recording.files[static_cast<std::size_t>(file)].strPath.c_str(), static_cast<long long>(input.Late(first))));
}

}  // namespace

bool BuildEntryList(const SCutRequest& request, const CRecordingSet& recording, CEntryList& list, SPlanNotes& notes,
                    std::string& error) {
  for (const SEntrySpec& spec : request.entries) {
    SEntryFields fields;
    fields.bUtc = !request.bLocalTime;
    fields.strOutputFolder = request.strOutput;
    if (const auto reason = AddByCommandLine(spec, fields, recording, list)) {
      error = spec.strLabel + ": " + *reason;
      return false;
    }
  }
  notes.nDuplicates = list.Rebuild().size();
  TakeNotes(list, recording, notes);
  return true;
}

void TakeNotes(const CEntryList& list, const CRecordingSet& recording, SPlanNotes& notes) {
  const CInputFrames input(recording);
  for (const OutputEntry* entry : list.Pointers()) {
    WarnOutsideBand(*entry, notes);
    WarnOtherRate(*entry, notes);
    WarnShorter(*entry, input, notes);
  }
  WarnFileBoundary(list, input, recording, notes);
}

}  // namespace carvello
