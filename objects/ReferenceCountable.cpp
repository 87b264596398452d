#include <trelvo/gom/ReferenceCountable.h>

#include "objects/BlockPool.h"

namespace trelvo::gom {

ReferenceCountable::~ReferenceCountable() = default;

void* ReferenceCountable::operator new(std::size_t size) { return BlockPool::allocate(size); }

void* ReferenceCountable::operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return BlockPool::tryAllocate(size);
}

void* ReferenceCountable::operator new(std::size_t size, std::align_val_t alignment) {
  return ::operator new(size, alignment);
}

void* ReferenceCountable::operator new(std::size_t size, std::align_val_t alignment,
                                       const std::nothrow_t& tag) noexcept {
  return ::operator new(size, alignment, tag);
}

void ReferenceCountable::operator delete(void* block, std::size_t size) noexcept {
  BlockPool::release(block, size);
}

void ReferenceCountable::operator delete(void* block, const std::nothrow_t& /*tag*/) noexcept {
  BlockPool::releaseToHeap(block);
}

void ReferenceCountable::operator delete(void* block, std::size_t /*size*/,
                                         std::align_val_t alignment) noexcept {
  ::operator delete(block, alignment);
}

// What GCC calls when a constructor throws: it does not take the form with a size there.
void ReferenceCountable::operator delete(void* block, std::align_val_t alignment) noexcept {
  ::operator delete(block, alignment);
}

void ReferenceCountable::operator delete(void* block, std::align_val_t alignment,
                                         const std::nothrow_t& tag) noexcept {
  ::operator delete(block, alignment, tag);
}

}  // namespace trelvo::gom
