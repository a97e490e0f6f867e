// What the analysis walk found in one file.
#pragma once

#include <cstdint>
#include <string>

#include "input/recording_source_info.h"
#include "recording/info_texts.h"
#include "recording/wave_format.h"

namespace carvello {

// What a walk cost: it stays small however large the file is.
struct SWalkStatistics {
  std::uint32_t nReads = 0;
  std::int64_t nBytes = 0;
};

struct SScanResult {
  WAVEFORMATEXTENSIBLE format;  // zero when no usable "fmt " chunk was found
  std::string strXml;           // UTF-8 text of an "auxi" chunk that holds XML; empty otherwise
  RecordingSourceInfo source;   // filled when another program's recording was recognised
  SInfoTexts infoTexts;
  std::int64_t nDataBytes = 0;  // of the first data chunk, never more than the file holds
  bool bRF64 = false;
  bool bCutShort = false;  // the data chunk claims more than the file holds
  std::string strError;    // why the walk found no recording, or why recognition gave up; empty otherwise
  SWalkStatistics statistics;
};

}  // namespace carvello
