#pragma once

#include <trelvo/Export.h>
#include <trelvo/Status.h>
#include <trelvo/core/ITimerObserver.h>
#include <trelvo/gom/ReferenceCountable.h>
#include <trelvo/gom/SharedPointer.h>

namespace trelvo::core {

/// A timer that calls an observer, once or periodically. All times are milliseconds, by a clock
/// that does not jump and stands still while the device sleeps.
///
/// **The number of arguments decides.** start(100, 0) is the short form: it fires every 100 ms.
/// start(100, 0, 0) is the long form with period 0: it fires once.
///
/// Ownership: the observer is not owned and must outlive the timer. A timer that is destroyed
/// stops. Threads: a timer belongs to the thread that made it, and fires there.
class TRELVO_EXPORT ITimer : public gom::ReferenceCountable {
 public:
  ~ITimer() override;

  /// Fires every `intervalMs`, for the first time after one interval: the long form with delay and
  /// period `intervalMs`. `reserved` is ignored.
  virtual Status start(int intervalMs, int reserved) = 0;

  /// Disarms the timer. @return StatusOk also when it was not armed.
  virtual Status stop() = 0;

  /// Fires after `delayMs`, then every `periodMs`; 0 fires once. Arms an armed timer anew.
  /// `reserved` is ignored.
  /// @return StatusInvalidParameter for a delay of 0, StatusFailed for a negative one; the timer is
  ///         then as it was.
  virtual Status start(long long delayMs, unsigned long long periodMs, unsigned int reserved) = 0;

  /// The delay that the timer was started with; 0 when it is not armed.
  virtual long long delay() const = 0;

  /// The period that the timer was started with; 0 when it is not armed or fires once.
  virtual unsigned long long period() const = 0;

  /// Who hears of the timer; never null.
  virtual ITimerObserver* observer() const = 0;

  /// Whether the timer is armed. One that fires once is not any more when its observer is called.
  virtual bool isActive() const = 0;

  /// A timer on the calling thread's dispatcher. A thread without a main-loop type gets GLib's.
  /// @return an empty handle without an observer, and when memory or descriptors run out.
  [[nodiscard]] static gom::SharedPointer<ITimer> create(ITimerObserver* observer);
};

}  // namespace trelvo::core
