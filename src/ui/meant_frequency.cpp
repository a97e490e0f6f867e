#include "ui/meant_frequency.h"

namespace carvello {

std::optional<std::int64_t> MeantFrequency(std::int64_t frequency, std::int64_t centre, std::int64_t bandwidth) {
  const auto recorded = [&](std::int64_t wanted) {
    return wanted >= centre - bandwidth / 2 && wanted <= centre + bandwidth / 2;
  };
  constexpr std::int64_t kMostHertz = 100'000'000;  // as many kHz are beyond the field
  if (frequency <= 0 || recorded(frequency)) return std::nullopt;
  if (frequency % 1000 == 0 && recorded(frequency / 1000)) return frequency / 1000;
  if (frequency < kMostHertz && recorded(frequency * 1000)) return frequency * 1000;
  return std::nullopt;
}

}  // namespace carvello
