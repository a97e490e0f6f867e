// Any bytes as the metadata of another program: the first byte says of which chunk. Recognition must end in a record of
// a known program, in nothing or in the error for impossible dates.
#include "fuzz_checks.h"
#include "input/source_recognition.h"
#include "support/hresult.h"

using namespace carvello;

namespace {

void RequireRecord(const RecordingSourceInfo& source) {
  constexpr std::string_view kNames[] = {
      kSourceSdrSharp, kSourceSpectraVue1, kSourceSpectraVue2, kSourceSpectraVue234, kSourceSpectraVue30, kSourceWinrad,
      kSourceElad,     kSourcePerseus,     kSourceWinradio,    kSourceGo2Monitor,    kSourceUnknown,      ""};
  bool known = false;
  for (const std::string_view name : kNames) known = known || source.strSourceName == name;
  fuzz::Require(known);
  fuzz::Require(source.nCentreFrequency >= 0 && source.dDuration >= 0);
  fuzz::RequirePrintable(source.strNote);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  if (count == 0) return 0;
  const std::string body(fuzz::Text(bytes + 1, count - 1));
  SSourceEvidence evidence;
  evidence.strFileName = "recording.wav";
  switch (bytes[0] % 4) {
    case 0:
      evidence.strAuxi = body;
      break;
    case 1:
      evidence.strAuxi = body;
      evidence.bElad = true;
      break;
    case 2:
      evidence.strRcvr = body;
      break;
    default:
      evidence.strMeta = body;
      break;
  }
  SScanResult result;
  result.format = fuzz::PlainFormat();
  result.nDataBytes = 20'000;
  try {
    RecogniseSource(evidence, result);
    RequireRecord(result.source);
  } catch (const CHResultError& error) {
    fuzz::RequirePrintable(error.what());
  }
  return 0;
}
