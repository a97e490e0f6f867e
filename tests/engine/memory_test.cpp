// Memory that is exhausted at any moment of a job, once or for good: the job ends, what is called ok holds every
// sample, and whatever is not says why.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <map>
#include <new>
#include <string>
#include <thread>
#include <vector>

#include "engine/engine_fixture.h"
#include "engine/failing_memory.h"
#include "engine/job_control.h"

namespace carvello::test {
namespace {

using testing::SizeIs;

constexpr std::int64_t kFrames = 3 * kBlockFrames / 2;
constexpr std::int64_t kNever = std::numeric_limits<std::int64_t>::max();
constexpr std::chrono::minutes kHang{3};  // hundreds of times what a job takes

class CYes final : public IJobQuestions {
 public:
  EAnswer Ask(EJobQuestion question, const SMessageBox& /*box*/) override {
    if (question == EJobQuestion::CannotStart) bTold = true;
    return EAnswer::Yes;
  }
  bool bTold = false;
};

class CDeafTarget final : public IMessageTarget {
 public:
  void PostTexts(std::uint32_t /*message*/, std::string /*worker*/, std::string /*text*/) override {}
  void PostNumbers(std::uint32_t /*message*/, std::uint64_t /*total*/, std::uint64_t /*done*/) override {}
};

// By either road. By the spectrum, the entry that is as wide as the input stays with the library.
class JobWithoutMemoryTest : public EngineTest, public testing::WithParamInterface<EEngineSetting> {
 protected:
  JobWithoutMemoryTest() {
    EXPECT_EQ(BindDsp(m_library), 1u) << DspLibraryPath();
    recording = DescribeSet({WriteNumbered("0.wav", 0, kFrames), WriteNumbered("1.wav", kFrames, kFrames)});
    list.SetRecording(recording, {});
    std::filesystem::create_directory(m_folder / "out");
    for (const std::uint32_t bandwidth : {100'000U, 48'000U, 1'000'000U}) {
      SEntryFields fields;
      fields.nFrequency = 7'000'000;
      fields.nBandwidth = bandwidth;
      fields.nFileSizeMB = bandwidth == 48'000 ? 100 : 0;
      fields.b32Bit = bandwidth == 100'000;
      fields.strOutputFolder = Path("out");
      EXPECT_FALSE(list.AddEntry(fields).has_value());
    }
    list.Rebuild();
  }

  // Runs the job, with allocations failing as set. False when it could not even begin.
  bool Run(std::int64_t at, bool forGood) {
    std::filesystem::remove_all(m_folder / "out");
    std::filesystem::create_directory(m_folder / "out");
    m_results.clear();
    CYes answers;
    CJobControl jobs(m_library, m_deaf, answers, 1);
    FailAllocations(at, forGood);
    bool started = false;
    try {
      started = jobs.Start(list, recording, {.engine = GetParam()}) == EStartResult::Started;
    } catch (const std::bad_alloc&) {
      answers.bTold = true;  // the owner of the job hears of it
    }
    if (started) {
      const auto begun = std::chrono::steady_clock::now();
      while (!jobs.OnIdle()) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        if (std::chrono::steady_clock::now() - begun > kHang) {
          std::fprintf(stderr, "the job hangs with allocation %lld failing\n", static_cast<long long>(at));
          std::abort();
        }
      }
    }
    m_nAllocations = FailAllocations(kNever, false);
    EXPECT_TRUE(started || answers.bTold);
    if (started) m_results = jobs.Results();
    return started;
  }

  void ExpectTruth(std::int64_t at) {
    SCOPED_TRACE("allocation " + std::to_string(at));
    ASSERT_THAT(m_results, SizeIs(3));
    for (const SOutputResult& result : m_results) {
      EXPECT_EQ(result.strFileName.empty(), false);
      EXPECT_EQ(result.bOk, result.strError.empty()) << result.strError;
      if (!result.bOk) continue;
      ++m_nOk;
      ASSERT_THAT(result.files, SizeIs(1));
      EXPECT_TRUE(ChunkBody(ReadBytes(result.files[0]), "data") == m_whole[result.strFileName]) << result.strFileName;
    }
    // Also the files of those that failed can be read.
    for (const auto& file : std::filesystem::directory_iterator(m_folder / "out")) {
      const auto bytes = ReadBytes(file.path().string());
      if (bytes.size() < 100) continue;  // the header could not be written
      const auto data = ChunkBody(bytes, "data");
      const auto& whole = m_wholeByPath[file.path().string()];
      ASSERT_LE(data.size(), whole.size());
      EXPECT_TRUE(std::equal(data.begin(), data.end(), whole.begin())) << file.path();
    }
  }

