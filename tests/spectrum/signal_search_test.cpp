#include "spectrum/signal_search.h"

#include <gtest/gtest.h>

#include <cmath>

namespace carvello {
namespace {

constexpr std::size_t kBins = 2'000;

// A spectrum of lines and bands over noise of power 1, as a window of Hann shows them.
class CSpectrumMaker {
 public:
  CSpectrumMaker() {
    m_search.powers.assign(kBins, 0.0f);
    m_search.dBinWidth = 100.0;
  }
  CSpectrumMaker& Line(double place, double decibels) {
    for (std::size_t k = 0; k < kBins; ++k) {
      const double d = static_cast<double>(k) - place;
      const double fSinc = std::abs(d) < 1e-9 ? 1.0 : std::sin(3.14159265358979 * d) / (3.14159265358979 * d);
      const double fValue = std::abs(std::abs(d) - 1.0) < 1e-9 ? 0.5 : fSinc / (1.0 - d * d);
      m_search.powers[k] += static_cast<float>(std::pow(10.0, decibels / 10.0) * fValue * fValue);
    }
    return *this;
  }
  CSpectrumMaker& Band(std::size_t first, std::size_t last, double decibels) {
    for (std::size_t k = first; k <= last; ++k)
      m_search.powers[k] += static_cast<float>(std::pow(10.0, decibels / 10.0));
    return *this;
  }
  std::vector<SSignalBand> Found(double raster = 0.0) {
    m_search.dRaster = raster;
    m_search.brief.assign(kBins, false);
    m_search.standing.clear();
    for (const float fPower : m_search.powers) {
      m_search.standing.push_back(fPower >= 9.0f ? SSignalSearch::kSure : fPower >= 1.0f ? 1.0f : 0.0f);
    }
    return FindSignalBands(m_search);
  }

 private:
  SSignalSearch m_search;
};

TEST(SignalSearch, ALineIsAFewBinsHoweverStrongItIs) {
  for (const double fLevel : {12.0, 40.0, 90.0}) {
    for (const double fPlace : {500.0, 500.3, 500.5}) {
      const auto found = CSpectrumMaker().Line(fPlace, fLevel).Found();
      ASSERT_EQ(found.size(), 1u) << fLevel << " " << fPlace;
      EXPECT_NEAR(static_cast<double>(found[0].nPeak), fPlace, 0.5);
      EXPECT_LE(found[0].Width(), 6u);
    }
  }
}

TEST(SignalSearch, WhatIsNotSureByAnyBinIsNone) {
  EXPECT_TRUE(CSpectrumMaker().Found().empty());
  EXPECT_TRUE(CSpectrumMaker().Band(100, 200, 8.0).Found().empty());
}

TEST(SignalSearch, TwoLinesThreeBinsApartAreTwo) {
  const auto found = CSpectrumMaker().Line(700.0, 40.0).Line(703.0, 40.0).Found();
  ASSERT_EQ(found.size(), 2u);
  EXPECT_EQ(found[0].nPeak, 700u);
  EXPECT_EQ(found[1].nPeak, 703u);
}

TEST(SignalSearch, AWideBandIsOne) {
  const auto found = CSpectrumMaker().Band(300, 1'700, 15.0).Found();
  ASSERT_EQ(found.size(), 1u);
  EXPECT_EQ(found[0].nFirst, 300u);
  EXPECT_EQ(found[0].nLast, 1'700u);
}

TEST(SignalSearch, ACarrierAndItsTwoSidebandsAreOne) {
  const auto found = CSpectrumMaker().Line(1'000.0, 50.0).Line(990.0, 41.0).Line(1'010.0, 41.0).Found();
  ASSERT_EQ(found.size(), 1u);
  EXPECT_EQ(found[0].nPeak, 1'000u);
  EXPECT_LE(found[0].nFirst, 990u);
  EXPECT_GE(found[0].nLast, 1'010u);
}

TEST(SignalSearch, ASidebandOnOneSideOnlyIsAStationOfItsOwn) {
  EXPECT_EQ(CSpectrumMaker().Line(1'000.0, 50.0).Line(1'010.0, 41.0).Found().size(), 2u);
}

TEST(SignalSearch, StationsOnARasterOfFiveKilohertzStayApart) {
  CSpectrumMaker spectrum;
  for (int i = 0; i < 6; ++i) {
    const double fCarrier = 500.0 + 50.0 * i;  // 5 kHz
    const double fLevel = i % 2 == 0 ? 60.0 : 45.0;
    spectrum.Line(fCarrier, fLevel).Line(fCarrier - 10.0, fLevel - 9.0).Line(fCarrier + 10.0, fLevel - 9.0);
  }
  const auto found = spectrum.Found();
  ASSERT_EQ(found.size(), 6u);
  for (std::size_t i = 0; i < 6; ++i) EXPECT_EQ(found[i].nPeak, 500 + 50 * i);
  EXPECT_EQ(spectrum.Found(5'000.0).size(), 6u);
}

TEST(SignalSearch, LinesInEvenStepsAreAToneOnAModulatedFrequency) {
  CSpectrumMaker spectrum;
  for (int i = 0; i < 30; ++i) {
    if (i % 7 != 3) spectrum.Line(400.0 + 10.0 * i, 30.0 + i % 5);  // some lines of such a spectrum vanish
  }
  const auto found = spectrum.Found();
  ASSERT_EQ(found.size(), 1u);
  EXPECT_LE(found[0].nFirst, 400u);
  EXPECT_GE(found[0].nLast, 690u);
}

TEST(SignalSearch, ALineAtEitherEndOfTheBandIsFound) {
  EXPECT_EQ(CSpectrumMaker().Line(0.0, 40.0).Found().size(), 1u);
  EXPECT_EQ(CSpectrumMaker().Line(kBins - 1.0, 40.0).Found().size(), 1u);
}

// The spectrum of samples goes on at its other end.
TEST(SignalSearch, WhatALineAtOneEndLeavesAtTheOtherIsNone) {
  for (const double fPlace : {kBins - 1.4, kBins - 1.0, kBins - 3.3}) {
    const auto found =
        CSpectrumMaker().Line(fPlace, 60.0).Line(fPlace - static_cast<double>(kBins), 60.0).Line(500.0, 30.0).Found();
    ASSERT_EQ(found.size(), 2u) << fPlace;
    EXPECT_EQ(found[0].nPeak, 500u);
    EXPECT_NEAR(static_cast<double>(found[1].nPeak), fPlace, 0.5);
  }
  const auto low = CSpectrumMaker().Line(0.4, 60.0).Line(kBins + 0.4, 60.0).Found();
  ASSERT_EQ(low.size(), 1u);
  EXPECT_EQ(low[0].nPeak, 0u);
}

TEST(LinePlace, IsWhereTheLineStandsBetweenBins) {
  for (const double fPlace : {-0.5, -0.2, 0.0, 0.1, 0.4, 0.5}) {
    const auto fPower = [&](double bin) {
      const double d = bin - fPlace;
      const double fSinc = std::abs(d) < 1e-9 ? 1.0 : std::sin(3.14159265358979 * d) / (3.14159265358979 * d);
      const double fValue = std::abs(std::abs(d) - 1.0) < 1e-9 ? 0.5 : fSinc / (1.0 - d * d);
      return static_cast<float>(fValue * fValue);
    };
    EXPECT_NEAR(LinePlace(fPower(-1.0), fPower(0.0), fPower(1.0)), fPlace, 1e-3);
  }
}

}  // namespace
}  // namespace carvello
