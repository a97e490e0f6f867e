// What must not have changed on disk since something was learned of a file.
#pragma once

#include <cstdint>

#include "support/platform.h"

namespace carvello {

struct SFileStamp {
  std::int64_t nSize = 0;      // bytes
  std::int64_t nModified = 0;  // nanoseconds since 1970 UTC
  std::uint64_t nVolume = 0;
  std::uint64_t nFileNumber = 0;

  SFileStamp() = default;
  explicit SFileStamp(const platform::FileStatus& status)
      : nSize(status.nSize), nModified(status.nModified), nVolume(status.nVolume), nFileNumber(status.nFileNumber) {}
  bool operator==(const SFileStamp&) const = default;
};

}  // namespace carvello
