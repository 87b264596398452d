#include <gtest/gtest.h>
#include <trelvo/core/LinTimeProvider.h>

#include "tests/core/SystemCalls.h"

namespace trelvo::core {
namespace {

using test::Answered;
using test::StandingClock;
using test::SystemCall;
using test::systemLog;

long long timeSinceBootAt(time_t seconds, long nanoseconds) {
  const StandingClock clock(seconds, nanoseconds);
  return LinTimeProvider().timeSinceBoot();
}

TEST(LinTimeProviderClock, CountsWholeMillisecondsOfTheMonotonicClock) {
  EXPECT_EQ(timeSinceBootAt(0, 0), 0);
  EXPECT_EQ(timeSinceBootAt(0, 999999), 0);
  EXPECT_EQ(timeSinceBootAt(0, 1000000), 1);
  EXPECT_EQ(timeSinceBootAt(12, 345999999), 12345);
  EXPECT_EQ(systemLog().clock, CLOCK_MONOTONIC);
}

TEST(LinTimeProviderClock, WrapsToNegativeNumbersAfter2To31Milliseconds) {
  EXPECT_EQ(timeSinceBootAt(2147483, 647000000), 2147483647LL);
  EXPECT_EQ(timeSinceBootAt(2147483, 648000000), -2147483648LL);
  EXPECT_EQ(timeSinceBootAt(2147483, 649000000), -2147483647LL);
  EXPECT_EQ(timeSinceBootAt(4294967, 295000000), -1);
  EXPECT_EQ(timeSinceBootAt(4294967, 296000000), 0);
}

TEST(LinTimeProviderClock, StaysIn32BitsForEverySecond) {
  EXPECT_EQ(timeSinceBootAt(2147483647, 999999999), -1);
}

TEST(LinTimeProviderClock, Is0WhenTheClockCannotBeRead) {
  const Answered noClock(SystemCall::ClockGettime, -1);
  EXPECT_EQ(LinTimeProvider().timeSinceBoot(), 0);
}

TEST(LinTimeProviderClock, GpsTimeIsReckonedFromThat0) {
  LinTimeProvider provider;
  StandingClock clock(100, 0);
  provider.calibrateGpsTime(1000000);
  StandingClock::set(100, 250000000);
  EXPECT_EQ(provider.gpsTime(), 1000250);
  const Answered noClock(SystemCall::ClockGettime, -1);
  EXPECT_EQ(provider.gpsTime(), 900000);
}

}  // namespace
}  // namespace trelvo::core
