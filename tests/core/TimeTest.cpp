#include <gtest/gtest.h>
#include <trelvo/Status.h>
#include <trelvo/core/ITime.h>
#include <trelvo/core/LinTimeProvider.h>

#include <ctime>
#include <future>
#include <limits>
#include <type_traits>
#include <vector>

#include "tests/core/Mutexes.h"
#include "tests/support/AllocationFailure.h"

namespace trelvo::core {
namespace {

using test::Inside;
using test::OtherMutex;
using test::PretendedMutex;

static_assert(std::is_same_v<decltype(gTimeProvider), Lockable<ITimeProvider*>>);
static_assert(!std::is_base_of_v<gom::ReferenceCountable, ITimeProvider>);

/// A clock that the test moves.
struct SteppedProvider : LinTimeProvider {
  explicit SteppedProvider(int* deletions = nullptr) : m_deletions(deletions) {}
  ~SteppedProvider() override {
    if (m_deletions != nullptr) {
      ++*m_deletions;
    }
  }
  SteppedProvider(const SteppedProvider&) = delete;
  SteppedProvider& operator=(const SteppedProvider&) = delete;

  time_t utcTime() override { return 1234567890; }
  long long timeSinceBoot() override { return bootMs; }

  long long bootMs = 0;

 private:
  int* m_deletions;
};

/// Leaves the slot as a fresh process has it.
class Time : public testing::Test {
 protected:
  ~Time() override { ITime::setTimeProvider(nullptr); }

