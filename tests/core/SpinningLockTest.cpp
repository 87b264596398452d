#include "core/SpinningLock.h"

#include <gtest/gtest.h>

namespace trelvo::core {

namespace {

/// A lock that another thread seems to hold for a number of tries.
class BusyLock : public ILockable {
 public:
  bool lock() override {
    ++waits;
    return !broken;
  }
  int tryLock(unsigned int /*timeoutMs*/) override {
    ++tries;
    return busyFor-- > 0 ? 0 : 1;
  }
  int unlock() override {
    ++unlocks;
    return 0;
  }

  int busyFor = 0;
  int tries = 0;
  int waits = 0;
  int unlocks = 0;
  bool broken = false;
};

constexpr int kForEver = 1000000;

/// How often a lock that stays busy is tried before it is waited for.
int triesOf(BusyLock& busy, std::atomic<int>& credit) {
  busy.tries = 0;
  busy.busyFor = kForEver;
  const SpinningLock lock(busy, credit);
  return busy.tries;
}

}  // namespace

TEST(SpinningLock, TakesAFreeLockAtOnce) {
  BusyLock busy;
  std::atomic<int> credit{SpinningLock::kFullCredit};
  {
    const SpinningLock lock(busy, credit);
    EXPECT_TRUE(lock);
    EXPECT_EQ(busy.tries, 1);
    EXPECT_EQ(busy.waits, 0);
    EXPECT_EQ(busy.unlocks, 0);
  }
  EXPECT_EQ(busy.unlocks, 1);
  EXPECT_EQ(credit, SpinningLock::kFullCredit);
}

TEST(SpinningLock, SpinsForALockThatComesFreeSoon) {
  BusyLock busy;
  std::atomic<int> credit{1};
  busy.busyFor = 5;
  EXPECT_TRUE(SpinningLock(busy, credit));
  EXPECT_EQ(busy.tries, 6);
  EXPECT_EQ(busy.waits, 0);
  EXPECT_GT(credit, 1) << "it has paid off";
}

TEST(SpinningLock, WaitsWhenSpinningDoesNotHelp) {
  BusyLock busy;
  std::atomic<int> credit{SpinningLock::kFullCredit};
  EXPECT_GT(triesOf(busy, credit), 1);
  EXPECT_EQ(busy.waits, 1);
  EXPECT_LT(credit, SpinningLock::kFullCredit);
}

TEST(SpinningLock, StopsSpinningAfterFailuresAndProbesNowAndThen) {
  BusyLock busy;
  std::atomic<int> credit{SpinningLock::kFullCredit};
  int spins = 0;
  for (int i = 0; i < 100; ++i) spins += triesOf(busy, credit) > 1 ? 1 : 0;
  EXPECT_GE(spins, 3) << "it has to find out when spinning pays again";
  EXPECT_LE(spins, 10);
}

TEST(SpinningLock, SpinsAgainOnceAProbeHasPaidOff) {
  BusyLock busy;
  std::atomic<int> credit{0};
  for (int i = 0; i < 100 && credit < SpinningLock::kFullCredit; ++i) {
    busy.busyFor = 2;
    EXPECT_TRUE(SpinningLock(busy, credit));
  }
  EXPECT_EQ(credit, SpinningLock::kFullCredit);
}

TEST(SpinningLock, DoesNotUnlockWhatItCouldNotLock) {
  BusyLock busy;
  busy.broken = true;
  std::atomic<int> credit{0};
  busy.busyFor = kForEver;
  EXPECT_FALSE(SpinningLock(busy, credit));
  EXPECT_EQ(busy.unlocks, 0);
}

}  // namespace trelvo::core
