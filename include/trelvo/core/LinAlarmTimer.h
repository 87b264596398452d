#pragma once

#include <atomic>

#include <trelvo/Export.h>
#include <trelvo/IAlarmObserver.h>
#include <trelvo/core/IAlarmTimer.h>

namespace trelvo::core {

/// An alarm timer that leaves the waiting to an IPowerAdaptation.
///
/// Stop an armed one before it is destroyed: the destructor leaves the alarm set. delay() and
/// period() are always 0.
///
/// Threads: the observer is called on the thread that the power adaptation calls on; isActive() may
/// be asked on any.
class TRELVO_EXPORT LinAlarmTimer : public IAlarmTimer, public IAlarmObserver {
 public:
  /// Takes both, neither of which may be null; create() makes sure of that.
  LinAlarmTimer(ITimerObserver* observer, IPowerAdaptation* power) noexcept;
  ~LinAlarmTimer() override;
  LinAlarmTimer(const LinAlarmTimer&) = delete;
  LinAlarmTimer& operator=(const LinAlarmTimer&) = delete;

  /// @return StatusWrongState: there are no periodic alarms.
  Status start(int intervalMs, int reserved) override;

  /// @return StatusOk, also when the timer is not armed; what the power adaptation gives when it
  ///         refuses: the timer then stays armed.
  Status stop() override;

  /// Sets the alarm.
  /// @return StatusOk; StatusWrongState for a delay below 1 or a period; what the power adaptation
  ///         gives when it refuses. Nothing changes then.
  Status start(long long delayMs, unsigned long long periodMs, unsigned int reserved) override;

  long long delay() const override;
  unsigned long long period() const override;
  /// As given to the constructor.
  ITimerObserver* observer() const override;
  bool isActive() const override;

  /// Called by the power adaptation: calls the observer, with the timer not armed any more.
  void handleAlarm() override;

 private:
  ITimerObserver* m_observer;
  IPowerAdaptation* m_power;
  std::atomic<bool> m_active{false};
  long long m_delay = 0;
  unsigned long long m_period = 0;
};

}  // namespace trelvo::core
