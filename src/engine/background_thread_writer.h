// CBackgroundThreadWriter: a worker that brings the blocks of input into the outputs of the entries that it has in
// hand, one or a whole group. The reader gives every block to all writers of a job: they all read the same block and
// change none.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "engine/background_thread_base.h"
#include "engine/entry_writer.h"

namespace carvello {

// Made, started, stopped and destroyed by the reader, which outlives it; so do the entries that it is given.
class CBackgroundThreadWriter final : public CBackgroundThreadBase {
 public:
  // `blockDone` is notified whenever the writer is through with a block. `entries`: how many it is given at most.
  // `files`: how many of their files it brings to the medium at a time.
  CBackgroundThreadWriter(std::condition_variable& blockDone, std::size_t entries, std::size_t files);

  // Before the thread is started: how long the samples of its entries may wait for their way into the files.
  void SetSaveInterval(std::chrono::milliseconds interval);

  // On the reader's thread.
  void GiveEntry(CEntryWriter& entry);
  // The requests for them are taken beforehand, so neither can fail.
  void GiveBlock(RequestPtr request) noexcept;
  void PostClose() noexcept;
  // Of a group, those entries whose turn to begin has not come yet are left out; on any thread.
  void BeginNoMore() noexcept { m_bBeginNoMore = true; }
  // Blocks given and not yet done with.
  std::uint64_t BlocksAhead() const noexcept { return m_nBlocksGiven - m_nBlocksDone; }
  // None of the entries that it was given wants more blocks.
  bool IsFinished() const noexcept;

 private:
  void HandleRequest(CBackgroundRequest& request, std::uint32_t remaining) override;
  void OnWakeTimeout() noexcept override;
  void ProcessBlock(const CBackgroundRequest& request) noexcept;
  void SaveWhatIsDue() noexcept;

  std::condition_variable& m_blockDone;
  const std::size_t m_nFilesAtATime;
  RequestPtr m_pCloseRequest;
  std::vector<const CEntryWriter*> m_given;  // the reader's thread only
  std::vector<CEntryWriter*> m_entries;      // those begun; the writer's thread only
  std::atomic<bool> m_bBeginNoMore = false;
  std::vector<CEntryWriter*> m_due;  // room for all
  CConverterWork m_work;
  std::uint64_t m_nBlocksGiven = 0;  // the reader's thread only
  std::atomic<std::uint64_t> m_nBlocksDone = 0;
};

}  // namespace carvello
