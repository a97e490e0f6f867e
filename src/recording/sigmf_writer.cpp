#include "recording/sigmf_writer.h"

#include "support/formatting.h"
#include "support/json_text.h"
#include "support/platform.h"
#include "support/system_time.h"
#include "support/text.h"
#include "support/version.h"

namespace carvello {

namespace {

constexpr const char* kSigMfVersion = "1.2.5";
constexpr std::uint32_t kWaveFloatScale = 32'768;
constexpr const char* kIndent = "\n    ";

std::string Recorder() {
  return VersionValue("ProductName") + " " + VersionInfo().strVersionText;
}

// With as many digits of the second as it takes.
std::string DateTime(std::int64_t seconds, std::uint32_t nanoseconds) {
  std::string fraction = Format(".%09u", nanoseconds);
  fraction.erase(fraction.find_last_not_of('0') + 1);
  return FormatUtc("%Y-%m-%dT%H:%M:%S", seconds) + (fraction == "." ? "" : fraction) + "Z";
}

// Names that begin with "carvello:" are ours; nobody needs to know them to read the recording.
void AddExtensions(CJsonText& json) {
  json.Key("core:extensions");
  json.BeginArray();
  json.BeginObject();
  json.Member("name", "carvello");
  json.Member("version", "1.0.0");
  json.Member("optional", true);
  json.EndObject();
  json.EndArray();
}

void AddOrigin(CJsonText& json, const SCutOrigin& origin) {
  json.Key("carvello:source");
  json.BeginObject();
  if (!origin.strFile.empty()) json.Member("file", origin.strFile);
  json.Member("sample_rate", origin.nSampleRate);
  json.Member("frequency", origin.nFrequency);
  json.Member("sample_start", origin.nFirstFrame);
  json.Member("asked_start", origin.tAsked);
  json.EndObject();
}

void AddCapture(CJsonText& json, const SSigMfFacts& facts) {
  json.Key("captures");
  json.BeginArray();
  json.BeginObject();
  json.Member("core:sample_start", 0);
  json.Member("core:frequency", facts.nFrequency);
  json.Member("core:datetime", DateTime(facts.tStart, facts.nStartNanoseconds));
  json.Member("core:global_index", facts.nGlobalIndex);
  if (facts.nHeaderBytes > 0) json.Member("core:header_bytes", facts.nHeaderBytes);
  json.EndObject();
  json.EndArray();
}

// Without a count of samples it reaches to the recording's end, wherever that will be.
void AddAnnotation(CJsonText& json, const SSigMfFacts& facts) {
  const double half = facts.nBandwidth / 2.0;
  json.Key("annotations");
  json.BeginArray();
  json.BeginObject();
  json.Member("core:sample_start", 0);
  json.Member("core:freq_lower_edge", static_cast<double>(facts.nFrequency) - half);
  json.Member("core:freq_upper_edge", static_cast<double>(facts.nFrequency) + half);
  json.Member("core:label", facts.strTitle);
  json.Member("core:generator", Recorder());
  json.EndObject();
  json.EndArray();
}

}  // namespace

SSigMfText BuildSigMfMeta(const SSigMfFacts& facts) {
  CJsonText json;
  json.BeginObject();
  json.Key("global");
  json.BeginObject();
  json.Member("core:datatype", facts.nBitsPerSample == 32 ? "cf32_le" : "ci16_le");
  json.Member("core:version", kSigMfVersion);
  json.Member("core:sample_rate", facts.nSampleRate);
  json.Member("core:recorder", Recorder());
  if (!facts.strHardware.empty()) json.Member("core:hw", facts.strHardware);
  json.Member("core:description", facts.origin.strFile.empty() ? facts.strTitle
                                                               : Format("%s, cut from %s", facts.strTitle.c_str(),
                                                                        facts.origin.strFile.c_str()));
  if (!facts.strDataset.empty()) json.Member("core:dataset", facts.strDataset);
  // The floats of our WAV files stand at the scale of 16 bits, which nothing else tells readers of the meta file.
  if (!facts.strDataset.empty() && facts.nBitsPerSample == 32) json.Member("carvello:full_scale", kWaveFloatScale);
  AddExtensions(json);
  AddOrigin(json, facts.origin);
  json.EndObject();
  AddCapture(json, facts);
  AddAnnotation(json, facts);
  json.EndObject();

  SSigMfText built{.strText = json.Document(), .nEndPlace = 0};
  const std::size_t place = built.strText.find('{', 1) + 1;
  built.strText.insert(place, kIndent + std::string(kSigMfEndLength, ' '));
  built.nEndPlace = place + std::string_view(kIndent).size();
  return built;
}

std::string SigMfEndText(std::int64_t frames, const std::string& sha512, std::uint64_t trailingBytes) {
  std::string text = Format("\"carvello:sample_count\": %lld,", static_cast<long long>(frames));
  if (!sha512.empty()) text += kIndent + Format("\"core:sha512\": \"%s\",", sha512.c_str());
  if (trailingBytes > 0) {
    text += kIndent + Format("\"core:trailing_bytes\": %llu,", static_cast<unsigned long long>(trailingBytes));
  }
  text.resize(kSigMfEndLength, ' ');
  return text;
}

std::string SigMfMetaPath(const std::string& path) {
  const std::string name = platform::NameOf(path);
  const std::size_t dot = name.rfind('.');
  const std::size_t cut = dot == std::string::npos || dot == 0 ? 0 : name.size() - dot;
  return path.substr(0, path.size() - cut) + kSigMfMetaExtension;
}

// The schema has streams as pairs in lists.
std::string BuildSigMfCollection(const std::string& description,
                                 const std::vector<std::pair<std::string, std::string>>& streams) {
  CJsonText json;
  json.BeginObject();
  json.Key("collection");
  json.BeginObject();
  json.Member("core:version", kSigMfVersion);
  json.Member("core:description", description);
  AddExtensions(json);
  json.Member("carvello:recorder", Recorder());
  json.Key("core:streams");
  json.BeginArray();
  for (const auto& [name, hash] : streams) {
    json.BeginArray();
    json.Add(name);
    json.Add(hash);
    json.EndArray();
  }
  json.EndArray();
  json.EndObject();
  json.EndObject();
  return json.Document();
}

}  // namespace carvello
