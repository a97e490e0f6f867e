#include "overview/job_feed.h"

#include <gtest/gtest.h>

#include "engine/block_reader.h"
#include "overview/overview_fixture.h"

namespace carvello::test {
namespace {

constexpr std::int32_t kBlock = kBlockFrames;

TEST(FedBlocks, ThatNobodyTakesAreLeftOutByTheRow) {
  CFedBlocks blocks;
  blocks.SetRow(4 * std::int64_t{kBlock});
  const SharedBlock samples(new SComplex[kBlock]);
  for (int i = 0; i < 30; ++i) blocks.Offer(samples, std::int64_t{i} * kBlock, kBlock);
  EXPECT_EQ(samples.use_count(), 1 + static_cast<long>(CFedBlocks::kMost));
  for (std::size_t i = 0; i < CFedBlocks::kMost; ++i) {
    EXPECT_EQ(blocks.Take()->llPosition, static_cast<std::int64_t>(i) * kBlock);
  }
  // Now there is room, and the next that is of use is the one in which a row begins.
  for (int i = 30; i < 40; ++i) blocks.Offer(samples, std::int64_t{i} * kBlock, kBlock);
  EXPECT_EQ(blocks.Take()->llPosition, 31 * std::int64_t{kBlock});
}

TEST(FedBlocks, BeforeAnybodyWantsThemNoneIsKept) {
  CFedBlocks blocks;
  const SharedBlock samples(new SComplex[kBlock]);
  blocks.Offer(samples, 0, kBlock);
  EXPECT_EQ(samples.use_count(), 1);
}

class JobFeedTest : public testing::Test {
 protected:
  // Feeds a stretch in blocks of a length.
  void Feed(CJobFeed& feed, std::int64_t first, std::int64_t end, std::int64_t length) {
    while (first < end) {
      const auto frames = static_cast<std::int32_t>(std::min(length, end - first));
      const std::shared_ptr<SComplex[]> samples(new SComplex[static_cast<std::size_t>(frames)]);
      CMadeUpSource(m_madeUp).Read(first, samples.get(), frames);
      feed.Add({samples, first, frames});
      first += frames;
    }
  }

  SMadeUp m_madeUp{.nFrames = 20LL * 4096 * 8192, .dNoise = 0.1};
};

TEST_F(JobFeedTest, RowsAreTheSameHoweverBlocksAreCut) {
  CBaseLevels expected(m_madeUp.nFrames);
  CRowMaker maker(std::make_unique<CMadeUpSource>(m_madeUp));
  SRowPowers powers;
  const std::int64_t row = expected.Grid().nRowFrames;
  for (std::int64_t i = 0; i < 4; ++i) {
    ASSERT_EQ(maker.Make(
                  expected.Grid(), i, ERowState::Nothing, ERowState::Whole, [] { return true; }, powers),
              ERowEnd::Made);
    expected.Take(i, ERowState::Nothing, ERowState::Whole, powers);
  }
  for (const std::int64_t length : {std::int64_t{kBlock}, std::int64_t{1000}, std::int64_t{77'777}}) {
    CBaseLevels base(m_madeUp.nFrames);
    CJobFeed feed(base);
    Feed(feed, 0, 4 * row + 2048, length);
    EXPECT_EQ(base.WholeRows(), 4) << length;
    for (std::int64_t i = 0; i < 4; ++i) {
      SCodeRow a;
      SCodeRow b;
      base.Copy(i, a);
      expected.Copy(i, b);
      EXPECT_TRUE(a.mean == b.mean && a.maximum == b.maximum) << length << ", row " << i;
    }
  }
}

TEST_F(JobFeedTest, RowWithAGapInItDoesNotCount) {
  CBaseLevels base(m_madeUp.nFrames);
  CJobFeed feed(base);
  const std::int64_t row = base.Grid().nRowFrames;
  Feed(feed, row + 5, 2 * row + row / 2, kBlock);
  Feed(feed, 2 * row + row / 2 + 1, 4 * row + 2048, kBlock);
  EXPECT_EQ(base.State(0), ERowState::Nothing);
  EXPECT_EQ(base.State(1), ERowState::Nothing) << "its first frames were missing";
  EXPECT_EQ(base.State(2), ERowState::Nothing) << "one frame was missing in its middle";
  EXPECT_EQ(base.State(3), ERowState::Whole);
}

TEST_F(JobFeedTest, LastRowEndsWithTheRecording) {
  m_madeUp.nFrames = 300'000;
  CBaseLevels base(m_madeUp.nFrames);
  CJobFeed feed(base);
  Feed(feed, 0, m_madeUp.nFrames, kBlock);
  EXPECT_EQ(base.WholeRows(), base.Rows());
}

}  // namespace
}  // namespace carvello::test
