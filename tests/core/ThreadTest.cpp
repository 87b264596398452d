#include <gtest/gtest.h>
#include <sched.h>
#include <sys/syscall.h>
#include <trelvo/core/IThread.h>
#include <trelvo/core/LinThread.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <future>
#include <thread>
#include <type_traits>

#include "tests/core/Observers.h"
#include "tests/support/AllocationFailure.h"

namespace trelvo::core {
namespace {

using test::CountingObserver;
using test::HeldObserver;

static_assert(std::is_base_of_v<gom::ReferenceCountable, IThread>);
static_assert(std::is_base_of_v<IThread, LinThread>);
static_assert(sizeof(std::atomic<bool>) == sizeof(bool));
static_assert(sizeof(std::atomic<int>) == 4);
static_assert(IThread::PriorityLowest == 1 && IThread::PriorityLow == 2);
static_assert(IThread::PriorityNormal == 3 && IThread::PriorityHigh == 4);
static_assert(IThread::PriorityHighest == 5 && IThread::PriorityRealTime == 6);

/// Asks until the thread's end has been told, which takes its token.
void useUpTheEndOf(const IThread& thread) {
  while (thread.isRunning()) {
    std::this_thread::yield();
  }
}

TEST(IThread, RunsItsObserverOnceOnAThreadOfItsOwn) {
  CountingObserver observer;
  const auto thread = IThread::create(&observer, false);
  ASSERT_NE(thread, nullptr);
  EXPECT_EQ(thread->referenceCount(), 1);
  EXPECT_TRUE(thread->wait());
  EXPECT_EQ(observer.calls, 1);
  EXPECT_NE(observer.threadId, IThread::currentThreadId());
}

TEST(IThread, TellsTheKernelsIdOfItsThread) {
  CountingObserver observer;
  const auto thread = IThread::create(&observer, false);
  EXPECT_TRUE(thread->wait());
  EXPECT_EQ(thread->threadId(), observer.threadId);
}

TEST(IThread, CurrentThreadIdIsTheKernels) {
  EXPECT_EQ(IThread::currentThreadId(), getpid());
  std::async(std::launch::async, [] {
    EXPECT_EQ(IThread::currentThreadId(), syscall(SYS_gettid));
    EXPECT_NE(IThread::currentThreadId(), getpid());
  }).get();
}

TEST(IThread, ASuspendedThreadWaitsForResume) {
  CountingObserver observer;
  const auto thread = IThread::create(&observer, true);
  ASSERT_NE(thread, nullptr);
  while (thread->threadId() == 0) {
    std::this_thread::yield();
  }
  EXPECT_EQ(thread->tryWait(0), 2);
  EXPECT_TRUE(thread->isRunning());
  EXPECT_EQ(observer.calls, 0);
  EXPECT_TRUE(thread->resume());
  EXPECT_TRUE(thread->wait());
  EXPECT_EQ(observer.calls, 1);
}

TEST(IThread, ResumesOnlyOnce) {
  HeldObserver observer;
  const auto thread = IThread::create(&observer, true);
  EXPECT_TRUE(thread->resume());
  EXPECT_FALSE(thread->resume());
  observer.waitUntilEntered();
  EXPECT_FALSE(thread->resume());
  observer.release();
  EXPECT_TRUE(thread->wait());
  EXPECT_FALSE(thread->resume());
}

TEST(IThread, DestroyedWhileSuspendedNeverCallsItsObserver) {
  CountingObserver observer;
  const auto start = std::chrono::steady_clock::now();
  {
    const auto thread = IThread::create(&observer, true);
    ASSERT_NE(thread, nullptr);
  }
  EXPECT_EQ(observer.calls, 0);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(30));
}

TEST(IThread, DestroyedWhileRunningIsWaitedFor) {
  HeldObserver observer;
  auto thread = IThread::create(&observer, false);
  observer.waitUntilEntered();
  observer.release();
  thread.clear();
  EXPECT_TRUE(observer.hasLeft());
}

TEST(IThread, TryWaitReports2WhileTheThreadRunsAnd1WhenItHasEnded) {
  HeldObserver observer;
  const auto thread = IThread::create(&observer, false);
  observer.waitUntilEntered();
  EXPECT_EQ(thread->tryWait(0), 2);
  EXPECT_TRUE(thread->isRunning());
  observer.release();
  EXPECT_EQ(thread->tryWait(60000), 1);
}

TEST(IThread, AfterAWaitTheEndIsUsedUp) {
  CountingObserver observer;
  const auto thread = IThread::create(&observer, false);
  EXPECT_TRUE(thread->wait());
  EXPECT_TRUE(thread->isRunning());
  EXPECT_EQ(thread->tryWait(0), 2);
}

TEST(IThread, IsRunningIsFalseOnceForAThreadThatHasEnded) {
  CountingObserver observer;
  const auto thread = IThread::create(&observer, false);
  useUpTheEndOf(*thread);
  EXPECT_TRUE(thread->isRunning());
  EXPECT_TRUE(thread->isRunning());
  EXPECT_EQ(thread->tryWait(0), 2);
}

TEST(IThread, IsJoinedNotKilledWhenItsEndWasUsedUp) {
  CountingObserver observer;
  auto thread = IThread::create(&observer, false);
  useUpTheEndOf(*thread);
  const auto start = std::chrono::steady_clock::now();
  thread.clear();
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(900));
}

