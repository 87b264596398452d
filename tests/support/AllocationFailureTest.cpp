#include "tests/support/AllocationFailure.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <new>
#include <string>
#include <vector>

namespace trelvo::test {
namespace {

struct alignas(64) Wide {
  unsigned char content[64];
};

/// Keeps the compiler from leaving out a pair of new and delete.
template <class T>
T* seen(T* block) {
  asm volatile("" : : "r"(block) : "memory");
  return block;
}

TEST(AllocationFailure, CountsCallsBytesAndWhatIsLeft) {
  int* kept = nullptr;
  const Allocations allocations = allocationsOf([&kept] {
    const std::unique_ptr<char[]> gone(seen(new char[1000]));
    kept = new int(7);
  });
  EXPECT_EQ(allocations.calls, 2U);
  EXPECT_EQ(allocations.bytes, 1000 + sizeof(int));
  EXPECT_EQ(allocations.leaked, 1);
  delete kept;
}

TEST(AllocationFailure, FailsEachAllocationOnceAndThenAllFromThereOn) {
  std::vector<std::string> outcomes;
  outcomes.reserve(6);
  const unsigned long long count = everyAllocationFails([&outcomes] {
    const std::unique_ptr<int> first(seen(new (std::nothrow) int));
    const std::unique_ptr<int> second(seen(new (std::nothrow) int));
    const AllocationsSucceed succeed;
    outcomes.push_back(std::string(first ? "1" : "-") + (second ? "2" : "-"));
  });
  EXPECT_EQ(count, 2U);
  EXPECT_EQ(outcomes, (std::vector<std::string>{"--", "1-", "12", "-2", "1-", "12"}));
}

TEST(AllocationFailure, ThrowingFormsThrowBadAllocAndTheOthersGiveNull) {
  unsigned int thrown = 0;
  unsigned int null = 0;
  const auto throwing = [&thrown](auto allocate) {
    try {
      allocate();
    } catch (const std::bad_alloc&) {
      ++thrown;
    }
  };
  everyAllocationFails([&] {
    throwing([] { delete seen(new int); });
    throwing([] { delete[] seen(new int[3]); });
    throwing([] { delete seen(new Wide); });
    throwing([] { delete[] seen(new Wide[3]); });
    const std::unique_ptr<int> one(seen(new (std::nothrow) int));
    const std::unique_ptr<int[]> several(seen(new (std::nothrow) int[3]));
    const std::unique_ptr<Wide> wide(seen(new (std::nothrow) Wide));
    const std::unique_ptr<Wide[]> wides(seen(new (std::nothrow) Wide[3]));
    null += !one + !several + !wide + !wides;
  });
  EXPECT_EQ(thrown, 4U + (4U + 3U + 2U + 1U));
  EXPECT_EQ(null, 4U + (4U * 4U + 4U + 3U + 2U + 1U));
}

TEST(AllocationFailure, KeepsTheAlignment) {
  const Allocations allocations = allocationsOf([] {
    const std::unique_ptr<Wide> wide(seen(new Wide));
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(wide.get()) % alignof(Wide), 0U);
  });
  EXPECT_EQ(allocations.calls, 1U);
  EXPECT_EQ(allocations.leaked, 0);
}

TEST(AllocationFailure, AllocationsSucceedIsNoStep) {
  const unsigned long long count = everyAllocationFails([] {
    const AllocationsSucceed succeed;
    const std::vector<int> numbers(100, 1);
    EXPECT_EQ(numbers.size(), 100U);
  });
  EXPECT_EQ(count, 0U);
}

}  // namespace
}  // namespace trelvo::test
