#include "MockServices.h"

#include <csignal>

namespace trelvo::test {

namespace {

constexpr const char* kMock = "org.freedesktop.DBus.Mock";
constexpr const char* kRoot = "/org/freedesktop/NetworkManager";

network::GioPointer<GVariant> parsed(const char* type, const std::string& text) {
  return network::GioPointer<GVariant>(
      g_variant_parse(G_VARIANT_TYPE(type), text.c_str(), nullptr, nullptr, nullptr));
}

std::vector<std::string> mockCommand(std::vector<std::string> arguments) {
  std::vector<std::string> command{TRELVO_MOCK_PYTHON, "-m", "dbusmock", "--system"};
  command.insert(command.end(), arguments.begin(), arguments.end());
  return command;
}

}  // namespace

MockService::MockService(PrivateBus& bus, const char* service, const char* object,
                         const std::vector<std::string>& arguments)
    : m_bus(bus),
      m_service(service),
      m_object(object),
      m_process(std::make_unique<ChildProcess>(mockCommand(arguments))) {
  m_bus.waitForService(m_service, true);
}

MockService::~MockService() {
  m_process.reset();
  m_bus.waitForService(m_service, false);
}

void MockService::freeze() { m_process->signal(SIGSTOP); }
void MockService::thaw() { m_process->signal(SIGCONT); }

void MockService::call(const std::string& path, const char* method, GVariant* arguments) {
  m_bus.call(m_service, path, kMock, method, arguments);
}

void MockService::addObject(const std::string& path, const char* interface,
                            const std::string& properties) {
  call(m_object, "AddObject",
       g_variant_new("(ss@a{sv}@a(ssss))", path.c_str(), interface,
                     parsed("a{sv}", properties).get(), parsed("a(ssss)", "[]").get()));
}

void MockService::update(const std::string& path, const char* interface,
                         const std::string& properties) {
  const auto all = parsed("a{sv}", properties);
  GVariantIter each;
  const char* name = nullptr;
  GVariant* value = nullptr;
  g_variant_iter_init(&each, all.get());
  while (g_variant_iter_loop(&each, "{&sv}", &name, &value) != FALSE) {
    m_bus.call(m_service, path, "org.freedesktop.DBus.Properties", "Set",
               g_variant_new("(ssv)", interface, name, value));
  }
}

void MockService::addProperties(const std::string& path, const char* interface,
                                const std::string& properties) {
  call(path, "AddProperties",
       g_variant_new("(s@a{sv})", interface, parsed("a{sv}", properties).get()));
}

MockNetworkManager::MockNetworkManager(PrivateBus& bus)
    : MockService(bus, kName, kRoot, {"--template", "networkmanager"}) {
  addProperties(kRoot, kName,
                "{'PrimaryConnection': <objectpath '/'>, 'PrimaryConnectionType': <''>}");
  addConnection("wlan0", "802-11-wireless", 2, "");
  addConnection("wwan0", "gsm", 8, kModemPath);
  addConnection("eth0", "802-3-ethernet", 1, "");
}

void MockNetworkManager::setState(unsigned int state) {
  call(kRoot, "SetGlobalConnectionState", g_variant_new("(u)", state));
}

void MockNetworkManager::setPrimary(const std::string& name, const char* type) {
  const std::string path = name.empty() ? "/" : connectionPath(name);
  update(kRoot, kName,
         "{'PrimaryConnection': <objectpath '" + path + "'>, 'PrimaryConnectionType': <'" + type +
             "'>}");
}

std::string MockNetworkManager::devicePath(const std::string& name) {
  return kRoot + ("/Devices/" + name);
}

std::string MockNetworkManager::connectionPath(const std::string& name) {
  return kRoot + ("/ActiveConnection/" + name);
}

void MockNetworkManager::addConnection(const std::string& name, const std::string& type,
                                       unsigned int deviceType, const std::string& udi) {
  addObject(devicePath(name), kDevice,
            "{'DeviceType': <uint32 " + std::to_string(deviceType) + ">, 'Udi': <'" + udi + "'>}");
  addObject(connectionPath(name), kConnection,
            "{'Type': <'" + type + "'>, 'Devices': <[objectpath '" + devicePath(name) + "']>}");
}

MockModemManager::MockModemManager(PrivateBus& bus)
    : MockService(bus, kName, "/", {kName, "/", "org.freedesktop.DBus.ObjectManager"}) {
  addObject(MockNetworkManager::kModemPath, k3gpp, "{'RegistrationState': <uint32 1>}");
}

void MockModemManager::set3gppRegistration(unsigned int state) {
  update(MockNetworkManager::kModemPath, k3gpp,
         "{'RegistrationState': <uint32 " + std::to_string(state) + ">}");
}

}  // namespace trelvo::test
