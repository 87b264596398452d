// Prints the device's connections as the library sees them, and whether a transfer may start.
//
//   IConnectionManager          the one view of the connections, for as long as somebody holds it
//   ConnectionInfoContainer     a list of them
//   ConnectionInfo              one: its kind, whether data can pass, whether it roams

#include <cstdio>
#include <memory>

#include <trelvo/trelvo.h>

namespace network = trelvo::network;

using trelvo::ConnectionInfo;

namespace {

// Large files go over WLAN only, small ones over a cellular connection too, but not abroad.
bool mayTransfer(const ConnectionInfo& info, unsigned int allowedTypes) {
  const bool abroad = info.type == ConnectionInfo::TypeCellular && info.roaming;
  return (info.type & allowedTypes) != 0 && !abroad;
}

const char* answer(bool yes) { return yes ? "yes" : "no"; }

void print(const ConnectionInfo& info) {
  constexpr unsigned int kAny = ConnectionInfo::TypeWlan | ConnectionInfo::TypeCellular;
  std::printf("%s: connected %s, roaming %s; large files %s, small files %s\n", info.name,
              answer(info.connected), answer(info.roaming),
              answer(mayTransfer(info, ConnectionInfo::TypeWlan)), answer(mayTransfer(info, kAny)));
}

}  // namespace

int main() {
  const std::unique_ptr<network::IConnectionManager> manager(network::IConnectionManager::open());
  if (manager == nullptr) {
    std::puts("No connections: there is no system bus to ask.");
    return 0;
  }
  network::ConnectionInfoContainer connections;
  if (manager->getConnections(connections) != trelvo::StatusOk) return 1;
  for (const ConnectionInfo& info : connections) print(info);
  return 0;
}
