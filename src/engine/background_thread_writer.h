// CBackgroundThreadWriter: the worker that turns the input's samples into one entry's output. The reader gives every
// block to all writers of a job: they all read the same block and change none.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <string_view>

#include "dsp/dsp_binding.h"
#include "dsp/primitives.h"
#include "engine/background_thread_base.h"
#include "engine/output_account.h"
#include "engine/output_buffer.h"
#include "engine/output_entry.h"
#include "recording/wave_file_data.h"

namespace carvello {

// Made, started, stopped and destroyed by the reader, which outlives it. The library's table and the account outlive
// both.
class CBackgroundThreadWriter final : public CBackgroundThreadBase {
 public:
  // `blockDone` is notified whenever the writer is through with a block.
  CBackgroundThreadWriter(const DspBinding& dsp, CBackgroundThreadBase& reader, std::condition_variable& blockDone,
                          COutputAccount& account);
  ~CBackgroundThreadWriter() override;

  // Before the thread is started: how long samples may wait for their way into the file, and how that is written.
  void SetSaveInterval(std::chrono::milliseconds interval);
  void SetPolicy(const SWritePolicy& policy) { m_output.SetPolicy(policy); }

  // On the reader's thread. The requests for it are taken beforehand, so neither can fail.
  void GiveBlock(RequestPtr request) noexcept;
  void PostClose() noexcept;
  // Blocks given and not yet done with.
  std::uint64_t BlocksAhead() const noexcept { return m_nBlocksGiven - m_nBlocksDone; }

  bool IsFileOpen() const noexcept { return m_bFileOpen; }
  // The entry's end was reached, or it failed: no more blocks are wanted.
  bool IsFinished() const noexcept { return m_bFinished; }
  // Once the writer has been stopped: closes the entry's account with what its files hold.
  void CloseAccount(const SJobEnd& end) noexcept;

 private:
  void HandleRequest(CBackgroundRequest& request, std::uint32_t remaining) override;
  void OnWakeTimeout() noexcept override;
  template <typename TStep>
  void Guard(TStep step) noexcept;
  void StartEntry(const OutputEntry& entry);
  void PrepareDownconverter();
  void LogEntry();
  void DescribeOutput();
  void InputSkipped(std::int64_t samples);
  void ProcessBlock(const CBackgroundRequest& request);
  void CloseOutput() noexcept;

  bool TrimToEntry(const SComplex*& data, std::int32_t& count);
  void Downconvert(const SComplex* data, std::int32_t count);
  void CompleteOutput();
  void StoreOutput(std::uint32_t count);
  void GrowWorkBuffer(std::int32_t count);
  void CheckWritten(bool written);
  void Finish() noexcept;
  void Fail(std::string_view reason) noexcept;

  const DspBinding& m_dsp;
  CBackgroundThreadBase& m_reader;
  std::condition_variable& m_blockDone;
  COutputAccount& m_account;
  const OutputEntry* m_pEntry = nullptr;
  RequestPtr m_pFinishedNotice;  // for the reader
  RequestPtr m_pCloseRequest;
  CWaveFileData m_output;
  COutputBuffer m_buffer;
  ComplexBuffer m_pPiece;  // the stretch of input that is being shifted and decimated
  std::uint32_t m_hDsp;

  std::atomic<bool> m_bFileOpen = false;
  std::atomic<bool> m_bFinished = false;
  std::uint64_t m_nBlocksGiven = 0;  // the reader's thread only
  std::atomic<std::uint64_t> m_nBlocksDone = 0;
  bool m_bStarted = false;            // the entry's first sample was met
  std::int64_t m_llSkip = 0;          // input samples before the entry starts
  std::int64_t m_llLeft = 0;          // input samples still to process; 0 means no limit
  std::int64_t m_llInputSamples = 0;  // given to the downconverter
  std::int64_t m_llOutputSamples = 0;
  std::int32_t m_nDataCalls = 0;

  std::int32_t m_nWorkCapacity = 0;  // samples
  ComplexBuffer m_pWork;             // the output of a block
};

}  // namespace carvello
