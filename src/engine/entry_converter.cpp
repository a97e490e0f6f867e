#include "engine/entry_converter.h"

#include "engine/library_converter.h"
#include "engine/spectrum_converter.h"

namespace carvello {

SConversion ConversionOf(const OutputEntry& entry) {
  return {.nInputRate = entry.nInputSampleRate,
          .nOutputRate = entry.nOutputSampleRate,
          .llShift = entry.nOutputFrequency - entry.nInputFrequency};
}

std::unique_ptr<IEntryConverter> MakeConverter(EEngine engine, const DspBinding& dsp) {
  if (engine == EEngine::Spectrum) return std::make_unique<CSpectrumConverter>(dsp);
  return std::make_unique<CLibraryConverter>(dsp);
}

}  // namespace carvello
