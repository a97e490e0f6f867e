#include "engine/thin_thread.h"

#include <new>
#include <system_error>

namespace carvello {

namespace {
constexpr std::chrono::milliseconds kStartPause{250};
}  // namespace

bool CThinThread::StartThread(int tries) {
  m_bStop = false;
  m_bRunning = true;
  for (int i = 0; i < tries; ++i) {
    if (i > 0) std::this_thread::sleep_for(kStartPause);
    try {
      m_thread = std::thread([this] { Body(); });
      return true;
    } catch (const std::system_error&) {
      // There may be one a little later.
    } catch (const std::bad_alloc&) {
      // The same holds for memory.
    }
  }
  m_bRunning = false;
  return false;
}

void CThinThread::StopThread() {
  m_bStop = true;
  Wake();
  if (m_thread.joinable()) m_thread.join();
}

void CThinThread::Wake() noexcept {
  {
    const CLockGuard guard(m_wakeLock);
    m_bWoken = true;
  }
  m_wake.notify_one();
}

bool CThinThread::WaitForWake() {
  if (m_wakeInterval.count() > 0) return WaitForWake(m_wakeInterval);
  CLockGuard guard(m_wakeLock);
  while (!m_bWoken) guard.Wait(m_wake);
  m_bWoken = false;
  return true;
}

bool CThinThread::WaitForWake(std::chrono::milliseconds timeout) {
  const auto end = std::chrono::steady_clock::now() + timeout;
  CLockGuard guard(m_wakeLock);
  while (!m_bWoken && guard.WaitUntil(m_wake, end)) continue;
  const bool woken = m_bWoken;
  m_bWoken = false;
  return woken;
}

void CThinThread::Body() noexcept {
  OnThreadStart();
  while (!m_bStop) {
    const bool woken = WaitForWake();
    if (m_bStop) break;
    if (woken) {
      ProcessQueue();
    } else {
      OnWakeTimeout();
    }
  }
  OnThreadEnd();
  m_bRunning = false;
}

}  // namespace carvello
