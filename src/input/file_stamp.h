// What must not have changed on disk since something was learned of a file.
#pragma once

#include <cstdint>

#include "support/platform.h"

namespace carvello {

struct SFileStamp {
  std::int64_t nSize = 0;
  std::int64_t tModified = 0;
  std::uint64_t nFileNumber = 0;

  explicit SFileStamp(const platform::FileStatus& status)
      : nSize(status.nSize), tModified(status.tModified), nFileNumber(status.nFileNumber) {}
  bool operator==(const SFileStamp&) const = default;
};

}  // namespace carvello
