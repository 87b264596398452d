#include <gtest/gtest.h>
#include <trelvo/core/LinSemaphore.h>

#include <chrono>
#include <future>
#include <type_traits>
#include <vector>

#include "tests/support/AllocationFailure.h"

namespace trelvo::core {
namespace {

static_assert(std::is_base_of_v<gom::ReferenceCountable, ISemaphore>);
static_assert(std::is_base_of_v<ISemaphore, LinSemaphore>);
static_assert(std::is_same_v<decltype(ISemaphore::create(0, 1)), gom::SharedPointer<ISemaphore>>);

/// Takes all tokens by polling and tells how many there were.
unsigned int drain(ISemaphore& semaphore) {
  unsigned int tokens = 0;
  while (semaphore.tryWait(0) == 1) {
    ++tokens;
  }
  return tokens;
}

TEST(ISemaphore, IsMadeEmpty) {
  const auto semaphore = ISemaphore::create(0, 1);
  ASSERT_NE(semaphore, nullptr);
  EXPECT_EQ(semaphore->referenceCount(), 1);
  EXPECT_EQ(semaphore->tryWait(0), 2);
}

TEST(ISemaphore, IsNotMadeForNoTokensAtAll) {
  EXPECT_EQ(ISemaphore::create(0, 0), nullptr);
  EXPECT_EQ(ISemaphore::create(1, 0), nullptr);
}

TEST(ISemaphore, IsNotMadeWithInitialTokens) {
  EXPECT_EQ(ISemaphore::create(1, 1), nullptr);
  EXPECT_EQ(ISemaphore::create(1, 2), nullptr);
  EXPECT_EQ(ISemaphore::create(2, 1), nullptr);
}

TEST(ISemaphore, IsEmptyHandleWithoutMemory) {
  const unsigned long long allocations = test::everyAllocationFails([] {
    const auto semaphore = ISemaphore::create(0, 1);
    EXPECT_TRUE(!semaphore || semaphore->signal(1, nullptr));
  });
  EXPECT_EQ(allocations, 1U);
}

TEST(LinSemaphore, SignalsItsInitialTokensByTheVirtualFunction) {
  struct Refusing : LinSemaphore {
    bool signal(unsigned int count, unsigned int* previous) override {
      signalled = count;
      EXPECT_EQ(previous, nullptr);
      return false;
    }
    unsigned int signalled = 0;
  } semaphore;
  EXPECT_FALSE(semaphore.create(3, 5));
  EXPECT_EQ(semaphore.signalled, 3U);
}

TEST(LinSemaphore, FailsAtEverythingUntilItIsCreated) {
  LinSemaphore semaphore;
  unsigned int previous = 77;
  EXPECT_FALSE(semaphore.wait());
  EXPECT_EQ(semaphore.tryWait(0), 0);
  EXPECT_EQ(semaphore.tryWait(1000), 0);
  EXPECT_FALSE(semaphore.signal(1, &previous));
  EXPECT_FALSE(semaphore.signal(0, nullptr));
  EXPECT_EQ(previous, 77U);
  EXPECT_FALSE(semaphore.zero());
}

TEST(LinSemaphore, FailsAtEverythingWhenItsCreationFailed) {
  LinSemaphore semaphore;
  EXPECT_FALSE(semaphore.create(1, 1));
  EXPECT_EQ(semaphore.tryWait(0), 0);
  EXPECT_FALSE(semaphore.signal(1, nullptr));
  EXPECT_FALSE(semaphore.zero());
}

TEST(LinSemaphore, EachWaitTakesOneToken) {
  const auto semaphore = ISemaphore::create(0, 3);
  EXPECT_TRUE(semaphore->signal(3, nullptr));
  EXPECT_TRUE(semaphore->wait());
  EXPECT_EQ(semaphore->tryWait(0), 1);
  EXPECT_EQ(semaphore->tryWait(1000), 1);
  EXPECT_EQ(semaphore->tryWait(0), 2);
}

TEST(LinSemaphore, SignalTellsTheTokensBeforeIt) {
  const auto semaphore = ISemaphore::create(0, 3);
  unsigned int previous = 77;
  EXPECT_TRUE(semaphore->signal(2, &previous));
  EXPECT_EQ(previous, 0U);
  EXPECT_TRUE(semaphore->signal(1, &previous));
  EXPECT_EQ(previous, 2U);
  EXPECT_TRUE(semaphore->signal(0, &previous));
  EXPECT_EQ(previous, 3U);
}

TEST(LinSemaphore, RefusesTokensAboveTheMaximumButTellsTheCount) {
  const auto semaphore = ISemaphore::create(0, 1);
  unsigned int previous = 77;
  EXPECT_FALSE(semaphore->signal(2, &previous));
  EXPECT_EQ(previous, 0U);
  EXPECT_EQ(semaphore->tryWait(0), 2);
  EXPECT_TRUE(semaphore->signal(1, nullptr));
  EXPECT_FALSE(semaphore->signal(1, &previous));
  EXPECT_EQ(previous, 1U);
  EXPECT_EQ(drain(*semaphore), 1U);
}

TEST(LinSemaphore, RefusesASumThatWraps) {
  const auto semaphore = ISemaphore::create(0, 0xFFFFFFFFU);
  EXPECT_TRUE(semaphore->signal(2, nullptr));
  EXPECT_FALSE(semaphore->signal(0xFFFFFFFFU, nullptr));
  EXPECT_EQ(drain(*semaphore), 2U);
  EXPECT_TRUE(semaphore->signal(0xFFFFFFFFU, nullptr));
}

TEST(LinSemaphore, TryWaitReports2WhenTheTimeRunsOut) {
  const auto semaphore = ISemaphore::create(0, 1);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(semaphore->tryWait(1000), 2);
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(900));
}

TEST(LinSemaphore, ASignalWakesWhoWaits) {
  const auto semaphore = ISemaphore::create(0, 1);
  auto waiting = std::async(std::launch::async, [&] { return semaphore->wait(); });
  auto ticking = std::async(std::launch::async, [&] { return semaphore->tryWait(60000); });
  for (int woken = 0; woken < 2;) {
    woken += semaphore->signal(1, nullptr) ? 1 : 0;
  }
  EXPECT_TRUE(waiting.get());
  EXPECT_EQ(ticking.get(), 1);
  EXPECT_EQ(drain(*semaphore), 0U);
}

TEST(LinSemaphore, OneSignalWakesAsManyAsItHasTokensFor) {
  const auto semaphore = ISemaphore::create(0, 4);
  std::vector<std::future<bool>> waiting;
  waiting.reserve(4);
  for (int i = 0; i < 4; ++i) {
    waiting.push_back(std::async(std::launch::async, [&] { return semaphore->wait(); }));
  }
  EXPECT_TRUE(semaphore->signal(4, nullptr));
  for (auto& thread : waiting) {
    EXPECT_TRUE(thread.get());
  }
  EXPECT_EQ(semaphore->tryWait(0), 2);
}

TEST(LinSemaphore, ZeroTakesAllTokensAway) {
  const auto semaphore = ISemaphore::create(0, 5);
  EXPECT_TRUE(semaphore->signal(5, nullptr));
  EXPECT_TRUE(semaphore->zero());
  EXPECT_EQ(semaphore->tryWait(0), 2);
  EXPECT_TRUE(semaphore->zero());
  EXPECT_TRUE(semaphore->signal(5, nullptr));
}

}  // namespace
}  // namespace trelvo::core
