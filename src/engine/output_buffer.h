// COutputBuffer: collects an output's bytes, so that its file is written in large pieces, and decides by them where the
// parts of a split output end.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>

#include "dsp/primitives.h"
#include "recording/wave_file_data.h"
#include "recording/write_policy.h"

namespace carvello {

// How long an output may hold samples back; with the time between two looks it stays within ten seconds.
inline constexpr std::chrono::milliseconds kSaveInterval{8'000};

// The memory that the buffers of a job share. Thread-safe.
class CBufferBudget {
 public:
  static constexpr std::int64_t kBytes = 268'435'456;

  explicit CBufferBudget(std::int64_t bytes = kBytes) : m_nLeft(bytes) {}

  // False when there is not as much left; nothing is taken then.
  bool Take(std::int64_t bytes) noexcept;
  void TakeAtAnyRate(std::int64_t bytes) noexcept { m_nLeft -= bytes; }
  void GiveBack(std::int64_t bytes) noexcept { m_nLeft += bytes; }
  std::int64_t Left() const noexcept { return m_nLeft; }

 private:
  std::atomic<std::int64_t> m_nLeft;
};

// What a stretch of input brings (kStretchFrames) belongs together: it joins the block of kBytes as a whole, and where
// it does not fit, what is there is one block, and the stretch begins the next. A part ends between two such blocks
// only. What waits too long is written earlier, and so is what the budget has no memory for. Neither moves an end: the
// file is told that the rest belongs to it, and where a stretch that was written for want of memory turns out to belong
// to the next part, the file moves it there. Used on one thread at a time; every function is false when the file could
// not be written, which then tells why. Exhausted memory raises std::bad_alloc.
class COutputBuffer {
 public:
  static constexpr std::uint32_t kBytes = 16'777'216;
  using Clock = std::chrono::steady_clock;

  COutputBuffer(CWaveFileData& file, CBufferBudget& budget) : m_file(file), m_budget(budget) {}
  ~COutputBuffer() { LetGo(); }
  COutputBuffer(const COutputBuffer&) = delete;
  COutputBuffer& operator=(const COutputBuffer&) = delete;

  void SetSaveInterval(std::chrono::milliseconds interval) { m_saveInterval = interval; }
  // An output begins: `bits` of its values, `longestStretch`: bytes that no stretch brings more than.
  void Begin(std::uint32_t bits, std::int64_t longestStretch);

  // Room for `bytes` at most; nullptr when the file could not be written to make it. Commit tells what was put there.
  // What is asked for at once is held in memory whatever the budget: ask for little.
  std::uint8_t* Reserve(std::uint32_t bytes);
  void Commit(std::uint32_t bytes) { m_nStretch += bytes; }
  // All of the present stretch is there.
  void EndStretch();
  // Writes everything, and lets go of the memory.
  bool Flush();
  // Whether something has waited for the interval, and writing it.
  bool IsSaveDue(Clock::time_point now = Clock::now());
  bool SaveIfDue() { return !IsSaveDue() || Save(); }
  bool Save();

 private:
  std::uint32_t End() const { return m_nFill + m_nStretch; }
  std::uint32_t SettledEnd() const;
  std::uint32_t WritableEnd() const;
  std::uint8_t* At(std::uint32_t place) const;
  bool MakeRoom(std::uint32_t bytes);
  bool Grow(std::int64_t bytes, bool atAnyRate);
  void DropWritten();
  void LetGo() noexcept;
  bool Write(std::uint32_t end, ETell tell);
  bool WriteBlock();

  CWaveFileData& m_file;
  CBufferBudget& m_budget;
  ComplexBuffer m_pBytes;
  std::int64_t m_nCapacity = 0;  // bytes that it holds
  std::uint32_t m_nBits = 16;
  std::int64_t m_nLongestStretch = 0;
  // Of the present block:
  std::uint32_t m_nFill = 0;     // bytes of whole stretches
  std::uint32_t m_nStretch = 0;  // bytes of the present stretch, behind them
  std::uint32_t m_nSaved = 0;    // bytes at the front that are in the file already
  std::uint32_t m_nDropped = 0;  // those of them that are no longer in memory
  bool m_bUntold = false;        // some are in the file, and its sizes do not tell of them yet
  std::chrono::milliseconds m_saveInterval = kSaveInterval;
  Clock::time_point m_lastSave;
};

}  // namespace carvello
