// Any text as an entry or as a sequence of the command line: it is understood whole, or refused in one printable line.
#include "fuzz_checks.h"
#include "jobs/entry_spec.h"

using namespace carvello;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  const std::string_view text = fuzz::Text(bytes, count);
  SEntrySpec spec;
  std::string error;
  if (ParseEntry(text, spec, error)) {
    fuzz::Require(spec.frequency && spec.bandwidth && !(spec.end && spec.duration));
    fuzz::Require(spec.nFileSizeMB == 0 || spec.nFileSizeMB == 100 || spec.nFileSizeMB == 1000);
  } else {
    fuzz::Require(!error.empty());
    fuzz::RequirePrintable(error);
  }
  SFrequencyRange range;
  error.clear();
  if (ParseFrequencyRange(text, range, error)) {
    fuzz::Require(range.nStep > 0 && range.Count() >= 1 && range.Count() <= kMostEntries);
  } else {
    fuzz::Require(!error.empty());
    fuzz::RequirePrintable(error);
  }
  return 0;
}
