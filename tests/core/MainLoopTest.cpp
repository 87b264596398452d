#include <trelvo/core/MainLoop.h>

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <memory>
#include <thread>

#include <trelvo/core/LinAsyncCallDispatcher.h>
#include <trelvo/core/LinGlibMainLoop.h>
#include <trelvo/core/LinPollMainLoop.h>
#include <trelvo/core/MainLoopCommon.h>

#include "tests/core/Dispatch.h"

namespace trelvo::core {

namespace {

using test::countUp;
using test::onFreshThread;

using Dispatchers = AsyncCallDispatcher;
constexpr auto kNone = Dispatchers::MainLoopTypeNone;
constexpr auto kPoll = Dispatchers::MainLoopTypeLinPoll;
constexpr auto kGlib = Dispatchers::MainLoopTypeLinGlib;

void stopLoop(void* loop) { static_cast<MainLoop*>(loop)->stop(); }

Status creating(Dispatchers::MainLoopType type, bool& made) {
  try {
    made = static_cast<bool>(MainLoop::create(type));
    return StatusOk;
  } catch (Status status) {
    return status;
  }
}

}  // namespace

/// What holds for both kinds.
class EveryMainLoop : public ::testing::TestWithParam<Dispatchers::MainLoopType> {};

TEST_P(EveryMainLoop, RunsPostedCallsUntilItIsStopped) {
  onFreshThread([] {
    const auto loop = MainLoop::create(GetParam());
    ASSERT_TRUE(loop);
    EXPECT_EQ(loop->mainLoopType(), GetParam());
    int calls = 0;
    loop->dispatcher()->queueAsyncCall(countUp, &calls);
    loop->dispatcher()->queueAsyncCall(stopLoop, loop.get());
    EXPECT_FALSE(loop->isRunning());
    EXPECT_EQ(loop->start(nullptr), StatusOk);
    EXPECT_EQ(calls, 1);
    EXPECT_FALSE(loop->isRunning());
  });
}

TEST_P(EveryMainLoop, CanBeStartedAgain) {
  onFreshThread([] {
    const auto loop = MainLoop::create(GetParam());
    int calls = 0;
    for (int round = 1; round <= 3; ++round) {
      loop->dispatcher()->queueAsyncCall(countUp, &calls);
      loop->dispatcher()->queueAsyncCall(stopLoop, loop.get());
      EXPECT_EQ(loop->start(nullptr), StatusOk);
      EXPECT_EQ(calls, round);
    }
  });
}

TEST_P(EveryMainLoop, TellsByASemaphoreThatItIsUp) {
  onFreshThread([] {
    const auto loop = MainLoop::create(GetParam());
    const auto started = ISemaphore::create(0, 1);
    loop->dispatcher()->queueAsyncCall(stopLoop, loop.get());
    EXPECT_EQ(loop->start(started), StatusOk);
    EXPECT_EQ(started->tryWait(0), 1);
    EXPECT_EQ(started->tryWait(0), 2);
  });
}

TEST_P(EveryMainLoop, AnotherThreadMayPostAskAndStop) {
  onFreshThread([] {
    const auto loop = MainLoop::create(GetParam());
    const auto started = ISemaphore::create(0, 1);
    std::thread::id ran;
    std::function<void()> body = [&] { ran = std::this_thread::get_id(); };
    std::thread other([&] {
      ASSERT_TRUE(started->wait());
      EXPECT_TRUE(loop->isRunning());
      EXPECT_EQ(loop->mainLoopType(), kNone) << "the calling thread's";
      loop->dispatcher()->queueAsyncCall(test::run, &body);
      loop->dispatcher()->queueAsyncCall(stopLoop, loop.get());
    });
    EXPECT_EQ(loop->start(started), StatusOk);
    other.join();
    EXPECT_EQ(ran, std::this_thread::get_id());
  });
}

TEST_P(EveryMainLoop, StopFromAnotherThreadWakesIt) {
  onFreshThread([] {
    const auto loop = MainLoop::create(GetParam());
    const auto started = ISemaphore::create(0, 1);
    std::thread other([&] {
      ASSERT_TRUE(started->wait());
      loop->stop();
    });
    EXPECT_EQ(loop->start(started), StatusOk);
    other.join();
    EXPECT_FALSE(loop->isRunning());
  });
}

TEST_P(EveryMainLoop, RefusesToStartWhileRunning) {
  onFreshThread([] {
    const auto loop = MainLoop::create(GetParam());
    Status inside = StatusOk;
    std::function<void()> body = [&] {
      inside = loop->start(nullptr);
      loop->stop();
    };
    loop->dispatcher()->queueAsyncCall(test::run, &body);
    EXPECT_EQ(loop->start(nullptr), StatusOk);
    EXPECT_EQ(inside, StatusWrongState);
  });
}

TEST_P(EveryMainLoop, FurtherLoopsShareTheThreadsDispatcher) {
  onFreshThread([] {
    const auto loop = MainLoop::create(GetParam());
    const auto further = MainLoop::create(kNone);
    ASSERT_TRUE(further);
    EXPECT_NE(loop, further);
    EXPECT_EQ(loop->dispatcher(), further->dispatcher());
    further->dispatcher()->queueAsyncCall(stopLoop, loop.get());
    EXPECT_EQ(loop->start(nullptr), StatusOk);
    EXPECT_FALSE(further->isRunning());
  });
}

TEST_P(EveryMainLoop, SecondExplicitTypeIsAWrongState) {
  onFreshThread([] {
    const auto loop = MainLoop::create(GetParam());
    bool made = false;
    EXPECT_EQ(creating(kPoll, made), StatusWrongState);
    EXPECT_EQ(creating(kGlib, made), StatusWrongState);
    EXPECT_EQ(Dispatchers::currentMainLoopType(), GetParam());
  });
}

INSTANTIATE_TEST_SUITE_P(Kinds, EveryMainLoop, ::testing::Values(kPoll, kGlib),
                         [](const auto& each) { return each.param == kPoll ? "Poll" : "Glib"; });

TEST(MainLoop, PollLoopMayNestInACallOfAnother) {
  onFreshThread([] {
    const auto outer = MainLoop::create(kPoll);
    const auto inner = MainLoop::create(kNone);
    bool nested = false;
    std::function<void()> body = [&] {
      outer->dispatcher()->queueAsyncCall(stopLoop, inner.get());
      EXPECT_EQ(inner->start(nullptr), StatusOk);
      EXPECT_TRUE(outer->isRunning());
      nested = true;
      outer->stop();
    };
    outer->dispatcher()->queueAsyncCall(test::run, &body);
    EXPECT_EQ(outer->start(nullptr), StatusOk);
    EXPECT_TRUE(nested);
  });
}

TEST(MainLoop, WithoutATypeChoosesGlib) {
  onFreshThread([] {
    const auto loop = MainLoop::create(kNone);
    ASSERT_TRUE(loop);
    EXPECT_EQ(loop->mainLoopType(), kGlib);
  });
}

TEST(MainLoop, OpeningADispatcherHasChosenGlib) {
  onFreshThread([] {
    const auto dispatcher = Dispatchers::openDispatcher(kNone);
    bool made = false;
    EXPECT_EQ(creating(kPoll, made), StatusWrongState);
  });
}

TEST(MainLoop, ReservedTypesGiveNothingButStay) {
  onFreshThread([] {
    for (const int number : {1, 2, 5}) {
      Dispatchers::setMainLoopType(kNone);
      const auto type = static_cast<Dispatchers::MainLoopType>(number);
      bool made = true;
      EXPECT_EQ(creating(type, made), StatusOk) << number;
      EXPECT_FALSE(made) << number;
      EXPECT_EQ(Dispatchers::currentMainLoopType(), type);
    }
  });
}

TEST(MainLoop, KeepsItsDispatcherAlive) {
  onFreshThread([] {
    const auto loop = MainLoop::create(kPoll);
    EXPECT_EQ(loop->dispatcher()->referenceCount(), 2) << "the loop's and this one";
  });
}

TEST(MainLoopCommon, MakesTheTwoKindsOnly) {
  onFreshThread([] {
    const auto dispatcher = Dispatchers::openLinPollAsyncDispatcher();
    const auto make = [&](int type) {
      return std::unique_ptr<MainLoopCommon>(
          MainLoopCommon::createMainLoop(static_cast<Dispatchers::MainLoopType>(type), dispatcher));
    };
    EXPECT_NE(dynamic_cast<LinPollMainLoop*>(make(3).get()), nullptr);
    EXPECT_NE(dynamic_cast<LinGlibMainLoop*>(make(4).get()), nullptr);
    for (const int type : {0, 1, 2, 5}) EXPECT_EQ(make(type), nullptr) << type;
  });
}

TEST(MainLoopCommon, StoppingAStoppedPollLoopWakesItsDispatcherOnce) {
  onFreshThread([] {
    const auto loop = MainLoop::create(kPoll);
    loop->stop();
    EXPECT_FALSE(loop->isRunning());
    EXPECT_EQ(loop->dispatcher()->sleep(0), 1);
    EXPECT_EQ(loop->dispatcher()->sleep(0), 2);
  });
}

TEST(LinGlibMainLoop, StoppingAStoppedOnePostsNothing) {
  onFreshThread([] {
    const auto loop = MainLoop::create(kGlib);
    loop->stop();
    EXPECT_EQ(loop->dispatcher()->sleep(0), 0);
    EXPECT_EQ(loop->dispatcher()->sleep(0), 0);
  });
}

TEST(LinGlibMainLoop, StartWithoutArgumentsRunsAGMainLoop) {
  onFreshThread([] {
    const auto dispatcher = Dispatchers::openLinGlibAsyncDispatcher();
    const std::unique_ptr<LinGlibMainLoop> loop(LinGlibMainLoop::create(dispatcher));
    ASSERT_NE(loop, nullptr);
    bool depthInside = false;
    std::function<void()> body = [&] {
      depthInside = loop->isRunning() && g_main_depth() > 0;
      loop->stop();
    };
    dispatcher->queueAsyncCall(test::run, &body);
    EXPECT_EQ(loop->start(), StatusOk);
    EXPECT_TRUE(depthInside);
    EXPECT_FALSE(loop->isRunning());
    dispatcher->queueAsyncCall(test::run, &body);
    EXPECT_EQ(loop->start(nullptr), StatusOk) << "the inherited form is not hidden";
  });
}

TEST(LinGlibMainLoop, NestedInACallOfAnotherIsStoppedByAnotherThread) {
  onFreshThread([] {
    const auto outer = MainLoop::create(kGlib);
    const auto inner = MainLoop::create(kNone);
    const auto started = ISemaphore::create(0, 1);
    int calls = 0;
    int callsInside = -1;
    std::thread other([&] {
      ASSERT_TRUE(started->wait());
      inner->stop();
    });
    std::function<void()> body = [&] {
      outer->dispatcher()->queueAsyncCall(countUp, &calls);
      EXPECT_EQ(inner->start(started), StatusOk);
      callsInside = calls;
      EXPECT_TRUE(outer->isRunning());
      outer->stop();
    };
    outer->dispatcher()->queueAsyncCall(test::run, &body);
    EXPECT_EQ(outer->start(nullptr), StatusOk);
    other.join();
    EXPECT_EQ(callsInside, 0) << "GLib does not enter a source twice";
    EXPECT_EQ(calls, 1);
  });
}

/// A dispatcher that GLib has dropped, because its only sink to be served threw.
class DroppedByGlib : public ::testing::Test {
 protected:
  DroppedByGlib() {
    m_linDispatcher->attachPollSink(m_channel.descriptor(), &m_sink);
    m_channel.ring();
    m_dispatcher->sleep(-1);
  }
  ~DroppedByGlib() override { m_linDispatcher->detachPollSink(m_channel.descriptor()); }

