#include <trelvo/core/ISemaphore.h>

#include <trelvo/core/LinSemaphore.h>

#include "objects/MakeObject.h"

namespace trelvo::core {

gom::SharedPointer<ISemaphore> ISemaphore::create(unsigned int initial, unsigned int max) {
  const auto semaphore = gom::makeObject<LinSemaphore>();
  return semaphore && semaphore->create(initial, max) ? semaphore
                                                      : gom::SharedPointer<ISemaphore>();
}

}  // namespace trelvo::core
