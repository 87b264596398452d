#include <trelvo/NetworkAdaptation.h>

#include <new>

#include <trelvo/NetworkAdaptationUbuntu.h>
#include <trelvo/Status.h>

namespace trelvo {

INetworkAdaptation* NetworkAdaptation::create() {
  try {
    return new (std::nothrow) NetworkAdaptationUbuntu;
  } catch (const Status&) {
    return nullptr;
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

}  // namespace trelvo
