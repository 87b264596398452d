#pragma once

#include <trelvo/Export.h>

namespace trelvo {

/// The base of what is offered beyond an interface and found by asking for it.
class TRELVO_EXPORT IPositioningExtension {
 public:
  virtual ~IPositioningExtension();

 protected:
  IPositioningExtension() = default;
  IPositioningExtension(const IPositioningExtension&) = default;
  IPositioningExtension& operator=(const IPositioningExtension&) = default;
};

}  // namespace trelvo
