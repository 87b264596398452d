#include <gtest/gtest.h>
#include <trelvo/core/LinMutex.h>
#include <trelvo/gom/SharedPointer.h>

#include <cerrno>
#include <future>
#include <type_traits>
#include <vector>

#include "tests/support/AllocationFailure.h"

namespace trelvo::core {
namespace {

static_assert(std::is_base_of_v<gom::ReferenceCountable, IMutex>);
static_assert(std::is_base_of_v<ILockable, IMutex>);
static_assert(std::is_base_of_v<IMutex, LinMutex>);
static_assert(std::is_same_v<decltype(IMutex::create({}, false, true)), IMutex*>);
static_assert(std::is_same_v<decltype(IMutex::open({}, false)), IMutex*>);

gom::SharedPointer<IMutex> makeMutex() { return IMutex::create("", false, true); }

template <class Run>
auto onAnotherThread(Run run) {
  return std::async(std::launch::async, run).get();
}

int tryLockAndUnlock(IMutex& mutex, unsigned int timeoutMs) {
  const int result = mutex.tryLock(timeoutMs);
  if (result == 1) {
    mutex.unlock();
  }
  return result;
}

TEST(IMutex, IsMadeWithCountZeroForItsCallerToAdopt) {
  IMutex* const mutex = IMutex::create("", false, true);
  ASSERT_NE(mutex, nullptr);
  EXPECT_EQ(mutex->referenceCount(), 0);
  const gom::SharedPointer<IMutex> owner(mutex);
  EXPECT_NE(dynamic_cast<LinMutex*>(mutex), nullptr);
}

TEST(IMutex, HasNoNamedForm) {
  EXPECT_EQ(IMutex::create("name", false, true), nullptr);
  EXPECT_EQ(IMutex::create("name", true, true), nullptr);
  EXPECT_EQ(IMutex::create("name", false, false), nullptr);
}

TEST(IMutex, IsRefusedWhenTheLastArgumentIsFalse) {
  EXPECT_EQ(IMutex::create("", false, false), nullptr);
  EXPECT_EQ(IMutex::create("", true, false), nullptr);
}

TEST(IMutex, IgnoresTheMiddleArgument) {
  const gom::SharedPointer<IMutex> mutex = IMutex::create("", true, true);
  ASSERT_NE(mutex, nullptr);
  EXPECT_TRUE(mutex->lock());
  EXPECT_EQ(mutex->unlock(), 0);
}

TEST(IMutex, OpensNothing) {
  EXPECT_EQ(IMutex::open("", false), nullptr);
  EXPECT_EQ(IMutex::open("", true), nullptr);
  EXPECT_EQ(IMutex::open("name", false), nullptr);
  EXPECT_EQ(IMutex::open("name", true), nullptr);
}

TEST(IMutex, IsNullWithoutMemory) {
  test::everyAllocationFails([] {
    IMutex* const mutex = IMutex::create({}, false, true);
    const gom::SharedPointer<IMutex> owner(mutex);
    EXPECT_TRUE(mutex == nullptr || mutex->lock());
    if (mutex != nullptr) {
      mutex->unlock();
    }
  });
}

TEST(LinMutex, KeepsOtherThreadsOut) {
  const auto mutex = makeMutex();
  ASSERT_TRUE(mutex->lock());
  EXPECT_EQ(onAnotherThread([&] { return tryLockAndUnlock(*mutex, 0); }), 0);
  EXPECT_EQ(mutex->unlock(), 0);
  EXPECT_EQ(onAnotherThread([&] { return tryLockAndUnlock(*mutex, 0); }), 1);
}

TEST(LinMutex, IsLockedAgainByItsHolderAndUnlockedAsOften) {
  const auto mutex = makeMutex();
  ASSERT_TRUE(mutex->lock());
  ASSERT_TRUE(mutex->lock());
  EXPECT_EQ(mutex->tryLock(0), 1);
  EXPECT_EQ(mutex->unlock(), 0);
  EXPECT_EQ(mutex->unlock(), 0);
  EXPECT_EQ(onAnotherThread([&] { return tryLockAndUnlock(*mutex, 0); }), 0);
  EXPECT_EQ(mutex->unlock(), 0);
  EXPECT_EQ(onAnotherThread([&] { return tryLockAndUnlock(*mutex, 0); }), 1);
}

TEST(LinMutex, HandsBackTheSystemsErrorFromUnlock) {
  const auto mutex = makeMutex();
  EXPECT_EQ(mutex->unlock(), EPERM);
  ASSERT_TRUE(mutex->lock());
  EXPECT_EQ(onAnotherThread([&] { return mutex->unlock(); }), EPERM);
  EXPECT_EQ(mutex->unlock(), 0);
}

TEST(LinMutex, TryLockReports2WhenTheTimeRunsOut) {
  const auto mutex = makeMutex();
  ASSERT_TRUE(mutex->lock());
  EXPECT_EQ(onAnotherThread([&] { return tryLockAndUnlock(*mutex, 1000); }), 2);
  mutex->unlock();
}

TEST(LinMutex, TryLockWaitsForTheHolderToUnlock) {
  const auto mutex = makeMutex();
  ASSERT_TRUE(mutex->lock());
  std::promise<void> started;
  auto result = std::async(std::launch::async, [&] {
    started.set_value();
    return tryLockAndUnlock(*mutex, 60000);
  });
  started.get_future().wait();
  mutex->unlock();
  EXPECT_EQ(result.get(), 1);
}

TEST(LinMutex, GuardsWhatManyThreadsWrite) {
  const auto mutex = makeMutex();
  int sum = 0;
  std::vector<std::future<void>> threads;
  threads.reserve(4);
  for (int i = 0; i < 4; ++i) {
    threads.push_back(std::async(std::launch::async, [&] {
      for (int n = 0; n < 1000; ++n) {
        EXPECT_TRUE(mutex->lock());
        ++sum;
        mutex->unlock();
      }
    }));
  }
  for (auto& thread : threads) {
    thread.get();
  }
  EXPECT_EQ(sum, 4000);
}

TEST(LinMutex, IsRecursiveEvenWhenNeverCreated) {
  LinMutex mutex;
  EXPECT_TRUE(mutex.lock());
  EXPECT_TRUE(mutex.lock());
  EXPECT_EQ(mutex.unlock(), 0);
  EXPECT_EQ(mutex.unlock(), 0);
}

}  // namespace
}  // namespace trelvo::core
