#include "ui/posted_messages.h"

#include <QCoreApplication>
#include <QEvent>
#include <atomic>
#include <utility>

namespace carvello {

namespace {

QEvent::Type PostedType() {
  static const auto type = static_cast<QEvent::Type>(QEvent::registerEventType());
  return type;
}

class CPostedEvent : public QEvent {
 public:
  CPostedEvent(std::uint32_t message, std::string worker, std::string text, std::uint64_t total, std::uint64_t done)
      : QEvent(PostedType()),
        m_nMessage(message),
        m_strWorker(std::move(worker)),
        m_strText(std::move(text)),
        m_nTotal(total),
        m_nDone(done) {
    m_bComplete.store(true, std::memory_order_release);
  }

  // To be called before anything is read. The lock of the event queue orders the two threads already, but a thread
  // checker sees locks only in what is built with it, and the toolkit is not.
  void Receive() const { m_bComplete.load(std::memory_order_acquire); }

  const std::uint32_t m_nMessage;
  const std::string m_strWorker;
  const std::string m_strText;
  const std::uint64_t m_nTotal;
  const std::uint64_t m_nDone;

 private:
  std::atomic<bool> m_bComplete = false;
};

}  // namespace

CPostedMessages::CPostedMessages(QObject* pParent)
    : QObject(pParent),
      m_nLogMessage(RegisterMessage(kLogMessageName)),
      m_nProgressMessage(RegisterMessage(kProgressMessageName)) {}

void CPostedMessages::PostTexts(std::uint32_t message, std::string worker, std::string text) {
  QCoreApplication::postEvent(this, new CPostedEvent(message, std::move(worker), std::move(text), 0, 0));
}

void CPostedMessages::PostNumbers(std::uint32_t message, std::uint64_t total, std::uint64_t done) {
  QCoreApplication::postEvent(this, new CPostedEvent(message, {}, {}, total, done));
}

void CPostedMessages::customEvent(QEvent* event) {
  if (event->type() != PostedType()) return;
  const auto* posted = static_cast<const CPostedEvent*>(event);
  posted->Receive();
  if (posted->m_nMessage == m_nLogMessage) {
    emit LogPosted(posted->m_strWorker, posted->m_strText);
  } else if (posted->m_nMessage == m_nProgressMessage) {
    emit ProgressPosted(posted->m_nTotal, posted->m_nDone);
  }
}

}  // namespace carvello
