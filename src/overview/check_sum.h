// CCheckSum: 64 bits that tell whether bytes are those that were written. As fast as memory; no protection against
// anybody who means it.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace carvello {

// The same however the bytes are cut into calls.
class CCheckSum {
 public:
  void Add(const void* bytes, std::size_t count) {
    const auto* place = static_cast<const unsigned char*>(bytes);
    m_nBytes += count;
    while (count > 0 && (m_nHeld > 0 || count < kBlock)) {
      m_held[m_nHeld++] = *place++;
      --count;
      if (m_nHeld < kBlock) continue;
      AddBlock(m_held.data());
      m_nHeld = 0;
    }
    for (; count >= kBlock; count -= kBlock, place += kBlock) AddBlock(place);
    while (count-- > 0) m_held[m_nHeld++] = *place++;
  }

  std::uint64_t Value() const {
    CCheckSum whole = *this;
    std::fill(whole.m_held.begin() + static_cast<std::ptrdiff_t>(m_nHeld), whole.m_held.end(), std::uint8_t{0});
    whole.AddBlock(whole.m_held.data());
    std::uint64_t sum = Mixed(m_nBytes);
    for (const std::uint64_t lane : whole.m_lanes) sum = Mixed(sum ^ lane);
    return sum;
  }

 private:
  static constexpr std::size_t kLanes = 4;
  static constexpr std::size_t kBlock = 8 * kLanes;

  // Lanes that do not wait for each other.
  void AddBlock(const unsigned char* bytes) {
    for (std::size_t lane = 0; lane < kLanes; ++lane) {
      std::uint64_t word = 0;
      std::memcpy(&word, bytes + 8 * lane, sizeof(word));
      m_lanes[lane] = std::rotl((m_lanes[lane] ^ word) * 0x9E3779B97F4A7C15ULL, 31);
    }
  }

  static std::uint64_t Mixed(std::uint64_t number) {
    number = (number ^ (number >> 30)) * 0xBF58476D1CE4E5B9ULL;
    number = (number ^ (number >> 27)) * 0x94D049BB133111EBULL;
    return number ^ (number >> 31);
  }

  std::array<std::uint64_t, kLanes> m_lanes = {1, 2, 3, 4};
  std::array<std::uint8_t, kBlock> m_held{};
  std::size_t m_nHeld = 0;
  std::uint64_t m_nBytes = 0;
};

}  // namespace carvello
