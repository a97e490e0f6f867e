#include "jobs/fact_texts.h"
#include "jobs/job_file.h"
#include "support/json_text.h"
#include "support/readable.h"

namespace carvello {
namespace {

void AddMoment(CJsonText& json, std::string_view name, const std::optional<SMoment>& moment) {
  if (!moment) return;
  json.Key(name);
  if (moment->bFromStart) {
    json.Add(moment->nSeconds);
  } else {
    json.Add(FormatIsoTime(moment->nSeconds));
  }
}

const char* FileSizeText(std::uint32_t megabytes) {
  if (megabytes == 0) return "RF64";
  return megabytes == 1000 ? "1GB" : "100MB";
}

void AddEntry(CJsonText& json, const SEntrySpec& spec) {
  json.BeginObject();
  json.Member("frequency", *spec.frequency);
  json.Member("bandwidth", *spec.bandwidth);
  json.Member("bits", spec.b32Bit ? 32 : 16);
  if (spec.format == EOutputFormat::SigMf) {
    json.Member("format", "sigmf");
  } else {
    json.Member("size", FileSizeText(spec.nFileSizeMB));
  }
  AddMoment(json, "start", spec.start);
  AddMoment(json, "end", spec.end);
  if (spec.duration) json.Member("duration", *spec.duration);
  if (!spec.strOutput.empty()) json.Member("output", spec.strOutput);
  if (spec.nNameNumber > 0) json.Member("number", spec.nNameNumber);
  json.EndObject();
}

}  // namespace

std::string JobFileText(const SJobFile& job) {
  CJsonText json;
  json.BeginObject();
  if (!job.strInput.empty()) json.Member("input", job.strInput);
  if (!job.strOutput.empty()) json.Member("output", job.strOutput);
  if (job.bLocalTime) json.Member("local_time", true);
  if (job.recorded) json.Member("recorded", FormatIsoTime(*job.recorded));
  for (const auto& [name, text] : TextsOfFacts(job.given)) json.Member(name, text);
  json.Key("entries");
  json.BeginArray();
  for (const SEntrySpec& spec : job.entries) AddEntry(json, spec);
  json.EndArray();
  json.EndObject();
  return json.Document();
}

}  // namespace carvello