  int m_deletions = 0;
};

void calibrate(long long gpsMs) {
  Lock<ITimeProvider*> lock;
  ITime::getTimeProvider(lock);
  lock.m_lockable->m_value->calibrateGpsTime(gpsMs);
}

bool lockedElsewhere() {
  return std::async(std::launch::async,
                    [] {
                      const bool locked = gTimeProvider.tryLock(0) != 1;
                      if (!locked) {
                        gTimeProvider.unlock();
                      }
                      return locked;
                    })
      .get();
}

TEST(LinTimeProvider, GpsTimeIs0BeforeAnyCalibration) {
  LinTimeProvider provider;
  EXPECT_EQ(provider.gpsTime(), 0);
}

TEST(LinTimeProvider, ACalibrationOfZeroOrLessCountsAsNone) {
  LinTimeProvider provider;
  for (const long long gpsMs : {0LL, -5LL, std::numeric_limits<long long>::min()}) {
    provider.calibrateGpsTime(1000);
    EXPECT_GE(provider.gpsTime(), 1000);
    provider.calibrateGpsTime(gpsMs);
    EXPECT_EQ(provider.gpsTime(), 0);
  }
}

TEST(LinTimeProvider, GpsTimeGoesOnFromTheLastCalibration) {
  SteppedProvider provider;
  provider.bootMs = 5000;
  provider.calibrateGpsTime(1000000);
  EXPECT_EQ(provider.gpsTime(), 1000000);
  provider.bootMs += 250;
  EXPECT_EQ(provider.gpsTime(), 1000250);
  provider.calibrateGpsTime(1);
  provider.bootMs += 7;
  EXPECT_EQ(provider.gpsTime(), 8);
}

TEST(LinTimeProvider, GpsTimeFollowsAClockThatRunsBackOrWraps) {
  SteppedProvider provider;
  provider.bootMs = 2147483647;
  provider.calibrateGpsTime(1000000);
  provider.bootMs = -2147483648LL;
  EXPECT_EQ(provider.gpsTime(), 1000000 - 4294967295LL);
  provider.calibrateGpsTime(1000000);
  provider.bootMs += 250;
  EXPECT_EQ(provider.gpsTime(), 1000250);
}

TEST(LinTimeProvider, GpsTimeWrapsIn64Bits) {
  SteppedProvider provider;
  provider.calibrateGpsTime(std::numeric_limits<long long>::max());
  EXPECT_EQ(provider.gpsTime(), std::numeric_limits<long long>::max());
  provider.bootMs = 1;
  EXPECT_EQ(provider.gpsTime(), std::numeric_limits<long long>::min());
}

TEST(LinTimeProvider, UtcTimeIsTheSystems) {
  LinTimeProvider provider;
  const time_t before = time(nullptr);
  const time_t told = provider.utcTime();
  EXPECT_LE(before, told);
  EXPECT_LE(told, time(nullptr));
}

TEST(LinTimeProvider, TimersAreNothingToIt) {
  LinTimeProvider provider;
  provider.calibrateGpsTime(1000);
  provider.registerTimer(nullptr);
  provider.unregisterTimer(nullptr);
  EXPECT_GE(provider.gpsTime(), 1000);
}

TEST_F(Time, MakesTheDefaultProviderOnFirstUse) {
  EXPECT_EQ(gTimeProvider.m_value, nullptr);
  EXPECT_GE(ITime::utcTime(), 1);
  EXPECT_NE(dynamic_cast<LinTimeProvider*>(gTimeProvider.m_value), nullptr);
  EXPECT_EQ(Inside::lockCountOf(gTimeProvider), 0);
}

TEST_F(Time, AsksTheProviderThatIsInstalled) {
  auto* const provider = new SteppedProvider;
  ITime::setTimeProvider(provider);
  provider->bootMs = 77;
  EXPECT_EQ(gTimeProvider.m_value, provider);
  EXPECT_EQ(ITime::utcTime(), 1234567890);
  EXPECT_EQ(ITime::timeSinceBoot(), 77);
  EXPECT_EQ(ITime::gpsTime(), 0);
  calibrate(1000000);
  provider->bootMs += 250;
  EXPECT_EQ(ITime::gpsTime(), 1000250);
  EXPECT_EQ(Inside::lockCountOf(gTimeProvider), 0);
}

TEST_F(Time, DeletesTheProviderItReplaces) {
  ITime::setTimeProvider(new SteppedProvider(&m_deletions));
  EXPECT_EQ(m_deletions, 0);
  ITime::setTimeProvider(new SteppedProvider(&m_deletions));
  EXPECT_EQ(m_deletions, 1);
  ITime::setTimeProvider(nullptr);
  EXPECT_EQ(m_deletions, 2);
  EXPECT_EQ(gTimeProvider.m_value, nullptr);
}

TEST_F(Time, NullBringsANewDefaultThatIsNotCalibrated) {
  calibrate(1000000);
  EXPECT_GE(ITime::gpsTime(), 1000000);
  ITime::setTimeProvider(nullptr);
  EXPECT_GE(ITime::utcTime(), 1);
  EXPECT_NE(gTimeProvider.m_value, nullptr);
  EXPECT_EQ(ITime::gpsTime(), 0);
}

TEST_F(Time, TheSlotStaysLockedAsLongAsTheLockLives) {
  {
    Lock<ITimeProvider*> lock;
    ITime::getTimeProvider(lock);
    EXPECT_EQ(lock.m_lockable, &gTimeProvider);
    EXPECT_NE(lock.m_lockable->m_value, nullptr);
    EXPECT_TRUE(lockedElsewhere());
    EXPECT_GE(ITime::utcTime(), 1) << "the holder itself may go on asking";
  }
  EXPECT_FALSE(lockedElsewhere());
}

TEST_F(Time, AProviderMayAskForTheTimeItself) {
  struct Asking : SteppedProvider {
    long long gpsTime() override { return ITime::timeSinceBoot() + ITime::utcTime(); }
  };
  auto* const provider = new Asking;
  provider->bootMs = 10;
  ITime::setTimeProvider(provider);
  EXPECT_EQ(ITime::gpsTime(), 1234567900);
}

TEST_F(Time, ADyingProviderMayAskForTheTime) {
  struct Dying : SteppedProvider {
    ~Dying() override { EXPECT_EQ(ITime::timeSinceBoot(), 5); }
  };
  ITime::setTimeProvider(new Dying);
  auto* const next = new SteppedProvider;
  next->bootMs = 5;
  ITime::setTimeProvider(next);
}

TEST_F(Time, ThrowsStatusFailedWhenTheSlotCannotBeLocked) {
  ITime::setTimeProvider(new SteppedProvider(&m_deletions));
  {
    auto* const mutex = new PretendedMutex;
    mutex->lockResult = false;
    const OtherMutex other(gTimeProvider, mutex);
    const auto thrownBy = [](auto call) {
      try {
        call();
      } catch (Status status) {
        return status;
      }
      return StatusOk;
    };
    EXPECT_EQ(thrownBy([] { ITime::setTimeProvider(nullptr); }), StatusFailed);
    EXPECT_EQ(thrownBy([] { ITime::utcTime(); }), StatusFailed);
    EXPECT_EQ(thrownBy([] { ITime::gpsTime(); }), StatusFailed);
    EXPECT_EQ(thrownBy([] { ITime::timeSinceBoot(); }), StatusFailed);
    Lock<ITimeProvider*> lock;
    EXPECT_EQ(thrownBy([&] { ITime::getTimeProvider(lock); }), StatusFailed);
    EXPECT_EQ(lock.m_lockable, nullptr);
    EXPECT_EQ(mutex->unlocks, 0);
  }
  EXPECT_EQ(m_deletions, 0);
  EXPECT_EQ(ITime::utcTime(), 1234567890);
}

TEST_F(Time, ThrowsStatusOutOfMemoryWithoutAProviderAndUnlocks) {
  const unsigned long long allocations = test::everyAllocationFails([] {
    try {
      EXPECT_EQ(ITime::gpsTime(), 0);
    } catch (Status status) {
      EXPECT_EQ(status, StatusOutOfMemory);
      EXPECT_EQ(gTimeProvider.m_value, nullptr);
    }
    EXPECT_EQ(Inside::lockCountOf(gTimeProvider), 0);
    ITime::setTimeProvider(nullptr);
  });
  EXPECT_EQ(allocations, 1U);
}

TEST_F(Time, UnlocksWhenTheProviderThrows) {
  struct Throwing : SteppedProvider {
    time_t utcTime() override { throw StatusNotSupported; }
  };
  ITime::setTimeProvider(new Throwing);
  EXPECT_THROW(ITime::utcTime(), Status);
  EXPECT_EQ(Inside::lockCountOf(gTimeProvider), 0);
}

TEST_F(Time, ManyThreadsAskWhileTheProviderIsReplaced) {
  std::vector<std::future<void>> threads;
  threads.reserve(4);
  for (int i = 0; i < 4; ++i) {
    threads.push_back(std::async(std::launch::async, [i] {
      for (int n = 0; n < 200; ++n) {
        EXPECT_GE(ITime::utcTime(), 1);
        calibrate(1000);
        EXPECT_GE(ITime::gpsTime(), 0);
        if (i == 0) {
          ITime::setTimeProvider(n % 2 == 0 ? new SteppedProvider : nullptr);
        }
      }
    }));
  }
  for (auto& thread : threads) {
    thread.get();
  }
  EXPECT_EQ(Inside::lockCountOf(gTimeProvider), 0);
}

}  // namespace
}  // namespace trelvo::core
