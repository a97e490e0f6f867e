#include "overview/ordered_work.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <exception>
#include <thread>
#include <vector>

#include "support/mutex.h"

namespace carvello {
namespace {

constexpr std::int64_t kUnitsBetween = 64;

class COrderedWork {
 public:
  COrderedWork(std::int64_t units, IFrameSource& source) : m_nUnits(units), m_source(source) {}

  // One thread's part of it. `goesOn` is null on all threads but the calling one.
  void Run(IUnitWorker& worker, const GoesOn* goesOn) {
    for (;;) {
      if (goesOn == nullptr) WaitForCaller();
      const std::int64_t nUnit = ReadNext(worker);
      if (nUnit < 0) return;
      worker.Work(nUnit);
      if (!MergeInTurn(nUnit, worker)) return;
      if (goesOn == nullptr) continue;
      if (!(*goesOn)(Done())) return Stop();
      TellAsked();
    }
  }
  void RunGuarded(IUnitWorker& worker, const GoesOn* goesOn) noexcept {
    try {
      Run(worker, goesOn);
    } catch (...) {
      Fail(std::current_exception());
    }
    if (goesOn != nullptr) LeaveToOthers();
  }

  // Once all threads have ended. Throws what one of them did.
  bool Result(std::string& error) {
    const CLockGuard lock(m_lock);
    if (m_failure) std::rethrow_exception(m_failure);
    error = m_strError;
    return !m_bStopped;
  }

 private:
  // -1 when there is nothing left to do.
  std::int64_t ReadNext(IUnitWorker& worker) {
    std::string problem;
    {
      const CLockGuard lock(m_readLock);
      if (m_nNextRead == m_nUnits || m_bStopped) return -1;
      if (worker.Read(m_nNextRead, m_source)) return m_nNextRead++;
      problem = m_source.Problem().empty() ? "the recording ends earlier than it did" : m_source.Problem();
    }
    const CLockGuard lock(m_lock);
    m_strError = problem;
    StopLocked();
    return -1;
  }

  bool MergeInTurn(std::int64_t unit, IUnitWorker& worker) {
    CLockGuard lock(m_lock);
    while (m_nNextMerge != unit && !m_bStopped) lock.Wait(m_turn);
    if (m_bStopped) return false;
    worker.Merge(unit);
    ++m_nNextMerge;
    m_turn.notify_all();
    return true;
  }

  // However seldom the system lets the calling thread run: no more than so many units pass between two questions.
  void WaitForCaller() {
    CLockGuard lock(m_lock);
    while (m_bCallerWorks && !m_bStopped && m_nNextMerge - m_nAsked >= kUnitsBetween) lock.Wait(m_turn);
  }
  void TellAsked() {
    const CLockGuard lock(m_lock);
    m_nAsked = m_nNextMerge;
    m_turn.notify_all();
  }
  void LeaveToOthers() {
    const CLockGuard lock(m_lock);
    m_bCallerWorks = false;
    m_turn.notify_all();
  }

  double Done() {
    const CLockGuard lock(m_lock);
    return static_cast<double>(m_nNextMerge) / static_cast<double>(m_nUnits);
  }
  void Stop() {
    const CLockGuard lock(m_lock);
    StopLocked();
  }
  void Fail(const std::exception_ptr& failure) {
    const CLockGuard lock(m_lock);
    m_failure = failure;
    StopLocked();
  }
  void StopLocked() CARVELLO_NEEDS(m_lock) {
    m_bStopped = true;
    m_turn.notify_all();
  }

  const std::int64_t m_nUnits;
  IFrameSource& m_source;
  CMutex m_readLock;
  std::int64_t m_nNextRead CARVELLO_GUARDED_BY(m_readLock) = 0;
  CMutex m_lock;
  std::condition_variable m_turn;
  std::atomic<bool> m_bStopped = false;
  std::int64_t m_nNextMerge CARVELLO_GUARDED_BY(m_lock) = 0;
  std::int64_t m_nAsked CARVELLO_GUARDED_BY(m_lock) = 0;  // what was merged when the caller was last asked
  bool m_bCallerWorks CARVELLO_GUARDED_BY(m_lock) = true;
  std::string m_strError CARVELLO_GUARDED_BY(m_lock);
  std::exception_ptr m_failure CARVELLO_GUARDED_BY(m_lock);
};

}  // namespace

bool ReadAll(IFrameSource& source, std::int64_t first, SComplex* destination, std::int64_t count) {
  return source.Read(first, destination, count) == count;
}

bool WorkInOrder(std::int64_t units, unsigned threads, IFrameSource& source,
                 const std::function<std::unique_ptr<IUnitWorker>()>& makeWorker, const GoesOn& goesOn,
                 std::string& error) {
  COrderedWork work(units, source);
  std::vector<std::unique_ptr<IUnitWorker>> workers;
  for (unsigned i = 0; i < std::max(threads, 1u) && static_cast<std::int64_t>(i) < units; ++i) {
    workers.push_back(makeWorker());
  }
  std::vector<std::thread> helpers;
  helpers.reserve(workers.size());
  for (std::size_t i = 1; i < workers.size(); ++i) {
    try {
      helpers.emplace_back([&work, &worker = *workers[i]] { work.RunGuarded(worker, nullptr); });
    } catch (const std::exception&) {
      break;  // no thread, or no memory for one: the others do its part
    }
  }
  if (!workers.empty()) work.RunGuarded(*workers.front(), &goesOn);
  for (std::thread& helper : helpers) helper.join();
  return work.Result(error);
}

}  // namespace carvello
