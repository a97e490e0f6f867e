// What the library does to tones and impulses, measured through its entry points.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <ostream>
#include <sstream>

#include "library_instance.h"

namespace carvello::test {
namespace {

struct SRates {
  std::uint32_t nIn;
  std::uint32_t nOut;
  bool bWholeNumber = false;

  double Ratio() const {
    const double fRatio = static_cast<double>(nIn) / static_cast<double>(nOut);
    return bWholeNumber ? std::round(fRatio) : fRatio;
  }
  double RateOut() const { return nIn / Ratio(); }
};

std::string NameOf(const SRates& rates) {
  return std::to_string(rates.nIn) + "to" + std::to_string(rates.nOut) + (rates.bWholeNumber ? "whole" : "");
}
void PrintTo(const SRates& rates, std::ostream* stream) {
  *stream << NameOf(rates);
}

class Response : public testing::TestWithParam<SRates> {
 protected:
  static CLibraryInstance NewInstance() { return {GetParam().nIn, GetParam().nOut, GetParam().bWholeNumber}; }
  // Enough input for about this many settled output samples.
  static std::size_t InputFor(double settledOutputs) {
    return static_cast<std::size_t>((2.0 * kSettled + settledOutputs) * GetParam().Ratio());
  }
};

INSTANTIATE_TEST_SUITE_P(RatePairs, Response,
                         testing::Values(SRates{2000000, 10000}, SRates{2400000, 192000}, SRates{10000000, 975000},
                                         SRates{192000, 190000}, SRates{2000000, 7919}, SRates{8000, 7999},
                                         SRates{2000000, 1000000}, SRates{250000, 250}, SRates{10000000, 1000001, true},
                                         SRates{2500000, 1000001, true}),
                         [](const testing::TestParamInfo<SRates>& rates) { return NameOf(rates.param); });

// Compared with the tone as it must be, so gain, phase, frequency and time are all in the difference. 0.01 dB is a
// factor of 1.00115. What is left when the tone is taken out are images and noise.
TEST_P(Response, TonesInThePassbandComeOutAsTheyWentInAndAlone) {
  for (int i = -9; i <= 9; ++i) {
    const double fOut = 0.05 * i;  // cycles per output sample
    const Samples output = NewInstance().Run(Tone(fOut / GetParam().Ratio(), InputFor(100)));
    const Samples expected = Tone(fOut, output.size());
    ASSERT_GE(output.size(), kSettled + 100);
    std::complex<double> gain;
    for (std::size_t m = kSettled; m < output.size(); ++m) gain += Value(output[m]) * std::conj(Value(expected[m]));
    gain /= static_cast<double>(output.size() - kSettled);
    EXPECT_LT(std::abs(gain - 1.0), i == 0 ? 0.0001 : 0.00115) << fOut;
    for (std::size_t m = kSettled; m < output.size(); ++m) {
      ASSERT_LT(Decibel(std::abs(Value(output[m]) - gain * Value(expected[m]))), -110.0) << fOut << " " << m;
    }
  }
}

// Output rates of the stages, as Diagnostics tells them.
std::vector<double> StageRates(const CLibraryInstance& instance) {
  std::vector<double> rates;
  std::istringstream text(instance.Text());
  for (std::string strLine; std::getline(text, strLine);) {
    double rateIn = 0.0;
    double rateOut = 0.0;
    int nStage = 0;
    if (std::sscanf(strLine.c_str(), "stage %d: %lf to %lf", &nStage, &rateIn, &rateOut) == 3) {
      rates.push_back(rateOut);
    }
  }
  return rates;
}

// Tones beside the multiples of every stage's output rate, 20 multiples at most a stage. Those whose way through all
// stages ends in the passband must be gone.
TEST_P(Response, NothingFoldsIntoThePassband) {
  const double fRateIn = GetParam().nIn;
  const double fRateOut = GetParam().RateOut();
  const std::vector<double> stageRates = StageRates(NewInstance());
  ASSERT_FALSE(stageRates.empty());
  double fWorst = 0.0;
  int nTones = 0;
  for (const double rate : stageRates) {
    const int nMultiples = static_cast<int>(0.5 * fRateIn / rate) + 1;
    const int nStep = nMultiples / 10 + 1;
    for (int k = -nMultiples; k <= nMultiples; k += nStep) {
      for (const double fOffset : {-0.4499, -0.3, -0.11, 0.0, 0.2, 0.37, 0.4499}) {
        const double fTone = k * rate + fOffset * fRateOut;
        if (std::abs(fTone) > 0.5 * fRateIn || std::abs(fTone) < 0.55 * fRateOut) continue;
        double fFolded = fTone;
        for (const double stageRate : stageRates) fFolded = std::remainder(fFolded, stageRate);
        if (std::abs(fFolded) > 0.45 * fRateOut) continue;
        ++nTones;
        const Samples output = NewInstance().Run(Tone(fTone / fRateIn, InputFor(16)));
        for (std::size_t m = kSettled; m < output.size(); ++m) fWorst = std::max(fWorst, std::abs(Value(output[m])));
      }
    }
  }
  // Close to a ratio of 1 no tone of the input can fold there; images are the other test's.
  EXPECT_EQ(nTones > 0, 0.5 * fRateIn > 0.56 * fRateOut);
  EXPECT_LT(Decibel(fWorst), -110.0) << nTones << " tones";
}

// The impulse response is as long as the filters and then exactly 0; its spectrum shows the delay of each frequency.
TEST_P(Response, ImpulseStandsAtItsTimeAtEveryFrequency) {
  const double fRatio = GetParam().Ratio();
  Samples input(InputFor(100));  // until all of the response is out
  const auto nImpulse = static_cast<std::size_t>(70.37 * fRatio);
  input[nImpulse] = {1000.0f, 0.0f};
  const Samples output = NewInstance().Run(input);
  const double fTime = static_cast<double>(nImpulse) / fRatio;  // in output samples

  for (std::size_t m = 0; m < output.size(); ++m) {
    if (std::abs(static_cast<double>(m) - fTime) <= 64.0) continue;
    ASSERT_EQ(Value(output[m]), std::complex<double>()) << m;
  }
  for (int i = -9; i <= 9; ++i) {
    const double fOut = 0.05 * i;
    std::complex<double> spectrum;  // with the delay to the impulse's time taken out
    for (std::size_t m = 0; m < output.size(); ++m) {
      spectrum += Value(output[m]) * std::polar(1.0, -2.0 * std::numbers::pi * fOut * (static_cast<double>(m) - fTime));
    }
    EXPECT_NEAR(Decibel(std::abs(spectrum) * fRatio / 1000.0), 0.0, 0.01) << fOut;
    const double fDelay = i == 0 ? 0.0 : std::arg(spectrum) / (-2.0 * std::numbers::pi * fOut);
    EXPECT_LT(std::abs(fDelay), 0.0001) << fOut;
  }
}

TEST_P(Response, TheOutputIsAsLongAsTheInputLessSixtyFourSamplesAtMost) {
  const double fRatio = GetParam().Ratio();
  for (const double fOutputs : {0.0, 0.5, 10.0, 70.0, 1000.0, 20000.0}) {
    const auto nInput = static_cast<std::size_t>(fOutputs * fRatio) + 1;
    const Samples output = NewInstance().Run(Samples(nInput));
    const double fWhole = static_cast<double>(nInput) / fRatio;
    EXPECT_LE(static_cast<double>(output.size()), std::ceil(fWhole));
    EXPECT_GE(static_cast<double>(output.size()), fWhole - 64.0);
  }
}

TEST_P(Response, AFullScaleSquareWaveStaysAsLargeAsAFilterMakesIt) {
  const double fRatio = GetParam().Ratio();
  Samples input(InputFor(400));
  const double fHalfPeriod = 11.3 * fRatio;
  for (std::size_t n = 0; n < input.size(); ++n) {
    const float value = std::fmod(static_cast<double>(n), 2.0 * fHalfPeriod) < fHalfPeriod ? 32767.0f : -32768.0f;
    input[n] = {value, -value};
  }
  const Samples output = NewInstance().Run(input);
  for (std::size_t m = kSettled; m < output.size(); ++m) {
    // A steep low-pass overshoots at an edge by 9 % of the step (Gibbs), and by 14 % where it follows an edge between
    // two samples. The step is twice full scale, and the ripples of neighbouring edges add a little.
    ASSERT_LT(std::abs(output[m].re), 32768.0f * 1.4f) << m;
    ASSERT_NEAR(output[m].re, -output[m].im, 0.1f);
    // In the middle between two edges the wave's own sign.
    const double fPhase = std::fmod(static_cast<double>(m), 22.6) / 22.6;
    if (fPhase > 0.2 && fPhase < 0.3) {
      ASSERT_GT(output[m].re, 20000.0f) << m;
    } else if (fPhase > 0.7 && fPhase < 0.8) {
      ASSERT_LT(output[m].re, -20000.0f) << m;
    }
  }
}

TEST_P(Response, NotANumberAndInfinityLeaveNoTraceAfterTheFiltersLength) {
  const double fRatio = GetParam().Ratio();
  Samples input = Noise(InputFor(200));
  const auto nBad = static_cast<std::size_t>(150.0 * fRatio);
  const Samples clean = NewInstance().Run(input);
  input[nBad] = {std::numeric_limits<float>::quiet_NaN(), 1.0f};
  input[nBad + 1] = {0.0f, -std::numeric_limits<float>::infinity()};
  const Samples output = NewInstance().Run(input);
  ASSERT_EQ(output.size(), clean.size());
  int nTouched = 0;
  for (std::size_t m = 0; m < output.size(); ++m) {
    if (std::abs(static_cast<double>(m) - 150.0) <= 64.0) {
      nTouched += std::isfinite(output[m].re) ? 0 : 1;
    } else {
      ASSERT_EQ(Value(output[m]), Value(clean[m])) << m;
    }
  }
  EXPECT_GT(nTouched, 0);
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
