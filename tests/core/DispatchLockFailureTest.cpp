#include <trelvo/core/AsyncCallDispatcherCommon.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <vector>

#include "tests/core/Dispatch.h"
#include "tests/core/SystemCalls.h"

namespace trelvo::core {
namespace {

using test::Answered;
using test::countUp;
using test::SystemCall;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A dispatcher whose channel is a list, and which nobody sleeps in.
class ListDispatcher : public AsyncCallDispatcherCommon {
 public:
  bool sleep() override { return false; }
  int sleep(int /*timeoutMs*/) override { return 0; }
  bool doScheduleDelegate(unsigned int id) override {
    sent.push_back(id);
    return true;
  }
  using AsyncCallDispatcherCommon::addDelegate;
  using AsyncCallDispatcherCommon::findDelegate;
  using AsyncCallDispatcherCommon::invokeDelegate;
  using AsyncCallDispatcherCommon::removeDelegate;

  std::vector<unsigned int> sent;
};

/// While it lives, this thread gets no lock.
struct NoLocks {
  Answered busy{SystemCall::MutexTrylock, EBUSY};
  Answered refused{SystemCall::MutexLock, EAGAIN};
};

TEST(DispatchLockFailure, QueuesNothingAndReportsSuccess) {
  ListDispatcher dispatcher;
  int calls = 0;
  bool queued = false;
  bool added = true;
  {
    const NoLocks none;
    queued = dispatcher.queueAsyncCall(countUp, &calls);
    added = dispatcher.addDelegate({nullptr, countUp, &calls});
  }
  EXPECT_TRUE(queued);
  EXPECT_FALSE(added);
  EXPECT_THAT(dispatcher.sent, IsEmpty());
  EXPECT_TRUE(dispatcher.queueAsyncCall(countUp, &calls));
  EXPECT_THAT(dispatcher.sent, ElementsAre(1)) << "no number was used up";
}

TEST(DispatchLockFailure, FindsRunsAndRemovesNothing) {
  ListDispatcher dispatcher;
  int calls = 0;
  dispatcher.queueAsyncCall(countUp, &calls);
  AsyncCallDispatcherCommon::Delegate found;
  bool finding = true;
  {
    const NoLocks none;
    finding = dispatcher.findDelegate(1, found);
    dispatcher.invokeDelegate(1);
    dispatcher.removeDelegate(1U);
    dispatcher.removeAllAsyncCall(countUp);
  }
  EXPECT_FALSE(finding);
  EXPECT_EQ(found.function, nullptr);
  EXPECT_EQ(calls, 0);
  dispatcher.invokeDelegate(1);
  EXPECT_EQ(calls, 1) << "it was still there";
}

TEST(DispatchLockFailure, DispatcherIsMadeAndDestroyedWithoutALock) {
  const NoLocks none;
  const ListDispatcher dispatcher;
}

}  // namespace
}  // namespace trelvo::core
