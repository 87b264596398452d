// Dispatchers, loops and timers while memory runs out.

#include <gtest/gtest.h>

#include <optional>

#include <trelvo/core/AsyncCallDispatcher.h>
#include <trelvo/core/ITime.h>
#include <trelvo/core/LinAlarmTimer.h>
#include <trelvo/core/LinGlibAsyncCallDispatcher.h>
#include <trelvo/core/LinPollAsyncCallDispatcher.h>
#include <trelvo/core/MainLoop.h>

#include "tests/core/Dispatch.h"
#include "tests/support/AllocationFailure.h"

namespace trelvo::core {

namespace {

using test::allocationsOf;
using test::AllocationsSucceed;
using test::countUp;
using test::everyAllocationFails;

using Dispatchers = AsyncCallDispatcher;
using Dispatcher = gom::SharedPointer<LinPollAsyncCallDispatcher>;

Dispatcher openPoll() {
  const AllocationsSucceed succeed;
  return LinPollAsyncCallDispatcher::create();
}

class Quiet : public ITimerObserver, public IPowerAdaptation {
 public:
  void handleTimerEvent(ITimer* /*timer*/) override {}
  Status setAlarm(long long, unsigned long long, IAlarmObserver*) override { return StatusOk; }
  Status cancelAlarm(IAlarmObserver*) override { return StatusOk; }
};

}  // namespace

TEST(DispatchMemory, DispatchersAreMadeWholeOrNotAtAll) {
  const auto steps = everyAllocationFails([] {
    if (const Dispatcher dispatcher = LinPollAsyncCallDispatcher::create()) {
      const AllocationsSucceed succeed;
      int calls = 0;
      EXPECT_TRUE(dispatcher->queueAsyncCall(countUp, &calls));
      EXPECT_EQ(dispatcher->sleep(0), 1);
      EXPECT_EQ(calls, 1);
    }
  });
  EXPECT_GE(steps, 4u);
  everyAllocationFails([] {
    const gom::SharedPointer<LinGlibAsyncCallDispatcher> dispatcher =
        LinGlibAsyncCallDispatcher::create();
    if (dispatcher) {
      const AllocationsSucceed succeed;
      int calls = 0;
      EXPECT_TRUE(dispatcher->queueAsyncCall(countUp, &calls));
      EXPECT_EQ(dispatcher->sleep(-1), 1);
      EXPECT_EQ(calls, 1);
    }
  });
}

TEST(DispatchMemory, PostThatFailsHasPostedNothing) {
  const auto steps = everyAllocationFails([] {
    const Dispatcher dispatcher = openPoll();
    int calls = 0;
    const bool posted = dispatcher->queueAsyncCall(countUp, &calls);
    const AllocationsSucceed succeed;
    EXPECT_EQ(dispatcher->sleep(0), posted ? 1 : 2) << "nothing was sent";
    EXPECT_EQ(calls, posted ? 1 : 0);
    EXPECT_TRUE(dispatcher->queueAsyncCall(countUp, &calls));
    EXPECT_EQ(dispatcher->sleep(0), 1);
    EXPECT_EQ(calls, posted ? 2 : 1);
  });
  EXPECT_GE(steps, 1u);
}

TEST(DispatchMemory, PostAfterTheEmptySlotWasRemovedIsNoWorse) {
  everyAllocationFails([] {
    const Dispatcher dispatcher = openPoll();
    dispatcher->removeAllAsyncCall(static_cast<void (*)(void*)>(nullptr));
    int calls = 0;
    const bool posted = dispatcher->queueAsyncCall(countUp, &calls);
    const AllocationsSucceed succeed;
    EXPECT_EQ(dispatcher->sleep(0), posted ? 1 : 2);
    EXPECT_EQ(calls, posted ? 1 : 0);
  });
}

TEST(DispatchMemory, AttachThatFailsHasAttachedNothing) {
  everyAllocationFails([] {
    std::optional<AllocationsSucceed> paused;
    paused.emplace();
    const Dispatcher dispatcher = openPoll();
    const test::Channel channel;
    int events = 0;
    test::Sink sink([&](const pollfd&) { events += channel.answer() ? 1 : 0; });
    channel.ring();
    paused.reset();
    const bool attached = dispatcher->attachPollSink(channel.descriptor(), &sink);
    const AllocationsSucceed succeed;
    EXPECT_EQ(dispatcher->sleep(0), attached ? 1 : 2);
    EXPECT_EQ(events, attached ? 1 : 0);
    EXPECT_NE(dispatcher->attachPollSink(channel.descriptor(), &sink), attached);
  });
}

TEST(DispatchMemory, SleepWithoutMemoryGives0AndLosesNothing) {
  everyAllocationFails([] {
    const Dispatcher dispatcher = openPoll();
    int calls = 0;
    {
      const AllocationsSucceed succeed;
      dispatcher->queueAsyncCall(countUp, &calls);
    }
    const int result = dispatcher->sleep(0);
    EXPECT_EQ(result, calls);
    const AllocationsSucceed succeed;
    dispatcher->sleep(0);
    EXPECT_EQ(calls, 1);
  });
}

TEST(DispatchMemory, LoopsAreMadeWholeOrNotAtAll) {
  for (const auto type : {Dispatchers::MainLoopTypeLinPoll, Dispatchers::MainLoopTypeLinGlib}) {
    everyAllocationFails([type] {
      const auto loop = MainLoop::create(type);
      const AllocationsSucceed succeed;
      if (loop) {
        EXPECT_EQ(loop->mainLoopType(), type);
        EXPECT_TRUE(loop->dispatcher());
      }
    });
  }
}

TEST(DispatchMemory, TimersAreMadeWholeOrNotAtAll) {
  EXPECT_NE(ITime::timeSinceBoot(), -1) << "the provider is there";
  everyAllocationFails([] {
    Quiet quiet;
    Dispatchers::setCurrentMainLoopType(Dispatchers::MainLoopTypeLinPoll);
    if (const auto timer = ITimer::create(&quiet)) {
      EXPECT_EQ(timer->start(1000, 0), StatusOk);
    }
    if (const auto timer = IAlarmTimer::create(&quiet, &quiet)) {
      EXPECT_EQ(timer->start(1000LL, 0ULL, 0), StatusOk);
    }
  });
}

TEST(DispatchMemory, SteadyPostingAndSleepingAllocatesNothing) {
  const auto run = [](int rounds) {
    return allocationsOf([rounds] {
             const Dispatcher dispatcher = openPoll();
             int calls = 0;
             for (int round = 0; round < rounds; ++round) {
               for (int i = 0; i < 60; ++i) dispatcher->queueAsyncCall(countUp, &calls);
               dispatcher->sleep(0);
             }
             EXPECT_EQ(calls, rounds * 60);
           })
        .calls;
  };
  EXPECT_EQ(run(1), run(100));
}

TEST(DispatchMemory, ArmingAndDisarmingATimerAllocatesNothing) {
  EXPECT_NE(ITime::timeSinceBoot(), -1) << "the provider is there";
  const auto allocations = allocationsOf([] {
    Quiet quiet;
    gom::SharedPointer<ITimer> timer;
    {
      const AllocationsSucceed succeed;
      Dispatchers::setCurrentMainLoopType(Dispatchers::MainLoopTypeLinPoll);
      timer = ITimer::create(&quiet);
    }
    for (int i = 0; i < 10; ++i) {
      EXPECT_EQ(timer->start(1000, 0), StatusOk);
      EXPECT_EQ(timer->stop(), StatusOk);
    }
  });
  EXPECT_EQ(allocations.calls, 0u);
}

}  // namespace trelvo::core
