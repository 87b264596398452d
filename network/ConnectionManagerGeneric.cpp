#include <trelvo/network/ConnectionManagerGeneric.h>

#include <algorithm>
#include <new>

#include <trelvo/INetworkAdaptation.h>
#include <trelvo/Lock.h>
#include <trelvo/NetworkAdaptation.h>
#include <trelvo/network/IConnectionManagerObserver.h>

#include "objects/StartUp.h"

namespace trelvo::network {

namespace {

using RecordLock = std::lock_guard<std::mutex>;

bool sameId(const UsedConnection& a, const UsedConnection& b) { return a.info.id == b.info.id; }

void eraseFirstWithId(unsigned long long id, ConnectionInfoContainer& connections) {
  const auto found = std::find_if(connections.begin(), connections.end(),
                                  [id](const ConnectionInfo& info) { return info.id == id; });
  if (found != connections.end()) connections.erase(found);
}

}  // namespace

__attribute__((init_priority(kStartUpConnectionManager))) SingletonPointer<ConnectionManagerGeneric>
    gConnectionManagerGenericStatic;

ConnectionManagerGeneric::ConnectionManagerGeneric() = default;
ConnectionManagerGeneric::~ConnectionManagerGeneric() { detach(); }

bool ConnectionManagerGeneric::initialize(INetworkAdaptation* adaptation) {
  const std::lock_guard<std::mutex> lock(m_initializing);
  if (isInitialized()) return true;
  const bool attached = attach(adaptation);
  if (!attached) detach();
  m_initialized = attached;
  return attached;
}

bool ConnectionManagerGeneric::attach(INetworkAdaptation* adaptation) {
  m_ownsAdaptation = adaptation == nullptr;
  m_adaptation = m_ownsAdaptation ? NetworkAdaptation::create() : adaptation;
  if (m_adaptation == nullptr || m_adaptation->subscribe(*this) != StatusOk) return false;
  ConnectionInfoContainer primed;
  return getConnections(primed) == StatusOk;
}

// At once after a failure, not only in the destructor: an adaptation of the caller's may be gone
// before the next try.
void ConnectionManagerGeneric::detach() {
  if (m_adaptation == nullptr) return;
  m_adaptation->unsubscribe(*this);
  if (m_ownsAdaptation) delete m_adaptation;
  m_adaptation = nullptr;
  const RecordLock lock(m_recordMutex);
  m_dataConnection.reset();
}

bool ConnectionManagerGeneric::isInitialized() const { return m_initialized; }

Status ConnectionManagerGeneric::getConnections(ConnectionInfoContainer& connections) {
  try {
    return findConnections(connections);
  } catch (const std::bad_alloc&) {
    return StatusOutOfMemory;
  }
}

Status ConnectionManagerGeneric::findConnections(ConnectionInfoContainer& connections) {
  ConnectionInfo info;
  unsigned int eventCount = 0;
  if (findCachedConnection(info, eventCount)) {
    connections.add(info);
    return StatusOk;
  }
  if (m_adaptation == nullptr) return StatusWrongState;
  if (usesDataConnection() && askDataConnection(info, eventCount, connections)) return StatusOk;
  return m_adaptation->getConnections(connections);
}

bool ConnectionManagerGeneric::findCachedConnection(ConnectionInfo& info,
                                                    unsigned int& eventCount) const {
  const RecordLock lock(m_recordMutex);
  info = m_dataConnection;
  eventCount = m_eventCount;
  return info.type != ConnectionInfo::TypeNone;
}

bool ConnectionManagerGeneric::askDataConnection(ConnectionInfo info, unsigned int eventCount,
                                                 ConnectionInfoContainer& connections) {
  const Status status = m_adaptation->getDataConnection(info);
  {
    const RecordLock lock(m_recordMutex);
    if (status == StatusNotSupported) m_useDataConnection = false;
    // What was reported meanwhile is newer than the answer.
    if (eventCount == m_eventCount) {
      m_dataConnection = info;
    } else {
      info = m_dataConnection;
    }
  }
  if (status != StatusOk || info.type == ConnectionInfo::TypeNone) return false;
  connections.add(info);
  return true;
}

bool ConnectionManagerGeneric::usesDataConnection() const {
  const RecordLock lock(m_recordMutex);
  return m_useDataConnection;
}

Status ConnectionManagerGeneric::startMonitorUsedConnection() {
  // Monitoring is on before the connections are asked for, so that none that becomes active
  // meanwhile is missed; such a one stands behind those of the start.
  bool monitored = true;
  {
    const RecordLock lock(m_recordMutex);
    m_usedConnections.clear();
    m_usedUnknown = false;
    std::swap(monitored, m_monitoring);
  }
  std::list<UsedConnection> used;
  const Status status = findUsed(used);

  const RecordLock lock(m_recordMutex);
  m_monitoring = status == StatusOk || monitored;
  m_usedConnections.splice(m_usedConnections.begin(), used);
  return status;
}

Status ConnectionManagerGeneric::findUsed(std::list<UsedConnection>& used) {
  try {
    ConnectionInfoContainer connections;
    const Status status = getConnections(connections);
    if (status == StatusOk) used = withCounters(connections);
    return status;
  } catch (const std::bad_alloc&) {
    return StatusOutOfMemory;
  }
}

std::list<UsedConnection> ConnectionManagerGeneric::withCounters(
    const ConnectionInfoContainer& connections) const {
  const bool counted = !usesDataConnection();
  std::list<UsedConnection> used;
  for (const ConnectionInfo& info : connections) {
    UsedConnection& added = used.emplace_back(UsedConnection{info, 0});
    if (counted) m_adaptation->getBytesTransferred(info, added.bytes);
  }
  used.unique(sameId);
  return used;
}

void ConnectionManagerGeneric::stopMonitorUsedConnection(ConnectionInfoContainer& connections) {
  std::list<UsedConnection> used;
  bool counted = false;
  bool unknown = false;
  {
    const RecordLock lock(m_recordMutex);
    if (!m_monitoring) return;
    m_monitoring = false;
    used.swap(m_usedConnections);
    counted = !m_useDataConnection;
    unknown = m_usedUnknown;
  }
  if (unknown) {
    connections.add(ConnectionInfo());
    return;
  }
  if (counted) {
    addByCounters(used, connections);
    return;
  }
  for (const UsedConnection& each : used) connections.add(each.info);
}

void ConnectionManagerGeneric::addByCounters(const std::list<UsedConnection>& used,
                                             ConnectionInfoContainer& connections) {
  ConnectionInfoContainer present;
  if (getConnections(present) != StatusOk) {
    connections.add(ConnectionInfo());
    return;
  }
  for (const UsedConnection& each : used) {
    addIfUsed(each, connections);
    eraseFirstWithId(each.info.id, present);
  }
  connections.splice(connections.end(), present);
}

void ConnectionManagerGeneric::addIfUsed(const UsedConnection& used,
                                         ConnectionInfoContainer& connections) const {
  // An adaptation without a number leaves the counter alone, and it then differs: the safe side.
  unsigned long long bytes = used.bytes + 1;
  m_adaptation->getBytesTransferred(used.info, bytes);
  if (bytes != used.bytes) connections.add(used.info);
}

void ConnectionManagerGeneric::setObserver(IConnectionManagerObserver*) {}

Status ConnectionManagerGeneric::openConnection(const ConnectionInfo& info) {
  return m_adaptation == nullptr ? StatusWrongState : m_adaptation->openConnection(info);
}

Status ConnectionManagerGeneric::closeConnection(const ConnectionInfo& info) {
  return m_adaptation == nullptr ? StatusWrongState : m_adaptation->closeConnection(info);
}

Status ConnectionManagerGeneric::getProxy(const std::string& uri, ProxyInfo& proxy) {
  return m_adaptation == nullptr ? StatusWrongState : m_adaptation->getProxy(uri.c_str(), proxy);
}

Status ConnectionManagerGeneric::setNetworkingEnabled(bool enabled) {
  if (m_networkingEnabled.exchange(enabled) == enabled) return StatusOk;
  const bool told = forEachObserver([enabled](IConnectionManagerObserver& observer) {
    observer.handleNetworkingEnabledChanged(enabled);
  });
  return told ? StatusOk : StatusFailed;
}

bool ConnectionManagerGeneric::networkingEnabled() const { return m_networkingEnabled; }

void ConnectionManagerGeneric::addObserver(IConnectionManagerObserver* observer) {
  if (observer == nullptr || !m_observers.lock()) return;
  Lock<Observers> lock;
  lock.m_lockable = &m_observers;
  m_observers.m_value.push_back(observer);
}

void ConnectionManagerGeneric::removeObserver(IConnectionManagerObserver* observer) {
  if (observer == nullptr || !m_observers.lock()) return;
  Lock<Observers> lock;
  lock.m_lockable = &m_observers;
  Observers& all = m_observers.m_value;
  all.erase(std::remove(all.begin(), all.end(), observer), all.end());
}

template <class Call>
bool ConnectionManagerGeneric::forEachObserver(const Call& call) {
  if (!m_observers.lock()) return false;
  Lock<Observers> lock;
  lock.m_lockable = &m_observers;
  // By number and not by iterator: an observer may add and remove during its call.
  // NOLINTNEXTLINE(modernize-loop-convert)
  for (std::size_t i = 0; i < m_observers.m_value.size(); ++i) call(*m_observers.m_value[i]);
  return true;
}

IPositioningExtension* ConnectionManagerGeneric::extension(unsigned int) { return nullptr; }

void ConnectionManagerGeneric::handleConnectionEstablished(const ConnectionInfo& info) {
  {
    const RecordLock lock(m_recordMutex);
    ++m_eventCount;
    updateDataConnection(info);
  }
  notifyConnectionListChange();
}

void ConnectionManagerGeneric::handleConnectionChanged(const ConnectionInfo& info) {
  {
    const RecordLock lock(m_recordMutex);
    ++m_eventCount;
    if (info.id == m_dataConnection.id) updateDataConnection(info);
  }
  notifyConnectionListChange();
}

void ConnectionManagerGeneric::handleConnectionDisconnected(const ConnectionInfo& info) {
  {
    const RecordLock lock(m_recordMutex);
    ++m_eventCount;
    if (info.id == m_dataConnection.id) m_dataConnection.reset();
  }
  notifyConnectionListChange();
}

// With the record's mutex held. No exception may get out to the adaptation.
void ConnectionManagerGeneric::updateDataConnection(const ConnectionInfo& info) {
  if (!m_useDataConnection) return;
  m_dataConnection = info;
  if (!m_monitoring) return;
  try {
    m_usedConnections.push_back(UsedConnection{info, 0});
  } catch (const std::bad_alloc&) {
    m_usedUnknown = true;
  }
}

void ConnectionManagerGeneric::notifyConnectionListChange() {
  forEachObserver(
      [](IConnectionManagerObserver& observer) { observer.handleConnectionListChanged(); });
}

}  // namespace trelvo::network
