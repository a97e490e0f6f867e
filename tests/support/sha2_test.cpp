#include "support/sha2.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace carvello::test {
namespace {

std::string HashOf(const std::string& text) {
  CSha512 hash;
  hash.Add(text.data(), text.size());
  return hash.Hex();
}

// The examples that the standard's publisher gives.
TEST(Sha256, PublishedExamplesComeOut) {
  const auto hashOf = [](const std::string& text) {
    CSha256 hash;
    hash.Add(text.data(), text.size());
    return hash.Hex();
  };
  EXPECT_EQ(hashOf(""), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
  EXPECT_EQ(hashOf("abc"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
  EXPECT_EQ(hashOf("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq"),
            "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1");
  EXPECT_EQ(hashOf(std::string(1'000'000, 'a')), "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0");
}

TEST(Sha512, PublishedExamplesComeOut) {
  EXPECT_EQ(HashOf(""),
            "cf83e1357eefb8bdf1542850d66d8007d620e4050b5715dc83f4a921d36ce9ce"
            "47d0d13c5d85f2b0ff8318d2877eec2f63b931bd47417a81a538327af927da3e");
  EXPECT_EQ(HashOf("abc"),
            "ddaf35a193617abacc417349ae20413112e6fa4e89a97ea20a9eeee64b55d39a"
            "2192992a274fc1a836ba3c23a3feebbd454d4423643ce80e2a9ac94fa54ca49f");
  EXPECT_EQ(HashOf("abcdefghbcdefghicdefghijdefghijkefghijklfghijklmghijklmnhijklmno"
                   "ijklmnopjklmnopqklmnopqrlmnopqrsmnopqrstnopqrstu"),
            "8e959b75dae313da8cf4f72814fc143f8f7779c6eb9f7fa17299aeadb6889018"
            "501d289e4900f7e4331b99dec4b5433ac7d329eeb6dd26545e96e55b874be909");
  EXPECT_EQ(HashOf(std::string(1'000'000, 'a')),
            "e718483d0ce769644e2e42c7bc15b4638e1f98b13b2044285632a803afa973eb"
            "de0ff244877ea60a4cb0432ce577c31beb009c5c2c49aa2e4eadb217ad8cc09b");
}

TEST(Sha512, PiecesOfAnyLengthGiveTheHashOfTheWhole) {
  std::string text;
  for (int i = 0; i < 1000; ++i) text += static_cast<char>(i * 7);
  // Every length, so that each place of the padding comes, put together from pieces of growing size.
  for (std::size_t length = 0; length <= 300; ++length) {
    const std::string whole = text.substr(0, length);
    CSha512 hash;
    std::size_t done = 0;
    for (std::size_t piece = 1; done < length; piece += 3) {
      const std::size_t count = std::min(piece, length - done);
      hash.Add(whole.data() + done, count);
      EXPECT_EQ(hash.Hex(), HashOf(whole.substr(0, done + count)));
      done += count;
    }
    EXPECT_EQ(hash.Hex(), HashOf(whole));
  }
}

}  // namespace
}  // namespace carvello::test
