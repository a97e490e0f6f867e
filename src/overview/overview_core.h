// COverviewCore: the workers of an overview and what they share. It lives as long as the last of them.
#pragma once

#include <array>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/background_thread_base.h"
#include "input/recording_set.h"
#include "overview/base_levels.h"
#include "overview/carrier_finder.h"
#include "overview/detail_rows.h"
#include "overview/job_feed.h"
#include "overview/overview_cache.h"
#include "overview/recording_overview.h"
#include "overview/row_maker.h"
#include "overview/spectrum_view.h"
#include "overview/work_plan.h"
#include "support/mutex.h"

namespace carvello {

// The threads:
// - one makes pictures, and begins by making the memory for the overview;
// - eight look at short stretches, which mostly waits for the disk: first what a view wants, then the overview. Only
// one
//   of them reads at a time where the disk takes long to get to a place;
// - some, at the lowest priority, look at every sample when there is nothing else to do;
// - one takes the blocks of a job, once there was one;
// - one keeps the overview for the next time.
// One lock for what is to be done, one for the calls to the owner, and those of the levels; nobody holds two at once,
// but the owner's functions may be called under that of the calls.
class COverviewCore : public std::enable_shared_from_this<COverviewCore> {
 public:
  COverviewCore(const CRecordingSet& recording, SOverviewOptions options, std::function<void()> changed);

  void Start();
  // The owner goes: nobody is called any more.
  void End();

  void Show(const SSpectrumView& view);
  std::shared_ptr<const SSpectrumPicture> Picture() const;
  double Progress() const;
  std::string Problem() const;
  void FindCarrier(const SCarrierRequest& request, std::function<void(std::optional<double>)> answer);
  void Pause(bool paused);
  std::shared_ptr<IBlockListener> Listener();

 private:
  using Clock = std::chrono::steady_clock;

  // When the next picture may be made: of the view that the last one was made of, and of another.
  struct SPictureTimes {
    std::uint64_t nView = 0;
    Clock::time_point tNext{};
    Clock::time_point tNextView{};
  };

  struct SCarrierTask {
    SCarrierRequest request;
    std::function<void(std::optional<double>)> answer;
  };

  // What one of those that look at short stretches does next.
  struct SLook {
    std::optional<SRowTask> row;
    std::optional<SCarrierTask> carrier;
    std::vector<SCarrierTask> unanswered;
  };

  void WakeAll();
  void StartWorker(const char* name, void (COverviewCore::*body)()) noexcept;
  std::unique_ptr<IFrameSource> MakeSource() const;
  void SetProblem(std::string_view problem) noexcept;
  void Fail(std::string_view problem) noexcept;
  // Does it, and is false when there was no memory: that is told, and what comes next is tried again.
  template <typename TWork>
  bool DoIfThereIsMemory(const TWork& work) noexcept;
  void TellOwner();
  // The levels, as soon as there is memory for them; nullptr when the end came first.
  CBaseLevels* WaitForBase();

  void MakePictures();
  bool MakeBase();
  bool WaitForNews(const SPictureTimes& times);
  void PictureNews();

  void LookAtStretches();
  bool MayLook(int worker) const CARVELLO_NEEDS(m_lock);
  std::optional<SLook> WaitForLook(int worker);
  std::optional<SLook> NextLook() CARVELLO_NEEDS(m_lock);
  void Look(const SLook& look, CBaseLevels& base, CRowMaker& maker, SRowPowers& powers);
  void Answer(const SCarrierTask& task, std::optional<double> frequency);
  bool IsIdle() CARVELLO_NEEDS(m_lock);
  void DoTask(const SRowTask& task, CBaseLevels& base, CRowMaker& maker, SRowPowers& powers);
  bool IsWanted(const SRowTask& task) const;
  void NoteReadTime(std::chrono::duration<double> time);

  void LookAtEverything();
  std::optional<SRowTask> WaitForWhole();
  bool MayGoOn();

  void TakeJobBlocks();

  void Keep();
  bool WaitToKeep();  // false when the end has come
  void RowIsWhole(const CBaseLevels& base);

  const CRecordingSet m_recording;
  const SOverviewOptions m_options;
  const std::int64_t m_nFrames;
  const COverviewCache m_cache;
  CDetailRows m_details;
  const std::shared_ptr<CFedBlocks> m_pFed = std::make_shared<CFedBlocks>();

  CMutex m_callLock;
  std::function<void()> m_changed CARVELLO_GUARDED_BY(m_callLock);
  bool m_bMute CARVELLO_GUARDED_BY(m_callLock) = false;  // the owner is gone

  mutable CMutex m_lock;
  std::condition_variable m_work;                                    // for those that look at short stretches
  std::condition_variable m_idle;                                    // for those that look at everything
  std::condition_variable m_news;                                    // for the one that makes pictures
  std::condition_variable m_keep;                                    // for the one that keeps the overview
  std::unique_ptr<CBaseLevels> m_pBase CARVELLO_GUARDED_BY(m_lock);  // made once, then the same to the end
  std::int64_t m_nKept CARVELLO_GUARDED_BY(m_lock) = 0;              // what of it the cache told
  std::unique_ptr<CWorkPlan> m_pPlan CARVELLO_GUARDED_BY(m_lock);    // the same
  bool m_bEnd CARVELLO_GUARDED_BY(m_lock) = false;
  bool m_bPaused CARVELLO_GUARDED_BY(m_lock) = false;
  bool m_bComplete CARVELLO_GUARDED_BY(m_lock) = false;  // every row of the overview is whole
  std::optional<SSpectrumView> m_view CARVELLO_GUARDED_BY(m_lock);
  std::uint64_t m_nView CARVELLO_GUARDED_BY(m_lock) = 0;  // counts the views
  bool m_bNews CARVELLO_GUARDED_BY(m_lock) = false;       // since the last picture
  std::shared_ptr<const SSpectrumPicture> m_pPicture CARVELLO_GUARDED_BY(m_lock);
  std::string m_strProblem CARVELLO_GUARDED_BY(m_lock);
  bool m_bSlow CARVELLO_GUARDED_BY(m_lock) = true;  // until it is known
  std::array<double, 5> m_readTimes CARVELLO_GUARDED_BY(m_lock){};
  std::size_t m_nReadTimes CARVELLO_GUARDED_BY(m_lock) = 0;
  std::deque<SCarrierTask> m_carriers CARVELLO_GUARDED_BY(m_lock);  // the newest first
  bool m_bFed CARVELLO_GUARDED_BY(m_lock) = false;                  // there is a worker for the blocks of jobs
  int m_nLookers CARVELLO_GUARDED_BY(m_lock) = 0;                   // that have begun
  int m_nLooking CARVELLO_GUARDED_BY(m_lock) = 0;                   // workers with something of WaitForLook
  int m_nWhole CARVELLO_GUARDED_BY(m_lock) = 0;                     // of WaitForWhole
};

template <typename TWork>
bool COverviewCore::DoIfThereIsMemory(const TWork& work) noexcept {
  try {
    work();
    return true;
  } catch (const std::exception&) {
    SetProblem(kNotEnoughMemory);  // the only reason there is
    return false;
  }
}

}  // namespace carvello
