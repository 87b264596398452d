#include <gtest/gtest.h>
#include <trelvo/Lockable.h>
#include <trelvo/Status.h>
#include <trelvo/core/LinMutex.h>
#include <trelvo/gom/SharedPointer.h>

#include <cerrno>
#include <future>

#include "tests/core/SystemCalls.h"

namespace trelvo::core {
namespace {

using test::Answered;
using test::callsOf;
using test::StandingClock;
using test::SystemCall;
using test::systemLog;

/// A mutex that another thread holds as long as this lives.
class HeldMutex {
 public:
  HeldMutex() {
    EXPECT_TRUE(m_mutex.create(false));
    std::promise<void> held;
    m_holder = std::async(std::launch::async, [this, &held] {
      EXPECT_TRUE(m_mutex.lock());
      held.set_value();
      m_release.get_future().wait();
      m_mutex.unlock();
    });
    held.get_future().wait();
  }
  ~HeldMutex() {
    m_release.set_value();
    m_holder.wait();
  }
  HeldMutex(const HeldMutex&) = delete;
  HeldMutex& operator=(const HeldMutex&) = delete;

  int tryLock(unsigned int timeoutMs) { return m_mutex.tryLock(timeoutMs); }

 private:
  LinMutex m_mutex;
  std::promise<void> m_release;
  std::future<void> m_holder;
};

TEST(LinMutexFailure, TryLockWithoutATimeReports0ForAHeldMutex) {
  HeldMutex mutex;
  const int readings = callsOf(SystemCall::ClockGettime);
  EXPECT_EQ(mutex.tryLock(0), 0);
  EXPECT_EQ(callsOf(SystemCall::ClockGettime), readings);
}

TEST(LinMutexFailure, AFreeMutexIsTakenWithoutALookAtTheClock) {
  LinMutex mutex;
  ASSERT_TRUE(mutex.create(false));
  const Answered noClock(SystemCall::ClockGettime, -1);
  EXPECT_EQ(mutex.tryLock(1500), 1);
  EXPECT_EQ(mutex.unlock(), 0);
}

TEST(LinMutexFailure, TryLockReports0WithoutAClock) {
  HeldMutex mutex;
  const Answered noClock(SystemCall::ClockGettime, -1);
  EXPECT_EQ(mutex.tryLock(1000), 0);
}

TEST(LinMutexFailure, TheDeadlineIsOnTheRealTimeClock) {
  HeldMutex mutex;
  const StandingClock clock(1000, 499999999);
  EXPECT_EQ(mutex.tryLock(2500), 2);
  EXPECT_EQ(systemLog().clock, CLOCK_REALTIME);
  EXPECT_EQ(systemLog().deadline.tv_sec, 1002);
  EXPECT_EQ(systemLog().deadline.tv_nsec, 999999999);
}

TEST(LinMutexFailure, NanosecondsThatReachASecondAreRefusedAndReport0) {
  HeldMutex mutex;
  const StandingClock clock(1000, 500000000);
  EXPECT_EQ(mutex.tryLock(1500), 0);
  EXPECT_EQ(systemLog().deadline.tv_sec, 1001);
  EXPECT_EQ(systemLog().deadline.tv_nsec, 1000000000);
  EXPECT_EQ(mutex.tryLock(1000), 2);
  EXPECT_EQ(mutex.tryLock(0), 0);
}

TEST(LinMutexFailure, TryLockReports0ForAnyOtherErrorAnd1WhenTheWaitSucceeds) {
  HeldMutex mutex;
  {
    const Answered refused(SystemCall::MutexTimedlock, EAGAIN);
    EXPECT_EQ(mutex.tryLock(1000), 0);
  }
  const Answered granted(SystemCall::MutexTimedlock, 0);
  EXPECT_EQ(mutex.tryLock(1000), 1);
}

TEST(LinMutexFailure, LockIsFalseWhenTheSystemRefuses) {
  LinMutex mutex;
  ASSERT_TRUE(mutex.create(false));
  const Answered refused(SystemCall::MutexLock, EAGAIN);
  EXPECT_FALSE(mutex.lock());
}

TEST(LinMutexFailure, IsNotMadeWhenAStepFailsAndGivesBackTheAttributeItHas) {
  struct Step {
    SystemCall call;
    int attributesDestroyed;
  };
  for (const Step step : {Step{SystemCall::MutexattrInit, 0}, Step{SystemCall::MutexattrSettype, 1},
                          Step{SystemCall::MutexInit, 1}}) {
    const Answered refused(step.call, ENOMEM);
    const int before = callsOf(SystemCall::MutexattrDestroy);
    const int mutexes = callsOf(SystemCall::MutexDestroy);
    EXPECT_EQ(IMutex::create("", false, true), nullptr);
    EXPECT_EQ(callsOf(SystemCall::MutexattrDestroy) - before, step.attributesDestroyed);
    EXPECT_EQ(callsOf(SystemCall::MutexDestroy), mutexes);
  }
}

TEST(LinMutexFailure, GivesBackMutexAndAttributeOnce) {
  const int attributes = callsOf(SystemCall::MutexattrDestroy);
  const int mutexes = callsOf(SystemCall::MutexDestroy);
  { const gom::SharedPointer<IMutex> mutex = IMutex::create("", false, true); }
  EXPECT_EQ(callsOf(SystemCall::MutexattrDestroy), attributes + 1);
  EXPECT_EQ(callsOf(SystemCall::MutexDestroy), mutexes + 1);
}

TEST(LockableFailure, ThrowsStatusOutOfMemoryWithoutAMutex) {
  const Answered refused(SystemCall::MutexInit, ENOMEM);
  try {
    const Lockable<int> lockable;
    FAIL() << "made without a mutex";
  } catch (Status status) {
    EXPECT_EQ(status, StatusOutOfMemory);
  }
}

TEST(LockableFailure, AFailedLockIsNotCounted) {
  struct Counting : Lockable<int> {
    int lockCount() const { return m_lockCount; }
  } lockable;
  const Answered refused(SystemCall::MutexLock, EAGAIN);
  EXPECT_FALSE(lockable.lock());
  EXPECT_EQ(lockable.lockCount(), 0);
}

}  // namespace
}  // namespace trelvo::core
