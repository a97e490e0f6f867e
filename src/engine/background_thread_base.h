// CBackgroundThreadBase: a worker. A thread with a first-in-first-out queue of requests, a name, a priority and a log.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <string>
#include <utility>

#include "engine/background_request.h"
#include "engine/message_target.h"
#include "engine/thin_thread.h"
#include "engine/worker_log.h"
#include "support/mutex.h"
#include "support/my_string_array.h"
#include "support/text.h"

namespace carvello {

// Why something failed for which there was no memory; itself it needs none.
inline constexpr const char* kNotEnoughMemory = "Not enough memory";

// Anybody may post; only the worker's own thread removes and handles. Three locks (queue, free list, history), never
// two at once. The owner stops the worker before it destroys it. Once a request is at hand, posting, handling and
// recycling it need no memory, and a line of the log for which there is none is dropped.
class CBackgroundThreadBase : public CThinThread {
 public:
  using LogCallback = CWorkerLog::Callback;
  using RequestPtr = CRequestQueue::RequestPtr;

  // Before the thread is started: who hears the log lines, the worker's name and the priority it runs at.
  void SetTarget(IMessageTarget* target, std::uint32_t logMessage) { m_log.SetTarget(target, logMessage); }
  // Gives another log, not yet in use, the listener of this worker's.
  void ShareLogWith(CWorkerLog& other) const { m_log.ShareWith(other); }
  void ShareLogWith(CBackgroundThreadBase& other) const { m_log.ShareWith(other.m_log); }
  void SetLogCallback(LogCallback callback) { m_log.SetCallback(std::move(callback)); }
  void SetName(std::string name) { m_log.SetName(std::move(name)); }
  void SetPriority(int priority) { m_nPriority = priority; }
  void SetDebugOutput(bool on) { m_log.SetDebugOutput(on); }
  void SetSendLog(bool on) { m_log.SetSend(on); }
  void SetHistory(bool on, bool timePrefix) { m_log.SetHistory(on, timePrefix); }

  // True when the thread runs. On false requests are queued but never handled.
  bool Start(int tries = kStartTries);
  void Stop();
  bool IsStarted() const { return m_bStarted; }

  // An empty request of this worker's, recycled where one is left over. Fill it and post it.
  RequestPtr TakeRequest(std::uint32_t code);
  void Post(RequestPtr request) noexcept;
  void Post(std::uint32_t code, std::int32_t param1 = 0);
  // Waits until everything posted so far has been handled; returns at once when the thread does not run.
  void WaitIdle() noexcept;

  // Of all requests ever posted, the number of the last; and whether that one is handled, or never will be.
  std::uint64_t Posted() const { return m_nPosted; }
  bool HasHandled(std::uint64_t number) const { return m_nHandled >= number || !IsThreadRunning(); }

  std::uint32_t Queued() const { return m_nQueued; }
  std::uint32_t QueuedMax() const { return m_nQueuedMax; }
  std::uint32_t FreeRequests() const { return m_nFreeCount; }
  int Priority() const { return m_nPriority; }
  const std::string& Name() const { return m_log.Name(); }
  CMyStringArray History() const { return m_log.History(); }

  // A line for the log, see CWorkerLog. Worker's thread only.
  void Log(const char* format, ...) noexcept CARVELLO_PRINTF(2, 3);
  // A line for the debugger alone.
  void DebugLog(const char* format, ...) const noexcept CARVELLO_PRINTF(2, 3);

 protected:
  void OnThreadStart() noexcept override;
  void ProcessQueue() noexcept final;
  // `remaining`: requests still queued behind this one.
  virtual void HandleRequest(CBackgroundRequest& request, std::uint32_t remaining) = 0;
  // HandleRequest was left by an exception: of exhausted memory, or of an impossible time.
  virtual void OnException(const CBackgroundRequest& /*request*/, const char* /*reason*/) noexcept {}

 private:
  RequestPtr NextRequest(std::uint32_t& remaining) noexcept;
  void Handle(CBackgroundRequest& request, std::uint32_t remaining) noexcept;
  void Recycle(RequestPtr request) noexcept;
  void ChangePriority(int priority) noexcept;

  CWorkerLog m_log;
  bool m_bStarted = false;
  std::atomic<std::uint32_t> m_nQueued = 0;     // written under m_queueLock
  std::atomic<std::uint32_t> m_nQueuedMax = 0;  // written under m_queueLock
  std::atomic<std::uint32_t> m_nFreeCount = 0;  // written under m_freeLock
  std::atomic<int> m_nPriority = 0;
  CMutex m_queueLock;
  CRequestQueue m_queue CARVELLO_GUARDED_BY(m_queueLock);
  std::atomic<std::uint64_t> m_nPosted = 0;   // requests ever posted; written under m_queueLock
  std::atomic<std::uint64_t> m_nHandled = 0;  // requests ever handled or dropped; the worker's thread only
  CMutex m_freeLock;
  CRequestQueue m_free CARVELLO_GUARDED_BY(m_freeLock);
};

// The name of a thread priority as log lines show it: 2 "Highest", 1 "Above normal", 0 "Normal", ...
using PriorityText = std::array<char, 24>;
PriorityText PriorityName(int priority) noexcept;

}  // namespace carvello
