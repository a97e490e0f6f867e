#include "engine/message_target.h"

#include <algorithm>
#include <mutex>
#include <vector>

namespace carvello {

std::uint32_t RegisterMessage(const std::string& name) {
  static std::mutex lock;
  static std::vector<std::string> names;
  const std::lock_guard guard(lock);
  auto found = std::find(names.begin(), names.end(), name);
  if (found == names.end()) found = names.insert(names.end(), name);
  return static_cast<std::uint32_t>(found - names.begin()) + 1;
}

}  // namespace carvello
