#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <set>
#include <vector>

#include <core/connection.h>

#include <trelvo/ConnectionInfo.h>
#include <trelvo/Export.h>
#include <trelvo/INetworkAdaptation.h>
#include <trelvo/network/Connectivity.h>

namespace trelvo {

namespace core {
class IMutex;
}

/// Makes connection records and events of what the platform's connectivity service
/// (<trelvo/network/Connectivity.h>) tells: a state, and the kind of the active connection.
///
/// It reaches the service with the first observer and leaves it with the last. What observers were
/// last told outlives that, so a later one hears only of a difference.
///
/// | state | bits of Characteristics | type, bearer, id | connected | roaming    | name           |
/// |-------|-------------------------|------------------|-----------|------------|----------------|
/// | 70    | WLAN                    | 1                | true      | false      | "wifi"         |
/// | 70    | cellular, not WLAN      | 2                | true      | as its bit | "cellular"     |
/// | else  | any                     | 0                | false     | true       | "disconnected" |
///
/// Observers hear of a change when the characteristics change; a change of the state alone raises
/// no event. The event comes on the thread that runs GLib's default main context, and waits there
/// until some thread does; getDataConnection() knows at once.
///
/// Threads: any number of clients, the service's signal thread, and the thread of the main context.
/// Two locks. The mutex of the observers is recursive and held during their calls, so an observer
/// may call back. The mutex of the state and the characteristics is held for no call, so neither
/// the service's thread nor a client that asks ever waits for an observer. The service is reached
/// and left, and its slots are connected and disconnected, with neither held, unless an observer
/// does that inside its call.
class TRELVO_EXPORT NetworkAdaptationUbuntu : public INetworkAdaptation {
 public:
  /// Throws StatusOutOfMemory when the mutex cannot be made.
  NetworkAdaptationUbuntu();
  /// Leaves the service, takes back an event still queued and waits for one under way. Not inside
  /// an observer's call.
  ~NetworkAdaptationUbuntu() override;
  NetworkAdaptationUbuntu(const NetworkAdaptationUbuntu&) = delete;
  NetworkAdaptationUbuntu& operator=(const NetworkAdaptationUbuntu&) = delete;

  /// Fills in `info` by the table above, all but its `size`. @return StatusOk.
  Status getDataConnection(ConnectionInfo& info) override;

  /// Adds what getDataConnection() gives, whether connected or not. Behind it, when roaming is
  /// known but the active connection is not cellular, the cellular connection that is not active.
  /// @return what getDataConnection() gives.
  Status getConnections(IConnectionInfoList& list) override;

  /// @return StatusNotSupported: nobody counts bytes here.
  Status getBytesTransferred(const ConnectionInfo& info, unsigned long long& bytes) override;

  /// @return StatusNotSupported: there is no proxy.
  Status getProxy(const char* uri, ProxyInfo& proxy) override;

  /// Do nothing: the platform opens and closes by itself. @return StatusOk.
  Status openConnection(const ConnectionInfo& info) override;
  Status closeConnection(const ConnectionInfo& info) override;

  /// Adds `observer`. Before this returns, all observers have heard, on this thread, what has
  /// changed since they were last told; the first ever hears in any case.
  /// @return StatusOk, or StatusFailed when the service cannot be reached. Then nothing has
  /// changed.
  Status subscribe(IConnectionObserver& observer) override;

  /// Takes `observer` out. Waits for a call under way on another thread.
  /// @return StatusOk.
  Status unsubscribe(IConnectionObserver& observer) override;

  /// Always true.
  bool isNetworkingEnabled() const;

  /// Tells the observers of `self`, a NetworkAdaptationUbuntu, what has changed since they were
  /// last told. A source function of GLib. @return 0, so that it runs once.
  static int connectionStateUpdated(void* self);

 private:
  using State = com::ubuntu::location::connectivity::State;
  using Characteristics = com::ubuntu::location::connectivity::Characteristics;
  using Manager = com::ubuntu::location::connectivity::Manager;
  struct QueuedUpdate;
  struct Link;

  bool knowsIdleCellular() const;
  bool join(IConnectionObserver& observer);
  bool connectToPlatform();
  void connectSlots(Link& link);
  void keepLink(Link& link);
  void swapLink(Link& link);
  void readPresentValues();
  bool keepValuesUnlessNewer(unsigned int seen, State state, Characteristics characteristics);
  void stateChanged(unsigned int link, State state);
  void characteristicsChanged(unsigned int link, Characteristics characteristics);
  unsigned int changeCount() const;
  bool tellObservers();
  void tellAll(const ConnectionInfo& now);
  void tell(IConnectionObserver& observer, const ConnectionInfo& last,
            const ConnectionInfo& now) const;

  std::set<IConnectionObserver*> m_observers;  // not owned
  ConnectionInfo m_lastConnection;             // what observers were last told
  bool m_hasLastConnection = false;
  std::shared_ptr<Manager> m_manager;
  State m_state{};
  Characteristics m_characteristics{};
  core::IMutex* m_mutex = nullptr;  // owned, recursive
  std::vector<::core::Connection> m_connections;

  // Guards m_state, m_characteristics, m_link, m_changeCount and m_queuedSource.
  mutable std::mutex m_valueMutex;
  unsigned int m_link = 0;               // the link whose slots are listened to; 0 without one
  unsigned int m_changeCount = 0;        // news from the service so far
  std::shared_ptr<void> m_queuedSource;  // GSource: of the update that is queued, if one is
  std::shared_ptr<QueuedUpdate> m_queuedUpdate;
  std::atomic<unsigned int> m_linkCount{0};
};

}  // namespace trelvo
