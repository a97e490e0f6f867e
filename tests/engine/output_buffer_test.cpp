// Where the parts of a split output end, and what is written when. All places are reckoned here by hand from the sizes
// of the stretches and of the buffer.
#include "engine/output_buffer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "engine/engine_fixture.h"

namespace carvello::test {
namespace {

using testing::ElementsAre;

constexpr std::uint32_t kMega = 1'000'000;
constexpr std::chrono::hours kNever{1'000};
constexpr std::chrono::milliseconds kAlways{0};

class OutputBufferTest : public testing::Test {
 protected:
  OutputBufferTest() : buffer(file) {
    std::random_device random;
    m_folder = std::filesystem::temp_directory_path() / ("carvello-buffer-" + std::to_string(random()));
    std::filesystem::create_directory(m_folder);
    SRecordingDescription description;
    description.nSampleRate = 300'000;
    description.bStartValid = true;
    description.nSplitMB = 20;
    file.Reset();
    file.Describe(description);
    EXPECT_TRUE(file.Open((m_folder / "out.wav").string(), 0, "tag"));
    buffer.SetSaveInterval(kNever);
  }
  ~OutputBufferTest() override {
    std::error_code ignored;
    std::filesystem::remove_all(m_folder, ignored);
  }

  // A stretch that comes in pieces; its bytes go on counting.
  void Stretch(std::uint32_t bytes, std::uint32_t piece) {
    for (std::uint32_t done = 0; done < bytes; done += piece) {
      const std::uint32_t count = std::min(piece, bytes - done);
      std::uint8_t* const place = buffer.Reserve(count);
      ASSERT_NE(place, nullptr);
      for (std::uint32_t i = 0; i < count; ++i) place[i] = static_cast<std::uint8_t>(m_nNext++ % 251);
      buffer.Commit(count);
      ASSERT_TRUE(buffer.SaveIfDue());
    }
    buffer.EndStretch();
    ASSERT_TRUE(buffer.SaveIfDue());
  }

  void Close() {
    ASSERT_TRUE(buffer.Flush());
    file.Close();
    ASSERT_EQ(file.LastError(), "");
  }

  // Sample bytes of each part, once all bytes are found in their order.
  std::vector<std::size_t> Parts() {
    std::vector<std::size_t> sizes;
    std::uint64_t next = 0;
    for (const std::string& path : file.Files()) {
      const auto data = ChunkBody(ReadBytes(path), "data");
      sizes.push_back(data.size());
      for (const std::uint8_t byte : data) {
        if (byte != next++ % 251) {
          ADD_FAILURE() << path << ": another byte at " << next - 1;
          return sizes;
        }
      }
    }
    EXPECT_EQ(next, m_nNext);
    return sizes;
  }

  std::filesystem::path m_folder;
  CWaveFileData file;
  COutputBuffer buffer;
  std::uint64_t m_nNext = 0;
};

// 16,777,216 bytes hold five stretches of 3 MB. The first write brings 15 MB, the second 30 MB: a part of 20 MB ends
// there, and so does each one behind it.
TEST_F(OutputBufferTest, APartEndsBehindAsManyWholeStretchesAsTheBufferHolds) {
  buffer.Begin(16, 3 * kMega);
  for (int i = 0; i < 23; ++i) Stretch(3 * kMega, 100'000);
  Close();
  EXPECT_THAT(Parts(), ElementsAre(30 * kMega, 30 * kMega, 9 * kMega));
}

TEST_F(OutputBufferTest, APartEndsWhereItDoesInWhateverPiecesAStretchComes) {
  buffer.Begin(16, 3 * kMega);
  for (const std::uint32_t piece : {4U, 3 * kMega, 999'996U, 1'500'000U, 77'004U}) {
    for (int i = 0; i < 4; ++i) Stretch(3 * kMega, piece == 4 ? 40'000 : piece);
  }
  Close();
  EXPECT_THAT(Parts(), ElementsAre(30 * kMega, 30 * kMega));
}

TEST_F(OutputBufferTest, SavingEarlyMovesNoEndOfAPart) {
  buffer.SetSaveInterval(kAlways);
  buffer.Begin(16, 3 * kMega);
  for (int i = 0; i < 23; ++i) Stretch(3 * kMega, 100'000);
  Close();
  EXPECT_THAT(Parts(), ElementsAre(30 * kMega, 30 * kMega, 9 * kMega));
}

TEST_F(OutputBufferTest, StretchThatFillsTheBufferToTheLastByteStillJoinsIt) {
  buffer.Begin(16, 8'388'608);
  for (int i = 0; i < 4; ++i) Stretch(8'388'608, 8'388'608 / 8);
  Stretch(4, 4);
  Close();
  // Two stretches a write, so 33,554,432 bytes a part; the last stretch begins the next.
  EXPECT_THAT(Parts(), ElementsAre(33'554'432, 4));
}

TEST_F(OutputBufferTest, WhatWaitedForTheIntervalIsInTheFile) {
  buffer.SetSaveInterval(kAlways);
  buffer.Begin(16, 1'000);
  Stretch(1'000, 1'000);
  EXPECT_EQ(file.TotalDataBytes(), 1'000);
  std::uint8_t* const place = buffer.Reserve(500);
  std::memset(place, 0, 500);
  buffer.Commit(500);
  ASSERT_TRUE(buffer.SaveIfDue());
  EXPECT_EQ(file.TotalDataBytes(), 1'500) << "of a stretch that is not whole too, as it fits whatever comes";
}

TEST_F(OutputBufferTest, NothingIsWrittenBeforeTheInterval) {
  buffer.Begin(16, 1'000);
  Stretch(1'000, 1'000);
  EXPECT_EQ(file.TotalDataBytes(), 0);
}

TEST_F(OutputBufferTest, StretchThatMayNotFitWaitsForItsEnd) {
  buffer.Begin(16, 10 * kMega);
  Stretch(8 * kMega, kMega);
  buffer.SetSaveInterval(kAlways);
  Stretch(0, 1);
  EXPECT_EQ(file.TotalDataBytes(), 8 * kMega);
  std::memset(buffer.Reserve(kMega), 0, kMega);
  buffer.Commit(kMega);
  ASSERT_TRUE(buffer.SaveIfDue());
  EXPECT_EQ(file.TotalDataBytes(), 8 * kMega) << "8 MB and 10 MB would not fit, and then it belongs to the next write";
}

TEST_F(OutputBufferTest, MoreThanAStretchCanBringLosesNothing) {
  buffer.SetSaveInterval(kAlways);
  buffer.Begin(16, 1'000);
  Stretch(40 * kMega, kMega);
  Close();
  std::size_t bytes = 0;
  for (const std::size_t part : Parts()) bytes += part;
  EXPECT_EQ(bytes, 40 * kMega);
}

TEST_F(OutputBufferTest, FileThatCannotBeWrittenIsTold) {
  buffer.Begin(16, 1'000);
  Stretch(1'000, 1'000);
  file.Close();
  EXPECT_FALSE(buffer.Flush());
  EXPECT_EQ(file.LastError(), "File not open");
}

}  // namespace
}  // namespace carvello::test
