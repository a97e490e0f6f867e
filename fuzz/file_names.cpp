// Any bytes as the name of a file without metadata: reading time and frequency from it must end in a record, in nothing
// or in the error for impossible dates.
#include "fuzz_checks.h"
#include "input/source_recognition.h"
#include "support/hresult.h"

using namespace carvello;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  const std::string name(fuzz::Text(bytes, count));
  RecordingSourceInfo source;
  try {
    if (RecogniseAuxi(name, {}, false, 20'000, fuzz::PlainFormat(), source)) {
      fuzz::Require(!source.strSourceName.empty() && source.nCentreFrequency >= 0 && source.dDuration == 5.0);
    } else {
      fuzz::Require(source.strSourceName.empty());
    }
  } catch (const CHResultError& error) {
    fuzz::RequirePrintable(error.what());
  }
  return 0;
}
