// How many sample bytes a file really holds, whatever its data chunk says.
#pragma once

#include <cstdint>
#include <string>

#include "support/file.h"

namespace carvello {

struct SDataSize {
  std::int64_t nBytes = 0;
  std::string strWarning;    // the log line when the file tells another size, or none; empty when all is well
  std::uint32_t nError = 0;  // the system's code when the file's length cannot be had
};

// The file stands at the first sample byte. A size that reaches past the file's end (a recording cut short) becomes
// what is there.

// By the size in the data chunk. One that was never made final (0xFFFFFFFF) reaches to the file's end, however far that
// is; so does one that claims less when the recording is ELAD's.
SDataSize RiffDataSize(const CFile& file, std::uint32_t claimed, bool elad);
// By the size in ds64.
SDataSize Rf64DataSize(const CFile& file, std::int64_t claimed);

}  // namespace carvello
