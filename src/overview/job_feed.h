// CJobFeed: takes the blocks that a job reads to the rows of the overview.
#pragma once

#include <array>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "dsp/primitives.h"
#include "engine/block_listener.h"
#include "overview/base_levels.h"
#include "overview/row_maker.h"
#include "spectrum/power_spectrum.h"
#include "support/mutex.h"

namespace carvello {

struct SFedBlock {
  SharedBlock samples;
  std::int64_t llPosition = 0;
  std::int32_t nFrames = 0;
};

// Blocks on their way. Where they come faster than they are looked at, whole rows are left out: part of a row is of no
// use. Thread-safe.
class CFedBlocks {
 public:
  // Room for a row and a half of a recording of 60 GB.
  static constexpr std::size_t kMost = 12;

  void SetRow(std::int64_t frames);
  // Never waits for anything but the moment that another block is taken out.
  void Offer(const SharedBlock& samples, std::int64_t position, std::int32_t frames) noexcept;
  // Waits for a block; nothing behind End.
  std::optional<SFedBlock> Take();
  void End() noexcept;

 private:
  CMutex m_lock;
  std::condition_variable m_come;
  std::array<SFedBlock, kMost> m_blocks CARVELLO_GUARDED_BY(m_lock);
  std::size_t m_nFirst CARVELLO_GUARDED_BY(m_lock) = 0;
  std::size_t m_nCount CARVELLO_GUARDED_BY(m_lock) = 0;
  std::int64_t m_nRowFrames CARVELLO_GUARDED_BY(m_lock) = 0;
  bool m_bLeavesOut CARVELLO_GUARDED_BY(m_lock) = false;
  bool m_bEnd CARVELLO_GUARDED_BY(m_lock) = false;
};

// What a job tells of its blocks to.
class CJobListener final : public IBlockListener {
 public:
  explicit CJobListener(std::shared_ptr<CFedBlocks> blocks) : m_pBlocks(std::move(blocks)) {}

  void OnBlock(const SharedBlock& samples, std::int64_t position, std::int32_t frames) noexcept override {
    m_pBlocks->Offer(samples, position, frames);
  }

 private:
  const std::shared_ptr<CFedBlocks> m_pBlocks;
};

// Makes rows of blocks that follow each other. One thread's.
class CJobFeed {
 public:
  explicit CJobFeed(CBaseLevels& base);

  // True when a row has become whole.
  bool Add(const SFedBlock& block);

 private:
  void BeginAt(std::int64_t position);
  bool AddTransforms();
  void EndRow();

  CBaseLevels& m_base;
  const SCellGrid m_grid;
  CPowerSpectrum m_spectrum;
  ComplexBuffer m_pFrames;     // what is not used up, then the block
  std::int64_t m_nBegin = 0;   // of the first of them in the recording
  std::int64_t m_nFrames = 0;  // of them
  std::int64_t m_nRow = 0;     // the next transform
  std::int64_t m_nTransform = 0;
  std::vector<float> m_power;
  SRowPowers m_powers;
};

}  // namespace carvello
