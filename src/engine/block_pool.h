// CBlockPool: the blocks of samples that the reader fills and every writer of a job reads.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

#include "dsp/complex_sample.h"
#include "dsp/primitives.h"

namespace carvello {

// A block that nobody changes any more; it goes back to its pool when the last writer lets go of it.
using SharedBlock = std::shared_ptr<const SComplex[]>;

// Thread-safe. Blocks may outlive the pool.
class CBlockPool {
 public:
  // `length`: samples in every block.
  explicit CBlockPool(std::int64_t length) : m_nLength(length), m_pFree(std::make_shared<SFreeBlocks>()) {}

  // A block to fill, free or new; nullptr without memory.
  std::shared_ptr<SComplex[]> Take();

 private:
  struct SFreeBlocks {
    std::mutex lock;
    std::vector<ComplexBuffer> blocks;
  };

  std::int64_t m_nLength;
  std::shared_ptr<SFreeBlocks> m_pFree;
};

}  // namespace carvello
