// CWaveFileReader: one input file of an IQ recording, its RIFF or RF64 structure and where its samples lie.
// RF64 as published in EBU Tech 3306.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "input/scan_result.h"
#include "recording/info_texts.h"
#include "recording/wave_format.h"
#include "support/file.h"
#include "support/my_string_array.h"

namespace carvello {

enum class EFormatVerdict;
struct SDataSize;

// Used by one thread at a time. Every step leaves a line in Log(); nothing is thrown.
class CWaveFileReader {
 public:
  // Opens for reading with shared access that denies nobody, and logs the outcome. The file stays open until Close().
  bool Open(const std::string& fileName);
  // Closes the file, logs "Closing %s", forgets the name and zeroes the counters. Nothing when no file is open.
  void Close();
  bool IsOpen() const { return m_file.IsOpen(); }
  // The system's code when the file could not be opened, or the last read or seek failed; 0 when none did, also where a
  // file merely ends early.
  std::uint32_t ErrorCode() const { return m_nError != 0 ? m_nError : m_file.ReadError(); }

  // Streaming parse of the open file: true with the file positioned at the first sample byte, the format and the data
  // counters set. dataSize is the data chunk's size before rounding down to whole frames. False leaves the file open
  // for the caller to close.
  bool ParseWave(WAVEFORMATEXTENSIBLE& format, std::int64_t& dataSize);
  bool ParseRF64(WAVEFORMATEXTENSIBLE& format, std::int64_t& dataSize);

  // Analysis walk over every chunk of the file, never reading sample data. Opens and closes the file itself. True when
  // a data chunk was found. On false the result holds what was found up to there.
  bool ScanChunks(const std::string& fileName, SScanResult& result);

  const std::string& FileName() const { return m_strFileName; }
  // Of the open file; nothing when it cannot be had.
  std::optional<platform::FileStatus> Status() const { return m_file.Status(); }
  const WAVEFORMATEXTENSIBLE& Format() const { return m_format; }
  std::int64_t DataBytesTotal() const { return m_nDataBytesTotal; }
  std::int64_t DataStart() const { return m_nDataStart; }

  // Reads from a place of the file; bytes read.
  std::size_t ReadAt(std::int64_t position, void* buffer, std::size_t bytes);
  // The open file, for whoever looks for samples that no chunk holds.
  CFile& File() { return m_file; }

  CMyStringArray& Log() { return m_log; }
  const CMyStringArray& Log() const { return m_log; }

 private:
  // Absolute. False on failure.
  bool Seek(std::int64_t position);
  // Adds a line to the log, and the system's reason when there is one. Always false.
  bool Fail(const std::string& line);
  void ZeroCounters();
  EFormatVerdict ReadFormat(std::uint32_t size, WAVEFORMATEXTENSIBLE& format);
  // Whether the body at the file's position is a format that can be read: stands in front of it then, otherwise behind.
  bool HoldsFormat(std::uint32_t size);
  // Stands behind the header of the next chunk of that name in front of the samples. False when there is none.
  bool FindChunk(const char* name, std::uint32_t& size, bool& elad);
  // Behind the format: stands behind the header of the data chunk then. False when there is none.
  bool FindData(std::uint32_t& size, bool& elad);
  // Logs what is odd about the size. False when it cannot be had.
  bool TakeDataSize(const SDataSize& data);
  // The data begins here: takes over its format and the bytes to read of it. False when the chunk is empty.
  bool BeginData(const WAVEFORMATEXTENSIBLE& format, std::int64_t dataSize, std::int64_t total);

  std::string m_strFileName;
  CFile m_file;
  std::uint32_t m_nError = 0;  // of opening, seeking and asking for the length
  std::int64_t m_nDataBytesTotal = 0;
  std::int64_t m_nDataStart = 0;
  CMyStringArray m_log{200};
  WAVEFORMATEXTENSIBLE m_format;
};

// The five INFO texts of a file, by a walk with a reader of its own. True when at least one is not empty. A file that
// the system does not let be read leaves its reason in `problem`.
bool ReadInfoTexts(const std::string& fileName, SInfoTexts& texts, std::string* problem = nullptr);

}  // namespace carvello
