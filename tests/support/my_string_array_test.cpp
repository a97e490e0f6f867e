#include "support/my_string_array.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace carvello {
namespace {

TEST(MyStringArray, KeepsLinesInOrder) {
  CMyStringArray lines(2);
  EXPECT_TRUE(lines.IsEmpty());
  for (const char* line : {"a", "b", "c", "d", "e"}) lines.Add(line);
  EXPECT_EQ(lines.Size(), 5U);
  EXPECT_EQ(lines[4], "e");
  const std::vector<std::string> seen(lines.begin(), lines.end());
  EXPECT_THAT(seen, testing::ElementsAre("a", "b", "c", "d", "e"));
}

TEST(MyStringArray, CanBeUsedAgainAfterClear) {
  CMyStringArray lines(0);
  lines.Add("old");
  lines.Clear(0);
  EXPECT_TRUE(lines.IsEmpty());
  lines.Add("new");
  EXPECT_EQ(lines.Size(), 1U);
  EXPECT_EQ(lines[0], "new");
}

}  // namespace
}  // namespace carvello
