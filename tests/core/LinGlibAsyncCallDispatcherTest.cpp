#include <trelvo/core/LinGlibAsyncCallDispatcher.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

#include <trelvo/gom/SharedPointer.h>

#include "tests/core/Dispatch.h"

namespace trelvo::core {

namespace {

using test::Channel;
using test::countUp;
using test::onFreshThread;
using test::openDescriptors;
using test::Sink;
using ::testing::ElementsAre;

using Dispatcher = gom::SharedPointer<LinGlibAsyncCallDispatcher>;

Dispatcher openGlib() { return LinGlibAsyncCallDispatcher::create(); }

}  // namespace

class LinGlibDispatcher : public ::testing::Test {
 protected:
  Dispatcher dispatcher = openGlib();
};

TEST_F(LinGlibDispatcher, InterruptFromAnotherThreadEndsAnEndlessSleep) {
  std::thread other([this] { dispatcher->interruptSleep(); });
  while (dispatcher->sleep(-1) != 1) {
    // GLib wakes its context for reasons of its own, too.
  }
  other.join();
}

TEST_F(LinGlibDispatcher, SleepRunsWhatElseIsInTheContextToo) {
  int idles = 0;
  g_idle_add(
      [](gpointer data) -> gboolean {
        ++*static_cast<int*>(data);
        return G_SOURCE_REMOVE;
      },
      &idles);
  EXPECT_EQ(dispatcher->sleep(-1), 1);
  EXPECT_EQ(idles, 1);
}

TEST_F(LinGlibDispatcher, RunsInsideAGMainLoopToo) {
  GMainLoop* const loop = g_main_loop_new(nullptr, FALSE);
  std::thread other([&] {
    dispatcher->queueAsyncCall([](void* data) { g_main_loop_quit(static_cast<GMainLoop*>(data)); },
                               loop);
  });
  g_main_loop_run(loop);
  other.join();
  g_main_loop_unref(loop);
}

TEST_F(LinGlibDispatcher, SinkMayDetachAndAttachItsOwnDescriptor) {
  const Channel channel;
  int events = 0;
  std::unique_ptr<Sink> sink;
  sink = std::make_unique<Sink>([&](const pollfd&) {
    events += channel.answer() ? 1 : 0;
    dispatcher->detachPollSink(channel.descriptor());
    EXPECT_TRUE(dispatcher->attachPollSink(channel.descriptor(), sink.get()));
  });
  ASSERT_TRUE(dispatcher->attachPollSink(channel.descriptor(), sink.get()));
  for (int round = 1; round <= 3; ++round) {
    channel.ring();
    EXPECT_EQ(dispatcher->sleep(-1), 1);
    EXPECT_EQ(events, round);
  }
  EXPECT_FALSE(dispatcher->attachPollSink(channel.descriptor(), sink.get())) << "it is attached";
  dispatcher->detachPollSink(channel.descriptor());
  channel.ring();
  EXPECT_EQ(dispatcher->sleep(0), 0);
}

TEST_F(LinGlibDispatcher, SinkThatThrowsBesideOneThatDoesNotStays) {
  const Channel channel;
  int events = 0;
  int calls = 0;
  Sink sink([&](const pollfd&) {
    if (++events == 1) throw 1;
    channel.answer();
  });
  ASSERT_TRUE(dispatcher->attachPollSink(channel.descriptor(), &sink));
  channel.ring();
  dispatcher->queueAsyncCall(countUp, &calls);
  EXPECT_EQ(dispatcher->sleep(-1), 1);
  EXPECT_EQ(dispatcher->sleep(-1), 1);
  EXPECT_EQ(events, 2);
  EXPECT_EQ(calls, 1);
  dispatcher->detachPollSink(channel.descriptor());
}

TEST_F(LinGlibDispatcher, TurnInWhichAllSinksThrewEndsIt) {
  const Channel channel;
  int events = 0;
  Sink sink([&](const pollfd&) {
    ++events;
    throw 1;
  });
  ASSERT_TRUE(dispatcher->attachPollSink(channel.descriptor(), &sink));
  channel.ring();
  EXPECT_EQ(dispatcher->sleep(-1), 1) << "GLib did dispatch";
  int calls = 0;
  EXPECT_TRUE(dispatcher->queueAsyncCall(countUp, &calls));
  EXPECT_EQ(g_main_context_iteration(nullptr, FALSE), FALSE);
  EXPECT_EQ(events, 1);
  EXPECT_EQ(calls, 0);
  dispatcher->detachPollSink(channel.descriptor());
  EXPECT_TRUE(dispatcher->attachPollSink(channel.descriptor(), &sink)) << "to no effect";
}

TEST_F(LinGlibDispatcher, SleepKeepsItsTimeEvenWhenTheTurnInWhichAllSinksThrewHasEndedIt) {
  const Channel channel;
  Sink sink([](const pollfd&) { throw 1; });
  ASSERT_TRUE(dispatcher->attachPollSink(channel.descriptor(), &sink));
  channel.ring();
  EXPECT_EQ(dispatcher->sleep(-1), 1);
  dispatcher->interruptSleep();
  EXPECT_EQ(dispatcher->sleep(0), 0) << "nothing runs, and it does not wait for ever";
  EXPECT_EQ(dispatcher->sleep(5), 0);
  g_idle_add([](gpointer /*data*/) -> gboolean { return G_SOURCE_REMOVE; }, nullptr);
  EXPECT_EQ(dispatcher->sleep(-1), 1) << "what else is in the context still runs";
  dispatcher->detachPollSink(channel.descriptor());
}

TEST_F(LinGlibDispatcher, NestedSleepServesOthersButNotItself) {
  int calls = 0;
  std::function<void()> nest = [&] {
    dispatcher->queueAsyncCall(countUp, &calls);
    EXPECT_EQ(dispatcher->sleep(0), 0) << "it is not entered twice";
    EXPECT_EQ(calls, 0);
  };
  dispatcher->queueAsyncCall(test::run, &nest);
  EXPECT_EQ(dispatcher->sleep(-1), 1);
  EXPECT_EQ(calls, 1);
}

TEST_F(LinGlibDispatcher, NestedSleepKeepsItsTimeWhileCallsWait) {
  int calls = 0;
  std::function<void()> nest = [&] {
    dispatcher->queueAsyncCall(countUp, &calls);
    const auto end = test::inMs(20);
    while (std::chrono::steady_clock::now() < end) {
      EXPECT_EQ(dispatcher->sleep(20), 0);
    }
    EXPECT_EQ(calls, 0);
  };
  dispatcher->queueAsyncCall(test::run, &nest);
  EXPECT_EQ(dispatcher->sleep(-1), 1);
  EXPECT_EQ(calls, 1);
}

TEST_F(LinGlibDispatcher, WhatIsAttachedAndDetachedBetweenNestedTurnsHoldsAfterThem) {
  const Channel channels[3];
  int events[3] = {};
  std::vector<Sink> sinks;
  for (int i = 0; i < 3; ++i) {
    sinks.emplace_back(
        [&events, &channels, i](const pollfd&) { events[i] += channels[i].answer() ? 1 : 0; });
  }
  ASSERT_TRUE(dispatcher->attachPollSink(channels[0].descriptor(), sinks.data()));
  ASSERT_TRUE(dispatcher->attachPollSink(channels[1].descriptor(), &sinks[1]));
  std::function<void()> nest = [&] {
    EXPECT_EQ(dispatcher->sleep(0), 0);
    EXPECT_TRUE(dispatcher->attachPollSink(channels[2].descriptor(), &sinks[2]));
    dispatcher->detachPollSink(channels[1].descriptor());
    for (const Channel& channel : channels) channel.ring();
    EXPECT_EQ(dispatcher->sleep(0), 0);
  };
  dispatcher->queueAsyncCall(test::run, &nest);
  while (dispatcher->sleep(0) == 1) {
  }
  EXPECT_THAT(events, ElementsAre(1, 0, 1));
  dispatcher->detachPollSink(channels[0].descriptor());
  dispatcher->detachPollSink(channels[2].descriptor());
}

TEST_F(LinGlibDispatcher, ADescriptorMayComeAndGoTwiceInACallAndItsNestedTurn) {
  const Channel channel;
  int events = 0;
  Sink sink([&](const pollfd&) { events += channel.answer() ? 1 : 0; });
  std::function<void()> nest = [&] {
    for (int i = 0; i < 2; ++i) {
      EXPECT_TRUE(dispatcher->attachPollSink(channel.descriptor(), &sink));
      dispatcher->detachPollSink(channel.descriptor());
    }
    channel.ring();
    EXPECT_EQ(dispatcher->sleep(0), 0);
  };
  dispatcher->queueAsyncCall(test::run, &nest);
  EXPECT_EQ(dispatcher->sleep(-1), 1);
  EXPECT_EQ(dispatcher->sleep(0), 0);
  EXPECT_EQ(events, 0);
}

// GLib polls no negative descriptor.
TEST_F(LinGlibDispatcher, ANegativeDescriptorMayBeAttachedAndDetached) {
  Sink sink([](const pollfd&) { FAIL(); });
  EXPECT_TRUE(dispatcher->attachPollSink({-5, POLLIN, 0}, &sink));
  EXPECT_EQ(dispatcher->sleep(0), 0);
  dispatcher->detachPollSink({-5, POLLIN, 0});
  EXPECT_TRUE(dispatcher->attachPollSink({-5, POLLIN, 0}, &sink)) << "it was detached";
  dispatcher->detachPollSink({-5, POLLIN, 0});
}

// GLib may have chosen to dispatch a source just before another thread ended its dispatcher.
TEST(LinGlibAsyncCallDispatcher, ItsSourceIsServedByNobodyWhenItHasGone) {
  Dispatcher dispatcher = openGlib();
  GSource* source = nullptr;
  for (guint id = 1; source == nullptr && id < 100000; ++id) {
    GSource* const candidate = g_main_context_find_source_by_id(nullptr, id);
    source = candidate != nullptr && g_source_get_can_recurse(candidate) ? candidate : nullptr;
  }
  ASSERT_NE(source, nullptr);
  g_source_ref(source);
  EXPECT_TRUE(dispatcher->queueAsyncCall(countUp, nullptr));
  dispatcher.clear();
  EXPECT_TRUE(g_source_is_destroyed(source));
  gint timeout = -7;
  EXPECT_FALSE(source->source_funcs->prepare(source, &timeout));
  EXPECT_EQ(timeout, -7);
  EXPECT_FALSE(source->source_funcs->check(source));
  EXPECT_FALSE(source->source_funcs->dispatch(source, nullptr, nullptr));
  g_source_unref(source);
}

// Its memory is there, but it never joined GLib's context.
TEST(LinGlibAsyncCallDispatcher, ThatWasNotInitialisedKeepsTimeAndServesNothing) {
  onFreshThread([] {
    LinGlibAsyncCallDispatcher dispatcher;
    const Channel channel;
    Sink sink([](const pollfd&) { FAIL(); });
    EXPECT_TRUE(dispatcher.attachPollSink(channel.descriptor(), &sink));
    channel.ring();
    EXPECT_EQ(dispatcher.sleep(0), 0);
    dispatcher.detachPollSink(channel.descriptor());
  });
}

TEST(LinGlibAsyncCallDispatcher, RunsOnTheThreadThatRunsTheContext) {
  const Dispatcher here = openGlib();
  std::thread::id ran;
  std::thread::id maker;
  std::atomic<bool> done{false};
  std::function<void()> body = [&] {
    ran = std::this_thread::get_id();
    done = true;
  };
  std::thread other([&] {
    maker = std::this_thread::get_id();
    const Dispatcher there = openGlib();
    there->queueAsyncCall(test::run, &body);
    while (!done) std::this_thread::yield();
  });
  while (!done) here->sleep(10);
  other.join();
  EXPECT_EQ(ran, std::this_thread::get_id());
  EXPECT_NE(ran, maker);
}

TEST(LinGlibAsyncCallDispatcher, LeavesTheContextWhileAnotherThreadRunsIt) {
  const Dispatcher here = openGlib();
  std::atomic<bool> done{false};
  std::thread other([&] {
    for (int i = 0; i < 300; ++i) {
      const Channel channel;
      Sink sink([&](const pollfd&) { channel.answer(); });
      const Dispatcher there = openGlib();
      ASSERT_TRUE(there->attachPollSink(channel.descriptor(), &sink));
      channel.ring();
      std::atomic<bool> left{false};
      std::function<void()> leave = [&] {
        there->detachPollSink(channel.descriptor());
        left = true;
      };
      there->queueAsyncCall(test::run, &leave);
      while (!left) std::this_thread::yield();
      // From here on the other thread may be anywhere in the walk over this dispatcher.
    }
    done = true;
    here->interruptSleep();
  });
  while (!done) here->sleep(1000);
  other.join();
}

TEST(LinGlibAsyncCallDispatcher, LastHandleDroppedByACallbackEndsItAfterThatSleep) {
  onFreshThread([] {
    openGlib().clear();
    const auto before = openDescriptors();
    LinGlibAsyncCallDispatcher* const plain = LinGlibAsyncCallDispatcher::create();
    Dispatcher last = plain;
    int later = 0;
    std::function<void()> drop = [&] { last.clear(); };
    plain->queueAsyncCall(test::run, &drop);
    plain->queueAsyncCall(countUp, &later);
    EXPECT_EQ(plain->sleep(-1), 1);
    EXPECT_EQ(later, 1);
    EXPECT_EQ(openDescriptors(), before);
  });
}

TEST(LinGlibAsyncCallDispatcher, LastHandleDroppedInSomeoneElsesTurnEndsItAfterThatDispatch) {
  onFreshThread([] {
    openGlib().clear();
    const auto before = openDescriptors();
    Dispatcher last = openGlib();
    int later = 0;
    std::function<void()> drop = [&] { last.clear(); };
    last->queueAsyncCall(test::run, &drop);
    last->queueAsyncCall(countUp, &later);
    EXPECT_EQ(g_main_context_iteration(nullptr, TRUE), TRUE);
    EXPECT_EQ(later, 1);
    EXPECT_EQ(openDescriptors(), before);
  });
}

}  // namespace trelvo::core
