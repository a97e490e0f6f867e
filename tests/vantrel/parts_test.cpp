// The library's inner parts, where its entry points do not reach: the oscillator far from its start, the plans of any
// two rates, the filters themselves, and the sets of kernels.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>
#include <random>
#include <stdexcept>
#include <vector>

#include "vantrel/alias_filter.h"
#include "vantrel/channel_correction.h"
#include "vantrel/fir_table.h"
#include "vantrel/kaiser_lowpass.h"
#include "vantrel/kernels.h"
#include "vantrel/oscillator.h"
#include "vantrel/stage_plan.h"

namespace vantrel {
namespace {

std::complex<double> Value(const SComplex& sample) {
  return {sample.re, sample.im};
}

TEST(Oscillator, PhaseIsExactAfterTenToTheTwelfthSamples) {
  constexpr std::uint32_t kRate = 4294967291u;  // the largest rates make the largest products
  for (const std::uint64_t nStart : {0ull, 1000000000000ull, 999999999999ull, 18446744073709540000ull}) {
    for (const std::int64_t nShift :
         {1ll, -1ll, 12345678ll, 4294967290ll, -98765432109ll, 100000ll, -2500ll, 5000000ll}) {
      for (const std::uint32_t nRate : {kRate, 10000000u, 44100u}) {
        const std::size_t nCount = 5000;
        std::vector<SComplex> samples(nCount, {1.0f, 0.0f});
        COscillator(nStart).Process(nShift, nRate, samples.data(), nCount, samples.data());
        for (std::size_t i = 0; i < nCount; ++i) {
          // The residue in 128 bits.
          const __int128 nProduct = static_cast<__int128>(nShift) * static_cast<__int128>(nStart + i);
          const double fResidue = static_cast<double>(static_cast<std::int64_t>(nProduct % nRate));
          const auto exact = std::polar(1.0, -2.0 * std::numbers::pi * fResidue / nRate);
          ASSERT_LT(std::abs(Value(samples[i]) - exact), 1e-6) << nStart + i << " " << nShift << " " << nRate;
        }
      }
    }
  }
}

// No spur can be larger than all of the error together.
TEST(Oscillator, AllErrorTogetherIsBelowMinus130Decibel) {
  for (const std::int64_t nShift : {1ll, 333333ll, -1234567ll, 2500000ll, 4999999ll, 300000ll, -1250ll}) {
    const std::uint32_t nRate = 10000000;
    const std::size_t nCount = 1000000;
    std::vector<SComplex> samples(nCount, {1.0f, 0.0f});
    COscillator().Process(nShift, nRate, samples.data(), nCount, samples.data());
    double fPower = 0.0;
    for (std::size_t i = 0; i < nCount; ++i) {
      const auto nResidue = static_cast<double>(nShift * static_cast<std::int64_t>(i) % nRate);
      fPower += std::norm(Value(samples[i]) - std::polar(1.0, -2.0 * std::numbers::pi * nResidue / nRate));
    }
    EXPECT_LT(10.0 * std::log10(fPower / static_cast<double>(nCount)), -130.0) << nShift;
  }
}

TEST(Oscillator, AnotherShiftTakesEffectAsIfItHadAlwaysBeenThere) {
  std::vector<SComplex> changed(3000, {1.0f, 0.0f});
  std::vector<SComplex> steady = changed;
  COscillator oscillator;
  oscillator.Process(1234, 48000, changed.data(), 1500, changed.data());
  oscillator.Process(777, 48000, changed.data() + 1500, 1500, changed.data() + 1500);
  COscillator().Process(777, 48000, steady.data(), 3000, steady.data());
  for (std::size_t i = 1500; i < 3000; ++i) ASSERT_EQ(Value(changed[i]), Value(steady[i])) << i;
}

TEST(Oscillator, ARateOfZeroOnlyCopies) {
  const std::vector<SComplex> source = {{1.0f, 2.0f}, {3.0f, 4.0f}};
  std::vector<SComplex> destination(2);
  COscillator().Process(5, 0, source.data(), 2, destination.data());
  EXPECT_EQ(Value(destination[1]), Value(source[1]));
}

// The rates that tests go through: small, large and prime ratios, and whole-Hz pairs at random.
std::vector<std::pair<std::uint64_t, std::uint64_t>> RatePairs() {
  std::vector<std::pair<std::uint64_t, std::uint64_t>> pairs = {
      {2000000, 10000}, {2400000, 192000},      {10000000, 975000}, {192000, 190000},  {2000000, 7919}, {250000000, 25},
      {8000, 7999},     {250000000, 249999999}, {10000000, 1},      {61000000, 10007}, {4294967295u, 1}};
  std::mt19937_64 random(11);
  for (int i = 0; i < 60; ++i) {
    // Uniform in the logarithm of both.
    const double fIn = std::exp(std::uniform_real_distribution(std::log(8e3), std::log(2.5e8))(random));
    const double fRatio = std::exp(std::uniform_real_distribution(0.0, std::log(std::min(1e7, fIn)))(random));
    pairs.emplace_back(static_cast<std::uint64_t>(fIn), static_cast<std::uint64_t>(fIn / fRatio));
  }
  return pairs;
}

TEST(StagePlan, StagesTogetherMakeExactlyTheRatio) {
  for (const auto& [nIn, nOut] : RatePairs()) {
    const std::vector<SStagePlan> stages = PlanStages(nIn, nOut);
    unsigned __int128 nStep = 1;
    unsigned __int128 nPhases = 1;
    for (const SStagePlan& stage : stages) {
      nStep *= stage.nStep;
      nPhases *= stage.nPhases;
      EXPECT_GE(stage.nStep, stage.nPhases) << "no stage raises the rate";
    }
    EXPECT_TRUE(nStep * nOut == nPhases * nIn) << nIn << " to " << nOut;
  }
  EXPECT_TRUE(PlanStages(48000, 48000).empty());
}

TEST(StagePlan, NoOutputWaitsForMoreThanSixtyFourOutputSamples) {
  for (const auto& [nIn, nOut] : RatePairs()) {
    double fDelay = 0.0;
    double rate = static_cast<double>(nIn) / static_cast<double>(nOut);
    for (const SStagePlan& stage : PlanStages(nIn, nOut)) {
      fDelay += static_cast<double>(SharedFirTable(stage)->MiddleTap() + 1) / rate;
      rate /= stage.Ratio();
    }
    EXPECT_LT(fDelay, 63.0) << nIn << " to " << nOut;
  }
}

// The response of a table as it stands in memory: all its phases are samples of one impulse response, nPhases of them
// an input sample. `frequency` in cycles per input sample.
double TableGain(const CFirTable& table, std::uint64_t phases, double frequency) {
  std::complex<double> sum;
  const double fMiddle = static_cast<double>(table.MiddleTap());
  for (std::uint64_t nPhase = 0; nPhase < phases; ++nPhase) {
    const float* row = table.Rows() + nPhase * table.TapCount() * 2;
    const double fCentre = fMiddle + static_cast<double>(nPhase) / static_cast<double>(phases);
    for (std::size_t n = 0; n < table.TapCount(); ++n) {
      EXPECT_EQ(row[2 * n], row[2 * n + 1]);
      const double fTime = static_cast<double>(n) - fCentre;
      sum += static_cast<double>(row[2 * n]) * std::polar(1.0, -2.0 * std::numbers::pi * frequency * fTime);
    }
  }
  return std::abs(sum) / static_cast<double>(phases);
}

SStagePlan LowPass(double passEdge, double stopEdge, std::uint64_t phases) {
  SStagePlan plan;
  plan.nPhases = phases;
  plan.fPassEdge = passEdge;
  plan.fStopEdge = stopEdge;
  return plan;
}

TEST(Filters, EveryDecimatorPassesItsChannelAndStopsWhatFoldsOntoIt) {
  int nStages = 0;
  for (const auto& [nIn, nOut] : RatePairs()) {
    std::vector<SStagePlan> stages = PlanStages(nIn, nOut);
    if (!stages.empty()) stages.pop_back();
    for (const SStagePlan& stage : stages) {
      ++nStages;
      const auto pTable = SharedFirTable(stage);
      ASSERT_EQ(stage.nPhases, 1u);
      EXPECT_NEAR(TableGain(*pTable, 1, 0.0), 1.0, 1e-6) << nIn << " to " << nOut;
      // 0.001 dB
      for (int i = 0; i <= 20; ++i) {
        EXPECT_NEAR(TableGain(*pTable, 1, i / 20.0 * stage.fPassEdge), 1.0, 1.15e-4) << nIn << " to " << nOut;
      }
      const std::uint64_t nFactor = stage.nStep;
      for (std::uint64_t k = 1; k <= nFactor / 2; ++k) {
        const double fZone = static_cast<double>(k) / static_cast<double>(nFactor);
        for (int i = -20; i <= 20; ++i) {
          const double fGain = TableGain(*pTable, 1, fZone + i / 20.0 * stage.fStopEdge);
          EXPECT_LT(20.0 * std::log10(fGain), -118.0) << nIn << " to " << nOut << ", zone " << k << " " << i;
        }
      }
    }
  }
  EXPECT_GT(nStages, 100);
}

TEST(Filters, EveryDecimatorFillsTheTapsThatItsTableTakes) {
  for (const auto& [nIn, nOut] : RatePairs()) {
    for (const SStagePlan& stage : PlanStages(nIn, nOut)) {
      if (stage.kind != SStagePlan::EKind::AliasBands) continue;
      const auto taps = DesignAliasFilter(stage.nStep, stage.fPassEdge, stage.fStopEdge);
      EXPECT_EQ((taps.size() + 1) % kTapGranule, 0u) << nIn << " to " << nOut;
      EXPECT_EQ(SharedFirTable(stage)->TapCount(), taps.size() + 1);
      EXPECT_EQ(taps.front(), taps.back());
    }
  }
}

TEST(Filters, BandsWithoutRoomBetweenThemEndTheDesign) {
  EXPECT_THROW(DesignAliasFilter(2, 0.249, 0.2499), std::domain_error);  // nearly touching
  EXPECT_THROW(DesignAliasFilter(2, 0.25, 0.25), std::domain_error);     // touching
  EXPECT_THROW(DesignAliasFilter(8, 0.1, 0.1), std::domain_error);       // one over the other
}

// What lies between the bands is not amplified: it could drive a later stage's output beyond full scale.
TEST(Filters, NoDecimatorAmplifies) {
  for (const auto& [nIn, nOut] : RatePairs()) {
    for (const SStagePlan& stage : PlanStages(nIn, nOut)) {
      if (stage.kind != SStagePlan::EKind::AliasBands) continue;
      const auto pTable = SharedFirTable(stage);
      for (int i = 0; i <= 500; ++i) EXPECT_LT(TableGain(*pTable, 1, i / 1000.0), 1.01) << nIn << " to " << nOut;
    }
  }
}

TEST(Filters, ChannelFilterIsFlatTo045AndClosedFrom055) {
  for (const auto& [nIn, nOut] :
       {std::pair{25ull, 17ull}, {25ull, 16ull}, {96ull, 95ull}, {2ull, 1ull}, {200ull, 117ull}}) {
    const SStagePlan plan = PlanChannelFilter(nIn, nOut);
    const auto pTable = SharedFirTable(plan);
    ASSERT_FALSE(pTable->IsCubic());
    for (int i = 0; i <= 90; ++i) {
      EXPECT_NEAR(TableGain(*pTable, plan.nPhases, 0.005 * i / plan.Ratio()), 1.0, 2e-5) << nIn << "/" << nOut;
    }
    // Up to the last frequency that the table's phases tell apart from lower ones, densest at the edge.
    const double fLast = 0.5 * static_cast<double>(plan.nStep);
    for (int i = 0; i <= 400; ++i) {
      const double f = 0.55 + (fLast - 0.55) * std::pow(i / 400.0, 2);
      EXPECT_LT(20.0 * std::log10(TableGain(*pTable, plan.nPhases, f / plan.Ratio())), -112.0) << nIn << "/" << nOut;
    }
  }
}

// The stages before it and the channel filter together, up to its stop edge, beside the channel filter alone: in the
// band where other chains for the same channel have other stages, none of them shows.
TEST(Filters, TheChannelIsThatOfTheChannelFilterAloneWhateverStandsBeforeIt) {
  const auto expectSame = [](std::uint64_t in, std::uint64_t out) {
    std::vector<SStagePlan> stages = PlanStages(in, out);
    if (stages.size() < 2) return 0;
    const SStagePlan channelFilter = stages.back();
    const std::vector<double> factors = ChannelCorrection(channelFilter);
    for (int i = 0; i <= 60; ++i) {
      const double frequency = i / 60.0 * channelFilter.fStopEdge;
      double fGain = factors[0];
      for (std::size_t k = 1; k < factors.size(); ++k) {
        fGain += 2.0 * factors[k] * std::cos(2.0 * std::numbers::pi * frequency * static_cast<double>(k));
      }
      double fAtStage = frequency;
      for (std::size_t n = stages.size() - 1; n-- > 0;) {
        fAtStage /= static_cast<double>(stages[n].nStep);
        fGain *= TableGain(*SharedFirTable(stages[n]), 1, fAtStage);
      }
      EXPECT_NEAR(fGain, 1.0, 2e-7) << in << " to " << out << " at " << i / 60.0 * 0.55;
    }
    for (int i = 0; i <= 60; ++i) {
      const double frequency = channelFilter.fStopEdge + i / 60.0 * (0.5 - channelFilter.fStopEdge);
      double fGain = factors[0];
      for (std::size_t k = 1; k < factors.size(); ++k) {
        fGain += 2.0 * factors[k] * std::cos(2.0 * std::numbers::pi * frequency * static_cast<double>(k));
      }
      EXPECT_LT(std::abs(fGain), 3.0) << in << " to " << out;
    }
    return 1;
  };
  int nChains = 0;
  for (const auto& [nIn, nOut] : RatePairs()) nChains += expectSame(nIn, nOut);
  // Chains of one decimator and of the least ratios that may stand behind it.
  for (std::uint64_t nRatio = 2'800; nRatio < 4'400; nRatio += 40) nChains += expectSame(nRatio, 1'000);
  EXPECT_GT(nChains, 80);
}

TEST(Filters, TheChannelFiltersResponseIsOneFunctionOfTimeForAllRates) {
  // In output samples, for channel filters of ratios between which their taps take more or fewer granules.
  const CKaiserLowPass alone(0.45, 0.55);
  for (const double fRatio : {1.1, 1.4, 2.0, 3.3, 7.0}) {
    const CKaiserLowPass design(0.45 / fRatio, 0.55 / fRatio);
    for (double fTime = -40.0; fTime < 40.0; fTime += 0.37) {
      EXPECT_NEAR(fRatio * design(fTime * fRatio), alone(fTime), 1e-12) << fRatio << " at " << fTime;
    }
  }
}

TEST(Filters, CubicRowsAgreeWithTheDesignTo140Decibel) {
  for (const double fRatio : {1.0, 1.3, 2.0, 4.0}) {
    const CKaiserLowPass design(0.45 / fRatio, 0.55 / fRatio);
    const auto pTable = SharedFirTable(LowPass(0.45 / fRatio, 0.55 / fRatio, 1000003));
    ASSERT_TRUE(pTable->IsCubic());
    const std::size_t nTaps = pTable->TapCount();
    for (std::uint64_t nRow = 0; nRow < CFirTable::kCubicRows; ++nRow) {
      const float* row = pTable->Rows() + nRow * 8 * nTaps;
      for (const double u : {0.0, 0.13, 0.5, 0.77, 0.999}) {
        const double fPhase = (static_cast<double>(nRow) + u) / CFirTable::kCubicRows;
        // Where the response ends within a row, taps end with the row.
        const double fRowMiddle = (static_cast<double>(nRow) + 0.5) / CFirTable::kCubicRows;
        double fError = 0.0;
        for (std::size_t n = 0; n < nTaps; ++n) {
          double fTap = 0.0;
          for (std::size_t nPower = 4; nPower-- > 0;)
            fTap = fTap * u + static_cast<double>(row[(nPower * nTaps + n) * 2]);
          const double fTime = static_cast<double>(n) - static_cast<double>(pTable->MiddleTap());
          const double fExact = design.Near(fTime - fRowMiddle, fTime - fPhase);
          fError += (fTap - fExact) * (fTap - fExact);
        }
        EXPECT_LT(10.0 * std::log10(fError), -140.0) << fRatio << " row " << nRow << " + " << u;
      }
    }
  }
}

TEST(Filters, TablesAreSharedWhileInUseAndForSomeTimeAfter) {
  auto pFirst = SharedFirTable(LowPass(0.1, 0.2, 5));
  SStagePlan longerStep = LowPass(0.1, 0.2, 5);
  longerStep.nStep = 7;
  EXPECT_EQ(SharedFirTable(LowPass(0.1, 0.2, 5)), pFirst);
  EXPECT_EQ(SharedFirTable(longerStep), pFirst) << "a low-pass does not depend on the step";
  EXPECT_NE(SharedFirTable(LowPass(0.1, 0.2, 6)), pFirst);
  EXPECT_NE(SharedFirTable(LowPass(0.1, 0.21, 5)), pFirst);
  const auto pCubic = SharedFirTable(LowPass(0.1, 0.2, 1001));
  EXPECT_EQ(SharedFirTable(LowPass(0.1, 0.2, 5003)), pCubic) << "cubic rows do not depend on the phases";
  const std::weak_ptr<const CFirTable> pGone = pFirst;
  pFirst.reset();
  EXPECT_FALSE(pGone.expired()) << "whoever comes next with the same rates finds it";
  for (int i = 0; i < 100; ++i) SharedFirTable(LowPass(0.1, 0.25 + 0.001 * i, 1));
  EXPECT_TRUE(pGone.expired());
}

#ifdef VANTREL_X86_64
void ExpectSameBitsAsPlain(const SKernels& kernels) {
  std::mt19937 random(5);
  std::uniform_real_distribution<float> uniform(-1.0f, 1.0f);
  const auto fill = [&](std::size_t count) {
    std::vector<float> values(count);
    std::generate(values.begin(), values.end(), [&] { return uniform(random); });
    return values;
  };
  constexpr std::size_t kTaps = 48;
  const std::vector<float> input = fill(800);
  const std::vector<float> rows = fill(24 * kTaps);
  const std::vector<float> cosines = fill(800);
  const std::vector<float> sines = fill(800);
  std::vector<SDot> dots;
  for (std::size_t i = 0; i < 30; ++i) dots.push_back({3 * i, i % 3, static_cast<float>(i) / 31.0f});
  for (std::size_t nCount = 1; nCount <= 30; ++nCount) {
    std::vector<float> plain(2 * nCount);
    std::vector<float> other(2 * nCount);
    const auto expectSame = [&](const char* what) {
      EXPECT_EQ(plain, other) << kernels.pszName << " " << what << " " << nCount;
    };
    kPlainKernels.RotateByTable(input.data(), plain.data(), nCount, cosines.data(), sines.data());
    kernels.RotateByTable(input.data(), other.data(), nCount, cosines.data(), sines.data());
    expectSame("RotateByTable");
    kPlainKernels.RotateByProduct(input.data(), plain.data(), nCount, cosines.data(), sines.data(), 0.6f, -0.8f);
    kernels.RotateByProduct(input.data(), other.data(), nCount, cosines.data(), sines.data(), 0.6f, -0.8f);
    expectSame("RotateByProduct");
    for (const std::size_t nStride : {5u, 8u}) {
      for (const std::size_t nTaps : {8u, 24u, 48u}) {
        kPlainKernels.FirSinglePhase(input.data(), nStride, rows.data(), nTaps, nCount, plain.data());
        kernels.FirSinglePhase(input.data(), nStride, rows.data(), nTaps, nCount, other.data());
        expectSame("FirSinglePhase");
      }
    }
    kPlainKernels.FirPhases(input.data(), dots.data(), nCount, rows.data(), kTaps, plain.data());
    kernels.FirPhases(input.data(), dots.data(), nCount, rows.data(), kTaps, other.data());
    expectSame("FirPhases");
    kPlainKernels.FirCubic(input.data(), dots.data(), nCount, rows.data(), kTaps, plain.data());
    kernels.FirCubic(input.data(), dots.data(), nCount, rows.data(), kTaps, other.data());
    expectSame("FirCubic");
  }
}

TEST(Kernels, AllSetsGiveTheSameBits) {
  if (__builtin_cpu_supports("avx2")) ExpectSameBitsAsPlain(kAvx2Kernels);
  if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512dq")) ExpectSameBitsAsPlain(kAvx512Kernels);
}
#endif

}  // namespace
}  // namespace vantrel
