#include <trelvo/LockableBase.h>
#include <trelvo/Status.h>

namespace trelvo {

LockableBase::LockableBase() : m_mutex(core::IMutex::create({}, false, true)) {
  if (!m_mutex) {
    throw StatusOutOfMemory;
  }
}

LockableBase::~LockableBase() = default;

bool LockableBase::lock() {
  if (!m_mutex || !m_mutex->lock()) {
    return false;
  }
  addToLockCount(1);
  return true;
}

int LockableBase::tryLock(unsigned int timeoutMs) {
  const int result = m_mutex ? m_mutex->tryLock(timeoutMs) : 0;
  if (result == 1) {
    addToLockCount(1);
  }
  return result;
}

int LockableBase::unlock() {
  if (m_lockCount.load(std::memory_order_relaxed) < 1 || !m_mutex) {
    return 0;
  }
  addToLockCount(-1);
  return m_mutex->unlock();
}

// Only the holder of the mutex gets here, so that reading and writing may be two steps.
void LockableBase::addToLockCount(int step) noexcept {
  const int count = m_lockCount.load(std::memory_order_relaxed);
  m_lockCount.store(count + step, std::memory_order_relaxed);
}

}  // namespace trelvo
