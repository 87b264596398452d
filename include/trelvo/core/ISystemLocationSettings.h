#pragma once

#include <trelvo/Export.h>
#include <trelvo/Status.h>

namespace trelvo::core {

class ISystemLocationSettingsObserver;

/// What the user allows: whether location may be used, and by which way.
class TRELVO_EXPORT ISystemLocationSettings {
 public:
  virtual ~ISystemLocationSettings();

  ISystemLocationSettings(const ISystemLocationSettings&) = delete;
  ISystemLocationSettings& operator=(const ISystemLocationSettings&) = delete;

  /// Asks for changes to be told to `observer`, null for nobody.
  /// @return StatusOk, or StatusNotSupported where settings never change: the observer is not kept.
  virtual Status setObserver(ISystemLocationSettingsObserver* observer) = 0;

  /// Whether the user has agreed to the use of location.
  virtual bool isConsentAccepted() = 0;

  /// Whether positioning by radio networks is switched on.
  virtual bool isNetworkPositioningEnabled() = 0;

  /// Makes the platform's form, SystemLocationSettingsUbuntu. The caller deletes it.
  [[nodiscard]] static ISystemLocationSettings* create();

 protected:
  ISystemLocationSettings() = default;
};

}  // namespace trelvo::core
