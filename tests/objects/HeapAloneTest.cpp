// Compiled together with BlockPool.cpp, with TRELVO_POOL off, whatever the library is built with.

#include <gtest/gtest.h>

#include <new>

#include "objects/BlockPool.h"
#include "tests/support/AllocationFailure.h"

namespace trelvo {
namespace {

TEST(HeapAlone, EveryBlockComesFromTheHeapAndGoesThere) {
  const test::Allocations allocations = test::allocationsOf([] {
    for (int i = 0; i < 3; ++i) {
      BlockPool::release(BlockPool::allocate(40), 40);
      BlockPool::release(BlockPool::tryAllocate(40), 40);
      BlockPool::releaseToHeap(BlockPool::allocate(40));
    }
    BlockPool::release(nullptr, 40);
  });
  EXPECT_EQ(allocations.calls, 9U);
  EXPECT_EQ(allocations.bytes, 9 * 40U) << "not rounded";
  EXPECT_EQ(allocations.leaked, 0);
}

TEST(HeapAlone, OutOfMemoryThrowsOrGivesNull) {
  unsigned int thrown = 0;
  unsigned int null = 0;
  test::everyAllocationFails([&] {
    try {
      BlockPool::release(BlockPool::allocate(40), 40);
    } catch (const std::bad_alloc&) {
      ++thrown;
    }
    void* const block = BlockPool::tryAllocate(40);
    null += block == nullptr ? 1 : 0;
    BlockPool::release(block, 40);
  });
  EXPECT_EQ(thrown, 2U);
  EXPECT_EQ(null, 3U);
}

}  // namespace
}  // namespace trelvo
