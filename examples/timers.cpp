// A night of a sleeping device in an instant: an alarm wakes it every quarter of an hour for a fix,
// over a clock and a power management that are simulated.
//
//   ITimeProvider        where the library gets its time from
//   IPowerAdaptation     the platform's alarms, which the application supplies
//   IAlarmTimer          a timer that wakes the device
//
// two_loops has timers that run by the real clock, in main loops.

#include <cstdio>
#include <ctime>
#include <utility>

#include <trelvo/trelvo.h>

namespace platform = trelvo::core;

using trelvo::IAlarmObserver;
using trelvo::IPowerAdaptation;
using trelvo::Status;

namespace {

constexpr std::time_t kEvening = 1700000000;
constexpr long long kQuarterMs = 15LL * 60 * 1000;

/// A clock that stands still until it is moved.
class SimulatedClock : public platform::ITimeProvider {
 public:
  void moveTo(long long ms) { m_ms = ms; }

  std::time_t utcTime() override { return kEvening + static_cast<std::time_t>(m_ms / 1000); }
  long long gpsTime() override { return m_ms; }
  long long timeSinceBoot() override { return m_ms; }
  void calibrateGpsTime(long long) override {}
  void registerTimer(platform::ITimer*) override {}
  void unregisterTimer(platform::ITimer*) override {}

 private:
  long long m_ms = 0;
};

/// Alarms by the simulated clock: sleeping means to move it to the next one. One at a time is
/// enough here; a platform's keeps one for each observer.
class SimulatedPower : public IPowerAdaptation {
 public:
  explicit SimulatedPower(SimulatedClock& clock) : m_clock(clock) {}

  Status setAlarm(long long delayMs, unsigned long long, IAlarmObserver* observer) override {
    m_due = m_clock.timeSinceBoot() + delayMs;
    m_observer = observer;
    return trelvo::StatusOk;
  }
  Status cancelAlarm(IAlarmObserver*) override {
    m_observer = nullptr;
    return trelvo::StatusOk;
  }

  /// Sleeps until the alarm. False when there is none.
  bool sleep() {
    if (m_observer == nullptr) return false;
    m_clock.moveTo(m_due);
    std::exchange(m_observer, nullptr)->handleAlarm();
    return true;
  }

 private:
  SimulatedClock& m_clock;
  long long m_due = 0;
  IAlarmObserver* m_observer = nullptr;
};

class FixTaker : public platform::ITimerObserver {
 public:
  void handleTimerEvent(platform::ITimer* timer) override {
    const std::time_t now = platform::ITime::utcTime();
    char text[16] = "";
    std::strftime(text, sizeof text, "%H:%M:%S", std::gmtime(&now));
    std::printf("%s fix %d\n", text, ++m_fixes);
    if (m_fixes < 4) timer->start(kQuarterMs, 0, 0);  // an alarm fires once
  }

 private:
  int m_fixes = 0;
};

}  // namespace

int main() {
  auto* const clock = new SimulatedClock;
  platform::ITime::setTimeProvider(clock);  // the library's from here on
  SimulatedPower power(*clock);
  FixTaker taker;
  const auto timer = platform::IAlarmTimer::create(&taker, &power);
  if (!timer || timer->start(kQuarterMs, 0, 0) != trelvo::StatusOk) return 1;
  while (power.sleep()) {
  }
  std::printf("%lld minutes slept\n", platform::ITime::timeSinceBoot() / 60000);
}
