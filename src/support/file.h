// CFile: one open file, closed by its owner's end. Unbuffered, with its own 64-bit position; reads and writes go to the
// system as they are asked for, so a killed process loses nothing that Write had accepted.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "support/platform.h"

namespace carvello {

class CFile {
 public:
  CFile() = default;
  ~CFile() { Close(); }
  CFile(CFile&& other) noexcept;
  CFile& operator=(CFile&& other) noexcept;
  CFile(const CFile&) = delete;
  CFile& operator=(const CFile&) = delete;

  // Closes what was open. False on failure; platform::LastError() then holds the reason.
  bool Open(const std::string& path, platform::EOpenMode mode);
  // False when the system tells only now that something written is lost. True when nothing is open.
  bool Close();
  bool IsOpen() const { return m_hFile != platform::kNoFile; }

  // Bytes read; less than asked for at the end of the file or on a read error, which ReadError() tells apart. That a
  // file gives less than the length that the system tells of it is an error.
  std::size_t Read(void* buffer, std::size_t bytes);
  // The system's code when the last Read failed, 0 when it did not.
  std::uint32_t ReadError() const { return m_nReadError; }
  // The system's code of the first Read, Seek or Length that failed since the file was opened, 0 when none did: for
  // whoever looks at many places, and must not take what could not be read for what is not there.
  std::uint32_t FirstError() const { return m_nFirstError; }
  // True when all bytes were read.
  bool ReadExactly(void* buffer, std::size_t bytes) { return Read(buffer, bytes) == bytes; }
  // Bytes written; less than asked for on failure.
  std::size_t Write(const void* buffer, std::size_t bytes);

  std::int64_t Position() const { return m_nPosition; }
  bool Seek(std::int64_t position);    // absolute; false for a negative position
  bool Truncate(std::int64_t length);  // cuts the file's end off; the position stays
  std::int64_t Length() const;         // bytes, -1 when it cannot be had
  // When it was changed last, in nanoseconds since 1970 UTC; what is written behind that sets it anew.
  bool SetModifiedTime(std::int64_t nanoseconds);
  // Waits until all that was written stands on the medium. False when some of it is lost.
  bool Sync();
  bool SyncData();  // the bytes, and what it takes to find them again
  // Of the open file, whatever its name leads to by now; nothing when it cannot be had.
  std::optional<platform::FileStatus> Status() const;

  // A number to tell handles apart in a log; 0 when closed.
  std::uint32_t LogId() const { return static_cast<std::uint32_t>(m_hFile); }

 private:
  std::size_t ReadOnce(void* buffer, std::size_t bytes);
  // Whether a read that ended without an error did so in front of the file's end.
  bool GoesOn(std::size_t done, std::size_t bytes) const;
  void Note(std::uint32_t error) const;

  platform::FileHandle m_hFile = platform::kNoFile;
  std::int64_t m_nPosition = 0;
  std::uint32_t m_nReadError = 0;
  mutable std::uint32_t m_nFirstError = 0;
};

}  // namespace carvello
