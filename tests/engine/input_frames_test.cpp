#include "engine/input_frames.h"

#include <gtest/gtest.h>

#include <utility>

namespace carvello {
namespace {

// Three files of 16-bit I and Q: 1000 frames, 500 frames and a byte, and none.
class InputFramesTest : public testing::Test {
 protected:
  InputFramesTest() {
    recording.format.Format.nChannels = 2;
    recording.format.Format.wBitsPerSample = 16;
    recording.nBitsPerSample = 24;  // as damaged metadata may have it
    recording.files = {{"0.wav", 9'999'999, 0, 4000, {}}, {"1.wav", 8, 0, 2001, {}}, {"2.wav", 8, 0, 3, {}}};
  }

  std::int64_t Due(std::int64_t start, std::int64_t total, std::int64_t late = 0) const {
    OutputEntry entry;
    entry.nStartSample = start;
    entry.nTotalSamples = total;
    return CInputFrames(recording).Due(entry, late);
  }

  CRecordingSet recording;
};

TEST_F(InputFramesTest, CountsTheWholeFramesOfTheDataChunksWhateverTheMetadataTells) {
  EXPECT_EQ(CInputFrames(recording).Total(), 1500);
  EXPECT_EQ(CInputFrames(recording).BytesPerFrame(), 4U);
  recording.format.Format.wBitsPerSample = 0;
  EXPECT_EQ(CInputFrames(recording).Total(), 0) << "a format without frames";
}

TEST_F(InputFramesTest, TellsWhichLaterFileBeginsWithAFrame) {
  const CInputFrames input(recording);
  EXPECT_EQ(input.FileBegunBy(1000), 1);
  EXPECT_EQ(input.FileBegunBy(1500), 2);
  for (const std::int64_t frame : {-1, 0, 999, 1001, 1499, 1501}) EXPECT_EQ(input.FileBegunBy(frame), -1) << frame;
}

TEST_F(InputFramesTest, AJobThatBeginsWithALaterFileIsLateByTheFramesBeforeIt) {
  const CInputFrames input(recording);
  EXPECT_EQ(input.Late(1000), 1000);
  EXPECT_EQ(input.Late(999), 0);
  EXPECT_EQ(input.Late(0), 0);
}

TEST_F(InputFramesTest, AnEntryIsDueItsStretchAsFarAsTheInputGoes) {
  EXPECT_EQ(Due(0, 0), 1500);
  EXPECT_EQ(Due(1400, 50), 50);
  EXPECT_EQ(Due(1400, 200), 100);
  EXPECT_EQ(Due(1400, 0), 100);
}

TEST_F(InputFramesTest, NothingIsDueOfAStretchBehindTheInputOrWithoutLength) {
  for (const auto& [start, total] : {std::pair{1500, 0}, {1500, 5}, {20'000, 5}, {100, -5}}) {
    EXPECT_EQ(Due(start, total), 0) << start << ' ' << total;
  }
}

TEST_F(InputFramesTest, ALateStartShortensAnEntryWithoutAnEndOnly) {
  EXPECT_EQ(Due(400, 0, 400), 700);
  EXPECT_EQ(Due(400, 1000, 400), 1000);
  EXPECT_EQ(Due(1000, 0, 500), 0) << "nothing is left";
  EXPECT_EQ(Due(1000, 5, 500), 0);
}

TEST_F(InputFramesTest, TheFirstFrameIsThatOfTheEntryWhichBeginsFirst) {
  OutputEntry early, later;
  early.nStartSample = 3;
  later.nStartSample = 8;
  EXPECT_EQ(FirstFrame({&later, &early}), 3);
  EXPECT_EQ(FirstFrame({}), 0);
}

}  // namespace
}  // namespace carvello
