// CNoiseSource: numbers of a normal distribution, the same for a seed on every system.
#pragma once

#include <array>
#include <cstdint>

namespace carvello {

class CNoiseSource {
 public:
  explicit CNoiseSource(std::uint64_t seed);

  // Mean 0, standard deviation 1, within -6 to 6: the sum of twelve evenly distributed 16-bit numbers. Whole-number
  // arithmetic up to the last step, so no system's mathematics library can change the result.
  double Next() {
    constexpr std::uint64_t kEvenFields = 0x0000FFFF0000FFFF;
    std::uint64_t sums = 0;  // two 32-bit sums of six numbers each
    for (int i = 0; i < 3; ++i) {
      const std::uint64_t bits = NextBits();
      sums += (bits & kEvenFields) + ((bits >> 16) & kEvenFields);
    }
    const auto sum = static_cast<std::int64_t>((sums & 0xFFFFFFFF) + (sums >> 32));
    return static_cast<double>(sum - kMean) / kDeviation;
  }

 private:
  static constexpr std::int64_t kMean = std::int64_t{6} * 0xFFFF;  // of the sum
  static constexpr double kDeviation = 65536.0;  // of the sum: the square root of 12 x (65536^2 - 1) / 12

  // xoshiro256**, by Blackman and Vigna: "Scrambled linear pseudorandom number generators" (2018).
  std::uint64_t NextBits() {
    const std::uint64_t scrambled = RotateLeft(m_state[1] * 5, 7) * 9;
    const std::uint64_t shifted = m_state[1] << 17;
    m_state[2] ^= m_state[0];
    m_state[3] ^= m_state[1];
    m_state[1] ^= m_state[2];
    m_state[0] ^= m_state[3];
    m_state[2] ^= shifted;
    m_state[3] = RotateLeft(m_state[3], 45);
    return scrambled;
  }
  static std::uint64_t RotateLeft(std::uint64_t bits, int count) { return (bits << count) | (bits >> (64 - count)); }

  std::array<std::uint64_t, 4> m_state{};
};

}  // namespace carvello
