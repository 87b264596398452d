#pragma once

#include <trelvo/Lock.h>
#include <trelvo/core/ITime.h>
#include <trelvo/core/ITimeProvider.h>
#include <trelvo/core/ITimer.h>

namespace trelvo::core {

/// Tells the time provider of a timer that was armed. Throws what ITime::getTimeProvider() throws.
inline void registerTimer(ITimer* timer) {
  Lock<ITimeProvider*> lock;
  ITime::getTimeProvider(lock);
  lock.m_lockable->m_value->registerTimer(timer);
}

/// The same for one that is armed no more.
inline void unregisterTimer(ITimer* timer) {
  Lock<ITimeProvider*> lock;
  ITime::getTimeProvider(lock);
  lock.m_lockable->m_value->unregisterTimer(timer);
}

}  // namespace trelvo::core
