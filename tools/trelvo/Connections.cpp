#include "tools/trelvo/Connections.h"

#include <cstring>

namespace trelvo::tool {
namespace {

class OneConnection : public network::IConnectionManager {
 public:
  Status getConnections(network::ConnectionInfoContainer& connections) override {
    ConnectionInfo info;
    info.connected = true;
    info.roaming = false;
    std::strcpy(info.name, "unknown");
    connections.add(info);
    return StatusOk;
  }
  Status startMonitorUsedConnection() override { return StatusOk; }
  void stopMonitorUsedConnection(network::ConnectionInfoContainer& connections) override {
    getConnections(connections);
  }
  void setObserver(network::IConnectionManagerObserver*) override {}  // nothing ever changes
  Status openConnection(const ConnectionInfo&) override { return StatusNotSupported; }
  Status closeConnection(const ConnectionInfo&) override { return StatusNotSupported; }
  Status getProxy(const std::string&, ProxyInfo&) override { return StatusNotSupported; }
};

}  // namespace

Connections openConnections() {
  std::unique_ptr<network::IConnectionManager> platform(network::IConnectionManager::open());
  if (platform) {
    return {std::move(platform), true};
  }
  return {std::make_unique<OneConnection>(), false};
}

}  // namespace trelvo::tool
