#pragma once

#include <atomic>
#include <list>
#include <mutex>
#include <string>
#include <vector>

#include <trelvo/ConnectionInfo.h>
#include <trelvo/Export.h>
#include <trelvo/IConnectionObserver.h>
#include <trelvo/Lockable.h>
#include <trelvo/SingletonPointer.h>
#include <trelvo/UsedConnection.h>
#include <trelvo/network/IConnectionManager.h>

namespace trelvo::network {

class IConnectionManagerObserver;

/// The process's one view of the device's connections, behind all ConnectionManagerProxy objects.
///
/// It keeps the active connection, as the adaptation last told of it, and answers from there
/// without asking the platform again. It finds the used connections in one of two ways, whichever
/// the adaptation allows: where getDataConnection() works, it writes down each connection that
/// becomes active; where that answers StatusNotSupported, once, it compares byte counters from then
/// on.
///
/// Ownership: clients hold it through gConnectionManagerGenericStatic. It owns its adaptation only
/// if it made it.
///
/// Threads: any number of clients beside the adaptation's threads. Three locks: one is held while
/// it initialises; the list of observers is locked during their calls; the mutex of the record and
/// the list of used connections is never held during a call out. The adaptation may hold a lock of
/// its own while it reports, so that lock comes before the observers' lock.
class TRELVO_EXPORT ConnectionManagerGeneric : public IConnectionManager,
                                               public IConnectionObserver {
 public:
  /// Throws StatusOutOfMemory when a mutex cannot be made.
  ConnectionManagerGeneric();
  /// Leaves the adaptation, and deletes it if the manager made it.
  ~ConnectionManagerGeneric() override;
  ConnectionManagerGeneric(const ConnectionManagerGeneric&) = delete;
  ConnectionManagerGeneric& operator=(const ConnectionManagerGeneric&) = delete;

  /// Subscribes to `adaptation`, or to a new one of the platform when that is null, and asks it for
  /// the connections. Does nothing, successfully, once that has worked. Threads that come at the
  /// same time wait for the first, and try themselves if it fails.
  /// @return false when the adaptation cannot be made, refuses the subscription or fails to answer.
  ///         It is left again then, and the next call starts afresh.
  bool initialize(INetworkAdaptation* adaptation);

  /// Whether initialize() has worked.
  bool isInitialized() const;

  Status getConnections(ConnectionInfoContainer& connections) override;
  Status startMonitorUsedConnection() override;
  void stopMonitorUsedConnection(ConnectionInfoContainer& connections) override;

  /// Does nothing: proxies call addObserver().
  void setObserver(IConnectionManagerObserver* observer) override;

  /// The adaptation's answers; StatusWrongState before it is initialised.
  Status openConnection(const ConnectionInfo& info) override;
  Status closeConnection(const ConnectionInfo& info) override;
  Status getProxy(const std::string& uri, ProxyInfo& proxy) override;

  /// Tells the observers when the flag changes.
  /// @return StatusOk, or StatusFailed when the list of observers could not be locked; the flag is
  ///         set all the same.
  Status setNetworkingEnabled(bool enabled) override;
  bool networkingEnabled() const override;

  /// Appends `observer`, which is not owned; null is ignored. One that is added twice is called
  /// twice.
  void addObserver(IConnectionManagerObserver* observer);

  /// Takes out all occurrences of `observer`; null is ignored. Waits for calls under way on other
  /// threads. From inside a call it makes the walk skip the observer that moves up.
  void removeObserver(IConnectionManagerObserver* observer);

  /// Always null.
  IPositioningExtension* extension(unsigned int id) override;

  /// The adaptation's reports. Each tells all observers that the list has changed.
  /// Established: `info` becomes the active connection.
  void handleConnectionEstablished(const ConnectionInfo& info) override;
  /// Disconnected: the active connection is forgotten if it has the id of `info`.
  void handleConnectionDisconnected(const ConnectionInfo& info) override;
  /// Changed: `info` takes the place of the active connection if that has the same id.
  void handleConnectionChanged(const ConnectionInfo& info) override;

 private:
  using Observers = std::vector<IConnectionManagerObserver*>;

  bool attach(INetworkAdaptation* adaptation);
  void detach();
  void updateDataConnection(const ConnectionInfo& info);
  void notifyConnectionListChange();
  template <class Call>
  bool forEachObserver(const Call& call);
  bool findCachedConnection(ConnectionInfo& info, unsigned int& eventCount) const;
  bool askDataConnection(ConnectionInfo info, unsigned int eventCount,
                         ConnectionInfoContainer& connections);
  bool usesDataConnection() const;
  Status findConnections(ConnectionInfoContainer& connections);
  Status findUsed(std::list<UsedConnection>& used);
  std::list<UsedConnection> withCounters(const ConnectionInfoContainer& connections) const;
  void addIfUsed(const UsedConnection& used, ConnectionInfoContainer& connections) const;
  void addByCounters(const std::list<UsedConnection>& used, ConnectionInfoContainer& connections);

  std::list<UsedConnection> m_usedConnections;  // seen since monitoring began
  Lockable<Observers> m_observers;              // not owned
  bool m_monitoring = false;
  INetworkAdaptation* m_adaptation = nullptr;
  bool m_ownsAdaptation = false;
  std::atomic<bool> m_networkingEnabled{true};
  std::atomic<bool> m_initialized{false};
  bool m_useDataConnection = true;  // once cleared it stays so
  ConnectionInfo m_dataConnection;  // the active connection; type 0 when none is known

  std::mutex m_initializing;
  // Guards m_usedConnections, m_monitoring, m_useDataConnection, m_dataConnection, m_eventCount,
  // m_usedUnknown.
  mutable std::mutex m_recordMutex;
  unsigned int m_eventCount = 0;  // reports so far: an answer older than the last one is not kept
  bool m_usedUnknown = false;     // one of them found no memory
};

/// Holds the common manager while there are proxies. It is made and let go by them alone.
extern TRELVO_EXPORT SingletonPointer<ConnectionManagerGeneric> gConnectionManagerGenericStatic;

}  // namespace trelvo::network
