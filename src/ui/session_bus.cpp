#include "ui/session_bus.h"

#include <QFileInfo>

namespace carvello {

std::optional<QDBusConnection> SessionBus() {
  // Without an address the bus library would try to start a bus.
  const bool hasAddress = qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS") ||
                          QFileInfo::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus"));
  if (!hasAddress) return std::nullopt;
  const QDBusConnection bus = QDBusConnection::sessionBus();
  return bus.isConnected() ? std::optional(bus) : std::nullopt;
}

std::optional<QDBusConnection> SystemBus() {
  const QDBusConnection bus = QDBusConnection::systemBus();
  return bus.isConnected() ? std::optional(bus) : std::nullopt;
}

}  // namespace carvello
