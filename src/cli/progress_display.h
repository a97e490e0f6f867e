// CProgressDisplay: how far a job is, on stderr: a bar on a terminal, a line every 10 % elsewhere.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

#include "engine/progress_span.h"

namespace carvello {

// What there is to show.
struct SProgressState {
  std::string strPrefix;         // for example "Batch 1/2"; may be empty
  double dFraction = 0.0;        // 0 to 1
  double dBytesPerSecond = 0.0;  // 0 when not known yet
  double dSecondsLeft = -1.0;    // negative when not known yet
};

// After `elapsed` seconds of a batch that reads `bytes` in all, of which `fraction` is done. Nothing is known in the
// first half second: what is read then comes from caches, or is the start of threads.
SProgressState ProgressAfter(double elapsed, double fraction, double bytes);

// One line, as wide as `columns` allows: the bar shrinks first, then goes.
std::string ProgressBarLine(const SProgressState& state, std::size_t columns);
// The same without a bar.
std::string ProgressTextLine(const SProgressState& state);

class CProgressDisplay {
 public:
  enum class EMode { None, Lines, Bar };

  explicit CProgressDisplay(EMode mode) : m_mode(mode) {}

  void BeginBatch(const std::string& prefix, const SProgressSpan& span);
  // `done` of `total` is the place in the whole input, as the reader posts it.
  void Update(std::uint64_t total, std::uint64_t done);
  // The batch has ended, or was stopped before its end: the bar's line is left standing.
  void EndBatch(bool complete);
  // A line of text on stderr that does not run into the bar.
  void PrintLine(const std::string& line);

 private:
  using Clock = std::chrono::steady_clock;

  SProgressState State(Clock::time_point now) const;
  void Draw(const std::string& line);
  void Erase();

  EMode m_mode;
  std::string m_strPrefix;
  SProgressSpan m_span;
  Clock::time_point m_begun;
  Clock::time_point m_drawn;  // time of the last redraw
  double m_dFraction = 0.0;
  int m_nTenths = 0;         // tenths already told in Lines mode
  std::size_t m_nWidth = 0;  // columns that the bar's line takes now
};

}  // namespace carvello
