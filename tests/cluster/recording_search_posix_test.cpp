// Links between folders, which not every user of Windows may make.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "cluster/recording_search.h"
#include "support/temp_folder.h"

namespace carvello::test {
namespace {

TEST(RecordingSearchPosix, ALinkBackIsFollowedOnce) {
  const CTempFolder folder;
  std::filesystem::create_directories(PathOf(folder / "below"));
  WriteWholeFile(folder / "below/a.wav", "x");
  std::filesystem::create_directory_symlink(PathOf(folder / "."), PathOf(folder / "below/up"));
  std::vector<SFoundFile> found;
  std::string error;
  ASSERT_TRUE(FindFiles({folder / "."}, {}, found, error)) << error;
  ASSERT_EQ(found.size(), 1U);
  EXPECT_THAT(found[0].strPath, testing::EndsWith("below/a.wav"));
}

}  // namespace
}  // namespace carvello::test
