#pragma once

#include <atomic>

#include <trelvo/Export.h>
#include <trelvo/core/ILockable.h>
#include <trelvo/core/IMutex.h>
#include <trelvo/gom/SharedPointer.h>

namespace trelvo {

/// A mutex of its own and a count of the locks outstanding: what every Lockable is made of.
///
/// Recursive: the thread that holds the lock may lock again, and unlocks as many times. An unlock()
/// too many does nothing while nobody holds the lock.
class TRELVO_EXPORT LockableBase : public core::ILockable {
 public:
  /// Throws StatusOutOfMemory when the mutex cannot be made.
  LockableBase();
  ~LockableBase() override;
  LockableBase(const LockableBase&) = delete;
  LockableBase& operator=(const LockableBase&) = delete;

  [[nodiscard]] bool lock() override;

  /// As core::LinMutex::tryLock(): prefer whole seconds.
  [[nodiscard]] int tryLock(unsigned int timeoutMs) override;

  /// @return what the mutex gives, or 0 when no lock is outstanding.
  int unlock() override;

 protected:
  /// The mutex; never null unless a subclass clears it, after which nothing can be locked.
  gom::SharedPointer<core::IMutex> m_mutex;
  /// How many locks are outstanding. It changes only while the mutex is held; unlock() reads it
  /// without.
  std::atomic<int> m_lockCount{0};

 private:
  void addToLockCount(int step) noexcept;
};

}  // namespace trelvo
