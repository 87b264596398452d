#include "network/ubuntu/NetworkManagerConnectivity.h"

#include <stdexcept>

namespace trelvo::network {

namespace {

constexpr guint kRetryMs = 1000;

/// What a slot throws is dropped: it may not pass through the loop, nor keep the others from the
/// news.
template <class T>
void setQuietly(SharedProperty<T>& property, T value) {
  try {
    property.set(value);
  } catch (...) {  // NOLINT(bugprone-empty-catch)
  }
}

}  // namespace

NetworkManagerConnectivity::NetworkManagerConnectivity()
    : m_context(g_main_context_new()),
      m_cancellable(g_cancellable_new()),
      m_thread([this] { run(); }) {
  try {
    waitForFirstValues();
  } catch (...) {
    stop();
    throw;
  }
}

NetworkManagerConnectivity::~NetworkManagerConnectivity() { stop(); }

void NetworkManagerConnectivity::waitForFirstValues() {
  if (m_settled.wait_for(kPatience) == std::future_status::ready) {
    const std::string failure = m_settled.get();
    if (!failure.empty()) throw std::runtime_error(failure);
  } else if (!m_connected) {
    throw std::runtime_error("The system bus does not answer");
  }
}

void NetworkManagerConnectivity::stop() {
  m_stopped = true;
  g_cancellable_cancel(m_cancellable.get());
  g_main_context_wakeup(m_context.get());
  m_thread.join();
}

void NetworkManagerConnectivity::run() {
  const ThreadDefaultContext scope(m_context.get());
  if (!connect()) return;
  while (!m_stopped) {
    serve();
    m_bus.reset();
    if (!m_stopped) publish(NetworkManagerState());
    while (!m_stopped && !connect()) pause();
  }
  m_bus.reset();
}

// A connection of its own: the process's shared one would be another's to close, and ends the
// process when the bus goes.
bool NetworkManagerConnectivity::connect() {
  GioError error;
  const GioPointer<char> address(
      g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SYSTEM, m_cancellable.get(), error.out()));
  if (address != nullptr) {
    const auto flags =
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    m_bus.reset(g_dbus_connection_new_for_address_sync(address.get(), flags, nullptr,
                                                       m_cancellable.get(), error.out()));
  }
  if (m_bus == nullptr) {
    settle(std::string("No system bus: ") + error.message());
    return false;
  }
  m_connected = true;
  return true;
}

void NetworkManagerConnectivity::serve() {
  PropertyReader reader(m_bus.get(), m_cancellable.get(), [this] { m_stale = true; });
  reader.watchService(NetworkManagerState::kNetworkManager);
  reader.watchService(NetworkManagerState::kModemManager);
  m_stale = true;
  // The end of the bus wakes the context too.
  while (!m_stopped && g_dbus_connection_is_closed(m_bus.get()) == FALSE) {
    if (m_stale) {
      refresh(reader);
    } else {
      g_main_context_iteration(m_context.get(), TRUE);
    }
  }
}

void NetworkManagerConnectivity::refresh(PropertyReader& reader) {
  m_stale = false;
  const NetworkManagerState now = NetworkManagerState::read(reader);
  if (m_stopped) return;
  if (now.complete) publish(now);
  if (reader.timedOut()) askAgainLater();
  settle({});
}

// The state first, so that it stands when the slots of the characteristics look at it.
void NetworkManagerConnectivity::publish(const NetworkManagerState& now) {
  setQuietly(m_state, now.state);
  setQuietly(m_characteristics, now.characteristics);
}

void NetworkManagerConnectivity::settle(const std::string& failure) {
  if (m_isSettled) return;
  m_isSettled = true;
  m_settling.set_value(failure);
}

void NetworkManagerConnectivity::pause() {
  m_stale = false;
  askAgainLater();
  while (!m_stopped && !m_stale) g_main_context_iteration(m_context.get(), TRUE);
}

void NetworkManagerConnectivity::askAgainLater() {
  const GioPointer<GSource> timer(g_timeout_source_new(kRetryMs));
  const auto elapsed = [](gpointer self) -> gboolean {
    static_cast<NetworkManagerConnectivity*>(self)->m_stale = true;
    return G_SOURCE_REMOVE;
  };
  g_source_set_callback(timer.get(), elapsed, this, nullptr);
  g_source_attach(timer.get(), m_context.get());
}

}  // namespace trelvo::network
