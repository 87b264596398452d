#include <trelvo/core/LinPollAsyncCallDispatcher.h>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pthread.h>

#include <atomic>
#include <csignal>
#include <functional>
#include <thread>
#include <vector>

#include <trelvo/core/AsyncCallDispatcher.h>
#include <trelvo/gom/SharedPointer.h>

#include "tests/core/Dispatch.h"

namespace trelvo::core {

namespace {

using test::Channel;
using test::countUp;
using test::onFreshThread;
using test::openDescriptors;
using test::Sink;

using Dispatcher = gom::SharedPointer<LinPollAsyncCallDispatcher>;

Dispatcher openPoll() { return LinPollAsyncCallDispatcher::create(); }

/// How many messages of four bytes a pair of sockets holds.
int channelRoom() {
  int fds[2];
  if (socketpair(AF_UNIX, SOCK_SEQPACKET, 0, fds) != 0) return -1;
  int room = 0;
  while (send(fds[1], &room, 4, MSG_DONTWAIT | MSG_EOR) == 4) ++room;
  close(fds[0]);
  close(fds[1]);
  return room;
}

}  // namespace

class LinPollDispatcher : public ::testing::Test {
 protected:
  Dispatcher dispatcher = openPoll();
};

TEST_F(LinPollDispatcher, SleepWithoutTimeIsTrueWhenSomethingRan) {
  dispatcher->interruptSleep();
  EXPECT_TRUE(dispatcher->sleep());
}

TEST_F(LinPollDispatcher, InterruptFromAnotherThreadEndsAnEndlessSleep) {
  std::thread other([this] { dispatcher->interruptSleep(); });
  EXPECT_EQ(dispatcher->sleep(-1), 1);
  other.join();
}

TEST_F(LinPollDispatcher, CallsOfEachPosterRunInItsOrder) {
  struct Call {
    int poster;
    int number;
    std::vector<int>* next;
    std::atomic<int>* waiting;
  };
  constexpr int kCalls = 2000;
  std::vector<int> next(2, 0);
  std::atomic<int> waiting{0};
  std::vector<std::vector<Call>> calls(2);
  const auto post = [&](int poster) {
    auto& own = calls[static_cast<std::size_t>(poster)];
    own.reserve(kCalls);
    for (int i = 0; i < kCalls; ++i) {
      while (waiting.load() > 100) std::this_thread::yield();
      ++waiting;
      own.push_back({poster, i, &next, &waiting});
      dispatcher->queueAsyncCall(
          [](void* data) {
            auto& call = *static_cast<Call*>(data);
            int& expected = (*call.next)[static_cast<std::size_t>(call.poster)];
            EXPECT_EQ(call.number, expected);
            ++expected;
            --*call.waiting;
          },
          &own.back());
    }
  };
  std::thread one(post, 0);
  std::thread two(post, 1);
  while (next[0] < kCalls || next[1] < kCalls) ASSERT_EQ(dispatcher->sleep(60000), 1);
  one.join();
  two.join();
}

TEST_F(LinPollDispatcher, CallsBeyondTheChannelsRoomAreAcceptedAndLost) {
  const int room = channelRoom();
  EXPECT_GE(room, 256) << "what the header tells callers to count on";
  int calls = 0;
  for (int i = 0; i < room + 20; ++i) EXPECT_TRUE(dispatcher->queueAsyncCall(countUp, &calls));
  EXPECT_EQ(dispatcher->sleep(0), 1);
  EXPECT_EQ(calls, room);
  EXPECT_TRUE(dispatcher->queueAsyncCall(countUp, &calls));
  EXPECT_EQ(dispatcher->sleep(0), 1);
  EXPECT_EQ(calls, room + 1) << "the lost ones do not come back";
}

TEST_F(LinPollDispatcher, LostCallsAreRemovedLikeOthers) {
  const int room = channelRoom();
  int calls = 0;
  for (int i = 0; i < room + 20; ++i) dispatcher->queueAsyncCall(countUp, &calls);
  dispatcher->removeAllAsyncCall(countUp);
  EXPECT_EQ(dispatcher->sleep(0), 1);
  EXPECT_EQ(calls, 0);
}

TEST_F(LinPollDispatcher, DetachedDescriptorIsForgottenAndCanBeAttachedAgain) {
  const Channel channel;
  int events = 0;
  Sink sink([&](const pollfd&) { events += channel.answer() ? 1 : 0; });
  dispatcher->detachPollSink(channel.descriptor());
  EXPECT_TRUE(dispatcher->attachPollSink(channel.descriptor(), &sink));
  dispatcher->detachPollSink(channel.descriptor());
  dispatcher->detachPollSink(channel.descriptor());
  channel.ring();
  EXPECT_EQ(dispatcher->sleep(0), 2);
  EXPECT_TRUE(dispatcher->attachPollSink(channel.descriptor(), &sink));
  EXPECT_EQ(dispatcher->sleep(0), 1);
  EXPECT_EQ(events, 1);
  dispatcher->detachPollSink(channel.descriptor());
}

TEST_F(LinPollDispatcher, SinkThatThrowsStaysAndCountsAsNotServed) {
  const Channel channel;
  int events = 0;
  Sink sink([&](const pollfd&) {
    if (++events == 1) throw 1;
    channel.answer();
  });
  ASSERT_TRUE(dispatcher->attachPollSink(channel.descriptor(), &sink));
  channel.ring();
  EXPECT_EQ(dispatcher->sleep(0), 0);
  EXPECT_EQ(dispatcher->sleep(0), 1);
  EXPECT_EQ(events, 2);
  dispatcher->detachPollSink(channel.descriptor());
}

TEST_F(LinPollDispatcher, DescriptorAttachedBySinkIsServedFromTheNextSleepOn) {
  const Channel one;
  const Channel two;
  int late = 0;
  Sink second([&](const pollfd&) { late += two.answer() ? 1 : 0; });
  Sink first([&](const pollfd&) {
    one.answer();
    EXPECT_TRUE(dispatcher->attachPollSink(two.descriptor(), &second));
  });
  ASSERT_TRUE(dispatcher->attachPollSink(one.descriptor(), &first));
  one.ring();
  two.ring();
  EXPECT_EQ(dispatcher->sleep(0), 1);
  EXPECT_EQ(late, 0);
  EXPECT_EQ(dispatcher->sleep(0), 1);
  EXPECT_EQ(late, 1);
  dispatcher->detachPollSink(one.descriptor());
  dispatcher->detachPollSink(two.descriptor());
}

TEST_F(LinPollDispatcher, ManyDescriptorsCanBeAttached) {
  constexpr int kMany = 100;
  const std::vector<Channel> channels(kMany);
  int events = 0;
  Sink sink([&](const pollfd& ready) {
    char byte = 0;
    events += static_cast<int>(recv(ready.fd, &byte, 1, MSG_DONTWAIT));
  });
  for (const auto& each : channels) {
    ASSERT_TRUE(dispatcher->attachPollSink(each.descriptor(), &sink));
  }
  channels[kMany / 2].ring();
  EXPECT_EQ(dispatcher->sleep(-1), 1);
  EXPECT_EQ(events, 1);
  for (const auto& each : channels) each.ring();
  EXPECT_EQ(dispatcher->sleep(-1), 1);
  EXPECT_EQ(events, 1 + kMany);
  for (const auto& each : channels) dispatcher->detachPollSink(each.descriptor());
}

TEST_F(LinPollDispatcher, CallbacksMaySleepInTheSameDispatcher) {
  const Channel one;
  const Channel two;
  int inner = 0;
  Sink second([&](const pollfd&) { inner += two.answer() ? 1 : 0; });
  Sink first([&](const pollfd&) {
    one.answer();
    EXPECT_EQ(dispatcher->sleep(0), 1);
    EXPECT_EQ(inner, 1);
    EXPECT_EQ(dispatcher->sleep(0), 2);
  });
  ASSERT_TRUE(dispatcher->attachPollSink(one.descriptor(), &first));
  ASSERT_TRUE(dispatcher->attachPollSink(two.descriptor(), &second));
  for (int round = 0; round < 3; ++round) {
    inner = 0;
    one.ring();
    two.ring();
    EXPECT_EQ(dispatcher->sleep(0), 1);
    EXPECT_EQ(inner, 1) << "the outer walk asks again and finds it drained";
  }
  dispatcher->detachPollSink(one.descriptor());
  dispatcher->detachPollSink(two.descriptor());
}

TEST_F(LinPollDispatcher, SignalEndsASleepWithout1) {
  struct sigaction action = {};
  struct sigaction before = {};
  action.sa_handler = [](int) {};
  ASSERT_EQ(sigaction(SIGUSR1, &action, &before), 0);
  std::atomic<bool> done{false};
  const pthread_t self = pthread_self();
  std::thread other([&] {
    while (!done.load()) {
      pthread_kill(self, SIGUSR1);
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
  });
  EXPECT_EQ(dispatcher->sleep(-1), 0);
  done = true;
  other.join();
  sigaction(SIGUSR1, &before, nullptr);
}

TEST(LinPollAsyncCallDispatcher, WithoutAChannelItDoesNothing) {
  LinPollAsyncCallDispatcher dispatcher;
  int calls = 0;
  EXPECT_TRUE(dispatcher.queueAsyncCall(countUp, &calls));
  EXPECT_FALSE(dispatcher.doScheduleDelegate(1));
  EXPECT_EQ(dispatcher.sleep(-1), 0);
  EXPECT_FALSE(dispatcher.sleep());
  EXPECT_EQ(calls, 0);
}

TEST(LinPollAsyncCallDispatcher, CreateTakesNoReference) {
  onFreshThread([] {
    LinPollAsyncCallDispatcher* const plain = LinPollAsyncCallDispatcher::create();
    ASSERT_NE(plain, nullptr);
    EXPECT_EQ(plain->referenceCount(), 0);
    EXPECT_EQ(plain->sleep(0), 2);
    EXPECT_EQ(plain, LinPollAsyncCallDispatcher::create()) << "it has outlived its sleep";
    delete plain;
  });
}

TEST(LinPollAsyncCallDispatcher, SlotOfADispatcherThatDiedElsewhereIsNotTrusted) {
  onFreshThread([] {
    Dispatcher dispatcher = openPoll();
    onFreshThread([&] {
      dispatcher.clear();
      // One of the new ones may well stand where the old one stood.
      std::vector<std::thread> threads;
      std::atomic<int> made{0};
      for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
          const Dispatcher other = openPoll();
          ++made;
          while (made < 5) std::this_thread::yield();
        });
      }
      threads.emplace_back([&] {
        while (made < 4) std::this_thread::yield();
        ++made;
      });
      for (auto& thread : threads) thread.join();
    });
    const Dispatcher fresh = openPoll();
    ASSERT_TRUE(fresh);
    EXPECT_EQ(fresh->referenceCount(), 1);
    EXPECT_EQ(fresh->sleep(0), 2);
  });
}

