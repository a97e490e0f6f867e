#include "spectrum/spectrum_grid.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <vector>

#include "spectrum/frame_samples.h"

namespace carvello {
namespace {

std::vector<std::int64_t> Positions() {
  std::vector<std::int64_t> positions = {0, 1, -1, kFrameMargin, kFrameHop, kFrameSize, 1'000'000'000'000};
  std::mt19937_64 random(3);
  for (int i = 0; i < 300; ++i) positions.push_back(static_cast<std::int64_t>(random() % 200'000) - 100'000);
  return positions;
}

TEST(SpectrumGrid, QuotientsAreRoundedDownAlsoBelowZero) {
  EXPECT_EQ(FloorDivide(7, 3), 2);
  EXPECT_EQ(FloorDivide(-7, 3), -3);
  EXPECT_EQ(FloorDivide(-6, 3), -2);
  EXPECT_EQ(FloorDivide(-1, 3), -1);
}

TEST(SpectrumGrid, AFrameAnswersForItsHopAndHasItsMarginOnEitherSide) {
  for (const std::int64_t time : Positions()) {
    const std::int64_t nFrame = FrameOfTime(time);
    EXPECT_LE(nFrame * kFrameHop, time);
    EXPECT_LT(time, (nFrame + 1) * kFrameHop);
    EXPECT_GE(time - FrameFirst(nFrame), kFrameMargin);
    EXPECT_GE(FrameEnd(nFrame) - time, kFrameMargin + 1);
  }
}

TEST(SpectrumGrid, ASampleIsInTheFramesFromTheFirstWithItToTheLast) {
  const auto isIn = [](std::int64_t sample, std::int64_t frame) {
    return sample >= FrameFirst(frame) && sample < FrameEnd(frame);
  };
  for (const std::int64_t sample : Positions()) {
    const std::int64_t nFirst = FirstFrameWith(sample);
    const std::int64_t nLast = LastFrameWith(sample);
    EXPECT_LE(nFirst, nLast);
    EXPECT_TRUE(isIn(sample, nFirst)) << sample;
    EXPECT_TRUE(isIn(sample, nLast)) << sample;
    EXPECT_FALSE(isIn(sample, nFirst - 1)) << sample;
    EXPECT_FALSE(isIn(sample, nLast + 1)) << sample;
  }
}

TEST(SpectrumGrid, AFrameIsCompleteWithItsLastSample) {
  for (const std::int64_t end : Positions()) {
    const std::int64_t nFrame = FirstIncompleteFrame(end);
    EXPECT_GT(FrameEnd(nFrame), end);
    EXPECT_LE(FrameEnd(nFrame - 1), end);
  }
}

SComplex Numbered(std::int64_t sample) {
  return {static_cast<float>(sample), -1.0f};
}

TEST(FrameSamples, AreGatheredFromStretchesAndAreZeroOutsideTheSpan) {
  std::vector<SComplex> all;
  for (std::int64_t i = 0; i < 60'000; ++i) all.push_back(Numbered(i));
  std::mt19937_64 random(4);
  std::vector<SComplex> frame(kFrameSize);
  for (int i = 0; i < 200; ++i) {
    // The samples in three pieces of any length, in front of and behind which there is nothing.
    const auto nBegin = static_cast<std::int64_t>(random() % 20'000);
    const std::int64_t nCut = nBegin + static_cast<std::int64_t>(random() % 20'000);
    const std::int64_t nSecondCut = nCut + static_cast<std::int64_t>(random() % 10'000);
    const std::int64_t nEnd = nSecondCut + static_cast<std::int64_t>(random() % 10'000);
    const SSampleStretch stretches[] = {{nBegin, nCut - nBegin, all.data() + nBegin},
                                        {nCut, nSecondCut - nCut, all.data() + nCut},
                                        {nSecondCut, nEnd - nSecondCut, all.data() + nSecondCut}};
    const auto nFrom = static_cast<std::int64_t>(random() % 30'000);
    const std::int64_t nTo = nFrom + static_cast<std::int64_t>(random() % 30'000);
    const std::int64_t nFrame = static_cast<std::int64_t>(random() % 6) - 1;
    GatherFrame(nFrame, nFrom, nTo, stretches, frame.data());
    for (std::int64_t n = 0; n < kFrameSize; ++n) {
      const std::int64_t nSample = FrameFirst(nFrame) + n;
      const bool bThere = nSample >= std::max(nFrom, nBegin) && nSample < std::min(nTo, nEnd);
      const SComplex wanted = bThere ? Numbered(nSample) : SComplex{};
      const SComplex& got = frame[static_cast<std::size_t>(n)];
      ASSERT_TRUE(got.re == wanted.re && got.im == wanted.im) << "frame " << nFrame << ", sample " << nSample;
    }
  }
}

TEST(ClippedFrame, IsTheSpectrumOfTheSpansSamplesAloneWhateverCameBefore) {
  std::mt19937 random(5);
  std::vector<SComplex> all(50'000);
  for (SComplex& sample : all) sample = {static_cast<float>(random() % 1000), static_cast<float>(random() % 1000)};
  const SSampleStretch stretch{0, static_cast<std::int64_t>(all.size()), all.data()};
  const CBlockTransform transform(kFrameSize);
  CClippedFrame kept(transform);
  struct SCase {
    std::int64_t nFrame, nFrom, nTo;
  };
  // The same one again, one that differs in each of the three, and one whose span differs outside the frame only.
  for (const SCase& c : {SCase{1, 12'000, 40'000}, SCase{1, 12'000, 40'000}, SCase{1, 12'001, 40'000},
                         SCase{1, 12'001, 20'000}, SCase{2, 12'001, 20'000}, SCase{2, 11'000, 20'000}}) {
    std::vector<SComplex> samples(kFrameSize), spectrum(kFrameSize), work(transform.WorkSize());
    GatherFrame(c.nFrame, c.nFrom, c.nTo, {&stretch, 1}, samples.data());
    transform.Forward(samples.data(), spectrum.data(), work.data());
    const SComplex* got = kept.Spectrum(c.nFrame, c.nFrom, c.nTo, {&stretch, 1});
    for (std::size_t k = 0; k < spectrum.size(); ++k) {
      ASSERT_TRUE(got[k].re == spectrum[k].re && got[k].im == spectrum[k].im) << c.nFrame << " " << c.nFrom << " " << k;
    }
  }
}

}  // namespace
}  // namespace carvello
