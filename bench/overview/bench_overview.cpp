// What opening the overview of a recording takes: the first picture, the whole overview, the second opening, memory.
//
//   bench_overview RECORDING [--seek MILLISECONDS] [--cache FOLDER] [--first]
//
// --seek lets every read that does not go on where the last one ended take so much longer, one after the other, as on a
// disk with one arm. --first ends behind the first pictures. README.md tells how to read it.
#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "dsp/start_dsp.h"
#include "engine/input_frames.h"
#include "engine/recording_input.h"
#include "engine/recording_stream.h"
#include "overview/left_threads.h"
#include "overview/recording_overview.h"
#include "support/platform.h"

namespace {

using namespace carvello;
using Clock = std::chrono::steady_clock;

struct SArm {
  std::mutex lock;
  std::int64_t nNext = -1;
  std::int64_t nSeeks = 0;
};

// A recording on a disk with one arm.
class CSeekingSource final : public IFrameSource {
 public:
  CSeekingSource(const CRecordingSet& recording, SArm& arm, std::chrono::milliseconds seek)
      : m_stream(recording), m_arm(arm), m_seek(seek) {}
  std::int64_t Frames() const override { return m_stream.Frames(); }
  std::int64_t Read(std::int64_t first, SComplex* destination, std::int64_t count) override {
    const std::lock_guard guard(m_arm.lock);
    if (first != m_arm.nNext) {
      std::this_thread::sleep_for(m_seek);
      ++m_arm.nSeeks;
    }
    m_arm.nNext = first + count;
    return m_stream.Read(first, destination, count);
  }
  const std::string& Problem() const override { return m_stream.Problem(); }

 private:
  CRecordingStream m_stream;
  SArm& m_arm;
  std::chrono::milliseconds m_seek;
};

class CWatch {
 public:
  CWatch(const CRecordingSet& recording, SOverviewOptions options, std::size_t transform = 0)
      : m_start(Clock::now()), m_pOverview(std::make_unique<CRecordingOverview>(recording, std::move(options), [this] {
          { const std::lock_guard guard(m_lock); }
          m_changed.notify_all();
        })) {
    SSpectrumView view;
    view.dFrames = static_cast<double>(CInputFrames(recording).Total());
    view.dLowFrequency = -0.5 * recording.nSampleRate;
    view.dHighFrequency = 0.5 * recording.nSampleRate;
    view.nColumns = 1200;
    view.nRows = 800;
    if (transform != 0) {
      view.nTransform = transform;
      view.dFirstFrame = view.dFrames / 2;
      view.dFrames = 100'000'000.0;
    }
    m_pOverview->Show(view);
    Tell("calls made");
  }

  template <typename TGood>
  void WaitFor(const char* what, const TGood& good) {
    std::unique_lock guard(m_lock);
    m_changed.wait(guard, [&] {
      const auto picture = m_pOverview->Picture();
      return picture != nullptr && good(*picture);
    });
    Tell(what);
  }

  double Seconds() const { return std::chrono::duration<double>(Clock::now() - m_start).count(); }

 private:
  void Tell(const char* what) const { std::printf("  %-42s %9.3f s\n", what, Seconds()); }

  std::mutex m_lock;
  std::condition_variable m_changed;
  Clock::time_point m_start;
  std::unique_ptr<CRecordingOverview> m_pOverview;
};

bool HasRows(const SSpectrumPicture& picture, ERowKnown least) {
  return std::all_of(picture.rows.begin(), picture.rows.end(), [&](ERowKnown row) { return row >= least; });
}

void TellMemory() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  std::printf("  %-42s %9.0f MB\n", "most memory so far", static_cast<double>(usage.ru_maxrss) / 1024);
}

}  // namespace

int main(int argc, char** argv) {
  const char* path = nullptr;
  int seek = 0;
  std::string cache;
  bool firstOnly = false;
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--seek") == 0 && i + 1 < argc) {
      seek = std::atoi(argv[++i]);
    } else if (std::strcmp(argv[i], "--cache") == 0 && i + 1 < argc) {
      cache = argv[++i];
    } else if (std::strcmp(argv[i], "--first") == 0) {
      firstOnly = true;
    } else {
      path = argv[i];
    }
  }
  if (path == nullptr) {
    std::fprintf(stderr, "bench_overview RECORDING [--seek MILLISECONDS] [--cache FOLDER] [--first]\n");
    return 2;
  }
  InitPrimitives();
  SRecordingInput input;
  std::string error;
  if (!ReadRecordingInput(path, input, error)) {
    std::fprintf(stderr, "%s\n", error.c_str());
    return 1;
  }
  const CRecordingSet& recording = input.recording;
  const CInputFrames frames(recording);
  const double bytes = static_cast<double>(frames.Total()) * frames.BytesPerFrame();
  std::printf("%zu files, %.1f GB\n", recording.files.size(), bytes / 1e9);
  SArm arm;
  SOverviewOptions options;
  options.strCacheFolder = cache;
  if (seek > 0) {
    options.makeSource = [&] {
      return std::make_unique<CSeekingSource>(recording, arm, std::chrono::milliseconds(seek));
    };
  }
  {
    std::printf("first opening\n");
    CWatch watch(recording, options);
    watch.WaitFor("every row of pixels shows something",
                  [](const auto& p) { return HasRows(p, ERowKnown::Neighbours); });
    watch.WaitFor("sixty of them from stretches of their own", [](const auto& p) {
      return std::count_if(p.rows.begin(), p.rows.end(), [](auto row) { return row >= ERowKnown::Stretches; }) >= 60;
    });
    watch.WaitFor("every row of pixels has a stretch", [](const auto& p) { return HasRows(p, ERowKnown::Stretches); });
    TellMemory();
    if (!firstOnly) {
      watch.WaitFor("every sample was looked at", [](const auto& p) { return p.bComplete; });
      std::printf("  %-42s %9.0f MB/s\n", "that is", bytes / 1e6 / watch.Seconds());
      TellMemory();
    }
  }
  JoinLeftThreads();
  if (seek > 0) std::printf("  %-42s %9lld\n", "ways of the arm", static_cast<long long>(arm.nSeeks));
  if (!cache.empty()) {
    std::printf("second opening\n");
    CWatch watch(recording, options);
    watch.WaitFor("the same picture",
                  [&](const auto& p) { return firstOnly ? HasRows(p, ERowKnown::Stretches) : p.bComplete; });
  }
  JoinLeftThreads();
  {
    std::printf("close view, transforms of 1,048,576\n");
    CWatch watch(recording, options, 1'048'576);
    watch.WaitFor("every row of pixels", [](const auto& p) { return p.bComplete; });
  }
  JoinLeftThreads();
  TellMemory();
  return 0;
}
