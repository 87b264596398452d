// Nothing else may stand here, and nothing here may be called from this file: an application may
// define this function itself, and all callers have to find that one.

#include <trelvo/network/Connectivity.h>

#include "network/ubuntu/NetworkManagerConnectivity.h"

namespace com::ubuntu::location::connectivity {

std::shared_ptr<Manager> platform_default_manager() {
  return std::make_shared<trelvo::network::NetworkManagerConnectivity>();
}

}  // namespace com::ubuntu::location::connectivity
