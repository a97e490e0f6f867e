#include <windows.h>

#include "ui/system_command.h"

namespace carvello {

std::optional<unsigned> SystemCommandOf(const QByteArray& eventType, const void* message) {
  if (eventType != "windows_generic_MSG") return std::nullopt;
  const auto* msg = static_cast<const MSG*>(message);
  if (msg->message != WM_SYSCOMMAND) return std::nullopt;
  return static_cast<unsigned>(msg->wParam);
}

}  // namespace carvello
