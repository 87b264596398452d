#pragma once

#include <trelvo/Export.h>

namespace trelvo::network {

/// Hears from an IConnectionManager that something has changed, and then asks it what.
///
/// Threads: the calls come on whichever thread brought the change, with the list of observers
/// locked. Inside a call the observer may use its own manager, setObserver() included. It may not
/// open or delete a manager there, nor wait for a thread that uses one. Nothing may pass out as an
/// exception.
class TRELVO_EXPORT IConnectionManagerObserver {
 public:
  virtual ~IConnectionManagerObserver();

  /// A connection came, went or changed: ask getConnections().
  virtual void handleConnectionListChanged() = 0;

  /// setNetworkingEnabled() has changed the flag to `enabled`.
  virtual void handleNetworkingEnabledChanged(bool enabled) = 0;

 protected:
  IConnectionManagerObserver() = default;
  IConnectionManagerObserver(const IConnectionManagerObserver&) = default;
  IConnectionManagerObserver& operator=(const IConnectionManagerObserver&) = default;
};

}  // namespace trelvo::network
