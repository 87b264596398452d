#pragma once

#include <cstring>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include <trelvo/IConnectionInfoList.h>
#include <trelvo/IConnectionObserver.h>
#include <trelvo/INetworkAdaptation.h>
#include <trelvo/network/IConnectionManagerObserver.h>

namespace trelvo::test {

inline ConnectionInfo connection(unsigned int type, unsigned long long id, const char* name,
                                 bool roaming = false) {
  ConnectionInfo info;
  info.type = info.bearer = type;
  info.id = id;
  info.connected = true;
  info.roaming = roaming;
  std::strncpy(info.name, name, sizeof info.name - 1);
  return info;
}

inline ConnectionInfo wlan() { return connection(1, 1, "wifi"); }
inline ConnectionInfo cellular(bool roaming = false) {
  return connection(2, 2, "cellular", roaming);
}

/// The ids of a list, in order.
template <class List>
std::vector<unsigned long long> idsOf(const List& connections) {
  std::vector<unsigned long long> ids;
  for (const ConnectionInfo& info : connections) ids.push_back(info.id);
  return ids;
}

/// An adaptation that answers as the test says and writes down what it is asked.
class ScriptedAdaptation : public INetworkAdaptation {
 public:
  // What to answer. Functions run without the lock, so they may report to the observers.
  Status subscribeAnswer = StatusOk;
  Status dataConnectionAnswer = StatusOk;
  Status connectionsAnswer = StatusOk;
  ConnectionInfo dataConnection;
  std::vector<ConnectionInfo> connections;
  std::map<unsigned long long, unsigned long long> bytes;  // by id; none: left alone
  std::function<void()> whenAskedForDataConnection = [] {};

  /// Every call so far, by name.
  std::vector<std::string> calls() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_calls;
  }
  std::size_t count(const std::string& name) const {
    std::size_t found = 0;
    for (const std::string& call : calls()) found += call == name ? 1 : 0;
    return found;
  }
  void forgetCalls() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_calls.clear();
  }

  /// Reports to the observers as a platform would, each on its list.
  void establish(const ConnectionInfo& info) {
    report([&](IConnectionObserver& o) { o.handleConnectionEstablished(info); });
  }
  void disconnect(const ConnectionInfo& info) {
    report([&](IConnectionObserver& o) { o.handleConnectionDisconnected(info); });
  }
  void change(const ConnectionInfo& info) {
    report([&](IConnectionObserver& o) { o.handleConnectionChanged(info); });
  }
  /// The number of subscriptions that stand.
  std::size_t observers() const {
    const std::lock_guard<std::recursive_mutex> lock(m_reporting);
    return m_observers.size();
  }

  Status getDataConnection(ConnectionInfo& info) override {
    note("getDataConnection");
    whenAskedForDataConnection();
    info = dataConnection;
    return dataConnectionAnswer;
  }
  Status getConnections(IConnectionInfoList& list) override {
    note("getConnections");
    for (const ConnectionInfo& info : connections) list.add(info);
    return connectionsAnswer;
  }
  Status getBytesTransferred(const ConnectionInfo& info, unsigned long long& count) override {
    note("getBytesTransferred");
    const auto found = bytes.find(info.id);
    if (found == bytes.end()) return StatusNotSupported;
    count = found->second;
    return StatusOk;
  }
  Status getProxy(const char* uri, ProxyInfo& proxy) override {
    note(std::string("getProxy ") + uri);
    std::strcpy(proxy.host, "proxy.example");
    return StatusOk;
  }
  Status openConnection(const ConnectionInfo& info) override {
    note(std::string("openConnection ") + info.name);
    return StatusNoConnection;
  }
  Status closeConnection(const ConnectionInfo& info) override {
    note(std::string("closeConnection ") + info.name);
    return StatusWrongState;
  }
  Status subscribe(IConnectionObserver& observer) override {
    note("subscribe");
    if (subscribeAnswer != StatusOk) return subscribeAnswer;
    const std::lock_guard<std::recursive_mutex> lock(m_reporting);
    m_observers.push_back(&observer);
    return StatusOk;
  }
  Status unsubscribe(IConnectionObserver& observer) override {
    note("unsubscribe");
    const std::lock_guard<std::recursive_mutex> lock(m_reporting);
    for (auto each = m_observers.begin(); each != m_observers.end();) {
      each = *each == &observer ? m_observers.erase(each) : each + 1;
    }
    return StatusOk;
  }

 private:
  void note(const std::string& call) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_calls.push_back(call);
  }
  template <class Report>
  void report(const Report& each) {
    const std::lock_guard<std::recursive_mutex> lock(m_reporting);
    for (IConnectionObserver* observer : m_observers) each(*observer);
  }

  mutable std::mutex m_mutex;
  mutable std::recursive_mutex m_reporting;
  std::vector<std::string> m_calls;
  std::vector<IConnectionObserver*> m_observers;
};

/// Counts its calls, and does in them what the test wants.
class CountingObserver : public network::IConnectionManagerObserver {
 public:
  std::function<void()> whenListChanged = [] {};

  void handleConnectionListChanged() override {
    ++listChanges;
    const auto call = whenListChanged;  // a copy: it may set another
    call();
  }
  void handleNetworkingEnabledChanged(bool enabled) override { flags.push_back(enabled); }

  int listChanges = 0;
  std::vector<bool> flags;
};

}  // namespace trelvo::test
