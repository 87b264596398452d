#include "objects/BlockPool.h"

#ifdef TRELVO_POOL

namespace trelvo {

// Gives the blocks back when the thread ends. What is freed later goes to the heap.
struct BlockPool::Janitor {
  ~Janitor() {
    for (FreeBlock*& head : s_lists.heads) {
      while (head != nullptr) {
        FreeBlock* const next = head->next;
        releaseToHeap(head);
        head = next;
      }
    }
    s_lists.room = 0;
  }
  void arm() const noexcept {
    s_lists.known = true;
    s_lists.room = kMaxKept;
  }
};

// The thread's first free block opens its lists. @return whether there is room now.
bool BlockPool::openLists() noexcept {
  static thread_local const Janitor janitor;
  const bool first = !s_lists.known;
  if (first) {
    janitor.arm();
  }
  return first;
}

void BlockPool::releaseElsewhere(void* block, std::size_t size) noexcept {
  if (block != nullptr && isPooled(size) && openLists()) {
    keep(block, size);
  } else {
    releaseToHeap(block);
  }
}

}  // namespace trelvo

#endif
