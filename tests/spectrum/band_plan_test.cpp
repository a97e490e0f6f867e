#include "spectrum/band_plan.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <numeric>
#include <random>

namespace carvello {
namespace {

TEST(BandPlan, TakesTheLargestDecimationThatTheFilterFits) {
  const auto decimation = [](std::uint32_t inputRate, std::uint32_t outputRate) {
    const auto plan = PlanBand({inputRate, 0, inputRate, outputRate, 0});
    return plan ? plan->nDecimation : 0;
  };
  EXPECT_EQ(decimation(10'000'000, 10), 256);
  EXPECT_EQ(decimation(10'000'000, 10'000), 256);
  EXPECT_EQ(decimation(10'000'000, 100'000), 64);
  EXPECT_EQ(decimation(10'000'000, 1'000'000), 8);
  EXPECT_EQ(decimation(10'000'000, 4'000'000), 2);
  EXPECT_EQ(decimation(10'000'000, 4'500'000), 2);
  // Less is left than the filter's transition.
  EXPECT_EQ(decimation(10'000'000, 4'600'000), 0);
  EXPECT_EQ(decimation(10'000'000, 10'000'000), 0);
  EXPECT_EQ(decimation(48'000, 1), 256);
}

TEST(BandPlan, ThereIsNoneForRatesThatMakeNoSense) {
  EXPECT_FALSE(PlanBand({0, 0, 0, 10, 0}));
  EXPECT_FALSE(PlanBand({48'000, 0, 48'000, 0, 0}));
  EXPECT_FALSE(PlanBand({48'000, 0, 48'000, 96'000, 0}));
}

TEST(BandPlan, AWholeNumberDecimationIsAWishLikeAnother) {
  const auto plan = PlanBand({10'000'000, 0, 7, 1, 0});
  ASSERT_TRUE(plan);
  EXPECT_EQ(plan->nDecimation, 4);
  const SRateRatio ratio = SecondStageRatio(*plan);
  EXPECT_EQ(ratio.nInput, 7u);
  EXPECT_EQ(ratio.nOutput, 4u);
}

// In 128 bits: where middle samples begin, how far before the entry's start, and how they are turned.
TEST(BandPlan, MiddleSamplesBeginWholeOutputSamplesBeforeTheStart) {
  std::mt19937_64 random(17);
  int nPlans = 0;
  for (int i = 0; i < 2'000; ++i) {
    const auto nRate = static_cast<std::uint32_t>(1'000 + random() % 4'000'000'000u);
    const auto nOutput = static_cast<std::uint32_t>(1 + random() % (nRate >> (random() % 20)));
    const auto llShift = static_cast<std::int64_t>(random() % 10'000'000'000) - 5'000'000'000;
    const auto llStart = static_cast<std::int64_t>(random() % 2'000'000'000'000);
    const bool bWhole = random() % 3 == 0;
    const SBandWish wish{nRate, llShift, bWhole ? nRate / nOutput : nRate, bWhole ? 1 : nOutput, llStart};
    const auto plan = PlanBand(wish);
    if (!plan) continue;
    ++nPlans;
    EXPECT_GT(plan->nStop, plan->nPass);
    EXPECT_LE(plan->nStop + plan->nPass, plan->PointCount() * kPartsPerBin);
    EXPECT_LE(plan->nHalfTaps + plan->nDecimation, kFrameMargin);
    EXPECT_LT(plan->nResidue, static_cast<std::uint64_t>(plan->nDecimation) * plan->nPhases);
    EXPECT_LT(plan->nMiddleShift, nRate);

    // In parts of a sample: the start less the lead.
    const __int128 nPhases = plan->nPhases;
    const __int128 nBegin =
        static_cast<__int128>(plan->llFirst) * plan->nDecimation * nPhases + static_cast<__int128>(plan->nResidue);
    const __int128 nLead = static_cast<__int128>(plan->nLead) * plan->nStep;
    EXPECT_TRUE(nBegin == static_cast<__int128>(llStart) * nPhases - nLead) << i;
    EXPECT_TRUE(nLead >= kFrameMargin * nPhases) << i;
    EXPECT_TRUE(nLead < kFrameMargin * nPhases + plan->nStep) << i;

    // The turn at the lead's end: shift * lead * step / (rate * phases), against turn / circle. Between whole samples
    // shifts that are an input rate apart turn differently; the one counts that is within half a rate.
    const __int128 nCircle = static_cast<__int128>(nRate) * nPhases;
    std::int64_t nShift = llShift % nRate;
    if (2 * nShift > nRate) nShift -= nRate;
    if (2 * nShift < -std::int64_t{nRate}) nShift += nRate;
    const __int128 nTurned = static_cast<__int128>(nShift) * (nLead % nCircle) % nCircle;
    const __int128 nTold = static_cast<__int128>(plan->nTurn) * (nCircle / plan->nCircle);
    EXPECT_TRUE(nCircle % plan->nCircle == 0);
    EXPECT_TRUE((nTurned - nTold) % nCircle == 0) << i;

    const SRateRatio ratio = SecondStageRatio(*plan);
    EXPECT_TRUE(static_cast<__int128>(ratio.nInput) * nPhases * plan->nDecimation ==
                static_cast<__int128>(ratio.nOutput) * plan->nStep)
        << i;
    EXPECT_GT(ratio.nInput, ratio.nOutput);
  }
  EXPECT_GT(nPlans, 1'000);
}

TEST(BandPlan, ShiftsAnInputRateApartAreOne) {
  for (const std::int64_t llShift : {-3'700'000, 5'000'000, 4'999'999, 0}) {
    const auto plan = PlanBand({10'000'000, llShift, 10'000'000, 10'000, 12'345});
    const auto same = PlanBand({10'000'000, llShift - 30'000'000, 10'000'000, 10'000, 12'345});
    ASSERT_TRUE(plan && same);
    EXPECT_EQ(plan->nCentreBin, same->nCentreBin);
    EXPECT_EQ(plan->nTurn, same->nTurn);
    EXPECT_EQ(plan->nMiddleShift, same->nMiddleShift);
    EXPECT_LE(std::abs(plan->nCentreBin), kFrameSize / 2);
  }
}

}  // namespace
}  // namespace carvello
