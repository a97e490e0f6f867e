// Commands of the window's system menu, on systems that have one.
#pragma once

#include <QByteArray>
#include <optional>

namespace carvello {

// The command of a message of the window system, as QWidget::nativeEvent gets it; nothing when it is another message.
std::optional<unsigned> SystemCommandOf(const QByteArray& eventType, const void* message);

}  // namespace carvello