TEST(LinPollAsyncCallDispatcher, DispatcherOfAnotherThreadInTheOldPlaceIsNotTaken) {
  onFreshThread([] {
    Dispatcher mine = openPoll();
    const void* const place = mine.get();
    LinPollAsyncCallDispatcher* mineAgain = nullptr;
    LinPollAsyncCallDispatcher* theirs = nullptr;
    std::atomic<int> step{0};
    std::thread other([&] {
      mine.clear();
      const Dispatcher own = openPoll();
      theirs = own.get();
      step = 1;
      while (step < 2) std::this_thread::yield();
    });
    while (step < 1) std::this_thread::yield();
    mineAgain = LinPollAsyncCallDispatcher::create();
    EXPECT_NE(mineAgain, theirs) << (theirs == place ? "it stands in the same place" : "");
    step = 2;
    other.join();
    delete mineAgain;
  });
}

TEST(LinPollAsyncCallDispatcher, LastHandleDroppedByACallbackEndsItAfterThatSleep) {
  onFreshThread([] {
    const auto before = openDescriptors();
    LinPollAsyncCallDispatcher* const plain = LinPollAsyncCallDispatcher::create();
    Dispatcher last = plain;
    int later = 0;
    std::function<void()> drop = [&] {
      last.clear();
      EXPECT_EQ(plain, LinPollAsyncCallDispatcher::create()) << "it is still the thread's";
    };
    plain->queueAsyncCall(test::run, &drop);
    plain->queueAsyncCall(countUp, &later);
    EXPECT_EQ(plain->sleep(0), 1);
    EXPECT_EQ(later, 1) << "calls behind the one that dropped it still run";
    EXPECT_EQ(openDescriptors(), before);
  });
}

