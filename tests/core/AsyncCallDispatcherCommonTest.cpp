#include <trelvo/core/AsyncCallDispatcherCommon.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <deque>
#include <stdexcept>
#include <vector>

#include <trelvo/Status.h>

#include "tests/core/Dispatch.h"

namespace trelvo::core {

namespace {

using test::countUp;
using test::Receiver;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A dispatcher whose channel is a list.
class ListDispatcher : public AsyncCallDispatcherCommon {
 public:
  ListDispatcher() = default;
  explicit ListDispatcher(unsigned int first) : AsyncCallDispatcherCommon(first) {}

  bool sleep() override { return sleep(-1) == 1; }
  int sleep(int /*timeoutMs*/) override {
    const bool some = !sent.empty();
    while (!sent.empty()) {
      const unsigned int id = sent.front();
      sent.pop_front();
      invokeDelegate(id);
    }
    return some ? 1 : 0;
  }
  bool doScheduleDelegate(unsigned int id) override {
    if (refuses) throw std::runtime_error("no channel");
    if (!full) sent.push_back(id);
    return !full;
  }

  bool waits(unsigned int id) {
    Delegate ignored;
    return findDelegate(id, ignored);
  }
  using AsyncCallDispatcherCommon::addDelegate;
  using AsyncCallDispatcherCommon::findDelegate;
  using AsyncCallDispatcherCommon::removeDelegate;

