// What each entry point promises beside the response.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <map>
#include <optional>
#include <random>
#include <thread>

#include "library_instance.h"

namespace carvello::test {
namespace {

// A writer's work: shift in place, then decimate.
Samples ShiftAndRun(const CLibraryInstance& instance, std::int64_t shift, std::uint32_t inputRate, Samples input,
                    const BlockSizes& sizes) {
  Samples output(input.size());
  std::size_t nOutput = 0;
  for (std::size_t nDone = 0; nDone < input.size();) {
    const std::size_t nBlock = std::min(sizes(), input.size() - nDone);
    const auto nCount = static_cast<std::uint32_t>(nBlock);
    SComplex* pBlock = input.data() + nDone;
    std::uint32_t nGiven = 0;
    Dsp().NCO(instance.Handle(), shift, inputRate, pBlock, nCount, pBlock);
    Dsp().DownconvertRun(instance.Handle(), pBlock, nCount, output.data() + nOutput, &nGiven);
    nDone += nBlock;
    nOutput += nGiven;
  }
  output.resize(nOutput);
  return output;
}

TEST(BlockSizes, ChangeNoBit) {
  // Chains of several stages get more than the largest block; the costlier resamplers alone get less.
  const Samples longInput = Noise(2097152 + 54321);
  const Samples mediumInput(longInput.begin(), longInput.begin() + 200000);
  const Samples shortInput(longInput.begin(), longInput.begin() + 50000);
  const struct {
    std::uint32_t nIn, nOut;
    const Samples& input;
  } cases[] = {{2000000, 10000, longInput},   {2400000, 192000, longInput}, {2000000, 7919, longInput},
               {192000, 190000, mediumInput}, {8000, 7999, mediumInput},    {1000000, 1000000, longInput}};
  for (const auto& rates : cases) {
    const auto run = [&rates](const Samples& input, const BlockSizes& sizes) {
      return ShiftAndRun(CLibraryInstance(rates.nIn, rates.nOut), -123457, rates.nIn, input, sizes);
    };
    const Samples whole = run(rates.input, BlocksOf(2097152));
    EXPECT_TRUE(SameBits(run(rates.input, BlocksOf(4096)), whole)) << rates.nIn << " to " << rates.nOut;
    std::mt19937 random(rates.nOut);
    EXPECT_TRUE(SameBits(run(rates.input, [&random] { return random() % 70000 + 1; }), whole))
        << rates.nIn << " to " << rates.nOut;

    const Samples inSevens = run(shortInput, BlocksOf(7));
    EXPECT_TRUE(SameBits(run(shortInput, BlocksOf(1)), inSevens)) << rates.nIn << " to " << rates.nOut;
    ASSERT_LE(inSevens.size(), whole.size());
    EXPECT_TRUE(
        SameBits(inSevens, Samples(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(inSevens.size()))))
        << rates.nIn << " to " << rates.nOut;
  }
}

TEST(Run, EqualRatesPassSamplesUnchanged) {
  const CLibraryInstance instance(250000, 250000);
  const Samples input = Noise(100000);
  EXPECT_TRUE(SameBits(instance.Run(input), input));
}

TEST(Run, GivesNoMoreSamplesThanItTakesInAnyCall) {
  for (const auto& [nIn, nOut] :
       std::map<std::uint32_t, std::uint32_t>{{8000, 7999}, {192000, 190000}, {48000, 32001}, {1000000, 7919}}) {
    const CLibraryInstance instance(nIn, nOut);
    instance.Run(Noise(20000), BlocksOf(1));  // the check is in Feed
    std::mt19937 random(nOut);
    instance.Run(Noise(50000), [&random] { return random() % 5 + 1; });
  }
}

TEST(Run, RatesThatMakeNoSenseGiveNoOutput) {
  for (const auto& [nIn, nOut] : std::map<std::uint32_t, std::uint32_t>{{0, 0}, {48000, 0}, {1, 2}, {10000, 2000000}}) {
    const CLibraryInstance instance(nIn, nOut);
    EXPECT_TRUE(instance.Run(Noise(1000)).empty()) << nIn << " to " << nOut;
    EXPECT_EQ(Dsp().DownconvertRateIn(instance.Handle()), 0u);
    EXPECT_EQ(Dsp().DownconvertRateOut(instance.Handle()), 0u);
  }
  EXPECT_TRUE(CLibraryInstance().Run(Noise(1000)).empty()) << "never initialised";
}

TEST(Run, NullPointersGiveNoOutput) {
  const CLibraryInstance instance(48000, 48000);
  Samples samples(10);
  std::uint32_t nGiven = 5;
  Dsp().DownconvertRun(instance.Handle(), nullptr, 10, samples.data(), &nGiven);
  EXPECT_EQ(nGiven, 0u);
  nGiven = 5;
  Dsp().DownconvertRun(instance.Handle(), samples.data(), 10, nullptr, &nGiven);
  EXPECT_EQ(nGiven, 0u);
  Dsp().DownconvertRun(instance.Handle(), samples.data(), 10, samples.data(), nullptr);
  Dsp().NCO(instance.Handle(), 1, 48000, nullptr, 10, samples.data());
  Dsp().NCO(instance.Handle(), 1, 48000, samples.data(), 10, nullptr);
}

TEST(Run, InitStartsTheFiltersAnew) {
  const CLibraryInstance instance(192000, 48000);
  const Samples input = Noise(50000);
  const Samples first = instance.Run(input);
  Dsp().DownconvertInit(instance.Handle(), 192000, 48000);
  EXPECT_TRUE(SameBits(instance.Run(input), first));
}

TEST(WholeNumberMode, DecimatesByTheNearestWholeNumber) {
  struct {
    std::uint32_t nIn, nOut, nExpected;
  } const cases[] = {{2000000, 1000001, 1000000},  {2400000, 1000001, 1200000}, {2500000, 1000001, 1250000},
                     {10000000, 1000001, 1000000}, {8000000, 3000000, 2666667}, {1200000, 1000001, 1200000},
                     {2400000, 1600000, 1200000},  // one and a half
                     {48000, 48000, 48000}};
  for (const auto& rates : cases) {
    const CLibraryInstance instance(rates.nIn, rates.nOut);
    EXPECT_EQ(Dsp().DownconvertRateOut(instance.Handle()), rates.nOut) << "before";
    Dsp().DisableFractionalResampler(instance.Handle());
    EXPECT_EQ(Dsp().DownconvertRateOut(instance.Handle()), rates.nExpected) << rates.nIn << " to " << rates.nOut;
    EXPECT_EQ(Dsp().DownconvertRateIn(instance.Handle()), rates.nIn);
  }
}

TEST(Handles, AreNeverZeroAndNeverTheSame) {
  const CLibraryInstance a;
  const CLibraryInstance b;
  EXPECT_NE(a.Handle(), 0u);
  EXPECT_NE(b.Handle(), 0u);
  EXPECT_NE(a.Handle(), b.Handle());
  EXPECT_NE(Dsp().AllocInstance(nullptr), 0u) << "a name is not needed";
  Dsp().Closedown();
}

void ExpectHandleDoesNothing(std::uint32_t handle) {
  Samples samples = Noise(100);
  const Samples before = samples;
  Samples output(100, {7.0f, 7.0f});
  const Samples outputBefore = output;
  std::uint32_t nGiven = 3;
  char text[10] = "unchanged";
  Dsp().DownconvertInit(handle, 48000, 24000);
  Dsp().DisableFractionalResampler(handle);
  Dsp().FirstStageExclude(handle, 1);
  Dsp().FirstStageOnly(handle, 1);
  Dsp().NCO(handle, 100, 48000, samples.data(), 100, samples.data());
  Dsp().DownconvertRun(handle, samples.data(), 100, output.data(), &nGiven);
  Dsp().FractionalInit(handle, 48000, 24000);
  Dsp().FractionalProcess(handle, samples.data(), 100, output.data(), &nGiven);
  Dsp().PartionedFFTInit(handle, 48000, 24000);
  Dsp().PartionedFFTProcess(handle, samples.data(), 100, output.data(), &nGiven);
  EXPECT_EQ(Dsp().DownconvertRateIn(handle), 0u);
  EXPECT_EQ(Dsp().DownconvertRateOut(handle), 0u);
  EXPECT_EQ(Dsp().Diagnostics(handle, text, sizeof text), 0u);
  Dsp().ReleaseInstance(handle);
  EXPECT_TRUE(SameBits(samples, before));
  EXPECT_TRUE(SameBits(output, outputBefore));
  EXPECT_EQ(nGiven, 3u);
  EXPECT_STREQ(text, "unchanged");
}

TEST(Handles, OneThatWasNeverAllocatedDoesNothing) {
  ExpectHandleDoesNothing(0);
  ExpectHandleDoesNothing(0xFFFFFFFFu);
}

TEST(Handles, OneThatWasReleasedDoesNothing) {
  const std::uint32_t hInstance = Dsp().AllocInstance(L"Carvello");
  Dsp().ReleaseInstance(hInstance);
  ExpectHandleDoesNothing(hInstance);
}

TEST(Handles, ClosedownReleasesEveryInstance) {
  const CLibraryInstance a(48000, 24000);
  const CLibraryInstance b(48000, 24000);
  Dsp().Closedown();
  ExpectHandleDoesNothing(a.Handle());
  ExpectHandleDoesNothing(b.Handle());
}

TEST(Diagnostics, NamesTheRatesAndEveryStage) {
  const std::string strText = CLibraryInstance(2000000, 10000).Text();
  EXPECT_EQ(strText.find("Carvello\nVantrel 1.0.0\n2000000.000 to 10000.000 samples/s"), 0u) << strText;
  EXPECT_NE(strText.find("\nstage 1: 2000000.000 to "), std::string::npos) << strText;
  EXPECT_NE(strText.find(" to 10000.000, "), std::string::npos) << strText;
  EXPECT_NE(CLibraryInstance().Text().find("no rates set"), std::string::npos);
  EXPECT_NE(CLibraryInstance(8000, 8000).Text().find("samples pass unchanged"), std::string::npos);
}

// As the engine asks for it. What a stretch of input still owes is what its last outputs wait for.
TEST(Diagnostics, TellsHowManyOutputSamplesWaitForInput) {
  for (const auto& [nIn, nOut] : std::map<std::uint32_t, std::uint32_t>{
           {2000000, 10000}, {192000, 190000}, {250000, 250}, {48000, 44100}, {8000, 7}, {96000, 96000}}) {
    const CLibraryInstance instance(nIn, nOut);
    const std::optional<std::uint32_t> delay = DownconvertDelay(Dsp(), instance.Handle());
    ASSERT_TRUE(delay.has_value());
    EXPECT_LE(*delay, 64u);
    const double fRatio = static_cast<double>(nIn) / nOut;
    const Samples input = Noise(static_cast<std::size_t>(200.5 * fRatio));
    const auto nDue = static_cast<std::size_t>(std::ceil(static_cast<double>(input.size()) / fRatio));
    const std::size_t nGiven = instance.Run(input).size();
    EXPECT_LE(nDue - nGiven, *delay) << nIn << " to " << nOut;
    EXPECT_GE(nDue - nGiven + 2, *delay) << nIn << " to " << nOut;
  }
  EXPECT_FALSE(DownconvertDelay(Dsp(), CLibraryInstance().Handle()).has_value()) << "no rates";
  EXPECT_FALSE(DownconvertDelay(Dsp(), 0).has_value()) << "no instance";
}

TEST(Diagnostics, TellsWhichKernelsRun) {
  std::string strBest = "plain";
#ifdef CARVELLO_X86_64
  const char* pszWanted = std::getenv("CARVELLO_ISA");
  const std::string strWanted = pszWanted != nullptr ? pszWanted : "";
  const bool bAvx2 = __builtin_cpu_supports("avx2") != 0;
  if (bAvx2 && strWanted != "plain") strBest = "avx2";
  const bool bAvx512 = bAvx2 && __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512dq");
  if (bAvx512 && strWanted != "plain" && strWanted != "avx2") strBest = "avx512";
#endif
  const std::string strText = CLibraryInstance(2000000, 10000).Text();
  EXPECT_NE(strText.find(", " + strBest + " kernels\n"), std::string::npos) << strText;
}

TEST(Diagnostics, WritesWhatFits) {
  const CLibraryInstance instance(2000000, 10000);
  char text[8] = "#######";
  EXPECT_EQ(Dsp().Diagnostics(instance.Handle(), text, 6), instance.Text().size());
  EXPECT_STREQ(text, "Carve");
  EXPECT_EQ(text[6], '#');
}

TEST(FirstStage, OnlyTheFirstThenAllButTheFirstIsTheWholeChain) {
  const Samples input = Noise(300000);
  const Samples whole = CLibraryInstance(2400000, 50000).Run(input);

  const CLibraryInstance first(2400000, 50000);
  Dsp().FirstStageOnly(first.Handle(), 1);
  const CLibraryInstance rest(2400000, 50000);
  Dsp().FirstStageExclude(rest.Handle(), 1);
  const std::uint32_t nMiddleRate = Dsp().DownconvertRateOut(first.Handle());
  EXPECT_EQ(nMiddleRate, Dsp().DownconvertRateIn(rest.Handle()));
  EXPECT_LT(nMiddleRate, 2400000u);
  EXPECT_GT(nMiddleRate, 50000u);
  EXPECT_EQ(Dsp().DownconvertRateIn(first.Handle()), 2400000u);
  EXPECT_EQ(Dsp().DownconvertRateOut(rest.Handle()), 50000u);
  // But for the first outputs: alone, the first stage keeps to itself what it rings before its input begins.
  const Samples joined = rest.Run(first.Run(input));
  EXPECT_TRUE(SameBits({joined.begin() + kSettled, joined.end()}, {whole.begin() + kSettled, whole.end()}));

  Dsp().FirstStageOnly(rest.Handle(), 1);
  EXPECT_TRUE(SameBits(rest.Run(input), input)) << "both together leave no stage";
  Dsp().FirstStageOnly(rest.Handle(), 0);
  Dsp().FirstStageExclude(rest.Handle(), 0);
  EXPECT_TRUE(SameBits(rest.Run(input), whole));
}

TEST(Advanced, KeepsTheModeNumber) {
  Dsp().Advanced(3);
  EXPECT_EQ(Dsp().IsAdvanced(), 3u);
  Dsp().Advanced(0);
  EXPECT_EQ(Dsp().IsAdvanced(), 0u);
}

TEST(Fractional, ResamplesLikeTheLastStage) {
  const CLibraryInstance instance;
  for (const auto& [nIn, nOut] : std::map<std::uint32_t, std::uint32_t>{{48000, 44100}, {96000, 7919}, {9600, 600}}) {
    const double fRatio = static_cast<double>(nIn) / nOut;
    Dsp().FractionalInit(instance.Handle(), nIn, nOut);
    const auto nInput = static_cast<std::size_t>(300.0 * fRatio);
    const Samples output = instance.Feed(Dsp().FractionalProcess, Tone(0.31 / fRatio, nInput, 1.0), BlocksOf(100));
    const Samples expected = Tone(0.31, output.size());
    ASSERT_GT(output.size(), 236u);
    for (std::size_t m = kSettled; m < output.size(); ++m) {
      ASSERT_LT(std::abs(Value(output[m]) - Value(expected[m])), 0.00115) << m;
    }
    Dsp().FractionalInit(instance.Handle(), nIn, nOut);
    const Samples alias = instance.Feed(Dsp().FractionalProcess, Tone(-0.56 / fRatio, nInput, 1.0));
    // -0.56 folds to 0.44. With a ratio near 1 the tone is above the input's half rate, and is another one there.
    if (0.56 / fRatio > 0.5) continue;
    for (std::size_t m = kSettled; m < alias.size(); ++m) ASSERT_LT(Decibel(std::abs(Value(alias[m]))), -110.0);
  }
  for (const std::uint32_t nOut : {1u, 1000u}) {
    Dsp().FractionalInit(instance.Handle(), 16 * nOut + 1, nOut);
    EXPECT_TRUE(instance.Feed(Dsp().FractionalProcess, Noise(1000)).empty()) << "a ratio above 16";
  }
}

TEST(Fractional, BlockSizesChangeNoBit) {
  const CLibraryInstance instance;
  const Samples input = Noise(20000);
  for (const std::uint32_t nOut : {44100u, 7919u}) {
    Dsp().FractionalInit(instance.Handle(), 48000, nOut);
    const Samples whole = instance.Feed(Dsp().FractionalProcess, input);
    for (const std::size_t nSize : {1u, 7u, 1500u}) {
      Dsp().FractionalInit(instance.Handle(), 48000, nOut);
      EXPECT_TRUE(SameBits(instance.Feed(Dsp().FractionalProcess, input, BlocksOf(nSize)), whole)) << nSize;
    }
  }
}

// The output of a part of the library that begins anew, for noise with or without values that are no numbers in it.
Samples AfterHostileInput(CLibraryInstance::Entry entry, void (*init)(std::uint32_t, std::uint32_t, std::uint32_t),
                          bool hostile) {
  const CLibraryInstance instance;
  init(instance.Handle(), 48000, 12500);
  Samples input = Noise(20000);
  if (hostile) {
    input[3000].re = std::numeric_limits<float>::quiet_NaN();
    input[3001].im = std::numeric_limits<float>::infinity();
  }
  return instance.Feed(entry, input);
}

TEST(Fractional, NotANumberLeavesNoTraceAfterTheFiltersLength) {
  const Samples clean = AfterHostileInput(Dsp().FractionalProcess, Dsp().FractionalInit, false);
  const Samples output = AfterHostileInput(Dsp().FractionalProcess, Dsp().FractionalInit, true);
  const auto nGone = static_cast<std::ptrdiff_t>(3001.0 * 12500.0 / 48000.0) + 64;
  ASSERT_GT(std::ssize(output), nGone + 1000);
  EXPECT_TRUE(std::isnan(output[static_cast<std::size_t>(nGone - 64)].re));
  EXPECT_TRUE(SameBits(Samples(output.begin() + nGone, output.end()), Samples(clean.begin() + nGone, clean.end())));
}

TEST(PartionedFft, NotANumberLeavesNoTraceAfterTheFiltersLengthAndABlock) {
  const Samples clean = AfterHostileInput(Dsp().PartionedFFTProcess, Dsp().PartionedFFTInit, false);
  const Samples output = AfterHostileInput(Dsp().PartionedFFTProcess, Dsp().PartionedFFTInit, true);
  const std::ptrdiff_t nGone = 3001 + 64 * 48 / 12 + 2 * 1024;  // a block and the one that overlaps it
  ASSERT_GT(std::ssize(output), nGone + 1000);
  EXPECT_TRUE(std::isnan(output[3000].re));
  EXPECT_TRUE(SameBits(Samples(output.begin() + nGone, output.end()), Samples(clean.begin() + nGone, clean.end())));
}

TEST(PartionedFft, FiltersAtTheInputsRateWithoutDelay) {
  const CLibraryInstance instance;
  for (const std::uint32_t nOut : {48000u, 40000u, 12500u, 1000u, 200u}) {
    const double fOut = nOut / 48000.0;  // in cycles per sample
    const auto nDelay = static_cast<std::size_t>(44.0 / fOut) + 1024;
    const std::size_t nInput = 3 * nDelay;
    for (const double fPart : {0.0, -0.2, 0.45}) {
      Dsp().PartionedFFTInit(instance.Handle(), 48000, nOut);
      const Samples input = Tone(fPart * fOut, nInput);
      const Samples output = instance.Feed(Dsp().PartionedFFTProcess, input, BlocksOf(1000));
      ASSERT_LE(output.size(), nInput);
      ASSERT_GE(output.size(), nInput - nDelay);
      for (std::size_t n = nDelay; n < output.size(); ++n) {
        ASSERT_LT(std::abs(Value(output[n]) - Value(input[n])), 0.00115) << nOut << " " << fPart << " " << n;
      }
    }
    for (const double fPart : {0.55, -0.7, 3.0}) {
      if (std::abs(fPart * fOut) > 0.5) continue;  // no such tone
      Dsp().PartionedFFTInit(instance.Handle(), 48000, nOut);
      const Samples output = instance.Feed(Dsp().PartionedFFTProcess, Tone(fPart * fOut, nInput));
      for (std::size_t n = nDelay; n < output.size(); ++n) {
        ASSERT_LT(Decibel(std::abs(Value(output[n]))), -110.0) << nOut << " " << fPart << " " << n;
      }
    }
  }
  Dsp().PartionedFFTInit(instance.Handle(), 256001, 1000);
  EXPECT_TRUE(instance.Feed(Dsp().PartionedFFTProcess, Noise(50000)).empty()) << "a ratio above 256";
}

TEST(PartionedFft, BlockSizesChangeNeitherBitsNorCounts) {
  const CLibraryInstance instance;
  const Samples input = Noise(20000);
  Dsp().PartionedFFTInit(instance.Handle(), 48000, 3000);
  const Samples whole = instance.Feed(Dsp().PartionedFFTProcess, input);
  for (const std::size_t nSize : {1u, 7u, 1024u, 1500u}) {
    Dsp().PartionedFFTInit(instance.Handle(), 48000, 3000);
    EXPECT_TRUE(SameBits(instance.Feed(Dsp().PartionedFFTProcess, input, BlocksOf(nSize)), whole)) << nSize;
  }
}

TEST(Threads, WorkOnTheirOwnInstancesAtTheSameTime) {
  const Samples input = Noise(200000);
  const std::uint32_t outputRates[] = {12500, 25000, 192000, 12500};
  const auto work = [&input](std::uint32_t outputRate) {
    Samples output;
    for (int i = 0; i < 3; ++i) {  // instances come and go while others work
      output = ShiftAndRun(CLibraryInstance(2000000, outputRate), 98765, 2000000, input, BlocksOf(10007));
    }
    return output;
  };
  std::vector<Samples> results(std::size(outputRates));
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < results.size(); ++i) {
    threads.emplace_back([&, i] { results[i] = work(outputRates[i]); });
  }
  for (std::thread& thread : threads) thread.join();
  for (std::size_t i = 0; i < results.size(); ++i) {
    EXPECT_FALSE(results[i].empty());
    EXPECT_TRUE(SameBits(results[i], work(outputRates[i]))) << outputRates[i];
  }
}

}  // namespace
}  // namespace carvello::test
