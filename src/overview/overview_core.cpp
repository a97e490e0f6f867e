#include "overview/overview_core.h"

#include <algorithm>
#include <exception>
#include <thread>
#include <utility>

#include "engine/input_frames.h"
#include "engine/recording_stream.h"
#include "overview/left_threads.h"
#include "overview/picture_maker.h"
#include "overview/view_plan.h"
#include "spectrum/power_spectrum.h"
#include "support/platform.h"

namespace carvello {

namespace {

constexpr int kLookers = 8;
// What a long transform needs is tens of megabytes: only so many of them make such.
constexpr int kLongLookers = 2;
constexpr std::size_t kLongTransform = 131'072;
constexpr unsigned kMostWhole = 4;
constexpr std::chrono::milliseconds kBetweenCalls{33};
constexpr std::size_t kMostCarriers = 8;  // that wait; of those asked for earlier nobody waits any more
// Reads of a few thousand frames that take longer than this are on their way to the place most of the time. With eight
// in flight each waits for the others.
constexpr double kSlowAlone = 0.003;
constexpr double kSlowAmongEight = 0.020;

}  // namespace

COverviewCore::COverviewCore(const CRecordingSet& recording, SOverviewOptions options, std::function<void()> changed)
    : m_recording(recording),
      m_options(std::move(options)),
      m_nFrames(CInputFrames(recording).Total()),
      m_cache(m_options.strCacheFolder, m_options.nCacheBytes, recording),
      m_details(m_options.nDetailBytes),
      m_changed(std::move(changed)) {}

void COverviewCore::Start() {
  // What all transforms share must outlive the threads, which the end of the program joins: it is made before them.
  const CPowerSpectrum first(kBaseBins, EWindow::Hann);
  StartWorker("Pictures", &COverviewCore::MakePictures);
  for (int i = 0; i < kLookers; ++i) StartWorker("Overview", &COverviewCore::LookAtStretches);
  const unsigned whole = std::clamp(platform::ProcessorCount(), 1U, kMostWhole);
  for (unsigned i = 0; i < whole; ++i) StartWorker("Overview", &COverviewCore::LookAtEverything);
  if (!m_options.strCacheFolder.empty()) StartWorker("Overview", &COverviewCore::Keep);
}

void COverviewCore::StartWorker(const char* name, void (COverviewCore::*body)()) noexcept {
  try {
    const auto run = [core = shared_from_this(), body] {
      if (!core->DoIfThereIsMemory([&] { ((*core).*body)(); })) core->TellOwner();
    };
    if (!StartLeftThread(name, run)) Fail("A thread could not be started");
  } catch (const std::exception&) {
    Fail(kNotEnoughMemory);
  }
}

void COverviewCore::End() {
  {
    const CLockGuard guard(m_callLock);
    m_bMute = true;
    m_changed = nullptr;
  }
  m_pFed->End();
  {
    const CLockGuard guard(m_lock);
    m_bEnd = true;
  }
  WakeAll();
}

void COverviewCore::WakeAll() {
  m_work.notify_all();
  m_idle.notify_all();
  m_news.notify_all();
  m_keep.notify_all();
}

void COverviewCore::Show(const SSpectrumView& view) {
  {
    const CLockGuard guard(m_lock);
    if (m_view && *m_view == view) return;
    m_view = view;
    ++m_nView;
    m_bNews = true;
    if (m_pPlan) m_pPlan->Show(PlanView(view, m_nFrames, m_recording.nSampleRate));
  }
  WakeAll();
}

std::shared_ptr<const SSpectrumPicture> COverviewCore::Picture() const {
  const CLockGuard guard(m_lock);
  return m_pPicture;
}

double COverviewCore::Progress() const {
  const CBaseLevels* base = nullptr;
  {
    const CLockGuard guard(m_lock);
    base = m_pBase.get();
  }
  if (base == nullptr || base->Rows() == 0) return 0.0;
  return static_cast<double>(base->WholeRows()) / static_cast<double>(base->Rows());
}

std::string COverviewCore::Problem() const {
  const CLockGuard guard(m_lock);
  return m_strProblem;
}

void COverviewCore::Pause(bool paused) {
  {
    const CLockGuard guard(m_lock);
    m_bPaused = paused;
  }
  WakeAll();
}

void COverviewCore::SetProblem(std::string_view problem) noexcept {
  const CLockGuard guard(m_lock);
  try {
    m_strProblem = problem;
  } catch (const std::exception&) {
    // The one before stands.
  }
}

void COverviewCore::Fail(std::string_view problem) noexcept {
  SetProblem(problem);
  PictureNews();
}

void COverviewCore::TellOwner() {
  const CLockGuard guard(m_callLock);
  if (!m_bMute && m_changed) m_changed();
}

std::unique_ptr<IFrameSource> COverviewCore::MakeSource() const {
  if (m_options.makeSource) return m_options.makeSource();
  return std::make_unique<CRecordingStream>(m_recording);
}

CBaseLevels* COverviewCore::WaitForBase() {
  CLockGuard guard(m_lock);
  while (!m_bEnd && !m_pBase) guard.Wait(m_work);
  return m_bEnd ? nullptr : m_pBase.get();
}

// ---- pictures ----

bool COverviewCore::MakeBase() {
  auto base = std::make_unique<CBaseLevels>(m_nFrames);
  if (!m_cache.Load(*base)) base = std::make_unique<CBaseLevels>(m_nFrames);
  auto plan = std::make_unique<CWorkPlan>(base->Grid());
  {
    const CLockGuard guard(m_lock);
    if (m_bEnd) return false;
    m_nKept = base->Known();
    m_pBase = std::move(base);
    m_pPlan = std::move(plan);
    if (m_view) m_pPlan->Show(PlanView(*m_view, m_nFrames, m_recording.nSampleRate));
  }
  WakeAll();
  return true;
}

// True when there is something to make a picture of. Levels come by the thousand, so there is a pause behind each
// picture, a shorter one when it is of another view.
bool COverviewCore::WaitForNews(const SPictureTimes& times) {
  CLockGuard guard(m_lock);
  while (!m_bEnd) {
    const Clock::time_point next = times.nView == m_nView ? times.tNext : times.tNextView;
    if (m_bNews && Clock::now() >= next) break;
    if (m_bNews) {
      guard.WaitUntil(m_news, next);
    } else {
      guard.Wait(m_news);
    }
  }
  m_bNews = false;
  return !m_bEnd;
}

void COverviewCore::MakePictures() {
  if (!MakeBase()) return;
  CBaseLevels* const base = WaitForBase();
  if (base == nullptr) return;
  SPictureTimes times;
  while (WaitForNews(times)) {
    std::optional<SSpectrumView> view;
    {
      const CLockGuard guard(m_lock);
      view = m_view;
      times.nView = m_nView;
    }
    const Clock::time_point start = Clock::now();
    DoIfThereIsMemory([&] {
      if (!view || !IsSound(*view)) return;
      const double rate = m_recording.nSampleRate;
      auto picture = MakePicture(*view, PlanView(*view, m_nFrames, rate), rate, *base, m_details);
      const CLockGuard guard(m_lock);
      m_pPicture = std::move(picture);
    });
    // Pictures of one view take a quarter of the time at most.
    const Clock::time_point end = Clock::now();
    times.tNextView = end + kBetweenCalls;
    times.tNext = end + std::max<Clock::duration>(kBetweenCalls, 3 * (end - start));
    TellOwner();
  }
}

// Something is known that was not.
void COverviewCore::PictureNews() {
  {
    const CLockGuard guard(m_lock);
    m_bNews = true;
  }
  m_news.notify_one();
}

// ---- short stretches ----

void COverviewCore::LookAtStretches() {
  CBaseLevels* const base = WaitForBase();
  if (base == nullptr) return;
  int worker = 0;
  {
    const CLockGuard guard(m_lock);
    worker = m_nLookers++;
  }
  CRowMaker maker(MakeSource());
  SRowPowers powers;
  while (const std::optional<SLook> look = WaitForLook(worker)) {
    if (!DoIfThereIsMemory([&] { Look(*look, *base, maker, powers); })) PictureNews();
    if (const auto time = maker.TakeReadTime()) NoteReadTime(*time);
    const CLockGuard guard(m_lock);
    --m_nLooking;
    if (IsIdle()) m_idle.notify_all();
    // The place that it leaves is one for another, which may have found all taken.
    if (!MayLook(worker)) m_work.notify_all();
  }
}

bool COverviewCore::MayLook(int worker) const {
  return worker < kLongLookers || m_pPlan->ViewTransform() < kLongTransform;
}

// Nothing but what is done when there is nothing else to do.
bool COverviewCore::IsIdle() {
  return m_nLooking == 0 && m_carriers.empty() && !m_pPlan->HasNext(!m_bPaused, m_bSlow);
}

std::optional<COverviewCore::SLook> COverviewCore::WaitForLook(int worker) {
  CLockGuard guard(m_lock);
  while (!m_bEnd) {
    if (MayLook(worker) && m_nLooking < (m_bSlow ? 1 : kLookers)) {
      if (auto look = NextLook()) {
        ++m_nLooking;
        return look;
      }
    }
    guard.Wait(m_work);
  }
  return std::nullopt;
}

std::optional<COverviewCore::SLook> COverviewCore::NextLook() {
  SLook look;
  if (m_carriers.empty()) {
    look.row = m_pPlan->Next(!m_bPaused, m_bSlow);
    return look.row ? std::optional(std::move(look)) : std::nullopt;
  }
  look.carrier = std::move(m_carriers.front());
  m_carriers.pop_front();
  while (m_carriers.size() > kMostCarriers) {
    look.unanswered.push_back(std::move(m_carriers.back()));
    m_carriers.pop_back();
  }
  return look;
}

void COverviewCore::Look(const SLook& look, CBaseLevels& base, CRowMaker& maker, SRowPowers& powers) {
  if (look.row) DoTask(*look.row, base, maker, powers);
  for (const SCarrierTask& task : look.unanswered) Answer(task, std::nullopt);
  if (!look.carrier) return;
  const auto goesOn = [this] {
    const CLockGuard guard(m_lock);
    return !m_bEnd;
  };
  std::optional<double> found;
  const bool searched = DoIfThereIsMemory(
      [&] { found = carvello::FindCarrier(maker.Source(), m_recording.nSampleRate, look.carrier->request, goesOn); });
  Answer(*look.carrier, found);
  if (!searched) PictureNews();
  if (!maker.Problem().empty()) Fail(maker.Problem());
}

void COverviewCore::Answer(const SCarrierTask& task, std::optional<double> frequency) {
  const CLockGuard guard(m_callLock);
  if (!m_bMute && task.answer) task.answer(frequency);
}

void COverviewCore::FindCarrier(const SCarrierRequest& request, std::function<void(std::optional<double>)> answer) {
  {
    const CLockGuard guard(m_lock);
    m_carriers.push_front({request, std::move(answer)});
  }
  m_work.notify_all();
}

bool COverviewCore::IsWanted(const SRowTask& task) const {
  const CLockGuard guard(m_lock);
  return !m_bEnd && (task.nView == 0 || task.nView == m_pPlan->View());
}

void COverviewCore::DoTask(const SRowTask& task, CBaseLevels& base, CRowMaker& maker, SRowPowers& powers) {
  const std::int64_t transforms = task.grid.Transforms(task.nRow);
  const auto wanted = [&] { return IsWanted(task); };
  for (;;) {
    const ERowState state =
        task.bDetail ? m_details.State(task.grid, task.nRow, task.nFirstCell, task.nEndCell) : base.State(task.nRow);
    const ERowState next = NextState(state, transforms);
    // The recording's last row may be a short one, of which all is no more than that.
    const bool small =
        task.bDetail && transforms < task.grid.Transforms(0) && transforms <= StateTransforms(task.target, transforms);
    const bool beyond = next > task.target && !small;
    if (state >= task.target || beyond) return;
    const ERowEnd end = maker.Make(task.grid, task.nRow, state, next, wanted, powers);
    if (end == ERowEnd::Unreadable) Fail(maker.Problem());
    if (end != ERowEnd::Made) return;
    if (task.bDetail) {
      m_details.Take(task.grid, task.nRow, task.nFirstCell, task.nEndCell, state, next, powers);
    } else {
      base.Take(task.nRow, state, next, powers);
    }
    PictureNews();
  }
}

void COverviewCore::NoteReadTime(std::chrono::duration<double> time) {
  const CLockGuard guard(m_lock);
  m_readTimes[m_nReadTimes++] = time.count();
  if (m_nReadTimes < m_readTimes.size()) return;
  m_nReadTimes = 0;
  std::sort(m_readTimes.begin(), m_readTimes.end());
  const double median = m_readTimes[m_readTimes.size() / 2];
  if (m_bSlow) {
    m_bSlow = median > kSlowAlone;
  } else {
    m_bSlow = median > kSlowAmongEight;
  }
  if (!m_bSlow) m_work.notify_all();
}

}  // namespace carvello
