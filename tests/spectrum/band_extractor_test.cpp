#include "spectrum/band_extractor.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <cstdint>
#include <cstring>
#include <numbers>
#include <numeric>
#include <random>
#include <vector>

#include "spectrum/frame_samples.h"

namespace carvello {
namespace {

using Samples = std::vector<SComplex>;
using Exact = std::complex<double>;

Exact Value(const SComplex& sample) {
  return {sample.re, sample.im};
}

Exact Turn(double circles) {
  return std::polar(1.0, 2.0 * std::numbers::pi * (circles - std::floor(circles)));
}

SBandWish Wish(std::uint32_t inputRate, std::int64_t shift, std::uint32_t outputRate, std::int64_t start) {
  return {inputRate, shift, inputRate, outputRate, start};
}

// The middle samples first .. first + count - 1 of the entry, of all samples of the input and zeros around them.
Samples Extract(const SBandPlan& plan, const Samples& input, std::int64_t inputFirst, std::int64_t first,
                std::int64_t count) {
  const CBandExtractor extractor(plan);
  const CBlockTransform transform(kFrameSize);
  const SSampleStretch stretch{inputFirst, static_cast<std::int64_t>(input.size()), input.data()};
  Samples frame(kFrameSize), spectrum(kFrameSize), work(transform.WorkSize() + extractor.WorkSize());
  const std::int64_t nPerFrame = plan.SamplesPerFrame();
  Samples all;
  const std::int64_t nFirstFrame = FloorDivide(plan.llFirst + first, nPerFrame);
  const std::int64_t nSkip = plan.llFirst + first - nFirstFrame * nPerFrame;
  for (std::int64_t nFrame = nFirstFrame; static_cast<std::int64_t>(all.size()) < nSkip + count; ++nFrame) {
    GatherFrame(nFrame, inputFirst, inputFirst + stretch.nCount, {&stretch, 1}, frame.data());
    transform.Forward(frame.data(), spectrum.data(), work.data());
    Samples samples(static_cast<std::size_t>(nPerFrame));
    extractor.Extract(spectrum.data(), samples.data(), work.data());
    all.insert(all.end(), samples.begin(), samples.end());
  }
  return {all.begin() + nSkip, all.begin() + nSkip + count};
}

// The first filter's impulse response, in double and by the C library's functions.
class CReferenceFilter {
 public:
  explicit CReferenceFilter(const SBandPlan& plan)
      : m_fHalf(static_cast<double>(plan.nHalfTaps)),
        m_fCutoff(static_cast<double>(plan.nPass + plan.nStop) / 2.0 / static_cast<double>(kFrameSize * kPartsPerBin)) {
  }

  double operator()(double time) const {
    if (std::abs(time) >= m_fHalf) return 0.0;
    const double x = 2.0 * std::numbers::pi * m_fCutoff * time;
    const double fRelative = time / m_fHalf;
    const double fBeta = 0.1102 * (kFirstFilterAttenuation - 8.7);
    return 2.0 * m_fCutoff * (std::abs(x) < 1e-9 ? 1.0 : std::sin(x) / x) *
           std::cyl_bessel_i(0.0, fBeta * std::sqrt(1.0 - fRelative * fRelative)) / std::cyl_bessel_i(0.0, fBeta);
  }

