#include "doctor/trial_cut.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "dsp/start_dsp.h"

namespace carvello {
namespace {

using testing::HasSubstr;

constexpr float kLevel = 1'000.0F;

std::vector<SComplex> Carrier(std::size_t frames) {
  return std::vector<SComplex>(frames, SComplex{kLevel, 0.0F});
}

TEST(TrialCut, IsRightWithTheLibraryAndTellsItsSpeed) {
  DspBinding dsp;
  ASSERT_TRUE(StartDsp(dsp));
  for (const unsigned threads : {1U, 3U}) {
    const STrialCut cut = TryCut(dsp, threads);
    EXPECT_EQ(cut.strNotTried, "");
    EXPECT_EQ(cut.strWrong, "");
    EXPECT_EQ(cut.nThreads, threads);
    EXPECT_GT(cut.fFrameRate, 0);
    EXPECT_GT(cut.nFrames, STrialCut::kOutputRate / 2);
  }
}

TEST(TrialCut, TellsALibraryThatLosesSamplesOrShiftsWrongly) {
  DspBinding dsp;
  ASSERT_TRUE(StartDsp(dsp));
  static DspBinding* pDsp = &dsp;

  const auto run = dsp.DownconvertRun;
  static decltype(dsp.DownconvertRun) right = run;
  dsp.DownconvertRun = [](std::uint32_t handle, const SComplex* input, std::uint32_t count, SComplex* output,
                          std::uint32_t* given) {
    right(handle, input, count, output, given);
    *given = 0;
  };
  EXPECT_THAT(TryCut(dsp, 1).strWrong, HasSubstr("0 frames came out where"));
  dsp.DownconvertRun = run;

  static decltype(dsp.NCO) shift = dsp.NCO;
  dsp.NCO = [](std::uint32_t handle, std::int64_t hertz, std::uint32_t rate, const SComplex* source,
               std::uint32_t count, SComplex* output) { shift(handle, hertz + 1, rate, source, count, output); };
  EXPECT_THAT(TryCut(dsp, 1).strWrong, HasSubstr("the carrier that was cut is off by"));
  dsp.NCO = shift;

  dsp.DownconvertRateOut = [](std::uint32_t) { return std::uint32_t{0}; };
  EXPECT_NE(TryCut(*pDsp, 1).strNotTried, "");
}

TEST(CarrierProblem, IsNoneForACarrierAtZeroHertzWithinAThousandth) {
  EXPECT_EQ(CarrierProblem(Carrier(5'000), 5'000, kLevel), "");
  std::vector<SComplex> slightlyOff = Carrier(5'000);
  slightlyOff[2'500].re *= 1.0005F;
  EXPECT_EQ(CarrierProblem(slightlyOff, 5'000, kLevel), "");
}

TEST(CarrierProblem, IsOneOfCountLevelOrOfASampleThatIsNoNumber) {
  EXPECT_THAT(CarrierProblem(Carrier(4'999), 5'000, kLevel), HasSubstr("4999 frames came out where 5000 were due"));
  EXPECT_THAT(CarrierProblem(Carrier(10), 10, kLevel), HasSubstr("too few"));
  EXPECT_THAT(CarrierProblem(Carrier(5'000), 5'000, kLevel * 1.01F), HasSubstr("off by"));
  std::vector<SComplex> broken = Carrier(5'000);
  broken[2'500].im = NAN;
  EXPECT_THAT(CarrierProblem(broken, 5'000, kLevel), HasSubstr("off by inf"));
}

}  // namespace
}  // namespace carvello
