#include "cli/cut_request.h"

#include <optional>
#include <utility>

#include "jobs/job_file.h"
#include "jobs/quantities.h"
#include "recording/sigmf_writer.h"
#include "support/platform.h"
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

bool TakeJobFile(const std::string& path, SJobFile& job, std::string& error) {
  std::string text;
  if (ReadJobText(path, text, error)) return ParseJobFile(text, path, job, error);
  error.insert(0, "--jobs ");
  return false;
}

bool ParseEngine(const std::string& text, EEngineSetting& engine) {
  for (const EEngineSetting setting : {EEngineSetting::Auto, EEngineSetting::Library, EEngineSetting::Spectrum}) {
    if (text != EngineSettingName(setting)) continue;
    engine = setting;
    return true;
  }
  return false;
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

bool SetFormats(const SCutOptions& options, std::vector<SEntrySpec>& entries, std::string& error) {
  if (options.strFormat.empty()) {
    if (options.bSigMfMeta) {
      for (SEntrySpec& spec : entries) {
        if (spec.format == EOutputFormat::Wave) spec.format = EOutputFormat::WaveAndMeta;
      }
    }
    return true;
  }
  const std::optional<EOutputFormat> format = ParseFormat(options.strFormat);
  if (!format) {
    error = Format("--format %s is unknown. Accepted: %s", Printable(options.strFormat).c_str(), kFormatForms);
    return false;
  }
  if (*format == EOutputFormat::SigMf && options.bSigMfMeta) {
    error = "--sigmf-meta writes meta files beside WAV files, and --format sigmf writes none. Accepted: one of them";
    return false;
  }
  for (SEntrySpec& spec : entries) {
    spec.format = options.bSigMfMeta ? EOutputFormat::WaveAndMeta : *format;
  }
  return true;
}

// A collection names recordings beside it, without a folder.
bool SetCollection(const SCutOptions& options, SCutRequest& request, std::string& error) {
  if (options.strCollection.empty()) return true;
  const std::string& name = options.strCollection;
  if (name != platform::NameOf(name)) {
    error =
        Format("--collection %s is no name. Accepted: a name without a folder, the file comes into that of --output",
               Printable(name).c_str());
    return false;
  }
  for (const SEntrySpec& spec : request.entries) {
    if (spec.format == EOutputFormat::Wave) {
      error = spec.strLabel + ": --collection takes SigMF outputs only. Accepted: --format sigmf or --sigmf-meta";
      return false;
    }
    if (!spec.strOutput.empty()) {
      error = spec.strLabel + ": --collection takes outputs of one folder only. Accepted: --output for all";
      return false;
    }
  }
  const bool whole = name.ends_with(kSigMfCollectionExtension);
  request.strCollection =
      platform::JoinPath(platform::AbsolutePath(request.strOutput), whole ? name : name + kSigMfCollectionExtension);
  return true;
}

}  // namespace

bool MakeCutRequest(const SCutOptions& options, SCutRequest& request, std::string& error) {
  if (options.bOverwrite && options.bSkipExisting) {
    error = "--overwrite and --skip-existing exclude each other. Accepted: one of them, or none";
    return false;
  }
  request = SCutRequest();
  if (!options.strEngine.empty() && !ParseEngine(options.strEngine, request.engine)) {
    error = "--engine " + Printable(options.strEngine) + " is unknown. Accepted: auto, library, spectrum";
    return false;
  }
  SJobFile job;
  if (!options.strJobFile.empty() && !TakeJobFile(options.strJobFile, job, error)) return false;

  if (!AddEntries(options, request.entries, error)) return false;
  if (!AddSequences(options, request.entries, error)) return false;
  if (request.entries.empty()) request.entries = std::move(job.entries);
  if (!CheckCount(request.entries, error)) return false;

  request.strInput = options.strInput.empty() ? job.strInput : options.strInput;
  // What is said of one recording says nothing of another.
  if (options.strInput.empty() || job.strInput.empty()) request.given = job.given;
  request.strOutput = options.strOutput.empty() ? job.strOutput : options.strOutput;
  request.bLocalTime = options.bLocalTime || job.bLocalTime;
  if (!options.strOutput.empty()) {
    for (SEntrySpec& spec : request.entries) spec.strOutput.clear();
  }
  if (request.strInput.empty()) {
    error = "INPUT is missing. Accepted: a file of the recording, or --jobs FILE with \"input\"";
    return false;
  }
  if (request.strOutput.empty()) {
    error = "--output is missing. Accepted: an existing folder, or --jobs FILE with \"output\"";
    return false;
  }
  return SetFormats(options, request.entries, error) && SetCollection(options, request, error);
}

}  // namespace carvello
