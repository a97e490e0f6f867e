// Locks whose discipline Clang checks when it compiles (-Wthread-safety). The program has the same in src/support,
// which the library does not include.
#pragma once

#include <condition_variable>
#include <mutex>

#ifdef __clang__
#define VANTREL_THREAD_SAFETY(attribute) __attribute__((attribute))
#else
#define VANTREL_THREAD_SAFETY(attribute)
#endif

// Of a variable: touched under the lock only.
#define VANTREL_GUARDED_BY(lock) VANTREL_THREAD_SAFETY(guarded_by(lock))

namespace vantrel {

class VANTREL_THREAD_SAFETY(capability("mutex")) CMutex {
 public:
  CMutex() = default;
  CMutex(const CMutex&) = delete;
  CMutex& operator=(const CMutex&) = delete;

 private:
  friend class CLockGuard;

  std::mutex m_Mutex;
};

// Holds the lock as long as it lives, except between Unlock and Lock.
class VANTREL_THREAD_SAFETY(scoped_lockable) CLockGuard {
 public:
  explicit CLockGuard(CMutex& mutex) VANTREL_THREAD_SAFETY(exclusive_lock_function(mutex)) : m_Lock(mutex.m_Mutex) {}
  ~CLockGuard() VANTREL_THREAD_SAFETY(unlock_function()) {}  // NOLINT(modernize-use-equals-default): the attribute
  CLockGuard(const CLockGuard&) = delete;
  CLockGuard& operator=(const CLockGuard&) = delete;

  void Lock() VANTREL_THREAD_SAFETY(exclusive_lock_function()) { m_Lock.lock(); }
  void Unlock() VANTREL_THREAD_SAFETY(unlock_function()) { m_Lock.unlock(); }
  // Given back during the wait, which may end without a reason, and held again behind it.
  void Wait(std::condition_variable& condition) { condition.wait(m_Lock); }

 private:
  std::unique_lock<std::mutex> m_Lock;
};

}  // namespace vantrel
