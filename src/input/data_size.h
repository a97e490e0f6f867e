// How many sample bytes a file really holds, whatever its data chunk says.
#pragma once

#include <cstdint>
#include <string>

#include "support/file.h"

namespace carvello {

struct SDataSize {
  std::int64_t nBytes = 0;
  std::string strWarning;  // the log line that tells that the file is cut short; empty when it is not
};

// `claimed` is the size in the data chunk or, for RF64, in ds64; the file stands at the first sample byte. A size that
// reaches past the file's end (a recording cut short, a size never made final such as 0xFFFFFFFF) becomes what is
// there. toFileEnd: take what is there also when the chunk claims less.
SDataSize HeldDataSize(const CFile& file, std::uint64_t claimed, bool toFileEnd);

}  // namespace carvello
