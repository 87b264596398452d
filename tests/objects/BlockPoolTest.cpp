// Compiled together with BlockPool.cpp, with TRELVO_POOL on, whatever the library is built with.

#include "objects/BlockPool.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <mutex>
#include <new>
#include <thread>
#include <vector>

#include "tests/support/AllocationFailure.h"

namespace trelvo {
namespace {

using test::allocationsOf;

/// Allocates and writes to every byte asked for.
void* taken(std::size_t size) {
  void* const block = BlockPool::allocate(size);
  std::memset(block, 0xA5, size);
  return block;
}

TEST(BlockPool, ServesAFreedBlockAgain) {
  const test::Allocations allocations = allocationsOf([] {
    void* const first = taken(40);
    BlockPool::release(first, 40);
    void* const second = taken(40);
    EXPECT_EQ(second, first);
    BlockPool::release(second, 40);
    void* const third = BlockPool::tryAllocate(40);
    EXPECT_EQ(third, first);
    BlockPool::release(third, 40);
  });
  EXPECT_EQ(allocations.calls, 1U);
  EXPECT_EQ(allocations.bytes, 48U) << "rounded up to steps of 16";
  EXPECT_EQ(allocations.leaked, 0);
}

TEST(BlockPool, ServesSizesOfOneStepFromOneList) {
  allocationsOf([] {
    void* const block = taken(33);
    BlockPool::release(block, 33);
    void* const larger = taken(48);
    EXPECT_EQ(larger, block);
    void* const next = taken(49);
    EXPECT_NE(next, block);
    BlockPool::release(larger, 48);
    void* const smaller = taken(32);
    EXPECT_NE(smaller, block);
    BlockPool::release(next, 49);
    BlockPool::release(smaller, 32);
  });
}

TEST(BlockPool, ServesEverySize) {
  const test::Allocations allocations = allocationsOf([] {
    for (int round = 0; round < 2; ++round) {
      std::vector<void*> blocks;
      for (std::size_t size = 0; size <= 400; ++size) {
        blocks.push_back(taken(size));
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(blocks.back()) % alignof(std::max_align_t), 0U);
      }
      for (std::size_t size = 0; size <= 400; ++size) {
        BlockPool::release(blocks[size], size);
      }
    }
  });
  EXPECT_EQ(allocations.leaked, 0);
}

TEST(BlockPool, SizesAboveTheLimitAlwaysComeFromTheHeap) {
  const test::Allocations within = allocationsOf([] {
    for (int i = 0; i < 3; ++i) {
      BlockPool::release(taken(BlockPool::kMaxBlock), BlockPool::kMaxBlock);
    }
  });
  const test::Allocations above = allocationsOf([] {
    for (int i = 0; i < 3; ++i) {
      BlockPool::release(taken(BlockPool::kMaxBlock + 1), BlockPool::kMaxBlock + 1);
      void* const block = BlockPool::tryAllocate(BlockPool::kMaxBlock + 1);
      BlockPool::release(block, BlockPool::kMaxBlock + 1);
    }
  });
  EXPECT_EQ(within.calls, 1U);
  EXPECT_EQ(above.calls, 6U);
  EXPECT_EQ(above.bytes, 6 * (BlockPool::kMaxBlock + 1));
}

TEST(BlockPool, KeepsNoMoreThanItsBound) {
  constexpr std::size_t kSize = 192;
  constexpr std::size_t kKept = BlockPool::kMaxKept / kSize;
  constexpr std::size_t kBeyond = 100;
  std::vector<void*> blocks(kKept + kBeyond);
  const test::Allocations allocations = allocationsOf([&blocks] {
    for (int round = 0; round < 2; ++round) {
      for (void*& block : blocks) {
        block = BlockPool::allocate(kSize);
      }
      for (void* const block : blocks) {
        BlockPool::release(block, kSize);
      }
    }
  });
  EXPECT_EQ(allocations.calls, blocks.size() + kBeyond);
  EXPECT_EQ(allocations.leaked, 0);
}

TEST(BlockPool, TheBoundCountsAllSizesTogether) {
  std::vector<void*> small(BlockPool::kMaxKept / 16);
  const test::Allocations allocations = allocationsOf([&small] {
    for (void*& block : small) {
      block = BlockPool::allocate(16);
    }
    void* const large = BlockPool::allocate(64);
    for (void* const block : small) {
      BlockPool::release(block, 16);
    }
    BlockPool::release(large, 64);  // the lists are full of small ones
    BlockPool::release(BlockPool::allocate(64), 64);
  });
  EXPECT_EQ(allocations.calls, small.size() + 2);
}

TEST(BlockPool, GivesAllBackWhenTheThreadEnds) {
  const test::Allocations allocations = allocationsOf([] {
    for (std::size_t size = 1; size <= BlockPool::kMaxBlock; size += 7) {
      BlockPool::release(taken(size), size);
    }
  });
  EXPECT_EQ(allocations.leaked, 0);
}

TEST(BlockPool, ABlockMayBeFreedOnAnotherThread) {
  constexpr int kBlocks = 50;
  std::vector<void*> blocks;
  blocks.reserve(kBlocks);
  for (int i = 0; i < kBlocks; ++i) {
    blocks.push_back(taken(64));
  }
  const test::Allocations allocations = allocationsOf([&blocks] {
    for (void* const block : blocks) {
      BlockPool::release(block, 64);
    }
    void* const block = taken(64);
    EXPECT_EQ(block, blocks.back()) << "it serves the thread that freed it";
    BlockPool::release(block, 64);
  });
  EXPECT_EQ(allocations.calls, 0U);
  EXPECT_EQ(allocations.leaked, -kBlocks) << "gone with that thread";
}

/// Frees its block when the thread's storage is destroyed.
struct Late {
  void* block = nullptr;
  ~Late() { BlockPool::release(block, 64); }
};
thread_local Late gLate;

TEST(BlockPool, WhatIsFreedBehindTheEndOfTheListsGoesToTheHeap) {
  EXPECT_EQ(allocationsOf([] {
              gLate.block =
                  BlockPool::allocate(64);  // made before the lists, destroyed behind them
              BlockPool::release(taken(64), 64);
            }).leaked,
            0);
}

TEST(BlockPool, ABlockOfUnknownSizeGoesToTheHeap) {
  const test::Allocations allocations = allocationsOf([] {
    BlockPool::releaseToHeap(taken(64));
    BlockPool::releaseToHeap(taken(1000));
    BlockPool::releaseToHeap(nullptr);
    BlockPool::release(nullptr, 64);
    BlockPool::release(nullptr, 1000);
    BlockPool::release(taken(64), 64);
  });
  EXPECT_EQ(allocations.calls, 3U);
  EXPECT_EQ(allocations.leaked, 0);
}

TEST(BlockPool, OutOfMemoryThrowsOrGivesNull) {
  unsigned int thrown = 0;
  unsigned int null = 0;
  for (const std::size_t size : {std::size_t{64}, std::size_t{1000}}) {
    test::everyAllocationFails([&, size] {
      try {
        BlockPool::releaseToHeap(BlockPool::allocate(size));
      } catch (const std::bad_alloc&) {
        ++thrown;
      }
      void* const block = BlockPool::tryAllocate(size);
      null += block == nullptr ? 1 : 0;
      BlockPool::releaseToHeap(block);
    });
  }
  EXPECT_EQ(thrown, 4U);
  EXPECT_EQ(null, 6U);
}

TEST(BlockPool, ServesKeptBlocksWhenTheHeapHasNone) {
  test::everyAllocationFails([] {
    void* kept = nullptr;
    {
      const test::AllocationsSucceed succeed;
      kept = taken(64);
      BlockPool::release(kept, 64);
    }
    void* const block = BlockPool::allocate(64);
    EXPECT_EQ(block, kept);
    BlockPool::release(block, 64);
  });
}

TEST(BlockPool, ThreadsPassBlocksAround) {
  std::mutex mutex;
  std::vector<void*> shared;
  const auto work = [&](unsigned int seed) {
    unsigned int state = seed;
    for (int i = 0; i < 5000; ++i) {
      state = state * 1664525U + 1013904223U;
      const std::lock_guard<std::mutex> guard(mutex);
      if ((state >> 16U) % 2 == 0 || shared.empty()) {
        shared.push_back(taken(80));
      } else {
        BlockPool::release(shared.back(), 80);
        shared.pop_back();
      }
    }
  };
  std::thread first(work, 1);
  std::thread second(work, 2);
  first.join();
  second.join();
  for (void* const block : shared) {
    BlockPool::release(block, 80);
  }
  SUCCEED() << "the sanitizers have the say here";
}

}  // namespace
}  // namespace trelvo
