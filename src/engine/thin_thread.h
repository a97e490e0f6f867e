// CThinThread: one thread with a wake event and a stop flag. What it does each time it wakes is its subclass's.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <thread>

#include "support/mutex.h"

namespace carvello {

// Start and Stop are called on one owning thread. A subclass's destructor must find the thread stopped: its virtual
// functions run on it. A thread that was stopped may be started again.
class CThinThread {
 public:
  CThinThread() = default;
  virtual ~CThinThread() = default;
  CThinThread(const CThinThread&) = delete;
  CThinThread& operator=(const CThinThread&) = delete;

  static constexpr int kStartTries = 10;
  // False when the system gives no thread, after so many tries a quarter of a second apart.
  bool StartThread(int tries = kStartTries);
  // Asks the thread to end and waits until it has. It is never ended by force: that would leave a half-written file and
  // held locks behind, so a request that takes long (closing files on a slow disk) is waited for.
  void StopThread();
  bool IsThreadRunning() const { return m_bRunning; }

 protected:
  // None of them raises exceptions: a thread that ended by one would leave others waiting for what it owes them.
  virtual void OnThreadStart() noexcept {}   // first in the thread
  virtual void ProcessQueue() noexcept = 0;  // after every wake-up
  virtual void OnWakeTimeout() noexcept {}   // instead of it when nothing has woken the thread for the wake interval
  virtual void OnThreadEnd() noexcept {}     // last in the thread

  bool StopRequested() const { return m_bStop; }
  void Wake() noexcept;
  // Before the thread is started: how long it sleeps at most.
  void SetWakeInterval(std::chrono::milliseconds interval) { m_wakeInterval = interval; }
  // True when woken, false when the time ran out. Consumes the wake-up.
  bool WaitForWake(std::chrono::milliseconds timeout);

 private:
  void Body() noexcept;
  bool WaitForWake();  // for the wake interval; false when it ran out

  CMutex m_wakeLock;
  std::condition_variable m_wake;
  bool m_bWoken CARVELLO_GUARDED_BY(m_wakeLock) = false;
  std::chrono::milliseconds m_wakeInterval{0};  // 0: until it is woken
  std::atomic<bool> m_bStop = false;
  std::atomic<bool> m_bRunning = false;
  std::thread m_thread;
};

}  // namespace carvello
