#pragma once

#include <trelvo/Export.h>

namespace trelvo::core {

class ITimer;

/// Hears of a timer that fired.
class TRELVO_EXPORT ITimerObserver {
 public:
  virtual ~ITimerObserver();

  /// Runs on the timer's thread, with the timer that fired. It may stop and start that timer. What
  /// it throws is dropped.
  virtual void handleTimerEvent(ITimer* timer) = 0;

 protected:
  ITimerObserver() = default;
  ITimerObserver(const ITimerObserver&) = default;
  ITimerObserver& operator=(const ITimerObserver&) = default;
};

}  // namespace trelvo::core
