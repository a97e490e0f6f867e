// Any bytes as the name of a file: reading what programs put into names must end, with facts that can be.
#include "input/recording_names.h"
#include "fuzz_checks.h"
#include "input/given_facts.h"

using namespace carvello;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  const std::string name(fuzz::Text(bytes, count));
  if (const std::optional<SNameFacts> facts = ReadRecordingName(name)) {
    fuzz::Require(facts->time.has_value() && facts->time->nNanoseconds < 1'000'000'000);
    fuzz::Require(SecondsIn(facts->time->fields, {}) >= 0);
    fuzz::Require(facts->nCentre.value_or(0) >= 0 && facts->nSampleRate.value_or(1) > 0);
  }
  const SNameNumbers numbers = ReadNameNumbers(name);
  fuzz::Require(numbers.nCentre.value_or(1) > 0 && numbers.nSampleRate.value_or(1) > 0);
  const SRawEnding ending = ReadRawEnding(name);
  fuzz::Require(!ending.kind || (ending.bRaw && ending.kind->IsKnown()));
  return 0;
}
