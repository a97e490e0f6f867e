// CSha256, CSha512: hashes of bytes that come piece by piece (FIPS 180-4).
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace carvello {

// The two hashes differ in the size of their words, and in what follows from that: the constants of the smaller one are
// the upper halves of the other's.
template <typename Word>
class CSha2 {
 public:
  void Add(const void* bytes, std::size_t count);
  // Of all that was added so far, as lower-case hexadecimal digits: 64 of CSha256, 128 of CSha512. More can be added
  // afterwards.
  std::string Hex() const;

 private:
  static constexpr std::size_t kBlock = 16 * sizeof(Word);

  static std::array<Word, 8> FirstState();
  void TakeBlock(const std::uint8_t* block);

  std::array<Word, 8> m_state = FirstState();
  std::array<std::uint8_t, kBlock> m_rest{};  // what makes no whole block yet
  std::size_t m_nRest = 0;
  std::uint64_t m_nBytes = 0;
};

using CSha256 = CSha2<std::uint32_t>;
using CSha512 = CSha2<std::uint64_t>;

}  // namespace carvello
