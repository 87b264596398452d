#pragma once

#include <string>

#include <trelvo/Export.h>
#include <trelvo/network/IConnectionManager.h>

namespace trelvo::network {

class ConnectionManagerGeneric;

/// The manager that a client holds: everything goes on to the ConnectionManagerGeneric that all
/// proxies share, but for the observer, of which each proxy has one.
///
/// Made by IConnectionManager::open() and create(). Deleting the last one ends the common view.
///
/// Threads: any number, but its deletion is the last use.
class TRELVO_EXPORT ConnectionManagerProxy : public IConnectionManager {
 public:
  /// Takes its observer out of the common list, then lets the common manager go.
  ~ConnectionManagerProxy() override;
  ConnectionManagerProxy(const ConnectionManagerProxy&) = delete;
  ConnectionManagerProxy& operator=(const ConnectionManagerProxy&) = delete;

  Status getConnections(ConnectionInfoContainer& connections) override;
  Status startMonitorUsedConnection() override;
  void stopMonitorUsedConnection(ConnectionInfoContainer& connections) override;
  void setObserver(IConnectionManagerObserver* observer) override;
  Status openConnection(const ConnectionInfo& info) override;
  Status closeConnection(const ConnectionInfo& info) override;
  Status getProxy(const std::string& uri, ProxyInfo& proxy) override;
  Status setNetworkingEnabled(bool enabled) override;
  bool networkingEnabled() const override;

 private:
  friend class IConnectionManager;

  ConnectionManagerProxy() = default;

  ConnectionManagerGeneric* m_generic = nullptr;     // shared, counted by its SingletonPointer
  IConnectionManagerObserver* m_observer = nullptr;  // not owned
};

}  // namespace trelvo::network
