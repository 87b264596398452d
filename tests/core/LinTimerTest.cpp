#include <trelvo/core/LinTimer.h>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <climits>
#include <filesystem>
#include <functional>
#include <thread>
#include <vector>

#include <trelvo/core/AsyncCallDispatcher.h>
#include <trelvo/core/ITime.h>
#include <trelvo/core/LinTimeProvider.h>

#include "tests/core/Dispatch.h"

namespace trelvo::core {

namespace {

using test::onFreshThread;
using test::openDescriptors;
using ::testing::ElementsAre;

using Dispatchers = AsyncCallDispatcher;
using Dispatcher = gom::SharedPointer<IAsyncCallDispatcher>;
using Timer = gom::SharedPointer<ITimer>;

constexpr long long kHourMs = 3600000;
constexpr int kLongMs = 60000;  // a sleep that only a fault lets run out

/// Counts events, and does more when told to.
class Observer : public ITimerObserver {
 public:
  void handleTimerEvent(ITimer* timer) override {
    ++events;
    if (body) body(timer);
  }
  int events = 0;
  std::function<void(ITimer*)> body;
};

/// Keeps what timers tell it.
class Registry : public LinTimeProvider {
 public:
  struct Log {
    std::vector<ITimer*> registered;
    std::vector<ITimer*> unregistered;
  };
  explicit Registry(Log& log) : m_log(log) {}
  void registerTimer(ITimer* timer) override { m_log.registered.push_back(timer); }
  void unregisterTimer(ITimer* timer) override { m_log.unregistered.push_back(timer); }

 private:
  Log& m_log;
};

Dispatcher pollThread() {
  Dispatchers::setCurrentMainLoopType(Dispatchers::MainLoopTypeLinPoll);
  return Dispatchers::openDispatcher(Dispatchers::MainLoopTypeNone);
}

}  // namespace

class LinTimerTest : public ::testing::Test {
 protected:
  /// Sleeps until the observer was called that often.
  void waitFor(int events) {
    while (observer.events < events) ASSERT_NE(dispatcher->sleep(kLongMs), 2) << "no event";
  }

