#pragma once

#include <trelvo/Export.h>

namespace trelvo {

class INetworkAdaptation;

/// Makes the adaptation of the platform that the library was built for.
class TRELVO_EXPORT NetworkAdaptation {
 public:
  NetworkAdaptation() = delete;

  /// A new NetworkAdaptationUbuntu, which the caller deletes; null when memory runs out. Reaching
  /// the platform begins with INetworkAdaptation::subscribe().
  [[nodiscard]] static INetworkAdaptation* create();
};

}  // namespace trelvo
