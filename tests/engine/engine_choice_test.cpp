#include "engine/engine_choice.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "engine/engine_costs.h"

namespace carvello::test {
namespace {

using testing::Each;
using testing::HasSubstr;

constexpr std::int64_t kFrames = 200'000'000;

class CEntries {
 public:
  CEntries& Add(int count, std::uint32_t outputRate, std::int64_t start = 0, std::int64_t total = 0,
                std::uint32_t inputRate = 10'000'000) {
    for (int i = 0; i < count; ++i) {
      OutputEntry entry;
      entry.nInputSampleRate = inputRate;
      entry.nOutputSampleRate = outputRate;
      entry.nOutputFrequency = 1'000 * i;
      entry.nStartSample = start;
      entry.nTotalSamples = total;
      m_entries.push_back(entry);
    }
    return *this;
  }

  SEngineChoice Choose(EEngineSetting setting = EEngineSetting::Auto) const {
    std::vector<const OutputEntry*> entries;
    for (const OutputEntry& entry : m_entries) entries.push_back(&entry);
    return ChooseEngines(entries, setting, kFrames);
  }

 private:
  std::vector<OutputEntry> m_entries;
};

int Spectra(const SEngineChoice& choice) {
  return static_cast<int>(std::count(choice.engines.begin(), choice.engines.end(), EEngine::Spectrum));
}

TEST(EngineChoice, OneEntryGoesByTheLibraryAndManyShareTheSpectrum) {
  EXPECT_EQ(Spectra(CEntries().Add(1, 10'000).Choose()), 0);
  EXPECT_EQ(Spectra(CEntries().Add(2, 10'000).Choose()), 0);
  EXPECT_EQ(Spectra(CEntries().Add(8, 10'000).Choose()), 8);
  EXPECT_EQ(Spectra(CEntries().Add(1'000, 10'000).Choose()), 1'000);
  EXPECT_THAT(CEntries().Add(2, 10'000).Choose().strReason, HasSubstr("costs more than it saves"));
  EXPECT_THAT(CEntries().Add(100, 10'000).Choose().strReason,
              testing::MatchesRegex("all entries by the shared spectrum: about .+ % of the library's processor time"));
}

TEST(EngineChoice, WhatIsAskedForIsDoneWhereItCanBe) {
  const CEntries mixed = CEntries().Add(1, 10'000).Add(2, 9'000'000).Add(1, 10'000);
  EXPECT_THAT(mixed.Choose(EEngineSetting::Library).engines, Each(EEngine::Library));
  const SEngineChoice choice = mixed.Choose(EEngineSetting::Spectrum);
  EXPECT_EQ(choice.engines, (std::vector{EEngine::Spectrum, EEngine::Library, EEngine::Library, EEngine::Spectrum}));
  EXPECT_EQ(
      choice.strReason,
      "2 of 4 entries by the shared spectrum, as asked for; the others are too wide a part of the input's band for it");
  EXPECT_EQ(CEntries().Add(1, 10'000).Choose(EEngineSetting::Spectrum).strReason,
            "the entry by the shared spectrum, as asked for");
  EXPECT_EQ(CEntries().Add(3, 10'000).Choose(EEngineSetting::Library).strReason,
            "all entries by the library, as asked for");
  const SEngineChoice wide = CEntries().Add(2, 9'000'000).Choose(EEngineSetting::Spectrum);
  EXPECT_THAT(wide.engines, Each(EEngine::Library));
  EXPECT_THAT(wide.strReason, HasSubstr("too wide"));
}

TEST(EngineChoice, EntriesThatAreCheaperByTheLibraryGoThereBesideOthersThatShare) {
  const SEngineChoice choice = CEntries().Add(50, 10'000).Add(1, 3'000'000).Choose();
  EXPECT_EQ(Spectra(choice), 50);
  EXPECT_EQ(choice.engines.back(), EEngine::Library);
  EXPECT_THAT(choice.strReason, HasSubstr("50 of 51 entries by the shared spectrum: about"));
}

// The transforms of a stretch are worth it for those that share it, not for one that is there alone.
TEST(EngineChoice, WhatEntriesShareIsCountedByTheFramesThatTheyCoverTogether) {
  // A thousand, each at its own time.
  CEntries inTurn;
  for (int i = 0; i < 1'000; ++i) inTurn.Add(1, 10'000, 200'000LL * i, 200'000);
  EXPECT_EQ(Spectra(inTurn.Choose()), 0);
  // Eight at each of ten times, and one for all of it: the eight save enough without it, and it saves more with them.
  CEntries groups;
  for (int i = 0; i < 10; ++i) groups.Add(8, 10'000, 20'000'000LL * i, 15'000'000);
  EXPECT_EQ(Spectra(groups.Choose()), 80);
  CEntries joined = groups;
  joined.Add(1, 10'000);
  EXPECT_EQ(Spectra(joined.Choose()), 81);
  // One that goes on for long after the others ended.
  CEntries longer;
  longer.Add(8, 10'000, 0, 1'000'000).Add(1, 10'000);
  const SEngineChoice choice = longer.Choose();
  EXPECT_EQ(Spectra(choice), 8);
  EXPECT_EQ(choice.engines.back(), EEngine::Library);
  // Two groups, of which one does not pay.
  CEntries two;
  two.Add(8, 10'000, 0, 1'000'000).Add(2, 10'000, 100'000'000, 1'000'000);
  EXPECT_EQ(Spectra(two.Choose()), 8);
}

TEST(EngineChoice, AnEntryWithoutSamplesOrSenseGoesByTheLibrary) {
  EXPECT_EQ(Spectra(CEntries().Add(50, 0).Choose()), 0);
  EXPECT_EQ(Spectra(CEntries().Add(50, 20'000'000).Choose()), 0);
  EXPECT_EQ(CEntries().Choose().engines.size(), 0u);
  EXPECT_EQ(CEntries().Add(9, 10'000, kFrames + 5, 0).Choose().engines.size(), 9u);
}

TEST(EngineCosts, FallWithTheOutputRate) {
  SEntryCosts before = EntryCosts(10'000'000, 1'000'000);
  EXPECT_TRUE(before.bSpectrum);
  for (const std::uint32_t nRate : {500'000u, 250'000u, 100'000u, 50'000u, 10'000u, 1'000u, 10u}) {
    const SEntryCosts costs = EntryCosts(10'000'000, nRate);
    EXPECT_TRUE(costs.bSpectrum);
    EXPECT_LE(costs.fLibrary, before.fLibrary) << nRate;
    EXPECT_LE(costs.fSpectrum, before.fSpectrum) << nRate;
    EXPECT_LT(costs.fSpectrum, costs.fLibrary) << nRate;
    EXPECT_GT(costs.fSpectrum, 0.0);
    before = costs;
  }
  EXPECT_FALSE(EntryCosts(10'000'000, 9'000'000).bSpectrum);
  EXPECT_GT(SharedSpectrumCost(), 0.0);
}

TEST(EngineCosts, AreLargerForRatiosOfManyPhases) {
  EXPECT_GT(EntryCosts(10'000'000, 99'991).fLibrary, EntryCosts(10'000'000, 100'000).fLibrary);
  EXPECT_GT(EntryCosts(10'000'000, 99'991).fSpectrum, EntryCosts(10'000'000, 100'000).fSpectrum);
}

}  // namespace
}  // namespace carvello::test
