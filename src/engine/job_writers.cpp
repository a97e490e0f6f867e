#include "engine/job_writers.h"

#include <algorithm>
#include <new>
#include <thread>
#include <utility>

#include "engine/side_by_side.h"
#include "support/text.h"

namespace carvello {

namespace {

constexpr std::uint32_t kMaxQueued = 3;       // requests waiting at one writer
constexpr std::uint64_t kMaxBlocksAhead = 3;  // blocks between the reader and the slowest writer
constexpr int kWriterPriority = -2;
constexpr std::chrono::milliseconds kBusyPause{1};
constexpr std::chrono::milliseconds kClosePause{10};

// What an entry of the spectrum costs beside its output samples, in samples: about as much as one of 5 kHz out of
// 10 MHz.
constexpr std::uint64_t kInputSamplesOfAnOutputSample = 2'000;

std::uint64_t CostOf(const OutputEntry& entry) {
  return entry.nOutputSampleRate + entry.nInputSampleRate / kInputSamplesOfAnOutputSample;
}

}  // namespace

std::vector<std::size_t> DealToGroups(const std::vector<std::unique_ptr<COutputAccount>>& accounts,
                                      const std::vector<EEngine>& engines, std::size_t groups) {
  std::vector<std::size_t> order;
  for (std::size_t i = 0; i < accounts.size(); ++i) {
    if (engines[i] == EEngine::Spectrum) order.push_back(i);
  }
  std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    return CostOf(accounts[a]->Entry()) > CostOf(accounts[b]->Entry());
  });
  std::vector<std::size_t> groupOf(accounts.size(), 0);
  std::vector<std::uint64_t> costs(groups, 0);
  for (const std::size_t entry : order) {
    const auto least = std::min_element(costs.begin(), costs.end());
    *least += CostOf(accounts[entry]->Entry());
    groupOf[entry] = static_cast<std::size_t>(least - costs.begin());
  }
  return groupOf;
}

CJobWriters::~CJobWriters() {
  for (const auto& thread : m_threads) {
    if (thread) thread->Stop();
  }
}

// A thread to each entry of the library, which shifts and filters the whole band for it. Those of the spectrum have
// little to do each, and are dealt to as many threads as there are processors.
void CJobWriters::Create(const std::vector<std::unique_ptr<COutputAccount>>& accounts,
                         const std::vector<EEngine>& engines) {
  Clear();
  m_nStartTries = CThinThread::kStartTries;
  const std::size_t count = accounts.size();
  m_entries.resize(count);
  const auto grouped = static_cast<std::size_t>(std::count(engines.begin(), engines.end(), EEngine::Spectrum));
  const std::size_t groups = std::min(std::max<std::size_t>(m_nMostGroups, 1), grouped);
  m_threadOf = DealToGroups(accounts, engines, groups);
  m_threads.reserve(count - grouped + groups);
  for (std::size_t i = 0; i < groups; ++i) {
    m_threads.push_back(MakeThread(Format("Group [%d]", static_cast<int>(i)), grouped,
                                   std::max<std::size_t>(kFilesSideBySide / groups, 1)));
  }
  for (std::size_t i = 0; i < count; ++i) {
    const std::string name = Format("Writer [%d]", static_cast<int>(i));
    if (engines[i] == EEngine::Library) {
      m_threadOf[i] = m_threads.size();
      m_threads.push_back(MakeThread(name, 1, 1));
    }
    try {
      auto entry = std::make_unique<CEntryWriter>(m_makeConverter(engines[i], m_dsp), m_reader, *accounts[i], m_budget);
      entry->Log().SetName(name);
      entry->SetSaveInterval(m_saveInterval);
      m_entries[i] = std::move(entry);
      if (!m_threads[m_threadOf[i]]) accounts[i]->Fail(kNotEnoughMemory);
    } catch (const std::bad_alloc&) {
      accounts[i]->Fail(kNotEnoughMemory);
    }
  }
  m_givenOut.resize(m_threads.size());
}

