// CBlockPool: the blocks of samples that the reader fills and every writer of a job reads.
#pragma once

#include <cstdint>
#include <memory>

#include "dsp/primitives.h"
#include "fourier/complex_sample.h"
#include "support/mutex.h"

namespace carvello {

// A block that nobody changes any more; it goes back to its pool when the last writer lets go of it.
using SharedBlock = std::shared_ptr<const SComplex[]>;

// Thread-safe. Blocks may outlive the pool.
class CBlockPool {
 public:
  // `length`: samples in every block.
  explicit CBlockPool(std::int64_t length) : m_nLength(length), m_pFree(std::make_shared<CFreeBlocks>()) {}

  // A block to fill, free or new; nullptr without memory.
  std::shared_ptr<SComplex[]> Take() noexcept;

 private:
  // Blocks that nobody holds. Each keeps the address of the next in its own first bytes: whoever gives one back, on
  // whatever thread, needs no memory for it.
  class CFreeBlocks {
   public:
    CFreeBlocks() = default;
    ~CFreeBlocks();
    CFreeBlocks(const CFreeBlocks&) = delete;
    CFreeBlocks& operator=(const CFreeBlocks&) = delete;

    ComplexBuffer Take() noexcept;  // nothing when none is free
    void Add(SComplex* block) noexcept;

   private:
    CMutex m_lock;
    SComplex* m_pFirst CARVELLO_GUARDED_BY(m_lock) = nullptr;
  };

  std::int64_t m_nLength;
  std::shared_ptr<CFreeBlocks> m_pFree;
};

}  // namespace carvello
