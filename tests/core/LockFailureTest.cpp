// What the loops, the dispatchers' slots and the logging engine do when the system refuses a lock
// or the memory of a thread's slot.

#include <gtest/gtest.h>
#include <trelvo/DebugMutex.h>
#include <trelvo/core/AsyncCallDispatcherCommon.h>
#include <trelvo/core/MainLoopCommon.h>

#include <cerrno>
#include <memory>

#include "core/linux/ThreadDispatchers.h"
#include "tests/core/SystemCalls.h"

namespace trelvo::core {
namespace {

using test::Answered;
using test::callsOf;
using test::SystemCall;

/// While it lives, this thread gets no lock.
struct NoLocks {
  Answered busy{SystemCall::MutexTrylock, EBUSY};
  Answered refused{SystemCall::MutexLock, EAGAIN};
};

/// Counts how often it is woken.
class CountingDispatcher : public AsyncCallDispatcherCommon {
 public:
  bool sleep() override { return false; }
  int sleep(int /*timeoutMs*/) override { return 0; }
  bool doScheduleDelegate(unsigned int /*id*/) override {
    ++woken;
    return true;
  }
  int woken = 0;
};

class Loop : public MainLoopCommon {
 public:
  using MainLoopCommon::setRunning;
};

TEST(MainLoopLockFailure, ALoopThatCannotBeLockedIsNotStopped) {
  const gom::SharedPointer<CountingDispatcher> dispatcher(new CountingDispatcher);
  Loop loop;
  ASSERT_TRUE(loop.initialize(dispatcher));
  loop.setRunning(true);
  {
    const NoLocks none;
    loop.stop();
  }
  EXPECT_TRUE(loop.isRunning());
  EXPECT_EQ(dispatcher->woken, 0);
  loop.stop();
  EXPECT_FALSE(loop.isRunning());
  EXPECT_EQ(dispatcher->woken, 1);
}

TEST(MainLoopLockFailure, ALoopMadeWithoutALockCanBeNeitherStoppedNorHarmed) {
  const gom::SharedPointer<CountingDispatcher> dispatcher(new CountingDispatcher);
  const auto make = [] {
    const NoLocks none;
    return new Loop;
  };
  const std::unique_ptr<Loop> loop(make());
  ASSERT_TRUE(loop->initialize(dispatcher));
  loop->setRunning(true);
  loop->stop();
  EXPECT_TRUE(loop->isRunning());
  EXPECT_EQ(dispatcher->woken, 0);
}

TEST(MainLoopLockFailure, ALoopMayEndWithoutALock) {
  const NoLocks none;
  const Loop loop;
}

TEST(DispatcherSlotFailure, ADispatcherThatCannotBeStoredIsNotTheThreads) {
  DispatcherSlot slot(nullptr, "Test::gSlot");
  CountingDispatcher dispatcher;
  {
    const Answered noMemory(SystemCall::Setspecific, ENOMEM);
    EXPECT_FALSE(enterSlot(slot, &dispatcher));
  }
  EXPECT_EQ(livingIn(slot), nullptr);
  EXPECT_TRUE(enterSlot(slot, &dispatcher));
  EXPECT_EQ(livingIn(slot), &dispatcher);
  leaveSlot(slot, &dispatcher);
  EXPECT_EQ(livingIn(slot), nullptr);
}

// Which the engine takes for logging from a process that is about to end.
TEST(DebugMutexFailure, ThatCouldNotBeMadeIsNeverLockedAndNotDestroyed) {
  const int destroyed = callsOf(SystemCall::MutexDestroy);
  const int locked = callsOf(SystemCall::MutexLock);
  {
    const Answered refused(SystemCall::MutexInit, ENOMEM);
    DebugMutex mutex;
    EXPECT_FALSE(mutex.lock());
  }
  EXPECT_EQ(callsOf(SystemCall::MutexDestroy), destroyed);
  EXPECT_EQ(callsOf(SystemCall::MutexLock), locked);
}

TEST(DebugMutexFailure, ThatCannotBeLockedSaysSo) {
  DebugMutex mutex;
  {
    const Answered refused(SystemCall::MutexLock, EAGAIN);
    EXPECT_FALSE(mutex.lock());
  }
  EXPECT_TRUE(mutex.lock());
  mutex.unlock();
}

}  // namespace
}  // namespace trelvo::core
