// Window systems without a system menu of the program's own.
#include "ui/system_command.h"

namespace carvello {

std::optional<unsigned> SystemCommandOf(const QByteArray& /*eventType*/, const void* /*message*/) {
  return std::nullopt;
}

}  // namespace carvello