TEST(IThreadDeathTest, AThreadThatDoesNotEndInASecondTakesTheProcessWithIt) {
  GTEST_FLAG_SET(death_test_style, TRELVO_DEATH_TEST_STYLE);
  EXPECT_EXIT(
      {
        HeldObserver observer;
        auto thread = IThread::create(&observer, false);
        observer.waitUntilEntered();
        thread.clear();
      },
      testing::KilledBySignal(SIGKILL), "");
}

TEST(IThreadDeathTest, AnExceptionThatLeavesTheBodyEndsTheProcess) {
  GTEST_FLAG_SET(death_test_style, TRELVO_DEATH_TEST_STYLE);
  struct Throwing : IThreadObserver {
    int threadMain() override { throw 1; }
  };
  EXPECT_EXIT(
      {
        Throwing observer;
        const auto thread = IThread::create(&observer, false);
        static_cast<void>(thread->wait());
      },
      testing::KilledBySignal(SIGABRT), "");
}

TEST(IThread, WithoutAnObserverRunsNoBody) {
  const auto thread = IThread::create(nullptr, false);
  ASSERT_NE(thread, nullptr);
  EXPECT_TRUE(thread->wait());
}

TEST(IThread, SleepReturnsAtOnce) {
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < 100; ++i) {
    IThread::sleep(1000);
  }
  IThread::sleep(-1);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(30));
}

TEST(IThread, RefusesAPriorityOutsideOf1To6) {
  HeldObserver observer;
  const auto thread = IThread::create(&observer, true);
  for (const int value : {-1, 0, 7, 1000}) {
    const auto priority = static_cast<IThread::Priority>(value);
    EXPECT_FALSE(thread->setThreadPriority(priority));
    EXPECT_FALSE(LinThread::setThreadPriority(pthread_self(), priority));
    EXPECT_FALSE(IThread::setCurrentThreadPriority(priority));
  }
  EXPECT_EQ(sched_getscheduler(0), SCHED_OTHER);
}

TEST(IThread, SetsANormalPriority) {
  HeldObserver observer;
  const auto thread = IThread::create(&observer, true);
  EXPECT_TRUE(thread->setThreadPriority(IThread::PriorityNormal));
  EXPECT_TRUE(IThread::setCurrentThreadPriority(IThread::PriorityLow));
  EXPECT_EQ(sched_getscheduler(0), SCHED_OTHER);
}

TEST(IThread, HasNoPriorityOnceItIsJoined) {
  CountingObserver observer;
  const auto thread = IThread::create(&observer, false);
  EXPECT_TRUE(thread->wait());
  EXPECT_FALSE(thread->setThreadPriority(IThread::PriorityNormal));
}

TEST(IThread, IsAnEmptyHandleWithoutMemory) {
  const unsigned long long allocations = test::everyAllocationFails([] {
    CountingObserver observer;
    const auto thread = IThread::create(&observer, true);
    EXPECT_TRUE(!thread || thread->resume());
    EXPECT_TRUE(!thread || thread->wait());
    EXPECT_EQ(observer.calls, thread ? 1 : 0);
  });
  EXPECT_EQ(allocations, 3U);
}

TEST(LinThread, AfterAWaitIsJoinedAlready) {
  CountingObserver observer;
  LinThread thread;
  ASSERT_TRUE(thread.create(&observer, false));
  EXPECT_TRUE(thread.wait());
  EXPECT_TRUE(thread.join());
}

TEST(LinThread, WithoutAThreadDoesNothing) {
  LinThread thread;
  EXPECT_TRUE(thread.wait());
  EXPECT_EQ(thread.tryWait(0), 0);
  EXPECT_FALSE(thread.resume());
  EXPECT_FALSE(thread.isRunning());
  EXPECT_EQ(thread.threadId(), 0);
  EXPECT_FALSE(thread.setThreadPriority(IThread::PriorityNormal));
  EXPECT_TRUE(thread.join());
}

}  // namespace
}  // namespace trelvo::core
