// The two roads of an entry beside each other, and both beside sums in double precision.
#include "engine/spectrum_converter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstring>
#include <functional>
#include <numbers>
#include <numeric>
#include <random>
#include <vector>

#include "engine/library_converter.h"
#include "engine/output_rate.h"

namespace carvello::test {
namespace {

using Samples = std::vector<SComplex>;
using Exact = std::complex<double>;

constexpr double kFullScale = 32'768.0;

const DspBinding& Dsp() {
  static DspBinding s_binding;
  static const std::uint32_t s_nLoaded = BindDsp(s_binding);
  if (s_nLoaded == 0) throw std::runtime_error("the library is missing: " + DspLibraryPath());
  return s_binding;
}

Exact Value(const SComplex& sample) {
  return {sample.re, sample.im};
}

double Decibel(double amplitude) {
  return 20.0 * std::log10(amplitude);
}

// exp(j 2 pi frequency time / rate), with whole numbers for a phase that is exact anywhere.
Exact Turn(std::int64_t frequency, std::int64_t time, std::int64_t rate) {
  const auto nRest = static_cast<std::int64_t>(static_cast<__int128>(frequency) * time % rate);
  return std::polar(1.0, 2.0 * std::numbers::pi * static_cast<double>(nRest) / static_cast<double>(rate));
}

// A stretch of a recording: the sample at index i is number llFirst + i.
struct SInput {
  std::int64_t llFirst = 0;
  Samples samples;

