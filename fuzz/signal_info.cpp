// Any text as a "signalinfo" document: what is taken from it are frequencies and times that a signal can have.
#include "fuzz_checks.h"
#include "input/signal_info_source.h"
#include "support/hresult.h"

using namespace carvello;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  RecordingSourceInfo source;
  try {
    if (!RecogniseSignalInfo(std::string(fuzz::Text(bytes, count)), 20'000, fuzz::PlainFormat(), source)) return 0;
    fuzz::RequirePrintable(source.strNote);
    if (source.strSourceName.empty()) {
      fuzz::Require(!source.strNote.empty());
    } else {
      fuzz::Require(source.nCentreFrequency >= 0 && source.dDuration == 5.0);
    }
  } catch (const CHResultError& error) {
    fuzz::RequirePrintable(error.what());
  }
  return 0;
}
