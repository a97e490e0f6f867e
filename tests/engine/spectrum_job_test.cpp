// Whole jobs with the real downconverter library, by either road.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <limits>
#include <string>
#include <thread>
#include <vector>

#include "engine/engine_fixture.h"
#include "engine/job_control.h"

namespace carvello::test {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::SizeIs;

constexpr std::int64_t kBlock = kBlockFrames;

class CNoQuestions final : public IJobQuestions {
 public:
  EAnswer Ask(EJobQuestion /*question*/, const SMessageBox& box) override {
    ADD_FAILURE() << box.strText;
    return EAnswer::Cancel;
  }
};

class SpectrumJobTest : public EngineTest {
 protected:
  SpectrumJobTest() {
    EXPECT_EQ(BindDsp(m_library, DspLibraryPath()), 1U) << DspLibraryPath();
    std::filesystem::create_directory(m_folder / "out");
  }

  // One recording at 1 MS/s, cut into files of these lengths.
  CRecordingSet Recording(const std::vector<std::int64_t>& lengths) const {
    std::vector<std::string> files;
    std::int64_t frames = 0;
    for (const std::int64_t length : lengths) {
      files.push_back(WriteNumbered(std::to_string(frames) + "-" + std::to_string(length) + ".wav", frames, length));
      frames += length;
    }
    return DescribeSet(files);
  }

  void Add(std::int64_t frequency, std::uint32_t bandwidth) {
    SEntryFields fields;
    fields.nFrequency = frequency;
    fields.nBandwidth = bandwidth;
    fields.nFileSizeMB = 0;
    fields.b32Bit = true;
    fields.strOutputFolder = Path("out");
    ASSERT_FALSE(m_list.AddEntry(fields).has_value());
  }

