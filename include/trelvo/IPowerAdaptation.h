#pragma once

#include <trelvo/Export.h>
#include <trelvo/IAlarmObserver.h>
#include <trelvo/Status.h>

namespace trelvo {

/// The platform's alarms, which wake a sleeping device. The application supplies it: the library
/// has none.
class TRELVO_EXPORT IPowerAdaptation {
 public:
  virtual ~IPowerAdaptation();

  /// Calls `observer->handleAlarm()` once after `delayMs` milliseconds, 1 or more. `periodMs` is
  /// always 0 here. @return StatusOk, or why the alarm cannot be set.
  virtual Status setAlarm(long long delayMs, unsigned long long periodMs,
                          IAlarmObserver* observer) = 0;

  /// Forgets the observer's alarm: it is not called any more. @return StatusOk, or why not.
  virtual Status cancelAlarm(IAlarmObserver* observer) = 0;

 protected:
  IPowerAdaptation() = default;
  IPowerAdaptation(const IPowerAdaptation&) = default;
  IPowerAdaptation& operator=(const IPowerAdaptation&) = default;
};

}  // namespace trelvo
