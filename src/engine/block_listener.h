// IBlockListener: somebody who looks at the samples that a job reads anyway.
#pragma once

#include <cstdint>

#include "engine/block_pool.h"

namespace carvello {

class IBlockListener {
 public:
  virtual ~IBlockListener() = default;

  // On the reader's thread, of every block behind the last: the job goes on when it returns, so it neither waits nor
  // computes. `position`: of the first frame in the recording. Blocks that are kept are memory that the job takes anew,
  // so a few are all that a listener may hold.
  virtual void OnBlock(const SharedBlock& samples, std::int64_t position, std::int32_t frames) noexcept = 0;
};

}  // namespace carvello
