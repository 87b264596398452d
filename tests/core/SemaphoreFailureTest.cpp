#include <gtest/gtest.h>
#include <trelvo/core/LinSemaphore.h>

#include <cerrno>

#include "tests/core/SystemCalls.h"

namespace trelvo::core {
namespace {

using test::Answered;
using test::callsOf;
using test::StandingClock;
using test::SystemCall;
using test::systemLog;

gom::SharedPointer<ISemaphore> semaphoreWith(unsigned int tokens) {
  auto semaphore = ISemaphore::create(0, 10);
  EXPECT_TRUE(tokens == 0 || semaphore->signal(tokens, nullptr));
  return semaphore;
}

unsigned int tokensOf(ISemaphore& semaphore) {
  unsigned int tokens = 77;
  EXPECT_TRUE(semaphore.signal(0, &tokens));
  return tokens;
}

TEST(LinSemaphoreFailure, IsNotMadeWhenAStepFailsAndGivesBackTheConditionItHas) {
  struct Step {
    SystemCall call;
    int conditionsDestroyed;
  };
  for (const Step step : {Step{SystemCall::CondattrInit, 0}, Step{SystemCall::CondattrSetclock, 0},
                          Step{SystemCall::CondInit, 0}, Step{SystemCall::MutexInit, 1}}) {
    const Answered refused(step.call, ENOMEM);
    const int conditions = callsOf(SystemCall::CondDestroy);
    const int mutexes = callsOf(SystemCall::MutexDestroy);
    EXPECT_EQ(ISemaphore::create(0, 1), nullptr);
    EXPECT_EQ(callsOf(SystemCall::CondDestroy) - conditions, step.conditionsDestroyed);
    EXPECT_EQ(callsOf(SystemCall::MutexDestroy), mutexes);
  }
}

TEST(LinSemaphoreFailure, GivesBackConditionAndMutexOnce) {
  const int conditions = callsOf(SystemCall::CondDestroy);
  const int mutexes = callsOf(SystemCall::MutexDestroy);
  { const auto semaphore = ISemaphore::create(0, 1); }
  EXPECT_EQ(callsOf(SystemCall::CondDestroy), conditions + 1);
  EXPECT_EQ(callsOf(SystemCall::MutexDestroy), mutexes + 1);
  EXPECT_EQ(ISemaphore::create(1, 1), nullptr);
  EXPECT_EQ(callsOf(SystemCall::CondDestroy), conditions + 2);
  EXPECT_EQ(callsOf(SystemCall::MutexDestroy), mutexes + 2);
}

TEST(LinSemaphoreFailure, TheDeadlineIsOnTheMonotonicClock) {
  const auto semaphore = semaphoreWith(0);
  const StandingClock clock(1, 499999999);
  EXPECT_EQ(semaphore->tryWait(2500), 2);
  EXPECT_EQ(systemLog().clock, CLOCK_MONOTONIC);
  EXPECT_EQ(systemLog().deadline.tv_sec, 3);
  EXPECT_EQ(systemLog().deadline.tv_nsec, 999999999);
}

TEST(LinSemaphoreFailure, NanosecondsThatReachASecondAreRefusedAndReport0) {
  const auto semaphore = semaphoreWith(0);
  const StandingClock clock(1, 500000000);
  EXPECT_EQ(semaphore->tryWait(1500), 0);
  EXPECT_EQ(systemLog().deadline.tv_sec, 2);
  EXPECT_EQ(systemLog().deadline.tv_nsec, 1000000000);
  EXPECT_EQ(semaphore->tryWait(1000), 2);
}

TEST(LinSemaphoreFailure, ATokenIsTakenWhateverTheDeadline) {
  const auto semaphore = semaphoreWith(2);
  {
    const StandingClock clock(1, 999999999);
    EXPECT_EQ(semaphore->tryWait(999), 1);
  }
  const Answered noClock(SystemCall::ClockGettime, -1);
  EXPECT_EQ(semaphore->tryWait(1000), 1);
}

TEST(LinSemaphoreFailure, WithoutAClockTheTimeHasRunOutLongAgo) {
  const auto semaphore = semaphoreWith(0);
  const Answered noClock(SystemCall::ClockGettime, -1);
  EXPECT_EQ(semaphore->tryWait(4000000000U), 2);
  EXPECT_EQ(systemLog().deadline.tv_sec, 0);
  EXPECT_EQ(systemLog().deadline.tv_nsec, 0);
}

TEST(LinSemaphoreFailure, AWaitThatFailsReports0AndTakesNothing) {
  const auto semaphore = semaphoreWith(0);
  const Answered timed(SystemCall::CondTimedwait, EPERM);
  const Answered untimed(SystemCall::CondWait, EPERM);
  EXPECT_EQ(semaphore->tryWait(1000), 0);
  EXPECT_FALSE(semaphore->wait());
  EXPECT_EQ(tokensOf(*semaphore), 0U);
}

TEST(LinSemaphoreFailure, AMutexThatCannotBeLockedFailsEverything) {
  const auto semaphore = semaphoreWith(1);
  {
    const Answered refused(SystemCall::MutexLock, EAGAIN);
    unsigned int previous = 77;
    EXPECT_FALSE(semaphore->wait());
    EXPECT_EQ(semaphore->tryWait(0), 0);
    EXPECT_FALSE(semaphore->signal(1, &previous));
    EXPECT_EQ(previous, 77U);
    EXPECT_FALSE(semaphore->zero());
  }
  EXPECT_EQ(tokensOf(*semaphore), 1U);
}

TEST(LinSemaphoreFailure, ALockThatTimesOutReports2) {
  const auto semaphore = semaphoreWith(1);
  const Answered timedOut(SystemCall::MutexLock, ETIMEDOUT);
  EXPECT_EQ(semaphore->tryWait(0), 2);
  EXPECT_FALSE(semaphore->wait());
}

TEST(LinSemaphoreFailure, SignalAddsNothingWhenItCannotWake) {
  const auto semaphore = semaphoreWith(1);
  {
    const Answered refused(SystemCall::CondBroadcast, EINVAL);
    unsigned int previous = 77;
    EXPECT_FALSE(semaphore->signal(1, &previous));
    EXPECT_EQ(previous, 1U);
  }
  EXPECT_EQ(tokensOf(*semaphore), 1U);
}

TEST(LinSemaphoreFailure, ZeroGivesTheMutexUpOnceWithNowAsDeadline) {
  const auto semaphore = semaphoreWith(3);
  const StandingClock clock(1, 999999999);
  const int waits = callsOf(SystemCall::CondTimedwait);
  EXPECT_TRUE(semaphore->zero());
  EXPECT_EQ(callsOf(SystemCall::CondTimedwait), waits + 1);
  EXPECT_EQ(systemLog().clock, CLOCK_MONOTONIC);
  EXPECT_EQ(systemLog().deadline.tv_sec, 1);
  EXPECT_EQ(systemLog().deadline.tv_nsec, 999999999);
  EXPECT_EQ(tokensOf(*semaphore), 0U);
}

TEST(LinSemaphoreFailure, ZeroEmptiesWhetherItsWaitWasWokenOrTimedOut) {
  for (const int error : {0, ETIMEDOUT}) {
    const auto semaphore = semaphoreWith(3);
    const Answered wait(SystemCall::CondTimedwait, error);
    EXPECT_TRUE(semaphore->zero());
    EXPECT_EQ(tokensOf(*semaphore), 0U);
  }
}

TEST(LinSemaphoreFailure, ZeroLeavesTheTokensWhenItsWaitFails) {
  const auto semaphore = semaphoreWith(3);
  const Answered wait(SystemCall::CondTimedwait, EINVAL);
  EXPECT_FALSE(semaphore->zero());
  EXPECT_EQ(tokensOf(*semaphore), 3U);
}

TEST(LinSemaphoreFailure, ZeroEmptiesWithoutAClock) {
  const auto semaphore = semaphoreWith(3);
  const Answered noClock(SystemCall::ClockGettime, -1);
  EXPECT_TRUE(semaphore->zero());
  EXPECT_EQ(tokensOf(*semaphore), 0U);
}

}  // namespace
}  // namespace trelvo::core
