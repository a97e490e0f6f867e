// How many sample bytes a file really holds, whatever its data chunk says.
#pragma once

#include <cstdint>
#include <string>

#include "support/file.h"

namespace carvello {

enum class ESizeFault {
  None,
  NeverFinal,  // what a recorder writes in front of the samples before it knows how many there will be
  Wrapped,     // counted past 4 GiB in 32 bits
  PastEnd,     // more than the file holds
};

struct SDataSize {
  std::int64_t nBytes = 0;
  ESizeFault fault = ESizeFault::None;
  std::string strWarning;       // the log line when the file tells another size, or none; empty when all is well
  std::uint32_t nError = 0;     // the system's code when the file's length, or its end, cannot be had
  std::int64_t nReadBytes = 0;  // of the samples, which only a file with a wrong size makes necessary
};

// Both are asked with the file at the first sample byte, and leave it there. A size that cannot be becomes what is
// there, up to the file's end or to chunks that stand at it. `frameBytes`: of one frame, 0 when not known; used for the
// warning alone.

// By the 32-bit size in the data chunk. An ELAD recording's reaches to the file's end whatever it says.
SDataSize RiffDataSize(CFile& file, std::uint32_t claimed, bool elad, std::uint32_t frameBytes);
// By the size in ds64.
SDataSize Rf64DataSize(CFile& file, std::int64_t claimed, std::uint32_t frameBytes);

// Whether recorders write this 32-bit size before they know the right one.
bool IsOpenSize(std::uint32_t size);

}  // namespace carvello
