#include "engine/background_thread_base.h"

#include <algorithm>
#include <chrono>
#include <cstdarg>
#include <cstdio>
#include <exception>
#include <new>
#include <thread>

#include "support/platform.h"

namespace carvello {

namespace {

constexpr int kLowestPriority = -2;
constexpr std::uint32_t kMaxFreeRequests = 100;
// How often an idle worker looks again, a millisecond apart, before it sleeps until it is woken.
constexpr int kIdleLooks = 100;
constexpr std::chrono::milliseconds kIdlePause{1};

}  // namespace

PriorityText PriorityName(int priority) noexcept {
  struct SName {
    int nPriority;
    const char* pName;
  };
  constexpr SName kNames[] = {{15, "Low real time"}, {2, "Highest"}, {1, "Above normal"}, {0, "Normal"},
                              {-1, "Below normal"},  {-2, "Lowest"}, {-15, "Idle"}};
  PriorityText text{};
  std::snprintf(text.data(), text.size(), "Other (%d)", priority);
  for (const SName& name : kNames) {
    if (name.nPriority == priority) std::snprintf(text.data(), text.size(), "%s", name.pName);
  }
  return text;
}

bool CBackgroundThreadBase::Start(int tries) {
  m_bStarted = true;
  return StartThread(tries);
}

void CBackgroundThreadBase::Stop() {
  StopThread();
  m_bStarted = false;
}

CBackgroundThreadBase::RequestPtr CBackgroundThreadBase::TakeRequest(std::uint32_t code) {
  RequestPtr request;
  {
    const CLockGuard guard(m_freeLock);
    request = m_free.Pop();
    m_nFreeCount = m_free.Size();
  }
  if (!request) request = std::make_unique<CBackgroundRequest>();
  request->Reset();
  request->pOwner = this;
  request->nCode = code;
  return request;
}

void CBackgroundThreadBase::Post(RequestPtr request) noexcept {
  bool wasEmpty = false;
  {
    const CLockGuard guard(m_queueLock);
    wasEmpty = m_queue.Size() == 0;
    m_queue.Push(std::move(request));
    ++m_nPosted;
    m_nQueued = m_queue.Size();
    m_nQueuedMax = std::max(m_nQueuedMax.load(), m_nQueued.load());
  }
  // A worker with requests left is not asleep, so it needs no waking.
  if (wasEmpty) Wake();
}

void CBackgroundThreadBase::Post(std::uint32_t code, std::int32_t param1) {
  RequestPtr request = TakeRequest(code);
  request->nParam1 = param1;
  Post(std::move(request));
}

void CBackgroundThreadBase::WaitIdle() noexcept {
  if (!m_bStarted) return;
  // By number, where a marker in the queue would do as well: a marker could find no memory.
  const std::uint64_t posted = m_nPosted;
  while (m_nHandled < posted && IsThreadRunning()) std::this_thread::sleep_for(kIdlePause);
}

CBackgroundThreadBase::RequestPtr CBackgroundThreadBase::NextRequest(std::uint32_t& remaining) noexcept {
  const CLockGuard guard(m_queueLock);
  RequestPtr request = m_queue.Pop();
  remaining = m_queue.Size();
  m_nQueued = remaining;
  return request;
}

void CBackgroundThreadBase::Recycle(RequestPtr request) noexcept {
  request->Reset();
  CRequestQueue surplus;  // freed after the lock is gone
  const CLockGuard guard(m_freeLock);
  m_free.Push(std::move(request));
  if (m_free.Size() >= kMaxFreeRequests) surplus.Swap(m_free);
  m_nFreeCount = m_free.Size();
}

void CBackgroundThreadBase::OnThreadStart() noexcept {
  try {
    platform::SetCurrentThreadName(Name());
  } catch (const std::exception&) {
    // Without memory the thread has no name. It works all the same.
  }
  // Lowest until the worker's own priority is set; left out where the way back up is barred.
  if (platform::CanRaiseThreadPriority()) platform::SetCurrentThreadPriority(kLowestPriority);
  const int priority = m_nPriority;
  const bool done = platform::SetCurrentThreadPriority(priority);
  if (!done) {
    const PriorityText name = PriorityName(priority);
    DebugLog("Setting priority to '%s' (%d), status %d", name.data(), priority, done ? 1 : 0);
    Log("Setting priority to '%s' (%d), status %d", name.data(), priority, done ? 1 : 0);
  }
}

void CBackgroundThreadBase::ChangePriority(int priority) noexcept {
  if (priority == m_nPriority) return;
  m_nPriority = priority;
  platform::SetCurrentThreadPriority(priority);
  Log("Setting priority to '%s' (%d)", PriorityName(priority).data(), priority);
}

void CBackgroundThreadBase::ProcessQueue() noexcept {
  for (int idle = 0; !StopRequested();) {
    std::uint32_t remaining = 0;
    RequestPtr request = NextRequest(remaining);
    if (!request) {
      if (idle++ == kIdleLooks) return;
      WaitForWake(kIdlePause);
      continue;
    }
    if (!request->bCancelled) Handle(*request, remaining);
    Recycle(std::move(request));
    ++m_nHandled;
    idle = 0;
  }
}

void CBackgroundThreadBase::Handle(CBackgroundRequest& request, std::uint32_t remaining) noexcept {
  switch (request.nCode) {
    case request::kSynchronise:
      return;
    case request::kSetPriority:
      ChangePriority(request.nParam1);
      return;
    default:
      break;
  }
  try {
    HandleRequest(request, remaining);
  } catch (const std::bad_alloc&) {
    OnException(request, kNotEnoughMemory);
  } catch (const std::exception& error) {
    OnException(request, error.what());
  }
}

void CBackgroundThreadBase::Log(const char* format, ...) noexcept {
  va_list arguments;
  va_start(arguments, format);
  m_log.LogV(format, arguments);
  va_end(arguments);
}

void CBackgroundThreadBase::DebugLog(const char* format, ...) const noexcept {
  va_list arguments;
  va_start(arguments, format);
  m_log.DebugLogV(format, arguments);
  va_end(arguments);
}

}  // namespace carvello
