// How long the analysis of a set of 2,000 files takes, with files never seen and with files seen before: of a folder of
// another program's recordings, and of a numbered set with XML metadata. The counter "walks" tells how many files were
// read in one round.
#include <benchmark/benchmark.h>

#include <chrono>
#include <filesystem>
#include <string>

#include "input/foreign_recordings.h"
#include "input/lookup_cache.h"
#include "input/recording_set.h"
#include "support/text.h"

namespace carvello::test {
namespace {

constexpr std::uint32_t kFiles = 2000;
constexpr std::uint32_t kSecondsPerFile = 10;

// A folder with the files of one set.
class CFolder : public InputTest {
 public:
  // Makes every file look changed, so that what is known of it no longer holds.
  void Touch() {
    m_tModified += std::chrono::hours(1);
    for (const auto& entry : std::filesystem::directory_iterator(m_folder)) {
      std::filesystem::last_write_time(entry.path(), m_tModified);
    }
  }

  virtual std::string Name(std::uint32_t number) const = 0;
  std::string Member(std::uint32_t number) const { return Path(Name(number)); }

 private:
  void TestBody() override {}

  std::filesystem::file_time_type m_tModified = std::filesystem::file_time_type::clock::now();
};

class CChainedFolder : public CFolder {
 public:
  CChainedFolder() {
    for (std::uint32_t i = 0; i < kFiles; ++i) {
      const SAuxi auxi{.start = At(i * kSecondsPerFile), .stop = At((i + 1) * kSecondsPerFile)};
      Write(NameOf(i), SecondsOfWave(kSecondsPerFile, Chunk("auxi", AuxiBody(164, auxi))));
    }
  }

  std::string Name(std::uint32_t number) const override { return NameOf(number); }

 private:
  static std::string NameOf(std::uint32_t number) { return "file " + std::to_string(number) + ".wav"; }
  static SDate At(std::uint32_t second) {
    return {.nHour = second / 3600, .nMinute = second / 60 % 60, .nSecond = second % 60};
  }
};

// Members of equal size, of which only the first is ever read, or of sizes that differ from one to the next.
template <bool Equal>
class CNumberedFolder : public CFolder {
 public:
  CNumberedFolder() {
    const std::string metadata =
        XmlChunk("SampleRate=\"1000\" BytesPerSecond=\"4000\" UTCSeconds=\"1\" FirstFile=\"rec 000.wav\"");
    for (std::uint32_t i = 0; i < kFiles; ++i) {
      Write(NameOf(i), SecondsOfWave(kSecondsPerFile + (Equal ? 0 : i % 2), metadata));
    }
  }

  std::string Name(std::uint32_t number) const override { return NameOf(number); }

 private:
  static std::string NameOf(std::uint32_t number) { return Format("rec %03u.wav", number); }
};
using CEqualMembers = CNumberedFolder<true>;
using CUnequalMembers = CNumberedFolder<false>;

void Analyse(benchmark::State& state, const std::string& file) {
  CRecordingSet set;
  CMyStringArray log;
  if (!AnalyseRecordingSet(file, set, log) || set.files.size() != kFiles) state.SkipWithError("not the whole set");
}

void CountWalks(benchmark::State& state, std::uint64_t before) {
  state.counters["walks"] = benchmark::Counter(static_cast<double>(LookupCacheStatistics().nWalks - before),
                                               benchmark::Counter::kAvgIterations);
}

template <class Folder>
void NeverSeen(benchmark::State& state) {
  Folder folder;
  const std::uint64_t before = LookupCacheStatistics().nWalks;
  for (auto _ : state) {
    state.PauseTiming();
    folder.Touch();
    state.ResumeTiming();
    Analyse(state, folder.Member(1234));
  }
  CountWalks(state, before);
}

template <class Folder>
void AnotherMemberOfAKnownSet(benchmark::State& state) {
  const Folder folder;
  Analyse(state, folder.Member(0));
  const std::uint64_t before = LookupCacheStatistics().nWalks;
  std::uint32_t member = 0;
  for (auto _ : state) Analyse(state, folder.Member(++member % kFiles));
  CountWalks(state, before);
}

BENCHMARK(NeverSeen<CChainedFolder>)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(AnotherMemberOfAKnownSet<CChainedFolder>)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(NeverSeen<CEqualMembers>)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(AnotherMemberOfAKnownSet<CEqualMembers>)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(NeverSeen<CUnequalMembers>)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(AnotherMemberOfAKnownSet<CUnequalMembers>)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
}  // namespace carvello::test
