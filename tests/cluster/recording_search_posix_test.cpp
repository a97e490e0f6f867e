// Links between folders, which not every user of Windows may make.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

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
  SFoundFiles found;
  std::string error;
  ASSERT_TRUE(FindFiles({folder / "."}, {}, found, error)) << error;
  ASSERT_EQ(found.files.size(), 1U);
  EXPECT_THAT(found.files[0].strPath, testing::EndsWith("below/a.wav"));
}

TEST(RecordingSearchPosix, LinksThatLeadNowhereAndWhatIsNoFileAreLeftOutWithTheReason) {
  const CTempFolder folder;
  WriteWholeFile(folder / "a.wav", "x");
  std::filesystem::create_symlink("not mounted/gone.wav", PathOf(folder / "gone.wav"));
  ASSERT_EQ(mkfifo((folder / "pipe.wav").c_str(), 0600), 0);
  SFoundFiles found;
  std::string error;
  ASSERT_TRUE(FindFiles({folder.Path()}, {}, found, error)) << error;
  ASSERT_EQ(found.files.size(), 1U);
  ASSERT_EQ(found.leftOut.size(), 2U);
  EXPECT_THAT(found.leftOut[0].strReason, testing::EndsWith("gone.wav: cannot be read: No such file or directory"));
  EXPECT_THAT(found.leftOut[1].strReason, testing::EndsWith("pipe.wav: is neither a file nor a folder"));
}

}  // namespace
}  // namespace carvello::test