  void LearnWhole() {
    ASSERT_TRUE(Run(kNever, false));
    const auto bySpectrum = [](const SOutputResult& result) { return result.engine == EEngine::Spectrum; };
    EXPECT_EQ(std::count_if(m_results.begin(), m_results.end(), bySpectrum),
              GetParam() == EEngineSetting::Spectrum ? 2 : 0);
    for (const SOutputResult& result : m_results) {
      ASSERT_TRUE(result.bOk) << result.strError;
      ASSERT_THAT(result.files, SizeIs(1));
      m_whole[result.strFileName] = ChunkBody(ReadBytes(result.files[0]), "data");
      m_wholeByPath[result.files[0]] = m_whole[result.strFileName];
    }
  }

  DspBinding m_library;
  CDeafTarget m_deaf;
  CRecordingSet recording;
  CEntryList list;
  std::vector<SOutputResult> m_results;
  std::map<std::string, std::vector<std::uint8_t>> m_whole, m_wholeByPath;
  std::int64_t m_nAllocations = 0;
  int m_nOk = 0;
};

// Every so many allocations, so that some hundred places are tried whatever their number; fewer where all is slow.
TEST_P(JobWithoutMemoryTest, OneFailedAllocationNeverPassesForSuccess) {
  LearnWhole();
  const std::int64_t places = m_nAllocations;
  const int wanted = std::getenv("CARVELLO_SLOW") == nullptr ? 150 : 20;
  const std::int64_t step = std::max<std::int64_t>(places / wanted, 1);
  int jobs = 0;
  for (std::int64_t at = 1; at <= places; at += step) {
    if (Run(at, false)) ExpectTruth(at);
    ++jobs;
    if (HasFatalFailure()) return;
  }
  EXPECT_GE(jobs, wanted * 2 / 3);
  EXPECT_GT(m_nOk, jobs) << "what did not hit an entry leaves it complete";
}

// A thread that gets no memory is asked for again for seconds, so these are few.
TEST_P(JobWithoutMemoryTest, NoMemoryFromSomeMomentOnEndsTheJobWithReasons) {
  LearnWhole();
  const std::int64_t places = m_nAllocations;
  for (std::int64_t part = 1; part <= 12; ++part) {
    const std::int64_t at = places * part / 12;
    if (Run(at, true)) ExpectTruth(at);
    if (HasFatalFailure()) return;
  }
}

void (*libraryNco)(std::uint32_t, std::int64_t, std::uint32_t, const SComplex*, std::uint32_t, SComplex*) = nullptr;
std::atomic<std::uint32_t> starvedHandle = 0;

TEST_P(JobWithoutMemoryTest, WriterWithoutMemoryTakesNoBlockAwayFromTheOthers) {
  LearnWhole();
  libraryNco = m_library.NCO;
  starvedHandle = 0;
  // From its first samples on, the first thread that comes here gets no memory for anything.
  m_library.NCO = [](std::uint32_t handle, std::int64_t shift, std::uint32_t rate, const SComplex* source,
                     std::uint32_t count, SComplex* destination) {
    std::uint32_t none = 0;
    starvedHandle.compare_exchange_strong(none, handle);
    FailAllocationsOfThisThread(handle == starvedHandle);
    libraryNco(handle, shift, rate, source, count, destination);
  };
  ASSERT_TRUE(Run(kNever, false));
  ExpectTruth(0);
  EXPECT_EQ(m_nOk, 2) << "the writer without memory has no trailer for its file, the others are whole";
}

INSTANTIATE_TEST_SUITE_P(Roads, JobWithoutMemoryTest,
                         testing::Values(EEngineSetting::Library, EEngineSetting::Spectrum), [](const auto& instance) {
                           return instance.param == EEngineSetting::Library ? "Library" : "Spectrum";
                         });

}  // namespace
}  // namespace carvello::test
