#include <trelvo/NetworkAdaptationUbuntu.h>

#include <exception>
#include <utility>

#include <glib.h>

#include <trelvo/IConnectionInfoList.h>
#include <trelvo/IConnectionObserver.h>
#include <trelvo/core/IMutex.h>

namespace trelvo {

namespace connectivity = com::ubuntu::location::connectivity;
using connectivity::Characteristics;

namespace {

using ObserverLock = std::lock_guard<core::IMutex>;
using ValueLock = std::lock_guard<std::mutex>;

bool has(Characteristics set, Characteristics bit) { return (set & bit) != Characteristics::None; }

void setName(ConnectionInfo& info, const char* name) {
  g_strlcpy(info.name, name, sizeof info.name);
}

void fillDisconnected(ConnectionInfo& info) {
  info.type = info.bearer = ConnectionInfo::TypeNone;
  info.id = 0;
  info.connected = false;
  info.roaming = true;
  setName(info, "disconnected");
}

void fillWlan(ConnectionInfo& info) {
  info.type = info.bearer = ConnectionInfo::TypeWlan;
  info.id = 1;
  info.connected = true;
  info.roaming = false;
  setName(info, "wifi");
}

void fillCellular(ConnectionInfo& info, bool connected, bool roaming) {
  info.type = info.bearer = ConnectionInfo::TypeCellular;
  info.id = 2;
  info.connected = connected;
  info.roaming = roaming;
  setName(info, "cellular");
}

// The name is not compared: it follows from the type.
bool sameConnection(const ConnectionInfo& a, const ConnectionInfo& b) {
  return a.type == b.type && a.connected == b.connected && a.roaming == b.roaming &&
         a.bearer == b.bearer && a.id == b.id;
}

// GLib hands a source from one thread to another under locks that the thread sanitizer does not
// see; under this one it does.
std::mutex gHandOver;

}  // namespace

/// What a queued source holds in the adaptation's stead, since the adaptation may go while the
/// source waits, and even while it runs.
struct NetworkAdaptationUbuntu::QueuedUpdate {
  using Holder = std::shared_ptr<QueuedUpdate>;

  static std::shared_ptr<GSource> queue(const Holder& update) {
    std::shared_ptr<GSource> source(g_timeout_source_new(0), g_source_unref);
    Holder* holder = nullptr;
    {
      const std::lock_guard<std::mutex> lock(gHandOver);
      holder = new Holder(update);
    }
    g_source_set_callback(source.get(), run, holder, drop);
    g_source_attach(source.get(), nullptr);
    return source;
  }

  static gboolean run(gpointer data) {
    Holder update;
    {
      const std::lock_guard<std::mutex> lock(gHandOver);
      update = *static_cast<Holder*>(data);
    }
    const std::lock_guard<std::recursive_mutex> lock(update->running);
    return update->adaptation == nullptr ? G_SOURCE_REMOVE : runFor(*update->adaptation);
  }

  static gboolean runFor(NetworkAdaptationUbuntu& adaptation) {
    {
      const ValueLock lock(adaptation.m_valueMutex);
      adaptation.m_queuedSource.reset();
    }
    try {
      return connectionStateUpdated(&adaptation);
    } catch (...) {
      return G_SOURCE_REMOVE;  // nothing may pass through the main loop
    }
  }

  static void drop(gpointer data) { delete static_cast<Holder*>(data); }

  void forgetAdaptation() {
    const std::lock_guard<std::recursive_mutex> lock(running);
    adaptation = nullptr;
  }

  // Recursive: an observer may run the main context inside its call.
  std::recursive_mutex running;
  NetworkAdaptationUbuntu* adaptation = nullptr;
};

/// A hold on the platform: its manager, and the slots there. Letting go waits for a slot that is
/// being called, and for the manager's thread.
struct NetworkAdaptationUbuntu::Link {
  Link() = default;
  ~Link() {
    for (::core::Connection& connection : connections) connection.disconnect();
  }
  Link(const Link&) = delete;
  Link& operator=(const Link&) = delete;

