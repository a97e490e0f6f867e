#include <gtest/gtest.h>

#include "cluster/shell_word.h"

namespace carvello::test {
namespace {

TEST(ShellWord, IsQuotedWhereAShellWouldTakeItForMore) {
  EXPECT_EQ(ShellWord("/a/b-1_2.json"), "/a/b-1_2.json");
  EXPECT_EQ(ShellWord(""), "''");
  EXPECT_EQ(ShellWord("a b"), "'a b'");
  EXPECT_EQ(ShellWord("it's"), "'it'\\''s'");
  EXPECT_EQ(ShellWord("$x"), "'$x'");
  EXPECT_EQ(ShellWord("-x.json"), "./-x.json");
  EXPECT_EQ(ShellWord("-a b"), "'./-a b'");
}

}  // namespace
}  // namespace carvello::test
