#pragma once

#include <ctime>

#include <trelvo/Export.h>
#include <trelvo/Lock.h>
#include <trelvo/Lockable.h>
#include <trelvo/core/ITimeProvider.h>

namespace trelvo::core {

/// The one slot for the time provider. Null until the first use; it owns the provider, which is not
/// deleted when the process ends. Reach it through core::ITime.
TRELVO_EXPORT extern Lockable<ITimeProvider*> gTimeProvider;

/// The time, from whichever provider is installed: the default one, core::LinTimeProvider, which
/// the first use makes, or the application's own.
///
///     const long long startedMs = core::ITime::timeSinceBoot();
///
/// There is no short form to calibrate GPS time: see Lock for the way.
///
/// Failures: every function but createDefaultProvider() throws StatusFailed when the slot cannot be
/// locked, and every one that needs a provider StatusOutOfMemory when none can be made.
/// Threads: any number; calls of the provider are made one at a time.
class TRELVO_EXPORT ITime {
 public:
  /// Installs `provider` and deletes the one before. Do this before starting threads and timers:
  /// running timers stay with the clock they were started on.
  ///
  /// The slot takes ownership. Null brings the default provider back, freshly made and not
  /// calibrated, on the next use. Installing the provider that is already there deletes it and
  /// leaves the slot dangling.
  static void setTimeProvider(ITimeProvider* provider);

  /// Locks the slot and fills in `lock`, which must be a fresh one. The provider is
  /// `lock.m_lockable->m_value`, never null, and nobody else in the process is told the time until
  /// `lock` goes.
  static void getTimeProvider(Lock<ITimeProvider*>& lock);

  /// A new core::LinTimeProvider, which the caller owns, or null when memory runs out.
  [[nodiscard]] static ITimeProvider* createDefaultProvider();

  /// What the provider's function of the same name gives.
  static time_t utcTime();
  static long long gpsTime();
  static long long timeSinceBoot();
};

}  // namespace trelvo::core
