// Any text as each of the quantities that a user types: read whole or not at all, within its limits, and what can be
// written again reads as the same.
#include "jobs/quantities.h"

#include <cmath>

#include "fuzz_checks.h"
#include "support/readable.h"

using namespace carvello;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  const std::string_view text = fuzz::Text(bytes, count);
  if (const auto number = ParseWholeNumber(text)) {
    fuzz::Require(*number >= 0 && ParseWholeNumber(std::to_string(*number)) == number);
  }
  if (const auto frequency = ParseFrequency(text)) {
    fuzz::Require(std::abs(*frequency) <= 1'000'000'000'000 && ParseFrequency(std::to_string(*frequency)) == frequency);
  }
  if (const auto time = ParseDateTime(text)) {
    fuzz::Require(*time >= -62'167'306'000 && *time <= 253'402'388'000);  // years 0 to 9999, and a day of time zones
    // The system's calendar writes years of four digits only.
    if (*time >= -30'000'000'000 && *time < 253'402'300'800) fuzz::Require(ParseDateTime(FormatIsoTime(*time)) == time);
  }
  if (const auto moment = ParseMoment(text)) {
    const auto resolved = moment->Resolve(1'000'000'000);
    fuzz::Require(resolved ? *resolved - moment->nSeconds == (moment->bFromStart ? 1'000'000'000 : 0)
                           : moment->bFromStart);
  }
  if (const auto duration = ParseDuration(text)) {
    fuzz::Require(ParseDuration(std::to_string(*duration)) == duration);
  }
  if (const auto size = ParseFileSize(text)) fuzz::Require(*size == 0 || *size == 100 || *size == 1000);
  if (const auto decibels = ParseDecibels(text)) fuzz::Require(std::abs(*decibels) <= 400.0);
  return 0;
}
