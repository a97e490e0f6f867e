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
#include "engine/block_listener.h"
#include "engine/block_pool.h"
#include "engine/engine_kind.h"
#include "engine/job_statistics.h"
#include "engine/job_writers.h"
#include "engine/output_account.h"
#include "engine/output_result.h"
#include "engine/recording_stream.h"
#include "engine/spectrum_block.h"
#include "fourier/block_transform.h"
#include "input/recording_set.h"

namespace carvello {

class CBackgroundThreadReader final : public CBackgroundThreadBase {
 public:
  explicit CBackgroundThreadReader(const DspBinding& dsp) : m_writers(dsp, *this) {}
  ~CBackgroundThreadReader() override;

  // Before the thread is started: who hears of progress, in ten-thousandths.
  void SetProgressTarget(IMessageTarget* target, std::uint32_t progressMessage);
  // How long an output may hold samples back from its file; for tests.
  void SetSaveInterval(std::chrono::milliseconds interval) { m_writers.SetSaveInterval(interval); }
  // What makes the converters of entries; for tests.
  void SetConverterMaker(ConverterMaker maker) { m_writers.SetConverterMaker(maker); }
  // What the outputs of a job may collect in memory; for tests.
  CBufferBudget& BufferBudget() { return m_writers.BufferBudget(); }
  // Into how many groups the entries of the spectrum are dealt at most, each with a thread.
  void SetGroups(std::size_t groups) { m_writers.SetGroups(groups); }

  // Who hears of every block that is given out; nobody: nullptr. Before the requests of a job.
  void SetListener(std::shared_ptr<IBlockListener> listener) { m_pListener = std::move(listener); }

  // Before the requests of a job, on the owner's thread: the input as it was analysed, then the entries, in the order
  // of the writers, how each of them is written, and by which road each goes (all by the library unless told). All that
  // the job needs to tell how it ended is made here.
  void SetInput(std::vector<SRecordingFile> files, const SSampleKind& kind, const WAVEFORMATEXTENSIBLE& format);
  void SetOutputs(const std::vector<const OutputEntry*>& entries);
  void SetPolicies(std::vector<SWritePolicy> policies) { m_policies = std::move(policies); }  // after SetOutputs
  void SetEngines(std::vector<EEngine> engines);                                              // after SetOutputs
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
  // On any thread: what grows as long as the job gets on with its reading, and the file of the input that is being
  // waited for now, or kNoFile.
  static constexpr int kNoFile = -1;
  std::uint64_t Steps() const noexcept { return m_nSteps; }
  int FileWaitedFor() const noexcept { return m_nFileWaitedFor; }
  // Why the input could not be read to its end; empty when it could.
  const std::string& InputError() const { return m_strInputError; }

 private:
  void HandleRequest(CBackgroundRequest& request, std::uint32_t remaining) override;
  void OnException(const CBackgroundRequest& request, const char* reason) noexcept override;
  void CreateWriters();
  void GiveEntry(std::size_t entry);
  void EntryFails(std::size_t entry, std::string_view reason) noexcept;
  void WriterFinished() noexcept;
  void StartJob(const CBackgroundRequest& request);
  void ReadBlock();
  void HandOnBlock(std::int32_t frames);
  void GiveOut(std::int32_t frames);
  void PostEnd();
  void StopJob(bool byUser) noexcept;

  bool UsesSpectrum() const { return m_pSpectra != nullptr; }
  void PrepareSpectrum();
  void TakeBlock();
  CInputFile& Samples() { return m_input.Samples(); }  // of the open file
  template <typename TStep>
  auto WaitForFile(std::size_t file, TStep step);
  bool OpenFile(std::size_t file);
  bool FindFirstFile(std::int64_t& remaining);
  bool OpenNextFile();
  void EndOfFile(bool blockRead);
  void TellProgress(std::uint64_t progress) noexcept;
  void TellProgressOfReading() noexcept;
  void CloseFile() noexcept;
  void ReplayFileLog();
  void CloseWriters() noexcept;
  void InputFails(std::string_view reason) noexcept;

  IMessageTarget* m_pProgressTarget = nullptr;
  std::uint32_t m_nProgressMessage = 0;

  CRecordingStream m_input;
  std::shared_ptr<IBlockListener> m_pListener;
  std::vector<SWritePolicy> m_policies;  // of each entry
  std::vector<EEngine> m_engines;        // of each entry
  std::string m_strFirstFile;
  std::int64_t m_llFirstFrame = 0;
  std::int64_t m_llSeek = 0;        // frames skipped at the start of the input
  std::int64_t m_llTotalBytes = 0;  // of the whole input
  std::int64_t m_llBytesRead = 0;   // in this job
  std::string m_strInputError;      // room for a long one is made before the job
  bool m_bStopped = false;          // by the user
  std::atomic<bool> m_bRunning = false;
  std::atomic<std::uint64_t> m_nSteps = 0;
  std::atomic<int> m_nFileWaitedFor = kNoFile;
  RequestPtr m_pStopRequest;

  std::vector<std::unique_ptr<COutputAccount>> m_accounts;
  std::int32_t m_nActiveWriters = 0;  // entries that have not reached their end
  bool m_bAccountsOpen = false;
  std::vector<SOutputResult> m_results;

  CBlockPool m_blocks{kHistoryFrames + kBlockFrames};
  std::unique_ptr<CBlockTransform> m_pTransform;
  std::unique_ptr<CSpectrumPool> m_pSpectra;  // nothing in a job whose entries all go by the library
  CJobWriters m_writers;                      // behind what its threads work with

  std::shared_ptr<SComplex[]> m_pBlock;  // the block being filled, or waiting to be handed on
  std::int64_t m_llBlockPosition = 0;    // of its first frame in the recording
  std::int64_t m_llNextPosition = 0;     // of the next one to read
  SharedBlock m_pLastBlock;              // the one before it, in a job that uses the spectrum
  std::int64_t m_nLastFrames = 0;        // in that
  bool m_bBlockWaits = false;            // the buffer holds a block that the writers had no room for
  bool m_bStretchEnds = false;           // with the block in the buffer, see kStretchFrames
  std::uint32_t m_nStretchFrames = 0;    // read of the present stretch
  bool m_bInputEnded = false;            // nothing more is read; a block that still waits is handed on first
  std::uint64_t m_nProgress = 0;         // told last, in ten-thousandths
  std::int32_t m_nReads = 0;
  CJobStatistics m_statistics;
};

}  // namespace carvello
