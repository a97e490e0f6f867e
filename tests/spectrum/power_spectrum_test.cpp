#include "spectrum/power_spectrum.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>
#include <random>
#include <string>
#include <vector>

namespace carvello {
namespace {

constexpr EWindow kWindows[] = {EWindow::Hann, EWindow::BlackmanHarris, EWindow::FlatTop};

// `bin` bins above the centre, may lie between two.
std::vector<SComplex> Tone(std::size_t length, double bin, double amplitude) {
  std::vector<SComplex> samples(length);
  for (std::size_t n = 0; n < length; ++n) {
    const double fTurns = bin * static_cast<double>(n) / static_cast<double>(length);
    const double fAngle = 2.0 * std::numbers::pi * (fTurns - std::floor(fTurns));
    samples[n] = {static_cast<float>(amplitude * std::cos(fAngle)), static_cast<float>(amplitude * std::sin(fAngle))};
  }
  return samples;
}

std::vector<SComplex> Noise(std::size_t length, unsigned seed) {
  std::mt19937 random(seed);
  std::normal_distribution<float> normal(0.0f, 1'000.0f);
  std::vector<SComplex> samples(length);
  for (SComplex& sample : samples) sample = {normal(random), normal(random)};
  return samples;
}

std::vector<float> Powers(CPowerSpectrum& spectrum, const std::vector<SComplex>& samples) {
  std::vector<float> power(spectrum.Length());
  spectrum.Transform(samples.data(), power.data());
  return power;
}

double Decibels(double power) {
  return 10.0 * std::log10(power);
}

TEST(PowerSpectrum, OfAToneAtFullScaleInABinIsZeroDecibelsThere) {
  for (const EWindow window : kWindows) {
    for (std::size_t nLength = 64; nLength <= 65'536; nLength *= 4) {
      CPowerSpectrum spectrum(nLength, window);
      const auto nHalf = static_cast<std::ptrdiff_t>(nLength / 2);
      for (const std::ptrdiff_t nBin : {-nHalf, -nHalf / 3, std::ptrdiff_t{0}, std::ptrdiff_t{7}, nHalf - 1}) {
        const std::vector<float> power = Powers(spectrum, Tone(nLength, static_cast<double>(nBin), 32'768.0));
        SCOPED_TRACE(std::to_string(nLength) + " bins, tone at " + std::to_string(nBin));
        EXPECT_NEAR(Decibels(power[static_cast<std::size_t>(nHalf + nBin)]), 0.0, 0.0005);
      }
    }
  }
}

TEST(PowerSpectrum, FollowsTheLevelOfATone) {
  for (const double fLevel : {-3.0, -60.0, -110.0}) {
    CPowerSpectrum spectrum(1'024, EWindow::BlackmanHarris);
    const std::vector<float> power = Powers(spectrum, Tone(1'024, 100.0, 32'768.0 * std::pow(10.0, fLevel / 20.0)));
    EXPECT_NEAR(Decibels(power[612]), fLevel, 0.001);
  }
}

// Of a tone between two bins, as F. J. Harris (1978) and G. Heinzel et al. (2002) tell: 1.42, 0.83 and 0.004 dB.
TEST(PowerSpectrum, LosesBetweenBinsWhatTheWindowsAreKnownFor) {
  const double losses[] = {1.42, 0.83, 0.0039};
  for (std::size_t i = 0; i < 3; ++i) {
    CPowerSpectrum spectrum(1'024, kWindows[i]);
    const std::vector<float> power = Powers(spectrum, Tone(1'024, 100.5, 32'768.0));
    EXPECT_NEAR(-Decibels(power[612]), losses[i], i == 2 ? 0.0005 : 0.01);
  }
}

// Side lobes of -31.5, -92 and -90.2 dB, by the same.
TEST(PowerSpectrum, HasTheSideLobesThatTheWindowsAreKnownFor) {
  const double lobes[] = {-31.5, -92.0, -90.2};
  const std::ptrdiff_t mainLobes[] = {2, 4, 5};  // from the middle to the first zero
  for (std::size_t i = 0; i < 3; ++i) {
    CPowerSpectrum spectrum(4'096, kWindows[i]);
    double fLargest = -1'000.0;
    for (int nPart = 0; nPart < 64; ++nPart) {
      const double fOffset = nPart / 64.0;
      const std::vector<float> power = Powers(spectrum, Tone(4'096, 500.0 + fOffset, 32'768.0));
      for (std::ptrdiff_t k = 0; k < 4'096; ++k) {
        if (std::abs(static_cast<double>(k - 2'048 - 500) - fOffset) < static_cast<double>(mainLobes[i])) continue;
        fLargest = std::max(fLargest, Decibels(power[static_cast<std::size_t>(k)]));
      }
    }
    EXPECT_NEAR(fLargest, lobes[i], 0.2);
  }
}

TEST(PowerSpectrum, TellsTheNoiseBandwidthThatTheWindowsAreKnownFor) {
  EXPECT_NEAR(CPowerSpectrum(256, EWindow::Hann).NoiseBandwidth(), 1.5, 1e-12);
  EXPECT_NEAR(CPowerSpectrum(256, EWindow::BlackmanHarris).NoiseBandwidth(), 2.0044, 1e-4);
  EXPECT_NEAR(CPowerSpectrum(256, EWindow::FlatTop).NoiseBandwidth(), 3.8832, 1e-4);
}

TEST(PowerSpectrum, OfNoiseIsItsDensityTimesTheNoiseBandwidth) {
  for (const EWindow window : kWindows) {
    CPowerSpectrum spectrum(256, window);
    double fMean = 0.0;
    constexpr unsigned kSpectra = 2'000;
    for (unsigned n = 0; n < kSpectra; ++n) {
      for (const float fPower : Powers(spectrum, Noise(256, n))) fMean += fPower / (256.0 * kSpectra);
    }
    const double fDensity = 2.0 * 1'000.0 * 1'000.0 / (32'768.0 * 32'768.0);  // of all the band
    EXPECT_NEAR(Decibels(fMean), Decibels(fDensity * spectrum.NoiseBandwidth() / 256.0), 0.05);
  }
}

TEST(PowerSpectrum, HasTheSameBitsWithEveryInstructionSetAndWhereverTheFramesLie) {
  for (const EWindow window : kWindows) {
    for (const std::size_t nLength : {std::size_t{64}, std::size_t{2'048}, std::size_t{65'536}}) {
      const std::vector<SComplex> samples = Noise(nLength + 1, 5);
      CPowerSpectrum plain(nLength, window, EInstructionSet::Plain);
      std::vector<float> expected(nLength);
      plain.Transform(samples.data() + 1, expected.data());
      for (const EInstructionSet set : InstructionSets()) {
        CPowerSpectrum spectrum(nLength, window, set);
        std::vector<float> power(nLength);
        const std::vector<SComplex> moved(samples.begin() + 1, samples.end());
        spectrum.Transform(moved.data(), power.data());
        EXPECT_EQ(std::memcmp(power.data(), expected.data(), nLength * sizeof(float)), 0) << NameOf(set);
      }
    }
  }
}

TEST(PowerKernels, AreTheSumsThatDefineThemForEveryCount) {
  for (const EInstructionSet set : InstructionSets()) {
    const SPowerKernels& kernels = PowerKernels(set);
    for (std::size_t nCount = 0; nCount < 70; ++nCount) {
      SCOPED_TRACE(std::string(kernels.pszName) + ", " + std::to_string(nCount));
      const std::vector<SComplex> samples = Noise(nCount + 1, 9);
      std::vector<float> window(nCount + 1), power(nCount + 1, -1.0f), sum(nCount + 1, 3.0f);
      std::vector<float> maximum(nCount + 1, 1'000'000.0f);
      std::vector<float> added(nCount + 1, 3.0f), largest(nCount + 1, 1'000'000.0f);
      for (std::size_t i = 0; i <= nCount; ++i) window[i] = static_cast<float>(i) + 0.25f;
      std::vector<SComplex> weighted(nCount + 1);
      kernels.Weight(samples.data(), window.data(), weighted.data(), nCount);
      kernels.Power(samples.data(), power.data(), nCount);
      kernels.AddPower(samples.data(), added.data(), nCount);
      kernels.LargestPower(samples.data(), largest.data(), nCount);
      kernels.Accumulate(power.data(), nCount, sum.data(), maximum.data());
      for (std::size_t i = 0; i < nCount; ++i) {
        EXPECT_EQ(weighted[i].re, samples[i].re * window[i]);
        EXPECT_EQ(weighted[i].im, samples[i].im * window[i]);
        const float fSquareI = samples[i].re * samples[i].re;
        const float fSquareQ = samples[i].im * samples[i].im;
        EXPECT_EQ(power[i], fSquareI + fSquareQ);
        EXPECT_EQ(sum[i], 3.0f + power[i]);
        EXPECT_EQ(maximum[i], std::max(1'000'000.0f, power[i]));
      }
      EXPECT_EQ(added, sum);
      EXPECT_EQ(largest, maximum);
      EXPECT_EQ(weighted[nCount].re, 0.0f);
      EXPECT_EQ(power[nCount], -1.0f);
      EXPECT_EQ(sum[nCount], 3.0f);
      EXPECT_EQ(maximum[nCount], 1'000'000.0f);
    }
  }
}

}  // namespace
}  // namespace carvello