  Dispatcher dispatcher = pollThread();
  Observer observer;
  Timer timer = ITimer::create(&observer);
};

TEST_F(LinTimerTest, StartsIdle) {
  ASSERT_TRUE(timer);
  EXPECT_FALSE(timer->isActive());
  EXPECT_EQ(timer->delay(), 0);
  EXPECT_EQ(timer->period(), 0u);
  EXPECT_EQ(timer->observer(), &observer);
  EXPECT_EQ(timer->referenceCount(), 1);
}

TEST_F(LinTimerTest, ShortFormFiresAgainAndAgain) {
  EXPECT_EQ(timer->start(3, 0), StatusOk);
  EXPECT_TRUE(timer->isActive());
  EXPECT_EQ(timer->delay(), 3);
  EXPECT_EQ(timer->period(), 3u);
  waitFor(4);
  EXPECT_TRUE(timer->isActive());
}

TEST_F(LinTimerTest, LongFormWithoutPeriodFiresOnceAndIsIdleInTheObserver) {
  bool active = true;
  long long delay = -1;
  observer.body = [&](ITimer* fired) {
    EXPECT_EQ(fired, timer.get());
    active = fired->isActive();
    delay = fired->delay();
  };
  EXPECT_EQ(timer->start(3LL, 0ULL, 0), StatusOk);
  EXPECT_EQ(timer->delay(), 3);
  EXPECT_EQ(timer->period(), 0u);
  waitFor(1);
  EXPECT_FALSE(active);
  EXPECT_EQ(delay, 0);
  EXPECT_EQ(dispatcher->sleep(30), 2);
  EXPECT_EQ(observer.events, 1);
}

TEST_F(LinTimerTest, LongFormHasADelayAndAPeriod) {
  EXPECT_EQ(timer->start(1LL, 2ULL, 77), StatusOk);
  EXPECT_EQ(timer->delay(), 1);
  EXPECT_EQ(timer->period(), 2u);
  waitFor(3);
}

TEST_F(LinTimerTest, DoesNotFireEarly) {
  const auto due = test::inMs(40);
  EXPECT_EQ(timer->start(40LL, 0ULL, 0), StatusOk);
  waitFor(1);
  EXPECT_GE(std::chrono::steady_clock::now(), due);
}

TEST_F(LinTimerTest, DelayOf0IsInvalid) {
  EXPECT_EQ(timer->start(0, 0), StatusInvalidParameter);
  EXPECT_EQ(timer->start(0LL, 0ULL, 0), StatusInvalidParameter);
  EXPECT_EQ(timer->start(0LL, 5ULL, 0), StatusInvalidParameter) << "a period alone does not count";
  EXPECT_FALSE(timer->isActive());
  EXPECT_EQ(dispatcher->sleep(20), 2);
}

TEST_F(LinTimerTest, NegativeDelayFailsAndLeavesTheTimerAsItWas) {
  EXPECT_EQ(timer->start(-1, 0), StatusFailed);
  EXPECT_EQ(timer->start(-1000LL, 5ULL, 0), StatusFailed);
  EXPECT_EQ(timer->start(LLONG_MIN, 0ULL, 0), StatusFailed);
  EXPECT_FALSE(timer->isActive());
  EXPECT_EQ(timer->start(5LL, 7ULL, 0), StatusOk);
  EXPECT_EQ(timer->start(-1, 0), StatusFailed);
  EXPECT_TRUE(timer->isActive());
  EXPECT_EQ(timer->delay(), 5);
  EXPECT_EQ(timer->period(), 7u);
  waitFor(2);
}

TEST_F(LinTimerTest, TakesTheLongestTimes) {
  EXPECT_EQ(timer->start(LLONG_MAX, ULLONG_MAX, UINT_MAX), StatusOk);
  EXPECT_EQ(timer->delay(), LLONG_MAX);
  EXPECT_EQ(timer->period(), ULLONG_MAX);
  EXPECT_EQ(dispatcher->sleep(20), 2);
  EXPECT_EQ(timer->start(INT_MAX, 0), StatusOk);
  EXPECT_EQ(dispatcher->sleep(20), 2);
}

TEST_F(LinTimerTest, StopDisarms) {
  EXPECT_EQ(timer->start(20, 0), StatusOk);
  EXPECT_EQ(timer->stop(), StatusOk);
  EXPECT_FALSE(timer->isActive());
  EXPECT_EQ(timer->delay(), 0);
  EXPECT_EQ(timer->period(), 0u);
  EXPECT_EQ(dispatcher->sleep(60), 2);
  EXPECT_EQ(observer.events, 0);
}

TEST_F(LinTimerTest, StoppingAnIdleTimerIsFine) { EXPECT_EQ(timer->stop(), StatusOk); }

TEST_F(LinTimerTest, StartArmsAnArmedTimerAnew) {
  EXPECT_EQ(timer->start(kHourMs, 0ULL, 0), StatusOk);
  EXPECT_EQ(timer->start(1LL, 0ULL, 0), StatusOk);
  waitFor(1);
}

TEST_F(LinTimerTest, ObserverMayStartTheTimerAnew) {
  observer.body = [&](ITimer* fired) {
    if (observer.events < 3) {
      EXPECT_EQ(fired->start(1LL, 0ULL, 0), StatusOk);
    }
  };
  EXPECT_EQ(timer->start(1LL, 0ULL, 0), StatusOk);
  waitFor(3);
  EXPECT_FALSE(timer->isActive());
}

TEST_F(LinTimerTest, CatchesUpWithAtMost256CallsInOneGo) {
  EXPECT_EQ(timer->start(1, 0), StatusOk);
  std::this_thread::sleep_for(std::chrono::milliseconds(400));  // the thread is held up
  observer.body = [](ITimer* fired) { EXPECT_EQ(fired->stop(), StatusOk); };
  EXPECT_EQ(dispatcher->sleep(kLongMs), 1);
  EXPECT_EQ(observer.events, 256) << "and a stop in the observer does not cut it short";
  EXPECT_EQ(dispatcher->sleep(20), 2);
  EXPECT_EQ(observer.events, 256);
}

TEST_F(LinTimerTest, WhatAnObserverThrowsEndsItsRunOnly) {
  observer.body = [&](ITimer*) {
    if (observer.events == 1) throw StatusFailed;
  };
  EXPECT_EQ(timer->start(1, 0), StatusOk);
  EXPECT_EQ(dispatcher->sleep(kLongMs), 0);
  EXPECT_EQ(observer.events, 1);
  waitFor(3);
}

TEST_F(LinTimerTest, ObserverMayDropTheLastHandle) {
  const auto before = openDescriptors();
  observer.body = [&](ITimer* fired) {
    EXPECT_EQ(fired->observer(), &observer);
    timer.clear();
  };
  EXPECT_EQ(timer->start(1, 0), StatusOk);
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  EXPECT_EQ(dispatcher->sleep(kLongMs), 1);
  EXPECT_GE(observer.events, 10) << "it lives until it has caught up";
  EXPECT_EQ(openDescriptors(), before - 1);
  EXPECT_EQ(dispatcher->sleep(20), 2);
}

TEST_F(LinTimerTest, DestroyedTimerDoesNotFire) {
  EXPECT_EQ(timer->start(1, 0), StatusOk);
  timer.clear();
  EXPECT_EQ(dispatcher->sleep(20), 2);
  EXPECT_EQ(observer.events, 0);
}

TEST_F(LinTimerTest, FiresOnTheThreadThatMadeIt) {
  std::thread::id fired;
  observer.body = [&](ITimer*) { fired = std::this_thread::get_id(); };
  EXPECT_EQ(timer->start(1LL, 0ULL, 0), StatusOk);
  onFreshThread([] {
    const Dispatcher other = pollThread();
    EXPECT_EQ(other->sleep(20), 2);
  });
  waitFor(1);
  EXPECT_EQ(fired, std::this_thread::get_id());
}

TEST_F(LinTimerTest, RefusesEventsOfOtherDescriptors) {
  auto* const sink = dynamic_cast<IPollSink*>(timer.get());
  ASSERT_NE(sink, nullptr);
  EXPECT_THROW(sink->handlePollEvent({-1, POLLIN, POLLIN}), Status);
  EXPECT_THROW(sink->handlePollEvent({0, POLLIN, POLLIN}), Status);
  EXPECT_EQ(observer.events, 0);
}

TEST_F(LinTimerTest, IgnoresAnEventAheadOfItsTime) {
  int own = -1;
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    std::error_code gone;
    const auto target = std::filesystem::read_symlink(entry.path(), gone);
    if (target == "anon_inode:[timerfd]") {
      own = std::max(own, std::stoi(entry.path().filename()));
    }
  }
  ASSERT_GT(own, 0);
  ASSERT_EQ(timer->start(kHourMs, 0ULL, 0), StatusOk);
  dynamic_cast<IPollSink&>(*timer).handlePollEvent({own, POLLIN, POLLIN});
  EXPECT_EQ(observer.events, 0);
  EXPECT_TRUE(timer->isActive());
}

