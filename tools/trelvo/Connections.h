#pragma once

#include <trelvo/network/IConnectionManager.h>

#include <memory>

namespace trelvo::tool {

/// Whom transfers ask about the device's connections.
struct Connections {
  std::unique_ptr<network::IConnectionManager> manager;
  bool kindKnown = false;  ///< false when `manager` is the program's own, which knows none
};

/// The platform's manager. Where its service cannot be asked, as in a container without a system
/// bus, a manager of the program's own: it has one connection, of which it knows only that it is
/// there, and no proxy.
Connections openConnections();

}  // namespace trelvo::tool
