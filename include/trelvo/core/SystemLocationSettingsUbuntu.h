#pragma once

#include <trelvo/Export.h>
#include <trelvo/Status.h>
#include <trelvo/core/ISystemLocationSettings.h>

namespace trelvo::core {

/// Settings that are constants: who starts the process has asked the user beforehand.
///
/// Threads: any.
class TRELVO_EXPORT SystemLocationSettingsUbuntu : public ISystemLocationSettings {
 public:
  SystemLocationSettingsUbuntu() = default;
  ~SystemLocationSettingsUbuntu() override;

  /// Always StatusNotSupported.
  Status setObserver(ISystemLocationSettingsObserver* observer) override;
  bool isConsentAccepted() override;            ///< Always true.
  bool isNetworkPositioningEnabled() override;  ///< Always true.
};

}  // namespace trelvo::core
