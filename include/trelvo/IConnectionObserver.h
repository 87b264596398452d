#pragma once

#include <trelvo/ConnectionInfo.h>
#include <trelvo/Export.h>

namespace trelvo {

class IPositioningExtension;

/// Hears from an INetworkAdaptation what becomes of the device's connections.
///
/// Threads: the calls come on whichever thread the adaptation has, and on the one that subscribes.
/// An adaptation may hold a lock of its own meanwhile: be quick, and let nothing pass out as an
/// exception.
class TRELVO_EXPORT IConnectionObserver {
 public:
  virtual ~IConnectionObserver();

  /// What the observer offers beyond this interface, by number. @return null when there is nothing.
  virtual IPositioningExtension* extension(unsigned int id) = 0;

  /// `info` has become the active connection.
  virtual void handleConnectionEstablished(const ConnectionInfo& info) = 0;
  /// `info` is gone. It is the connection as it was last told of.
  virtual void handleConnectionDisconnected(const ConnectionInfo& info) = 0;
  /// The connection with the id of `info` has changed, for instance roams now.
  virtual void handleConnectionChanged(const ConnectionInfo& info) = 0;

 protected:
  IConnectionObserver() = default;
  IConnectionObserver(const IConnectionObserver&) = default;
  IConnectionObserver& operator=(const IConnectionObserver&) = default;
};

}  // namespace trelvo
