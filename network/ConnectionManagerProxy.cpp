#include <trelvo/network/ConnectionManagerProxy.h>

#include <memory>
#include <new>

#include <trelvo/network/ConnectionManagerGeneric.h>

namespace trelvo::network {

IConnectionManager* IConnectionManager::open() { return create(nullptr); }

IConnectionManager* IConnectionManager::create(INetworkAdaptation* adaptation) {
  std::unique_ptr<ConnectionManagerProxy> proxy(new (std::nothrow) ConnectionManagerProxy);
  if (proxy == nullptr) return nullptr;
  ConnectionManagerGeneric* const generic = gConnectionManagerGenericStatic.acquireRef();
  proxy->m_generic = generic;
  const bool usable =
      generic != nullptr && (generic->isInitialized() || generic->initialize(adaptation));
  return usable ? proxy.release() : nullptr;
}

ConnectionManagerProxy::~ConnectionManagerProxy() {
  // Without a manager nothing was counted, and another's count is not for this proxy to take.
  if (m_generic == nullptr) return;
  m_generic->removeObserver(m_observer);
  gConnectionManagerGenericStatic.releaseRef();
}

Status ConnectionManagerProxy::getConnections(ConnectionInfoContainer& connections) {
  return m_generic->getConnections(connections);
}

Status ConnectionManagerProxy::startMonitorUsedConnection() {
  return m_generic->startMonitorUsedConnection();
}

void ConnectionManagerProxy::stopMonitorUsedConnection(ConnectionInfoContainer& connections) {
  m_generic->stopMonitorUsedConnection(connections);
}

void ConnectionManagerProxy::setObserver(IConnectionManagerObserver* observer) {
  m_generic->removeObserver(m_observer);
  m_observer = observer;
  m_generic->addObserver(observer);
}

Status ConnectionManagerProxy::openConnection(const ConnectionInfo& info) {
  return m_generic->openConnection(info);
}

Status ConnectionManagerProxy::closeConnection(const ConnectionInfo& info) {
  return m_generic->closeConnection(info);
}

Status ConnectionManagerProxy::getProxy(const std::string& uri, ProxyInfo& proxy) {
  return m_generic->getProxy(uri, proxy);
}

Status ConnectionManagerProxy::setNetworkingEnabled(bool enabled) {
  return m_generic->setNetworkingEnabled(enabled);
}

bool ConnectionManagerProxy::networkingEnabled() const { return m_generic->networkingEnabled(); }

}  // namespace trelvo::network
