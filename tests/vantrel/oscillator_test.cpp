// The frequency shift, measured through the entry points.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "library_instance.h"
#include "spectrum.h"

namespace carvello::test {
namespace {

// exp(-j 2 pi ((shift * n) mod rate) / rate), the residue in whole numbers.
std::complex<double> ExactTurn(std::int64_t shift, std::uint64_t n, std::uint32_t rate) {
  const std::int64_t nRate = rate;
  const auto nStep = static_cast<std::uint64_t>((shift % nRate + nRate) % nRate);
  const std::uint64_t nResidue = nStep * (n % rate) % rate;
  return std::polar(1.0, -2.0 * std::numbers::pi * static_cast<double>(nResidue) / rate);
}

TEST(Nco, BringsTheWantedCentreToZeroInPlace) {
  const CLibraryInstance instance(48000, 48000);
  Samples samples = Tone(7000.0 / 48000.0, 5000, 32768.0);
  Dsp().NCO(instance.Handle(), 7000, 48000, samples.data(), 5000, samples.data());
  for (const SComplex& sample : samples) {
    ASSERT_NEAR(sample.re, 32768.0f, 0.02f);  // some last places of a float
    ASSERT_NEAR(sample.im, 0.0f, 0.02f);
  }
}

TEST(Nco, PhaseCarriesOverFromCallToCallAndToAnotherDestination) {
  const CLibraryInstance instance(48000, 48000);
  const Samples source(3000, {1.0f, 0.0f});
  Samples destination(3000);
  Dsp().NCO(instance.Handle(), -5000, 48000, source.data(), 1234, destination.data());
  Dsp().NCO(instance.Handle(), -5000, 48000, source.data() + 1234, 1766, destination.data() + 1234);
  const Samples expected = Tone(5000.0 / 48000.0, 3000);
  for (std::size_t n = 0; n < 3000; ++n) ASSERT_LT(std::abs(Value(destination[n]) - Value(expected[n])), 1e-6) << n;
  EXPECT_EQ(source[2999].re, 1.0f);
}

TEST(Nco, ShiftOfZeroLeavesEveryBit) {
  const CLibraryInstance instance(48000, 48000);
  Samples samples = Noise(5000);
  samples[17].re = -0.0f;
  samples[18].im = std::numeric_limits<float>::infinity();
  Samples shifted = samples;
  Dsp().NCO(instance.Handle(), 0, 48000, shifted.data(), 5000, shifted.data());
  EXPECT_TRUE(SameBits(shifted, samples));
}

TEST(Nco, ShiftOfZeroStillCountsSamples) {
  const CLibraryInstance instance(48000, 48000);
  Samples samples(2001, {1.0f, 0.0f});
  Dsp().NCO(instance.Handle(), 0, 48000, samples.data(), 2000, samples.data());
  Dsp().NCO(instance.Handle(), -11, 48000, samples.data() + 2000, 1, samples.data() + 2000);
  const auto expected = std::polar(1.0, 2.0 * std::numbers::pi * (11.0 * 2000.0 / 48000.0));
  EXPECT_LT(std::abs(Value(samples[2000]) - expected), 1e-6);
}

TEST(Nco, InitStartsTheOscillatorAnew) {
  const CLibraryInstance instance(48000, 48000);
  Samples samples(777, {1.0f, 0.0f});
  Dsp().NCO(instance.Handle(), 1000, 48000, samples.data(), 777, samples.data());
  Dsp().DownconvertInit(instance.Handle(), 48000, 48000);
  SComplex sample{1.0f, 0.0f};
  Dsp().NCO(instance.Handle(), 1000, 48000, &sample, 1, &sample);
  EXPECT_EQ(Value(sample), std::complex<double>(1.0, 0.0));
}

TEST(Nco, LargestSpurIs130DecibelBelowTheTone) {
  constexpr std::uint32_t kCount = 1 << 17;
  const struct {
    std::int64_t nShift;
    std::uint32_t nRate;
  } cases[] = {{1234567, 10000000},    {-3333333, 10000000},  {5000000, 10000000}, {1, 8000},       {2999, 8000},
               {-99999989, 250000000}, {61035157, 250000000}, {97656, 100000000},  {-24000, 48000}, {15000, 48000}};
  for (const auto& [nShift, nRate] : cases) {
    const CLibraryInstance instance(nRate, nRate);
    Samples samples(kCount, {20000.0f, 0.0f});
    Dsp().NCO(instance.Handle(), nShift, nRate, samples.data(), kCount, samples.data());
    std::vector<std::complex<double>> signal(kCount);
    std::transform(samples.begin(), samples.end(), signal.begin(), Value);
    const SSpectrumPeaks peaks = FindPeaks(std::move(signal));
    const double fBin = std::fmod(1.0 - static_cast<double>(nShift) / nRate, 1.0) * kCount;
    const double fApart = std::abs(static_cast<double>(peaks.nBin) - fBin);
    EXPECT_LE(std::min(fApart, kCount - fApart), 1.0) << nShift << " of " << nRate;
    EXPECT_LT(peaks.fSpur - peaks.fLargest, -130.0) << nShift << " of " << nRate;
  }
}

// So far from the start only a phase in whole numbers is still right: 32-bit floats count to 16 million, and a turning
// pointer's errors add up.
TEST(Nco, PhaseIsExactAfterHundredsOfMillionsOfSamples) {
  constexpr std::uint32_t kBlock = 1 << 20;
  constexpr std::uint64_t kBlocks = 300;
  const Samples ones(kBlock, {1.0f, 0.0f});
  Samples turned(kBlock);
  const std::int64_t nShift = -3333331;
  const std::uint32_t nRate = 10000019;
  const CLibraryInstance instance(nRate, nRate);
  for (std::uint64_t nBlock = 0; nBlock < kBlocks; ++nBlock) {
    Dsp().NCO(instance.Handle(), nShift, nRate, ones.data(), kBlock, turned.data());
    for (std::uint64_t i = nBlock % 1009; i < kBlock; i += 65537) {
      ASSERT_LT(std::abs(Value(turned[i]) - ExactTurn(nShift, nBlock * kBlock + i, nRate)), 1e-6) << nBlock << " " << i;
    }
  }
}

TEST(Nco, NotANumberTouchesNoOtherSample) {
  const CLibraryInstance instance(48000, 48000);
  Samples samples(3000, {1.0f, 0.0f});
  samples[1500].re = std::numeric_limits<float>::quiet_NaN();
  samples[1600].im = std::numeric_limits<float>::infinity();
  Dsp().NCO(instance.Handle(), 12345, 48000, samples.data(), 3000, samples.data());
  for (std::size_t n = 0; n < samples.size(); ++n) {
    if (n == 1500 || n == 1600) continue;
    ASSERT_LT(std::abs(Value(samples[n]) - ExactTurn(12345, n, 48000)), 1e-6) << n;
  }
}

// A shift beyond half the rate, or beyond the rate itself, is the one that it looks like.
TEST(Nco, ShiftsBeyondTheRateAreTheirResidues) {
  const Samples input = Noise(5000);
  const auto shifted = [&input](std::int64_t shift) {
    const CLibraryInstance instance(48000, 48000);
    Samples samples(input.size());
    Dsp().NCO(instance.Handle(), shift, 48000, input.data(), 5000, samples.data());
    return samples;
  };
  const Samples plain = shifted(7000);
  for (const std::int64_t nShift : {7000ll - 48000ll, 7000ll + 48000ll, 7000ll + 48000ll * 1000000000ll}) {
    EXPECT_TRUE(SameBits(shifted(nShift), plain)) << nShift;
  }
}

}  // namespace
}  // namespace carvello::test
