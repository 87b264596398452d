// What both kinds of dispatcher promise alike; each kind's own rules have a test file of their own.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include <trelvo/core/LinGlibAsyncCallDispatcher.h>
#include <trelvo/core/LinPollAsyncCallDispatcher.h>
#include <trelvo/gom/SharedPointer.h>

#include "tests/core/Dispatch.h"

namespace trelvo::core {

using test::Channel;
using test::countUp;
using test::onFreshThread;
using test::openDescriptors;
using test::Sink;
using ::testing::ElementsAre;

/// What sleep() gives when the time ran out.
template <class Kind>
constexpr int kTimedOut = 0;
template <>
constexpr int kTimedOut<LinPollAsyncCallDispatcher> = 2;

template <class Kind>
class EveryDispatcher : public ::testing::Test {
 protected:
  using Dispatcher = gom::SharedPointer<Kind>;

  static Dispatcher open() { return Kind::create(); }

  Dispatcher dispatcher = open();
};

using Kinds = ::testing::Types<LinPollAsyncCallDispatcher, LinGlibAsyncCallDispatcher>;
TYPED_TEST_SUITE(EveryDispatcher, Kinds, );

TYPED_TEST(EveryDispatcher, SleepTellsThatTheTimeRanOut) {
  EXPECT_EQ(this->dispatcher->sleep(0), kTimedOut<TypeParam>);
  EXPECT_EQ(this->dispatcher->sleep(5), kTimedOut<TypeParam>);
}

TYPED_TEST(EveryDispatcher, SleepRunsPostedCallsAndGives1) {
  int calls = 0;
  EXPECT_TRUE(this->dispatcher->queueAsyncCall(countUp, &calls));
  EXPECT_TRUE(this->dispatcher->queueAsyncCall(countUp, &calls));
  EXPECT_EQ(this->dispatcher->sleep(-1), 1);
  EXPECT_EQ(calls, 2);
  EXPECT_EQ(this->dispatcher->sleep(0), kTimedOut<TypeParam>);
}

TYPED_TEST(EveryDispatcher, RemovedCallNeverRunsButStillWakesTheSleep) {
  int calls = 0;
  this->dispatcher->queueAsyncCall(countUp, &calls);
  this->dispatcher->removeAllAsyncCall(countUp);
  EXPECT_TRUE(this->dispatcher->sleep());
  EXPECT_EQ(calls, 0);
}

TYPED_TEST(EveryDispatcher, CallPostedByACallRunsInTheSameSleep) {
  int calls = 0;
  std::function<void()> body = [&] { this->dispatcher->queueAsyncCall(countUp, &calls); };
  this->dispatcher->queueAsyncCall(test::run, &body);
  EXPECT_EQ(this->dispatcher->sleep(-1), 1);
  EXPECT_EQ(calls, 1);
}

TYPED_TEST(EveryDispatcher, DescriptorIsReportedUntilItIsRead) {
  const Channel channel;
  int events = 0;
  Sink sink([&](const pollfd& ready) {
    EXPECT_EQ(ready.fd, channel.reader());
    EXPECT_EQ(ready.revents, POLLIN);
    if (++events == 2) channel.answer();
  });
  EXPECT_TRUE(this->dispatcher->attachPollSink(channel.descriptor(), &sink));
  EXPECT_EQ(this->dispatcher->sleep(0), kTimedOut<TypeParam>);
  channel.ring();
  EXPECT_EQ(this->dispatcher->sleep(-1), 1);
  EXPECT_EQ(this->dispatcher->sleep(-1), 1);
  EXPECT_EQ(this->dispatcher->sleep(0), kTimedOut<TypeParam>);
  EXPECT_EQ(events, 2);
  this->dispatcher->detachPollSink(channel.descriptor());
}

TYPED_TEST(EveryDispatcher, TheCallersEventsAreNotLookedAt) {
  const Channel channel;
  int events = 0;
  Sink sink([&](const pollfd&) { events += channel.answer() ? 1 : 0; });
  EXPECT_TRUE(this->dispatcher->attachPollSink({channel.reader(), POLLOUT, 0}, &sink));
  EXPECT_EQ(this->dispatcher->sleep(0), kTimedOut<TypeParam>) << "writable does not count";
  channel.ring();
  EXPECT_EQ(this->dispatcher->sleep(-1), 1);
  EXPECT_EQ(events, 1);
  this->dispatcher->detachPollSink(channel.descriptor());
}

TYPED_TEST(EveryDispatcher, AttachRefusesNoSinkNoDescriptorAndAKnownOne) {
  const Channel channel;
  int events = 0;
  Sink first([&](const pollfd&) { events += channel.answer() ? 1 : 0; });
  Sink second([](const pollfd&) { FAIL() << "the first sink stays"; });
  EXPECT_FALSE(this->dispatcher->attachPollSink(channel.descriptor(), nullptr));
  EXPECT_FALSE(this->dispatcher->attachPollSink({0, POLLIN, 0}, &first));
  EXPECT_TRUE(this->dispatcher->attachPollSink(channel.descriptor(), &first));
  EXPECT_FALSE(this->dispatcher->attachPollSink(channel.descriptor(), &second));
  channel.ring();
  EXPECT_EQ(this->dispatcher->sleep(-1), 1);
  EXPECT_EQ(events, 1);
  this->dispatcher->detachPollSink(channel.descriptor());
  this->dispatcher->detachPollSink(channel.descriptor());
}

TYPED_TEST(EveryDispatcher, SinksAreServedInTheOrderOfAttaching) {
  const Channel channels[3];
  std::vector<int> order;
  std::vector<Sink> sinks;
  for (int i = 0; i < 3; ++i) {
    sinks.emplace_back([&order, &channels, i](const pollfd&) {
      order.push_back(i);
      channels[i].answer();
    });
  }
  for (const int i : {2, 0, 1}) {
    ASSERT_TRUE(this->dispatcher->attachPollSink(channels[i].descriptor(), &sinks[std::size_t(i)]));
    channels[i].ring();
  }
  EXPECT_EQ(this->dispatcher->sleep(-1), 1);
  EXPECT_THAT(order, ElementsAre(2, 0, 1));
  for (const auto& channel : channels) this->dispatcher->detachPollSink(channel.descriptor());
}

TYPED_TEST(EveryDispatcher, DescriptorThatAnEarlierSinkDrainedIsNotServed) {
  const Channel channel;
  const int twin = dup(channel.reader());
  int events = 0;
  const auto drain = [&](const pollfd&) {
    ++events;
    EXPECT_TRUE(channel.answer());
  };
  Sink one(drain);
  Sink two(drain);
  ASSERT_TRUE(this->dispatcher->attachPollSink(channel.descriptor(), &one));
  ASSERT_TRUE(this->dispatcher->attachPollSink({twin, POLLIN, 0}, &two));
  channel.ring();
  EXPECT_EQ(this->dispatcher->sleep(-1), 1);
  EXPECT_EQ(events, 1);
  this->dispatcher->detachPollSink(channel.descriptor());
  this->dispatcher->detachPollSink({twin, POLLIN, 0});
  close(twin);
}

TYPED_TEST(EveryDispatcher, DescriptorThatAnEarlierSinkDetachedIsNotServed) {
  const Channel one;
  const Channel two;
  Sink last([](const pollfd&) { FAIL() << "detached"; });
  Sink first([&](const pollfd&) {
    one.answer();
    this->dispatcher->detachPollSink(two.descriptor());
  });
  ASSERT_TRUE(this->dispatcher->attachPollSink(one.descriptor(), &first));
  ASSERT_TRUE(this->dispatcher->attachPollSink(two.descriptor(), &last));
  one.ring();
  two.ring();
  EXPECT_EQ(this->dispatcher->sleep(-1), 1);
  this->dispatcher->detachPollSink(one.descriptor());
}

TYPED_TEST(EveryDispatcher, DescriptorThatHangsUpIsNotServedEvenWithBytesLeft) {
  Channel channel;
  Sink sink([](const pollfd&) { FAIL() << "not readable alone"; });
  ASSERT_TRUE(this->dispatcher->attachPollSink(channel.descriptor(), &sink));
  channel.ring();
  channel.closeWriter();
  EXPECT_EQ(this->dispatcher->sleep(-1), 0);
  int calls = 0;
  this->dispatcher->queueAsyncCall(countUp, &calls);
  EXPECT_EQ(this->dispatcher->sleep(-1), 1) << "others are served all the same";
  EXPECT_EQ(calls, 1);
  this->dispatcher->detachPollSink(channel.descriptor());
}

TYPED_TEST(EveryDispatcher, EachThreadHasItsOwn) {
  onFreshThread([] {
    const auto first = TestFixture::open();
    EXPECT_EQ(first, TestFixture::open());
    EXPECT_EQ(first->referenceCount(), 1);
    onFreshThread([&] { EXPECT_NE(first, TestFixture::open()); });
  });
}

TYPED_TEST(EveryDispatcher, DiesWithItsLastHandleAndWithTheCallsThatWait) {
  onFreshThread([] {
    TestFixture::open().clear();  // GLib's own descriptors
    const auto before = openDescriptors();
    int calls = 0;
    {
      const auto dying = TestFixture::open();
      EXPECT_EQ(openDescriptors(), before + 2);
      dying->queueAsyncCall(countUp, &calls);
    }
    EXPECT_EQ(openDescriptors(), before);
    const auto fresh = TestFixture::open();
    EXPECT_EQ(fresh->sleep(0), kTimedOut<TypeParam>);
    EXPECT_EQ(calls, 0);
  });
}

}  // namespace trelvo::core
