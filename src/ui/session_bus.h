// The bus of the user's desktop session.
#pragma once

#include <QDBusConnection>
#include <optional>

namespace carvello {

// Nothing where there is none. It is not started either, which could take seconds.
std::optional<QDBusConnection> SessionBus();

}  // namespace carvello
