// CRecordingOverview: what a recording looks like, made by workers from sparse stretches first and from every sample in
// the end; and the pictures of it that a window shows.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "engine/block_listener.h"
#include "engine/frame_source.h"
#include "input/recording_set.h"
#include "overview/spectrum_view.h"

namespace carvello {

class COverviewCore;

struct SOverviewOptions {
  std::string strCacheFolder;                // where overviews are kept; empty: nowhere
  std::size_t nDetailBytes = 64 << 20;       // for what is computed below the overview, as it comes into view
  std::int64_t nCacheBytes = 1'000'000'000;  // of all overviews that are kept; the oldest go first
  // What reads the recording, one a thread; a CRecordingStream each unless told.
  std::function<std::unique_ptr<IFrameSource>()> makeSource;
};

// Used on one thread, the window's. No call waits for a read or for anything that is computed.
class CRecordingOverview {
 public:
  // `changed` is called on a worker, without locks held, whenever Picture(), Progress() or Problem() has something new:
  // at most some 30 times a second, and never again once the destructor has returned. It must not wait for the window's
  // thread, nor destroy the overview.
  CRecordingOverview(const CRecordingSet& recording, SOverviewOptions options, std::function<void()> changed);
  // Workers in the middle of a read end by themselves; the end of the program waits for them.
  ~CRecordingOverview();
  CRecordingOverview(const CRecordingOverview&) = delete;
  CRecordingOverview& operator=(const CRecordingOverview&) = delete;

  // The newest view counts: what is under way for older ones is dropped.
  void Show(const SSpectrumView& view);
  // Of the newest view for which there is one; nothing before the first.
  std::shared_ptr<const SSpectrumPicture> Picture() const;
  // 0..1 of the recording's samples that were looked at for the overview.
  double Progress() const;
  // Why something of the recording cannot be read; empty while all is well.
  std::string Problem() const;

  // Answers with the frequency (Hz from the centre) of the strongest carrier within `reach` of `frequency` in the time
  // span, as exact as the signal allows; with nothing where none stands out. On a worker, as `changed`; an answer that
  // nobody waits for any more, because many newer ones were asked for, is nothing too.
  void FindCarrier(double frequency, double reach, double firstFrame, double frames,
                   std::function<void(std::optional<double>)> answer);

  // While paused, as in a job, only what a view needs is read, and nothing ahead of it.
  void Pause(bool paused);
  // Feeds the overview with the blocks of a job on this recording; may outlive it.
  std::shared_ptr<IBlockListener> Listener();

 private:
  std::shared_ptr<COverviewCore> m_pCore;
};

}  // namespace carvello
