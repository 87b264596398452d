#include "tests/support/AllocationFailure.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <exception>
#include <new>
#include <string>
#include <thread>

namespace trelvo::test {

namespace {

enum class Failing { Never, Once, FromThenOn };

/// What this thread has asked for, and which of its calls is to fail.
struct Watch {
  Failing failing;
  bool paused;
  unsigned long long failAt;
  unsigned long long calls;
  unsigned long long bytes;
};

thread_local Watch gWatch = {};
std::atomic<long long> gLive{0};

bool mayAllocate(std::size_t size) noexcept {
  if (gWatch.paused) {
    return true;
  }
  ++gWatch.calls;
  gWatch.bytes += size;
  switch (gWatch.failing) {
    case Failing::Once:
      return gWatch.calls != gWatch.failAt;
    case Failing::FromThenOn:
      return gWatch.calls < gWatch.failAt;
    default:
      return true;
  }
}

void* counted(void* block) noexcept {
  if (block != nullptr) {
    gLive.fetch_add(1, std::memory_order_relaxed);
  }
  return block;
}

void* allocate(std::size_t size) noexcept {
  return mayAllocate(size) ? counted(std::malloc(std::max<std::size_t>(size, 1))) : nullptr;
}

void* allocate(std::size_t size, std::align_val_t alignment) noexcept {
  const auto step = static_cast<std::size_t>(alignment);
  const std::size_t rounded = (std::max<std::size_t>(size, 1) + step - 1) / step * step;
  return mayAllocate(size) ? counted(std::aligned_alloc(step, rounded)) : nullptr;
}

void release(void* block) noexcept {
  if (block != nullptr) {
    gLive.fetch_sub(1, std::memory_order_relaxed);
    std::free(block);
  }
}

void* orThrow(void* block) {
  if (block == nullptr) {
    throw std::bad_alloc();
  }
  return block;
}

void runAndReport(const std::function<void()>& run) {
  try {
    run();
  } catch (const std::exception& exception) {
    const AllocationsSucceed succeed;
    ADD_FAILURE() << "an exception got out: " << exception.what();
  } catch (...) {
    const AllocationsSucceed succeed;
    ADD_FAILURE() << "an exception got out";
  }
}

Allocations runWatched(const std::function<void()>& run, Failing failing,
                       unsigned long long failAt) {
  Allocations result;
  const long long before = gLive.load();
  std::thread thread([&] {
    gWatch = {failing, false, failAt, 0, 0};
    runAndReport(run);
    result.calls = gWatch.calls;
    result.bytes = gWatch.bytes;
    gWatch = {};
  });
  thread.join();
  result.leaked = gLive.load() - before;
  return result;
}

unsigned long long failOneAfterTheOther(const std::function<void()>& run, Failing failing) {
  constexpr unsigned long long kTooMany = 100000;
  for (unsigned long long failAt = 1; failAt < kTooMany; ++failAt) {
    const Allocations allocations = runWatched(run, failing, failAt);
    EXPECT_EQ(allocations.leaked, 0) << "allocation " << failAt << " failing";
    if (allocations.calls < failAt || ::testing::Test::HasFatalFailure()) {
      return allocations.calls;
    }
  }
  ADD_FAILURE() << "there is no end of allocations";
  return kTooMany;
}

}  // namespace

Allocations allocationsOf(const std::function<void()>& run) {
  return runWatched(run, Failing::Never, 0);
}

unsigned long long everyAllocationFails(const std::function<void()>& run) {
  failOneAfterTheOther(run, Failing::FromThenOn);
  return failOneAfterTheOther(run, Failing::Once);
}

AllocationsSucceed::AllocationsSucceed() noexcept : m_outer(gWatch.paused) { gWatch.paused = true; }

AllocationsSucceed::~AllocationsSucceed() { gWatch.paused = m_outer; }

}  // namespace trelvo::test

using trelvo::test::allocate;
using trelvo::test::orThrow;
using trelvo::test::release;

void* operator new(std::size_t size) { return orThrow(allocate(size)); }
void* operator new[](std::size_t size) { return orThrow(allocate(size)); }
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return allocate(size);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
  return orThrow(allocate(size, alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
  return orThrow(allocate(size, alignment));
}
void* operator new(std::size_t size, std::align_val_t alignment,
                   const std::nothrow_t& /*tag*/) noexcept {
  return allocate(size, alignment);
}
void* operator new[](std::size_t size, std::align_val_t alignment,
                     const std::nothrow_t& /*tag*/) noexcept {
  return allocate(size, alignment);
}

void operator delete(void* block) noexcept { release(block); }
void operator delete[](void* block) noexcept { release(block); }
void operator delete(void* block, std::size_t /*size*/) noexcept { release(block); }
void operator delete[](void* block, std::size_t /*size*/) noexcept { release(block); }
void operator delete(void* block, const std::nothrow_t& /*tag*/) noexcept { release(block); }
void operator delete[](void* block, const std::nothrow_t& /*tag*/) noexcept { release(block); }
void operator delete(void* block, std::align_val_t /*alignment*/) noexcept { release(block); }
void operator delete[](void* block, std::align_val_t /*alignment*/) noexcept { release(block); }
void operator delete(void* block, std::size_t /*size*/, std::align_val_t /*alignment*/) noexcept {
  release(block);
}
void operator delete[](void* block, std::size_t /*size*/, std::align_val_t /*alignment*/) noexcept {
  release(block);
}
void operator delete(void* block, std::align_val_t /*alignment*/,
                     const std::nothrow_t& /*tag*/) noexcept {
  release(block);
}
void operator delete[](void* block, std::align_val_t /*alignment*/,
                       const std::nothrow_t& /*tag*/) noexcept {
  release(block);
}
