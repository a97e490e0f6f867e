#include "engine/output_account.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

#include "engine/output_stretch.h"

namespace carvello {

namespace {

// Room for a reason: a path, what was expected and what was found, the system's text.
constexpr std::size_t kReasonRoom = 6'000;
constexpr double kProgressTotal = 10'000.0;
constexpr std::string_view kStopped = "stopped";

// Takes the text over as far as there is room, whole characters only.
void Assign(std::string& destination, std::string_view text) noexcept {
  std::size_t length = std::min(text.size(), destination.capacity());
  if (length < text.size()) {
    while (length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80) --length;
  }
  destination.assign(text.data(), length);
}

std::uint32_t FrameBytes(const OutputEntry& entry) {
  return 2 * (entry.nBitsPerSample / 8);
}

}  // namespace

COutputAccount::COutputAccount(const OutputEntry& entry) : m_entry(entry) {
  m_strReason.reserve(kReasonRoom);
  m_result.strError.reserve(kReasonRoom);
  m_result.strFileName = entry.strFileName;
  m_result.nOutputFrequency = entry.nOutputFrequency;
  m_result.nBandwidth = entry.nOutputSampleRate;
  m_result.nBitsPerSample = entry.nBitsPerSample;
}

void COutputAccount::Open(std::int64_t due, std::int64_t late) noexcept {
  m_nLate = late;
  std::array<char, 128> text{};
  if (m_entry.nOutputSampleRate == 0) {
    Fail("a bandwidth of 0 Hz cannot be cut");
  } else if (m_entry.nOutputSampleRate > m_entry.nInputSampleRate) {
    std::snprintf(text.data(), text.size(), "a bandwidth of %u Hz is wider than the input, which has %u Hz",
                  m_entry.nOutputSampleRate, m_entry.nInputSampleRate);
    Fail(text.data());
  } else if (m_entry.nBitsPerSample != 16 && m_entry.nBitsPerSample != 32) {
    std::snprintf(text.data(), text.size(), "samples of %u bits cannot be written", m_entry.nBitsPerSample);
    Fail(text.data());
  }
  m_nDue = due;
  if (due <= 0) Fail("no samples of the input lie between its start and its end");
  m_result.nFramesDue = OutputFramesOf(m_entry, m_nDue);
}

void COutputAccount::Fail(std::string_view reason) noexcept {
  const CLockGuard guard(m_reasonLock);
  if (m_bFailed) return;
  Assign(m_strReason, reason.empty() ? "Unknown error" : reason);
  m_state = EOutputState::Failed;
  m_bFailed = true;
}

void COutputAccount::CountGiven(std::int64_t frames) noexcept {
  m_nGiven += frames;
  EOutputState waiting = EOutputState::Waiting;
  m_state.compare_exchange_strong(waiting, EOutputState::Running);
}

void COutputAccount::Close(const SJobEnd& end, std::uint32_t sampleRate, std::int64_t bytes,
                           std::vector<std::string> files) noexcept {
  m_result.nSampleRate = sampleRate;
  m_result.nBytes = static_cast<std::uint64_t>(bytes);
  if (FrameBytes(m_entry) != 0) m_result.nFrames = bytes / FrameBytes(m_entry);
  m_result.files = std::move(files);
  Settle(end);
  m_result.state = m_state;
  m_result.bOk = m_state == EOutputState::Done;
  if (m_state == EOutputState::Stopped) Assign(m_result.strError, kStopped);
  if (m_state == EOutputState::Failed) Assign(m_result.strError, Reason());
}

// From the input to the disk: the first account that does not close is the reason.
void COutputAccount::Settle(const SJobEnd& end) noexcept {
  if (m_bFailed) return;
  if (m_nGiven < m_nDue) {
    if (!end.inputFault.empty()) {
      Fail(end.inputFault);
    } else if (end.bStopped) {
      m_state = EOutputState::Stopped;
    } else {
      Shortfall("the input ended: frames of its stretch that were read", m_nGiven, m_nDue);
    }
    return;
  }
  if (m_nGiven > m_nDue) {
    Shortfall("frames of the input that were read for it", m_nGiven, m_nDue);
  } else if (m_result.nFrames != m_result.nFramesDue) {
    Shortfall("samples written", m_result.nFrames, m_result.nFramesDue);
  } else if (m_result.files.empty()) {
    Fail("no file was written");
  } else {
    m_state = EOutputState::Done;
  }
}

void COutputAccount::Shortfall(const char* what, std::int64_t there, std::int64_t due) noexcept {
  std::array<char, 160> text{};
  std::snprintf(text.data(), text.size(), "%s: %lld, due: %lld", what, static_cast<long long>(there),
                static_cast<long long>(due));
  Fail(text.data());
}

SEntryState COutputAccount::State() const {
  SEntryState state;
  state.pEntry = &m_entry;
  state.state = m_state;
  const std::int64_t given = m_nGiven;
  if (m_nDue > 0) {
    const double share = static_cast<double>(std::min(given, m_nDue)) / static_cast<double>(m_nDue);
    state.nProgress = static_cast<std::uint32_t>(share * kProgressTotal);
  }
  const CLockGuard guard(m_reasonLock);
  if (m_bFailed) state.strReason = m_strReason;
  return state;
}

}  // namespace carvello
