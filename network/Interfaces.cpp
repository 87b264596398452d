// The destructors of the interfaces, so that each has its table in one place, and their few bodies.

#include <trelvo/IAdaptationExtension.h>
#include <trelvo/IConnectionInfoList.h>
#include <trelvo/IConnectionObserver.h>
#include <trelvo/INetworkAdaptation.h>
#include <trelvo/IPositioningExtension.h>
#include <trelvo/network/ConnectionInfoContainer.h>
#include <trelvo/network/Connectivity.h>
#include <trelvo/network/IConnectionManager.h>
#include <trelvo/network/IConnectionManagerObserver.h>

namespace trelvo {

IPositioningExtension::~IPositioningExtension() = default;
IAdaptationExtension::~IAdaptationExtension() = default;
INetworkAdaptation::~INetworkAdaptation() = default;
IConnectionInfoList::~IConnectionInfoList() = default;
IConnectionObserver::~IConnectionObserver() = default;

namespace network {

IConnectionManager::~IConnectionManager() = default;
IConnectionManagerObserver::~IConnectionManagerObserver() = default;

Status IConnectionManager::setNetworkingEnabled(bool) { return StatusNotSupported; }
bool IConnectionManager::networkingEnabled() const { return true; }

ConnectionInfoContainer::~ConnectionInfoContainer() = default;
void ConnectionInfoContainer::add(const ConnectionInfo& info) { push_back(info); }

}  // namespace network
}  // namespace trelvo

com::ubuntu::location::connectivity::Manager::~Manager() = default;
