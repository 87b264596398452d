#pragma once

#include <ctime>

#include <trelvo/Export.h>

namespace trelvo::core {

class ITimer;

/// Where the library gets its time from. An application may install its own, for instance a clock
/// that a simulation moves, by core::ITime::setTimeProvider().
///
/// Threads: through core::ITime every call is made with one lock held, so that a provider needs
/// none of its own. It may itself call core::ITime.
class TRELVO_EXPORT ITimeProvider {
 public:
  virtual ~ITimeProvider();

  /// Seconds since the Unix epoch.
  virtual time_t utcTime() = 0;

  /// GPS time on the scale, in milliseconds, of the last calibrateGpsTime().
  virtual long long gpsTime() = 0;

  /// Milliseconds since some fixed moment, not touched by setting the system's time.
  virtual long long timeSinceBoot() = 0;

  /// Tells that GPS time is `gpsMs` now.
  virtual void calibrateGpsTime(long long gpsMs) = 0;

  /// A timer was started, or stopped. For providers that simulate time and so have to fire timers;
  /// on a real clock timers run by themselves. `timer` is not owned. A timer may have been started
  /// under an earlier provider, so that stopping it is the first that this one hears of it.
  virtual void registerTimer(ITimer* timer) = 0;
  virtual void unregisterTimer(ITimer* timer) = 0;

 protected:
  ITimeProvider() = default;
  ITimeProvider(const ITimeProvider&) = default;
  ITimeProvider& operator=(const ITimeProvider&) = default;
};

}  // namespace trelvo::core
