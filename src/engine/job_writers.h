// CJobWriters: the writing side of a job: its entries, and the threads that have them in hand.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "dsp/dsp_binding.h"
#include "engine/background_thread_base.h"
#include "engine/background_thread_writer.h"
#include "engine/engine_kind.h"
#include "engine/entry_writer.h"
#include "engine/output_account.h"
#include "engine/output_buffer.h"
#include "engine/spectrum_block.h"
#include "recording/write_policy.h"
#include "support/platform.h"

namespace carvello {

// A block that is given out, and what the writers have to know of it.
struct SGivenBlock {
  SharedBlock samples;
  std::shared_ptr<CSpectrumBlock> spectrum;  // nothing in a job whose entries all go by the library
  std::int64_t llPosition = 0;               // of its first frame in the recording
  std::int32_t nFrames = 0;
  bool bStretchEnds = false;  // see kStretchFrames
};

// Used on the reader's thread; everything before Create also on the owner's.
class CJobWriters {
 public:
  CJobWriters(const DspBinding& dsp, CBackgroundThreadBase& reader) : m_dsp(dsp), m_reader(reader) {}
  ~CJobWriters();
  CJobWriters(const CJobWriters&) = delete;
  CJobWriters& operator=(const CJobWriters&) = delete;

  void SetSaveInterval(std::chrono::milliseconds interval) { m_saveInterval = interval; }
  void SetConverterMaker(ConverterMaker maker) { m_makeConverter = maker; }
  void SetGroups(std::size_t groups) { m_nMostGroups = groups; }
  CBufferBudget& BufferBudget() { return m_budget; }

  // A writer to each entry; the accounts of those for which there is no memory fail.
  void Create(const std::vector<std::unique_ptr<COutputAccount>>& accounts, const std::vector<EEngine>& engines);
  // Lets an entry begin, on its thread, so that all of them design their filters side by side. Why it cannot; nothing
  // when it can.
  const char* Begin(std::size_t entry, const SWritePolicy& policy);
  // So many frames of the input never come.
  void TellSkipped(std::int64_t frames);

  // Whether one of them is so far behind that the next block has to wait, and a wait for that, of a millisecond at
  // most.
  bool IsAnyBusy() const;
  void WaitForRoom();
  // Either all get the block or, where there is no memory, none.
  void GiveOut(const SGivenBlock& block);

  std::size_t Threads() const { return m_threads.size(); }
  // Closes all files and ends all threads.
  void Close(bool byUser) noexcept;
  // Behind Close; nothing where one could not be made.
  CEntryWriter* Entry(std::size_t entry) const { return entry < m_entries.size() ? m_entries[entry].get() : nullptr; }
  void Clear() noexcept;

 private:
  std::unique_ptr<CBackgroundThreadWriter> MakeThread(std::string name, std::size_t entries, std::size_t files);

  const DspBinding& m_dsp;
  CBackgroundThreadBase& m_reader;
  std::chrono::milliseconds m_saveInterval = kSaveInterval;
  ConverterMaker m_makeConverter = MakeConverter;
  std::size_t m_nMostGroups = platform::ProcessorCount();

  CBufferBudget m_budget;
  std::vector<std::unique_ptr<CEntryWriter>> m_entries;  // null where one could not be made
  std::vector<std::size_t> m_threadOf;                   // of each entry
  std::mutex m_blockDoneLock;
  std::condition_variable m_blockDone;  // a writer is through with a block
  int m_nStartTries =
      CThinThread::kStartTries;  // of each thread: where one could not be had, the next ones wait for none
  std::vector<std::unique_ptr<CBackgroundThreadWriter>> m_threads;  // null where one could not be made or started
  std::vector<CBackgroundThreadBase::RequestPtr> m_givenOut;        // room for a request to each thread
};

// To which of so many groups each entry goes: those with the most to do first, each to the group that has the least so
// far. Groups help each other with the transforms only, so what their entries cost is to be the same. Entries that do
// not go by the spectrum have none, which is 0 as well.
std::vector<std::size_t> DealToGroups(const std::vector<std::unique_ptr<COutputAccount>>& accounts,
                                      const std::vector<EEngine>& engines, std::size_t groups);

}  // namespace carvello
