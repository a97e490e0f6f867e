// Outputs that others move, cut off or write to while they are being written, which only POSIX systems allow.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "recording/wave_file_data.h"
#include "support/temp_folder.h"

namespace carvello {
namespace {

class MovedOutput : public testing::Test {
 protected:
  MovedOutput() {
    SRecordingDescription description;
    description.nSampleRate = 1000;
    m_data.Describe(description);
    EXPECT_TRUE(m_data.Open(m_folder / "a.wav", 0, "tag"));
    EXPECT_TRUE(m_data.Write("abcd", 2, 16));
  }

  test::CTempFolder m_folder;
  CWaveFileData m_data;
};

TEST_F(MovedOutput, AFileThatWasTakenAwayIsNotWritten) {
  std::filesystem::remove(m_folder / "a.wav");
  m_data.Close();
  EXPECT_EQ(m_data.LastError(), "Error writing the end of the file - No such file or directory");
}

TEST_F(MovedOutput, AnotherFileUnderTheNameIsNotTheOutput) {
  std::filesystem::rename(m_folder / "a.wav", m_folder / "b.wav");
  std::filesystem::copy_file(m_folder / "b.wav", m_folder / "a.wav");
  m_data.Close();
  EXPECT_EQ(m_data.LastError(), "Error writing the end of the file - another file stands under its name now");
}

TEST_F(MovedOutput, WhatOthersWriteIntoTheHeadIsNoticed) {
  std::fstream(m_folder / "a.wav", std::ios::in | std::ios::out | std::ios::binary).seekp(8).write("WORD", 4);
  m_data.Close();
  EXPECT_EQ(m_data.LastError(), "Error writing the end of the file - the file does not hold what was written to it");
}

TEST(CutOffOutput, BytesToMoveThatAreGoneFailTheOutput) {
  const test::CTempFolder folder;
  SRecordingDescription description;
  description.nSampleRate = 1000;
  description.nSplitMB = 1;
  CWaveFileData data;
  data.Describe(description);
  ASSERT_TRUE(data.Open(folder / "Out.wav", 0, "tag"));
  const std::string block(1'000'000, 's');
  ASSERT_TRUE(data.Write(block.data(), 500'000, 16));
  ASSERT_TRUE(data.Write("abcdefgh", 4, 16, false, ETell::Later));
  std::filesystem::resize_file(folder / "Out 000.wav", 1'000'400);
  EXPECT_FALSE(data.SplitBefore(8));
  EXPECT_EQ(data.LastError(), "Error writing 8 bytes - the file does not hold what was written to it");
  EXPECT_FALSE(data.IsOpen());
}

}  // namespace
}  // namespace carvello
