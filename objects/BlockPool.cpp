#include "objects/BlockPool.h"

#include <new>

namespace trelvo {

void BlockPool::releaseToHeap(void* block) noexcept { ::operator delete(block); }

#ifdef TRELVO_POOL

namespace {

constexpr std::size_t kStep = 16;
constexpr std::size_t kClasses = BlockPool::kMaxBlock / kStep;

struct FreeBlock {
  FreeBlock* next;
};

enum class Life : unsigned char { Unused, Open, Gone };

struct FreeLists {
  FreeBlock* heads[kClasses];
  std::size_t kept;
  Life life;
};

// Reached without a call, also inside a shared library; it takes a few dozen bytes of the static
// area, which leaves room for programs that load the library late.
__attribute__((tls_model("initial-exec"))) thread_local FreeLists gLists = {};

// Gives the blocks back when the thread ends. What is freed later goes to the heap.
struct Janitor {
  ~Janitor() {
    for (FreeBlock*& head : gLists.heads) {
      while (head != nullptr) {
        FreeBlock* const next = head->next;
        ::operator delete(head);
        head = next;
      }
    }
    gLists.life = Life::Gone;
  }
  void arm() const noexcept { gLists.life = Life::Open; }
};

thread_local Janitor gJanitor;

std::size_t classOf(std::size_t size) noexcept { return size == 0 ? 0 : (size - 1) / kStep; }
std::size_t roundedUp(std::size_t size) noexcept { return (classOf(size) + 1) * kStep; }

void* takeFree(std::size_t size) noexcept {
  FreeBlock*& head = gLists.heads[classOf(size)];
  FreeBlock* const block = head;
  if (block != nullptr) {
    head = block->next;
    gLists.kept -= roundedUp(size);
  }
  return block;
}

bool keeps(std::size_t size) noexcept {
  if (gLists.life == Life::Unused) {
    gJanitor.arm();
  }
  return gLists.life == Life::Open && gLists.kept + roundedUp(size) <= BlockPool::kMaxKept;
}

}  // namespace

void* BlockPool::allocate(std::size_t size) {
  if (size > kMaxBlock) {
    return ::operator new(size);
  }
  void* const block = takeFree(size);
  return block != nullptr ? block : ::operator new(roundedUp(size));
}

void* BlockPool::tryAllocate(std::size_t size) noexcept {
  if (size > kMaxBlock) {
    return ::operator new(size, std::nothrow);
  }
  void* const block = takeFree(size);
  return block != nullptr ? block : ::operator new(roundedUp(size), std::nothrow);
}

void BlockPool::release(void* block, std::size_t size) noexcept {
  if (block == nullptr || size > kMaxBlock || !keeps(size)) {
    ::operator delete(block);
    return;
  }
  FreeBlock*& head = gLists.heads[classOf(size)];
  head = ::new (block) FreeBlock{head};
  gLists.kept += roundedUp(size);
}

#else

void* BlockPool::allocate(std::size_t size) { return ::operator new(size); }

void* BlockPool::tryAllocate(std::size_t size) noexcept {
  return ::operator new(size, std::nothrow);
}

void BlockPool::release(void* block, std::size_t /*size*/) noexcept { ::operator delete(block); }

#endif

}  // namespace trelvo
