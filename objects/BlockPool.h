#pragma once

#include <cstddef>
#include <new>

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
  /// How many bytes of free blocks a thread keeps at the most: those of two containers with 100,000
  /// WLAN measurements each. What goes to the heap beyond costs several times as much.
  static constexpr std::size_t kMaxKept = std::size_t{64} << 20U;

  /// Throws std::bad_alloc.
  static void* allocate(std::size_t size) {
    void* const block = takeFree(size);
    return block != nullptr ? block : ::operator new(roundedUp(size));
  }

  /// Null when memory runs out.
  static void* tryAllocate(std::size_t size) noexcept {
    void* const block = takeFree(size);
    return block != nullptr ? block : ::operator new(roundedUp(size), std::nothrow);
  }

  /// `size` is the one the block was asked for with.
  static void release(void* block, std::size_t size) noexcept;

  /// For a block of unknown size.
  static void releaseToHeap(void* block) noexcept { ::operator delete(block); }

 private:
  static void* takeFree(std::size_t size) noexcept;
  static std::size_t roundedUp(std::size_t size) noexcept;

#ifdef TRELVO_POOL
  static constexpr std::size_t kStep = 16;

  struct FreeBlock {
    FreeBlock* next;
  };

  struct FreeLists {
    FreeBlock* heads[kMaxBlock / kStep];
    std::size_t
        room;    // bytes that may still be kept; none before the first block and after the end
    bool known;  // whether the thread's end has been provided for
  };

  struct Janitor;
  static bool openLists() noexcept;
  static void releaseElsewhere(void* block, std::size_t size) noexcept;

  static bool isPooled(std::size_t size) noexcept { return size - 1 < kMaxBlock; }
  static void keep(void* block, std::size_t size) noexcept;

  // Reached without a call, also inside a shared library; it takes a few dozen bytes of the static
  // area, which leaves room for programs that load the library late.
  __attribute__((tls_model("initial-exec"))) inline static thread_local FreeLists s_lists = {};
#endif
};

#ifdef TRELVO_POOL

inline std::size_t BlockPool::roundedUp(std::size_t size) noexcept {
  return isPooled(size) ? (size + kStep - 1) & ~(kStep - 1) : size;
}

inline void* BlockPool::takeFree(std::size_t size) noexcept {
  if (!isPooled(size)) {
    return nullptr;
  }
  FreeBlock*& head = s_lists.heads[(size - 1) / kStep];
  FreeBlock* const block = head;
  if (block != nullptr) {
    head = block->next;
    s_lists.room += roundedUp(size);
  }
  return block;
}

inline void BlockPool::keep(void* block, std::size_t size) noexcept {
  FreeBlock*& head = s_lists.heads[(size - 1) / kStep];
  head = ::new (block) FreeBlock{head};
  s_lists.room -= roundedUp(size);
}

inline void BlockPool::release(void* block, std::size_t size) noexcept {
  if (block != nullptr && isPooled(size) && roundedUp(size) <= s_lists.room) {
    keep(block, size);
  } else {
    releaseElsewhere(block, size);
  }
}

#else

inline void BlockPool::release(void* block, std::size_t /*size*/) noexcept { releaseToHeap(block); }
inline void* BlockPool::takeFree(std::size_t /*size*/) noexcept { return nullptr; }
inline std::size_t BlockPool::roundedUp(std::size_t size) noexcept { return size; }

#endif

}  // namespace trelvo
