#include "ui/posted_calls.h"

#include <QCoreApplication>
#include <QEvent>
#include <utility>
#include <vector>

#include "support/mutex.h"

namespace carvello {

namespace {

QEvent::Type WakeType() {
  static const auto type = static_cast<QEvent::Type>(QEvent::registerEventType());
  return type;
}

}  // namespace

struct CPostedCalls::SQueue {
  CMutex mutex;
  QObject* pReceiver CARVELLO_GUARDED_BY(mutex) = nullptr;  // null at the end of the object
  std::vector<std::function<void()>> calls CARVELLO_GUARDED_BY(mutex);

  void Post(std::function<void()> call) {
    const CLockGuard lock(mutex);
    if (pReceiver == nullptr) return;
    calls.push_back(std::move(call));
    // One event wakes for all calls until they are taken.
    if (calls.size() == 1) QCoreApplication::postEvent(pReceiver, new QEvent(WakeType()));
  }

  void End() {
    const CLockGuard lock(mutex);
    pReceiver = nullptr;
    calls.clear();
  }

  std::vector<std::function<void()>> Take() {
    const CLockGuard lock(mutex);
    return std::exchange(calls, {});
  }

  bool IsOpen() {
    const CLockGuard lock(mutex);
    return pReceiver != nullptr;
  }
};

CPostedCalls::CPostedCalls(QObject* pParent) : QObject(pParent), m_pQueue(std::make_shared<SQueue>()) {
  const CLockGuard lock(m_pQueue->mutex);
  m_pQueue->pReceiver = this;
}

CPostedCalls::~CPostedCalls() {
  m_pQueue->End();
}

CPostedCalls::Poster CPostedCalls::MakePoster() const {
  return [pQueue = m_pQueue](std::function<void()> call) { pQueue->Post(std::move(call)); };
}

void CPostedCalls::customEvent(QEvent* event) {
  if (event->type() != WakeType()) return;
  const std::shared_ptr<SQueue> pQueue = m_pQueue;  // a call may end this object
  for (const std::function<void()>& call : pQueue->Take()) {
    if (pQueue->IsOpen()) call();
  }
}

}  // namespace carvello
