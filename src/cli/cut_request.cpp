#include "cli/cut_request.h"

#include <utility>

#include "cli/job_file.h"
#include "support/text.h"

namespace carvello {
namespace {

FieldTexts SequenceFields(const SCutOptions& options) {
  FieldTexts fields;
  const auto add = [&fields](const char* name, const std::string& value) {
    if (!value.empty()) fields.emplace_back(name, value);
  };
  add("bw", options.strBandwidth);
  add("bits", options.strBits);
  add("size", options.strSize);
  add("start", options.strStart);
  add("end", options.strEnd);
  add("duration", options.strDuration);
  return fields;
}

bool AddEntries(const SCutOptions& options, std::vector<SEntrySpec>& entries, std::string& error) {
  for (std::size_t i = 0; i < options.entries.size(); ++i) {
    SEntrySpec spec;
    spec.strLabel = Format("--entry %zu (%s)", i + 1, Printable(options.entries[i]).c_str());
    if (!ParseEntry(options.entries[i], spec, error)) {
      error.insert(0, spec.strLabel + ": ");
      return false;
    }
    entries.push_back(std::move(spec));
  }
  return true;
}

bool AddSequences(const SCutOptions& options, std::vector<SEntrySpec>& entries, std::string& error) {
  const FieldTexts fields = SequenceFields(options);
  if (options.sequences.empty()) {
    if (fields.empty()) return true;
    error = Format("--%s belongs to --sequence, which is not given. Accepted: --entry with %s=%s",
                   fields.front().first.c_str(), fields.front().first.c_str(), fields.front().second.c_str());
    return false;
  }
  SEntrySpec common;
  if (!SetFields(fields, EFieldNames::Entry, common, error)) {
    error.insert(0, "--");
    return false;
  }
  if (!common.bandwidth) {
    error = Format("--sequence needs --bw. Accepted: %s", kFrequencyForms);
    return false;
  }
  for (std::size_t i = 0; i < options.sequences.size(); ++i) {
    SEntrySpec spec = common;
    SFrequencyRange range;
    spec.strLabel = Format("--sequence %zu (%s)", i + 1, Printable(options.sequences[i]).c_str());
    if (!ParseFrequencyRange(options.sequences[i], range, error)) {
      error.insert(0, spec.strLabel + ": ");
      return false;
    }
    spec.range = range;
    entries.push_back(std::move(spec));
  }
  return true;
}

bool CheckCount(const std::vector<SEntrySpec>& entries, std::string& error) {
  std::int64_t count = 0;
  for (const SEntrySpec& spec : entries) count += spec.range ? spec.range->Count() : 1;
  if (count >= 1 && count <= kMostEntries) return true;
  error = count < 1 ? "no entries. Accepted: --entry f=FREQUENCY,bw=BANDWIDTH, --sequence FROM:TO:STEP --bw BANDWIDTH "
                      "or --jobs FILE with entries"
                    : Format("%lld entries. Accepted: at most %lld", static_cast<long long>(count),
                             static_cast<long long>(kMostEntries));
  return false;
}

}  // namespace

bool MakeCutRequest(const SCutOptions& options, SCutRequest& request, std::string& error) {
  if (options.bOverwrite && options.bSkipExisting) {
    error = "--overwrite and --skip-existing exclude each other. Accepted: one of them, or none";
    return false;
  }
  SJobFile job;
  if (!options.strJobFile.empty() && !ReadJobFile(options.strJobFile, job, error)) return false;

  request = SCutRequest();
  if (!AddEntries(options, request.entries, error)) return false;
  if (!AddSequences(options, request.entries, error)) return false;
  if (request.entries.empty()) request.entries = std::move(job.entries);
  if (!CheckCount(request.entries, error)) return false;

  request.strInput = options.strInput.empty() ? job.strInput : options.strInput;
  request.strOutput = options.strOutput.empty() ? job.strOutput : options.strOutput;
  if (request.strInput.empty()) {
    error = "INPUT is missing. Accepted: a file of the recording, or --jobs FILE with \"input\"";
    return false;
  }
  if (request.strOutput.empty()) {
    error = "--output is missing. Accepted: an existing folder, or --jobs FILE with \"output\"";
    return false;
  }
  return true;
}

}  // namespace carvello
