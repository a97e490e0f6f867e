// CSpectrumBlock: the spectrum of a block of input, which all entries that need it share.
#pragma once

#include <array>
#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "dsp/primitives.h"
#include "engine/block_pool.h"
#include "engine/block_reader.h"
#include "engine/converter_work.h"
#include "fourier/block_transform.h"
#include "spectrum/spectrum_grid.h"
#include "support/mutex.h"

namespace carvello {

// Samples of the recording that stand in front of every block whose spectrum is taken: those of all frames that are
// complete with it.
inline constexpr std::int64_t kHistoryFrames = kFrameSize;

// All frames of the grid that are complete with a block. The threads that work on the block transform them together:
// each takes the next one that nobody has, and who needs one that another thread has waits for it. Whoever has taken
// one brings it to its end, so nobody waits for ever: that needs no memory and no other thread.
class CSpectrumBlock {
 public:
  // Nothing to begin with; see CSpectrumPool.
  explicit CSpectrumBlock(const CBlockTransform& transform);

  const CBlockTransform& Transform() const noexcept { return m_transform; }
  std::int64_t FirstFrame() const noexcept { return m_nFirstFrame; }
  std::int64_t EndFrame() const noexcept { return m_nEndFrame; }
  // The kFrameSize bins of a frame from FirstFrame() on and before EndFrame(). Takes part in transforming until it
  // is there. Exhausted memory of `work` raises std::bad_alloc before anything is taken.
  const SComplex* Frame(std::int64_t frame, CConverterWork& work);

 private:
  friend class CSpectrumPool;
  static constexpr std::size_t kMostFrames = (kBlockFrames + kFrameHop - 1) / kFrameHop;

  // Of the frames in memory. An entry takes the same bins of all frames, and at a power of two from one another they
  // would share few places in the caches.
  static constexpr std::int64_t kFrameStride = kFrameSize + 72;

  bool HasMemory() const noexcept { return m_pBins != nullptr; }
  void Begin(SharedBlock samples, std::int64_t position, std::int64_t count) noexcept;
  void TransformFreeFrames(SComplex* work) noexcept;

  const CBlockTransform& m_transform;
  SharedBlock m_pSamples;  // kHistoryFrames more stand in front of them
  std::int64_t m_llPosition = 0;
  std::int64_t m_nFirstFrame = 0;
  std::int64_t m_nEndFrame = 0;
  ComplexBuffer m_pBins;
  std::atomic<std::int64_t> m_nNextFrame = 0;                     // that nobody has taken
  std::array<std::atomic<std::uint32_t>, kMostFrames> m_ready{};  // set under the lock, read by anybody
  CMutex m_readyLock;
  std::condition_variable m_frameReady;
  CSpectrumBlock* m_pNextFree = nullptr;
};

// Blocks that are used again. Thread-safe; blocks may outlive the pool, but not the transform.
class CSpectrumPool {
 public:
  explicit CSpectrumPool(const CBlockTransform& transform)
      : m_transform(transform), m_pFree(std::make_shared<CFreeBlocks>()) {}

  // For `count` samples (at most kBlockFrames) from `position` of the recording on; nullptr without memory. In front of
  // them kHistoryFrames more stand in memory, those before them in the recording.
  std::shared_ptr<CSpectrumBlock> Take(SharedBlock samples, std::int64_t position, std::int64_t count) noexcept;

 private:
  class CFreeBlocks {
   public:
    CFreeBlocks() = default;
    ~CFreeBlocks();
    CFreeBlocks(const CFreeBlocks&) = delete;
    CFreeBlocks& operator=(const CFreeBlocks&) = delete;

    std::unique_ptr<CSpectrumBlock> Take() noexcept;  // nothing when none is free
    void Add(CSpectrumBlock* block) noexcept;

   private:
    CMutex m_lock;
    CSpectrumBlock* m_pFirst CARVELLO_GUARDED_BY(m_lock) = nullptr;
  };

  const CBlockTransform& m_transform;
  std::shared_ptr<CFreeBlocks> m_pFree;
};

}  // namespace carvello
