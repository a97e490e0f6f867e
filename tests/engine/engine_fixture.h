// What engine tests share: numbered samples in files laid out by hand, a downconverter that passes samples through and
// notes how it was called, and a message target that keeps what it was told.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <mutex>
#include <string>
#include <vector>

#include "dsp/dsp_binding.h"
#include "engine/background_thread_reader.h"
#include "engine/message_target.h"
#include "engine/output_entry.h"
#include "input/recording_set.h"

namespace carvello::test {

class CKeepingTarget final : public IMessageTarget {
 public:
  void PostTexts(std::uint32_t message, std::string worker, std::string text) override;
  void PostNumbers(std::uint32_t message, std::uint64_t total, std::uint64_t done) override;

  std::vector<std::string> Lines() const;  // "worker> text"
  std::size_t Count(const std::string& line) const;
  std::vector<std::uint64_t> Progress() const;  // of 10000

 private:
  mutable std::mutex m_lock;
  std::vector<std::string> m_lines;
  std::vector<std::uint64_t> m_progress;
};

// A pass-through downconverter. Its state is the process's: one test at a time uses it.
struct SPassThrough {
  struct SInstance {
    std::uint32_t nInputRate = 0;
    std::uint32_t nOutputRate = 0;
    bool bFractionalDisabled = false;
    std::vector<std::int64_t> shifts;
    std::int64_t nSamples = 0;
    std::vector<SComplex> pending;  // not yet given out
    bool bReleased = false;
  };

  static void Bind(DspBinding& binding);  // forgets the instances of earlier tests
  static std::vector<SInstance> Instances();
  static void ReportRateOut(std::uint32_t rate);  // 0: the rate asked for
  // Every run of the instance waits until it is let go, once for each LetGo.
  static void Hold(std::uint32_t handle);
  static void LetGo();
  static void LetAllGo();
  // Setting the rates of any instance waits until it is let go.
  static void HoldInit();
  static void LetInitGo(int count);
  static void ForgetInits();  // those that were let go and never came
  // Outputs lag behind the input by so many samples, as with filters.
  static void HoldBack(std::size_t samples);
  // So many samples are dropped at the first run.
  static void Lose(std::size_t samples);
  // Only the first of every so many samples comes out.
  static void DecimateBy(std::int64_t factor);
  static void DelayRun(int milliseconds, std::uint32_t handle);  // makes one instance slow
};

// The format of numbered recordings.
WAVEFORMATEXTENSIBLE NumberedFormat();
// Frame n of a numbered recording: its number can be read back from I and Q.
std::int16_t NumberedI(std::int64_t frame);
std::int16_t NumberedQ(std::int64_t frame);
// The numbers of so many frames.
std::vector<std::int64_t> Frames(std::int64_t first, std::int64_t count);

// Whether an output holds these frames and no others. Large vectors are compared without printing them.
#define EXPECT_FRAMES(path, first, count) \
  EXPECT_TRUE(ReadNumbered(path) == Frames(first, count)) << path << " holds other frames"

class EngineTest : public testing::Test {
 protected:
  EngineTest();
  ~EngineTest() override;

  std::string Path(const std::string& name) const;
  // A RIFF file of 16-bit I/Q frames `first`, `first` + 1, ...
  std::string WriteNumbered(const std::string& name, std::int64_t first, std::int64_t frames) const;
  OutputEntry MakeEntry(const std::string& name, std::int64_t startSample, std::int64_t totalSamples) const;
  // The frame numbers found in the data chunk of an output; 16 bit.
  std::vector<std::int64_t> ReadNumbered(const std::string& path) const;
  // The files as the analysis of a set of 16-bit files describes them; one that does not exist as if it had a frame.
  static std::vector<SRecordingFile> Describe(const std::vector<std::string>& files);
  // The set of these files, at 1,000,000 frames a second around 7 MHz.
  static CRecordingSet DescribeSet(const std::vector<std::string>& files);
  // Gives the reader a job and waits until it has begun to read.
  void StartJob(const std::vector<SRecordingFile>& files, const std::vector<OutputEntry>& entries,
                std::int64_t totalBytes);
  void FinishJob();  // waits for the job's end
  // Runs one job on the reader to its end.
  void RunJob(const std::vector<std::string>& files, const std::vector<OutputEntry>& entries, std::int64_t totalBytes);

  std::filesystem::path m_folder;
  std::vector<EEngine> m_engines;  // of the entries of jobs; all by the library where it is empty
  DspBinding m_dsp;
  CKeepingTarget m_target;
  CBackgroundThreadReader m_reader;
};

// Bytes of a little-endian file; the body of the first chunk of that name, from a RIFF or RF64 file.
std::vector<std::uint8_t> ReadBytes(const std::string& path);
std::vector<std::uint8_t> ChunkBody(const std::vector<std::uint8_t>& file, const std::string& name);

}  // namespace carvello::test
