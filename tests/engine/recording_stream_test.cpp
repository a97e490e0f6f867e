// The files of a set read as one stream: any place, any length, and what happens when they are not what was analysed.
#include "engine/recording_stream.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string>
#include <vector>

#include "engine/engine_fixture.h"

namespace carvello::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;

constexpr std::int64_t kBase = 30'011;  // of the numbers in NumberedI and NumberedQ

class RecordingStreamTest : public EngineTest {
 protected:
  // Three files of 1000, 300,000 and 700 frames. In time there may be anything between them: a stream knows frames
  // only.
  CRecordingSet WriteThree() {
    m_paths = {WriteNumbered("0.wav", 0, 1000), WriteNumbered("1.wav", 1000, 300'000),
               WriteNumbered("2.wav", 301'000, 700)};
    return DescribeSet({m_paths.begin(), m_paths.end()});
  }

  // The numbers of the frames that a read gives.
  static std::vector<std::int64_t> Read(IFrameSource& source, std::int64_t first, std::int64_t count) {
    std::vector<SComplex> samples(static_cast<std::size_t>(count) + 1, SComplex{-1.0f, -2.0f});
    const std::int64_t done = source.Read(first, samples.data(), count);
    EXPECT_EQ(samples.back().re, -1.0f) << "written behind the end of what was asked for";
    std::vector<std::int64_t> numbers;
    for (std::int64_t i = 0; i < done; ++i) {
      const SComplex& sample = samples[static_cast<std::size_t>(i)];
      numbers.push_back(static_cast<std::int64_t>(sample.im) * kBase + static_cast<std::int64_t>(sample.re));
    }
    return numbers;
  }

  // The only value of a float file of one frame and the samples that were silenced in it.
  SComplex ReadFloat(float re, bool floatScale, std::int64_t& silenced) {
    const std::string path = WriteNumbered("float.wav", 0, 2);
    std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(20).put(3).seekp(32).put(8).put(0).put(32).put(0);
    const std::array<float, 2> frame = {re, 0.5f};
    file.seekp(44).write(reinterpret_cast<const char*>(frame.data()), sizeof(frame));
    file.close();
    CRecordingSet set = DescribeSet({path});
    set.format.Format.wBitsPerSample = 32;
    set.format.SubFormat = KSDATAFORMAT_SUBTYPE_IEEE_FLOAT;
    set.kind = KindOfWave(set.format, floatScale);
    CRecordingStream stream(set);
    SComplex sample;
    EXPECT_EQ(stream.Frames(), 1);
    EXPECT_EQ(stream.Read(0, &sample, 1), 1) << stream.Problem();
    silenced = stream.Samples().TakeSilenced();
    return sample;
  }

  std::array<std::string, 3> m_paths;
};

TEST_F(RecordingStreamTest, FilesOfASetAreOneRunOfFrames) {
  CRecordingStream stream(WriteThree());
  EXPECT_EQ(stream.Frames(), 301'700);
  EXPECT_TRUE(Read(stream, 0, 301'700) == Frames(0, 301'700));
  EXPECT_EQ(stream.Problem(), "");
}

TEST_F(RecordingStreamTest, AnyPlaceAndLengthCanBeReadInAnyOrder) {
  CRecordingStream stream(WriteThree());
  for (const auto& [first, count] : std::vector<std::array<std::int64_t, 2>>{
           {999, 1}, {1000, 1}, {998, 4}, {0, 1000}, {300'999, 2}, {5, 0}, {301'699, 1}, {17, 300'990}, {500, 600}}) {
    EXPECT_TRUE(Read(stream, first, count) == Frames(first, count)) << first << ", " << count;
    EXPECT_EQ(stream.Problem(), "");
  }
}

TEST_F(RecordingStreamTest, HowAStretchIsCutIntoReadsDoesNotMatter) {
  CRecordingStream stream(WriteThree());
  std::vector<std::int64_t> frames;
  for (std::int64_t first = 0; first < stream.Frames(); first += 777) {
    const auto read = Read(stream, first, std::min<std::int64_t>(777, stream.Frames() - first));
    frames.insert(frames.end(), read.begin(), read.end());
  }
  EXPECT_TRUE(frames == Frames(0, 301'700));
}

TEST_F(RecordingStreamTest, TheEndOfTheRecordingIsNoProblem) {
  CRecordingStream stream(WriteThree());
  EXPECT_EQ(Read(stream, 301'600, 5000), Frames(301'600, 100));
  EXPECT_TRUE(Read(stream, 301'700, 5).empty());
  EXPECT_TRUE(Read(stream, 1LL << 60, 5).empty());
  EXPECT_TRUE(Read(stream, -5, 10).empty());
  EXPECT_TRUE(Read(stream, std::numeric_limits<std::int64_t>::max(), 5).empty());
  EXPECT_EQ(stream.Problem(), "");
}

TEST_F(RecordingStreamTest, FileWithoutAWholeFrameIsPassedOver) {
  const auto first = WriteNumbered("0.wav", 0, 10);
  const auto empty = WriteNumbered("1.wav", 10, 1);
  const auto last = WriteNumbered("2.wav", 10, 10);
  CRecordingSet set = DescribeSet({first, empty, last});
  set.files[1].nSampleBytes = 3;
  CRecordingStream stream(set);
  EXPECT_EQ(Read(stream, 5, 15), Frames(5, 15));
}

TEST_F(RecordingStreamTest, RecordingWithoutFilesHasNoFrames) {
  CRecordingStream stream;
  EXPECT_EQ(stream.Frames(), 0);
  EXPECT_TRUE(Read(stream, 0, 1).empty());
  EXPECT_EQ(stream.Problem(), "");
}

TEST_F(RecordingStreamTest, ChangedFileIsNamedAndWhatStandsInFrontOfItIsGood) {
  CRecordingStream stream(WriteThree());
  std::filesystem::last_write_time(m_paths[1], std::filesystem::last_write_time(m_paths[1]) + std::chrono::seconds(5));
  EXPECT_EQ(Read(stream, 900, 200), Frames(900, 100));
  EXPECT_THAT(stream.Problem(), AllOf(HasSubstr(m_paths[1]), HasSubstr("it was written to")));
}

TEST_F(RecordingStreamTest, TruncatedFileIsNamedAlsoWhenItIsOpenAlready) {
  CRecordingStream stream(WriteThree());
  EXPECT_EQ(Read(stream, 2000, 10), Frames(2000, 10));
  std::filesystem::resize_file(m_paths[1], 44 + 4 * 2000);
  EXPECT_TRUE(Read(stream, 2010, 10).empty()) << "nothing of a file that changes counts";
  EXPECT_THAT(stream.Problem(), AllOf(HasSubstr(m_paths[1]), HasSubstr("8044 bytes instead of 1200044")));
  EXPECT_TRUE(Read(stream, 2010, 10).empty()) << "nor when it is opened anew";
  EXPECT_THAT(stream.Problem(), HasSubstr("8044 bytes instead of 1200044"));
}

TEST_F(RecordingStreamTest, VanishedFileIsNamedAndTheOthersCanBeRead) {
  CRecordingStream stream(WriteThree());
  std::filesystem::remove(m_paths[1]);
  EXPECT_TRUE(Read(stream, 1000, 1).empty());
  EXPECT_THAT(stream.Problem(), AllOf(HasSubstr(m_paths[1]), HasSubstr("cannot be opened")));
  EXPECT_EQ(Read(stream, 301'000, 700), Frames(301'000, 700));
  EXPECT_EQ(stream.Problem(), "");
}

TEST_F(RecordingStreamTest, FileThatComesBackIsReadAgain) {
  CRecordingStream stream(WriteThree());
  std::filesystem::rename(m_paths[0], Path("away.wav"));
  EXPECT_TRUE(Read(stream, 0, 10).empty());
  std::filesystem::rename(Path("away.wav"), m_paths[0]);
  EXPECT_EQ(Read(stream, 0, 10), Frames(0, 10));
  EXPECT_EQ(stream.Problem(), "");
}

TEST_F(RecordingStreamTest, PlaceBehindTheEndForgetsTheProblemOfTheReadBefore) {
  CRecordingStream stream(WriteThree());
  std::filesystem::remove(m_paths[0]);
  EXPECT_TRUE(Read(stream, 0, 1).empty());
  EXPECT_NE(stream.Problem(), "");
  EXPECT_TRUE(Read(stream, 301'700, 1).empty());
  EXPECT_EQ(stream.Problem(), "");
}

TEST_F(RecordingStreamTest, FloatsComeToFullScaleUnlessTheyStandThere) {
  std::int64_t silenced = -1;
  EXPECT_EQ(ReadFloat(0.25f, false, silenced).re, 8192.0f);
  EXPECT_EQ(silenced, 0);
  EXPECT_EQ(ReadFloat(0.25f, true, silenced).re, 0.25f);
}

TEST_F(RecordingStreamTest, SamplesThatAreNoNumbersAreSilencedAndCounted) {
  std::int64_t silenced = 0;
  const SComplex sample = ReadFloat(std::numeric_limits<float>::quiet_NaN(), false, silenced);
  EXPECT_EQ(sample.re, 0.0f);
  EXPECT_EQ(sample.im, 0.0f);
  EXPECT_EQ(silenced, 1);
}

TEST_F(RecordingStreamTest, LogOfFilesDoesNotGrowWithTheReads) {
  CRecordingStream stream(WriteThree());
  for (int i = 0; i < 100; ++i) {
    Read(stream, 0, 1);
    Read(stream, 301'000, 1);
  }
  EXPECT_LT(stream.Samples().Log().Size(), 10U);
}

}  // namespace
}  // namespace carvello::test
