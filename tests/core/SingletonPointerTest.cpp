#include <gtest/gtest.h>
#include <trelvo/SingletonPointer.h>

#include <atomic>
#include <future>
#include <memory>
#include <stdexcept>
#include <type_traits>
#include <vector>

#include "tests/core/Mutexes.h"
#include "tests/support/AllocationFailure.h"

namespace trelvo {
namespace {

using test::Inside;
using test::OtherMutex;
using test::PretendedMutex;

struct Service {
  Service() {
    if (gRefuses) {
      throw std::runtime_error("no service");
    }
    ++gLiving;
  }
  ~Service() { --gLiving; }
  Service(const Service&) = delete;
  Service& operator=(const Service&) = delete;

  static std::atomic<int> gLiving;
  static bool gRefuses;
};
std::atomic<int> Service::gLiving{0};
bool Service::gRefuses = false;

static_assert(std::is_base_of_v<Lockable<Service*>, SingletonPointer<Service>>);
static_assert(std::is_same_v<decltype(SingletonPointer<Service>::m_refCount), int>);

TEST(SingletonPointer, StartsWithoutObjectAndUsers) {
  const SingletonPointer<Service> pointer;
  EXPECT_EQ(pointer.m_value, nullptr);
  EXPECT_EQ(pointer.m_refCount, 0);
}

TEST(SingletonPointer, MakesTheObjectForTheFirstUserAndSharesIt) {
  SingletonPointer<Service> pointer;
  Service* const first = pointer.acquireRef();
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(pointer.acquireRef(), first);
  EXPECT_EQ(pointer.m_value, first);
  EXPECT_EQ(pointer.m_refCount, 2);
  EXPECT_EQ(Service::gLiving, 1);
  EXPECT_EQ(Inside::lockCountOf(pointer), 0);
  pointer.releaseRef();
  pointer.releaseRef();
}

TEST(SingletonPointer, DestroysTheObjectWithItsLastUserAndMakesANewOneThen) {
  SingletonPointer<Service> pointer;
  ASSERT_NE(pointer.acquireRef(), nullptr);
  ASSERT_NE(pointer.acquireRef(), nullptr);
  pointer.releaseRef();
  EXPECT_EQ(Service::gLiving, 1);
  EXPECT_EQ(pointer.m_refCount, 1);
  pointer.releaseRef();
  EXPECT_EQ(Service::gLiving, 0);
  EXPECT_EQ(pointer.m_value, nullptr);
  EXPECT_EQ(pointer.m_refCount, 0);
  EXPECT_NE(pointer.acquireRef(), nullptr);
  EXPECT_EQ(pointer.m_refCount, 1);
  pointer.releaseRef();
  EXPECT_EQ(Inside::lockCountOf(pointer), 0);
}

TEST(SingletonPointer, CountsNobodyWhenTheObjectCannotBeMade) {
  SingletonPointer<Service> pointer;
  Service::gRefuses = true;
  EXPECT_EQ(pointer.acquireRef(), nullptr);
  Service::gRefuses = false;
  EXPECT_EQ(pointer.m_value, nullptr);
  EXPECT_EQ(pointer.m_refCount, 0);
  EXPECT_EQ(Inside::lockCountOf(pointer), 0);
  EXPECT_NE(pointer.acquireRef(), nullptr);
  pointer.releaseRef();
}

TEST(SingletonPointer, CountsNobodyWithoutMemory) {
  SingletonPointer<Service> pointer;
  const unsigned long long allocations = test::everyAllocationFails([&] {
    const bool made = pointer.acquireRef() != nullptr;
    EXPECT_EQ(pointer.m_refCount, made ? 1 : 0);
    pointer.releaseRef();
    EXPECT_EQ(pointer.m_value, nullptr);
  });
  EXPECT_EQ(allocations, 1U);
}

TEST(SingletonPointer, ReleasingWithoutAnObjectDoesNotEvenLock) {
  SingletonPointer<Service> pointer;
  auto* const mutex = new PretendedMutex;
  const OtherMutex other(pointer, mutex);
  pointer.releaseRef();
  EXPECT_EQ(mutex->locks, 0);
  EXPECT_EQ(pointer.m_refCount, 0);
}

TEST(SingletonPointer, DoesNothingWhenItCannotBeLocked) {
  SingletonPointer<Service> pointer;
  ASSERT_NE(pointer.acquireRef(), nullptr);
  {
    auto* const mutex = new PretendedMutex;
    mutex->lockResult = false;
    const OtherMutex other(pointer, mutex);
    EXPECT_EQ(pointer.acquireRef(), nullptr);
    pointer.releaseRef();
    EXPECT_EQ(mutex->locks, 2);
    EXPECT_EQ(mutex->unlocks, 0);
  }
  EXPECT_EQ(pointer.m_refCount, 1);
  EXPECT_EQ(Service::gLiving, 1);
  pointer.releaseRef();
  EXPECT_EQ(Service::gLiving, 0);
}

TEST(SingletonPointer, LeavesAnObjectInUseAloneWhenItGoes) {
  std::unique_ptr<Service> left;
  {
    SingletonPointer<Service> pointer;
    left.reset(pointer.acquireRef());
    ASSERT_NE(left, nullptr);
  }
  EXPECT_EQ(Service::gLiving, 1);
}

TEST(SingletonPointer, ServesManyThreadsWithOneObjectAtATime) {
  SingletonPointer<Service> pointer;
  std::vector<std::future<void>> threads;
  threads.reserve(4);
  for (int i = 0; i < 4; ++i) {
    threads.push_back(std::async(std::launch::async, [&] {
      for (int n = 0; n < 500; ++n) {
        EXPECT_NE(pointer.acquireRef(), nullptr);
        EXPECT_EQ(Service::gLiving, 1);
        pointer.releaseRef();
      }
    }));
  }
  for (auto& thread : threads) {
    thread.get();
  }
  EXPECT_EQ(Service::gLiving, 0);
}

}  // namespace
}  // namespace trelvo