  std::int64_t End() const { return llFirst + static_cast<std::int64_t>(samples.size()); }
  const SComplex& At(std::int64_t position) const { return samples[static_cast<std::size_t>(position - llFirst)]; }
};

SInput MakeInput(std::int64_t first, std::int64_t count, const std::function<Exact(std::int64_t)>& value) {
  SInput input{first, Samples(static_cast<std::size_t>(count))};
  for (std::int64_t i = 0; i < count; ++i) {
    const Exact sample = value(first + i);
    input.samples[static_cast<std::size_t>(i)] = {static_cast<float>(sample.real()), static_cast<float>(sample.imag())};
  }
  return input;
}

SInput Tone(std::int64_t first, std::int64_t count, std::int64_t frequency, std::uint32_t rate) {
  return MakeInput(first, count, [&](std::int64_t position) { return 32'767.0 * Turn(frequency, position, rate); });
}

SInput Noise(std::int64_t first, std::int64_t count, std::uint64_t seed) {
  std::mt19937_64 random(seed);
  return MakeInput(first, count, [&](std::int64_t) {
    const std::uint64_t nBits = random();
    return Exact(static_cast<std::int16_t>(nBits), static_cast<std::int16_t>(nBits >> 16));
  });
}

struct SCut {
  SConversion conversion;
  std::int64_t llStart;
  std::int64_t llEnd;

  bool IsWhole() const { return DecimatesByWholeNumber(conversion.nOutputRate); }
  // Input samples that make an output sample.
  double Ratio() const {
    const std::uint32_t nWhole = WholeNumberDecimation(conversion.nInputRate, conversion.nOutputRate);
    return IsWhole() ? nWhole : static_cast<double>(conversion.nInputRate) / conversion.nOutputRate;
  }
  std::int64_t Due() const { return OutputFramesDue(llEnd - llStart, conversion.nInputRate, conversion.nOutputRate); }
};

std::ostream& operator<<(std::ostream& stream, const SCut& cut) {
  return stream << cut.conversion.nInputRate << " to " << cut.conversion.nOutputRate << ", shift "
                << cut.conversion.llShift << ", samples " << cut.llStart << " to " << cut.llEnd;
}

using BlockSizes = std::function<std::int32_t()>;
BlockSizes WholeBlocks() {
  return [] { return static_cast<std::int32_t>(kBlockFrames); };
}

// As a job's reader and an entry's writer do it: blocks with what lies before them, parts of them, and silence at the
// end.
class CRoads {
 public:
  explicit CRoads(SInput input) : m_input(std::move(input)) {}

  Samples Convert(EEngine engine, const SCut& cut, const BlockSizes& sizes = WholeBlocks()) {
    const std::unique_ptr<IEntryConverter> converter = MakeConverter(engine, Dsp());
    if (const auto problem = converter->Begin(cut.conversion)) {
      ADD_FAILURE() << *problem;
      return {};
    }
    EXPECT_EQ(converter->RateOut(), TrueOutputRate(cut.conversion.nInputRate, cut.conversion.nOutputRate));
    CSpectrumPool spectra(m_transform);
    Samples output;
    std::int64_t nBefore = 0;
    for (std::int64_t nPosition = m_input.llFirst; nPosition < cut.llEnd;) {
      const auto nCount = static_cast<std::int32_t>(std::min<std::int64_t>(sizes(), m_input.End() - nPosition));
      const SharedBlock samples = Block(nPosition, nCount);
      const std::shared_ptr<CSpectrumBlock> spectrum = spectra.Take(samples, nPosition, nCount);
      const SInputBlock block{samples.get(), nCount, nPosition, false, spectrum.get()};
      const auto nFrom = static_cast<std::int32_t>(std::clamp<std::int64_t>(cut.llStart - nPosition, 0, nCount));
      const auto nTo = static_cast<std::int32_t>(std::clamp<std::int64_t>(cut.llEnd - nPosition, 0, nCount));
      if (nFrom < nTo) {
        const SBlockPart part{block, nFrom, nTo - nFrom, nPosition + nTo == cut.llEnd};
        const auto given = converter->Convert(part, m_work);
        output.insert(output.end(), given.begin(), given.end());
        const std::int64_t nTaken = nPosition + nTo - cut.llStart;
        EXPECT_LE(static_cast<double>(output.size()), std::ceil(static_cast<double>(nTaken) / cut.Ratio())) << cut;
        nBefore = static_cast<std::int64_t>(output.size());
      }
      nPosition += nCount;
    }
    // All but the filters' delay is there before silence follows.
    if (const auto delay = converter->Delay()) {
      EXPECT_LE(cut.Due() - nBefore, std::int64_t{*delay} + 2) << cut;
    }
    for (int i = 0; static_cast<std::int64_t>(output.size()) < cut.Due(); ++i) {
      const auto given = converter->ConvertSilence(m_work);
      output.insert(output.end(), given.begin(), given.end());
      if (i > 100'000'000) {
        ADD_FAILURE() << "no output by silence: " << cut;
        break;
      }
    }
    output.resize(static_cast<std::size_t>(cut.Due()));
    return output;
  }

  // Output sample m by the definition: the entry's samples, shifted with the phase 0 at its start, through the channel
  // filter (docs/dsp.md): a sinc of half the output rate under a Kaiser window of 118 dB and a transition of 0.1.
  Exact Reference(const SCut& cut, std::int64_t m) const {
    const double fHalfLength = (118.0 - 7.95) / 14.36 / 0.1 / 2.0;
    const double fBeta = 0.1102 * (118.0 - 8.7);
    const double fMiddle = static_cast<double>(m) * cut.Ratio();
    const auto nReach = static_cast<std::int64_t>(fHalfLength * cut.Ratio()) + 1;
    const std::int64_t nMiddle = cut.llStart + static_cast<std::int64_t>(fMiddle);
    Exact sum;
    for (std::int64_t n = std::max(cut.llStart, nMiddle - nReach); n < std::min(cut.llEnd, nMiddle + nReach); ++n) {
      const double fTime = (static_cast<double>(n - cut.llStart) - fMiddle) / cut.Ratio();
      const double fRelative = fTime / fHalfLength;
      if (std::abs(fRelative) >= 1.0) continue;
      const double x = std::numbers::pi * fTime;
      const double fFilter = (std::abs(x) < 1e-9 ? 1.0 : std::sin(x) / x) *
                             std::cyl_bessel_i(0.0, fBeta * std::sqrt(1.0 - fRelative * fRelative)) /
                             std::cyl_bessel_i(0.0, fBeta);
      sum += fFilter * Value(m_input.At(n)) * Turn(-cut.conversion.llShift, n - cut.llStart, cut.conversion.nInputRate);
    }
    return sum / cut.Ratio();
  }

 private:
  SharedBlock Block(std::int64_t position, std::int32_t count) const {
    const std::shared_ptr<SComplex[]> place(new SComplex[static_cast<std::size_t>(kHistoryFrames + count)]);
    for (std::int64_t i = 0; i < kHistoryFrames + count; ++i) {
      const std::int64_t nFrom = position - kHistoryFrames + i;
      place[i] = nFrom < m_input.llFirst ? SComplex{} : m_input.At(nFrom);
    }
    return {place, place.get() + kHistoryFrames};
  }

  SInput m_input;
  CBlockTransform m_transform{static_cast<std::size_t>(kFrameSize)};
  CConverterWork m_work;
};

bool SameBits(const Samples& a, const Samples& b) {
  return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(SComplex)) == 0;
}

double LargestDifference(const Samples& a, const Samples& b) {
  double fLargest = 0.0;
  for (std::size_t m = 0; m < a.size(); ++m) fLargest = std::max(fLargest, std::abs(Value(a[m]) - Value(b[m])));
  return fLargest;
}

// As they stand in a file of 16 bits.
int LargestDifferenceOf16Bits(const Samples& a, const Samples& b) {
  const auto bits = [](const Samples& samples) {
    std::vector<std::int16_t> values(2 * samples.size());
    FloatToInt16(&samples[0].re, values.data(), static_cast<std::int32_t>(values.size()), kRoundHalfAway, 0);
    return values;
  };
  const auto valuesA = bits(a);
  const auto valuesB = bits(b);
  int nLargest = 0;
  for (std::size_t i = 0; i < valuesA.size(); ++i) nLargest = std::max(nLargest, std::abs(valuesA[i] - valuesB[i]));
  return nLargest;
}

// A tone of full scale within the channel.
std::int64_t ToneWithin(const SCut& cut, double ofOutputRate) {
  return cut.conversion.llShift + static_cast<std::int64_t>(ofOutputRate * cut.conversion.nInputRate / cut.Ratio());
}

// In dB of full scale; how near a run came to what is asked for.
struct SWorst {
  double fRoads = -200.0;  // between the roads
  double fSums = -200.0;   // between the spectrum's road and the sums
};

void ExpectSameResult(const SCut& cut, std::uint64_t seed, SWorst* worst = nullptr) {
  SCOPED_TRACE("seed of the tone and the noise: " + testing::PrintToString(seed));
  const std::int64_t llFirst = std::max<std::int64_t>(cut.llStart - 40'000, 0);
  const std::int64_t nCount = cut.llEnd + 30'000 - llFirst;
  const double fOffset = std::uniform_real_distribution(-0.44, 0.44)(*std::make_unique<std::mt19937_64>(seed));
  CRoads tone(Tone(llFirst, nCount, ToneWithin(cut, fOffset), cut.conversion.nInputRate));
  const Samples byLibrary = tone.Convert(EEngine::Library, cut);
  const Samples bySpectrum = tone.Convert(EEngine::Spectrum, cut);
  ASSERT_EQ(bySpectrum.size(), byLibrary.size()) << cut;
  const double fRoads = Decibel(LargestDifference(byLibrary, bySpectrum) / 32'767.0);
  EXPECT_LT(fRoads, -110.0) << cut << ", tone at " << fOffset;
  if (worst != nullptr) worst->fRoads = std::max(worst->fRoads, fRoads);
  EXPECT_LE(LargestDifferenceOf16Bits(byLibrary, bySpectrum), 1) << cut << ", tone at " << fOffset;
  // And the sums themselves, at both ends and between.
  std::mt19937_64 random(seed);
  const std::int64_t nDue = cut.Due();
  std::vector<std::int64_t> numbers = {0, 1, nDue / 2, nDue - 1};
  if (cut.Ratio() < 3'000) {
    for (int i = 0; i < 8; ++i)
      numbers.push_back(static_cast<std::int64_t>(random() % static_cast<std::uint64_t>(nDue)));
  }
  for (const std::int64_t m : numbers) {
    if (m >= nDue) continue;
    const Exact exact = tone.Reference(cut, m);
    const double fSums = Decibel(std::abs(Value(bySpectrum[static_cast<std::size_t>(m)]) - exact) / 32'767.0);
    EXPECT_LT(fSums, -110.0) << cut << ", tone at " << fOffset << ", output " << m;
    if (worst != nullptr) worst->fSums = std::max(worst->fSums, fSums);
  }

  // All frequencies at once: everything that folds is there too.
  CRoads noise(Noise(llFirst, nCount, seed));
  EXPECT_LE(LargestDifferenceOf16Bits(noise.Convert(EEngine::Library, cut), noise.Convert(EEngine::Spectrum, cut)), 1)
      << cut;
}

SCut Cut(std::uint32_t inputRate, std::uint32_t outputRate, std::int64_t shift, std::int64_t start, double outputs) {
  SCut cut{{inputRate, outputRate, shift}, start, 0};
  cut.llEnd = start + std::max<std::int64_t>(static_cast<std::int64_t>(outputs * cut.Ratio()), 1);
  return cut;
}

TEST(SpectrumConverter, GivesTheSamplesOfTheLibraryAndOfTheDefinition) {
  const SCut cuts[] = {
      Cut(10'000'000, 10'000, 1'234'567, 0, 200),
      Cut(10'000'000, 10'000, -4'999'000, 262'144, 150),
      Cut(10'000'000, 7'919, 5'003'000, 262'143, 150),    // beyond the band's edge
      Cut(10'000'000, 100'000, 12'345'678, 12'288, 300),  // shifted by more than the input's rate
      Cut(2'400'000, 192'000, 600'001, 6'144, 4'000),
      Cut(10'000'000, 1'500'000, -777'777, 3, 9'000),  // by 7
      Cut(10'000'000, 1'000'001, 0, 1'000'000, 5'000),
      Cut(61'440'003, 104'729, -20'000'017, 77, 500),
      Cut(122'880'000, 12'500, 33'333'333, 500'001, 90),
      Cut(999'983, 449'951, -1, 10'239, 20'000),  // nearly as wide as a middle rate lets it be
      Cut(250'000, 10, -100'000, 40'000, 20),
      Cut(10'007, 13, 4'999, 12'289, 300),
      Cut(44'100, 8'000, 11'025, 14'336, 3'000),
  };
  std::uint64_t seed = 1;
  for (const SCut& cut : cuts) ExpectSameResult(cut, seed++);
}

TEST(SpectrumConverter, GivesTheSamplesOfTheLibraryForAnyEntry) {
  const std::uint64_t nSeed = std::random_device()();
  SCOPED_TRACE("seed of the entries: " + std::to_string(nSeed));
  std::mt19937_64 random(nSeed);
  SWorst worst;
  for (int i = 0; i < 20;) {
    const auto between = [&](double low, double high) {
      return std::exp(std::uniform_real_distribution(std::log(low), std::log(high))(random));
    };
    const auto nRate = static_cast<std::uint32_t>(between(8e3, 2.5e8));
    const auto nOutput = static_cast<std::uint32_t>(nRate / between(2.2, 3'000.0));
    const auto llShift = static_cast<std::int64_t>(std::uniform_real_distribution(-0.8, 0.8)(random) * nRate);
    const auto llStart = static_cast<std::int64_t>(random() % (i % 2 == 0 ? 600'000u : 2'000'000'000'000u));
    const SCut cut =
        Cut(nRate, nOutput, llShift, llStart, between(0.5, std::min(400'000.0 * nOutput / nRate, 4e4) + 1));
    if (nOutput == 0 || !CSpectrumConverter::CanConvert(cut.conversion)) continue;
    ExpectSameResult(cut, nSeed + static_cast<std::uint64_t>(i), &worst);
    ++i;
  }
  std::printf("seed %llu: the roads differ by %.1f dB, from the sums by %.1f dB\n",
              static_cast<unsigned long long>(nSeed), worst.fRoads, worst.fSums);
}

TEST(SpectrumConverter, PhasesAreExactFarFromTheRecordingsStart) {
  for (const std::int64_t llStart : {999'999'999'989, 1'000'000'000'000, 4'123'456'789'012}) {
    ExpectSameResult(Cut(10'000'000, 10'000, -3'141'593, llStart, 100), 5);
    ExpectSameResult(Cut(61'440'000, 1'200'000, 20'000'003, llStart, 2'000), 6);
    ExpectSameResult(Cut(2'000'003, 7'919, 999'999, llStart, 300), 7);
  }
}

TEST(SpectrumConverter, EntriesOfAFewSamplesAreThoseOfTheLibrary) {
  for (const std::int64_t llStart : {0, 1, 2'047, 2'048, 12'287, 14'336, 262'143}) {
    for (const std::int64_t nLength : {1, 2, 100, 2'048, 12'288, 16'384, 16'385}) {
      for (const std::uint32_t nOutput : {10'000u, 300'000u, 4'000'000u}) {
        SCut cut = Cut(10'000'000, nOutput, 1'111'111, llStart, 1.0);
        cut.llEnd = llStart + nLength;
        CRoads roads(Tone(0, cut.llEnd + 20'000, ToneWithin(cut, 0.2), 10'000'000));
        const Samples byLibrary = roads.Convert(EEngine::Library, cut);
        const Samples bySpectrum = roads.Convert(EEngine::Spectrum, cut);
        ASSERT_EQ(bySpectrum.size(), byLibrary.size()) << cut;
        EXPECT_LT(Decibel(LargestDifference(byLibrary, bySpectrum) / 32'767.0), -110.0) << cut;
      }
    }
  }
}

TEST(SpectrumConverter, HowTheInputIsCutIntoBlocksChangesNoBit) {
  const std::uint64_t nSeed = std::random_device()();
  SCOPED_TRACE("seed of the blocks: " + std::to_string(nSeed));
  std::mt19937_64 random(nSeed);
  CRoads roads(Noise(0, 700'000, 3));
  for (const SCut& cut :
       {SCut{{10'000'000, 25'000, 1'234'567}, 100'001, 650'000}, SCut{{10'000'000, 4'000'000, -7}, 5, 700'000},
        SCut{{9'000'000, 3'000'000, 0}, 0, 300'000}, SCut{{8'000'000, 50'000, 3'999'999}, 262'144, 262'144 + 12'288}}) {
    const auto bestCase = roads.Convert(EEngine::Spectrum, cut);
    for (const std::int32_t nMost : {262'144, 30'000, 12'288, 5'000}) {
      const BlockSizes sizes = [&] { return 1 + static_cast<std::int32_t>(random() % static_cast<unsigned>(nMost)); };
      EXPECT_TRUE(SameBits(roads.Convert(EEngine::Spectrum, cut, sizes), bestCase)) << cut << " by " << nMost;
    }
  }
}

// Whatever else is cut from the recording, and wherever reading began, as long as that is before the entry.
TEST(SpectrumConverter, WhatLiesOutsideAnEntrysSpanChangesNoBit) {
  const SCut cut{{10'000'000, 25'000, 1'234'567}, 300'001, 500'002};
  SInput other = Noise(0, 700'000, 3);
  const Samples all = CRoads(other).Convert(EEngine::Spectrum, cut);
  const SInput later{290'000, Samples(other.samples.begin() + 290'000, other.samples.end())};
  EXPECT_TRUE(SameBits(CRoads(later).Convert(EEngine::Spectrum, cut), all)) << "read from a later place on";
  for (std::int64_t i = 0; i < 700'000; ++i) {
    if (i < cut.llStart || i >= cut.llEnd) other.samples[static_cast<std::size_t>(i)] = {1e30f, -1e30f};
  }
  EXPECT_TRUE(SameBits(CRoads(other).Convert(EEngine::Spectrum, cut), all)) << "with other samples outside";
}

// Levels of tones: 0.01 dB in the channel, -110 dB for what folds, and an impulse at its time within 0.0001 samples.
TEST(SpectrumConverter, KeepsToThePassbandTheAliasesAndTheTimesOfTheLibrary) {
  for (const SCut& cut : {Cut(10'000'000, 10'000, 1'234'567, 20'001, 170), Cut(2'400'000, 192'000, 300'001, 5, 500),
                          Cut(10'000'000, 1'500'000, -777'777, 12'288, 3'000), Cut(2'000'000, 7'919, -999'000, 99, 200),
                          Cut(1'000'003, 104'729, 7, 0, 400)}) {
    const std::int64_t nLength = cut.llEnd - cut.llStart;
    const std::uint32_t nRate = cut.conversion.nInputRate;
    const auto settled = [&](const Samples& output) { return Samples(output.begin() + 64, output.end() - 64); };
    for (const double fOffset : {-0.45, -0.449, -0.3, 0.0, 0.21, 0.45}) {
      const std::int64_t nTone = ToneWithin(cut, fOffset);
      for (const SComplex& sample :
           settled(CRoads(Tone(cut.llStart, nLength, nTone, nRate)).Convert(EEngine::Spectrum, cut))) {
        ASSERT_NEAR(Decibel(std::abs(Value(sample)) / 32'767.0), 0.0, 0.01) << cut << " at " << fOffset;
      }
    }
    // Around multiples of the output rate and of the middle rate, those included that come from beyond the band's edge.
    const double fMiddleRate =
        cut.Ratio() / static_cast<double>(PlanBand({nRate, 0, nRate, cut.conversion.nOutputRate, 0})->nDecimation);
    for (const double fZone : {1.0, -1.0, 2.0, 7.0, fMiddleRate, -fMiddleRate, 2.0 * fMiddleRate, 3.0 * fMiddleRate}) {
      for (const double fOffset : {-0.44, 0.0, 0.44}) {
        const std::int64_t nTone = ToneWithin(cut, fZone + fOffset);
        // Where it stands in the input's band, in output rates from the channel's centre.
        const double fBeside =
            std::remainder(static_cast<double>(nTone - cut.conversion.llShift), nRate) * cut.Ratio() / nRate;
        if (std::abs(fBeside) < 0.55) continue;
        for (const SComplex& sample :
             settled(CRoads(Tone(cut.llStart, nLength, nTone, nRate)).Convert(EEngine::Spectrum, cut))) {
          ASSERT_LT(Decibel(std::abs(Value(sample)) / 32'767.0), -110.0) << cut << " at " << fZone + fOffset;
        }
      }
    }
    for (const double fPlace : {0.5, 0.5003, 0.61}) {
      const auto nImpulse = cut.llStart + static_cast<std::int64_t>(fPlace * static_cast<double>(nLength));
      const Samples output = CRoads(MakeInput(cut.llStart, nLength, [&](std::int64_t position) {
                               // Turned as the shift will turn it back.
                               return position == nImpulse
                                          ? kFullScale * Turn(cut.conversion.llShift, position - cut.llStart, nRate)
                                          : 0.0;
                             })).Convert(EEngine::Spectrum, cut);
      const double fTime = static_cast<double>(nImpulse - cut.llStart) / cut.Ratio();
      for (const double frequency : {-0.4, -0.1, 0.1, 0.4}) {
        Exact sum;
        for (std::size_t m = 0; m < output.size(); ++m) {
          sum += Value(output[m]) *
                 std::polar(1.0, -2.0 * std::numbers::pi * frequency * (static_cast<double>(m) - fTime));
        }
        EXPECT_LT(std::abs(std::arg(sum) / (2.0 * std::numbers::pi * frequency)), 0.0001) << cut << " at " << frequency;
        EXPECT_NEAR(Decibel(std::abs(sum) * cut.Ratio() / kFullScale), 0.0, 0.01) << cut << " at " << frequency;
      }
    }
  }
}

// Its middle samples begin a second before it, with twenty thousand frames of nothing.
TEST(SpectrumConverter, TheSlowestOutputIsTheSumOfItsStretchToo) {
  SCut cut = Cut(250'000'000, 1, 1'000'000, 5'000'000'000'000, 0.0);
  cut.llEnd = cut.llStart + 100'000;
  CRoads roads(Tone(cut.llStart, 130'000, 1'000'000, 250'000'000));
  const Samples output = roads.Convert(EEngine::Spectrum, cut);
  ASSERT_EQ(output.size(), 1u);
  EXPECT_LT(Decibel(std::abs(Value(output[0]) - roads.Reference(cut, 0)) / 32'767.0), -110.0);
}

TEST(SpectrumConverter, EntriesThatLeaveNoMiddleRateAreRefused) {
  EXPECT_TRUE(CSpectrumConverter::CanConvert({2'000'000, 900'000, 0}));
  EXPECT_FALSE(CSpectrumConverter::CanConvert({2'000'000, 910'000, 0}));
  // Above 1 MHz by whole numbers: by 3, and by 2.
  EXPECT_TRUE(CSpectrumConverter::CanConvert({10'000'000, 4'000'000, 0}));
  EXPECT_FALSE(CSpectrumConverter::CanConvert({10'000'000, 4'100'000, 0}));
  EXPECT_FALSE(CSpectrumConverter::CanConvert({10'000'000, 10'000'000, 0}));
  EXPECT_FALSE(CSpectrumConverter::CanConvert({10'000'000, 20'000'000, 0}));
  EXPECT_FALSE(CSpectrumConverter::CanConvert({10'000'000, 0, 0}));

  CSpectrumConverter converter(Dsp());
  EXPECT_EQ(converter.Begin({10'000'000, 9'000'000, 0}),
            "The shared spectrum does not bring 10000000 to 9000000 samples per second");
}

}  // namespace
}  // namespace carvello::test
