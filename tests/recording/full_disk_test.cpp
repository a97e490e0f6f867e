// What is left when the disk is full. A limit on the size of this process's files stands for the full disk, which only
// POSIX systems have.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <cerrno>
#include <chrono>
#include <thread>

#include "recording/layout.h"
#include "recording/wave_file_data.h"
#include "support/formatting.h"
#include "support/platform.h"
#include "support/temp_folder.h"

namespace carvello {
namespace {

using test::ChunksOf;
using test::CTempFolder;
using test::ReadWholeFile;
using test::U32At;
using test::U64At;

// No file grows beyond `bytes` while the object lives.
class CFileSizeLimit {
 public:
  explicit CFileSizeLimit(rlim_t bytes) {
    platform::PrepareProcess();
    getrlimit(RLIMIT_FSIZE, &m_old);
    const rlimit limit{bytes, m_old.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~CFileSizeLimit() { setrlimit(RLIMIT_FSIZE, &m_old); }
  CFileSizeLimit(const CFileSizeLimit&) = delete;
  CFileSizeLimit& operator=(const CFileSizeLimit&) = delete;

 private:
  rlimit m_old{};
};

class FullDisk : public testing::TestWithParam<bool> {
 protected:
  FullDisk() {
    m_description.bRF64 = GetParam();
    m_description.nSampleRate = 1000;
  }
  std::string Path() const { return m_folder / "Out.wav"; }
  bool Open(const std::string& path) {
    m_data.Describe(m_description);
    return m_data.Open(path, 0, "tag");
  }
  bool Write(std::uint32_t bytes) {
    const std::string block(bytes, 's');
    return m_data.Write(block.data(), bytes / 2, 16);
  }
  // The file must be nothing but its header and `samples` bytes, and say so.
  void ExpectWholeBlocks(std::size_t header, std::size_t samples) {
    const std::string file = ReadWholeFile(Path());
    EXPECT_EQ(file.size(), header + samples);
    EXPECT_EQ(ChunksOf(file).back().identifier, "data");
    EXPECT_EQ(ChunksOf(file).back().body.size(), samples);
    EXPECT_EQ(GetParam() ? U64At(file, 20) : U32At(file, 4), file.size() - 8);
    if (GetParam()) {
      EXPECT_EQ(U64At(file, 36), samples / 2);
    }
  }

  CTempFolder m_folder;
  SRecordingDescription m_description;
  CWaveFileData m_data;
};

TEST_P(FullDisk, APartThatCannotBeFinishedFailsTheWriteThatWouldOpenTheNext) {
  m_description.nSplitMB = 1;
  ASSERT_TRUE(Open(Path()));
  const std::size_t header = m_data.FileBytes();
  {
    const CFileSizeLimit limit(header + 1'000'010);
    ASSERT_TRUE(Write(1'000'000));
    EXPECT_FALSE(Write(10'000));
  }
  EXPECT_EQ(m_data.LastError(), "Error writing the end of the file - File too large");
  EXPECT_THAT(m_data.Files(), testing::ElementsAre(m_folder / "Out 000.wav"));
  EXPECT_EQ(ReadWholeFile(m_folder / "Out 000.wav").size(), header + 1'000'000);
}

TEST_P(FullDisk, AShortWriteKeepsTheWholeFramesThatFit) {
  ASSERT_TRUE(Open(Path()));
  const std::size_t header = m_data.FileBytes();
  {
    const CFileSizeLimit limit(header + 25'003);
    ASSERT_TRUE(Write(10'000));
    ASSERT_TRUE(Write(10'000));
    EXPECT_FALSE(Write(10'000));
  }
  EXPECT_EQ(m_data.LastError(), "Error writing 10000 bytes - File too large");
  EXPECT_EQ(m_data.LastErrorCode(), static_cast<std::uint32_t>(EFBIG));
  EXPECT_FALSE(m_data.IsOpen());
  EXPECT_EQ(m_data.TotalDataBytes(), 25'000);
  ExpectWholeBlocks(header, 25'000);

  EXPECT_FALSE(Write(10));
  EXPECT_EQ(m_data.LastError(), "File not open");
}

TEST_P(FullDisk, ATrailerThatDoesNotFitIsToldAndLeavesTheSamples) {
  ASSERT_TRUE(Open(Path()));
  const std::size_t header = m_data.FileBytes();
  {
    const CFileSizeLimit limit(header + 20'020);
    ASSERT_TRUE(Write(10'000));
    ASSERT_TRUE(Write(10'000));
    EXPECT_TRUE(m_data.Close());
  }
  EXPECT_EQ(m_data.LastError(), "Error writing the end of the file - File too large");
  ExpectWholeBlocks(header, 20'000);
}

TEST_P(FullDisk, AHeaderThatDoesNotFitFailsTheOpen) {
  const CFileSizeLimit limit(100);
  EXPECT_FALSE(Open(Path()));
  EXPECT_EQ(m_data.LastError(), "File too large");
  EXPECT_EQ(m_data.TotalBytes(), 0U);
  EXPECT_FALSE(platform::GetNameStatus(Path())) << "a stump would stand in the way of the next attempt";
}

TEST_P(FullDisk, AFullDeviceFailsTheOpenWithItsReason) {
  m_data.SetPolicy({.bReplace = true});
  EXPECT_FALSE(Open("/dev/full"));
  // There is one for all, and another test may have it just now.
  while (m_data.LastError() == SystemErrorText(ETXTBSY)) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
    EXPECT_FALSE(Open("/dev/full"));
  }
  EXPECT_EQ(m_data.LastError(), "No space left on device");
}

INSTANTIATE_TEST_SUITE_P(BothForms, FullDisk, testing::Bool(),
                         [](const auto& form) { return form.param ? "Rf64" : "Wav"; });

}  // namespace
}  // namespace carvello