  gom::SharedPointer<IAsyncCallDispatcher> m_dispatcher = Dispatchers::openLinGlibAsyncDispatcher();
  std::unique_ptr<LinGlibMainLoop> m_loop{LinGlibMainLoop::create(m_dispatcher)};

 private:
  LinAsyncCallDispatcher* m_linDispatcher =
      dynamic_cast<LinAsyncCallDispatcher*>(m_dispatcher.get());
  test::Channel m_channel;
  test::Sink m_sink{[](const pollfd&) { throw StatusFailed; }};
};

TEST_F(DroppedByGlib, LoopEndsByAStopFromAnotherThread) {
  const auto started = ISemaphore::create(0, 1);
  std::thread other([&] {
    ASSERT_TRUE(started->wait());
    m_loop->stop();
  });
  EXPECT_EQ(m_loop->start(started), StatusOk);
  other.join();
  EXPECT_FALSE(m_loop->isRunning());
}

TEST_F(DroppedByGlib, LoopThatRunsAGMainLoopEndsByAStopFromAnotherThread) {
  const auto up = ISemaphore::create(0, 1);
  g_idle_add(
      [](gpointer semaphore) -> gboolean {
        static_cast<ISemaphore*>(semaphore)->signal(1, nullptr);
        return G_SOURCE_REMOVE;
      },
      up.get());
  std::thread other([&] {
    ASSERT_TRUE(up->wait());
    m_loop->stop();
  });
  EXPECT_EQ(m_loop->start(), StatusOk);
  other.join();
  EXPECT_FALSE(m_loop->isRunning());
}

TEST_F(DroppedByGlib, LoopSeesWithinASecondThatItWasStoppedWithoutAWakeUp) {
  std::thread other([&] {
    while (!m_loop->isRunning()) std::this_thread::yield();
    m_loop->MainLoopCommon::stop();  // posts a call, which reaches nobody
  });
  EXPECT_EQ(m_loop->start(nullptr), StatusOk);
  other.join();
}

TEST(MainLoopCommon, WithoutADispatcherItCannotRun) {
  LinPollMainLoop polling;
  EXPECT_EQ(polling.start(nullptr), StatusWrongState);
  EXPECT_FALSE(polling.isRunning());
  polling.stop();
  EXPECT_FALSE(polling.dispatcher());
  LinGlibMainLoop glib;
  EXPECT_EQ(glib.start(nullptr), StatusWrongState);
  EXPECT_EQ(glib.start(), StatusWrongState);
  glib.stop();
  EXPECT_FALSE(glib.isRunning());
}

}  // namespace trelvo::core
