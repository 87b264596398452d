// The destructors of the interfaces, so that each has its table in one place.

#include <trelvo/core/IAlarmTimer.h>
#include <trelvo/core/IAsyncCallReceiver.h>
#include <trelvo/core/ILockable.h>
#include <trelvo/core/IMutex.h>
#include <trelvo/core/IPollSink.h>
#include <trelvo/core/ISemaphore.h>
#include <trelvo/core/IThread.h>
#include <trelvo/core/IThreadObserver.h>
#include <trelvo/core/ITimeProvider.h>
#include <trelvo/core/ITimer.h>
#include <trelvo/core/ITimerObserver.h>

namespace trelvo::core {

IAlarmTimer::~IAlarmTimer() = default;
IAsyncCallReceiver::~IAsyncCallReceiver() = default;
ILockable::~ILockable() = default;
IMutex::~IMutex() = default;
IPollSink::~IPollSink() = default;
ISemaphore::~ISemaphore() = default;
IThread::~IThread() = default;
IThreadObserver::~IThreadObserver() = default;
ITimeProvider::~ITimeProvider() = default;
ITimer::~ITimer() = default;
ITimerObserver::~ITimerObserver() = default;

}  // namespace trelvo::core
