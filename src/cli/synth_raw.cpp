#include "cli/synth_raw.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace carvello {
namespace {

// Beyond full scale by more than the last bits of the arithmetic.
constexpr double kBeyond = 1.0 + 1e-9;

void Append(std::uint64_t number, std::uint32_t size, bool bigEndian, std::vector<std::uint8_t>& bytes) {
  for (std::uint32_t k = 0; k < size; ++k) {
    const std::uint32_t place = bigEndian ? size - 1 - k : k;
    bytes.push_back(static_cast<std::uint8_t>(number >> (8 * place)));
  }
}

std::uint64_t FloatBits(double value, std::uint32_t bits) {
  return bits == 64 ? std::bit_cast<std::uint64_t>(value) : std::bit_cast<std::uint32_t>(static_cast<float>(value));
}

}  // namespace

std::int64_t PackKind(const double* values, std::size_t count, const SSampleKind& kind,
                      std::vector<std::uint8_t>& bytes) {
  // Numbers of fewer bits than their places stay within those bits.
  const bool isUnsigned = kind.number == ENumber::Unsigned;
  const double places = std::ldexp(1.0, static_cast<int>(kind.nBits) - 1);
  const double half = isUnsigned ? places : std::min(places, kind.dFullScale);
  const double least = isUnsigned ? 0.0 : -half;
  std::int64_t clipped = 0;
  for (std::size_t i = 0; i < count; ++i) {
    std::uint64_t number = 0;
    if (kind.number == ENumber::Float) {
      number = FloatBits(values[i] * kind.dFullScale, kind.nBits);
    } else {
      clipped += std::abs(values[i]) > kBeyond ? 1 : 0;
      const double value = std::round(values[i] * kind.dFullScale + kind.dZero);
      number = static_cast<std::uint64_t>(static_cast<std::int64_t>(std::clamp(value, least, least + 2 * half - 1)));
    }
    Append(number, kind.nBits / 8, kind.bBigEndian, bytes);
  }
  return clipped;
}

}  // namespace carvello
