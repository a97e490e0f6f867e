// How far a SigMF recording on disk has come that this program writes: see written_file.h.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "recording/written_file.h"

namespace carvello {

struct SWrittenSigMf {
  SWrittenFile file;                   // format as a WAV file of the same samples would have it
  std::int64_t nFrequency = 0;         // centre, Hz
  std::int64_t tAsked = 0;             // seconds since 1970 UTC, see SCutOrigin
  std::optional<std::int64_t> frames;  // that were written when the recording was closed
};

// By its meta file and the length of its file of samples. A recording of which one file is missing, or whose meta file
// is empty, is unfinished when no samples are lost with that.
SWrittenSigMf InspectWrittenSigMf(const std::string& dataPath);

}  // namespace carvello
