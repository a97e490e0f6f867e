#include "engine/block_pool.h"

#include <utility>

namespace carvello {

std::shared_ptr<SComplex[]> CBlockPool::Take() {
  ComplexBuffer block;
  {
    const std::lock_guard guard(m_pFree->lock);
    if (!m_pFree->blocks.empty()) {
      block = std::move(m_pFree->blocks.back());
      m_pFree->blocks.pop_back();
    }
  }
  if (!block) block.reset(AllocComplex(m_nLength));
  if (!block) return nullptr;
  SComplex* const samples = block.release();
  return {samples, [pool = m_pFree](SComplex* returned) {
            ComplexBuffer buffer(returned);
            const std::lock_guard guard(pool->lock);
            pool->blocks.push_back(std::move(buffer));
          }};
}

}  // namespace carvello
