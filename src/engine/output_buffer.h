// COutputBuffer: collects an output's bytes, so that its file is written in large pieces, and decides by them where the
// parts of a split output end.
#pragma once

#include <chrono>
#include <cstdint>

#include "dsp/primitives.h"
#include "recording/wave_file_data.h"

namespace carvello {

// How long an output may hold samples back; with the time between two looks it stays within ten seconds.
inline constexpr std::chrono::milliseconds kSaveInterval{8'000};

// What a stretch of input brings (kStretchFrames) belongs together: it joins the buffer as a whole, and where it does
// not fit, what is there is written first, in one block. A part ends between two such blocks only. What waits too long
// is written earlier, which moves no end: the file is told that the rest belongs to it. Used on the writer's thread;
// every function is false when the file could not be written, which then tells why.
class COutputBuffer {
 public:
  static constexpr std::uint32_t kBytes = 16'777'216;
  using Clock = std::chrono::steady_clock;

  // Without memory for the buffer, HasMemory() is false.
  explicit COutputBuffer(CWaveFileData& file);

  bool HasMemory() const { return m_pBytes != nullptr; }
  void SetSaveInterval(std::chrono::milliseconds interval) { m_saveInterval = interval; }
  // An output begins: `bits` of its values, `longestStretch`: bytes that no stretch brings more than.
  void Begin(std::uint32_t bits, std::int64_t longestStretch);

  // Room for `bytes` at most; nullptr when the file could not be written to make it. Commit tells what was put there.
  std::uint8_t* Reserve(std::uint32_t bytes);
  void Commit(std::uint32_t bytes) { m_nStretch += bytes; }
  // All of the present stretch is there.
  void EndStretch();
  // Writes everything.
  bool Flush();
  // Writes what has waited for the interval.
  bool SaveIfDue();

 private:
  bool Write(std::uint32_t end);
  bool WriteBlock();

  CWaveFileData& m_file;
  ComplexBuffer m_pBytes;
  std::uint32_t m_nBits = 16;
  std::int64_t m_nLongestStretch = 0;
  std::uint32_t m_nFill = 0;     // bytes of whole stretches
  std::uint32_t m_nStretch = 0;  // bytes of the present stretch, behind them
  std::uint32_t m_nSaved = 0;    // bytes at the front that are in the file already
  std::chrono::milliseconds m_saveInterval = kSaveInterval;
  Clock::time_point m_lastSave;
};

}  // namespace carvello
