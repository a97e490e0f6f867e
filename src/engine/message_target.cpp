#include "engine/message_target.h"

#include <algorithm>
#include <vector>

#include "support/mutex.h"

namespace carvello {

std::uint32_t RegisterMessage(const std::string& name) {
  static CMutex lock;
  static std::vector<std::string> names CARVELLO_GUARDED_BY(lock);
  const CLockGuard guard(lock);
  auto found = std::find(names.begin(), names.end(), name);
  if (found == names.end()) found = names.insert(names.end(), name);
  return static_cast<std::uint32_t>(found - names.begin()) + 1;
}

}  // namespace carvello
