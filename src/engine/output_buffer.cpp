#include "engine/output_buffer.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

namespace carvello {

namespace {

constexpr std::int64_t kLeastBytes = 65'536;

}  // namespace

bool CBufferBudget::Take(std::int64_t bytes) noexcept {
  std::int64_t left = m_nLeft;
  while (left >= bytes) {
    if (m_nLeft.compare_exchange_weak(left, left - bytes)) return true;
  }
  return false;
}

void COutputBuffer::Begin(std::uint32_t bits, std::int64_t longestStretch) {
  m_nBits = bits;
  m_nLongestStretch = longestStretch;
  m_nFill = m_nStretch = m_nSaved = m_nDropped = 0;
  m_bUntold = false;
  m_lastSave = Clock::now();
}

std::uint8_t* COutputBuffer::Reserve(std::uint32_t bytes) {
  if (End() + bytes > kBytes) {
    // The whole stretch does not fit behind what is there. One that no buffer holds ends here.
    if (m_nFill == 0) EndStretch();
    if (!WriteBlock()) return nullptr;
  }
  return MakeRoom(bytes) ? At(End()) : nullptr;
}

void COutputBuffer::EndStretch() {
  m_nFill += m_nStretch;
  m_nStretch = 0;
}

bool COutputBuffer::Flush() {
  EndStretch();
  const bool written = WriteBlock();
  LetGo();
  return written;
}

bool COutputBuffer::IsSaveDue(Clock::time_point now) {
  if (SettledEnd() <= m_nSaved && !m_bUntold) {
    if (m_nStretch == 0) m_lastSave = now;
    return false;
  }
  // Sizes must not tell of samples that may yet move to the next part.
  return m_nSaved <= SettledEnd() && now - m_lastSave >= m_saveInterval;
}

// What is in the file needs no place in memory any more: outputs that bring little leave the budget to the others.
bool COutputBuffer::Save() {
  if (!Write(SettledEnd(), ETell::Now)) return false;
  if (m_nSaved == End()) {
    m_nDropped = m_nSaved;
    LetGo();
  }
  return true;
}

// Where the bytes end of which it is certain that they belong to the present block, or that it does not matter. A
// stretch that may yet turn out too long for it waits for its end.
std::uint32_t COutputBuffer::SettledEnd() const {
  return !m_file.IsSplit() || m_nFill + m_nLongestStretch <= kBytes ? End() : m_nFill;
}

// What can be written at least for a while.
std::uint32_t COutputBuffer::WritableEnd() const {
  return m_file.CanSplitBefore() ? End() : SettledEnd();
}

std::uint8_t* COutputBuffer::At(std::uint32_t place) const {
  return reinterpret_cast<std::uint8_t*>(m_pBytes.get()) + (place - m_nDropped);
}

// For so many bytes behind those that are there. Where the budget has no more, what is there is written, and its place
// is used again; only what is asked for at once takes more than the budget has.
bool COutputBuffer::MakeRoom(std::uint32_t bytes) {
  const auto wanted = [&] { return std::int64_t{End()} - m_nDropped + bytes; };
  if (wanted() <= m_nCapacity || Grow(wanted(), false)) return true;
  if (!Write(WritableEnd(), ETell::Later)) return false;
  DropWritten();
  if (wanted() > m_nCapacity && !Grow(wanted(), true)) throw std::bad_alloc();
  return true;
}

bool COutputBuffer::Grow(std::int64_t bytes, bool atAnyRate) {
  std::int64_t capacity = std::max(m_nCapacity, kLeastBytes);
  while (capacity < bytes) capacity *= 2;
  capacity = std::max(std::min<std::int64_t>(capacity, kBytes), bytes);
  const std::int64_t more = capacity - m_nCapacity;
  if (atAnyRate) {
    m_budget.TakeAtAnyRate(more);
  } else if (!m_budget.Take(more)) {
    return false;
  }
  ComplexBuffer place(AllocComplex((capacity + std::int64_t{sizeof(SComplex)} - 1) / std::int64_t{sizeof(SComplex)}));
  if (!place) {
    m_budget.GiveBack(more);
    return false;
  }
  if (m_pBytes) std::memcpy(place.get(), m_pBytes.get(), End() - m_nDropped);
  m_pBytes = std::move(place);
  m_nCapacity = capacity;
  return true;
}

void COutputBuffer::DropWritten() {
  if (m_pBytes) std::memmove(m_pBytes.get(), At(m_nSaved), End() - m_nSaved);
  m_nDropped = m_nSaved;
}

void COutputBuffer::LetGo() noexcept {
  m_pBytes.reset();
  m_budget.GiveBack(std::exchange(m_nCapacity, 0));
}

// Of the present block, up to `end`. Its first piece is the place where a part may end.
bool COutputBuffer::Write(std::uint32_t end, ETell tell) {
  if (tell == ETell::Now) m_lastSave = Clock::now();
  if (end <= m_nSaved && (tell == ETell::Later || !m_bUntold)) return true;
  end = std::max(end, m_nSaved);
  const bool written = m_file.Write(At(m_nSaved), (end - m_nSaved) / (m_nBits / 8), m_nBits, m_nSaved == 0, tell);
  m_nSaved = end;
  m_bUntold = tell == ETell::Later;
  return written;
}

// What is there becomes one block of the file; the stretch that is not yet whole is the first of the next.
bool COutputBuffer::WriteBlock() {
  const bool written = m_nSaved > m_nFill ? m_file.SplitBefore(m_nSaved - m_nFill) : Write(m_nFill, ETell::Now);
  const std::uint32_t kept = std::max(m_nFill, m_nDropped);
  if (End() > kept) std::memmove(m_pBytes.get(), At(kept), End() - kept);
  m_nDropped = kept - m_nFill;
  m_nSaved = std::max(m_nSaved, m_nFill) - m_nFill;
  m_nFill = 0;
  return written;
}

}  // namespace carvello
