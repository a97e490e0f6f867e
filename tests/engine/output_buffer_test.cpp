// Where the parts of a split output end, and what is written when. All places are reckoned here by hand from the sizes
// of the stretches and of the buffer.
#include "engine/output_buffer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <random>
#include <string>
#include <utility>
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
  OutputBufferTest() : buffer(file, budget) {
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
  CBufferBudget budget;
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

// Not even for a stretch that may yet belong to the next part, of which there is one in three here.
TEST_F(OutputBufferTest, ABudgetThatIsUsedUpMovesNoEndOfAPart) {
  budget.TakeAtAnyRate(CBufferBudget::kBytes);
  buffer.Begin(16, 3 * kMega);
  for (int i = 0; i < 23; ++i) {
    Stretch(3 * kMega, 100'000);
    EXPECT_GE(budget.Left(), -131'072) << "what is asked for at once, and what doubling adds to it";
  }
  Close();
  EXPECT_THAT(Parts(), ElementsAre(30 * kMega, 30 * kMega, 9 * kMega));
  EXPECT_EQ(budget.Left(), 0) << "all is given back";
}

// Two stretches of 8 MiB fill a block to the last byte or do not fit, which their last samples tell: each second one
// waits for its end, and of all outputs of a job at the same time. The budget's peak is what counts here.
TEST_F(OutputBufferTest, WideOutputsThatWaitForTheEndsOfTheirStretchesKeepToTheBudget) {
  constexpr std::uint32_t kPiece = 65'536;
  constexpr std::uint32_t kHalf = 8'388'608;
  constexpr std::uint32_t kOutputs = 2;
  constexpr std::int64_t kShared = 1'048'576;
  const std::vector<std::uint32_t> stretches = {kHalf - 800, kHalf, kHalf, kHalf + 8, kHalf, kHalf - 8, kHalf, 3'000};
  const auto run = [&](CBufferBudget& shared, std::string name) {
    std::vector<std::unique_ptr<CWaveFileData>> files;
    std::vector<std::unique_ptr<COutputBuffer>> buffers;
    for (std::uint32_t i = 0; i < kOutputs; ++i) {
      files.push_back(std::make_unique<CWaveFileData>());
      files.back()->Describe(file.Description());
      EXPECT_TRUE(files.back()->Open((m_folder / (name + std::to_string(i) + ".wav")).string(), 0, "tag"));
      buffers.push_back(std::make_unique<COutputBuffer>(*files.back(), shared));
      buffers.back()->SetSaveInterval(kNever);
      buffers.back()->Begin(32, kHalf + 10'000);
    }
    std::int64_t least = shared.Left();
    std::uint8_t next = 0;
    for (const std::uint32_t bytes : stretches) {
      for (std::uint32_t done = 0; done < bytes; done += kPiece) {
        const std::uint32_t count = std::min(kPiece, bytes - done);
        ++next;
        for (const auto& pBuffer : buffers) {
          std::uint8_t* const place = pBuffer->Reserve(count);
          if (place == nullptr) return std::pair(least, std::vector<std::vector<std::uint8_t>>());
          std::memset(place, next, count);
          pBuffer->Commit(count);
          least = std::min(least, shared.Left());
        }
      }
      for (const auto& pBuffer : buffers) pBuffer->EndStretch();
    }
    std::vector<std::vector<std::uint8_t>> parts;
    for (std::uint32_t i = 0; i < kOutputs; ++i) {
      EXPECT_TRUE(buffers[i]->Flush());
      files[i]->Close();
      EXPECT_EQ(files[i]->LastError(), "");
      for (const std::string& path : files[i]->Files()) parts.push_back(ChunkBody(ReadBytes(path), "data"));
    }
    return std::pair(least, parts);
  };
  CBufferBudget ample;
  CBufferBudget scarce(kShared);
  const auto [ampleLeast, expected] = run(ample, "ample");
  const auto [scarceLeast, parts] = run(scarce, "scarce");
  EXPECT_GE(scarceLeast, -std::int64_t{kOutputs} * kPiece) << "no more than what is asked for at once";
  ASSERT_EQ(expected.size(), kOutputs * 3);
  EXPECT_EQ(expected[0].size(), 4 * std::size_t{kHalf} - 800 + 8 - kHalf - 8) << "the fourth stretch does not fit";
  EXPECT_TRUE(parts == expected);
  EXPECT_EQ(scarce.Left(), kShared);
}

TEST_F(OutputBufferTest, AnOutputThatIsOneFileNeverWaitsForTheEndOfAStretch) {
  SRecordingDescription whole = file.Description();
  whole.nSplitMB = 0;
  file.Describe(whole);
  buffer.SetSaveInterval(kAlways);
  buffer.Begin(16, 10 * kMega);
  Stretch(8 * kMega, kMega);
  std::memset(buffer.Reserve(kMega), 0, kMega);
  buffer.Commit(kMega);
  ASSERT_TRUE(buffer.SaveIfDue());
  EXPECT_EQ(file.TotalDataBytes(), 9 * kMega);
}

// A kill leaves a part with what is certain to be its own.
TEST_F(OutputBufferTest, NoSizeTellsOfAStretchThatMayYetMoveToTheNextPart) {
  const auto told = [&] { return ChunkBody(ReadBytes(file.FileName()), "data").size(); };
  buffer.SetSaveInterval(kAlways);
  buffer.Begin(16, 10 * kMega);
  Stretch(8 * kMega, kMega);
  ASSERT_EQ(told(), 8 * kMega);
  budget.TakeAtAnyRate(CBufferBudget::kBytes);
  for (int i = 0; i < 5; ++i) {
    std::memset(buffer.Reserve(kMega), 0, kMega);
    buffer.Commit(kMega);
    ASSERT_TRUE(buffer.SaveIfDue());
  }
  EXPECT_GE(file.TotalDataBytes(), 12 * kMega);
  EXPECT_EQ(told(), 8 * kMega);
  buffer.EndStretch();
  ASSERT_TRUE(buffer.SaveIfDue());
  EXPECT_EQ(told(), 13 * kMega);
}

TEST_F(OutputBufferTest, ABudgetThatComesAndGoesMovesNoEndOfAPart) {
  std::mt19937 random(7);
  const auto upTo = [&](std::uint32_t count) { return static_cast<std::uint32_t>(random() % count); };
  std::int64_t taken = 0;
  buffer.Begin(16, 3 * kMega);
  for (int i = 0; i < 23; ++i) {
    budget.GiveBack(std::exchange(taken, 0));
    taken = upTo(3) == 0 ? 0 : CBufferBudget::kBytes - std::int64_t{kMega} * upTo(8);
    budget.TakeAtAnyRate(taken);
    buffer.SetSaveInterval(upTo(3) == 0 ? std::chrono::milliseconds(kAlways) : kNever);
    Stretch(3 * kMega, 40'004 + 4 * upTo(200'000));
  }
  budget.GiveBack(taken);
  Close();
  EXPECT_THAT(Parts(), ElementsAre(30 * kMega, 30 * kMega, 9 * kMega));
  EXPECT_EQ(budget.Left(), CBufferBudget::kBytes);
}

// Bringing a file to the medium takes time; where memory is short, it must not come with every piece.
TEST_F(OutputBufferTest, WhatIsWrittenForWantOfMemoryIsToldWhenTheIntervalIsOver) {
  const auto told = [&] { return ChunkBody(ReadBytes(file.FileName()), "data").size(); };
  budget.TakeAtAnyRate(CBufferBudget::kBytes);
  buffer.Begin(16, 100'000);
  for (int i = 0; i < 10; ++i) Stretch(100'000, 100'000);
  EXPECT_GE(file.TotalDataBytes(), 800'000);
  EXPECT_EQ(told(), 0U);
  buffer.SetSaveInterval(kAlways);
  ASSERT_TRUE(buffer.SaveIfDue());
  EXPECT_EQ(told(), 1'000'000U);
}

// All was written when the last stretch came, for want of memory; only the sizes have to follow.
TEST_F(OutputBufferTest, SizesFollowAlsoWhenNothingMoreComes) {
  budget.TakeAtAnyRate(CBufferBudget::kBytes);
  buffer.Begin(16, 100'000);
  Stretch(100'000, 100'000);
  ASSERT_NE(buffer.Reserve(100'000), nullptr) << "which needs the place of what is there";
  EXPECT_EQ(file.TotalDataBytes(), 100'000);
  EXPECT_EQ(ChunkBody(ReadBytes(file.FileName()), "data").size(), 0U);
  buffer.SetSaveInterval(kAlways);
  ASSERT_TRUE(buffer.SaveIfDue());
  EXPECT_EQ(ChunkBody(ReadBytes(file.FileName()), "data").size(), 100'000U);
}

TEST_F(OutputBufferTest, WhatIsInTheFileTakesNoMemory) {
  buffer.SetSaveInterval(kAlways);
  buffer.Begin(16, 1'000);
  Stretch(1'000, 1'000);
  EXPECT_EQ(budget.Left(), CBufferBudget::kBytes);
}

TEST_F(OutputBufferTest, MemoryGrowsWithWhatIsThere) {
  buffer.Begin(16, 3 * kMega);
  Stretch(1'000, 1'000);
  EXPECT_GE(budget.Left(), CBufferBudget::kBytes - 65'536);
  for (int i = 0; i < 5; ++i) Stretch(3 * kMega, 100'000);
  EXPECT_GE(budget.Left(), CBufferBudget::kBytes - COutputBuffer::kBytes);
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
