// Limits of the system that a job meets, as POSIX systems set them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/resource.h>

#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "engine/engine_fixture.h"
#include "engine/job_control.h"
#include "engine/library_converter.h"

namespace carvello::test {
namespace {

using testing::HasSubstr;

constexpr std::int64_t kBlock = kBlockFrames;

class CLimit {
 public:
  CLimit(int resource, const rlimit& limit) : m_nResource(resource) {
    getrlimit(resource, &m_old);
    EXPECT_EQ(setrlimit(resource, &limit), 0);
  }
  ~CLimit() { setrlimit(m_nResource, &m_old); }
  CLimit(const CLimit&) = delete;
  CLimit& operator=(const CLimit&) = delete;

 private:
  int m_nResource;
  rlimit m_old{};
};

rlimit Soft(int resource, rlim_t soft) {
  rlimit limit{};
  getrlimit(resource, &limit);
  return {soft, limit.rlim_max};
}

class LimitsTest : public EngineTest {};

std::unique_ptr<IEntryConverter> MakePassThrough(EEngine /*engine*/, const DspBinding& dsp) {
  return std::make_unique<CLibraryConverter>(dsp);
}

// The 32-bit output is the only one that passes the limit. Files of a group are saved side by side.
TEST_F(LimitsTest, OutputOfAGroupThatCannotBeWrittenLeavesTheOthersGoing) {
  constexpr std::int64_t kFrames = 3 * kBlock;
  const auto input = WriteNumbered("in.wav", 0, kFrames);
  std::vector<OutputEntry> entries;
  for (int i = 0; i < 5; ++i) entries.push_back(MakeEntry("out" + std::to_string(i) + ".wav", 0, 0));
  entries[2].nBitsPerSample = 32;
  m_engines.assign(entries.size(), EEngine::Spectrum);
  m_reader.SetConverterMaker(MakePassThrough);
  m_reader.SetGroups(1);
  m_reader.SetSaveInterval(std::chrono::milliseconds(0));
  std::signal(SIGXFSZ, SIG_IGN);
  const CLimit limit(RLIMIT_FSIZE, Soft(RLIMIT_FSIZE, 5 * kBlock * 4));
  RunJob({input}, entries, 4 * kFrames);
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const SOutputResult& result = m_reader.Results()[i];
    EXPECT_EQ(result.bOk, i != 2) << result.strError;
    if (i == 2) continue;
    EXPECT_EQ(ReadNumbered(Path("out" + std::to_string(i) + ".wav")).size(), std::size_t{kFrames});
  }
  EXPECT_THAT(m_reader.Results()[2].strError, HasSubstr("Error writing"));
  EXPECT_GE(m_reader.Results()[2].nFrames, 2 * kBlock) << "what was written stays";
}

// Stacks that no address space holds: from the moment when the writers are made, the system gives no thread.
class CNoThreads {
 public:
  CNoThreads() { pthread_getattr_default_np(&m_old); }
  ~CNoThreads() {
    pthread_setattr_default_np(&m_old);
    pthread_attr_destroy(&m_old);
  }
  CNoThreads(const CNoThreads&) = delete;
  CNoThreads& operator=(const CNoThreads&) = delete;

  static std::unique_ptr<IEntryConverter> MakeConverter(EEngine engine, const DspBinding& dsp) {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    EXPECT_EQ(pthread_attr_setstacksize(&attributes, std::size_t{1} << 60), 0);
    EXPECT_EQ(pthread_setattr_default_np(&attributes), 0);
    pthread_attr_destroy(&attributes);
    return MakePassThrough(engine, dsp);
  }

 private:
  pthread_attr_t m_old{};
};

// With a thread to each of a thousand entries, every one of them waiting for its thread would hold the job up for most
// of an hour.
TEST_F(LimitsTest, EntriesForWhichTheSystemGivesNoThreadWaitForOneTogether) {
  constexpr int kEntries = 8;
  const auto input = WriteNumbered("in.wav", 0, kBlock);
  const auto secondsOf = [&](int entries) {
    const CNoThreads noThreads;
    std::vector<OutputEntry> outputs;
    for (int i = 0; i < entries; ++i) outputs.push_back(MakeEntry("out" + std::to_string(i) + ".wav", 0, 0));
    m_reader.SetConverterMaker(CNoThreads::MakeConverter);
    const auto begin = std::chrono::steady_clock::now();
    RunJob({input}, outputs, 4 * kBlock);
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
    for (const SOutputResult& result : m_reader.Results()) EXPECT_EQ(result.strError, "A thread could not be started");
    return seconds.count();
  };
  const double one = secondsOf(1);
  EXPECT_LT(secondsOf(kEntries), 0.5 * kEntries * one);
}

class CPrintsText final : public IJobQuestions {
 public:
  EAnswer Ask(EJobQuestion /*question*/, const SMessageBox& box) override {
    std::fputs(box.strText.c_str(), stderr);
    return EAnswer::Cancel;
  }
};

class OpenFilesTest : public LimitsTest {
 protected:
  OpenFilesTest() {
    recording = DescribeSet({WriteNumbered("in.wav", 0, 1'000'000)});
    list.SetRecording(recording, {});
    std::filesystem::create_directory(m_folder / "out");
    for (int i = 0; i < 150; ++i) {
      SEntryFields fields;
      fields.nFrequency = 7'000'000 + 1'000 * i;
      fields.nBandwidth = 10'000;
      fields.nFileSizeMB = i < 100 ? 100 : 0;  // part 0 of a split output stays open beside the last one
      fields.strOutputFolder = Path("out");
      EXPECT_FALSE(list.AddEntry(fields).has_value());
    }
  }

  EStartResult Start() {
    CPrintsText questions;
    CJobControl jobs(m_dsp, m_target, questions, 2);
    jobs.SetMaxEntries(kMostEntriesOfAPass);
    return jobs.Start(list, recording);
  }

  // With a hard limit, which no process gets rid of again.
  [[noreturn]] void StartWithAtMost(rlim_t files) {
    const rlimit limit{files, files};
    setrlimit(RLIMIT_NOFILE, &limit);
    const EStartResult result = Start();
    std::_Exit(result == EStartResult::NoThread && std::filesystem::is_empty(m_folder / "out") ? 0 : 1);
  }

  CRecordingSet recording;
  CEntryList list;
};

TEST_F(OpenFilesTest, LimitIsRaisedToWhatTheEntriesNeed) {
  const CLimit limit(RLIMIT_NOFILE, Soft(RLIMIT_NOFILE, 100));
  EXPECT_EQ(Start(), EStartResult::Started);
  rlimit raised{};
  getrlimit(RLIMIT_NOFILE, &raised);
  EXPECT_EQ(raised.rlim_cur, 450U);
}

using OpenFilesDeathTest = OpenFilesTest;
TEST_F(OpenFilesDeathTest, JobThatNeedsMoreThanTheSystemAllowsIsRefusedAndNamesTheLimit) {
  EXPECT_EXIT(StartWithAtMost(300), testing::ExitedWithCode(0),
              "Up to 450 files would be open at a time, and the system allows this program 300");
}

}  // namespace
}  // namespace carvello::test
