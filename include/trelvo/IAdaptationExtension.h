#pragma once

#include <trelvo/Export.h>
#include <trelvo/IPositioningExtension.h>

namespace trelvo {

/// The base of everything that adapts the library to a platform.
class TRELVO_EXPORT IAdaptationExtension : public IPositioningExtension {
 public:
  ~IAdaptationExtension() override;

 protected:
  IAdaptationExtension() = default;
  IAdaptationExtension(const IAdaptationExtension&) = default;
  IAdaptationExtension& operator=(const IAdaptationExtension&) = default;
};

}  // namespace trelvo
