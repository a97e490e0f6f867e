// What overview tests share: recordings that are made up as they are read, and waiting for pictures.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "engine/frame_source.h"
#include "overview/recording_overview.h"

namespace carvello::test {

struct STone {
  double dFrequency = 0.0;  // Hz from the centre
  double dAmplitude = 1.0;  // of full scale
  std::int64_t nBegin = 0;  // frames
  std::int64_t nEnd = INT64_MAX;
  double dSweep = 0.0;  // Hz a second
};

// A recording as it should be seen, and what was read of it. What is in it stays as it is while it is read.
struct SMadeUp {
  std::int64_t nFrames = 0;
  double dRate = 1e6;
  std::vector<STone> tones = {};
  double dNoise = 0.0;                 // its level, of full scale
  std::chrono::microseconds delay{0};  // of every read
  std::int64_t nBadBegin = -1;         // frames that cannot be read
  std::int64_t nBadEnd = -1;

  std::atomic<std::int64_t> nReads = 0;
  std::atomic<std::int64_t> nFramesRead = 0;
  std::atomic<int> nInFlight = 0;
  std::atomic<int> nMostInFlight = 0;
  std::atomic<bool> bHeld = false;  // reads wait
  std::atomic<int> nThrowing = 0;   // so many reads of more than a transform of the overview end for want of memory

  CRecordingSet Recording() const;
  SOverviewOptions Options();  // this must outlive the workers: see JoinLeftThreads
};

class CMadeUpSource final : public IFrameSource {
 public:
  explicit CMadeUpSource(SMadeUp& madeUp) : m_madeUp(madeUp) {}
  std::int64_t Frames() const override { return m_madeUp.nFrames; }
  std::int64_t Read(std::int64_t first, SComplex* destination, std::int64_t count) override;
  const std::string& Problem() const override { return m_strProblem; }

 private:
  SMadeUp& m_madeUp;
  std::string m_strProblem;
};

// An overview of a made-up recording, and what it told. One at a time: its end waits for all workers.
class CWatchedOverview {
 public:
  explicit CWatchedOverview(SMadeUp& madeUp, const std::string& cacheFolder = {});
  ~CWatchedOverview();

  CRecordingOverview* operator->() { return m_pOverview.get(); }
  // Waits until a picture of the view is as it should be; null when it never is.
  std::shared_ptr<const SSpectrumPicture> WaitFor(const SSpectrumView& view,
                                                  const std::function<bool(const SSpectrumPicture&)>& good);
  std::shared_ptr<const SSpectrumPicture> WaitForComplete(const SSpectrumView& view);
  // Waits until the overview says so; false when it never does.
  bool WaitUntil(const std::function<bool()>& good);
  int Calls() const { return m_nCalls; }
  void Close() { m_pOverview.reset(); }

 private:
  std::mutex m_lock;
  std::condition_variable m_changed;
  std::atomic<int> m_nCalls = 0;
  std::unique_ptr<CRecordingOverview> m_pOverview;
};

// All of a made-up recording on so many pixels.
SSpectrumView Everything(const SMadeUp& madeUp, int columns, int rows);
// The level of a pixel, dBFS.
double Mean(const SSpectrumPicture& picture, int row, int column);
double Maximum(const SSpectrumPicture& picture, int row, int column);
// The column of a view that shows a frequency, and the row of a frame.
int ColumnOf(const SSpectrumView& view, double frequency);
int RowOf(const SSpectrumView& view, double frame);
// The column with the highest mean in a row.
int LoudestColumn(const SSpectrumPicture& picture, int row);

}  // namespace carvello::test
