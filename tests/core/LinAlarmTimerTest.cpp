#include <trelvo/core/LinAlarmTimer.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>

#include <trelvo/core/ITime.h>
#include <trelvo/core/LinTimeProvider.h>

namespace trelvo::core {

namespace {

using ::testing::Return;
using ::testing::StrictMock;

class Power : public IPowerAdaptation {
 public:
  MOCK_METHOD(Status, setAlarm, (long long, unsigned long long, IAlarmObserver*), (override));
  MOCK_METHOD(Status, cancelAlarm, (IAlarmObserver*), (override));
};

class Observer : public ITimerObserver {
 public:
  void handleTimerEvent(ITimer* timer) override {
    ++events;
    activeInside = timer->isActive();
    last = timer;
  }
  int events = 0;
  bool activeInside = true;
  ITimer* last = nullptr;
};

struct Told {
  int registered = 0;
  int unregistered = 0;
};

class Provider : public LinTimeProvider {
 public:
  explicit Provider(Told& told) : m_told(told) {}
  void registerTimer(ITimer* /*timer*/) override { ++m_told.registered; }
  void unregisterTimer(ITimer* /*timer*/) override { ++m_told.unregistered; }

 private:
  Told& m_told;
};

}  // namespace

class LinAlarmTimerTest : public ::testing::Test {
 protected:
  LinAlarmTimerTest() { ITime::setTimeProvider(new Provider(told)); }
  ~LinAlarmTimerTest() override { ITime::setTimeProvider(nullptr); }

  IAlarmObserver* alarm() { return dynamic_cast<IAlarmObserver*>(timer.get()); }
  void arm() {
    EXPECT_CALL(power, setAlarm(50, 0u, alarm())).WillOnce(Return(StatusOk));
    EXPECT_EQ(timer->start(50LL, 0ULL, 0), StatusOk);
  }

  Told told;
  Observer observer;
  StrictMock<Power> power;
  gom::SharedPointer<IAlarmTimer> timer = IAlarmTimer::create(&observer, &power);
};

TEST_F(LinAlarmTimerTest, WantsBothAnObserverAndAPowerAdaptation) {
  EXPECT_FALSE(IAlarmTimer::create(nullptr, &power));
  EXPECT_FALSE(IAlarmTimer::create(&observer, nullptr));
  ASSERT_TRUE(timer);
  EXPECT_EQ(timer->observer(), &observer);
  EXPECT_FALSE(timer->isActive());
}

TEST_F(LinAlarmTimerTest, HasNoPeriodicForm) {
  EXPECT_EQ(timer->start(100, 0), StatusWrongState);
  EXPECT_EQ(timer->start(100LL, 1ULL, 0), StatusWrongState);
  EXPECT_FALSE(timer->isActive());
}

TEST_F(LinAlarmTimerTest, DelayBelow1IsAWrongState) {
  EXPECT_EQ(timer->start(0LL, 0ULL, 0), StatusWrongState);
  EXPECT_EQ(timer->start(-1LL, 0ULL, 0), StatusWrongState);
  EXPECT_EQ(timer->start(LLONG_MIN, 0ULL, 0), StatusWrongState);
}

TEST_F(LinAlarmTimerTest, StartSetsTheAlarmAndTellsTheTimeProvider) {
  arm();
  EXPECT_TRUE(timer->isActive());
  EXPECT_EQ(told.registered, 1);
  EXPECT_EQ(timer->delay(), 0) << "never kept";
  EXPECT_EQ(timer->period(), 0u);
}

TEST_F(LinAlarmTimerTest, RefusedAlarmChangesNothing) {
  EXPECT_CALL(power, setAlarm(1, 0u, alarm())).WillOnce(Return(StatusNotSupported));
  EXPECT_EQ(timer->start(1LL, 0ULL, 0), StatusNotSupported);
  EXPECT_FALSE(timer->isActive());
  EXPECT_EQ(told.registered, 0);
}

TEST_F(LinAlarmTimerTest, StoppingAnIdleOneDoesNotAskThePowerAdaptation) {
  EXPECT_EQ(timer->stop(), StatusOk);
  EXPECT_EQ(told.unregistered, 0);
}

TEST_F(LinAlarmTimerTest, StopCancelsTheAlarm) {
  arm();
  EXPECT_CALL(power, cancelAlarm(alarm())).WillOnce(Return(StatusOk));
  EXPECT_EQ(timer->stop(), StatusOk);
  EXPECT_FALSE(timer->isActive());
  EXPECT_EQ(told.unregistered, 1);
}

TEST_F(LinAlarmTimerTest, RefusedCancelLeavesItArmed) {
  arm();
  EXPECT_CALL(power, cancelAlarm(alarm())).WillOnce(Return(StatusFailed));
  EXPECT_EQ(timer->stop(), StatusFailed);
  EXPECT_TRUE(timer->isActive());
  EXPECT_EQ(told.unregistered, 0);
}

TEST_F(LinAlarmTimerTest, AlarmReachesTheObserverWithTheTimerIdle) {
  arm();
  alarm()->handleAlarm();
  EXPECT_EQ(observer.events, 1);
  EXPECT_EQ(observer.last, timer.get());
  EXPECT_FALSE(observer.activeInside);
  EXPECT_EQ(told.unregistered, 0) << "only a stop tells the time provider";
  EXPECT_EQ(timer->stop(), StatusOk);
}

TEST_F(LinAlarmTimerTest, DestroyingAnArmedOneLeavesTheAlarmSet) {
  arm();
  timer.clear();
  EXPECT_EQ(told.unregistered, 0);
}

}  // namespace trelvo::core
