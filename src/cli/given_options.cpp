#include "cli/given_options.h"

#include <CLI/CLI.hpp>

#include "jobs/fact_texts.h"
#include "support/text.h"

namespace carvello {
namespace {

constexpr const char* kGroup = "What the recording does not tell, or tells wrongly";

}  // namespace

void SGivenOptions::AddTo(CLI::App& app, bool ownCentre) {
  bLongCentre = ownCentre;
  app.add_option("--part", nPart, "Part of a recording that has several, as info lists them")
      ->check(CLI::Range(1U, std::numeric_limits<std::uint32_t>::max()))
      ->type_name("N");
  app.add_option("--rate", strRate, "Sample rate in Hz; suffixes k and M")->type_name("HZ")->group(kGroup);
  app.add_option(ownCentre ? "--centre-frequency" : "--centre,--centre-frequency", strCentre,
                 "Centre frequency in Hz; suffixes k, M and G")
      ->type_name("HZ")
      ->group(kGroup);
  app.add_option("--start-time", strStart, "Time of the first sample, with zone, decimals allowed")
      ->type_name("TIME")
      ->group(kGroup);
  app.add_option("--sample-type", strSampleType, "ci8, ci16, cu8, cf32 and so on; such a file needs no head")
      ->type_name("TYPE")
      ->group(kGroup);
  app.add_option("--time-zone", strZone, "utc, local or +HH:MM: zone of the times in names and chunks")
      ->type_name("ZONE")
      ->group(kGroup);
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
