#include "overview/left_threads.h"

#include <algorithm>
#include <condition_variable>
#include <exception>
#include <list>
#include <thread>
#include <utility>

#include "support/mutex.h"
#include "support/platform.h"

namespace carvello {

namespace {

class CLeftThreads {
 public:
  CLeftThreads() = default;
  ~CLeftThreads() { Join(); }
  CLeftThreads(const CLeftThreads&) = delete;
  CLeftThreads& operator=(const CLeftThreads&) = delete;

  void Start(const std::string& name, std::function<void()> body, ELeft kind) {
    const CLockGuard guard(m_lock);
    JoinEnded();
    std::list<SThread> made(1);
    SThread& thread = made.front();
    thread.kind = kind;
    thread.thread = std::thread([this, &thread, name, run = std::move(body)]() mutable {
      platform::SetCurrentThreadName(name);
      run();
      run = nullptr;  // what it holds ends on this thread, and before it counts as ended
      const CLockGuard ended(m_lock);
      thread.bEnded = true;
      m_ended.notify_all();
    });
    m_threads.splice(m_threads.end(), made);
  }

  void Join() {
    for (;;) {
      std::list<SThread> first;
      {
        const CLockGuard guard(m_lock);
        if (m_threads.empty()) return;
        first.splice(first.end(), m_threads, m_threads.begin());
      }
      first.front().thread.join();
    }
  }

  bool JoinFor(std::chrono::milliseconds readers, std::optional<std::chrono::milliseconds> writers) {
    const auto begin = std::chrono::steady_clock::now();
    CLockGuard guard(m_lock);
    for (;;) {
      JoinEnded();
      if (m_threads.empty()) return true;
      const bool bWrites = std::any_of(m_threads.begin(), m_threads.end(),
                                       [](const auto& thread) { return thread.kind == ELeft::Writes; });
      if (bWrites && !writers) {
        guard.Wait(m_ended);
      } else if (!guard.WaitUntil(m_ended, begin + (bWrites ? *writers : readers))) {
        JoinEnded();
        return m_threads.empty();
      }
    }
  }

 private:
  struct SThread {
    std::thread thread;
    ELeft kind = ELeft::Reads;
    bool bEnded = false;
  };

  void JoinEnded() CARVELLO_NEEDS(m_lock) {
    m_threads.remove_if([](SThread& thread) {
      if (!thread.bEnded) return false;
      thread.thread.join();
      return true;
    });
  }

  CMutex m_lock;
  std::condition_variable m_ended;
  std::list<SThread> m_threads CARVELLO_GUARDED_BY(m_lock);
};

CLeftThreads& LeftThreads() {
  static CLeftThreads threads;
  return threads;
}

}  // namespace

bool StartLeftThread(const std::string& name, std::function<void()> body, ELeft kind) noexcept {
  try {
    LeftThreads().Start(name, std::move(body), kind);
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

void JoinLeftThreads() noexcept {
  LeftThreads().Join();
}

bool JoinLeftThreadsFor(std::chrono::milliseconds readers, std::optional<std::chrono::milliseconds> writers) noexcept {
  return LeftThreads().JoinFor(readers, writers);
}

}  // namespace carvello
