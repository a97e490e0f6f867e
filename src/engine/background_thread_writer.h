// CBackgroundThreadWriter: the worker that turns the input's samples into one entry's output. The writers of a job form
// a chain: each hands every block on to the next before it works on it. They all read the same block and change none.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <string>

#include "dsp/dsp_binding.h"
#include "dsp/primitives.h"
#include "engine/background_thread_base.h"
#include "engine/output_entry.h"
#include "engine/output_result.h"
#include "recording/wave_file_data.h"

namespace carvello {

// Made, started, stopped and destroyed by the reader, which outlives it. The library's table outlives both.
class CBackgroundThreadWriter final : public CBackgroundThreadBase {
 public:
  // `blockDone` is notified whenever the writer is through with a block.
  CBackgroundThreadWriter(const DspBinding& dsp, CBackgroundThreadBase& reader, std::condition_variable& blockDone);
  ~CBackgroundThreadWriter() override;

  // Before the thread is started: the entry that the start request will bring, so that Result() can name it even if the
  // thread never runs.
  void SetEntry(const OutputEntry& entry) { m_pEntry = &entry; }
  void SetNext(CBackgroundThreadWriter* next) { m_pNext = next; }

  // Gives a writer a block with `count` samples. Runs on the thread that hands on: the reader's, or that of the writer
  // before.
  static void HandOn(CBackgroundThreadWriter& writer, SharedBlock block, std::int32_t count);

  bool IsFileOpen() const { return m_bFileOpen; }
  // Whether the entry's last sample was processed. To be read when the writer has been stopped.
  bool ReachedEnd() const { return m_bFinished; }
  // Blocks that this writer is through with.
  std::uint64_t BlocksDone() const { return m_nBlocksDone; }
  // What became of the entry. To be read when the writer has been stopped.
  SOutputResult Result() const;

 private:
  void HandleRequest(CBackgroundRequest& request, std::uint32_t remaining) override;
  void StartEntry(const OutputEntry& entry);
  void LogEntry();
  void DescribeOutput();
  void InputSkipped(std::int64_t samples);
  void ProcessBlock(const CBackgroundRequest& request);
  void CloseOutput();

  bool TrimToEntry(const SComplex*& data, std::int32_t& count);
  void Downconvert(const SComplex* data, std::int32_t count);
  void CompleteOutput();
  std::int64_t OutputSamplesDue() const;
  void StoreOutput(std::uint32_t count);
  void GrowWorkBuffer(std::int32_t count);
  bool FlushOutput();
  void Finish();
  void Fail(const std::string& reason);

  const DspBinding& m_dsp;
  CBackgroundThreadBase& m_reader;
  std::condition_variable& m_blockDone;
  CBackgroundThreadWriter* m_pNext = nullptr;
  const OutputEntry* m_pEntry = nullptr;
  std::uint32_t m_hDsp;
  CWaveFileData m_output;
  std::string m_strError;  // the first failure; empty when all went well

  std::atomic<bool> m_bFileOpen = false;
  std::atomic<std::uint64_t> m_nBlocksDone = 0;
  bool m_bFinished = false;           // the entry's end was reached, or the output failed: blocks are only handed on
  bool m_bStarted = false;            // the entry's first sample was met
  std::int64_t m_llSkip = 0;          // input samples before the entry starts
  std::int64_t m_llLeft = 0;          // input samples still to process; 0 means no limit
  std::int64_t m_llInputSamples = 0;  // given to the downconverter
  std::int64_t m_llOutputSamples = 0;
  std::int32_t m_nDataCalls = 0;

  ComplexBuffer m_pPiece;            // the stretch of input that is being shifted and decimated
  std::int32_t m_nWorkCapacity = 0;  // samples
  ComplexBuffer m_pWork;             // the output of a block

  ComplexBuffer m_pOutput;          // collects output bytes, so that the file is written in large pieces
  std::uint32_t m_nOutputFill = 0;  // bytes
};

}  // namespace carvello
