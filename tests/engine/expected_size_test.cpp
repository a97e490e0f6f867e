#include "engine/expected_size.h"

#include <gtest/gtest.h>

namespace carvello {
namespace {

CRecordingSet Recording(std::int64_t frames) {
  CRecordingSet recording;
  recording.format.Format.nChannels = 2;
  recording.format.Format.wBitsPerSample = 16;
  recording.format.Format.nBlockAlign = 4;
  recording.files.resize(1);
  recording.files[0].nSampleBytes = frames * 4;
  return recording;
}

OutputEntry Entry(std::uint32_t rate) {
  OutputEntry entry;
  entry.nInputSampleRate = 96'000;
  entry.nOutputSampleRate = rate;
  return entry;
}

TEST(ExpectedSize, IsTwoSamplesForEachFrameThatIsDue) {
  const CInputFrames input(Recording(96'000 * 60));
  EXPECT_EQ(ExpectedBytes(Entry(12'500), input), 60 * 12'500 * 4);
  OutputEntry floats = Entry(12'500);
  floats.nBitsPerSample = 32;
  EXPECT_EQ(ExpectedBytes(floats, input), 60 * 12'500 * 8);
}

TEST(ExpectedSize, CountsTheEntrysOwnStretchAsFarAsTheInputReaches) {
  const CInputFrames input(Recording(96'000 * 60));
  OutputEntry entry = Entry(10'000);
  entry.nStartSample = 96'000 * 50;
  EXPECT_EQ(ExpectedBytes(entry, input), 10 * 10'000 * 4);
  EXPECT_DOUBLE_EQ(ExpectedSeconds(entry, input), 10);
  entry.nTotalSamples = 96'000 * 4;
  EXPECT_EQ(ExpectedBytes(entry, input), 4 * 10'000 * 4);
  EXPECT_DOUBLE_EQ(ExpectedSeconds(entry, input), 4);
  entry.nTotalSamples = 96'000 * 40;
  EXPECT_EQ(ExpectedBytes(entry, input), 10 * 10'000 * 4);
}

TEST(ExpectedSize, IsNothingWhereNothingCanBeMade) {
  const CInputFrames input(Recording(96'000 * 60));
  EXPECT_EQ(ExpectedBytes(Entry(0), input), 0);
  EXPECT_EQ(ExpectedBytes(Entry(96'001), input), 0);
  OutputEntry behind = Entry(10'000);
  behind.nStartSample = 96'000 * 60;
  EXPECT_EQ(ExpectedBytes(behind, input), 0);
  EXPECT_EQ(ExpectedSeconds(OutputEntry(), input), 0);
}

}  // namespace
}  // namespace carvello
