#pragma once

#include <trelvo/LockableBase.h>
#include <trelvo/core/IMutex.h>

namespace trelvo::test {

/// A mutex that locks nothing, gives the answers it is told to and counts what it is asked.
struct PretendedMutex : core::IMutex {
  bool lock() override {
    ++locks;
    return lockResult;
  }
  int tryLock(unsigned int timeoutMs) override {
    lastTimeoutMs = timeoutMs;
    return tryLockResult;
  }
  int unlock() override {
    ++unlocks;
    return unlockResult;
  }

  bool lockResult = true;
  int tryLockResult = 1;
  int unlockResult = 0;
  int locks = 0;
  int unlocks = 0;
  unsigned int lastTimeoutMs = 0;
};

/// Opens what a lockable keeps for its subclasses.
struct Inside : LockableBase {
  static gom::SharedPointer<core::IMutex>& mutexOf(LockableBase& lockable) {
    return lockable.*(&Inside::m_mutex);
  }
  static int lockCountOf(const LockableBase& lockable) { return lockable.*(&Inside::m_lockCount); }
};

/// While it lives, `lockable` has another mutex, or none.
class OtherMutex {
 public:
  OtherMutex(LockableBase& lockable, const gom::SharedPointer<core::IMutex>& mutex)
      : m_lockable(lockable), m_own(Inside::mutexOf(lockable)) {
    Inside::mutexOf(m_lockable) = mutex;
  }
  ~OtherMutex() { Inside::mutexOf(m_lockable) = m_own; }
  OtherMutex(const OtherMutex&) = delete;
  OtherMutex& operator=(const OtherMutex&) = delete;

 private:
  LockableBase& m_lockable;
  gom::SharedPointer<core::IMutex> m_own;
};

}  // namespace trelvo::test
