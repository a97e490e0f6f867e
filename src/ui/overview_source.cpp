#include "ui/overview_source.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <new>
#include <utility>

#include "engine/recording_stream.h"
#include "overview/left_threads.h"
#include "overview/recording_overview.h"
#include "overview/recording_scan.h"

namespace carvello {

namespace {

SOverviewOptions OptionsOf(const std::string& cacheFolder) {
  SOverviewOptions options;
  options.strCacheFolder = cacheFolder;
  return options;
}

// What a search and whoever asked for it share. The search ends at its next look at the flag.
struct SSearchTicket {
  std::atomic<bool> bEnds = false;
};

constexpr double kStep = 0.01;  // of a search, that is told

SSearchNews ResultOf(const CRecordingSet& recording, SScanRequest request, const SSearchTicket& ticket,
                     const std::function<void(const SSearchNews&)>& tell) {
  CRecordingStream stream(recording);
  request.nFrames = std::min(request.nFrames, stream.Frames() - request.nFirstFrame);
  SSignalScan result;
  SSearchNews news;
  double told = 0.0;
  const auto goesOn = [&](double done) {
    if (done >= told + kStep && !ticket.bEnds) {
      told = done;
      tell({.dDone = done});
    }
    return !ticket.bEnds.load();
  };
  const bool found = ScanRecording(recording, stream, request, goesOn, result, news.strProblem);
  if (!found) return news;
  for (const SSignal& signal : result.found) {
    news.found.push_back({signal.dFrequency, signal.dBandwidth, signal.dLevel, signal.dSnr, signal.dStart, signal.dEnd,
                          signal.dHolding});
  }
  return news;
}

void RunSearch(const CRecordingSet& recording, const SScanRequest& request, const SSearchTicket& ticket,
               const std::function<void(const SSearchNews&)>& tell) noexcept {
  SSearchNews news;
  try {
    news = ResultOf(recording, request, ticket, tell);
  } catch (const std::bad_alloc&) {
    news = {};
    news.strProblem = "Not enough memory for the search";
  }
  if (ticket.bEnds) return;
  news.dDone = 1.0;
  news.bEnded = true;
  tell(news);
}

class COverviewSource : public ISpectrumSource {
 public:
  COverviewSource(const CRecordingSet& recording, const std::string& cacheFolder, std::function<void()> changed)
      : m_pRecording(std::make_shared<CRecordingSet>(recording)),
        m_overview(recording, OptionsOf(cacheFolder), std::move(changed)) {}
  ~COverviewSource() override { COverviewSource::EndSearch(); }
  COverviewSource(const COverviewSource&) = delete;
  COverviewSource& operator=(const COverviewSource&) = delete;

  void Show(const SSpectrumView& view) override { m_overview.Show(view); }
  std::shared_ptr<const SSpectrumPicture> Picture() const override { return m_overview.Picture(); }
  double Progress() const override { return m_overview.Progress(); }
  std::string Problem() const override { return m_overview.Problem(); }
  void Pause(bool pause) override { m_overview.Pause(pause); }
  std::shared_ptr<IBlockListener> Listener() override { return m_overview.Listener(); }
  void FindCarrier(double frequency, double reach, double firstFrame, double frames,
                   std::function<void(std::optional<double>)> answer) override {
    m_overview.FindCarrier(frequency, reach, firstFrame, frames, std::move(answer));
  }
  void Search(const SSignalSearch& search, std::function<void(const SSearchNews&)> tell) override;
  void EndSearch() override {
    if (m_pTicket != nullptr) m_pTicket->bEnds = true;
    m_pTicket.reset();
  }

 private:
  std::shared_ptr<const CRecordingSet> m_pRecording;
  std::shared_ptr<SSearchTicket> m_pTicket;  // of the search that goes on; null when there is none
  CRecordingOverview m_overview;
};

// On a thread of its own that nobody waits for: it may be in the middle of a long read.
void COverviewSource::Search(const SSignalSearch& search, std::function<void(const SSearchNews&)> tell) {
  EndSearch();
  m_pTicket = std::make_shared<SSearchTicket>();
  SScanRequest request{};
  request.nFirstFrame = static_cast<std::int64_t>(std::floor(search.dFirstFrame));
  request.nFrames = static_cast<std::int64_t>(std::ceil(search.dFrames));
  request.dAbove = search.dAbove;
  request.dRaster = search.dRaster;
  const bool started = StartLeftThread("Search", [request, tell, pRecording = m_pRecording, pTicket = m_pTicket] {
    RunSearch(*pRecording, request, *pTicket, tell);
  });
  if (!started) tell({.dDone = 1.0, .bEnded = true, .strProblem = "The system gives no thread for the search"});
}

}  // namespace

std::unique_ptr<ISpectrumSource> OpenOverview(const CRecordingSet& recording, const std::string& cacheFolder,
                                              std::function<void()> changed) {
  return std::make_unique<COverviewSource>(recording, cacheFolder, std::move(changed));
}

}  // namespace carvello
