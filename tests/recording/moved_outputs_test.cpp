// Outputs that others move or write to while they are being written, which only POSIX systems allow.
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

}  // namespace
}  // namespace carvello
