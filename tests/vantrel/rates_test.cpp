// Rates at the ends of what is possible, and any others.
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "rate_pair.h"

namespace carvello::test {
namespace {

// Whole-Hz pairs at random, uniform in the logarithms of the input's rate and of the ratio.
std::vector<SRates> RandomRates(int count) {
  std::mt19937_64 random(20);
  std::vector<SRates> pairs;
  for (int i = 0; i < count; ++i) {
    const double fIn = std::exp(std::uniform_real_distribution(std::log(8e3), std::log(2.5e8))(random));
    const double fRatio = std::exp(std::uniform_real_distribution(0.0, std::log(std::min(4e3, fIn)))(random));
    pairs.push_back({static_cast<std::uint32_t>(fIn), static_cast<std::uint32_t>(fIn / fRatio)});
  }
  return pairs;
}

TEST(AnyRates, PassTheirChannelStopEverythingElseAndKeepTime) {
  std::mt19937 random(7);
  for (const SRates& rates : RandomRates(30)) {
    SCOPED_TRACE(NameOf(rates));
    const double fHalfRate = 0.5 * rates.Ratio();
    EXPECT_LT(WorstError(rates, 0.0, 1.0), 0.0001);
    for (const double fTone : {-0.45, -0.3, -0.1, 0.2, 0.4, 0.45}) {
      EXPECT_LT(WorstError(rates, fTone, 1.0), 0.00115) << fTone;
    }
    for (int i = 0; i < 12; ++i) {
      const double fTone = std::uniform_real_distribution(-fHalfRate, fHalfRate)(random);
      if (std::abs(fTone) < 0.55 || std::abs(std::remainder(fTone, 1.0)) > 0.45) continue;
      EXPECT_LT(Decibel(WorstError(rates, fTone, 0.0)), -110.0) << fTone;
    }
    const SImpulseResponse impulse = ImpulseAt(rates, rates.InputFor(0) / 2 + random() % 10, rates.InputFor(20));
    for (const double fTone : {-0.4, -0.1, 0.2, 0.45}) EXPECT_LT(std::abs(impulse.Delay(fTone)), 0.0001) << fTone;
  }
}

TEST(AnyRates, EveryRatioGivesItsCountOfOutputs) {
  for (const SRates& rates : RandomRates(60)) {
    SCOPED_TRACE(NameOf(rates));
    const CLibraryInstance instance = rates.NewInstance();
    EXPECT_EQ(Dsp().DownconvertRateOut(instance.Handle()), rates.nOut);
    const std::size_t nInput = rates.InputFor(100);
    const auto nOutput = static_cast<double>(instance.Run(Samples(nInput)).size());
    const double fWhole = static_cast<double>(nInput) / rates.Ratio();
    EXPECT_LE(nOutput, std::ceil(fWhole));
    EXPECT_GE(nOutput, fWhole - 64.0);
  }
}

// A thousand million input samples of 1, and the outputs that they give.
TEST(ManySamples, CountOfOutputsDoesNotDriftAndAConstantStaysWhatItIs) {
  constexpr std::uint64_t kBlock = 1 << 17;
  const Samples ones(kBlock, {1.0f, 0.0f});
  Samples given(kBlock);
  for (const SRates& rates : {SRates{250000000, 25}, SRates{61000001, 10007}}) {
    SCOPED_TRACE(NameOf(rates));
    const CLibraryInstance instance = rates.NewInstance();
    std::uint64_t nOutputs = 0;
    std::uint64_t nOutputsAtHalf = 0;
    double fWorst = 0.0;
    constexpr std::uint64_t kBlocks = 1000000000 / kBlock;
    for (std::uint64_t nBlock = 0; nBlock < kBlocks; ++nBlock) {
      if (nBlock == kBlocks / 2) nOutputsAtHalf = nOutputs;
      std::uint32_t nGiven = 0;
      Dsp().DownconvertRun(instance.Handle(), ones.data(), kBlock, given.data(), &nGiven);
      for (std::uint32_t m = 0; m < nGiven; ++m, ++nOutputs) {
        if (nOutputs >= kSettled) fWorst = std::max(fWorst, std::abs(Value(given[m]) - 1.0));
      }
    }
    const double fWhole = static_cast<double>(kBlocks * kBlock) / rates.Ratio();
    EXPECT_LE(static_cast<double>(nOutputs), std::ceil(fWhole));
    EXPECT_GE(static_cast<double>(nOutputs), fWhole - 64.0);
    const double fAfterHalf = static_cast<double>((kBlocks - kBlocks / 2) * kBlock) / rates.Ratio();
    // An output comes with the last stage's input that it needs, and those samples come one for many of the chain's
    // own: both counts may be an output late, and parts of one more.
    EXPECT_NEAR(static_cast<double>(nOutputs - nOutputsAtHalf), fAfterHalf, 2.0);
    EXPECT_LT(fWorst, 0.0001);
  }
}

// At the largest ratio an output sample needs ten million input samples. The first stage and all others are measured
// on their own: one after the other they are the whole chain, bit for bit.
constexpr std::uint32_t kLargestIn = 250000000;
constexpr std::uint32_t kLargestOut = 25;

TEST(LargestRatio, FirstStageStopsWhatItFoldsIntoTheChannel) {
  const double fMiddleRate = StageRates(CLibraryInstance(kLargestIn, kLargestOut)).front();
  const int nFactor = static_cast<int>(std::lround(kLargestIn / fMiddleRate));
  ASSERT_GT(nFactor, 1);
  for (int k = 1; k <= nFactor / 2; ++k) {
    for (const double fOffset : {-0.45, 0.0}) {
      const CLibraryInstance instance(kLargestIn, kLargestOut);
      Dsp().FirstStageOnly(instance.Handle(), 1);
      const Samples output = instance.Run(Tone((k * fMiddleRate + fOffset * kLargestOut) / kLargestIn, 10000));
      ASSERT_GT(output.size(), kSettled);
      for (std::size_t m = kSettled; m < output.size(); ++m) {
        ASSERT_LT(Decibel(std::abs(Value(output[m]))), -110.0) << k << " " << fOffset;
      }
    }
  }
}

TEST(LargestRatio, OtherStagesStopWhatTheyFoldAndPassAConstant) {
  const std::vector<double> stageRates = StageRates(CLibraryInstance(kLargestIn, kLargestOut));
  ASSERT_GE(stageRates.size(), 3u);
  const auto worstGain = [&](double frequency, double wanted) {
    const CLibraryInstance instance(kLargestIn, kLargestOut);
    Dsp().FirstStageExclude(instance.Handle(), 1);
    constexpr std::size_t kBlock = 1 << 16;
    const Samples firstBlock = Tone(frequency / stageRates[0], kBlock);
    const double fTurnsPerBlock = frequency / stageRates[0] * kBlock;
    const auto nBlocks = static_cast<int>(100.0 * stageRates[0] / kLargestOut / kBlock);
    Samples block(kBlock);
    Samples given(kBlock);
    Samples output;
    for (int nBlock = 0; nBlock < nBlocks; ++nBlock) {
      const auto turn = std::polar(1.0, 2.0 * std::numbers::pi * std::fmod(fTurnsPerBlock * nBlock, 1.0));
      std::transform(firstBlock.begin(), firstBlock.end(), block.begin(),
                     [turn](const SComplex& sample) { return Sample(turn * Value(sample)); });
      std::uint32_t nGiven = 0;
      Dsp().DownconvertRun(instance.Handle(), block.data(), kBlock, given.data(), &nGiven);
      output.insert(output.end(), given.begin(), given.begin() + nGiven);
    }
    EXPECT_LE(output.size(), 100u);
    EXPECT_GE(output.size(), 99u - 48u);
    double fWorst = 0.0;
    for (std::size_t m = 48; m < output.size(); ++m) fWorst = std::max(fWorst, std::abs(Value(output[m]) - wanted));
    return fWorst;
  };
  EXPECT_LT(worstGain(0.0, 1.0), 0.0001);
  for (const double frequency : {stageRates[1], -9.0 * stageRates[1], 7.0 * stageRates[2], 123456.0}) {
    EXPECT_LT(Decibel(worstGain(frequency, 0.0)), -110.0) << frequency;
  }
}

}  // namespace
}  // namespace carvello::test
