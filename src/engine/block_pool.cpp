#include "engine/block_pool.h"

#include <cstddef>
#include <cstring>
#include <new>

namespace carvello {

namespace {

constexpr std::size_t kAddressBytes = sizeof(void*);
static_assert(sizeof(SComplex) >= kAddressBytes, "a free block's first sample holds the address of the next");

SComplex* NextOf(const SComplex* block) {
  SComplex* next = nullptr;
  std::memcpy(static_cast<void*>(&next), block, kAddressBytes);
  return next;
}

}  // namespace

CBlockPool::CFreeBlocks::~CFreeBlocks() {
  while (Take() != nullptr) {
  }
}

ComplexBuffer CBlockPool::CFreeBlocks::Take() noexcept {
  const CLockGuard guard(m_lock);
  ComplexBuffer block(m_pFirst);
  if (block) m_pFirst = NextOf(block.get());
  return block;
}

void CBlockPool::CFreeBlocks::Add(SComplex* block) noexcept {
  const CLockGuard guard(m_lock);
  std::memcpy(static_cast<void*>(block), static_cast<const void*>(&m_pFirst), kAddressBytes);
  m_pFirst = block;
}

std::shared_ptr<SComplex[]> CBlockPool::Take() noexcept {
  ComplexBuffer block = m_pFree->Take();
  if (!block) block.reset(AllocComplex(m_nLength));
  if (!block) return nullptr;
  try {
    // On failure the block goes back to the pool too.
    return {block.release(), [pool = m_pFree](SComplex* returned) noexcept { pool->Add(returned); }};
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

}  // namespace carvello
