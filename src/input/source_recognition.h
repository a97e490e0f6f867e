// Source recognition: which program made a recording, and where its frequency and time lie.
#pragma once

#include <string>

#include "input/scan_result.h"

namespace carvello {

// The metadata that the analysis walk kept of one file. Chunk bodies are whole; an absent chunk is empty.
struct SSourceEvidence {
  std::string strFileName;  // as the file was opened
  std::string strAuxi;
  std::string strRcvr;
  std::string strMeta;
  bool bElad = false;  // the file has an "elad" chunk
};

// Fills `result.strXml` or `result.source` from the evidence and from the format and data size that the result holds.
// What nothing recognises leaves both empty.
void RecogniseSource(const SSourceEvidence& evidence, SScanResult& result);

}  // namespace carvello
