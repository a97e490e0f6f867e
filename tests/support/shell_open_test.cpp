#include "support/shell_open.h"

#include <gtest/gtest.h>

namespace carvello {
namespace {

TEST(ShellOpen, ErrorTextQuotesThePathAndSetsTheReasonApart) {
  EXPECT_EQ(ShellOpenErrorText("/a b/c.txt", "No such file or directory"),
            "Error processing \"/a b/c.txt\" -\n \nNo such file or directory");
}

}  // namespace
}  // namespace carvello
