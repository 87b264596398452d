// The destructors of the interfaces, so that each has its table in one place.

#include <trelvo/core/ILockable.h>
#include <trelvo/core/IMutex.h>
#include <trelvo/core/ISemaphore.h>

namespace trelvo::core {

ILockable::~ILockable() = default;
IMutex::~IMutex() = default;
ISemaphore::~ISemaphore() = default;

}  // namespace trelvo::core
