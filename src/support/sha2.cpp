#include "support/sha2.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace carvello {

namespace {

// The first 64 bits of the fractions of the square roots of the first 8 primes.
constexpr std::array<std::uint64_t, 8> kFirstState = {0x6a09e667f3bcc908, 0xbb67ae8584caa73b, 0x3c6ef372fe94f82b,
                                                      0xa54ff53a5f1d36f1, 0x510e527fade682d1, 0x9b05688c2b3e6c1f,
                                                      0x1f83d9abfb41bd6b, 0x5be0cd19137e2179};

// The first 64 bits of the fractions of the cube roots of the first 80 primes.
constexpr std::array<std::uint64_t, 80> kConstants = {
    0x428a2f98d728ae22, 0x7137449123ef65cd, 0xb5c0fbcfec4d3b2f, 0xe9b5dba58189dbbc, 0x3956c25bf348b538,
    0x59f111f1b605d019, 0x923f82a4af194f9b, 0xab1c5ed5da6d8118, 0xd807aa98a3030242, 0x12835b0145706fbe,
    0x243185be4ee4b28c, 0x550c7dc3d5ffb4e2, 0x72be5d74f27b896f, 0x80deb1fe3b1696b1, 0x9bdc06a725c71235,
    0xc19bf174cf692694, 0xe49b69c19ef14ad2, 0xefbe4786384f25e3, 0x0fc19dc68b8cd5b5, 0x240ca1cc77ac9c65,
    0x2de92c6f592b0275, 0x4a7484aa6ea6e483, 0x5cb0a9dcbd41fbd4, 0x76f988da831153b5, 0x983e5152ee66dfab,
    0xa831c66d2db43210, 0xb00327c898fb213f, 0xbf597fc7beef0ee4, 0xc6e00bf33da88fc2, 0xd5a79147930aa725,
    0x06ca6351e003826f, 0x142929670a0e6e70, 0x27b70a8546d22ffc, 0x2e1b21385c26c926, 0x4d2c6dfc5ac42aed,
    0x53380d139d95b3df, 0x650a73548baf63de, 0x766a0abb3c77b2a8, 0x81c2c92e47edaee6, 0x92722c851482353b,
    0xa2bfe8a14cf10364, 0xa81a664bbc423001, 0xc24b8b70d0f89791, 0xc76c51a30654be30, 0xd192e819d6ef5218,
    0xd69906245565a910, 0xf40e35855771202a, 0x106aa07032bbd1b8, 0x19a4c116b8d2d0c8, 0x1e376c085141ab53,
    0x2748774cdf8eeb99, 0x34b0bcb5e19b48a8, 0x391c0cb3c5c95a63, 0x4ed8aa4ae3418acb, 0x5b9cca4f7763e373,
    0x682e6ff3d6b2b8a3, 0x748f82ee5defb2fc, 0x78a5636f43172f60, 0x84c87814a1f0ab72, 0x8cc702081a6439ec,
    0x90befffa23631e28, 0xa4506cebde82bde9, 0xbef9a3f7b2c67915, 0xc67178f2e372532b, 0xca273eceea26619c,
    0xd186b8c721c0c207, 0xeada7dd6cde0eb1e, 0xf57d4f7fee6ed178, 0x06f067aa72176fba, 0x0a637dc5a2c898a6,
    0x113f9804bef90dae, 0x1b710b35131c471b, 0x28db77f523047d84, 0x32caab7b40c72493, 0x3c9ebe0a15c9bebc,
    0x431d67c49c100d4c, 0x4cc5d4becb3e42b6, 0x597f299cfc657e2a, 0x5fcb6fab3ad6faec, 0x6c44198c4a475817};

// What the standard calls by Greek letters: how far the words are turned, and the last of the small ones shifted.
struct STurns {
  std::array<int, 3> bigFirst, bigSecond, smallFirst, smallSecond;
  std::size_t nRounds;
};
template <typename Word>
constexpr STurns kTurns = sizeof(Word) == 4 ? STurns{{2, 13, 22}, {6, 11, 25}, {7, 18, 3}, {17, 19, 10}, 64}
                                            : STurns{{28, 34, 39}, {14, 18, 41}, {1, 8, 7}, {19, 61, 6}, 80};

template <typename Word>
Word UpperPart(std::uint64_t constant) {
  return static_cast<Word>(constant >> (64 - 8 * sizeof(Word)));
}

template <typename Word>
Word Big(Word word, const std::array<int, 3>& by) {
  return std::rotr(word, by[0]) ^ std::rotr(word, by[1]) ^ std::rotr(word, by[2]);
}

template <typename Word>
Word Small(Word word, const std::array<int, 3>& by) {
  return std::rotr(word, by[0]) ^ std::rotr(word, by[1]) ^ (word >> by[2]);
}

template <typename Word>
Word BigEndianAt(const std::uint8_t* bytes) {
  Word value = 0;
  for (std::size_t i = 0; i < sizeof(Word); ++i) value = static_cast<Word>(value << 8 | bytes[i]);
  return value;
}

}  // namespace

