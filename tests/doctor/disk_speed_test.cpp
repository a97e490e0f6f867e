#include "doctor/disk_speed.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/platform.h"
#include "support/system_facts.h"

namespace carvello {
namespace {

class DiskSpeed : public testing::Test {
 protected:
  void SetUp() override {
    m_folder = std::filesystem::temp_directory_path() /
               ("carvello-disk-" + std::to_string(reinterpret_cast<std::uintptr_t>(this)));
    std::filesystem::create_directory(m_folder);
  }
  void TearDown() override { std::filesystem::remove_all(m_folder); }

  std::filesystem::path m_folder;
};

TEST_F(DiskSpeed, IsMeasuredAndLeavesNothing) {
  const SDiskSpeed speed = MeasureDisk(m_folder.string());
  EXPECT_EQ(speed.strProblem, "");
  EXPECT_GT(speed.nBytes, 0);
  EXPECT_LE(speed.nBytes, 64 << 20);
  EXPECT_GT(speed.fWriteRate, 0);
  EXPECT_GT(speed.fReadRate, 0);
  EXPECT_TRUE(std::filesystem::is_empty(m_folder));
}

TEST_F(DiskSpeed, OfAFolderThatIsNotThereTellsWhy) {
  const SDiskSpeed speed = MeasureDisk((m_folder / "gone").string());
  EXPECT_NE(speed.strProblem, "");
  EXPECT_EQ(speed.fWriteRate, 0);
}

TEST_F(DiskSpeed, ScratchFileHasNoNameThatStays) {
  const platform::FileHandle file = platform::OpenScratchFile(m_folder.string());
  ASSERT_NE(file, platform::kNoFile);
  EXPECT_EQ(platform::WriteFile(file, "abc", 3), 3U);
  ASSERT_TRUE(platform::SeekFile(file, 0));
  char text[4] = "";
  std::uint32_t error = 0;
  EXPECT_EQ(platform::ReadFile(file, text, 3, error), 3U);
  EXPECT_STREQ(text, "abc");
  EXPECT_TRUE(platform::CloseFile(file));
  EXPECT_TRUE(std::filesystem::is_empty(m_folder));
}

}  // namespace
}  // namespace carvello
