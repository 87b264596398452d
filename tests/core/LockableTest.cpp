#include <gtest/gtest.h>
#include <trelvo/Lock.h>
#include <trelvo/Lockable.h>
#include <trelvo/Status.h>

#include <cerrno>
#include <future>
#include <map>
#include <type_traits>
#include <vector>

#include "tests/core/Mutexes.h"
#include "tests/support/AllocationFailure.h"

namespace trelvo {
namespace {

using test::Inside;
using test::OtherMutex;
using test::PretendedMutex;

static_assert(std::is_base_of_v<core::ILockable, LockableBase>);
static_assert(std::is_base_of_v<LockableBase, Lockable<int>>);
static_assert(std::is_same_v<decltype(Lock<int>::m_lockable), Lockable<int>*>);
static_assert(!std::is_copy_constructible_v<Lock<int>>);
static_assert(!std::is_copy_constructible_v<Lockable<int>>);

template <class T>
int tryLockElsewhere(Lockable<T>& lockable) {
  return std::async(std::launch::async,
                    [&] {
                      const int result = lockable.tryLock(0);
                      if (result == 1) {
                        lockable.unlock();
                      }
                      return result;
                    })
      .get();
}

TEST(Lockable, StartsUnlockedWithAZeroValue) {
  const Lockable<int> number;
  const Lockable<int*> pointer;
  const Lockable<std::map<unsigned int, int>> map;
  EXPECT_EQ(number.m_value, 0);
  EXPECT_EQ(pointer.m_value, nullptr);
  EXPECT_TRUE(map.m_value.empty());
  EXPECT_EQ(Inside::lockCountOf(number), 0);
}

TEST(Lockable, CountsItsLocksAndUnlocksAsOften) {
  Lockable<int> lockable;
  ASSERT_TRUE(lockable.lock());
  EXPECT_EQ(Inside::lockCountOf(lockable), 1);
  ASSERT_TRUE(lockable.lock());
  EXPECT_EQ(Inside::lockCountOf(lockable), 2);
  EXPECT_EQ(lockable.unlock(), 0);
  EXPECT_EQ(Inside::lockCountOf(lockable), 1);
  EXPECT_EQ(tryLockElsewhere(lockable), 0);
  EXPECT_EQ(lockable.unlock(), 0);
  EXPECT_EQ(Inside::lockCountOf(lockable), 0);
  EXPECT_EQ(tryLockElsewhere(lockable), 1);
}

TEST(Lockable, ASurplusUnlockDoesNothing) {
  Lockable<int> lockable;
  EXPECT_EQ(lockable.unlock(), 0);
  EXPECT_EQ(Inside::lockCountOf(lockable), 0);
  ASSERT_TRUE(lockable.lock());
  EXPECT_EQ(Inside::lockCountOf(lockable), 1);
  lockable.unlock();
}

TEST(Lockable, ASurplusUnlockNeverReachesTheMutex) {
  Lockable<int> lockable;
  auto* const mutex = new PretendedMutex;
  mutex->unlockResult = EPERM;
  const OtherMutex other(lockable, mutex);
  EXPECT_EQ(lockable.unlock(), 0);
  EXPECT_EQ(mutex->unlocks, 0);
}

TEST(Lockable, HandsOnWhatTheMutexAnswers) {
  Lockable<int> lockable;
  auto* const mutex = new PretendedMutex;
  const OtherMutex other(lockable, mutex);
  ASSERT_TRUE(lockable.lock());
  mutex->lockResult = false;
  EXPECT_FALSE(lockable.lock());
  EXPECT_EQ(Inside::lockCountOf(lockable), 1);
  mutex->unlockResult = EPERM;
  EXPECT_EQ(lockable.unlock(), EPERM);
  EXPECT_EQ(Inside::lockCountOf(lockable), 0);
}

TEST(Lockable, CountsATryLockOnlyWhenItReports1) {
  Lockable<int> lockable;
  auto* const mutex = new PretendedMutex;
  const OtherMutex other(lockable, mutex);
  for (const int result : {0, 2}) {
    mutex->tryLockResult = result;
    EXPECT_EQ(lockable.tryLock(1234), result);
    EXPECT_EQ(mutex->lastTimeoutMs, 1234U);
    EXPECT_EQ(Inside::lockCountOf(lockable), 0);
  }
  mutex->tryLockResult = 1;
  EXPECT_EQ(lockable.tryLock(0), 1);
  EXPECT_EQ(Inside::lockCountOf(lockable), 1);
}

TEST(Lockable, WithoutAMutexLocksNothing) {
  Lockable<int> lockable;
  const OtherMutex none(lockable, nullptr);
  EXPECT_FALSE(lockable.lock());
  EXPECT_EQ(lockable.tryLock(0), 0);
  EXPECT_EQ(lockable.tryLock(1000), 0);
  EXPECT_EQ(lockable.unlock(), 0);
  EXPECT_EQ(Inside::lockCountOf(lockable), 0);
}

TEST(Lockable, WithoutAMutexKeepsACountItHas) {
  Lockable<int> lockable;
  ASSERT_TRUE(lockable.lock());
  {
    const OtherMutex none(lockable, nullptr);
    EXPECT_EQ(lockable.unlock(), 0);
    EXPECT_EQ(Inside::lockCountOf(lockable), 1);
  }
  EXPECT_EQ(lockable.unlock(), 0);
}

TEST(Lockable, ThrowsStatusOutOfMemoryWithoutMemory) {
  const unsigned long long allocations = test::everyAllocationFails([] {
    try {
      Lockable<int> lockable;
      EXPECT_TRUE(lockable.lock());
      lockable.unlock();
    } catch (Status status) {
      EXPECT_EQ(status, StatusOutOfMemory);
    }
  });
  EXPECT_GT(allocations, 0U);
}

TEST(Lockable, DoesNotDeleteWhatItsPointerPointsTo) {
  int number = 5;
  {
    Lockable<int*> lockable;
    lockable.m_value = &number;
  }
  EXPECT_EQ(number, 5);
}

TEST(Lockable, ASurplusUnlockOfAnotherThreadIsIgnoredWhileNobodyHoldsIt) {
  Lockable<int> lockable;
  auto other = std::async(std::launch::async, [&] { return lockable.unlock(); });
  EXPECT_EQ(other.get(), 0);
  ASSERT_TRUE(lockable.lock());
  EXPECT_EQ(Inside::lockCountOf(lockable), 1);
  lockable.unlock();
}

TEST(Lockable, GuardsWhatManyThreadsWrite) {
  Lockable<std::vector<int>> lockable;
  std::vector<std::future<void>> threads;
  threads.reserve(4);
  for (int i = 0; i < 4; ++i) {
    threads.push_back(std::async(std::launch::async, [&] {
      for (int n = 0; n < 500; ++n) {
        EXPECT_TRUE(lockable.lock());
        EXPECT_EQ(lockable.tryLock(0), 1);
        lockable.m_value.push_back(n);
        lockable.unlock();
        lockable.unlock();
      }
    }));
  }
  for (auto& thread : threads) {
    thread.get();
  }
  EXPECT_EQ(lockable.m_value.size(), 2000U);
  EXPECT_EQ(Inside::lockCountOf(lockable), 0);
}

TEST(Lock, HoldsNothingAtFirst) {
  const Lock<int> lock;
  EXPECT_EQ(lock.m_lockable, nullptr);
}

TEST(Lock, UnlocksWhatItWasFilledInWith) {
  Lockable<int> lockable;
  {
    Lock<int> lock;
    ASSERT_TRUE(lockable.lock());
    lock.m_lockable = &lockable;
    lock.m_lockable->m_value = 7;
    EXPECT_EQ(tryLockElsewhere(lockable), 0);
  }
  EXPECT_EQ(Inside::lockCountOf(lockable), 0);
  EXPECT_EQ(tryLockElsewhere(lockable), 1);
  EXPECT_EQ(lockable.m_value, 7);
}

}  // namespace
}  // namespace trelvo
