#include "engine/block_pool.h"

#include <gtest/gtest.h>

#include <memory>

namespace carvello {
namespace {

TEST(BlockPool, BlockComesBackWhenTheLastHolderLetsGo) {
  CBlockPool pool(16);
  std::shared_ptr<SComplex[]> block = pool.Take();
  ASSERT_NE(block, nullptr);
  const SComplex* samples = block.get();
  const SharedBlock first = block;
  SharedBlock second = std::move(block);
  second.reset();
  EXPECT_NE(pool.Take().get(), samples) << "the first holder still reads it";
  const SComplex* other = pool.Take().get();
  EXPECT_NE(other, samples);
}

TEST(BlockPool, ReturnedBlockIsTakenAgain) {
  CBlockPool pool(16);
  const SComplex* samples = pool.Take().get();  // returned at once
  EXPECT_EQ(pool.Take().get(), samples);
}

TEST(BlockPool, BlockOutlivesItsPool) {
  auto pool = std::make_unique<CBlockPool>(16);
  const std::shared_ptr<SComplex[]> block = pool->Take();
  pool.reset();
  block[15] = {1.0f, 2.0f};
  EXPECT_EQ(block[15].im, 2.0f);
}

TEST(BlockPool, NoBlockOfImpossibleLength) {
  EXPECT_EQ(CBlockPool(0).Take(), nullptr);
}

}  // namespace
}  // namespace carvello
