// Chunks behind the samples of a file whose sizes do not tell where the samples end.
#pragma once

#include <cstdint>
#include <optional>

#include "support/file.h"

namespace carvello {

// Whether the header of a chunk as recording programs write them, which ends within the file, stands at the position.
// Reads from there; the file stands anywhere then. Nothing when the file cannot be read: the last read tells why.
std::optional<bool> IsKnownChunkAt(CFile& file, std::int64_t position, std::int64_t length);

struct STailChunks {
  std::int64_t nBegin = 0;  // the file's length when there are none
  std::int64_t nReadBytes = 0;
  std::uint32_t nError = 0;  // the system's code when the file cannot be read
};
// Looks for chunks of known names that fill the file's end, each as long as it says. Reads the file's last quarter of a
// megabyte at most, nothing in front of `begin`; the file stands anywhere then.
STailChunks FindTailChunks(CFile& file, std::int64_t begin, std::int64_t length);

}  // namespace carvello