TEST_F(LinTimerTest, TellsTheTimeProvider) {
  Registry::Log log;
  ITime::setTimeProvider(new Registry(log));
  ITimer* const plain = timer.get();
  EXPECT_EQ(timer->start(kHourMs, 0ULL, 0), StatusOk);
  EXPECT_EQ(timer->start(1LL, 0ULL, 0), StatusOk);
  EXPECT_THAT(log.registered, ElementsAre(plain, plain));
  EXPECT_TRUE(log.unregistered.empty());
  waitFor(1);
  EXPECT_THAT(log.unregistered, ElementsAre(plain)) << "a timer that fires once has stopped";
  EXPECT_EQ(timer->stop(), StatusOk);
  EXPECT_EQ(log.unregistered.size(), 2u);
  EXPECT_EQ(timer->start(0LL, 0ULL, 0), StatusInvalidParameter);
  EXPECT_EQ(timer->start(-1LL, 0ULL, 0), StatusFailed);
  EXPECT_EQ(log.registered.size(), 2u) << "a refused start tells nothing";
  timer.clear();
  EXPECT_THAT(log.unregistered, ElementsAre(plain, plain, plain));
  ITime::setTimeProvider(nullptr);
}

TEST_F(LinTimerTest, RunsOnThroughASwapOfTheTimeProvider) {
  Registry::Log log;
  EXPECT_EQ(timer->start(2, 0), StatusOk);
  ITime::setTimeProvider(new Registry(log));
  waitFor(2);
  EXPECT_EQ(timer->stop(), StatusOk);
  EXPECT_THAT(log.unregistered, ElementsAre(timer.get())) << "which never saw it before";
  EXPECT_TRUE(log.registered.empty());
  timer.clear();
  ITime::setTimeProvider(nullptr);
}

TEST(LinTimer, WithoutADescriptorNothingWorks) {
  Observer observer;
  LinTimer timer(&observer);
  EXPECT_EQ(timer.start(1, 0), StatusWrongState);
  EXPECT_EQ(timer.start(1LL, 0ULL, 0), StatusWrongState);
  EXPECT_EQ(timer.start(0, 0), StatusInvalidParameter);
  EXPECT_EQ(timer.stop(), StatusWrongState);
}

TEST(LinTimer, WithoutADescriptorItTellsTheTimeProviderOfItsEndAllTheSame) {
  Registry::Log log;
  ITime::setTimeProvider(new Registry(log));
  Observer observer;
  const ITimer* plain = nullptr;
  {
    const LinTimer timer(&observer);
    plain = &timer;
  }
  EXPECT_THAT(log.unregistered, ElementsAre(plain));
  ITime::setTimeProvider(nullptr);
}

/// Objects to the end of every timer.
class Refusing : public LinTimeProvider {
 public:
  void unregisterTimer(ITimer* /*timer*/) override { throw StatusFailed; }
};

