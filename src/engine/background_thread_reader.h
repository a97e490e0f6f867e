// CBackgroundThreadReader: the worker that reads the input once, converts it block by block and feeds the chain of
// writers. It owns the writers of a job: makes them, gives them their entries, closes them and destroys them.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "dsp/dsp_binding.h"
#include "dsp/primitives.h"
#include "engine/background_thread_base.h"
#include "engine/background_thread_writer.h"
#include "engine/block_pool.h"
#include "engine/block_reader.h"
#include "engine/output_result.h"
#include "input/wave_file_reader.h"

namespace carvello {

class CBackgroundThreadReader final : public CBackgroundThreadBase {
 public:
  explicit CBackgroundThreadReader(const DspBinding& dsp) : m_dsp(dsp) {}
  ~CBackgroundThreadReader() override;

  // Before the thread is started: who hears of progress, in ten-thousandths.
  void SetProgressTarget(IMessageTarget* target, std::uint32_t progressMessage);
  // Before the start request: the input's files in playing order, and whether their 32-bit floats already stand at
  // 16-bit full scale.
  void SetInput(std::vector<std::string> files, bool floatScale);

  // A job is in progress. False as soon as it begins to stop; the files are closed when the queue has run empty.
  bool IsRunning() const { return m_bRunning; }

  // Of the last job, in the order of its writers; to be read when the worker is idle.
  const std::vector<SOutputResult>& Results() const { return m_results; }
  std::int64_t BytesRead() const { return m_llBytesRead; }
  // Why the input could not be read to its end; empty when it could.
  const std::string& InputError() const { return m_strInputError; }

 private:
  void HandleRequest(CBackgroundRequest& request, std::uint32_t remaining) override;
  void CreateWriters(std::int32_t count);
  void GiveEntry(std::int32_t writer, const OutputEntry& entry);
  void WriterFinished();
  void StartJob(const CBackgroundRequest& request);
  void ReadBlock();
  void HandOnBlock(std::int32_t frames);
  void StopJob();

  bool OpenFile(std::int64_t& dataSize);
  bool FindFirstFile(std::int64_t& remaining);
  bool OpenNextFile();
  void EndOfFile(bool blockRead);
  bool AnyWriterBusy() const;
  void ReplayFileLog();
  void LogSize(std::int64_t bytes);
  void LogStatistics();
  void CloseWriters();
  void InputFails(const std::string& reason);

  const DspBinding& m_dsp;
  IMessageTarget* m_pProgressTarget = nullptr;
  std::uint32_t m_nProgressMessage = 0;

  CWaveFileReader m_file;
  CBlockReader m_blockReader;
  std::vector<std::string> m_files;
  std::size_t m_nFile = 0;  // index of the file being read
  std::string m_strFirstFile;
  std::int64_t m_llSeek = 0;        // frames skipped at the start of the input
  std::int64_t m_llTotalBytes = 0;  // of the whole input
  std::int64_t m_llBytesRead = 0;   // in this job
  std::string m_strInputError;
  std::atomic<bool> m_bRunning = false;

  std::vector<std::unique_ptr<CBackgroundThreadWriter>> m_writers;
  std::int32_t m_nActiveWriters = 0;  // writers that have not reached the end of their entry
  std::vector<SOutputResult> m_results;

  CBlockPool m_blocks{kBlockFrames};
  std::mutex m_blockDoneLock;
  std::condition_variable m_blockDone;   // a writer is through with a block
  std::shared_ptr<SComplex[]> m_pBlock;  // the block being filled, or waiting to be handed on
  bool m_bBlockWaits = false;            // the buffer holds a block that the writers had no room for
  bool m_bInputEnded = false;            // nothing more is read; a block that still waits is handed on first
  std::uint64_t m_nBlocksHandedOn = 0;
  std::uint64_t m_nProgress = 0;  // told last, in ten-thousandths
  std::int32_t m_nReads = 0;
  std::int64_t m_nCpuStart = 0;   // milliseconds
  std::int64_t m_nWallStart = 0;  // milliseconds
};

}  // namespace carvello
