// Output that begins within a signal is that of a run from its first sample, bit for bit.
#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "library_instance.h"

namespace carvello::test {
namespace {

constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();

struct SRates {
  std::uint32_t nInput;
  std::uint32_t nOutput;
  bool bWholeNumber = false;
};

std::ostream& operator<<(std::ostream& stream, const SRates& rates) {
  return stream << rates.nInput << " to " << rates.nOutput << (rates.bWholeNumber ? ", whole number" : "");
}

// One stage and many; few phases, many of them (cubics), and one; the least and the largest ratios.
constexpr SRates kRates[] = {
    {2'400'000, 44'100},
    {2'400'000, 48'000},
    {2'400'000, 12'345},
    {1'999'993, 7'919},
    {10'000'000, 2'500},
    {1'000'000, 999'999},
    {2'400'000, 1'500'000, true},
    {20'000'000, 1'300'000, true},
    {1'000'000, 700'000},
    {4'294'967'295u, 10'007'003},
    {48'000, 48'000},
    {3, 2},
};

class Resume : public testing::TestWithParam<SRates> {
 protected:
  static constexpr std::int64_t kShift = -123'457;

  Samples Shifted(const CLibraryInstance& instance, const Samples& input, const BlockSizes& sizes) const {
    Samples shifted(input.size());
    for (std::size_t nDone = 0; nDone < input.size();) {
      const auto nBlock = static_cast<std::uint32_t>(std::min(sizes(), input.size() - nDone));
      Dsp().NCO(instance.Handle(), kShift, GetParam().nInput, input.data() + nDone, nBlock, shifted.data() + nDone);
      nDone += nBlock;
    }
    return shifted;
  }

  Samples ShiftedAndRun(const CLibraryInstance& instance, const Samples& input, const BlockSizes& sizes) const {
    return instance.Run(Shifted(instance, input, sizes), sizes);
  }

  static Samples From(const Samples& samples, std::int64_t first) { return {samples.begin() + first, samples.end()}; }

  CLibraryInstance m_instance{GetParam().nInput, GetParam().nOutput, GetParam().bWholeNumber};
};

INSTANTIATE_TEST_SUITE_P(Rates, Resume, testing::ValuesIn(kRates));

TEST_P(Resume, OutputFromAnySampleOnIsThatOfTheWholeRun) {
  const Samples input = Noise(600'000);
  const Samples whole = ShiftedAndRun(m_instance, input, BlocksOf(1 << 16));
  const auto nWhole = static_cast<std::int64_t>(whole.size());
  ASSERT_GT(nWhole, 90);
  std::mt19937 random(1);
  const auto anySize = [&] { return 1 + random() % 30'000; };
  std::vector<std::int64_t> firsts = {nWhole - 1, 0, 1, 2, 45, 46, 47, nWhole / 2};
  for (int i = 0; i < 12; ++i) firsts.push_back(static_cast<std::int64_t>(random() % whole.size()));
  // One instance for all: what an earlier run left in it is forgotten, wherever it ended.
  for (const std::int64_t nFirst : firsts) {
    const std::int64_t nInput = Dsp().DownconvertResume(m_instance.Handle(), nFirst);
    ASSERT_GE(nInput, 0) << nFirst;
    ASSERT_LT(nInput, 600'000) << nFirst;
    EXPECT_TRUE(SameBits(ShiftedAndRun(m_instance, From(input, nInput), anySize), From(whole, nFirst))) << nFirst;
  }
}

// So no input is asked for in vain, and the comparison above sees a step of one sample.
TEST_P(Resume, InputThatBeginsASampleLateGivesOtherOutput) {
  const Samples input = Noise(600'000);
  const Samples whole = ShiftedAndRun(m_instance, input, BlocksOf(1 << 16));
  const auto nFirst = static_cast<std::int64_t>(whole.size() / 2);
  const std::int64_t nInput = Dsp().DownconvertResume(m_instance.Handle(), nFirst);
  Samples late = ShiftedAndRun(m_instance, From(input, nInput + 1), BlocksOf(1 << 16));
  const Samples expected = From(whole, nFirst);
  late.resize(expected.size());
  EXPECT_FALSE(SameBits(late, expected));
}

// Where nobody could run from the first sample: by the same phases as near the beginning.
TEST_P(Resume, NumbersFarBehindTheBeginningAreExact) {
  const SRates given = GetParam();
  const std::int64_t nPhases = given.bWholeNumber ? 1 : given.nOutput;
  const std::int64_t nStep = given.bWholeNumber ? (given.nInput + given.nOutput / 2) / given.nOutput : given.nInput;
  // By as much as all stages before the last one decimate, or they would take other samples.
  const std::vector<double> rates = StageRates(m_instance);
  const std::int64_t nDecimation = rates.size() < 2 ? 1 : std::llround(given.nInput / rates[rates.size() - 2]);
  const std::int64_t nTimes = 1'000'000'000'000'000 / nStep / nDecimation * nDecimation;
  const Samples input = Noise(200'000);
  const std::int64_t nNear = 1'000 + 100'000 * nPhases / nStep;
  const std::int64_t nInput = Dsp().DownconvertResume(m_instance.Handle(), nNear);
  ASSERT_GT(nInput, 0);
  const Samples expected = m_instance.Run(input);
  EXPECT_EQ(Dsp().DownconvertResume(m_instance.Handle(), nNear + nTimes * nPhases), nInput + nTimes * nStep);
  EXPECT_TRUE(SameBits(m_instance.Run(input), expected));
}

TEST_P(Resume, NumbersOfNoSignalAreRefusedAndChangeNothing) {
  const Samples input = Noise(100'000);
  const Samples expected = ShiftedAndRun(m_instance, input, BlocksOf(1'000));
  ASSERT_EQ(Dsp().DownconvertResume(m_instance.Handle(), 0), 0);
  for (const std::int64_t nFirst : {std::int64_t{-1}, -kMost - 1, kMost}) {
    EXPECT_EQ(Dsp().DownconvertResume(m_instance.Handle(), nFirst), -1) << nFirst;
  }
  EXPECT_TRUE(SameBits(ShiftedAndRun(m_instance, input, BlocksOf(1'000)), expected));
}

TEST(ResumeOfNothing, InstancesThatGiveNoSamplesTellMinusOne) {
  const CLibraryInstance unset;
  EXPECT_EQ(Dsp().DownconvertResume(unset.Handle(), 0), -1);
  const CLibraryInstance upwards(48'000, 48'001);
  EXPECT_EQ(Dsp().DownconvertResume(upwards.Handle(), 0), -1);
  EXPECT_EQ(Dsp().DownconvertResume(0, 0), -1);
}

TEST(ResumeOfStages, TheFirstStageAndTheRestBeginAnywhereToo) {
  const CLibraryInstance first(10'000'000, 2'500);
  Dsp().FirstStageOnly(first.Handle(), 1);
  const CLibraryInstance rest(10'000'000, 2'500);
  Dsp().FirstStageExclude(rest.Handle(), 1);
  for (const CLibraryInstance* pInstance : {&first, &rest}) {
    const Samples input = Noise(400'000);
    const Samples whole = pInstance->Run(input);
    const auto nFirst = static_cast<std::int64_t>(whole.size() / 3);
    const std::int64_t nInput = Dsp().DownconvertResume(pInstance->Handle(), nFirst);
    ASSERT_GT(nInput, 0);
    const Samples output = pInstance->Run({input.begin() + nInput, input.end()});
    EXPECT_TRUE(SameBits(output, {whole.begin() + nFirst, whole.end()}));
  }
}

}  // namespace
}  // namespace carvello::test
