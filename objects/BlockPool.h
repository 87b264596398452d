#pragma once

#include <cstddef>

namespace trelvo {

/// Where reference-counted objects and variants get their memory.
///
/// Built with TRELVO_POOL, small blocks come from lists of freed ones, one set of lists a thread,
/// and go back there when they are freed, on whichever thread that is. Each block is a heap block
/// of its own, so any of them may go back to the heap at any time: blocks beyond the bound of a
/// thread's lists do, and all of them when their thread ends. Without TRELVO_POOL this is the heap
/// alone.
class BlockPool {
 public:
  BlockPool() = delete;

  /// Blocks above this size always come from the heap.
  static constexpr std::size_t kMaxBlock = 192;
  /// How many bytes of free blocks a thread keeps at the most.
  static constexpr std::size_t kMaxKept = std::size_t{4} << 20U;

  /// Throws std::bad_alloc.
  static void* allocate(std::size_t size);
  /// Null when memory runs out.
  static void* tryAllocate(std::size_t size) noexcept;
  /// `size` is the one the block was asked for with.
  static void release(void* block, std::size_t size) noexcept;
  /// For a block of unknown size.
  static void releaseToHeap(void* block) noexcept;
};

}  // namespace trelvo
