#include "cli/progress_display.h"

#include <algorithm>

#include "cli/console.h"
#include "support/formatting.h"
#include "support/platform.h"
#include "support/text.h"

namespace carvello {
namespace {

constexpr std::chrono::milliseconds kRedrawInterval(100);
// All is read before the last file is closed; only EndBatch says 100 %.
constexpr double kAlmostDone = 0.999;
constexpr std::size_t kSmallestBar = 10;
constexpr std::size_t kLargestBar = 50;
constexpr std::size_t kNumbersWidth = sizeof("100 %  1000.0 MB/s  0:00:00 left") - 1;

// The last column stays free: many terminals break the line when it is written to.
std::size_t BarColumns() {
  return std::max(platform::TerminalColumns(), 2U) - 1;
}

std::string PerCent(const SProgressState& state) {
  // Cut, not rounded, for the same reason. The little added makes up for fractions such as 0.29.
  return Format("%3d %%", static_cast<int>(state.dFraction * 100.0 + 1e-6));
}

std::string RateAndTimeLeft(const SProgressState& state) {
  std::string text;
  if (state.dBytesPerSecond > 0.0) text += Format("  %.1f MB/s", state.dBytesPerSecond / 1e6);
  if (state.dSecondsLeft >= 0.0) text += "  " + FormatDuration(state.dSecondsLeft) + " left";
  return text;
}

}  // namespace

SProgressState ProgressAfter(double elapsed, double fraction, double bytes) {
  constexpr double kFirst = 0.5;
  SProgressState state;
  state.dFraction = fraction;
  if (fraction <= 0.0 || elapsed < kFirst) return state;
  state.dBytesPerSecond = fraction * bytes / elapsed;
  state.dSecondsLeft = elapsed * (1.0 - fraction) / fraction;
  return state;
}

std::string ProgressTextLine(const SProgressState& state) {
  const std::string prefix = state.strPrefix.empty() ? "" : state.strPrefix + "  ";
  return prefix + PerCent(state) + RateAndTimeLeft(state);
}

std::string ProgressBarLine(const SProgressState& state, std::size_t columns) {
  const std::string prefix = state.strPrefix.empty() ? "" : state.strPrefix + "  ";
  const std::string numbers = PerCent(state) + RateAndTimeLeft(state);
  // Brackets and two blanks stand around the bar. Room for the widest usual numbers keeps its length steady.
  const std::size_t taken = prefix.size() + std::max(numbers.size(), kNumbersWidth) + 4;
  if (columns < taken + kSmallestBar) return (prefix + numbers).substr(0, columns);
  const std::size_t length = std::min(columns - taken, kLargestBar);
  const auto filled = std::min(length, static_cast<std::size_t>(state.dFraction * static_cast<double>(length)));
  return prefix + "[" + std::string(filled, '#') + std::string(length - filled, '.') + "]  " + numbers;
}

void CProgressDisplay::BeginBatch(const std::string& prefix, const SProgressSpan& span) {
  m_strPrefix = prefix;
  m_span = span;
  m_begun = Clock::now();
  m_drawn = Clock::time_point();
  m_dFraction = 0.0;
  m_nTenths = 0;
}

void CProgressDisplay::Update(std::uint64_t total, std::uint64_t done) {
  if (m_mode == EMode::None || total == 0) return;
  const double place = m_span.PlaceOf(static_cast<double>(done) / static_cast<double>(total));
  const double length = m_span.dEnd - m_span.dBegin;
  const double fraction = length > 0.0 ? (place - m_span.dBegin) / length : 0.0;
  m_dFraction = std::clamp(fraction, m_dFraction, kAlmostDone);
  const Clock::time_point now = Clock::now();
  if (m_mode == EMode::Bar) {
    if (now - m_drawn < kRedrawInterval) return;
    m_drawn = now;
    Draw(ProgressBarLine(State(now), BarColumns()));
    return;
  }
  const int tenths = static_cast<int>(m_dFraction * 10.0);
  SProgressState state = State(now);
  while (m_nTenths < tenths) {
    state.dFraction = ++m_nTenths / 10.0;
    PrintErrLine(ProgressTextLine(state));
  }
}

void CProgressDisplay::EndBatch(bool complete) {
  if (m_mode == EMode::None) return;
  const SProgressState state{m_strPrefix, complete ? 1.0 : m_dFraction, 0.0, -1.0};
  if (m_mode == EMode::Bar) {
    Draw(ProgressBarLine(state, BarColumns()));
    PrintTerminalControl("\n");
    m_nWidth = 0;
  } else if (complete) {
    PrintErrLine(ProgressTextLine(state));
  }
}

void CProgressDisplay::PrintLine(const std::string& line) {
  Erase();
  PrintErrLine(line);
}

SProgressState CProgressDisplay::State(Clock::time_point now) const {
  const double elapsed = std::chrono::duration<double>(now - m_begun).count();
  SProgressState state = ProgressAfter(elapsed, m_dFraction, m_span.dEnd - m_span.dBegin);
  state.strPrefix = m_strPrefix;
  return state;
}

void CProgressDisplay::Draw(const std::string& line) {
  // Blanks over what a longer line left behind, as not every terminal understands a command to erase.
  const std::size_t rest = m_nWidth > line.size() ? m_nWidth - line.size() : 0;
  PrintTerminalControl(Format("\r%s%*s", line.c_str(), static_cast<int>(rest), ""));
  m_nWidth = line.size();
}

void CProgressDisplay::Erase() {
  if (m_nWidth == 0) return;
  PrintTerminalControl(Format("\r%*s\r", static_cast<int>(m_nWidth), ""));
  m_nWidth = 0;
  m_drawn = Clock::time_point();
}

}  // namespace carvello
