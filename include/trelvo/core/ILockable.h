#pragma once

#include <trelvo/Export.h>

namespace trelvo::core {

/// What can be locked: a mutex, or a value that carries its own.
///
/// Prefer a scope guard where there is one: what is locked here by hand is unlocked by hand.
class TRELVO_EXPORT ILockable {
 public:
  virtual ~ILockable();

  /// Waits until the calling thread holds the lock. @return true when it does.
  [[nodiscard]] virtual bool lock() = 0;

  /// Waits for at most `timeoutMs` milliseconds.
  /// @return 0 on failure, 1 when the calling thread holds the lock, 2 when the time ran out.
  [[nodiscard]] virtual int tryLock(unsigned int timeoutMs) = 0;

  /// Gives back what one successful lock() or tryLock() took. @return 0, or an error number.
  virtual int unlock() = 0;

 protected:
  ILockable() = default;
  ILockable(const ILockable&) = default;
  ILockable& operator=(const ILockable&) = default;
};

}  // namespace trelvo::core
