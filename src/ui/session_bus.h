// The buses of the user's desktop session and of the system.
#pragma once

#include <QDBusConnection>
#include <optional>

namespace carvello {

// The bus of the system's own services. Nothing where there is none.
std::optional<QDBusConnection> SystemBus();
// Nothing where there is none. It is not started either, which could take seconds.
std::optional<QDBusConnection> SessionBus();

}  // namespace carvello
