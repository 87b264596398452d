// The destructors of the interfaces, so that each has its table in one place.

#include <trelvo/core/ILockable.h>
#include <trelvo/core/IMutex.h>
#include <trelvo/core/ISemaphore.h>
#include <trelvo/core/IThread.h>
#include <trelvo/core/IThreadObserver.h>
#include <trelvo/core/ITimeProvider.h>

namespace trelvo::core {

ILockable::~ILockable() = default;
IMutex::~IMutex() = default;
ISemaphore::~ISemaphore() = default;
IThread::~IThread() = default;
IThreadObserver::~IThreadObserver() = default;
ITimeProvider::~ITimeProvider() = default;

}  // namespace trelvo::core