TEST(LinPollAsyncCallDispatcher, LastHandleDroppedInANestedSleepEndsItAfterTheOuterOne) {
  onFreshThread([] {
    const auto before = openDescriptors();
    LinPollAsyncCallDispatcher* const plain = LinPollAsyncCallDispatcher::create();
    Dispatcher last = plain;
    std::function<void()> drop = [&] { last.clear(); };
    std::function<void()> nest = [&] {
      plain->queueAsyncCall(test::run, &drop);
      EXPECT_EQ(plain->sleep(0), 1);
      EXPECT_EQ(plain->sleep(0), 2) << "it is still there";
    };
    plain->queueAsyncCall(test::run, &nest);
    EXPECT_EQ(plain->sleep(0), 1);
    EXPECT_EQ(openDescriptors(), before);
  });
}

TEST(LinPollAsyncCallDispatcher, LastHandleDroppedInAnotherOnesSleepEndsItAfterItsOwn) {
  onFreshThread([] {
    AsyncCallDispatcher::openLinGlibAsyncDispatcher().clear();  // GLib's own descriptors
    const auto before = openDescriptors();
    {
      const auto other = AsyncCallDispatcher::openLinGlibAsyncDispatcher();
      LinPollAsyncCallDispatcher* const plain = LinPollAsyncCallDispatcher::create();
      Dispatcher last = plain;
      std::function<void()> drop = [&] { last.clear(); };
      std::function<void()> nest = [&] {
        other->queueAsyncCall(test::run, &drop);
        EXPECT_EQ(other->sleep(0), 1);
        EXPECT_EQ(plain->sleep(0), 2) << "it is still there";
      };
      plain->queueAsyncCall(test::run, &nest);
      EXPECT_EQ(plain->sleep(0), 1);
    }
    EXPECT_EQ(openDescriptors(), before);
  });
}

