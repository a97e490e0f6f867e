#include <algorithm>
#include <cmath>
#include <exception>
#include <thread>

#include "support/platform.h"
#include "support/system_facts.h"

namespace carvello::platform {

unsigned UsableProcessors(const ProcessorLimits& limits) {
  unsigned usable = limits.nAllowed > 0 ? limits.nAllowed : limits.nPresent;
  if (limits.quota && *limits.quota < usable) usable = static_cast<unsigned>(std::lround(std::max(0.0, *limits.quota)));
  return std::max(1U, usable);
}

unsigned ProcessorCount() {
  static const unsigned count = [] {
    try {
      return UsableProcessors(GetProcessorLimits());
    } catch (const std::exception&) {  // no memory to look
      return std::max(1U, std::thread::hardware_concurrency());
    }
  }();
  return count;
}

}  // namespace carvello::platform
