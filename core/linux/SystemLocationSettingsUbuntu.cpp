#include <trelvo/core/ISystemLocationSettingsObserver.h>
#include <trelvo/core/SystemLocationSettingsUbuntu.h>

namespace trelvo::core {

ISystemLocationSettings::~ISystemLocationSettings() = default;
ISystemLocationSettingsObserver::~ISystemLocationSettingsObserver() = default;

ISystemLocationSettings* ISystemLocationSettings::create() {
  return new SystemLocationSettingsUbuntu;
}

SystemLocationSettingsUbuntu::~SystemLocationSettingsUbuntu() = default;

Status SystemLocationSettingsUbuntu::setObserver(ISystemLocationSettingsObserver* /*observer*/) {
  return StatusNotSupported;
}

bool SystemLocationSettingsUbuntu::isConsentAccepted() { return true; }

bool SystemLocationSettingsUbuntu::isNetworkPositioningEnabled() { return true; }

}  // namespace trelvo::core