TEST(LinPollAsyncCallDispatcher, HandleTakenAnewAfterTheLastOneWasDroppedKeepsIt) {
  onFreshThread([] {
    Dispatcher last = openPoll();
    LinPollAsyncCallDispatcher* const plain = last.get();
    std::function<void()> replace = [&] {
      last.clear();
      last = openPoll();
    };
    plain->queueAsyncCall(test::run, &replace);
    EXPECT_EQ(plain->sleep(0), 1);
    ASSERT_EQ(last.get(), plain);
    EXPECT_EQ(last->referenceCount(), 1);
    EXPECT_EQ(last->sleep(0), 2);
  });
}

TEST(LinPollAsyncCallDispatcher, WorksInAProcessWithoutStandardInput) {
  onFreshThread([] {
    const int kept = dup(0);
    close(0);
    {
      const Dispatcher dispatcher = openPoll();
      ASSERT_TRUE(dispatcher);
      int calls = 0;
      dispatcher->queueAsyncCall(countUp, &calls);
      EXPECT_EQ(dispatcher->sleep(0), 1);
      EXPECT_EQ(calls, 1);
      EXPECT_EQ(fcntl(0, F_GETFD), -1) << "descriptor 0 stays free";
    }
    if (kept >= 0) {
      dup2(kept, 0);
      close(kept);
    }
  });
}

}  // namespace trelvo::core
