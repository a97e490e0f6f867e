#include "overview/overview_fixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <new>
#include <numbers>
#include <thread>
#include <utility>

#include "overview/cell_grid.h"
#include "overview/left_threads.h"
#include "spectrum/level_code.h"

namespace carvello::test {

namespace {

constexpr std::chrono::seconds kPatience{240};  // only a test that fails waits so long

std::uint64_t Mixed(std::uint64_t number) {
  number = (number ^ (number >> 30)) * 0xBF58476D1CE4E5B9ULL;
  number = (number ^ (number >> 27)) * 0x94D049BB133111EBULL;
  return number ^ (number >> 31);
}

// Of a frame, whatever was read before: uniform, which is as good as any for spectra.
float Noise(std::uint64_t number) {
  return static_cast<float>(static_cast<double>(Mixed(number) >> 11) * 0x1p-53 - 0.5);
}

void AddTone(const STone& tone, double rate, std::int64_t first, SComplex* frames, std::int64_t count) {
  for (std::int64_t i = std::max<std::int64_t>(tone.nBegin - first, 0); i < std::min(tone.nEnd - first, count); ++i) {
    const auto seconds = static_cast<double>(first + i) / rate;
    const double turns = tone.dFrequency * seconds + tone.dSweep * seconds * seconds / 2;
    const double phase = 2 * std::numbers::pi * std::fmod(turns, 1.0);
    frames[i].re += static_cast<float>(32768 * tone.dAmplitude * std::cos(phase));
    frames[i].im += static_cast<float>(32768 * tone.dAmplitude * std::sin(phase));
  }
}

}  // namespace

CRecordingSet SMadeUp::Recording() const {
  CRecordingSet recording;
  recording.files.push_back({"made-up.wav", 4 * nFrames, 0, 4 * nFrames, {}});
  recording.format.Format.nChannels = 2;
  recording.format.Format.wBitsPerSample = 16;
  recording.nSampleRate = static_cast<std::uint32_t>(dRate);
  recording.nRadioCenterFreq = 7'000'000;
  return recording;
}

SOverviewOptions SMadeUp::Options() {
  SOverviewOptions options;
  options.makeSource = [this] { return std::make_unique<CMadeUpSource>(*this); };
  return options;
}

std::int64_t CMadeUpSource::Read(std::int64_t first, SComplex* destination, std::int64_t count) {
  m_strProblem.clear();
  if (count > static_cast<std::int64_t>(kBaseBins) && m_madeUp.nThrowing > 0 && m_madeUp.nThrowing-- > 0) {
    throw std::bad_alloc();
  }
  const int inFlight = ++m_madeUp.nInFlight;
  int most = m_madeUp.nMostInFlight;
  while (most < inFlight && !m_madeUp.nMostInFlight.compare_exchange_weak(most, inFlight)) continue;
  ++m_madeUp.nReads;
  while (m_madeUp.bHeld) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  if (m_madeUp.delay.count() > 0) std::this_thread::sleep_for(m_madeUp.delay);
  std::int64_t done = std::clamp<std::int64_t>(m_madeUp.nFrames - first, 0, count);
  if (first < m_madeUp.nBadEnd && first + done > m_madeUp.nBadBegin) {
    done = std::max<std::int64_t>(m_madeUp.nBadBegin - first, 0);
    m_strProblem = "made-up.wav: frame " + std::to_string(first + done) + " cannot be read";
  }
  std::fill_n(destination, done, SComplex{});
  if (m_madeUp.dNoise > 0) {
    const auto scale = static_cast<float>(32768 * m_madeUp.dNoise * std::sqrt(6.0));
    for (std::int64_t i = 0; i < done; ++i) {
      const auto number = 2 * static_cast<std::uint64_t>(first + i) + 12345;
      destination[i] = {scale * Noise(number), scale * Noise(number + 1)};
    }
  }
  for (const STone& tone : m_madeUp.tones) AddTone(tone, m_madeUp.dRate, first, destination, done);
  m_madeUp.nFramesRead += done;
  --m_madeUp.nInFlight;
  return done;
}

CWatchedOverview::CWatchedOverview(SMadeUp& madeUp, const std::string& cacheFolder) {
  SOverviewOptions options = madeUp.Options();
  options.strCacheFolder = cacheFolder;
  m_pOverview = std::make_unique<CRecordingOverview>(madeUp.Recording(), std::move(options), [this] {
    ++m_nCalls;
    { const std::lock_guard guard(m_lock); }
    m_changed.notify_all();
  });
}

CWatchedOverview::~CWatchedOverview() {
  m_pOverview.reset();
  JoinLeftThreads();  // they read what the test made up
}

bool CWatchedOverview::WaitUntil(const std::function<bool()>& good) {
  std::unique_lock guard(m_lock);
  return m_changed.wait_for(guard, kPatience, good);
}

std::shared_ptr<const SSpectrumPicture> CWatchedOverview::WaitFor(
    const SSpectrumView& view, const std::function<bool(const SSpectrumPicture&)>& good) {
  std::shared_ptr<const SSpectrumPicture> picture;
  m_pOverview->Show(view);
  const bool found = WaitUntil([&] {
    picture = m_pOverview->Picture();
    return picture != nullptr && picture->view == view && good(*picture);
  });
  return found ? picture : nullptr;
}

std::shared_ptr<const SSpectrumPicture> CWatchedOverview::WaitForComplete(const SSpectrumView& view) {
  return WaitFor(view, [](const SSpectrumPicture& picture) { return picture.bComplete; });
}

SSpectrumView Everything(const SMadeUp& madeUp, int columns, int rows) {
  return {.dFirstFrame = 0,
          .dFrames = static_cast<double>(madeUp.nFrames),
          .dLowFrequency = -madeUp.dRate / 2,
          .dHighFrequency = madeUp.dRate / 2,
          .nColumns = columns,
          .nRows = rows,
          .nTransform = 0,
          .window = EWindow::Hann};
}

double Mean(const SSpectrumPicture& picture, int row, int column) {
  return CodeLevel(picture.mean[static_cast<std::size_t>(row * picture.view.nColumns + column)]);
}

double Maximum(const SSpectrumPicture& picture, int row, int column) {
  return CodeLevel(picture.maximum[static_cast<std::size_t>(row * picture.view.nColumns + column)]);
}

int ColumnOf(const SSpectrumView& view, double frequency) {
  return static_cast<int>((frequency - view.dLowFrequency) / (view.dHighFrequency - view.dLowFrequency) *
                          view.nColumns);
}

int RowOf(const SSpectrumView& view, double frame) {
  return static_cast<int>((frame - view.dFirstFrame) / view.dFrames * view.nRows);
}

int LoudestColumn(const SSpectrumPicture& picture, int row) {
  const auto begin = picture.mean.begin() + static_cast<std::ptrdiff_t>(row) * picture.view.nColumns;
  return static_cast<int>(std::max_element(begin, begin + picture.view.nColumns) - begin);
}

}  // namespace carvello::test
