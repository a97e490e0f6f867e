// What is known of a recording made by another program.
#pragma once

#include <cstdint>
#include <string>

#include "recording/wave_format.h"
#include "support/system_time.h"

namespace carvello {

struct RecordingSourceInfo {
  std::string strSourceName;  // from the closed list in source_recognition.h; empty when nothing recognised the file
  WAVEFORMATEX format;        // the first 18 bytes of the file's normalised format
  SYSTEMTIME start;           // first sample, UTC unless the recogniser says otherwise
  SYSTEMTIME stop;            // start plus duration
  std::uint32_t nCentreFrequency = 0;  // Hz
  std::uint32_t nADFrequency = 0;      // Hz, converter sample clock
  std::uint32_t nIFFrequency = 0;      // Hz
  std::uint32_t nBandwidth = 0;        // Hz
  std::uint32_t nIQOffset = 0;
  std::uint32_t nSpare = 0;
  std::int64_t nDataBytes = 0;
  double dDuration = 0.0;  // seconds
};

}  // namespace carvello
