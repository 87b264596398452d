#pragma once

#include <trelvo/Export.h>
#include <trelvo/Lockable.h>

namespace trelvo {

/// A scope guard: unlocks, when it goes, the Lockable that was locked for it.
///
/// It does not lock by itself. The function that it is handed to (such as
/// core::ITime::getTimeProvider()) locks and fills it in; hand it to one such function once.
///
///     Lock<core::ITimeProvider*> lock;
///     core::ITime::getTimeProvider(lock);
///     lock.m_lockable->m_value->calibrateGpsTime(gpsMs);
template <class T>
class TRELVO_EXPORT Lock {
 public:
  Lock() noexcept = default;
  ~Lock() {
    if (m_lockable != nullptr) {
      m_lockable->unlock();
    }
  }
  Lock(const Lock&) = delete;
  Lock& operator=(const Lock&) = delete;

  /// What is locked, not owned; null until a function fills it in.
  Lockable<T>* m_lockable = nullptr;
};

}  // namespace trelvo
