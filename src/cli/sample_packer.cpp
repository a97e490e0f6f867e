#include "cli/sample_packer.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace carvello {
namespace {

// Beyond full scale by more than the last bits of the arithmetic.
constexpr double kFullScale = 1.0 + 1e-9;

template <unsigned kBytes>
std::int64_t PackPcm(const double* values, std::size_t count, std::uint8_t* bytes) {
  constexpr double kScale = static_cast<double>(std::int64_t{1} << (8 * kBytes - 1));
  std::int64_t clipped = 0;
  for (std::size_t i = 0; i < count; ++i) {
    clipped += std::abs(values[i]) > kFullScale ? 1 : 0;
    const double held = std::clamp(values[i] * kScale, -kScale, kScale - 1.0);
    const auto number = static_cast<std::uint64_t>(static_cast<std::int64_t>(held + (held < 0.0 ? -0.5 : 0.5)));
    for (unsigned k = 0; k < kBytes; ++k) *bytes++ = static_cast<std::uint8_t>(number >> (8 * k));
  }
  return clipped;
}

void PackFloat(const double* values, std::size_t count, std::uint8_t* bytes) {
  for (std::size_t i = 0; i < count; ++i) {
    const auto number = std::bit_cast<std::uint32_t>(static_cast<float>(values[i]));
    for (unsigned k = 0; k < 4; ++k) *bytes++ = static_cast<std::uint8_t>(number >> (8 * k));
  }
}

}  // namespace

std::int64_t PackSamples(const double* values, std::size_t count, ESynthFormat format,
                         std::vector<std::uint8_t>& bytes) {
  const std::size_t begin = bytes.size();
  bytes.resize(begin + count * BitsOf(format) / 8);
  std::uint8_t* place = bytes.data() + begin;
  switch (format) {
    case ESynthFormat::Pcm8:
      return PackPcm<1>(values, count, place);
    case ESynthFormat::Pcm16:
      return PackPcm<2>(values, count, place);
    case ESynthFormat::Pcm24:
      return PackPcm<3>(values, count, place);
    case ESynthFormat::Pcm32:
      return PackPcm<4>(values, count, place);
    case ESynthFormat::Float32:
      PackFloat(values, count, place);
      break;
  }
  return 0;
}

}  // namespace carvello
