#pragma once

#include <trelvo/Export.h>

namespace trelvo {

/// Hears of an alarm that an IPowerAdaptation was asked for.
class TRELVO_EXPORT IAlarmObserver {
 public:
  virtual ~IAlarmObserver();

  /// The alarm went off. Called on a thread of the power adaptation's choice.
  virtual void handleAlarm() = 0;

 protected:
  IAlarmObserver() = default;
  IAlarmObserver(const IAlarmObserver&) = default;
  IAlarmObserver& operator=(const IAlarmObserver&) = default;
};

}  // namespace trelvo
