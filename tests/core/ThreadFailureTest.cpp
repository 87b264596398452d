#include <gtest/gtest.h>
#include <sched.h>
#include <trelvo/core/LinThread.h>

#include <cerrno>
#include <ostream>
#include <thread>

#include "tests/core/Observers.h"
#include "tests/core/SystemCalls.h"

namespace trelvo::core {
namespace {

using test::Answered;
using test::callsOf;
using test::CountingObserver;
using test::HeldObserver;
using test::SystemCall;
using test::systemLog;

/// Counts the calls of one test.
class LinThreadFailure : public testing::Test {
 protected:
  LinThreadFailure() { systemLog() = {}; }
};

TEST_F(LinThreadFailure, TheObserversResultIsThePthreadsExitValue) {
  for (const int result : {0, 42, -1}) {
    CountingObserver observer;
    observer.result = result;
    const auto thread = IThread::create(&observer, false);
    EXPECT_TRUE(thread->wait());
    EXPECT_EQ(systemLog().exitValue, result);
  }
}

TEST_F(LinThreadFailure, ASkippedBodyEndsWith15) {
  CountingObserver observer;
  { const auto thread = IThread::create(&observer, true); }
  EXPECT_EQ(callsOf(SystemCall::Join), 1);
  EXPECT_EQ(systemLog().exitValue, 15);
  EXPECT_EQ(observer.calls, 0);
}

TEST_F(LinThreadFailure, AMissingObserverEndsWith15) {
  const auto thread = IThread::create(nullptr, false);
  EXPECT_TRUE(thread->wait());
  EXPECT_EQ(systemLog().exitValue, 15);
}

TEST_F(LinThreadFailure, IsJoinedOnlyOnce) {
  CountingObserver observer;
  {
    LinThread thread;
    ASSERT_TRUE(thread.create(&observer, false));
    EXPECT_TRUE(thread.wait());
    EXPECT_TRUE(thread.join());
  }
  EXPECT_EQ(callsOf(SystemCall::Join), 1);
  EXPECT_EQ(callsOf(SystemCall::TryJoin), 0);
  EXPECT_EQ(callsOf(SystemCall::Kill), 0);
}

TEST_F(LinThreadFailure, IsNotMadeWhenTheSystemHasNoThread) {
  const Answered refused(SystemCall::Create, EAGAIN);
  CountingObserver observer;
  EXPECT_EQ(IThread::create(&observer, false), nullptr);
  EXPECT_EQ(callsOf(SystemCall::Join), 0);
  EXPECT_EQ(callsOf(SystemCall::Kill), 0);
}

TEST_F(LinThreadFailure, IsNotMadeWithoutItsSemaphores) {
  const Answered refused(SystemCall::CondInit, EAGAIN);
  CountingObserver observer;
  EXPECT_EQ(IThread::create(&observer, false), nullptr);
  EXPECT_EQ(callsOf(SystemCall::Create), 0);
}

TEST_F(LinThreadFailure, AWaitThatFailsIsTrueWithoutAJoin) {
  CountingObserver observer;
  const auto thread = IThread::create(&observer, true);
  {
    const Answered refused(SystemCall::CondWait, EPERM);
    EXPECT_TRUE(thread->wait());
  }
  EXPECT_EQ(callsOf(SystemCall::Join), 0);
  EXPECT_TRUE(thread->resume());
  EXPECT_TRUE(thread->wait());
  EXPECT_EQ(callsOf(SystemCall::Join), 1);
}

TEST_F(LinThreadFailure, AResumeThatFailsCanBeTriedAgain) {
  CountingObserver observer;
  const auto thread = IThread::create(&observer, true);
  {
    const Answered refused(SystemCall::CondBroadcast, EINVAL);
    EXPECT_FALSE(thread->resume());
  }
  EXPECT_EQ(observer.calls, 0);
  EXPECT_TRUE(thread->resume());
  EXPECT_TRUE(thread->wait());
  EXPECT_EQ(observer.calls, 1);
}

TEST_F(LinThreadFailure, ATryWaitThatFailsReports0) {
  CountingObserver observer;
  const auto thread = IThread::create(&observer, true);
  const Answered refused(SystemCall::CondTimedwait, EPERM);
  EXPECT_EQ(thread->tryWait(0), 0);
  EXPECT_FALSE(thread->isRunning());
}

TEST_F(LinThreadFailure, AThreadThatTheSystemDoesNotKnowCountsAsJoined) {
  CountingObserver observer;
  const auto thread = IThread::create(&observer, false);
  const Answered unknown(SystemCall::Join, ESRCH);
  EXPECT_TRUE(thread->wait());
}

TEST_F(LinThreadFailure, AJoinThatFailsIsFalseAndNotTriedAgain) {
  CountingObserver observer;
  LinThread thread;
  ASSERT_TRUE(thread.create(&observer, false));
  const Answered refused(SystemCall::Join, EDEADLK);
  EXPECT_FALSE(thread.wait());
  EXPECT_TRUE(thread.join());
  EXPECT_EQ(callsOf(SystemCall::Join), 1);
}

TEST_F(LinThreadFailure, TryWaitReportsAJoinThatFailsAs0) {
  CountingObserver observer;
  const auto thread = IThread::create(&observer, false);
  const Answered refused(SystemCall::Join, EDEADLK);
  EXPECT_EQ(thread->tryWait(60000), 0);
}

TEST_F(LinThreadFailure, AnEndUsedUpIsJoinedWithoutASignal) {
  CountingObserver observer;
  {
    const auto thread = IThread::create(&observer, false);
    while (thread->isRunning()) {
      std::this_thread::yield();
    }
  }
  EXPECT_EQ(callsOf(SystemCall::TryJoin), 1);
  EXPECT_EQ(callsOf(SystemCall::Kill), 0);
}

TEST_F(LinThreadFailure, DestroyedWhenItCannotWaitIsJoined) {
  HeldObserver observer;
  auto thread = IThread::create(&observer, false);
  observer.waitUntilEntered();
  {
    const Answered refused(SystemCall::CondTimedwait, EPERM, [&] { observer.release(); });
    thread.clear();
  }
  EXPECT_TRUE(observer.hasLeft());
  EXPECT_EQ(callsOf(SystemCall::Join), 1);
  EXPECT_EQ(callsOf(SystemCall::Kill), 0);
}

TEST_F(LinThreadFailure, DestroyedWhileItsBodyGoesOnAndOnIsKilled) {
  HeldObserver observer;
  auto thread = IThread::create(&observer, false);
  observer.waitUntilEntered();
  {
    const Answered patienceRanOut(SystemCall::CondTimedwait, ETIMEDOUT);
    const Answered killed(SystemCall::Kill, 0, [&] { observer.release(); });
    thread.clear();
  }
  EXPECT_EQ(callsOf(SystemCall::TryJoin), 1);
  EXPECT_EQ(callsOf(SystemCall::Kill), 1);
  EXPECT_EQ(callsOf(SystemCall::Join), 0);
}

struct Schedule {
  IThread::Priority priority;
  int policy;
  int systemPriority;
};

class LinThreadPriority : public testing::TestWithParam<Schedule> {};

void PrintTo(const Schedule& schedule,
             std::ostream* out) {  // NOLINT(readability-identifier-naming)
  *out << "priority " << schedule.priority;
}

TEST_P(LinThreadPriority, AsksForThisSchedule) {
  CountingObserver observer;
  const auto thread = IThread::create(&observer, true);
  const Answered granted(SystemCall::Setschedparam, 0);
  const Schedule& schedule = GetParam();
  EXPECT_TRUE(thread->setThreadPriority(schedule.priority));
  EXPECT_EQ(systemLog().policy, schedule.policy);
  EXPECT_EQ(systemLog().priority, schedule.systemPriority);
  systemLog() = {};
  EXPECT_TRUE(IThread::setCurrentThreadPriority(schedule.priority));
  EXPECT_EQ(systemLog().policy, schedule.policy);
  EXPECT_EQ(systemLog().priority, schedule.systemPriority);
}

TEST_P(LinThreadPriority, IsFalseWhenTheSystemRefuses) {
  const Answered refused(SystemCall::Setschedparam, EPERM);
  EXPECT_FALSE(LinThread::setThreadPriority(pthread_self(), GetParam().priority));
  EXPECT_FALSE(IThread::setCurrentThreadPriority(GetParam().priority));
}

// Linux has real-time priorities 1 to 99.
INSTANTIATE_TEST_SUITE_P(EveryPriority, LinThreadPriority,
                         testing::Values(Schedule{IThread::PriorityLowest, SCHED_OTHER, 0},
                                         Schedule{IThread::PriorityLow, SCHED_OTHER, 0},
                                         Schedule{IThread::PriorityNormal, SCHED_OTHER, 0},
                                         Schedule{IThread::PriorityHigh, SCHED_RR, 1},
                                         Schedule{IThread::PriorityHighest, SCHED_RR, 99},
                                         Schedule{IThread::PriorityRealTime, SCHED_RR, 99}));

TEST_F(LinThreadFailure, APriorityOutsideOf1To6NeverReachesTheSystem) {
  CountingObserver observer;
  const auto thread = IThread::create(&observer, true);
  for (const int value : {0, 7}) {
    EXPECT_FALSE(thread->setThreadPriority(static_cast<IThread::Priority>(value)));
  }
  EXPECT_EQ(callsOf(SystemCall::Setschedparam), 0);
}

}  // namespace
}  // namespace trelvo::core
