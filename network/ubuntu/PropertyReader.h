#pragma once

#include <functional>
#include <map>
#include <string>
#include <tuple>

#include "network/ubuntu/GioHandles.h"

namespace trelvo::network {

/// Which properties of the bus to read: those of one interface of one object of one service.
struct PropertyAddress {
  const char* service;
  std::string path;
  const char* interface;
};

/// Ends the delivery of a signal when it goes.
class SignalSubscription {
 public:
  SignalSubscription(GDBusConnection* bus, guint id) : m_bus(bus), m_id(id) {}
  ~SignalSubscription() {
    if (m_id != 0) g_dbus_connection_signal_unsubscribe(m_bus, m_id);
  }
  SignalSubscription(SignalSubscription&& other) noexcept : m_bus(other.m_bus), m_id(other.m_id) {
    other.m_id = 0;
  }
  SignalSubscription& operator=(SignalSubscription&&) = delete;
  SignalSubscription(const SignalSubscription&) = delete;
  SignalSubscription& operator=(const SignalSubscription&) = delete;

 private:
  GDBusConnection* m_bus;
  guint m_id;
};

/// Reads properties from the bus, and calls back when one of what it read last has changed since.
///
///     reader.begin();                 // a new round
///     auto root = reader.read(...);   // as often as it takes
///     reader.end();                   // forgets what this round has not read again
///
/// Threads: one, whose default context delivers the calls back.
class PropertyReader {
 public:
  /// `bus` and `cancellable` are not owned. `changed` is called inside the thread's main context.
  PropertyReader(GDBusConnection* bus, GCancellable* cancellable, std::function<void()> changed);

  /// Calls back when `service` gets an owner on the bus or loses it.
  void watchService(const char* service);

  void begin();
  void end();

  /// All properties at `address`, a dictionary of names and values; null when they cannot be had.
  /// Starts no service, and waits for at most kTimeoutMs.
  GioPointer<GVariant> read(const PropertyAddress& address);

  /// Whether a read() since begin() was not answered in time.
  bool timedOut() const { return m_timedOut; }

  static constexpr int kTimeoutMs = 1000;

 private:
  using Key = std::tuple<std::string, std::string, std::string>;
  struct Watch {
    SignalSubscription subscription;
    bool used;
  };

  void watch(const PropertyAddress& address);
  SignalSubscription subscribe(const char* sender, const char* interface, const char* member,
                               const char* path, const char* firstArgument);
  static void signalled(GDBusConnection* bus, const char* sender, const char* path,
                        const char* interface, const char* signal, GVariant* parameters,
                        void* self);

  GDBusConnection* m_bus;
  GCancellable* m_cancellable;
  std::function<void()> m_changed;
  std::map<std::string, SignalSubscription> m_services;
  std::map<Key, Watch> m_watches;
  bool m_timedOut = false;
};

}  // namespace trelvo::network
