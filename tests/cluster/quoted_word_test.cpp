#include <gtest/gtest.h>

#include "cluster/shell_word.h"

namespace carvello::test {
namespace {

TEST(QuotedWord, IsOneWordOfAScriptWhateverIsInIt) {
  EXPECT_EQ(QuotedWord("a"), "'a'");
  EXPECT_EQ(QuotedWord(""), "''");
  EXPECT_EQ(QuotedWord("it's $x"), "'it'\\''s $x'");
}

}  // namespace
}  // namespace carvello::test
