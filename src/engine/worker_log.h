// CWorkerLog: the log of one worker, or of one entry that a worker has in hand: lines under a name, for whoever
// listens.
#pragma once

#include <cstdarg>
#include <cstdint>
#include <functional>
#include <string>

#include "engine/message_target.h"
#include "support/mutex.h"
#include "support/my_string_array.h"
#include "support/text.h"

namespace carvello {

// Lines are written on one thread at a time; the history may be read on any.
class CWorkerLog {
 public:
  using Callback = std::function<void(const std::string& worker, const std::string& text, int)>;

  // Before the first line: who hears it, and under which name.
  void SetTarget(IMessageTarget* target, std::uint32_t message);
  void SetCallback(Callback callback) { m_callback = std::move(callback); }  // used instead of the target
  void SetName(std::string name) { m_strName = std::move(name); }
  void SetDebugOutput(bool on) { m_bDebugOutput = on; }
  void SetSend(bool on) { m_bSend = on; }
  void SetHistory(bool on, bool timePrefix);
  // Lets the other one be heard by the same listener.
  void ShareWith(CWorkerLog& other) const;

  const std::string& Name() const { return m_strName; }
  CMyStringArray History() const;

  // Trailing white space is cut, and a second blank line in a row is dropped; so is a line for which there is no
  // memory, for that is no reason to lose samples.
  void Log(const char* format, ...) noexcept CARVELLO_PRINTF(2, 3);
  void LogV(const char* format, va_list arguments) noexcept CARVELLO_PRINTF(2, 0);
  // A line for the debugger alone.
  void DebugLogV(const char* format, va_list arguments) const noexcept CARVELLO_PRINTF(2, 0);

 private:
  void LogLine(const std::string& text);

  IMessageTarget* m_pTarget = nullptr;
  std::uint32_t m_nMessage = 0;
  Callback m_callback;
  bool m_bDebugOutput = false;
  bool m_bSend = true;
  bool m_bHistory = false;
  bool m_bHistoryTime = false;
  std::string m_strName;
  std::string m_strLastLine;

  mutable CMutex m_historyLock;
  CMyStringArray m_history CARVELLO_GUARDED_BY(m_historyLock);
};

}  // namespace carvello
