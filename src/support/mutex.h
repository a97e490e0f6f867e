// Locks whose discipline Clang checks when it compiles (-Wthread-safety, part of ./test lint): what CARVELLO_GUARDED_BY
// names a lock for is not touched without it, no lock is taken twice, and none is left held. Other compilers see the
// standard library's locks.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

#ifdef __clang__
#define CARVELLO_THREAD_SAFETY(attribute) __attribute__((attribute))
#else
#define CARVELLO_THREAD_SAFETY(attribute)
#endif

// Of a variable: touched under the lock only. Of a function: called under the lock, or without it.
#define CARVELLO_GUARDED_BY(lock) CARVELLO_THREAD_SAFETY(guarded_by(lock))
#define CARVELLO_NEEDS(lock) CARVELLO_THREAD_SAFETY(exclusive_locks_required(lock))
#define CARVELLO_NOT_UNDER(lock) CARVELLO_THREAD_SAFETY(locks_excluded(lock))

namespace carvello {

class CARVELLO_THREAD_SAFETY(capability("mutex")) CMutex {
 public:
  CMutex() = default;
  CMutex(const CMutex&) = delete;
  CMutex& operator=(const CMutex&) = delete;

 private:
  friend class CLockGuard;

  std::mutex m_mutex;
};

// Holds the lock as long as it lives.
class CARVELLO_THREAD_SAFETY(scoped_lockable) CLockGuard {
 public:
  explicit CLockGuard(CMutex& mutex) CARVELLO_THREAD_SAFETY(exclusive_lock_function(mutex)) : m_lock(mutex.m_mutex) {}
  ~CLockGuard() CARVELLO_THREAD_SAFETY(unlock_function()) {}  // NOLINT(modernize-use-equals-default): the attribute
  CLockGuard(const CLockGuard&) = delete;
  CLockGuard& operator=(const CLockGuard&) = delete;

  // The lock is given back during the wait and held again behind it. Both may end without a reason, as those of the
  // standard library do: look again at what is waited for.
  void Wait(std::condition_variable& condition) { condition.wait(m_lock); }
  // False when the time has come.
  template <class TClock, class TDuration>
  bool WaitUntil(std::condition_variable& condition, std::chrono::time_point<TClock, TDuration> time) {
    return condition.wait_until(m_lock, time) == std::cv_status::no_timeout;
  }

 private:
  std::unique_lock<std::mutex> m_lock;
};

}  // namespace carvello