 private:
  double m_fHalf;
  double m_fCutoff;
};

struct SCase {
  std::uint32_t nInputRate;
  std::int64_t llShift;
  std::uint32_t nOutputRate;
  std::int64_t llStart;
};

const SCase kCases[] = {{10'000'000, 1'234'567, 10'000, 20'000},
                        {10'000'000, -4'999'999, 7'919, 12'288},
                        {10'000'000, 5'000'000, 25'000, 1},
                        {2'400'000, 600'001, 192'000, 30'011},
                        {2'000'000, -999'983, 799'999, 8'191},
                        {61'440'003, -20'000'017, 104'729, 100'003},
                        {122'880'000, 60'000'001, 10, 1'000'000},
                        {192'000, 0, 86'000, 5},
                        {10'007, 13, 10, 77'777}};

// Each case's own middle samples by the definition: what the filter makes of noise at their exact times. In and out of
// frames, and where the input begins.
TEST(BandExtractor, MiddleSamplesAreTheFilteredInputAtTheirExactTimes) {
  for (const SCase& c : kCases) {
    const auto plan = PlanBand(Wish(c.nInputRate, c.llShift, c.nOutputRate, c.llStart));
    ASSERT_TRUE(plan);
    const std::int64_t nInputFirst = plan->llFirst * plan->nDecimation - 1'000;
    Samples input(60'000);
    std::mt19937 random(c.nOutputRate);
    for (SComplex& sample : input) {
      sample.re = static_cast<float>(static_cast<int>(random() % 65536) - 32768);
      sample.im = static_cast<float>(static_cast<int>(random() % 65536) - 32768);
    }
    const std::int64_t nCount = 40'000 / plan->nDecimation;
    const Samples got = Extract(*plan, input, nInputFirst, 0, nCount);
    const CReferenceFilter filter(*plan);
    const Exact constant = Turn(static_cast<double>(plan->nTurn) / static_cast<double>(plan->nCircle));
    double fSquares = 0.0;
    double fErrors = 0.0;
    double fWorst = 0.0;
    for (int i = 0; i < 24; ++i) {
      const std::int64_t nSample = i < 8 ? i : static_cast<std::int64_t>(random()) % nCount;
      const double fResidue = static_cast<double>(plan->nResidue) / static_cast<double>(plan->nPhases);
      // From the input's first sample on.
      const double fTime = static_cast<double>((plan->llFirst + nSample) * plan->nDecimation - nInputFirst) + fResidue;
      Exact wanted;
      const auto nFrom = static_cast<std::int64_t>(fTime) - kFrameMargin;
      for (std::int64_t n = std::max<std::int64_t>(nFrom, 0); n < nFrom + kFrameOverlap; ++n) {
        const double fApart = fTime - static_cast<double>(n);
        wanted += Value(input[static_cast<std::size_t>(n)]) * filter(fApart) *
                  Turn(static_cast<double>(plan->nCentreBin) * fApart / static_cast<double>(kFrameSize));
      }
      wanted *= constant;
      const double fError = std::abs(Value(got[static_cast<std::size_t>(nSample)]) - wanted);
      fSquares += std::norm(wanted);
      fErrors += fError * fError;
      fWorst = std::max(fWorst, fError);
    }
    // Noise of full scale everywhere: what rounding leaves of it is far below it in the narrowest bands only.
    EXPECT_LT(fWorst, 32768.0 * 1e-6) << c.nInputRate << " to " << c.nOutputRate;
    EXPECT_LT(10.0 * std::log10(fErrors / fSquares), -110.0) << c.nInputRate << " to " << c.nOutputRate;
  }
}

// The oscillator that follows turns by the middle sample's number alone; with it a tone at the band's centre stands
// still at the phase that it has at the entry's start, wherever on the grid that is.
TEST(BandExtractor, ACarrierStandsStillAtItsPhaseAtTheStart) {
  for (const SCase& c : kCases) {
    for (const std::int64_t llStart : {c.llStart, 1'000'000'000'000 + c.llStart, 999'999'999'989 + 7 * c.llStart}) {
      const auto plan = PlanBand(Wish(c.nInputRate, c.llShift, c.nOutputRate, llStart));
      ASSERT_TRUE(plan);
      const std::int64_t nInputFirst = plan->llFirst * plan->nDecimation - 10'000;
      Samples input;
      const auto phase = [&](std::int64_t n) {
        // Whole numbers, from the entry's start on.
        const __int128 nTurns = static_cast<__int128>(c.llShift) * (n - llStart) % c.nInputRate;
        return Turn(static_cast<double>(static_cast<std::int64_t>(nTurns)) / c.nInputRate);
      };
      for (std::int64_t n = 0; n < 40'000; ++n) {
        const Exact value = phase(nInputFirst + n);
        input.push_back({static_cast<float>(value.real()), static_cast<float>(value.imag())});
      }
      const std::int64_t nCount = 20'000 / plan->nDecimation;
      const Samples got = Extract(*plan, input, nInputFirst, 0, nCount);
      for (std::int64_t i = 0; i < nCount; ++i) {
        const auto nTurns = static_cast<std::int64_t>(static_cast<std::uint64_t>(plan->nMiddleShift) *
                                                      static_cast<std::uint64_t>(i) % c.nInputRate);
        const Exact value = Value(got[static_cast<std::size_t>(i)]) * Turn(-static_cast<double>(nTurns) / c.nInputRate);
        ASSERT_LT(std::abs(value - 1.0), 2e-6) << c.nInputRate << " to " << c.nOutputRate << " from " << llStart;
      }
    }
  }
}

// A tone anywhere in the input's band, of frames that stand one hop apart: what comes out is the tone at the filter's
// gain, and no frame shows in it.
TEST(BandExtractor, WhatFoldsOntoTheChannelIsGoneAndTheChannelIsFlat) {
  for (const SCase& c : kCases) {
    const auto plan = PlanBand(Wish(c.nInputRate, c.llShift, c.nOutputRate, c.llStart));
    ASSERT_TRUE(plan);
    constexpr double kBins = static_cast<double>(kFrameSize);
    const double fCentre = static_cast<double>(c.llShift) / c.nInputRate * kBins;
    const double fEdge = 0.55 * c.nOutputRate / c.nInputRate * kBins;
    const double fMiddleRate = static_cast<double>(plan->PointCount());
    std::vector<double> offsets = {0.0, 0.5 * fEdge, -fEdge, fEdge};
    // What folds: around every multiple of the middle rate, both edges of it.
    for (int nZone = 1; nZone < plan->nDecimation; nZone = 2 * nZone + 1) {
      for (const double fBeside : {-fEdge, 0.0, 0.3 * fEdge, fEdge}) offsets.push_back(nZone * fMiddleRate + fBeside);
    }
    for (const double fOffset : offsets) {
      const double frequency = (fCentre + fOffset) / kBins;
      const std::int64_t nInputFirst = plan->llFirst * plan->nDecimation - 5'000;
      Samples input;
      for (int n = 0; n < 50'000; ++n) {
        const Exact value = Turn(frequency * n);
        input.push_back({static_cast<float>(value.real()), static_cast<float>(value.imag())});
      }
      const std::int64_t nCount = 40'000 / plan->nDecimation;
      const Samples got = Extract(*plan, input, nInputFirst, 0, nCount);
      const double fGain = fOffset > fEdge ? 0.0 : 1.0;
      const Exact first = Value(got[0]);
      EXPECT_NEAR(std::abs(first), fGain, 2e-6) << c.nInputRate << " to " << c.nOutputRate << " at " << fOffset;
      for (std::int64_t i = 0; i < nCount; ++i) {
        const Exact wanted = fGain * first * Turn(frequency * static_cast<double>(i * plan->nDecimation));
        ASSERT_LT(std::abs(Value(got[static_cast<std::size_t>(i)]) - wanted), 2e-6)
            << c.nInputRate << " to " << c.nOutputRate << " at " << fOffset << " sample " << i;
      }
    }
  }
}

TEST(BandExtractor, AllInstructionSetsGiveTheSameBits) {
  for (const SCase& c : kCases) {
    const auto plan = PlanBand(Wish(c.nInputRate, c.llShift, c.nOutputRate, c.llStart));
    ASSERT_TRUE(plan);
    std::mt19937 random(c.nOutputRate);
    Samples spectrum(kFrameSize);
    for (SComplex& bin : spectrum) {
      bin = {static_cast<float>(random()) - 2e9f, static_cast<float>(random()) - 2e9f};
    }
    const auto extracted = [&](EInstructionSet set) {
      const CBandExtractor extractor(*plan, set);
      Samples samples(static_cast<std::size_t>(plan->SamplesPerFrame())), work(extractor.WorkSize());
      extractor.Extract(spectrum.data(), samples.data(), work.data());
      return samples;
    };
    const Samples plain = extracted(EInstructionSet::Plain);
    for (const EInstructionSet set : InstructionSets()) {
      const Samples other = extracted(set);
      EXPECT_EQ(std::memcmp(other.data(), plain.data(), plain.size() * sizeof(SComplex)), 0) << NameOf(set);
    }
  }
}

}  // namespace
}  // namespace carvello
