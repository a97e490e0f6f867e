#include "doctor/disk_speed.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/platform.h"
#include "support/system_facts.h"
#include "support/temp_folder.h"

namespace carvello::test {
namespace {

class DiskSpeed : public testing::Test {
 protected:
  bool IsEmpty() const { return std::filesystem::is_empty(PathOf(m_folder.Path())); }

  CTempFolder m_folder;
};

TEST_F(DiskSpeed, IsMeasuredAndLeavesNothing) {
  const SDiskSpeed speed = MeasureDisk(m_folder.Path());
  EXPECT_EQ(speed.strProblem, "");
  EXPECT_GT(speed.nBytes, 0);
  EXPECT_LE(speed.nBytes, 64 << 20);
  EXPECT_GT(speed.fWriteRate, 0);
  EXPECT_GT(speed.fReadRate, 0);
  EXPECT_TRUE(IsEmpty());
}

TEST_F(DiskSpeed, OfAFolderThatIsNotThereTellsWhy) {
  const SDiskSpeed speed = MeasureDisk(m_folder / "gone");
  EXPECT_NE(speed.strProblem, "");
  EXPECT_EQ(speed.fWriteRate, 0);
}

TEST_F(DiskSpeed, ScratchFileHasNoNameThatStays) {
  const platform::FileHandle file = platform::OpenScratchFile(m_folder.Path());
  ASSERT_NE(file, platform::kNoFile);
  EXPECT_EQ(platform::WriteFile(file, "abc", 3), 3U);
  ASSERT_TRUE(platform::SeekFile(file, 0));
  char text[4] = "";
  std::uint32_t error = 0;
  EXPECT_EQ(platform::ReadFile(file, text, 3, error), 3U);
  EXPECT_STREQ(text, "abc");
  EXPECT_TRUE(platform::CloseFile(file));
  EXPECT_TRUE(IsEmpty());
}

}  // namespace
}  // namespace carvello::test
