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
  // First sample and end, UTC. They may be no date: blocks are taken as they are written.
  SYSTEMTIME start;
  SYSTEMTIME stop;
  bool bNoStart = false;              // nobody wrote when it began; 1970 stands in for it, whatever `start` holds
  std::int64_t nCentreFrequency = 0;  // Hz; names of files know frequencies above 4.29 GHz
  std::uint32_t nADFrequency = 0;     // Hz, converter sample clock
  std::uint32_t nIFFrequency = 0;     // Hz
  std::uint32_t nBandwidth = 0;       // Hz
  std::uint32_t nIQOffset = 0;
  std::uint32_t nSpare = 0;
  std::int64_t nDataBytes = 0;
  double dDuration = 0.0;  // seconds
  std::string strNote;     // what metadata the file has that could not be read; empty when there is none
};

}  // namespace carvello
