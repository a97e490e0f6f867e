// CBackgroundThreadReader: the worker that reads the input once, converts it block by block and gives every block to
// all writers. It owns the writers of a job: makes them, gives them their entries, closes them and destroys them.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "dsp/dsp_binding.h"
#include "dsp/primitives.h"
#include "engine/background_thread_base.h"
#include "engine/background_thread_writer.h"
#include "engine/block_pool.h"
#include "engine/input_file.h"
#include "engine/output_account.h"
#include "engine/output_result.h"
#include "input/recording_set.h"

namespace carvello {

class CBackgroundThreadReader final : public CBackgroundThreadBase {
 public:
  explicit CBackgroundThreadReader(const DspBinding& dsp) : m_dsp(dsp) {}
  ~CBackgroundThreadReader() override;

  // Before the thread is started: who hears of progress, in ten-thousandths.
  void SetProgressTarget(IMessageTarget* target, std::uint32_t progressMessage);
  // How long an output may hold samples back from its file; for tests.
  void SetSaveInterval(std::chrono::milliseconds interval) { m_saveInterval = interval; }

  // Before the requests of a job, on the owner's thread: the input as it was analysed, then the entries, in the order
  // of the writers, and how each of them is written. All that the job needs to tell how it ended is made here.
  void SetInput(std::vector<SRecordingFile> files, const WAVEFORMATEXTENSIBLE& format, bool floatScale);
  void SetOutputs(const std::vector<const OutputEntry*>& entries);
  void SetPolicies(std::vector<SWritePolicy> policies) { m_policies = std::move(policies); }  // after SetOutputs
  // The first frame that any entry wants.
  std::int64_t FirstFrame() const { return m_llFirstFrame; }

  // A job is in progress. False when its files are closed.
  bool IsRunning() const { return m_bRunning && IsThreadRunning(); }
  // Asks for the end of the job, on the owner's thread; once a job.
  void PostStop() noexcept;

  // Of the entries of SetOutputs, at any moment, on the owner's thread.
  std::vector<SEntryState> EntryStates() const;
  // Of the last job, in the order of its writers; to be read when the worker is idle.
  const std::vector<SOutputResult>& Results() const { return m_results; }
  std::vector<SOutputResult> TakeResults() noexcept { return std::move(m_results); }
  std::int64_t BytesRead() const { return m_llBytesRead; }
  // Why the input could not be read to its end; empty when it could.
  const std::string& InputError() const { return m_strInputError; }

 private:
  void HandleRequest(CBackgroundRequest& request, std::uint32_t remaining) override;
  void OnException(const CBackgroundRequest& request, const char* reason) noexcept override;
  void CreateWriters(std::int32_t count);
  void GiveEntry(std::int32_t writer, const OutputEntry& entry);
  void EntryFails(std::size_t entry, std::string_view reason) noexcept;
  void WriterFinished() noexcept;
  void StartJob(const CBackgroundRequest& request);
  void ReadBlock();
  void HandOnBlock(std::int32_t frames);
  void GiveOut(std::int32_t frames);
  void PostEnd();
  void StopJob(bool byUser) noexcept;

  bool OpenFile();
  bool FindFirstFile(std::int64_t& remaining);
  bool OpenNextFile();
  void EndOfFile(bool blockRead);
  bool AnyWriterBusy() const;
  void TellProgress(std::uint64_t progress) noexcept;
  void TellProgressOfReading() noexcept;
  void CloseFile() noexcept;
  void ReplayFileLog();
  void LogSize(std::int64_t bytes) noexcept;
  void LogStatistics() noexcept;
  void CloseWriters() noexcept;
  void InputFails(std::string_view reason) noexcept;
  std::int64_t FramesIn(const SRecordingFile& file) const;

  const DspBinding& m_dsp;
  IMessageTarget* m_pProgressTarget = nullptr;
  std::uint32_t m_nProgressMessage = 0;
  std::chrono::milliseconds m_saveInterval = kSaveInterval;

  CInputFile m_file;
  std::vector<SRecordingFile> m_files;
  std::vector<SWritePolicy> m_policies;  // of each writer
  std::uint32_t m_nFrameBytes = 0;       // as the analysis has it
  std::size_t m_nFile = 0;               // index of the file being read
  std::string m_strFirstFile;
  std::int64_t m_llFirstFrame = 0;
  std::int64_t m_llSeek = 0;        // frames skipped at the start of the input
  std::int64_t m_llTotalBytes = 0;  // of the whole input
  std::int64_t m_llBytesRead = 0;   // in this job
  std::string m_strInputError;      // room for a long one is made before the job
  bool m_bStopped = false;          // by the user
  std::atomic<bool> m_bRunning = false;
  RequestPtr m_pStopRequest;

  std::vector<std::unique_ptr<COutputAccount>> m_accounts;
  std::vector<std::unique_ptr<CBackgroundThreadWriter>> m_writers;  // null where one could not be made
  std::vector<RequestPtr> m_givenOut;                               // room for a request to each writer
  std::int32_t m_nActiveWriters = 0;  // writers that have not reached the end of their entry
  bool m_bAccountsOpen = false;
  std::vector<SOutputResult> m_results;

  CBlockPool m_blocks{kBlockFrames};
  std::mutex m_blockDoneLock;
  std::condition_variable m_blockDone;   // a writer is through with a block
  std::shared_ptr<SComplex[]> m_pBlock;  // the block being filled, or waiting to be handed on
  bool m_bBlockWaits = false;            // the buffer holds a block that the writers had no room for
  bool m_bStretchEnds = false;           // with the block in the buffer, see kStretchFrames
  std::uint32_t m_nStretchFrames = 0;    // read of the present stretch
  bool m_bInputEnded = false;            // nothing more is read; a block that still waits is handed on first
  std::uint64_t m_nProgress = 0;         // told last, in ten-thousandths
  std::int32_t m_nReads = 0;
  std::int64_t m_nCpuStart = 0;   // milliseconds
  std::int64_t m_nWallStart = 0;  // milliseconds
};

}  // namespace carvello
