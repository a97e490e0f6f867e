#include "engine/spectrum_block.h"

#include <algorithm>
#include <new>
#include <utility>

namespace carvello {

CSpectrumBlock::CSpectrumBlock(const CBlockTransform& transform)
    : m_transform(transform), m_pBins(AllocComplex(kMostFrames * kFrameStride)) {}

void CSpectrumBlock::Begin(SharedBlock samples, std::int64_t position, std::int64_t count) noexcept {
  m_pSamples = std::move(samples);
  m_llPosition = position;
  m_nFirstFrame = FirstIncompleteFrame(position);
  m_nEndFrame = FirstIncompleteFrame(position + count);
  for (auto& ready : m_ready) ready.store(0, std::memory_order_relaxed);
  m_nNextFrame.store(m_nFirstFrame, std::memory_order_relaxed);
}

const SComplex* CSpectrumBlock::Frame(std::int64_t frame, CConverterWork& work) {
  const auto index = static_cast<std::size_t>(frame - m_nFirstFrame);
  std::atomic<std::uint32_t>& ready = m_ready[index];
  if (ready.load(std::memory_order_acquire) == 0) {
    const auto nWorkSize = static_cast<std::int64_t>(m_transform.WorkSize());
    TransformFreeFrames(work.Room(CConverterWork::kTransform, kFrameSize + nWorkSize));
    CLockGuard guard(m_readyLock);
    while (ready.load(std::memory_order_acquire) == 0) guard.Wait(m_frameReady);
  }
  return m_pBins.get() + static_cast<std::int64_t>(index) * kFrameStride;
}

// `work`: room for a frame's samples and for the transform. It reads them across in long strides, which the processor
// foresees badly: from where the reader left them it would take half as long again as with this copy.
void CSpectrumBlock::TransformFreeFrames(SComplex* work) noexcept {
  while (m_nNextFrame.load(std::memory_order_relaxed) < m_nEndFrame) {
    const std::int64_t frame = m_nNextFrame.fetch_add(1, std::memory_order_relaxed);
    if (frame >= m_nEndFrame) return;
    const std::int64_t index = frame - m_nFirstFrame;
    std::copy_n(m_pSamples.get() + (FrameFirst(frame) - m_llPosition), kFrameSize, work);
    m_transform.Forward(work, m_pBins.get() + index * kFrameStride, work + kFrameSize);
    {
      // Not the atomic's own wait: where the system has none for it, the standard library can lose the call.
      const CLockGuard guard(m_readyLock);
      m_ready[static_cast<std::size_t>(index)].store(1, std::memory_order_release);
    }
    m_frameReady.notify_all();
  }
}

CSpectrumPool::CFreeBlocks::~CFreeBlocks() {
  while (Take() != nullptr) {
  }
}

std::unique_ptr<CSpectrumBlock> CSpectrumPool::CFreeBlocks::Take() noexcept {
  const CLockGuard guard(m_lock);
  std::unique_ptr<CSpectrumBlock> block(m_pFirst);
  if (block) m_pFirst = block->m_pNextFree;
  return block;
}

void CSpectrumPool::CFreeBlocks::Add(CSpectrumBlock* block) noexcept {
  block->m_pSamples.reset();
  const CLockGuard guard(m_lock);
  block->m_pNextFree = m_pFirst;
  m_pFirst = block;
}

std::shared_ptr<CSpectrumBlock> CSpectrumPool::Take(SharedBlock samples, std::int64_t position,
                                                    std::int64_t count) noexcept {
  try {
    std::unique_ptr<CSpectrumBlock> block = m_pFree->Take();
    if (!block) block = std::make_unique<CSpectrumBlock>(m_transform);
    if (!block->HasMemory()) return nullptr;
    block->Begin(std::move(samples), position, count);
    // On failure the block goes back to the pool too.
    return {block.release(), [pool = m_pFree](CSpectrumBlock* returned) noexcept { pool->Add(returned); }};
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

}  // namespace carvello
