#pragma once

#include <memory>
#include <string>
#include <vector>

#include "PrivateBus.h"

namespace trelvo::test {

/// A service made by python3-dbusmock. It ends with this object.
class MockService {
 public:
  /// `object` is one that is there from the beginning.
  MockService(PrivateBus& bus, const char* service, const char* object,
              const std::vector<std::string>& arguments);
  ~MockService();
  MockService(const MockService&) = delete;
  MockService& operator=(const MockService&) = delete;

  /// Stands still, and goes on.
  void freeze();
  void thaw();

  /// Adds an object; `properties` is a dictionary in GVariant's text form.
  void addObject(const std::string& path, const char* interface, const std::string& properties);
  /// Sets properties, one after the other.
  void update(const std::string& path, const char* interface, const std::string& properties);
  void addProperties(const std::string& path, const char* interface, const std::string& properties);

 protected:
  void call(const std::string& path, const char* method, GVariant* arguments);

 private:
  PrivateBus& m_bus;
  const char* m_service;
  const char* m_object;
  std::unique_ptr<ChildProcess> m_process;
};

/// NetworkManager with a WLAN connection, a GSM connection and an Ethernet connection; none is the
/// primary one.
class MockNetworkManager : public MockService {
 public:
  static constexpr const char* kName = "org.freedesktop.NetworkManager";
  static constexpr const char* kConnection = "org.freedesktop.NetworkManager.Connection.Active";
  static constexpr const char* kDevice = "org.freedesktop.NetworkManager.Device";
  static constexpr const char* kModemPath = "/org/freedesktop/ModemManager1/Modem/0";

  explicit MockNetworkManager(PrivateBus& bus);

  void setState(unsigned int state);
  /// "wlan0", "wwan0" or "eth0"; empty for none.
  void setPrimary(const std::string& name, const char* type);
  void goWlan() { setPrimary("wlan0", "802-11-wireless"); }
  void goCellular() { setPrimary("wwan0", "gsm"); }

  static std::string devicePath(const std::string& name);
  static std::string connectionPath(const std::string& name);
  void addConnection(const std::string& name, const std::string& type, unsigned int deviceType,
                     const std::string& udi);
};

/// ModemManager with one modem, that of MockNetworkManager's "wwan0", at home.
class MockModemManager : public MockService {
 public:
  static constexpr const char* kName = "org.freedesktop.ModemManager1";
  static constexpr const char* k3gpp = "org.freedesktop.ModemManager1.Modem.Modem3gpp";
  static constexpr const char* kCdma = "org.freedesktop.ModemManager1.Modem.ModemCdma";

  explicit MockModemManager(PrivateBus& bus);

  void set3gppRegistration(unsigned int state);
};

}  // namespace trelvo::test
