#include <algorithm>
#include <charconv>
#include <cmath>
#include <exception>
#include <string_view>
#include <system_error>
#include <thread>

#include "support/platform.h"
#include "support/system_facts.h"

namespace carvello::platform {

unsigned UsableProcessors(const ProcessorLimits& limits) {
  unsigned usable = limits.nAllowed > 0 ? limits.nAllowed : limits.nPresent;
  if (limits.nGranted > 0 && limits.nGranted < usable) usable = limits.nGranted;
  if (limits.quota && *limits.quota < usable) usable = static_cast<unsigned>(std::lround(std::max(0.0, *limits.quota)));
  return std::max(1U, usable);
}

unsigned GrantedProcessors(const char* told) {
  const std::string_view text = told == nullptr ? "" : told;
  unsigned count = 0;
  const auto [end, problem] = std::from_chars(text.data(), text.data() + text.size(), count);
  return problem == std::errc() && end == text.data() + text.size() ? count : 0;
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
