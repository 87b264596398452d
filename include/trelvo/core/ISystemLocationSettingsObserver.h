#pragma once

#include <trelvo/Export.h>

namespace trelvo::core {

/// Someone who wants to hear of changed location settings. There is nothing to hear yet: no
/// settings of this library change, and an observer has no operation that it would call.
class TRELVO_EXPORT ISystemLocationSettingsObserver {
 public:
  virtual ~ISystemLocationSettingsObserver();

 protected:
  ISystemLocationSettingsObserver() = default;
  ISystemLocationSettingsObserver(const ISystemLocationSettingsObserver&) = default;
  ISystemLocationSettingsObserver& operator=(const ISystemLocationSettingsObserver&) = default;
};

}  // namespace trelvo::core
