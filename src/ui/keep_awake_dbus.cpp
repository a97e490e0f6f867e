// The inhibitor locks of systemd's logind, on the system bus: https://systemd.io/INHIBITOR_LOCKS/. A lock is an open
// file that logind hands out; closing it, also by the end of the process, gives it back.
#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusUnixFileDescriptor>

#include "ui/keep_awake.h"
#include "ui/session_bus.h"

namespace carvello {

namespace {

// Against the desktop's or the system's going to sleep for want of keys. Who may not hold up sleep as such, as over a
// network, may keep the system from taking the computer for idle.
constexpr const char* kAll = "sleep:idle";
constexpr const char* kLeast = "idle";

class CLogindLock : public CStayAwake {
 public:
  CLogindLock(const QDBusConnection& bus, const QString& reason) : m_bus(bus), m_reason(reason) { Ask(kAll); }

 private:
  // Not waited for: a bus may take its time, and one that never answers changes nothing. An answer that comes after the
  // end of this object is closed by the toolkit.
  void Ask(const char* what) {
    QDBusMessage message = QDBusMessage::createMethodCall("org.freedesktop.login1", "/org/freedesktop/login1",
                                                          "org.freedesktop.login1.Manager", "Inhibit");
    message << QString(what) << QCoreApplication::applicationName() << m_reason << QString("block");
    m_pWatcher = std::make_unique<QDBusPendingCallWatcher>(m_bus.asyncCall(message));
    QObject::connect(m_pWatcher.get(), &QDBusPendingCallWatcher::finished, m_pWatcher.get(), [this, what] {
      const QDBusPendingReply<QDBusUnixFileDescriptor> reply = *m_pWatcher;
      if (!reply.isError()) {
        m_lock = reply.value();
      } else if (what == kAll) {
        // Behind what the watcher that is being replaced here still does.
        QMetaObject::invokeMethod(
            m_pWatcher.get(), [this] { Ask(kLeast); }, Qt::QueuedConnection);
      }
    });
  }

  QDBusConnection m_bus;
  QString m_reason;
  QDBusUnixFileDescriptor m_lock;
  std::unique_ptr<QDBusPendingCallWatcher> m_pWatcher;
};

}  // namespace

std::unique_ptr<CStayAwake> StayAwake(const QString& reason) {
  const auto bus = SystemBus();
  if (!bus) return std::make_unique<CStayAwake>();
  return std::make_unique<CLogindLock>(*bus, reason);
}

}  // namespace carvello
