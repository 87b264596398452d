#include "fuzz/MemoryBound.h"

#include <malloc.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <new>

namespace trelvo::fuzz {

namespace {

constexpr long long kNoLimit = std::numeric_limits<long long>::max();

thread_local long long gInUse = 0;
thread_local long long gLimit = kNoLimit;

[[noreturn]] void refuse(std::size_t size) {
  std::fprintf(stderr, "does not hold: memory within the input's bound: %zu bytes beyond %lld\n",
               size, gLimit);
  std::abort();
}

void* allocate(std::size_t size) noexcept {
  if (gInUse + static_cast<long long>(size) > gLimit) {
    refuse(size);
  }
  void* const block = std::malloc(std::max<std::size_t>(size, 1));
  gInUse += static_cast<long long>(malloc_usable_size(block));
  return block;
}

void* allocateOrThrow(std::size_t size) {
  void* const block = allocate(size);
  if (block == nullptr) {
    throw std::bad_alloc();
  }
  return block;
}

void release(void* block) noexcept {
  gInUse -= static_cast<long long>(malloc_usable_size(block));
  std::free(block);
}

}  // namespace

MemoryBound::MemoryBound(std::size_t inputSize, std::size_t constant) : m_outerLimit(gLimit) {
  gLimit = gInUse + static_cast<long long>(inputSize * kBytesPerInputByte + constant);
}

MemoryBound::~MemoryBound() { gLimit = m_outerLimit; }

}  // namespace trelvo::fuzz

using trelvo::fuzz::allocate;
using trelvo::fuzz::allocateOrThrow;
using trelvo::fuzz::release;

void* operator new(std::size_t size) { return allocateOrThrow(size); }
void* operator new[](std::size_t size) { return allocateOrThrow(size); }
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return allocate(size);
}
void operator delete(void* block) noexcept { release(block); }
void operator delete[](void* block) noexcept { release(block); }
void operator delete(void* block, std::size_t /*size*/) noexcept { release(block); }
void operator delete[](void* block, std::size_t /*size*/) noexcept { release(block); }
void operator delete(void* block, const std::nothrow_t& /*tag*/) noexcept { release(block); }
void operator delete[](void* block, const std::nothrow_t& /*tag*/) noexcept { release(block); }
