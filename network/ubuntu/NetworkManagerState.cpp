#include "network/ubuntu/NetworkManagerState.h"

#include <algorithm>
#include <initializer_list>
#include <string>
#include <vector>

namespace trelvo::network {

namespace {

using Characteristics = NetworkManagerState::Characteristics;

/// NetworkManager's numbers for kinds of devices.
enum DeviceType : guint32 { DeviceWifi = 2, DeviceModem = 8 };

/// ModemManager's numbers for a registration in a foreign network: with GSM and its successors
/// roaming, roaming for messages only, roaming without circuit-switched fallback; with CDMA
/// roaming.
constexpr std::initializer_list<guint32> k3gppRoaming = {5, 7, 10};
constexpr std::initializer_list<guint32> kCdmaRoaming = {3};

Characteristics operator|(Characteristics a, Characteristics b) {
  return static_cast<Characteristics>(static_cast<unsigned int>(a) | static_cast<unsigned int>(b));
}

guint32 numberOf(GVariant* properties, const char* name) {
  guint32 number = 0;
  if (properties != nullptr) g_variant_lookup(properties, name, "u", &number);
  return number;
}

/// The text or object path `name`, empty when there is none.
std::string textOf(GVariant* properties, const char* name, const char* format) {
  const char* text = nullptr;
  if (properties == nullptr || g_variant_lookup(properties, name, format, &text) == FALSE)
    return {};
  return text;
}

std::vector<std::string> pathsOf(GVariant* properties, const char* name) {
  std::vector<std::string> paths;
  GVariantIter* all = nullptr;
  if (properties == nullptr || g_variant_lookup(properties, name, "ao", &all) == FALSE)
    return paths;
  const GioPointer<GVariantIter> owned(all);
  const char* path = nullptr;
  while (g_variant_iter_next(all, "&o", &path) != FALSE) paths.emplace_back(path);
  return paths;
}

bool isOneOf(guint32 number, std::initializer_list<guint32> numbers) {
  return std::find(numbers.begin(), numbers.end(), number) != numbers.end();
}

/// The kind of the primary connection, and what it takes to ask whether its modem roams.
class PrimaryConnection {
 public:
  explicit PrimaryConnection(PropertyReader& reader) : m_reader(reader) {}

  void readKind(GVariant* manager) {
    addType(textOf(manager, "PrimaryConnectionType", "&s"));
    const std::string path = textOf(manager, "PrimaryConnection", "&o");
    if (path.size() > 1) addConnection(path);  // "/" stands for none
  }

  Characteristics readCharacteristics() {
    return (m_wlan ? Characteristics::Wlan : Characteristics::None) |
           (m_cellular ? Characteristics::Cellular : Characteristics::None) |
           (m_cellular && roams() ? Characteristics::Roaming : Characteristics::None);
  }

 private:
  void addType(const std::string& type) {
    m_wlan = m_wlan || type == "802-11-wireless";
    m_cellular = m_cellular || type == "gsm" || type == "cdma";
  }

  void addConnection(const std::string& path) {
    const auto connection = m_reader.read({NetworkManagerState::kNetworkManager, path,
                                           "org.freedesktop.NetworkManager.Connection.Active"});
    addType(textOf(connection.get(), "Type", "&s"));
    for (const std::string& device : pathsOf(connection.get(), "Devices")) addDevice(device);
  }

  void addDevice(const std::string& path) {
    const auto device = m_reader.read(
        {NetworkManagerState::kNetworkManager, path, "org.freedesktop.NetworkManager.Device"});
    const guint32 type = numberOf(device.get(), "DeviceType");
    m_wlan = m_wlan || type == DeviceWifi;
    m_cellular = m_cellular || type == DeviceModem;
    // For a modem this is its object's path at ModemManager.
    if (type == DeviceModem) m_modem = textOf(device.get(), "Udi", "&s");
  }

  bool roams() {
    if (g_variant_is_object_path(m_modem.c_str()) == FALSE) return false;
    const auto gsm = readModem("org.freedesktop.ModemManager1.Modem.Modem3gpp");
    if (isOneOf(numberOf(gsm.get(), "RegistrationState"), k3gppRoaming)) return true;
    const auto cdma = readModem("org.freedesktop.ModemManager1.Modem.ModemCdma");
    return isOneOf(numberOf(cdma.get(), "Cdma1xRegistrationState"), kCdmaRoaming) ||
           isOneOf(numberOf(cdma.get(), "EvdoRegistrationState"), kCdmaRoaming);
  }

  GioPointer<GVariant> readModem(const char* interface) {
    return m_reader.read({NetworkManagerState::kModemManager, m_modem, interface});
  }

  PropertyReader& m_reader;
  std::string m_modem;
  bool m_wlan = false;
  bool m_cellular = false;
};

}  // namespace

NetworkManagerState NetworkManagerState::read(PropertyReader& reader) {
  reader.begin();
  NetworkManagerState now;
  PrimaryConnection primary(reader);
  const auto manager =
      reader.read({kNetworkManager, "/org/freedesktop/NetworkManager", kNetworkManager});
  primary.readKind(manager.get());
  now.complete = !reader.timedOut();
  now.state = static_cast<State>(numberOf(manager.get(), "State"));
  now.characteristics = primary.readCharacteristics();
  reader.end();
  return now;
}

}  // namespace trelvo::network
