#include "engine/output_rate.h"

#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>
#include <utility>
#include <vector>

#include "dsp/start_dsp.h"

namespace carvello {
namespace {

TEST(OutputRate, RateUpToAMegahertzIsTheOneAskedFor) {
  EXPECT_EQ(TrueOutputRate(2'400'000, 10), 10u);
  EXPECT_EQ(TrueOutputRate(2'400'000, 999'999), 999'999u);
  EXPECT_EQ(TrueOutputRate(2'400'000, 1'000'000), 1'000'000u);
}

TEST(OutputRate, RateAboveAMegahertzIsTheNearestWholeFraction) {
  EXPECT_EQ(TrueOutputRate(2'400'000, 1'500'000), 1'200'000u);
  EXPECT_EQ(TrueOutputRate(2'400'000, 1'700'000), 2'400'000u);
  EXPECT_EQ(TrueOutputRate(2'400'000, 1'200'000), 1'200'000u);
  EXPECT_EQ(TrueOutputRate(2'000'003, 1'000'001), 1'000'002u) << "half of it, rounded";
}

TEST(OutputRate, RateThatTheDownconverterRefusesIsNone) {
  EXPECT_EQ(TrueOutputRate(2'400'000, 0), 0u);
  EXPECT_EQ(TrueOutputRate(2'400'000, 2'400'001), 0u);
  EXPECT_EQ(TrueOutputRate(0, 10), 0u);
  EXPECT_EQ(OutputFramesDue(1000, 2'400'000, 0), 0);
  EXPECT_EQ(OutputFramesDue(1000, 2'400'000, 2'400'001), 0);
}

TEST(OutputRate, FrameIsDueForEveryBegunStepOfTheInput) {
  EXPECT_EQ(OutputFramesDue(0, 2'000'000, 500'000), 0);
  EXPECT_EQ(OutputFramesDue(1, 2'000'000, 500'000), 1);
  EXPECT_EQ(OutputFramesDue(4, 2'000'000, 500'000), 1);
  EXPECT_EQ(OutputFramesDue(5, 2'000'000, 500'000), 2);
  EXPECT_EQ(OutputFramesDue(1000, 2'000'000, 300'000), 150);
  EXPECT_EQ(OutputFramesDue(1001, 2'000'000, 300'000), 151);
  EXPECT_EQ(OutputFramesDue(7, 2'400'000, 1'500'000), 4) << "every second frame";
}

// By the rounded rate of 1,000,002 it would be one more.
TEST(OutputRate, WholeNumberDecimationIsCountedByTheNumberNotByTheRoundedRate) {
  EXPECT_EQ(OutputFramesDue(4'000'006, 2'000'003, 1'000'002), 2'000'003);
}

TEST(OutputRate, FramesDueOfTheLongestInputDoNotOverflow) {
  constexpr std::int64_t kLongest = std::numeric_limits<std::int64_t>::max();
  EXPECT_EQ(OutputFramesDue(kLongest, 1, 1), kLongest);
  EXPECT_EQ(OutputFramesDue(kLongest, 4'000'000'000, 4'000'000'000), kLongest);
  EXPECT_EQ(OutputFramesDue(kLongest, 4'000'000'000, 2'000'000'000), kLongest / 2 + 1);
  EXPECT_EQ(OutputFramesDue(kLongest, 1'000'000, 500'000), kLongest / 2 + 1);
  EXPECT_EQ(OutputFramesDue(-1, 1'000'000, 500'000), 0);
}

// The formulas foretell what the library does; they must never part ways.
class OutputRateOfTheLibrary : public testing::TestWithParam<std::pair<std::uint32_t, std::uint32_t>> {
 protected:
  OutputRateOfTheLibrary() {
    if (!StartDsp(m_dsp)) throw std::runtime_error(MissingLibraryText());
    m_hDsp = m_dsp.AllocInstance(L"Carvello");
    m_dsp.DownconvertInit(m_hDsp, GetParam().first, GetParam().second);
    if (DecimatesByWholeNumber(GetParam().second)) m_dsp.DisableFractionalResampler(m_hDsp);
  }
  ~OutputRateOfTheLibrary() override { m_dsp.ReleaseInstance(m_hDsp); }

  DspBinding m_dsp;
  std::uint32_t m_hDsp = 0;
};

TEST_P(OutputRateOfTheLibrary, IsTheTrueOne) {
  EXPECT_EQ(TrueOutputRate(GetParam().first, GetParam().second), m_dsp.DownconvertRateOut(m_hDsp));
}

TEST_P(OutputRateOfTheLibrary, GivesTheFramesDueWhenSilenceFollowsTheStretch) {
  constexpr std::uint32_t kFrames = 4'096;
  std::vector<SComplex> input(kFrames), output(kFrames);
  const std::int64_t due = OutputFramesDue(kFrames, GetParam().first, GetParam().second);
  std::int64_t given = 0;
  // Sample k comes once the input behind it has come: as many as are due after the stretch, more after the silence.
  for (int i = 0; i < 1000 && given < due; ++i) {
    std::uint32_t count = 0;
    m_dsp.DownconvertRun(m_hDsp, input.data(), kFrames, output.data(), &count);
    if (i == 0) {
      EXPECT_LE(count, due);
    }
    given += count;
  }
  EXPECT_GE(given, due);
}

INSTANTIATE_TEST_SUITE_P(Rates, OutputRateOfTheLibrary,
                         testing::Values(std::pair{2'400'000u, 1'500'000u}, std::pair{2'400'000u, 1'700'000u},
                                         std::pair{2'000'003u, 1'000'001u}, std::pair{2'000'003u, 1'000'000u},
                                         std::pair{8'000'000u, 3'199'999u}, std::pair{2'400'000u, 2'400'000u},
                                         std::pair{192'000u, 10'000u}, std::pair{192'000u, 7'777u},
                                         std::pair{96'000u, 96'000u}, std::pair{96'000u, 96'001u},
                                         std::pair{96'000u, 0u}));

}  // namespace
}  // namespace carvello
