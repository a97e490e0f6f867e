// CEntryWriter: one entry of a job on its way from the blocks of input into its file. It has no thread of its own.
#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "engine/background_thread_base.h"
#include "engine/entry_converter.h"
#include "engine/output_account.h"
#include "engine/output_buffer.h"
#include "engine/output_entry.h"
#include "engine/worker_log.h"
#include "recording/wave_file_data.h"

namespace carvello {

// Made and destroyed by the reader, which outlives it, as the account does. From Start to Close it is used by one
// thread at a time, and nothing but these steps may fail it: whatever they cannot do ends the entry, and nothing else.
class CEntryWriter {
 public:
  CEntryWriter(std::unique_ptr<IEntryConverter> converter, CBackgroundThreadBase& reader, COutputAccount& account,
               CBufferBudget& budget);

  // Before Start: who hears of it, how long samples may wait for their way into the file, and how that is written.
  CWorkerLog& Log() { return m_log; }
  void SetSaveInterval(std::chrono::milliseconds interval) { m_buffer.SetSaveInterval(interval); }
  void SetPolicy(const SWritePolicy& policy) { m_output.SetPolicy(policy); }

  void Start() noexcept;
  // The reader sought its first block: so many frames never come.
  void InputSkipped(std::int64_t frames) noexcept;
  void Process(const SInputBlock& block, CConverterWork& work) noexcept;
  // Whether something has waited too long for its way into the file, and writing it.
  bool IsSaveDue(COutputBuffer::Clock::time_point now) noexcept;
  void Save() noexcept;
  void Close() noexcept;

  // On any thread.
  bool IsFileOpen() const noexcept { return m_bFileOpen; }
  // The entry's end was reached, or it failed: no more blocks are wanted.
  bool IsFinished() const noexcept { return m_bFinished; }

  // Once the thread that had it in hand has stopped: closes the entry's account with what its files hold.
  void CloseAccount(const SJobEnd& end) noexcept;

 private:
  template <typename TStep>
  void Guard(TStep step) noexcept;
  void StartEntry();
  bool PrepareConverter();
  void LogEntry();
  void DescribeOutput();
  void DescribeOrigin(SRecordingDescription& description) const;
  void ProcessBlock(const SInputBlock& block, CConverterWork& work);
  bool TrimToEntry(std::int32_t& offset, std::int32_t& count);
  void ConvertParts(const SBlockPart& part, CConverterWork& work);
  void Convert(const SBlockPart& part, CConverterWork& work);
  void NoteMark(std::int64_t frame);
  void CheckStretch();
  void CompleteOutput(std::int64_t spanEnd, CConverterWork& work);
  void StoreOutput(std::span<const SComplex> samples);
  bool StorePiece(std::span<const SComplex> samples);
  void CheckWritten(bool written);
  void Finish() noexcept;
  void Fail(std::string_view reason) noexcept;

  const OutputEntry& m_entry;
  CBackgroundThreadBase& m_reader;
  COutputAccount& m_account;
  CWorkerLog m_log;
  CBackgroundThreadBase::RequestPtr m_pFinishedNotice;  // for the reader
  CWaveFileData m_output;
  COutputBuffer m_buffer;
  std::unique_ptr<IEntryConverter> m_pConverter;

  std::atomic<bool> m_bFileOpen = false;
  std::atomic<bool> m_bFinished = false;
  bool m_bStarted = false;            // the entry's first sample was met
  bool m_bComplete = false;           // what the converter held back has come
  std::int64_t m_llSkip = 0;          // input samples before the entry starts
  std::int64_t m_llLeft = 0;          // input samples still to process; 0 means no limit
  std::int64_t m_llInputSamples = 0;  // given to the converter
  std::int64_t m_llGivenSamples = 0;  // by the converter
  std::int64_t m_llOutputSamples = 0;
  std::vector<SStretchMark> m_marks;
  std::int32_t m_nDataCalls = 0;
};

}  // namespace carvello
