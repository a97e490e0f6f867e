#include "engine/offered_bandwidths.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace carvello {
namespace {

TEST(OfferedBandwidths, GoDownFromTheRecordingsOwnByHalvesAndThenBySteps) {
  const std::vector<std::uint32_t> offered = OfferedBandwidths(5'000'000);
  const std::vector<std::uint32_t> first(offered.begin(), offered.begin() + 5);
  EXPECT_EQ(first, (std::vector<std::uint32_t>{5'000'000, 2'500'000, 1'250'000, 1'000'000, 975'000}));
  EXPECT_EQ(offered.back(), 10u);
  EXPECT_TRUE(std::is_sorted(offered.rbegin(), offered.rend()));
  EXPECT_TRUE(OfferedBandwidths(9).empty());
}

TEST(OfferedBandwidths, TheOneForAWidthIsTheSmallestThatHoldsIt) {
  EXPECT_EQ(OfferedBandwidthFor(0.0, 2'000'000), 10u);
  EXPECT_EQ(OfferedBandwidthFor(10'000.0, 2'000'000), 10'000u);
  EXPECT_EQ(OfferedBandwidthFor(10'000.5, 2'000'000), 11'000u);
  EXPECT_EQ(OfferedBandwidthFor(1'000'001.0, 2'000'000), 2'000'000u);
  EXPECT_EQ(OfferedBandwidthFor(180'001.0, 192'000), 190'000u);
}

TEST(OfferedBandwidths, WhereNoneHoldsTheWidthItIsTheWidest) {
  EXPECT_EQ(OfferedBandwidthFor(191'000.0, 192'000), 190'000u);
  EXPECT_EQ(OfferedBandwidthFor(3e6, 2'000'000), 2'000'000u);
  EXPECT_EQ(OfferedBandwidthFor(1.0, 9), 9u);
}

TEST(OfferedBandwidths, ASignalGetsATenthMoreThanItIsWide) {
  EXPECT_EQ(BandwidthForSignal(9'000.0, 2'000'000), 10'000u);
  EXPECT_EQ(BandwidthForSignal(10'000.0, 2'000'000), 11'000u);
  EXPECT_EQ(BandwidthForSignal(200'000.0, 2'000'000), 220'000u);
}

}  // namespace
}  // namespace carvello
