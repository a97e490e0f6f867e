// The notifications of a freedesktop.org desktop: https://specifications.freedesktop.org/notification-spec/
#include <QApplication>
#include <QDBusMessage>
#include <QVariantMap>

#include "ui/notification.h"
#include "ui/session_bus.h"

namespace carvello {

namespace {

constexpr int kUsualTime = -1;  // as long as the desktop shows others

}  // namespace

void Notify(QWidget* pWindow, const QString& summary, const QString& text) {
  QApplication::alert(pWindow);
  const auto bus = SessionBus();
  if (!bus) return;
  QDBusMessage message = QDBusMessage::createMethodCall(
      "org.freedesktop.Notifications", "/org/freedesktop/Notifications", "org.freedesktop.Notifications", "Notify");
  const QString program = QGuiApplication::desktopFileName();
  // The text may be read as markup. `0U`: replaces no other one; no actions.
  message << QCoreApplication::applicationName() << 0U << program << summary << text.toHtmlEscaped() << QStringList()
          << QVariantMap{{QStringLiteral("desktop-entry"), program}} << kUsualTime;
  bus->send(message);  // no answer is waited for
}

}  // namespace carvello
