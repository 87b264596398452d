#pragma once

#include <string>

#include <trelvo/ConnectionInfo.h>
#include <trelvo/Export.h>
#include <trelvo/ProxyInfo.h>
#include <trelvo/Status.h>
#include <trelvo/network/ConnectionInfoContainer.h>

namespace trelvo {
class INetworkAdaptation;
}

namespace trelvo::network {

class IConnectionManagerObserver;

/// Answers two questions about the device's data connections: which ones are there, so that a
/// transfer may start; and which ones did the transfer really use.
///
///     std::unique_ptr<network::IConnectionManager> manager(network::IConnectionManager::open());
///     network::ConnectionInfoContainer connections;
///     if (manager && manager->getConnections(connections) == StatusOk) { ... }
///
/// All managers of a process show one view. It comes up with the first and goes with the last.
///
/// Threads: any number may use managers, and one manager; setObserver() excepted. Making and
/// deleting are safe on any thread but not inside an observer's call. One monitoring serves the
/// whole process: a start forgets what an earlier start has collected.
class TRELVO_EXPORT IConnectionManager {
 public:
  virtual ~IConnectionManager();

  /// A manager over the platform's own connectivity service. The caller deletes it.
  /// @return null when the platform cannot be reached or does not answer as it should, or memory
  ///         runs out.
  [[nodiscard]] static IConnectionManager* open();

  /// A manager over `adaptation`, which stays the caller's and has to outlive all managers of the
  /// process. It is used only when this call is the one that brings the common view up, and not
  /// looked at otherwise; null stands for the platform's own.
  /// @return as open().
  [[nodiscard]] static IConnectionManager* create(INetworkAdaptation* adaptation);

  /// Adds the active connection to `connections`, or all that the platform knows where it does not
  /// tell which one is active. With nothing active the platform's list may hold a record with
  /// `connected` false.
  /// @return StatusOk, StatusOutOfMemory, or the platform's failure.
  virtual Status getConnections(ConnectionInfoContainer& connections) = 0;

  /// Begins to collect the connections in use.
  /// @return StatusOk, or the failure of getConnections(); nothing has begun then.
  virtual Status startMonitorUsedConnection() = 0;

  /// Ends collecting, and adds to `connections` each connection that may have been in use since the
  /// start, in order. When that cannot be told it adds one reset record, whose type no caller
  /// allows. Without a start it does nothing. std::bad_alloc passes through.
  virtual void stopMonitorUsedConnection(ConnectionInfoContainer& connections) = 0;

  /// Sets the one observer, which is not owned; null for none. When this returns, the one before
  /// hears nothing any more. An observer outlives its manager or is taken back first. One thread at
  /// a time sets the observer of a manager. std::bad_alloc passes through, with none set.
  virtual void setObserver(IConnectionManagerObserver* observer) = 0;

  /// Asks the platform to bring a connection up, or tells it that it is not needed any more.
  /// @return the platform's answer.
  virtual Status openConnection(const ConnectionInfo& info) = 0;
  virtual Status closeConnection(const ConnectionInfo& info) = 0;

  /// Fills in the proxy for the address `uri`. Set `proxy.port` to ProxyInfo::kDefaultPort before.
  /// @return StatusOk, anything else when there is no proxy to use.
  virtual Status getProxy(const std::string& uri, ProxyInfo& proxy) = 0;

  /// Sets a flag that all managers share and whose change their observers hear. It is advice: the
  /// library refuses no transfer because of it.
  /// @return StatusOk; by default StatusNotSupported.
  virtual Status setNetworkingEnabled(bool enabled);

  /// The flag; true until it is set.
  virtual bool networkingEnabled() const;

 protected:
  IConnectionManager() = default;
  IConnectionManager(const IConnectionManager&) = default;
  IConnectionManager& operator=(const IConnectionManager&) = default;
};

}  // namespace trelvo::network
