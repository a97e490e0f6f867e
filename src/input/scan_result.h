// What the analysis walk found in one file.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "input/file_stamp.h"
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
  // The same as the streaming parse finds them. They differ only where an RF64 file tells two sizes: the walk believes
  // the data chunk, the parse ds64.
  std::int64_t nSampleBytes = 0;
  std::int64_t nDataStart = 0;  // of the first sample byte
  bool bBlankFormat = false;    // its "fmt " chunk holds zeros, as a recorder leaves it that could not end its file
  bool bRF64 = false;
  bool bKiwi = false;      // it has a "kiwi" chunk: samples stand in further data chunks too
  bool bCutShort = false;  // the size of its samples is wrong: never made final, wrapped, or more than it holds
  std::string strError;    // why the walk found no recording, or why recognition gave up; empty otherwise
  // The system's code when the file could not be opened or read, whatever else was found; 0 for a file that was read,
  // damaged or not. strError then names the place and the reason.
  std::uint32_t nError = 0;
  std::vector<std::string> warnings;    // what the user should know of a file that is a recording all the same
  std::vector<std::string> sizeFaults;  // those of them that tell of sizes which are wrong
  SFileStamp stamp;                     // of the file that was walked
  SWalkStatistics statistics;
};

}  // namespace carvello
