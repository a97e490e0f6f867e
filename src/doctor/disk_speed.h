// How fast a folder's disk takes samples and gives them back.
#pragma once

#include <cstdint>
#include <string>

namespace carvello {

struct SDiskSpeed {
  std::int64_t nBytes = 0;      // that were written, brought to the medium and read back
  double fWriteRate = 0;        // bytes a second, the time for bringing them to the medium included
  double fReadRate = 0;         // bytes a second; 0 when reading failed
  bool bReadPastCache = false;  // else they may have come from the system's memory
  std::string strProblem;       // why nothing, or only writing, was measured
};

// With a file that has no name or loses it at once, of 64 MB at most and an eighth of what is free; on a slow disk of
// as much as it takes in two seconds.
SDiskSpeed MeasureDisk(const std::string& folder);

}  // namespace carvello
