// What the library does to tones and impulses, measured through its entry points.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <random>

#include "rate_pair.h"

namespace carvello::test {
namespace {

class Response : public testing::TestWithParam<SRates> {
 protected:
  static CLibraryInstance NewInstance() { return GetParam().NewInstance(); }
  static std::size_t InputFor(double settledOutputs) { return GetParam().InputFor(settledOutputs); }
};

// Whole and fractional ratios, from nearly 1 to thousands, with small and large primes, and up to 250 MHz.
INSTANTIATE_TEST_SUITE_P(RatePairs, Response,
                         testing::Values(SRates{2000000, 10000}, SRates{2400000, 192000}, SRates{10000000, 975000},
                                         SRates{192000, 190000}, SRates{2000000, 7919}, SRates{8000, 7999},
                                         SRates{2000000, 1000000}, SRates{250000, 250}, SRates{250000000, 249975003},
                                         SRates{250000000, 192000}, SRates{1000003, 104729}, SRates{30000001, 29999},
                                         SRates{48000, 44100}, SRates{8000, 3}, SRates{10000000, 1000001, true},
                                         SRates{2500000, 1000001, true}),
                         [](const testing::TestParamInfo<SRates>& rates) { return NameOf(rates.param); });

// Compared with the tone as it must be, so gain, phase, frequency and time are all in the difference. 0.01 dB is a
// factor of 1.00115. What is left when the tone is taken out are images and noise.
TEST_P(Response, TonesInThePassbandComeOutAsTheyWentInAndAlone) {
  for (int i = -18; i <= 18; ++i) {
    const double fOut = 0.025 * i;  // cycles per output sample
    const Samples output = NewInstance().Run(Tone(fOut / GetParam().Ratio(), InputFor(40)));
    const Samples expected = Tone(fOut, output.size());
    ASSERT_GE(output.size(), kSettled + 40);
    std::complex<double> gain;
    for (std::size_t m = kSettled; m < output.size(); ++m) gain += Value(output[m]) * std::conj(Value(expected[m]));
    gain /= static_cast<double>(output.size() - kSettled);
    EXPECT_LT(std::abs(gain - 1.0), i == 0 ? 0.0001 : 0.00115) << fOut;
    for (std::size_t m = kSettled; m < output.size(); ++m) {
      ASSERT_LT(Decibel(std::abs(Value(output[m]) - gain * Value(expected[m]))), -110.0) << fOut << " " << m;
    }
  }
}

// The channel filter by its formula: a sinc of 0.5 output rates under a Kaiser window of 118 dB and a transition of
// 0.1.
double ChannelFilter(double outputSamples) {
  const double fHalfLength = (118.0 - 7.95) / 14.36 / 0.1 / 2.0;
  const double fBeta = 0.1102 * (118.0 - 8.7);
  const double fRelative = outputSamples / fHalfLength;
  if (std::abs(fRelative) >= 1.0) return 0.0;
  const double x = std::numbers::pi * outputSamples;
  return (std::abs(x) < 1e-9 ? 1.0 : std::sin(x) / x) *
         std::cyl_bessel_i(0.0, fBeta * std::sqrt(1.0 - fRelative * fRelative)) / std::cyl_bessel_i(0.0, fBeta);
}

// A tone that begins with the input and ends with it, on which silence follows: every output is the channel filter's
// sum over the input, in the same way for all chains of stages, also where the tone begins and ends.
TEST_P(Response, OutputsAreTheChannelFiltersSumsFromTheFirstToTheLast) {
  constexpr double kFrequency = 0.31;  // of the output rate
  const double fRatio = GetParam().Ratio();
  const auto nTone = static_cast<std::size_t>(90.0 * fRatio);
  Samples input = Tone(kFrequency / fRatio, nTone);
  input.resize(nTone + InputFor(0));
  const Samples output = NewInstance().Run(input);
  for (const std::size_t m : {0u, 1u, 2u, 3u, 7u, 20u, 37u, 38u, 45u, 60u, 85u, 88u, 89u, 90u, 92u, 110u, 127u}) {
    ASSERT_LT(m, output.size());
    const double fMiddle = static_cast<double>(m) * fRatio;
    const auto nFrom = static_cast<std::size_t>(std::max(0.0, fMiddle - 38.0 * fRatio));
    const auto nTo = std::min(nTone, static_cast<std::size_t>(fMiddle + 38.0 * fRatio));
    std::complex<double> sum;
    for (std::size_t n = nFrom; n < nTo; ++n) {
      sum += Value(input[n]) * ChannelFilter((static_cast<double>(n) - fMiddle) / fRatio);
    }
    EXPECT_LT(Decibel(std::abs(Value(output[m]) - sum / fRatio)), -110.0) << m;
  }
}

// Where a tone ends after all stages, in Hz.
double Folded(double tone, const std::vector<double>& stageRates) {
  for (const double rate : stageRates) tone = std::remainder(tone, rate);
  return tone;
}

// Every zone that a stage folds onto the channel, that is the band around each multiple of its output rate up to half
// its input rate, at the zone's middle and edges and between. The filters' taps are real, so both signs respond alike,
// and tones take turns.
TEST_P(Response, NoZoneOfAnyStageFoldsIntoThePassband) {
  const double fRateOut = GetParam().RateOut();
  const std::vector<double> stageRates = StageRates(NewInstance());
  ASSERT_FALSE(stageRates.empty());
  double fStageRateIn = GetParam().nIn;
  int nTones = 0;
  for (const double rate : stageRates) {
    for (int k = 1; k <= 0.5 * fStageRateIn / rate + 0.5; ++k) {
      for (const double fOffset : {-0.4499, -0.23, 0.0, 0.23, 0.4499}) {
        const double fTone = k * rate + fOffset * fRateOut;
        if (fTone > 0.5 * fStageRateIn || fTone < 0.55 * fRateOut) continue;
        ASSERT_LE(std::abs(Folded(fTone, stageRates)), 0.45 * fRateOut);
        const double fSign = ++nTones % 2 == 0 ? -1.0 : 1.0;
        EXPECT_LT(Decibel(WorstError(GetParam(), fSign * fTone / fRateOut, 0.0)), -110.0) << fSign * fTone << " Hz";
      }
    }
    fStageRateIn = rate;
  }
  // Close to a ratio of 1 no tone of the input can fold there; images are the other test's.
  EXPECT_EQ(nTones > 0, 0.5 * GetParam().nIn > 0.56 * fRateOut);
}

// Anywhere in the input's band, so also where several stages have to fold for a tone to arrive in the passband.
TEST_P(Response, NothingFoldsIntoThePassbandFromAnywhere) {
  const double fHalfRate = 0.5 * GetParam().Ratio();
  std::mt19937 random(GetParam().nOut);
  std::uniform_real_distribution<double> frequencies(-fHalfRate, fHalfRate);
  int nTones = 0;
  for (int i = 0; i < 100; ++i) {
    const double fTone = frequencies(random);
    if (std::abs(fTone) < 0.55 || std::abs(std::remainder(fTone, 1.0)) > 0.45) continue;
    ++nTones;
    EXPECT_LT(Decibel(WorstError(GetParam(), fTone, 0.0)), -110.0) << fTone << " output rates";
  }
  EXPECT_EQ(nTones > 0, fHalfRate > 0.56);
}

// The impulse response is as long as the filters and then exactly 0; its spectrum shows the delay of each frequency.
TEST_P(Response, ImpulsesStandAtTheirTimesAtEveryFrequency) {
  std::mt19937 random(GetParam().nOut);
  for (int nImpulse = 0; nImpulse < 6; ++nImpulse) {
    const std::size_t nLength = InputFor(100);  // until all of the response is out
    const std::size_t nNumber = InputFor(0) / 2 + random() % InputFor(-64);
    const SImpulseResponse impulse = ImpulseAt(GetParam(), nNumber, nLength);
    for (std::size_t m = 0; m < impulse.output.size(); ++m) {
      if (std::abs(static_cast<double>(m) - impulse.fTime) <= 64.0) continue;
      ASSERT_EQ(Value(impulse.output[m]), std::complex<double>()) << nNumber << " " << m;
    }
    for (int i = -9; i <= 9; ++i) {
      const double fOut = 0.05 * i;
      EXPECT_NEAR(Decibel(std::abs(impulse.Gain(fOut))), 0.0, 0.01) << nNumber << " " << fOut;
      if (i == 0) continue;  // a constant has no delay to see
      EXPECT_LT(std::abs(impulse.Delay(fOut)), 0.0001) << nNumber << " " << fOut;
    }
  }
}

TEST_P(Response, TheOutputIsAsLongAsTheInputLessSixtyFourSamplesAtMost) {
  const double fRatio = GetParam().Ratio();
  for (const double fOutputs : {0.0, 0.5, 10.0, 70.0, 1000.0, 5000.0}) {
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

}  // namespace
}  // namespace carvello::test
