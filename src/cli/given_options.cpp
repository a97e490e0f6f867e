#include "cli/given_options.h"

#include "jobs/fact_texts.h"
#include "support/text.h"

namespace carvello {
namespace {

constexpr const char* kGroup = "What the recording does not tell, or tells wrongly";

}  // namespace

void SGivenOptions::AddTo(CCommandOptions& options, bool ownCentre) {
  bLongCentre = ownCentre;
  options.Add("--part", &nPart, "Part of a recording that has several, as info lists them").Value("N");
  options.Add("--rate", &strRate, "Sample rate in Hz; suffixes k and M").Value("HZ").Group(kGroup);
  options
      .Add(ownCentre ? "--centre-frequency" : "--centre,--centre-frequency", &strCentre,
           "Centre frequency in Hz; suffixes k, M and G")
      .Value("HZ")
      .Group(kGroup);
  options.Add("--start-time", &strStart, "Time of the first sample, with zone, decimals allowed")
      .Value("TIME")
      .Group(kGroup);
  options.Add("--sample-type", &strSampleType, "ci8, ci16, cu8, cf32 and so on; such a file needs no head")
      .Value("TYPE")
      .Group(kGroup);
  options.Add("--time-zone", &strZone, "utc, local or +HH:MM: zone of the times in names and chunks")
      .Value("ZONE")
      .Group(kGroup);
}

bool ReadGivenFacts(const SGivenOptions& options, SGivenFacts& given, std::string& error) {
  if (options.nPart > 0) given.nPart = options.nPart;
  struct SText {
    const char* option;
    const char* fact;
    const std::string& text;
  };
  for (const SText& each : {SText{"--rate", "rate", options.strRate},
                            SText{options.bLongCentre ? "--centre-frequency" : "--centre", "centre", options.strCentre},
                            SText{"--start-time", "start_time", options.strStart},
                            SText{"--sample-type", "sample_type", options.strSampleType},
                            SText{"--time-zone", "time_zone", options.strZone}}) {
    const char* accepted = nullptr;
    if (each.text.empty() || TakeFact(each.fact, each.text, given, accepted)) continue;
    error = Format("%s \"%s\" cannot be read. Accepted: %s", each.option, Printable(each.text).c_str(), accepted);
    return false;
  }
  return true;
}

std::string MissingHint(const std::vector<EFact>& missing, const SGivenOptions& options) {
  if (missing.empty()) return {};
  std::string hint = ". Give ";
  for (std::size_t i = 0; i < missing.size(); ++i) {
    if (i > 0) hint += i + 1 < missing.size() ? ", " : " and ";
    if (missing[i] == EFact::SampleType) hint += "--sample-type";
    if (missing[i] == EFact::SampleRate) hint += "--rate";
    if (missing[i] == EFact::Centre) hint += options.bLongCentre ? "--centre-frequency" : "--centre";
    if (missing[i] == EFact::Start) hint += "--start-time";
  }
  return hint;
}

}  // namespace carvello
