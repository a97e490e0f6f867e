// Any bytes as the name of a file without metadata: reading time and frequency from it must end in a record, in nothing
// or in the error for impossible dates.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "input/source_recognition.h"
#include "support/hresult.h"

namespace {

carvello::WAVEFORMATEXTENSIBLE Format() {
  carvello::WAVEFORMATEXTENSIBLE format;
  format.Format.nChannels = 2;
  format.Format.nSamplesPerSec = 1000;
  format.Format.nAvgBytesPerSec = 4000;
  format.Format.wBitsPerSample = 16;
  return format;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  const std::string name(bytes, bytes + count);
  carvello::RecordingSourceInfo source;
  try {
    if (carvello::RecogniseAuxi(name, {}, false, 20'000, Format(), source) &&
        (source.strSourceName.empty() || source.nCentreFrequency < 0 || source.dDuration != 5.0)) {
      std::abort();
    }
  } catch (const carvello::CHResultError&) {
  }
  return 0;
}
