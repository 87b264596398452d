#include "network/ubuntu/PropertyReader.h"

#include <utility>

namespace trelvo::network {

namespace {

constexpr const char* kProperties = "org.freedesktop.DBus.Properties";

}  // namespace

PropertyReader::PropertyReader(GDBusConnection* bus, GCancellable* cancellable,
                               std::function<void()> changed)
    : m_bus(bus), m_cancellable(cancellable), m_changed(std::move(changed)) {}

void PropertyReader::watchService(const char* service) {
  m_services.emplace(service, subscribe("org.freedesktop.DBus", "org.freedesktop.DBus",
                                        "NameOwnerChanged", "/org/freedesktop/DBus", service));
}

void PropertyReader::begin() {
  m_timedOut = false;
  for (auto& [key, watch] : m_watches) watch.used = false;
}

void PropertyReader::end() {
  for (auto each = m_watches.begin(); each != m_watches.end();) {
    each = each->second.used ? std::next(each) : m_watches.erase(each);
  }
}

GioPointer<GVariant> PropertyReader::read(const PropertyAddress& address) {
  // The bus keeps the order of what one connection sends, so no change falls between the two.
  watch(address);
  GioError error;
  const GioPointer<GVariant> reply(g_dbus_connection_call_sync(
      m_bus, address.service, address.path.c_str(), kProperties, "GetAll",
      g_variant_new("(s)", address.interface), G_VARIANT_TYPE("(a{sv})"),
      G_DBUS_CALL_FLAGS_NO_AUTO_START, kTimeoutMs, m_cancellable, error.out()));
  if (reply == nullptr) {
    m_timedOut = m_timedOut || error.is(G_IO_ERROR_TIMED_OUT);
    return nullptr;
  }
  return GioPointer<GVariant>(g_variant_get_child_value(reply.get(), 0));
}

void PropertyReader::watch(const PropertyAddress& address) {
  const Key key(address.service, address.path, address.interface);
  const auto found = m_watches.find(key);
  if (found != m_watches.end()) {
    found->second.used = true;
    return;
  }
  m_watches.emplace(key, Watch{subscribe(address.service, kProperties, "PropertiesChanged",
                                         address.path.c_str(), address.interface),
                               true});
}

SignalSubscription PropertyReader::subscribe(const char* sender, const char* interface,
                                             const char* member, const char* path,
                                             const char* firstArgument) {
  return {m_bus,
          g_dbus_connection_signal_subscribe(m_bus, sender, interface, member, path, firstArgument,
                                             G_DBUS_SIGNAL_FLAGS_NONE, signalled, this, nullptr)};
}

void PropertyReader::signalled(GDBusConnection*, const char*, const char*, const char*, const char*,
                               GVariant*, void* self) {
  static_cast<PropertyReader*>(self)->m_changed();
}

}  // namespace trelvo::network