template <typename Word>
std::array<Word, 8> CSha2<Word>::FirstState() {
  std::array<Word, 8> state;
  std::transform(kFirstState.begin(), kFirstState.end(), state.begin(), UpperPart<Word>);
  return state;
}

template <typename Word>
void CSha2<Word>::TakeBlock(const std::uint8_t* block) {
  constexpr STurns turns = kTurns<Word>;
  std::array<Word, turns.nRounds> w;
  for (std::size_t i = 0; i < 16; ++i) w[i] = BigEndianAt<Word>(block + sizeof(Word) * i);
  for (std::size_t i = 16; i < turns.nRounds; ++i) {
    w[i] = w[i - 16] + Small(w[i - 15], turns.smallFirst) + w[i - 7] + Small(w[i - 2], turns.smallSecond);
  }
  auto [a, b, c, d, e, f, g, h] = m_state;
  for (std::size_t i = 0; i < turns.nRounds; ++i) {
    const Word sum = h + Big(e, turns.bigSecond) + ((e & f) ^ (~e & g)) + UpperPart<Word>(kConstants[i]) + w[i];
    const Word other = Big(a, turns.bigFirst) + ((a & b) ^ (a & c) ^ (b & c));
    h = g;
    g = f;
    f = e;
    e = d + sum;
    d = c;
    c = b;
    b = a;
    a = sum + other;
  }
  const std::array<Word, 8> mixed = {a, b, c, d, e, f, g, h};
  for (std::size_t i = 0; i < m_state.size(); ++i) m_state[i] += mixed[i];
}

template <typename Word>
void CSha2<Word>::Add(const void* bytes, std::size_t count) {
  const auto* pNext = static_cast<const std::uint8_t*>(bytes);
  m_nBytes += count;
  while (count > 0) {
    if (m_nRest == 0 && count >= kBlock) {
      TakeBlock(pNext);
      pNext += kBlock;
      count -= kBlock;
      continue;
    }
    const std::size_t taken = std::min(count, kBlock - m_nRest);
    std::memcpy(m_rest.data() + m_nRest, pNext, taken);
    m_nRest += taken;
    pNext += taken;
    count -= taken;
    if (m_nRest < kBlock) continue;
    TakeBlock(m_rest.data());
    m_nRest = 0;
  }
}

template <typename Word>
std::string CSha2<Word>::Hex() const {
  constexpr std::size_t kLengthField = 2 * sizeof(Word);
  CSha2 whole = *this;
  const std::uint64_t bits = m_nBytes * 8;
  const std::size_t used = m_nRest + 1 + kLengthField;
  std::array<std::uint8_t, 2 * kBlock> end{};
  end[0] = 0x80;
  const std::size_t padding = 1 + (2 * kBlock - used) % kBlock + kLengthField;
  for (std::size_t i = 0; i < 8; ++i) end[padding - 1 - i] = static_cast<std::uint8_t>(bits >> (8 * i));
  if constexpr (kLengthField > 8) end[padding - 9] |= static_cast<std::uint8_t>(m_nBytes >> 61);
  whole.Add(end.data(), padding);
  constexpr const char* kDigits = "0123456789abcdef";
  std::string text;
  for (const Word value : whole.m_state) {
    for (int shift = 8 * sizeof(Word) - 4; shift >= 0; shift -= 4) text += kDigits[value >> shift & 0xF];
  }
  return text;
}

template class CSha2<std::uint32_t>;
template class CSha2<std::uint64_t>;

}  // namespace carvello
