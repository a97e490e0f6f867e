#include "cli/signal_generator.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

namespace carvello::test {
namespace {

using Complex = std::complex<double>;

SSynthSettings Settings(std::uint32_t rate) {
  SSynthSettings settings;
  settings.nSampleRate = rate;
  settings.nCentre = 7'100'000;
  settings.nSeed = 1;
  return settings;
}

std::vector<Complex> Generate(const SSynthSettings& settings, std::size_t frames, std::size_t block = kSignalBlock) {
  CSignalGenerator generator(settings);
  std::vector<double> values(2 * block);
  std::vector<Complex> samples;
  while (samples.size() < frames) {
    const std::size_t count = std::min(block, frames - samples.size());
    generator.Next(values.data(), count);
    for (std::size_t i = 0; i < count; ++i) samples.emplace_back(values[2 * i], values[2 * i + 1]);
  }
  return samples;
}

// The samples' share at whole `frequency` Hz off the centre.
Complex Bin(const std::vector<Complex>& samples, std::int64_t frequency, std::uint32_t rate) {
  Complex sum;
  for (std::size_t n = 0; n < samples.size(); ++n) {
    const auto turns = static_cast<double>(frequency * static_cast<std::int64_t>(n) % rate) / rate;
    sum += samples[n] * std::polar(1.0, -2.0 * std::numbers::pi * turns);
  }
  return sum / static_cast<double>(samples.size());
}

double PowerDecibels(const std::vector<Complex>& samples) {
  double power = 0.0;
  for (const Complex& sample : samples) power += std::norm(sample);
  return 10.0 * std::log10(power / static_cast<double>(samples.size()));
}

TEST(SignalGenerator, ATonesEverySampleIsExact) {
  constexpr std::uint32_t kRate = 48'000;
  for (const std::int64_t offset : {0, 1, 7'001, 24'000, -1, -7'001, -24'000}) {
    SSynthSettings settings = Settings(kRate);
    settings.stations = {{settings.nCentre + offset, -6.0, false}};
    const std::vector<Complex> samples = Generate(settings, 100'000);
    const double amplitude = std::pow(10.0, -6.0 / 20.0);
    double worst = 0.0;
    for (std::size_t n = 0; n < samples.size(); ++n) {
      const auto turns = static_cast<double>(offset * static_cast<std::int64_t>(n) % kRate) / kRate;
      worst = std::max(worst, std::abs(samples[n] - std::polar(amplitude, 2.0 * std::numbers::pi * turns)));
    }
    // Double arithmetic: an error of a few 1e-16 in sine, cosine and product.
    EXPECT_LT(worst, 1e-14) << offset;
  }
}

TEST(SignalGenerator, DoesNotDependOnTheBlocks) {
  SSynthSettings settings = Settings(50'000);
  settings.stations = {{7'101'234, -20.0, true}, {7'090'000, -30.0, false}};
  settings.noise = -40.0;
  const std::vector<Complex> whole = Generate(settings, 20'000);
  const std::vector<Complex> pieces = Generate(settings, 20'000, 997);
  double worst = 0.0;
  for (std::size_t n = 0; n < whole.size(); ++n) worst = std::max(worst, std::abs(whole[n] - pieces[n]));
  EXPECT_LT(worst, 1e-14);
}

TEST(SignalGenerator, AnAmStationHasACarrierAndTwoSidebands) {
  constexpr std::uint32_t kRate = 40'000;
  SSynthSettings settings = Settings(kRate);
  settings.stations = {{7'105'000, -20.0, true}};
  const std::vector<Complex> samples = Generate(settings, kRate);  // a second: every whole Hz is orthogonal
  EXPECT_NEAR(std::abs(Bin(samples, 5000, kRate)), 0.1, 1e-12);
  EXPECT_NEAR(std::abs(Bin(samples, 6000, kRate)), 0.1 * kModulationDepth / 2, 1e-12);
  EXPECT_NEAR(std::abs(Bin(samples, 4000, kRate)), 0.1 * kModulationDepth / 2, 1e-12);
  EXPECT_NEAR(std::abs(Bin(samples, 7000, kRate)), 0.0, 1e-12);
}

TEST(SignalGenerator, StationsAddUp) {
  constexpr std::uint32_t kRate = 40'000;
  SSynthSettings settings = Settings(kRate);
  settings.stations = {{7'105'000, -20.0, false}, {7'095'000, -40.0, false}};
  const std::vector<Complex> samples = Generate(settings, kRate);
  EXPECT_NEAR(std::abs(Bin(samples, 5000, kRate)), 0.1, 1e-12);
  EXPECT_NEAR(std::abs(Bin(samples, -5000, kRate)), 0.01, 1e-12);
}

TEST(SignalGenerator, NoiseHasThePowerAskedFor) {
  SSynthSettings settings = Settings(48'000);
  settings.noise = -40.0;
  // A million independent frames: a standard error of 0.1 %, or 0.005 dB.
  EXPECT_NEAR(PowerDecibels(Generate(settings, 1'000'000)), -40.0, 0.02);
}

TEST(SignalGenerator, SilenceIsZero) {
  for (const Complex& sample : Generate(Settings(48'000), 5000)) ASSERT_EQ(sample, Complex());
}

TEST(SignalGenerator, KeepsItsPhaseFarBehindTheStart) {
  // 3 GHz-odd products of step and frames: the arithmetic must not run out of bits.
  constexpr std::uint32_t kRate = 499'999'999;
  CPhaseTable table(kRate - 1, kRate);
  const std::vector<double> ones(kSignalBlock, 1.0);
  std::vector<double> values(2 * kSignalBlock);
  constexpr std::uint64_t kBlocks = 200'000;
  for (std::uint64_t i = 0; i < kBlocks; ++i) {
    std::fill(values.begin(), values.end(), 0.0);
    table.AddTo(values.data(), i + 1 < kBlocks ? kSignalBlock : 1, 1.0, ones.data());
  }
  const std::uint64_t frame = (kBlocks - 1) * kSignalBlock;
  const double turns = -static_cast<double>(frame % kRate) / kRate;
  EXPECT_NEAR(values[0], std::cos(2.0 * std::numbers::pi * turns), 1e-12);
  EXPECT_NEAR(values[1], std::sin(2.0 * std::numbers::pi * turns), 1e-12);
}

}  // namespace
}  // namespace carvello::test
