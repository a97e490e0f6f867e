// The overview of files: a set is shown as its frames follow each other, whatever time lies between its files.
#include <gtest/gtest.h>

#include <cmath>
#include <condition_variable>
#include <cstring>
#include <filesystem>
#include <mutex>
#include <numbers>
#include <string>
#include <utility>

#include "overview/left_threads.h"
#include "overview/overview_fixture.h"
#include "support/temp_folder.h"

namespace carvello::test {
namespace {

constexpr std::int64_t kFileFrames = 400'000;
constexpr std::uint32_t kRate = 1'000'000;

template <typename TNumber>
void Put(std::string& bytes, TNumber number) {
  char raw[sizeof(number)];
  std::memcpy(raw, &number, sizeof(number));
  bytes.append(raw, sizeof(number));
}

// A file of 16-bit I and Q with one tone in it, as the analysis describes it.
SRecordingFile WriteTone(const std::string& path, double frequency) {
  const auto dataBytes = static_cast<std::uint32_t>(4 * kFileFrames);
  std::string bytes = "RIFF";
  Put<std::uint32_t>(bytes, 36 + dataBytes);
  bytes += "WAVEfmt ";
  Put<std::uint32_t>(bytes, 16);
  Put<std::uint16_t>(bytes, 1);
  Put<std::uint16_t>(bytes, 2);
  Put<std::uint32_t>(bytes, kRate);
  Put<std::uint32_t>(bytes, 4 * kRate);
  Put<std::uint16_t>(bytes, 4);
  Put<std::uint16_t>(bytes, 16);
  bytes += "data";
  Put<std::uint32_t>(bytes, dataBytes);
  for (std::int64_t i = 0; i < kFileFrames; ++i) {
    const double phase = 2 * std::numbers::pi * std::fmod(frequency / kRate * static_cast<double>(i), 1.0);
    Put(bytes, static_cast<std::int16_t>(3276.8 * std::cos(phase)));
    Put(bytes, static_cast<std::int16_t>(3276.8 * std::sin(phase)));
  }
  WriteWholeFile(path, bytes);
  SRecordingFile file;
  file.strPath = path;
  file.nDataBytes = file.nSampleBytes = dataBytes;
  file.stamp = SFileStamp(*platform::GetFileStatus(path));
  return file;
}

class OverviewSetTest : public testing::Test {
 protected:
  OverviewSetTest() {
    m_recording.format.Format.wFormatTag = kFormatTagExtensible;
    m_recording.format.Format.nChannels = 2;
    m_recording.format.Format.nSamplesPerSec = kRate;
    m_recording.format.Format.wBitsPerSample = 16;
    m_recording.format.SubFormat = KSDATAFORMAT_SUBTYPE_PCM;
    m_recording.kind = KindOfWave(m_recording.format);
    m_recording.nSampleRate = kRate;
    m_recording.tEnd = 5000;  // hours of gaps
    for (const double frequency : {-200e3, 100e3, 300e3}) {
      m_recording.files.push_back(WriteTone(m_folder / (std::to_string(m_recording.files.size()) + ".wav"), frequency));
    }
  }
  ~OverviewSetTest() override { JoinLeftThreads(); }

  std::shared_ptr<const SSpectrumPicture> WaitFor(const std::function<bool(const CRecordingOverview&)>& good) {
    std::mutex lock;
    std::condition_variable changed;
    CRecordingOverview overview(m_recording, {}, [&] {
      { const std::lock_guard guard(lock); }
      changed.notify_all();
    });
    overview.Show(m_view);
    std::unique_lock guard(lock);
    const bool found = changed.wait_for(guard, std::chrono::seconds(60),
                                        [&] { return overview.Picture() != nullptr && good(overview); });
    m_strProblem = overview.Problem();
    guard.unlock();
    return found ? overview.Picture() : nullptr;
  }

  CTempFolder m_folder;
  CRecordingSet m_recording;
  SSpectrumView m_view{.dFirstFrame = 0,
                       .dFrames = 3.0 * kFileFrames,
                       .dLowFrequency = -500e3,
                       .dHighFrequency = 500e3,
                       .nColumns = 200,
                       .nRows = 90};
  std::string m_strProblem;
};

TEST_F(OverviewSetTest, FilesFollowEachOtherByTheirFrames) {
  const auto picture = WaitFor([](const auto& overview) { return overview.Picture()->bComplete; });
  ASSERT_NE(picture, nullptr);
  EXPECT_EQ(m_strProblem, "");
  for (const auto& [row, frequency] :
       {std::pair{1, -200e3}, {28, -200e3}, {31, 100e3}, {58, 100e3}, {61, 300e3}, {88, 300e3}}) {
    EXPECT_NEAR(LoudestColumn(*picture, row), ColumnOf(m_view, frequency + 1), 1) << row;
    EXPECT_NEAR(Maximum(*picture, row, LoudestColumn(*picture, row)), -20.5, 0.9) << row << ", between bins";
  }
}

TEST_F(OverviewSetTest, FileThatIsGoneIsNamedAndTheOthersAreShown) {
  std::filesystem::remove(PathOf(m_recording.files[1].strPath));
  const auto picture = WaitFor([](const auto& overview) {
    return overview.Picture()->rows[10] == ERowKnown::Every && overview.Picture()->rows[80] == ERowKnown::Every &&
           !overview.Problem().empty();
  });
  ASSERT_NE(picture, nullptr);
  EXPECT_EQ(m_strProblem.rfind(m_recording.files[1].strPath + ": cannot be opened", 0), 0U) << m_strProblem;
  EXPECT_NE(picture->rows[45], ERowKnown::Every);
  EXPECT_NEAR(LoudestColumn(*picture, 80), ColumnOf(m_view, 300e3 + 1), 1);
}

}  // namespace
}  // namespace carvello::test