  std::deque<unsigned int> sent;
  bool full = false;
  bool refuses = false;
};

std::vector<int> gOrder;
void note(void* number) { gOrder.push_back(*static_cast<int*>(number)); }
void noteToo(void* number) { note(number); }
void throwInt(void* /*data*/) { throw 1; }
void throwStatus(void* /*data*/) { throw StatusFailed; }

}  // namespace

TEST(AsyncCallDispatcherCommon, FirstCallGetsNumber1) {
  ListDispatcher dispatcher;
  int calls = 0;
  EXPECT_TRUE(dispatcher.queueAsyncCall(countUp, &calls));
  EXPECT_TRUE(dispatcher.queueAsyncCall(countUp, &calls));
  EXPECT_THAT(dispatcher.sent, ElementsAre(1, 2));
  EXPECT_EQ(dispatcher.sleep(0), 1);
  EXPECT_EQ(calls, 2);
}

TEST(AsyncCallDispatcherCommon, CountsOnFromTheGivenNumber) {
  ListDispatcher dispatcher(41);
  int calls = 0;
  dispatcher.queueAsyncCall(countUp, &calls);
  EXPECT_THAT(dispatcher.sent, ElementsAre(42));
}

TEST(AsyncCallDispatcherCommon, NumbersWrapAroundWithoutLosingCalls) {
  ListDispatcher dispatcher(0xFFFFFFFDu);
  int numbers[] = {1, 2, 3, 4};
  gOrder.clear();
  for (int& number : numbers) dispatcher.queueAsyncCall(note, &number);
  EXPECT_THAT(dispatcher.sent, ElementsAre(0xFFFFFFFEu, 0xFFFFFFFFu, 0u, 1u));
  dispatcher.sleep(0);
  EXPECT_THAT(gOrder, ElementsAre(1, 2, 3, 4));
}

TEST(AsyncCallDispatcherCommon, KeepsAnEmptySlotUnderTheNextNumber) {
  ListDispatcher dispatcher;
  AsyncCallDispatcherCommon::Delegate slot{nullptr, countUp, &dispatcher};
  EXPECT_TRUE(dispatcher.findDelegate(1, slot));
  EXPECT_EQ(slot.receiver, nullptr);
  EXPECT_EQ(slot.function, nullptr);
  EXPECT_EQ(slot.data, nullptr);
  dispatcher.queueAsyncCall(countUp, nullptr);
  EXPECT_TRUE(dispatcher.waits(2));
  EXPECT_FALSE(dispatcher.waits(3));
}

TEST(AsyncCallDispatcherCommon, ReusedSlotsAreEmpty) {
  ListDispatcher dispatcher;
  int calls = 0;
  for (unsigned int id = 1; id < 10; ++id) {
    dispatcher.queueAsyncCall(countUp, &calls);
    dispatcher.sleep(0);
    AsyncCallDispatcherCommon::Delegate slot{nullptr, countUp, &calls};
    ASSERT_TRUE(dispatcher.findDelegate(id + 1, slot));
    EXPECT_EQ(slot.function, nullptr);
    EXPECT_EQ(slot.data, nullptr);
    EXPECT_FALSE(dispatcher.waits(id));
  }
  EXPECT_EQ(calls, 9);
}

TEST(AsyncCallDispatcherCommon, RunsFunctionsAndReceiversInTheOrderOfPosting) {
  ListDispatcher dispatcher;
  int numbers[] = {1, 2, 3};
  Receiver receiver;
  gOrder.clear();
  dispatcher.queueAsyncCall(note, &numbers[0]);
  dispatcher.queueAsyncCall(&receiver, &numbers[1]);
  dispatcher.queueAsyncCall(note, &numbers[2]);
  dispatcher.sleep(0);
  EXPECT_THAT(gOrder, ElementsAre(1, 3));
  EXPECT_THAT(receiver.received, ElementsAre(&numbers[1]));
}

TEST(AsyncCallDispatcherCommon, PassesNullDataOn) {
  ListDispatcher dispatcher;
  Receiver receiver;
  dispatcher.queueAsyncCall(&receiver, nullptr);
  dispatcher.sleep(0);
  EXPECT_THAT(receiver.received, ElementsAre(nullptr));
}

TEST(AsyncCallDispatcherCommon, FunctionGoesBeforeReceiver) {
  ListDispatcher dispatcher;
  Receiver receiver;
  int calls = 0;
  EXPECT_TRUE(dispatcher.addDelegate({&receiver, countUp, &calls}));
  dispatcher.sleep(0);
  EXPECT_EQ(calls, 1);
  EXPECT_THAT(receiver.received, IsEmpty());
}

TEST(AsyncCallDispatcherCommon, RemovingTakesAllCallsOfOneFunctionWhateverTheirData) {
  ListDispatcher dispatcher;
  int numbers[] = {1, 2, 3};
  gOrder.clear();
  dispatcher.queueAsyncCall(note, &numbers[0]);
  dispatcher.queueAsyncCall(noteToo, &numbers[1]);
  dispatcher.queueAsyncCall(note, &numbers[2]);
  dispatcher.removeAllAsyncCall(note);
  EXPECT_EQ(dispatcher.sleep(0), 1) << "the numbers are still in the channel";
  EXPECT_THAT(gOrder, ElementsAre(2));
}

TEST(AsyncCallDispatcherCommon, RemovingTakesAllCallsToOneReceiver) {
  ListDispatcher dispatcher;
  Receiver one;
  Receiver two;
  dispatcher.queueAsyncCall(&one, nullptr);
  dispatcher.queueAsyncCall(&two, &two);
  dispatcher.queueAsyncCall(&one, &one);
  dispatcher.removeAllAsyncCall(&one);
  dispatcher.sleep(0);
  EXPECT_THAT(one.received, IsEmpty());
  EXPECT_THAT(two.received, ElementsAre(&two));
}

TEST(AsyncCallDispatcherCommon, RemovingANullReceiverChangesNothing) {
  ListDispatcher dispatcher;
  int calls = 0;
  dispatcher.queueAsyncCall(countUp, &calls);
  dispatcher.removeAllAsyncCall(static_cast<IAsyncCallReceiver*>(nullptr));
  EXPECT_TRUE(dispatcher.waits(2)) << "the empty slot";
  dispatcher.sleep(0);
  EXPECT_EQ(calls, 1);
}

TEST(AsyncCallDispatcherCommon, RemovingANullFunctionTakesTheEmptySlotWhichComesBack) {
  ListDispatcher dispatcher;
  int calls = 0;
  dispatcher.removeAllAsyncCall(static_cast<void (*)(void*)>(nullptr));
  EXPECT_FALSE(dispatcher.waits(1));
  EXPECT_TRUE(dispatcher.queueAsyncCall(countUp, &calls));
  EXPECT_TRUE(dispatcher.waits(2));
  dispatcher.sleep(0);
  EXPECT_EQ(calls, 1);
}

TEST(AsyncCallDispatcherCommon, RemovingByNumberTakesThatCallOnly) {
  ListDispatcher dispatcher;
  int calls = 0;
  dispatcher.queueAsyncCall(countUp, &calls);
  dispatcher.queueAsyncCall(countUp, &calls);
  dispatcher.removeDelegate(1u);
  dispatcher.removeDelegate(77u);
  dispatcher.sleep(0);
  EXPECT_EQ(calls, 1);
}

TEST(AsyncCallDispatcherCommon, CallsThatNameNothingAreDropped) {
  ListDispatcher dispatcher;
  int calls = 0;
  EXPECT_TRUE(dispatcher.queueAsyncCall(static_cast<void (*)(void*)>(nullptr), &calls));
  EXPECT_TRUE(dispatcher.queueAsyncCall(static_cast<IAsyncCallReceiver*>(nullptr), &calls));
  dispatcher.queueAsyncCall(countUp, &calls);
  EXPECT_EQ(dispatcher.sleep(0), 1);
  EXPECT_EQ(calls, 1);
}

TEST(AsyncCallDispatcherCommon, WhatCallsThrowIsDropped) {
  ListDispatcher dispatcher;
  int calls = 0;
  dispatcher.queueAsyncCall(throwInt, nullptr);
  dispatcher.queueAsyncCall(throwStatus, nullptr);
  dispatcher.queueAsyncCall(countUp, &calls);
  EXPECT_NO_THROW(dispatcher.sleep(0));
  EXPECT_EQ(calls, 1);
}

TEST(AsyncCallDispatcherCommon, CallIsTakenOutBeforeItRuns) {
  ListDispatcher dispatcher;
  bool waitsInside = true;
  std::function<void()> body = [&] { waitsInside = dispatcher.waits(1); };
  dispatcher.queueAsyncCall(test::run, &body);
  dispatcher.sleep(0);
  EXPECT_FALSE(waitsInside);
}

TEST(AsyncCallDispatcherCommon, CallsMayPostAndRemove) {
  ListDispatcher dispatcher;
  int removed = 0;
  int numbers[] = {7};
  gOrder.clear();
  std::function<void()> body = [&] {
    dispatcher.removeAllAsyncCall(countUp);
    dispatcher.queueAsyncCall(note, &numbers[0]);
  };
  dispatcher.queueAsyncCall(test::run, &body);
  dispatcher.queueAsyncCall(countUp, &removed);
  dispatcher.sleep(0);
  EXPECT_EQ(removed, 0);
  EXPECT_THAT(gOrder, ElementsAre(7));
}

TEST(AsyncCallDispatcherCommon, CallWhoseNumberDoesNotGoIsAcceptedAndNeverRuns) {
  ListDispatcher dispatcher;
  int lost = 0;
  int calls = 0;
  dispatcher.full = true;
  EXPECT_TRUE(dispatcher.queueAsyncCall(countUp, &lost));
  dispatcher.full = false;
  EXPECT_TRUE(dispatcher.queueAsyncCall(countUp, &calls));
  dispatcher.sleep(0);
  EXPECT_EQ(lost, 0);
  EXPECT_EQ(calls, 1);
  EXPECT_TRUE(dispatcher.waits(1)) << "it stays until it is removed";
  dispatcher.removeAllAsyncCall(countUp);
  EXPECT_FALSE(dispatcher.waits(1));
}

TEST(AsyncCallDispatcherCommon, WhatTheChannelThrowsMakesThePostFail) {
  ListDispatcher dispatcher;
  int calls = 0;
  dispatcher.refuses = true;
  EXPECT_FALSE(dispatcher.queueAsyncCall(countUp, &calls));
  dispatcher.refuses = false;
  EXPECT_TRUE(dispatcher.queueAsyncCall(countUp, &calls));
  EXPECT_THAT(dispatcher.sent, ElementsAre(1));
  dispatcher.sleep(0);
  EXPECT_EQ(calls, 1);
}

TEST(AsyncCallDispatcherCommon, InterruptingPostsACallThatDoesNothing) {
  ListDispatcher dispatcher;
  dispatcher.interruptSleep();
  EXPECT_THAT(dispatcher.sent, ElementsAre(1));
  AsyncCallDispatcherCommon::Delegate delegate;
  ASSERT_TRUE(dispatcher.findDelegate(1, delegate));
  EXPECT_EQ(delegate.receiver, static_cast<IAsyncCallReceiver*>(&dispatcher));
  EXPECT_EQ(dispatcher.sleep(0), 1);
}

TEST(AsyncCallDispatcherCommon, MoreCallsWaitThanSpareSlotsAreKept) {
  ListDispatcher dispatcher;
  int calls = 0;
  for (int round = 0; round < 3; ++round) {
    for (int i = 0; i < 1000; ++i) dispatcher.queueAsyncCall(countUp, &calls);
    dispatcher.sleep(0);
  }
  EXPECT_EQ(calls, 3000);
}

}  // namespace trelvo::core