  std::vector<SOutputResult> Run(const CRecordingSet& recording, EEngineSetting setting, unsigned processors) {
    std::filesystem::remove_all(m_folder / "out");
    std::filesystem::create_directory(m_folder / "out");
    CNoQuestions questions;
    CJobControl jobs(m_library, m_target, questions, processors);
    jobs.SetMaxEntries(kMostEntriesOfAPass);
    EXPECT_EQ(jobs.Start(m_list, recording, {.bSync = false, .engine = setting}), EStartResult::Started);
    while (!jobs.OnIdle()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    for (const SOutputResult& result : jobs.Results()) EXPECT_TRUE(result.bOk) << result.strError;
    return jobs.Results();
  }

  static std::vector<float> Samples(const SOutputResult& result) {
    const auto bytes = ChunkBody(ReadBytes(result.files.at(0)), "data");
    std::vector<float> samples(bytes.size() / sizeof(float));
    std::memcpy(samples.data(), bytes.data(), bytes.size());
    return samples;
  }

  DspBinding m_library;
  CEntryList m_list;
};

TEST_F(SpectrumJobTest, BitsOfAnOutputDependOnNothingButItsEntry) {
  constexpr std::int64_t kFrames = 3 * kBlock + 4'321;
  const CRecordingSet whole = Recording({kFrames});
  const CRecordingSet cut = Recording({kBlock + 1, 77, 100'000, kFrames - kBlock - 100'078});
  m_list.SetRecording(whole, {});
  Add(7'123'450, 10'000);
  const auto alone = Run(whole, EEngineSetting::Spectrum, 1);
  ASSERT_THAT(alone, SizeIs(1));
  ASSERT_EQ(alone[0].engine, EEngine::Spectrum);
  const std::vector<float> expected = Samples(alone[0]);
  ASSERT_THAT(expected, SizeIs(2 * ((kFrames + 99) / 100)));
  ASSERT_GT(*std::max_element(expected.begin(), expected.end()), 1.0F) << "there is something to compare";

  for (int i = 0; i < 20; ++i) Add(6'600'000 + 31'007 * i, 5'000U + 1'000U * static_cast<unsigned>(i));
  Add(7'000'000, 1'000'000);  // which only the library can do
  m_list.Rebuild();
  for (const unsigned processors : {1U, 2U, 5U}) {
    for (const CRecordingSet* recording : {&whole, &cut}) {
      const auto results = Run(*recording, EEngineSetting::Spectrum, processors);
      ASSERT_THAT(results, SizeIs(22));
      for (const SOutputResult& result : results) {
        EXPECT_EQ(result.engine, result.nBandwidth == 1'000'000 ? EEngine::Library : EEngine::Spectrum);
        if (result.nOutputFrequency != 7'123'450) continue;
        EXPECT_TRUE(Samples(result) == expected) << processors;
      }
    }
  }
}

TEST_F(SpectrumJobTest, BothRoadsGiveAsManySamplesAndTheSameOnes) {
  constexpr std::int64_t kFrames = 2 * kBlock + 12'345;
  const CRecordingSet recording = Recording({kFrames});
  m_list.SetRecording(recording, {});
  Add(7'123'450, 10'000);
  Add(6'900'001, 48'000);
  m_list.Rebuild();
  const auto byLibrary = Run(recording, EEngineSetting::Library, 2);
  std::vector<std::vector<float>> expected;
  for (const SOutputResult& result : byLibrary) {
    EXPECT_EQ(result.engine, EEngine::Library);
    expected.push_back(Samples(result));
  }
  const auto bySpectrum = Run(recording, EEngineSetting::Spectrum, 2);
  for (std::size_t i = 0; i < bySpectrum.size(); ++i) {
    EXPECT_EQ(bySpectrum[i].engine, EEngine::Spectrum);
    EXPECT_EQ(bySpectrum[i].nSampleRate, byLibrary[i].nSampleRate);
    const std::vector<float> samples = Samples(bySpectrum[i]);
    ASSERT_EQ(samples.size(), expected[i].size());
    float largest = 0.0F;
    for (std::size_t k = 0; k < samples.size(); ++k) {
      largest = std::max(largest, std::abs(samples[k] - expected[i][k]));
    }
    EXPECT_LT(largest, 0.2F) << "of 32768";
  }
}

TEST_F(SpectrumJobTest, LogTellsWhichRoadWasChosenAndWhy) {
  const CRecordingSet recording = Recording({5'000});
  m_list.SetRecording(recording, {});
  Add(7'123'450, 10'000);
  Run(recording, EEngineSetting::Library, 2);
  const auto lines = m_target.Lines();
  EXPECT_EQ(
      std::count_if(lines.begin(), lines.end(), [](const std::string& line) { return line.starts_with("> Engine: "); }),
      1);
}

// One that spread through the filters would leave nothing of an output.
// The number of entries is none of threads once they may share them.
TEST_F(SpectrumJobTest, LogTellsThatManyEntriesShareFewThreads) {
  const CRecordingSet recording = Recording({100'000});
  m_list.SetRecording(recording, {});
  for (int i = 0; i < 5; ++i) Add(7'000'000 + 20'000 * i, 10'000);
  Add(7'000'000, 1'000'000);  // which only the library can do
  Run(recording, EEngineSetting::Spectrum, 2);
  EXPECT_THAT(m_target.Lines(), Contains("> Processors: 2, max entries: 1000"));
  EXPECT_THAT(m_target.Lines(), Contains("> Threads: 1 reads, 3 write"));
}

TEST_F(SpectrumJobTest, SamplesThatAreNoNumbersAreToldOnceAFileAndSpoilNoOutput) {
  CRecordingSet recording = Recording({60'000, 60'000});
  const float none = std::numeric_limits<float>::quiet_NaN();
  for (SRecordingFile& file : recording.files) {
    std::vector<std::uint8_t> bytes = ReadBytes(file.strPath);
    bytes.resize(44);
    bytes[20] = 3;  // float
    bytes[32] = 8;  // bytes a frame
    bytes[34] = 32;
    const std::uint32_t dataBytes = 8 * 60'000;
    std::memcpy(&bytes[40], &dataBytes, sizeof(dataBytes));
    std::vector<float> samples(2 * 60'000, 0.25F);
    for (const std::size_t bad : {5'000U, 5'001U, 90'000U}) samples[bad] = none;
    const std::size_t header = bytes.size();
    bytes.resize(header + dataBytes);
    std::memcpy(&bytes[header], samples.data(), dataBytes);
    std::ofstream(file.strPath, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    file.stamp = SFileStamp(*platform::GetFileStatus(file.strPath));
    file.nDataBytes = file.nSampleBytes = dataBytes;
  }
  recording.format.SubFormat = KSDATAFORMAT_SUBTYPE_IEEE_FLOAT;
  recording.format.Format.wBitsPerSample = 32;
  recording.kind = KindOfWave(recording.format);
  recording.nBitsPerSample = 32;
  m_list.SetRecording(recording, {});
  Add(7'000'000, 10'000);
  for (const EEngineSetting setting : {EEngineSetting::Library, EEngineSetting::Spectrum}) {
    const std::vector<float> samples = Samples(Run(recording, setting, 2).at(0));
    EXPECT_NEAR(samples[2 * 100], 8'192.0F, 1.0F);
    EXPECT_TRUE(std::all_of(samples.begin(), samples.end(), [](float value) { return std::abs(value) < 20'000.0F; }));
  }
  for (const SRecordingFile& file : recording.files) {
    EXPECT_EQ(m_target.Count("Reader> [WARNING] " + file.strPath +
                             ": 2 samples are no finite numbers and were taken for zero"),
              2U)
        << "once a job";
  }
}

}  // namespace
}  // namespace carvello::test
