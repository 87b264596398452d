#pragma once

#include <trelvo/Export.h>
#include <trelvo/IPowerAdaptation.h>
#include <trelvo/core/ITimer.h>

namespace trelvo::core {

/// A timer that wakes a sleeping device: it fires once, after a delay, by the platform's alarm.
class TRELVO_EXPORT IAlarmTimer : public ITimer {
 public:
  ~IAlarmTimer() override;

  /// An alarm timer over `power`. Neither argument is owned; both must outlive the timer.
  /// @return an empty handle when one of them is null or memory runs out.
  [[nodiscard]] static gom::SharedPointer<IAlarmTimer> create(ITimerObserver* observer,
                                                              IPowerAdaptation* power);
};

}  // namespace trelvo::core
