#include "engine/background_request.h"

#include <utility>

namespace carvello {

void CBackgroundRequest::Reset() noexcept {
  pOwner = nullptr;
  bCancelled = false;
  nCode = 0;
  nParam1 = nParam2 = 0;
  llParam1 = llParam2 = 0;
  strParam.clear();
  pEntry = nullptr;
  pWriter = nullptr;
  block.reset();
  pSpectrum.reset();
}

void CRequestQueue::Push(RequestPtr request) noexcept {
  CBackgroundRequest* const added = request.release();
  added->m_pNext = nullptr;
  (m_pLast != nullptr ? m_pLast->m_pNext : m_pFirst) = added;
  m_pLast = added;
  ++m_nSize;
}

CRequestQueue::RequestPtr CRequestQueue::Pop() noexcept {
  if (m_pFirst == nullptr) return nullptr;
  RequestPtr request(m_pFirst);
  m_pFirst = m_pFirst->m_pNext;
  if (m_pFirst == nullptr) m_pLast = nullptr;
  --m_nSize;
  return request;
}

void CRequestQueue::Clear() noexcept {
  while (m_pFirst != nullptr) Pop();
}

void CRequestQueue::Swap(CRequestQueue& other) noexcept {
  std::swap(m_pFirst, other.m_pFirst);
  std::swap(m_pLast, other.m_pLast);
  std::swap(m_nSize, other.m_nSize);
}

}  // namespace carvello
