#include "engine/output_buffer.h"

#include <cstring>

namespace carvello {

COutputBuffer::COutputBuffer(CWaveFileData& file) : m_file(file), m_pBytes(AllocComplex(kBytes / sizeof(SComplex))) {}

void COutputBuffer::Begin(std::uint32_t bits, std::int64_t longestStretch) {
  m_nBits = bits;
  m_nLongestStretch = longestStretch;
  m_nFill = m_nStretch = m_nSaved = 0;
  m_lastSave = Clock::now();
}

std::uint8_t* COutputBuffer::Reserve(std::uint32_t bytes) {
  if (m_nFill + m_nStretch + bytes > kBytes) {
    // The whole stretch does not fit behind what is there. One that no buffer holds ends here, and so does one that was
    // saved in part.
    if (m_nFill == 0 || m_nSaved > m_nFill) EndStretch();
    if (!WriteBlock()) return nullptr;
  }
  return reinterpret_cast<std::uint8_t*>(m_pBytes.get()) + m_nFill + m_nStretch;
}

void COutputBuffer::EndStretch() {
  m_nFill += m_nStretch;
  m_nStretch = 0;
}

bool COutputBuffer::Flush() {
  EndStretch();
  return WriteBlock();
}

bool COutputBuffer::SaveIfDue() {
  const Clock::time_point now = Clock::now();
  // A stretch that may yet turn out too long for this block waits for its end.
  const bool stretchFits = m_nFill + m_nLongestStretch <= kBytes;
  const std::uint32_t end = stretchFits ? m_nFill + m_nStretch : m_nFill;
  if (end <= m_nSaved) {
    if (m_nStretch == 0) m_lastSave = now;
    return true;
  }
  return now - m_lastSave < m_saveInterval || Write(end);
}

// Of the present block, up to `end`. Its first piece is the place where a part may end.
bool COutputBuffer::Write(std::uint32_t end) {
  m_lastSave = Clock::now();
  if (end <= m_nSaved) return true;
  const std::uint8_t* const bytes = reinterpret_cast<const std::uint8_t*>(m_pBytes.get()) + m_nSaved;
  const bool written = m_file.Write(bytes, (end - m_nSaved) / (m_nBits / 8), m_nBits, m_nSaved == 0);
  m_nSaved = end;
  return written;
}

// What is there becomes one block of the file; the stretch that is not yet whole is the first of the next.
bool COutputBuffer::WriteBlock() {
  const bool written = Write(m_nFill);
  auto* const bytes = reinterpret_cast<std::uint8_t*>(m_pBytes.get());
  std::memmove(bytes, bytes + m_nFill, m_nStretch);
  m_nFill = m_nSaved = 0;
  return written;
}

}  // namespace carvello
