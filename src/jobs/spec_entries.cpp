#include "jobs/spec_entries.h"

#include <numeric>
#include <vector>

#include "engine/entry_checks.h"
#include "support/text.h"

namespace carvello {

bool FillFields(const SEntrySpec& spec, const CRecordingSet& recording, SEntryFields& fields, std::string& error) {
  fields.nBandwidth = static_cast<std::uint32_t>(*spec.bandwidth);
  fields.nFileSizeMB = spec.nFileSizeMB;
  fields.format = spec.format;
  fields.b32Bit = spec.b32Bit;
  if (!spec.strOutput.empty()) fields.strOutputFolder = spec.strOutput;
  fields.nNameNumber = spec.nNameNumber;

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

std::optional<std::string> AddByCommandLine(const SEntrySpec& spec, SEntryFields fields, const CRecordingSet& recording,
                                            CEntryList& list) {
  if (const auto fault = BandwidthFault(*spec.bandwidth, recording)) return FaultText(*fault);
  std::string error;
  if (!FillFields(spec, recording, fields, error)) return error;
  const std::size_t before = list.Size();
  const auto refuse = [&](const std::string& reason) {
    std::vector<std::size_t> added(list.Size() - before);
    std::iota(added.begin(), added.end(), before);
    list.Remove(added);
    return reason;
  };
  if (const std::optional<SEntryProblem> problem = AddToList(spec, fields, list)) {
    return refuse(problem->box.strCaption + ": " + problem->box.strText + "\n" + AcceptedTimes(recording));
  }
  // The list adds these, for the user to see in the dialog; a script would never see them.
  auto fault = EndFault(fields, recording);
  if (!fault) fault = StartFault(fields, recording);
  if (fault) return refuse(FaultText(*fault));
  return std::nullopt;
}

}  // namespace carvello