  unsigned int number = 0;
  std::shared_ptr<Manager> manager;
  std::vector<::core::Connection> connections;
};

NetworkAdaptationUbuntu::NetworkAdaptationUbuntu()
    : m_queuedUpdate(std::make_shared<QueuedUpdate>()) {
  m_queuedUpdate->adaptation = this;
  m_mutex = core::IMutex::create("", false, true);
  if (m_mutex == nullptr) throw StatusOutOfMemory;
}

NetworkAdaptationUbuntu::~NetworkAdaptationUbuntu() {
  {
    Link link;
    swapLink(link);
  }
  std::shared_ptr<void> source;
  {
    const ValueLock lock(m_valueMutex);
    source = m_queuedSource;
  }
  if (source != nullptr) g_source_destroy(static_cast<GSource*>(source.get()));
  m_queuedUpdate->forgetAdaptation();
  delete m_mutex;
}

Status NetworkAdaptationUbuntu::getDataConnection(ConnectionInfo& info) {
  const ValueLock lock(m_valueMutex);
  const bool online = m_state == State::Global;
  if (online && has(m_characteristics, Characteristics::Wlan)) {
    fillWlan(info);
  } else if (online && has(m_characteristics, Characteristics::Cellular)) {
    fillCellular(info, true, has(m_characteristics, Characteristics::Roaming));
  } else {
    fillDisconnected(info);
  }
  return StatusOk;
}

Status NetworkAdaptationUbuntu::getConnections(IConnectionInfoList& list) {
  ConnectionInfo info;
  const Status status = getDataConnection(info);
  if (status == StatusOk) list.add(info);
  if (knowsIdleCellular()) {
    fillCellular(info, false, true);
    list.add(info);
  }
  return status;
}

bool NetworkAdaptationUbuntu::knowsIdleCellular() const {
  const ValueLock lock(m_valueMutex);
  return !has(m_characteristics, Characteristics::Cellular) &&
         has(m_characteristics, Characteristics::Roaming);
}

Status NetworkAdaptationUbuntu::getBytesTransferred(const ConnectionInfo&, unsigned long long&) {
  return StatusNotSupported;
}

Status NetworkAdaptationUbuntu::getProxy(const char*, ProxyInfo&) { return StatusNotSupported; }

Status NetworkAdaptationUbuntu::openConnection(const ConnectionInfo&) { return StatusOk; }

Status NetworkAdaptationUbuntu::closeConnection(const ConnectionInfo&) { return StatusOk; }

bool NetworkAdaptationUbuntu::isNetworkingEnabled() const { return true; }

Status NetworkAdaptationUbuntu::subscribe(IConnectionObserver& observer) {
  while (!join(observer)) {
    if (!connectToPlatform()) return StatusFailed;
  }
  connectionStateUpdated(this);
  return StatusOk;
}

/// Adds `observer`, where there is a link to the platform.
bool NetworkAdaptationUbuntu::join(IConnectionObserver& observer) {
  const ObserverLock lock(*m_mutex);
  if (m_manager == nullptr) return false;
  m_observers.insert(&observer);
  return true;
}

Status NetworkAdaptationUbuntu::unsubscribe(IConnectionObserver& observer) {
  Link link;  // goes behind the lock
  const ObserverLock lock(*m_mutex);
  m_observers.erase(&observer);
  if (m_observers.empty()) swapLink(link);
  return StatusOk;
}

// A signal calls its slots with its own lock held, and connecting and disconnecting want that lock:
// both are done without the observers' mutex, which a slot of the application's may be waiting for.
bool NetworkAdaptationUbuntu::connectToPlatform() {
  try {
    Link link;
    link.manager = connectivity::platform_default_manager();
    if (link.manager == nullptr) return false;
    connectSlots(link);
    keepLink(link);
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

void NetworkAdaptationUbuntu::connectSlots(Link& link) {
  const unsigned int number = link.number = ++m_linkCount;
  link.connections.reserve(2);
  link.connections.push_back(link.manager->state().changed().connect(
      [this, number](State state) { stateChanged(number, state); }));
  link.connections.push_back(link.manager->characteristics().changed().connect(
      [this, number](Characteristics characteristics) {
        characteristicsChanged(number, characteristics);
      }));
}

/// Makes `link` the one that counts. Where another thread was quicker it stays the caller's, and
/// goes with it.
void NetworkAdaptationUbuntu::keepLink(Link& link) {
  const ObserverLock lock(*m_mutex);
  if (m_manager != nullptr) return;
  swapLink(link);
  try {
    readPresentValues();
  } catch (...) {
    swapLink(link);
    throw;
  }
}

/// Exchanges the present link and `link`; the values begin anew. Slots of a link that is not the
/// present one are not listened to.
void NetworkAdaptationUbuntu::swapLink(Link& link) {
  m_manager.swap(link.manager);
  m_connections.swap(link.connections);
  const ValueLock lock(m_valueMutex);
  std::swap(m_link, link.number);
  ++m_changeCount;
  m_state = State::Unknown;
  m_characteristics = Characteristics::None;
}

// Asked without the mutex of the values, which the service's thread may want meanwhile. Where a
// slot has brought news since, what was read may be the older of the two, and is read again.
void NetworkAdaptationUbuntu::readPresentValues() {
  unsigned int seen = 0;
  State state{};
  Characteristics characteristics{};
  do {
    seen = changeCount();
    state = m_manager->state().get();
    characteristics = m_manager->characteristics().get();
  } while (!keepValuesUnlessNewer(seen, state, characteristics));
}

unsigned int NetworkAdaptationUbuntu::changeCount() const {
  const ValueLock lock(m_valueMutex);
  return m_changeCount;
}

bool NetworkAdaptationUbuntu::keepValuesUnlessNewer(unsigned int seen, State state,
                                                    Characteristics characteristics) {
  const ValueLock lock(m_valueMutex);
  if (seen != m_changeCount) return false;
  ++m_changeCount;
  m_state = state;
  m_characteristics = characteristics;
  return true;
}

void NetworkAdaptationUbuntu::stateChanged(unsigned int link, State state) {
  const ValueLock lock(m_valueMutex);
  if (link != m_link) return;
  ++m_changeCount;
  m_state = state;
}

// One queued update is enough for any number of changes: it looks at the values when it runs.
void NetworkAdaptationUbuntu::characteristicsChanged(unsigned int link,
                                                     Characteristics characteristics) {
  const ValueLock lock(m_valueMutex);
  if (link != m_link) return;
  ++m_changeCount;
  m_characteristics = characteristics;
  if (m_queuedSource == nullptr) m_queuedSource = QueuedUpdate::queue(m_queuedUpdate);
}

int NetworkAdaptationUbuntu::connectionStateUpdated(void* self) {
  auto& adaptation = *static_cast<NetworkAdaptationUbuntu*>(self);
  while (!adaptation.tellObservers()) {
  }
  return G_SOURCE_REMOVE;
}

// Gives false when the record has grown old before the observers' mutex was got: another thread may
// have told newer by then, and the last word has to be the newest.
bool NetworkAdaptationUbuntu::tellObservers() {
  const unsigned int seen = changeCount();
  ConnectionInfo now;
  getDataConnection(now);
  const ObserverLock lock(*m_mutex);
  if (seen != changeCount()) return false;
  if (m_hasLastConnection && sameConnection(now, m_lastConnection)) return true;
  tellAll(now);
  m_lastConnection = now;
  m_hasLastConnection = true;
  return true;
}

// In the order of the addresses. Each step looks for the next one: an observer may leave, or others
// come, during its call.
void NetworkAdaptationUbuntu::tellAll(const ConnectionInfo& now) {
  const ConnectionInfo last = m_lastConnection;
  for (auto next = m_observers.begin(); next != m_observers.end();) {
    IConnectionObserver* const observer = *next;
    tell(*observer, last, now);
    next = m_observers.upper_bound(observer);
  }
}

void NetworkAdaptationUbuntu::tell(IConnectionObserver& observer, const ConnectionInfo& last,
                                   const ConnectionInfo& now) const {
  if (m_hasLastConnection && now.connected == last.connected) {
    if (now.type != last.type) {
      observer.handleConnectionDisconnected(last);
      observer.handleConnectionEstablished(now);
    } else if (now.roaming != last.roaming) {
      observer.handleConnectionChanged(now);
    }
  } else if (now.connected) {
    observer.handleConnectionEstablished(now);
  } else {
    observer.handleConnectionDisconnected(last);
  }
}

}  // namespace trelvo