TEST(LinTimer, EndsThoughTheTimeProviderObjects) {
  onFreshThread([] {
    const Dispatcher dispatcher = pollThread();
    const std::ptrdiff_t before = test::openDescriptors();
    ITime::setTimeProvider(new Refusing);
    Observer observer;
    {
      const gom::SharedPointer<ITimer> timer = ITimer::create(&observer);
      ASSERT_TRUE(timer);
      EXPECT_EQ(timer->start(1LL, 0ULL, 0), StatusOk);
    }
    ITime::setTimeProvider(nullptr);
    EXPECT_EQ(test::openDescriptors(), before);
    EXPECT_EQ(dispatcher->sleep(20), 2);
    EXPECT_EQ(observer.events, 0);
  });
}

TEST(LinTimer, OnTheStackIsNotEndedByItsOwnEvent) {
  onFreshThread([] {
    const Dispatcher dispatcher = pollThread();
    Observer observer;
    LinTimer timer(&observer);
    ASSERT_TRUE(timer.init());
    EXPECT_EQ(timer.start(1LL, 0ULL, 0), StatusOk);
    EXPECT_EQ(dispatcher->sleep(kLongMs), 1);
    EXPECT_EQ(observer.events, 1);
    EXPECT_EQ(timer.referenceCount(), 0);
    EXPECT_EQ(timer.stop(), StatusOk);
  });
}

TEST(LinTimer, WithoutAnObserverThereIsNone) {
  EXPECT_FALSE(ITimer::create(nullptr));
  onFreshThread([] {
    const Dispatcher dispatcher = pollThread();
    const gom::SharedPointer<LinTimer> timer(new LinTimer(nullptr));
    ASSERT_TRUE(timer->init());
    EXPECT_EQ(timer->start(1LL, 0ULL, 0), StatusOk);
    EXPECT_EQ(dispatcher->sleep(kLongMs), 0) << "its event is refused";
  });
}

TEST(LinTimer, ReservedTypeOfAThreadGivesNone) {
  onFreshThread([] {
    Observer observer;
    Dispatchers::setCurrentMainLoopType(static_cast<Dispatchers::MainLoopType>(1));
    const auto before = openDescriptors();
    EXPECT_FALSE(ITimer::create(&observer));
    EXPECT_EQ(openDescriptors(), before);
  });
}

TEST(LinTimer, FreshThreadGetsTheGlibKindAndTheTimerKeepsIt) {
  onFreshThread([] {
    Observer observer;
    const auto timer = ITimer::create(&observer);
    ASSERT_TRUE(timer);
    EXPECT_EQ(Dispatchers::currentMainLoopType(), Dispatchers::MainLoopTypeLinGlib);
    const auto dispatcher = Dispatchers::openDispatcher(Dispatchers::MainLoopTypeNone);
    EXPECT_EQ(dispatcher->referenceCount(), 2);
    EXPECT_EQ(timer->start(1, 0), StatusOk);
    while (observer.events < 3) dispatcher->sleep(kLongMs);
  });
}

TEST(LinTimer, LastHandleOfADispatcherMayGoWithATimerInItsOwnEvent) {
  onFreshThread([] {
    const auto before = openDescriptors();
    Observer observer;
    Timer timer;
    Dispatcher dispatcher = pollThread();
    IAsyncCallDispatcher* const plain = dispatcher.get();
    timer = ITimer::create(&observer);
    dispatcher.clear();
    observer.body = [&](ITimer*) { timer.clear(); };
    EXPECT_EQ(timer->start(1LL, 0ULL, 0), StatusOk);
    EXPECT_EQ(plain->sleep(kLongMs), 1);
    EXPECT_EQ(observer.events, 1);
    EXPECT_EQ(openDescriptors(), before);
  });
}

TEST(LinTimer, IdleAndFarTimersDoNotWakeTheLoop) {
  onFreshThread([] {
    rlimit limit = {};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &limit), 0);
    limit.rlim_cur = limit.rlim_max;
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
    const auto room = static_cast<std::size_t>(std::min<rlim_t>(limit.rlim_cur, 10200)) - 200;
    const Dispatcher dispatcher = pollThread();
    Observer observer;
    std::vector<Timer> timers(room);
    for (std::size_t i = 0; i < room; ++i) {
      timers[i] = ITimer::create(&observer);
      ASSERT_TRUE(timers[i]) << i;
      if (i % 2 == 0) {
        EXPECT_EQ(timers[i]->start(kHourMs, 0ULL, 0), StatusOk);
      }
    }
    const auto due = test::inMs(300);
    EXPECT_EQ(dispatcher->sleep(300), 2) << "one poll, to its end";
    EXPECT_GE(std::chrono::steady_clock::now(), due);
    EXPECT_EQ(timers.back()->start(1LL, 0ULL, 0), StatusOk);
    EXPECT_EQ(dispatcher->sleep(kLongMs), 1);
    EXPECT_EQ(observer.events, 1);
  });
}

}  // namespace trelvo::core
