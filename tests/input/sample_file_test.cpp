// Frames that lie in pieces of a file, and frames that were lost.
#include "input/sample_file.h"

#include <string>
#include <vector>

#include "input/input_fixture.h"

namespace carvello::test {
namespace {

class SampleFile : public InputTest {
 protected:
  // Opens a file of these bytes; frames have two of them.
  void Begin(const std::string& bytes, std::vector<SSampleRun> runs) {
    ASSERT_TRUE(m_file.Open(Write("samples.bin", bytes)));
    SSampleLayout layout;
    layout.runs = std::move(runs);
    m_file.Begin(*ParseSampleKind("ci8"), layout);
  }

  // Reads from here on, `most` frames at a time; a lost frame is "..".
  std::string Rest(std::int64_t most) {
    std::string text;
    for (CSampleFile::SAhead ahead = m_file.Ahead(); ahead.nFrames > 0; ahead = m_file.Ahead()) {
      const std::int64_t count = std::min(most, ahead.nFrames);
      std::string piece(static_cast<std::size_t>(2 * count), '.');
      if (ahead.bSilence) {
        m_file.Pass(count);
      } else if (const std::int64_t read = m_file.Read(piece.data(), count); read < count) {
        return text + piece.substr(0, static_cast<std::size_t>(2 * read)) + "!";
      }
      text += piece;
    }
    return text;
  }

  CSampleFile m_file;
};

TEST_F(SampleFile, OnePieceIsReadFromItsPlaceToItsEnd) {
  Begin("headAABBCCtail", {{4, 3}});
  EXPECT_EQ(m_file.Frames(), 3);
  EXPECT_EQ(Rest(10), "AABBCC");
  EXPECT_EQ(m_file.Position(), 3);
  EXPECT_TRUE(m_file.Seek(1));
  EXPECT_EQ(Rest(1), "BBCC");
  EXPECT_TRUE(m_file.Seek(3));
  EXPECT_EQ(Rest(1), "");
  EXPECT_FALSE(m_file.Seek(4));
  EXPECT_FALSE(m_file.Seek(-1));
}

TEST_F(SampleFile, PiecesAtOneDistanceAreOneRun) {
  for (const std::int64_t most : {1, 2, 3, 4, 100}) {
    Begin("hAABB--CCDD--EE", {{1, 5, 2, 6}});
    EXPECT_EQ(Rest(most), "AABBCCDDEE") << most;
  }
  EXPECT_TRUE(m_file.Seek(3));
  EXPECT_EQ(Rest(100), "DDEE");
}

TEST_F(SampleFile, PiecesOfAnySizeAndDistanceAreReadTheSameWhateverIsAskedFor) {
  std::string bytes;
  for (int i = 0; i < 400; ++i) bytes += static_cast<char>('A' + i * 7 % 57);
  constexpr std::int64_t kFrames = 37;
  for (const std::int64_t piece : {1, 2, 5, 36, 37}) {
    for (const std::int64_t gap : {0, 1, 2, 3, 7, 8}) {
      const SSampleRun run{3, kFrames, piece, 2 * piece + gap};
      std::string expected;
      for (std::int64_t frame = 0; frame < kFrames; ++frame) {
        const std::int64_t at = 3 + frame / piece * run.nStride + frame % piece * 2;
        expected += bytes.substr(static_cast<std::size_t>(at), 2);
      }
      Begin(bytes, {run});
      for (std::int64_t first = 0; first <= kFrames; ++first) {
        for (const std::int64_t most : {1, 3, 4, 11, 100}) {
          ASSERT_TRUE(m_file.Seek(first));
          ASSERT_EQ(Rest(most), expected.substr(static_cast<std::size_t>(2 * first)))
              << piece << " " << gap << " " << first << " " << most;
        }
      }
    }
  }
}

TEST_F(SampleFile, PiecesOfAFileThatEndsTooEarlyGiveItsWholeFrames) {
  const std::string whole = "AABB-CCDD-EEFF";
  for (const auto& [length, expected] : {std::pair(14, "AABBCCDDEEFF"),
                                         {13, "AABBCCDDEE!"},
                                         {10, "AABBCCDD!"},
                                         {9, "AABBCCDD!"},
                                         {7, "AABBCC!"},
                                         {6, "AABB!"},
                                         {5, "AABB!"},
                                         {3, "AA!"},
                                         {1, "!"}}) {
    Begin(whole.substr(0, static_cast<std::size_t>(length)), {{0, 6, 2, 5}});
    EXPECT_EQ(Rest(100), expected) << length;
  }
}

TEST_F(SampleFile, RunsAndLostFramesFollowEachOther) {
  const std::vector<SSampleRun> runs = {{0, 2}, {SSampleRun::kSilence, 3}, {0, 0}, {6, 1}, {SSampleRun::kSilence, 1}};
  for (const std::int64_t most : {1, 2, 100}) {
    Begin("AABB--CC", runs);
    EXPECT_EQ(m_file.Frames(), 7);
    EXPECT_EQ(Rest(most), "AABB......CC..") << most;
  }
  for (std::int64_t first = 0; first <= 7; ++first) {
    EXPECT_TRUE(m_file.Seek(first));
    EXPECT_EQ(Rest(2), std::string("AABB......CC..").substr(static_cast<std::size_t>(2 * first))) << first;
  }
}

TEST_F(SampleFile, FileThatEndsTooEarlyGivesItsWholeFrames) {
  Begin("AABBC", {{0, 4}});
  EXPECT_EQ(Rest(100), "AABB!");
  EXPECT_EQ(m_file.Position(), 2);
}

TEST_F(SampleFile, NoKindMeansNoFrames) {
  ASSERT_TRUE(m_file.Open(Write("samples.bin", "AABB")));
  m_file.Begin({}, {0, 2});
  EXPECT_EQ(m_file.Frames(), 0);
  EXPECT_EQ(m_file.Ahead().nFrames, 0);
}

}  // namespace
}  // namespace carvello::test
