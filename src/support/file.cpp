#include "support/file.h"

#include <utility>

namespace carvello {

CFile::CFile(CFile&& other) noexcept
    : m_hFile(std::exchange(other.m_hFile, platform::kNoFile)), m_nPosition(std::exchange(other.m_nPosition, 0)) {}

CFile& CFile::operator=(CFile&& other) noexcept {
  if (this != &other) {
    Close();
    m_hFile = std::exchange(other.m_hFile, platform::kNoFile);
    m_nPosition = std::exchange(other.m_nPosition, 0);
  }
  return *this;
}

bool CFile::Open(const std::string& path, platform::EOpenMode mode) {
  Close();
  m_nReadError = m_nFirstError = 0;
  m_hFile = platform::OpenFile(path, mode);
  return IsOpen();
}

bool CFile::Close() {
  const bool closed = !IsOpen() || platform::CloseFile(m_hFile);
  m_hFile = platform::kNoFile;
  m_nPosition = 0;
  return closed;
}

std::size_t CFile::Read(void* buffer, std::size_t bytes) {
  if (!IsOpen()) return 0;
  std::size_t done = ReadOnce(buffer, bytes);
  // A file that goes on where nothing came: it has grown meanwhile, or what is in it cannot be had.
  if (GoesOn(done, bytes)) done += ReadOnce(static_cast<char*>(buffer) + done, bytes - done);
  if (GoesOn(done, bytes)) m_nReadError = platform::MissingBytesError();
  Note(m_nReadError);
  return done;
}

std::size_t CFile::ReadOnce(void* buffer, std::size_t bytes) {
  const std::size_t done = platform::ReadFile(m_hFile, buffer, bytes, m_nReadError);
  m_nPosition += static_cast<std::int64_t>(done);
  return done;
}

bool CFile::GoesOn(std::size_t done, std::size_t bytes) const {
  return done < bytes && m_nReadError == 0 && Length() > m_nPosition;
}

std::size_t CFile::Write(const void* buffer, std::size_t bytes) {
  if (!IsOpen()) return 0;
  const std::size_t done = platform::WriteFile(m_hFile, buffer, bytes);
  m_nPosition += static_cast<std::int64_t>(done);
  return done;
}

void CFile::Note(std::uint32_t error) const {
  if (m_nFirstError == 0) m_nFirstError = error;
}

bool CFile::Seek(std::int64_t position) {
  if (!IsOpen() || position < 0) return false;
  if (!platform::SeekFile(m_hFile, position)) {
    Note(platform::LastError());
    return false;
  }
  m_nPosition = position;
  return true;
}

bool CFile::Truncate(std::int64_t length) {
  return IsOpen() && platform::TruncateFile(m_hFile, length);
}

std::int64_t CFile::Length() const {
  if (!IsOpen()) return -1;
  const std::int64_t length = platform::FileLength(m_hFile);
  if (length < 0) Note(platform::LastError());
  return length;
}

bool CFile::SetModifiedTime(std::int64_t nanoseconds) {
  return IsOpen() && platform::SetModifiedTime(m_hFile, nanoseconds);
}

bool CFile::Sync() {
  return IsOpen() && platform::SyncFile(m_hFile);
}

bool CFile::SyncData() {
  return IsOpen() && platform::SyncFileData(m_hFile);
}

std::optional<platform::FileStatus> CFile::Status() const {
  if (!IsOpen()) return std::nullopt;
  return platform::GetFileStatus(m_hFile);
}

}  // namespace carvello
