#include "engine/worker_log.h"

#include <exception>
#include <utility>

#include "support/platform.h"
#include "support/system_time.h"

namespace carvello {

void CWorkerLog::SetTarget(IMessageTarget* target, std::uint32_t message) {
  m_pTarget = target;
  m_nMessage = message;
}

void CWorkerLog::SetHistory(bool on, bool timePrefix) {
  m_bHistory = on;
  m_bHistoryTime = timePrefix;
}

void CWorkerLog::ShareWith(CWorkerLog& other) const {
  other.SetTarget(m_pTarget, m_nMessage);
  other.SetCallback(m_callback);
}

CMyStringArray CWorkerLog::History() const {
  const CLockGuard guard(m_historyLock);
  return m_history;
}

void CWorkerLog::Log(const char* format, ...) noexcept {
  va_list arguments;
  va_start(arguments, format);
  LogV(format, arguments);
  va_end(arguments);
}

void CWorkerLog::LogV(const char* format, va_list arguments) noexcept {
  try {
    LogLine(TrimRight(FormatV(format, arguments)));
  } catch (const std::exception&) {
    // The line is lost, and nothing else.
  }
}

void CWorkerLog::LogLine(const std::string& text) {
  if (text.empty() && m_strLastLine.empty()) return;

  if (m_bDebugOutput) platform::DebugOutput(Format("%s: %s", m_strName.c_str(), text.c_str()));
  if (m_bSend) {
    if (m_callback) {
      m_callback(m_strName, text, 0);
    } else if (m_pTarget != nullptr) {
      m_pTarget->PostTexts(m_nMessage, m_strName, text);
    }
  }
  if (m_bHistory) {
    std::string line = text;
    if (m_bHistoryTime) line = Format("%s %s", FormatLocal("%H:%M:%S", CurrentTime()).c_str(), text.c_str());
    const CLockGuard guard(m_historyLock);
    m_history.Add(std::move(line));
  }
  m_strLastLine = text;
}

void CWorkerLog::DebugLogV(const char* format, va_list arguments) const noexcept {
  try {
    const std::string text = FormatV(format, arguments);
    const std::string stamp =
        Format("Halvarn @ %s.%03u", FormatLocal("%H:%M:%S", CurrentTime()).c_str(), CurrentMilliseconds());
    platform::DebugOutput(Format("%s: %s> %s", stamp.c_str(), m_strName.c_str(), text.c_str()));
  } catch (const std::exception&) {
    // As in Log.
  }
}

}  // namespace carvello
