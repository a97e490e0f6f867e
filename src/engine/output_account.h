// COutputAccount: what one output owes and what became of it. Whether an entry is ok is decided here and nowhere else:
// it is when every account of samples closes, from the frames of its span to the bytes on disk.
#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "engine/output_entry.h"
#include "engine/output_result.h"
#include "support/mutex.h"

namespace carvello {

// How the job ended for those entries that were not complete.
struct SJobEnd {
  bool bStopped = false;        // by the user
  std::string_view inputFault;  // why the input could not be read on; empty when it could
};

// Made by the job's owner before anything begins. The writer counts and fails, the reader closes it when the writer is
// done, the owner may look at State() at any moment. Nothing but the constructor needs memory: exhausted memory must
// not keep a failure from being told.
class COutputAccount {
 public:
  explicit COutputAccount(const OutputEntry& entry);
  COutputAccount(const COutputAccount&) = delete;
  COutputAccount& operator=(const COutputAccount&) = delete;

  const OutputEntry& Entry() const { return m_entry; }

  // `due`: input frames of the span, see CInputFrames::Due; `late`: frames by which it begins behind its start. An
  // entry that nothing can be made of fails.
  void Open(std::int64_t due, std::int64_t late = 0) noexcept;
  std::int64_t Late() const noexcept { return m_nLate; }
  void SetEngine(EEngine engine) noexcept { m_result.engine = engine; }
  // Of an entry with a stretch; before Close.
  void SetMarks(std::vector<SStretchMark> marks) noexcept { m_result.marks = std::move(marks); }
  // The first reason is kept.
  void Fail(std::string_view reason) noexcept;
  bool HasFailed() const noexcept { return m_bFailed; }
  // Why, once it has failed.
  const std::string& Reason() const noexcept { return m_strReason; }
  // Frames of the span were given to the downconverter, following those before.
  void CountGiven(std::int64_t frames) noexcept;
  // Whether its whole span is with so many more.
  bool IsSpanGiven(std::int64_t more) const noexcept { return m_nGiven + more >= m_nDue; }

  // The output is closed and nothing more will come. `sampleRate`, `bytes`, `files`: what stands in its files, as the
  // file layer found it when it closed them.
  void Close(const SJobEnd& end, std::uint32_t sampleRate, std::int64_t bytes, std::vector<std::string> files) noexcept;

  SEntryState State() const;
  // Once, when the account is closed.
  SOutputResult TakeResult() noexcept { return std::move(m_result); }

 private:
  void Settle(const SJobEnd& end) noexcept;
  void Shortfall(const char* what, std::int64_t there, std::int64_t due) noexcept;
  const OutputEntry& m_entry;
  std::int64_t m_nDue = 0;  // input frames of the span that the input has
  std::int64_t m_nLate = 0;
  std::atomic<std::int64_t> m_nGiven = 0;  // given to the downconverter
  std::atomic<bool> m_bFailed = false;
  std::atomic<EOutputState> m_state = EOutputState::Waiting;
  mutable CMutex m_reasonLock;
  // Set once; never grows beyond the room made at first.
  std::string m_strReason CARVELLO_GUARDED_BY(m_reasonLock);
  SOutputResult m_result;
};

}  // namespace carvello