// Nothing without memory.
std::unique_ptr<CBackgroundThreadWriter> CJobWriters::MakeThread(std::string name, std::size_t entries,
                                                                 std::size_t files) {
  try {
    auto thread = std::make_unique<CBackgroundThreadWriter>(m_blockDone, entries, files);
    thread->SetName(std::move(name));
    thread->SetSaveInterval(m_saveInterval);
    m_reader.ShareLogWith(*thread);
    return thread;
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

const char* CJobWriters::Begin(std::size_t entry, const SWritePolicy& policy) {
  constexpr const char* kNoThread = "A thread could not be started";
  std::unique_ptr<CBackgroundThreadWriter>& thread = m_threads[m_threadOf[entry]];
  if (!thread) return kNoThread;
  m_entries[entry]->SetPolicy(policy);
  CBackgroundThreadBase::RequestPtr priority = thread->TakeRequest(request::kSetPriority);
  priority->nParam1 = kWriterPriority;
  thread->GiveEntry(*m_entries[entry]);
  if (thread->IsStarted()) return nullptr;
  if (!thread->Start(m_nStartTries)) {
    m_nStartTries = 1;
    // Blocks that nobody takes off its queue would pile up, the whole input in the end.
    thread.reset();
    return kNoThread;
  }
  if (thread->Priority() != kWriterPriority) thread->Post(std::move(priority));
  return nullptr;
}

void CJobWriters::TellSkipped(std::int64_t frames) {
  for (const auto& thread : m_threads) {
    if (!thread || !thread->IsStarted()) continue;
    CBackgroundThreadBase::RequestPtr skipped = thread->TakeRequest(request::kInputSkipped);
    skipped->llParam1 = frames;
    thread->Post(std::move(skipped));
  }
}

bool CJobWriters::IsAnyBusy() const {
  return std::any_of(m_threads.begin(), m_threads.end(), [](const auto& thread) {
    if (!thread || !thread->IsThreadRunning() || thread->IsFinished()) return false;
    // The queue alone does not hold the block that is being worked on.
    return thread->Queued() >= kMaxQueued || thread->BlocksAhead() >= kMaxBlocksAhead;
  });
}

void CJobWriters::WaitForRoom() {
  // In short steps, for requests to stop to come through; a notice that comes before the wait is not missed for long.
  std::unique_lock guard(m_blockDoneLock);
  m_blockDone.wait_for(guard, kBusyPause);
}

// To every writer from here, so that what one of them gets does not depend on another. All requests are there before
// the first is posted.
void CJobWriters::GiveOut(const SGivenBlock& block) {
  for (std::size_t i = 0; i < m_threads.size(); ++i) {
    CBackgroundThreadWriter* const thread = m_threads[i].get();
    m_givenOut[i].reset();
    if (thread == nullptr || thread->IsFinished()) continue;
    m_givenOut[i] = thread->TakeRequest(request::kDataBlock);
    m_givenOut[i]->nParam1 = block.bStretchEnds ? 1 : 0;
    m_givenOut[i]->nParam2 = block.nFrames;
    m_givenOut[i]->llParam1 = block.llPosition;
    m_givenOut[i]->block = block.samples;
    m_givenOut[i]->pSpectrum = block.spectrum;
  }
  for (std::size_t i = 0; i < m_threads.size(); ++i) {
    if (m_givenOut[i]) m_threads[i]->GiveBlock(std::move(m_givenOut[i]));
  }
}

void CJobWriters::Close(bool byUser) noexcept {
  for (const auto& thread : m_threads) {
    if (!thread) continue;
    // A user who stops a job does not wait for a thousand files to be created first.
    if (byUser) thread->BeginNoMore();
    thread->PostClose();
  }
  const auto isOpen = [](const auto& entry) { return entry && entry->IsFileOpen(); };
  while (std::any_of(m_entries.begin(), m_entries.end(), isOpen)) std::this_thread::sleep_for(kClosePause);
  for (const auto& thread : m_threads) {
    if (!thread) continue;
    thread->WaitIdle();
    thread->Stop();
  }
}

void CJobWriters::Clear() noexcept {
  m_givenOut.clear();
  m_threads.clear();
  m_entries.clear();
}

}  // namespace carvello
