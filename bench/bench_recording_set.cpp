// How long the analysis of a folder with 2,000 recordings takes, with files never seen and with files seen before.
// The counter "walks" tells how many files were read in one round.
#include <benchmark/benchmark.h>

#include <chrono>
#include <filesystem>
#include <string>

#include "input/foreign_recordings.h"
#include "input/lookup_cache.h"
#include "input/recording_set.h"

namespace carvello::test {
namespace {

constexpr std::uint32_t kFiles = 2000;
constexpr std::uint32_t kSecondsPerFile = 10;

class CFolder : public InputTest {
 public:
  CFolder() {
    for (std::uint32_t i = 0; i < kFiles; ++i) {
      const SAuxi auxi{.start = At(i * kSecondsPerFile), .stop = At((i + 1) * kSecondsPerFile)};
      Write(Name(i), SecondsOfWave(kSecondsPerFile, Chunk("auxi", AuxiBody(164, auxi))));
    }
  }

  std::string Member(std::uint32_t number) const { return Path(Name(number)); }

  // Makes every file look changed, so that what is known of it no longer holds.
  void Touch() {
    m_tModified += std::chrono::hours(1);
    for (const auto& entry : std::filesystem::directory_iterator(m_folder)) {
      std::filesystem::last_write_time(entry.path(), m_tModified);
    }
  }

 private:
  static std::string Name(std::uint32_t number) { return "file " + std::to_string(number) + ".wav"; }
  static SDate At(std::uint32_t second) {
    return {.nHour = second / 3600, .nMinute = second / 60 % 60, .nSecond = second % 60};
  }
  void TestBody() override {}

  std::filesystem::file_time_type m_tModified = std::filesystem::file_time_type::clock::now();
};

void Analyse(benchmark::State& state, const std::string& file) {
  CRecordingSet set;
  CMyStringArray log;
  if (!AnalyseRecordingSet(file, set, log) || set.files.size() != kFiles) state.SkipWithError("not the whole set");
}

void FolderNeverSeen(benchmark::State& state) {
  CFolder folder;
  const std::uint64_t before = LookupCacheStatistics().nWalks;
  for (auto _ : state) {
    state.PauseTiming();
    folder.Touch();
    state.ResumeTiming();
    Analyse(state, folder.Member(1234));
  }
  state.counters["walks"] = benchmark::Counter(static_cast<double>(LookupCacheStatistics().nWalks - before),
                                               benchmark::Counter::kAvgIterations);
}
BENCHMARK(FolderNeverSeen)->Unit(benchmark::kMillisecond)->UseRealTime();

void AnotherMemberOfAKnownFolder(benchmark::State& state) {
  const CFolder folder;
  Analyse(state, folder.Member(0));
  const std::uint64_t before = LookupCacheStatistics().nWalks;
  std::uint32_t member = 0;
  for (auto _ : state) Analyse(state, folder.Member(++member % kFiles));
  state.counters["walks"] = benchmark::Counter(static_cast<double>(LookupCacheStatistics().nWalks - before),
                                               benchmark::Counter::kAvgIterations);
}
BENCHMARK(AnotherMemberOfAKnownFolder)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
}  // namespace carvello::test
