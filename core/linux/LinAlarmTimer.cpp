#include <trelvo/core/LinAlarmTimer.h>

#include "core/linux/TimerRegistration.h"
#include "objects/MakeObject.h"

namespace trelvo::core {

gom::SharedPointer<IAlarmTimer> IAlarmTimer::create(ITimerObserver* observer,
                                                    IPowerAdaptation* power) {
  if (observer == nullptr || power == nullptr) {
    return {};
  }
  return gom::makeObject<LinAlarmTimer>(observer, power);
}

LinAlarmTimer::LinAlarmTimer(ITimerObserver* observer, IPowerAdaptation* power) noexcept
    : m_observer(observer), m_power(power) {}

LinAlarmTimer::~LinAlarmTimer() = default;

Status LinAlarmTimer::start(int /*intervalMs*/, int /*reserved*/) { return StatusWrongState; }

Status LinAlarmTimer::start(long long delayMs, unsigned long long periodMs,
                            unsigned int /*reserved*/) {
  if (delayMs < 1 || periodMs != 0) {
    return StatusWrongState;
  }
  const Status status = m_power->setAlarm(delayMs, 0, this);
  if (status != StatusOk) {
    return status;
  }
  m_active.store(true, std::memory_order_relaxed);
  registerTimer(this);
  return StatusOk;
}

Status LinAlarmTimer::stop() {
  if (!isActive()) {
    return StatusOk;
  }
  const Status status = m_power->cancelAlarm(this);
  if (status != StatusOk) {
    return status;
  }
  unregisterTimer(this);
  m_active.store(false, std::memory_order_relaxed);
  return StatusOk;
}

long long LinAlarmTimer::delay() const { return m_delay; }
unsigned long long LinAlarmTimer::period() const { return m_period; }
ITimerObserver* LinAlarmTimer::observer() const { return m_observer; }
bool LinAlarmTimer::isActive() const { return m_active.load(std::memory_order_relaxed); }

void LinAlarmTimer::handleAlarm() {
  m_active.store(false, std::memory_order_relaxed);
  m_observer->handleTimerEvent(this);
}

}  // namespace trelvo::core
